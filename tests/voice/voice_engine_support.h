// Voice tests through the engine: an ADelayEdit on the test host with its own
// settings folder, a plain patch (one oscillator, no filter, LFO, effects,
// instant attack, full sustain), waiting for the worker's tables, MIDI, and a
// pitch measurement.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <memory>
#include <thread>
#include <vector>

#include "common/test_host.h"
#include "hostlib/midi_events.h"

namespace sablevox::testing {

constexpr int kStaSine = 4;            // pitchFactor 4.0, level 1.0
constexpr float kTunePlusOne = 0.45f;  // step 4: ratio 2.0

class VoiceEngineTest : public ::testing::Test {
 protected:
  void SetUp() override {
    resetTestHost();
    engine = makeEngine(44100.0f);
    engine->config->set(kQuality, 0);
    // clang-format off
    const struct { int index; float value; } patch[] = {
        {kOsc1Wave, choiceValue(kStaSine)}, {kOsc2Wave, 0.0f}, {kOsc1Mod, 0.0f},
        {kOsc1Tune, kTunePlusOne}, {kOsc1Fine, 0.5f}, {kOsc1Vol, 1.0f}, {kFat, 0.0f},
        {kAnalog, 0.0f}, {kFiltType, 0.0f}, {kDrive, 0.0f}, {kVolume, 1.0f}, {kEnvVolA, 0.0f},
        {kEnvVolD, 0.5f}, {kEnvVolS, 1.0f}, {kEnvVolR, 0.5f}, {kEnvVolVe, 0.5f},
        {kEnvVolPo, 0.0f}, {kLFODest, 0.0f}, {kArpType, 0.0f}, {kEffType, 0.0f},
        {kVoices, choiceValue(7)}, {kPWDepth, choiceValue(1)}, {kMWDest, 0.0f}, {kGlMode, 0.0f}};
    // clang-format on
    for (const auto& p : patch) engine->setParameter(p.index, p.value);
    waitForWaves();
  }

  // Renders whole ticks until the worker has built the tables of the patch
  // and the audio thread plays them; ticks then fall on block starts.
  void waitForWaves() {
    for (int i = 0; i < 1000 && !engine->wavesReady(); ++i) {
      render(110);
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    ASSERT_TRUE(engine->wavesReady());
    render(110);
  }

  void render(int count) { renderBlock(*engine, left, right, count); }

  void midi(uint8_t status, int data1, int data2, int deltaFrames = 0) {
    host::EventList events;
    events.add(host::MidiMessage::raw(deltaFrames, status, static_cast<unsigned char>(data1),
                                      static_cast<unsigned char>(data2)));
    engine->processEvents(events.get());
  }

  // Plays note 69 and measures the left channel's pitch after the attack.
  double playAndMeasure() {
    midi(0x90, 69, 100);
    render(13230);  // 0.3 s of attack and settling
    render(22050);
    return frequency(left, 44100.0);
  }

  // Pitch of a rendered tone: rising zero crossings of the signal less its
  // mean, interpolated between samples.
  static double frequency(const std::vector<float>& x, double sampleRate) {
    double mean = 0.0;
    for (float v : x) mean += v;
    mean /= static_cast<double>(x.size());
    double first = -1.0, last = -1.0;
    int crossings = 0;
    for (size_t i = 1; i < x.size(); ++i) {
      const double a = x[i - 1] - mean, b = x[i] - mean;
      if (a < 0.0 && b >= 0.0) {
        const double t = static_cast<double>(i - 1) + a / (a - b);
        if (first < 0.0) first = t;
        last = t;
        ++crossings;
      }
    }
    return crossings > 1 ? (crossings - 1) / (last - first) * sampleRate : 0.0;
  }

  IsolatedSettings settings;
  std::unique_ptr<ADelayEdit> engine;
  std::vector<float> left, right;
};

}  // namespace sablevox::testing
