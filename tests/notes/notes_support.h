// Shared set-up of the note engine tests: an engine on the test host with an
// isolated settings folder, that counts its MIDI activity reports, and a way
// to hand it a batch of MIDI events as a host would.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <vector>

#include "common/test_host.h"
#include "hostlib/midi_events.h"

namespace sablevox::testing {

// ADelayEdit that records what the editor's activity light would be told.
class RecordingEngine : public ADelayEdit {
 public:
  using ADelayEdit::ADelayEdit;
  void setKeyDisplay(int index, float value) override {
    if (index == 0 && value == 1.0f) ++activityReports;
    ADelayEdit::setKeyDisplay(index, value);
  }
  int activityReports = 0;
};

struct Midi {
  uint8_t status;
  int data1;
  int data2;
  int deltaFrames = 0;
};

// A host's batch of events (the host library's list); valid until the next add.
class EventBatch : public host::EventList {
 public:
  EventBatch() = default;
  EventBatch(std::initializer_list<Midi> messages) {
    for (const Midi& m : messages) add(m);
  }
  void add(const Midi& m) {
    host::EventList::add(host::MidiMessage::raw(m.deltaFrames, m.status,
                                                static_cast<unsigned char>(m.data1),
                                                static_cast<unsigned char>(m.data2)));
  }
  VstEvents* events() { return get(); }
};

class NotesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    resetTestHost();
    engine = makeEngine<RecordingEngine>();
    // An empty block takes the construction's reset and the first refresh,
    // and runs no tick.
    float unused[1];
    float* outputs[2] = {unused, unused};
    engine->processReplacing(nullptr, outputs, 0);
  }

  void render(int count) {
    std::vector<float> left, right;
    renderBlock(*engine, left, right, count);
  }

  // Files the batch and applies everything due before `limit`.
  void play(std::initializer_list<Midi> messages, int limit = 1 << 30) {
    EventBatch batch(messages);
    EXPECT_EQ(engine->processEvents(batch.events()), 1);
    engine->eventPass(limit);
  }

  // Index of the first active voice playing note, or -1.
  int voiceOf(int note) const {
    for (int v = 0; v < engine->activeVoices; ++v) {
      if (engine->voices[v].ampState != kEnvIdle && engine->voices[v].note == note) return v;
    }
    return -1;
  }

  // The voice playing note; a failure (and voice 0) if there is none.
  Voice& playing(int note) {
    const int v = voiceOf(note);
    EXPECT_GE(v, 0) << "no voice plays " << note;
    return engine->voices[v < 0 ? 0 : v];
  }

  IsolatedSettings settings;
  std::unique_ptr<RecordingEngine> engine;
};

}  // namespace sablevox::testing
