// The MIDI event queue and the controller map, observed on the voice records
// and the engine's fields.
#include <cmath>
#include <cstring>
#include <memory>

#include "notes_support.h"

namespace sablevox {
namespace {

using testing::EventBatch;
using testing::NotesTest;

using MidiEventsTest = NotesTest;

TEST_F(MidiEventsTest, SlotOrderDecidesWithinAPassAndDeltaFramesIsNeverAdjusted) {
  EventBatch batch({{0x90, 60, 100, 50}, {0x91, 64, 90, 10}, {0x92, 67, 80, 5000}});
  engine->processEvents(batch.events());
  EXPECT_EQ(engine->eventQueue[0].data1, 60);
  EXPECT_EQ(engine->eventQueue[1].data1, 64);
  EXPECT_EQ(engine->eventQueue[2].data1, 67);

  // Only the event below the limit is due.
  engine->eventPass(30);
  EXPECT_EQ(engine->voices[0].note, 64);
  EXPECT_EQ(engine->eventQueue[0].status, 0x90);
  EXPECT_EQ(engine->eventQueue[1].status, 0);

  // Both due in one pass: slot 0 before slot 1, whatever deltaFrames says.
  engine->voices[0].ampState = kEnvIdle;
  EXPECT_EQ(engine->processEvents(EventBatch({{0x90, 62, 100, 90}}).events()), 1);  // slot 1
  engine->eventPass(110);
  EXPECT_EQ(engine->voices[0].note, 60);
  EXPECT_EQ(engine->voices[1].note, 62);

  // The far event keeps its number through later passes and blocks.
  engine->eventPass(4999);
  render(128);
  EXPECT_EQ(engine->eventQueue[2].status, 0x92);
  EXPECT_EQ(engine->eventQueue[2].deltaFrames, 5000);
  engine->eventPass(5001);
  EXPECT_EQ(engine->eventQueue[2].status, 0);
  EXPECT_GE(voiceOf(67), 0);
}

TEST_F(MidiEventsTest, TheQueueOverflowsIntoSlotZeroAndSkipsOtherEvents) {
  EventBatch batch;
  for (int i = 0; i < 257; ++i) batch.add({0x90, i % 100, 100, i});
  engine->processEvents(batch.events());
  EXPECT_EQ(engine->eventQueue[0].deltaFrames, 256);  // the 257th replaced the first
  for (int i = 1; i < kEventSlots; ++i) ASSERT_EQ(engine->eventQueue[i].deltaFrames, i);

  // Not a MIDI event: takes no slot, so slot 0 keeps the 257th.
  EventBatch sysex({{0xF0, 1, 2, 7}});
  VstEvents* events = sysex.events();
  events->events[0]->type = kVstSysExType;
  engine->processEvents(events);
  EXPECT_EQ(engine->eventQueue[0].deltaFrames, 256);
  engine->processEvents(nullptr);

  // A pass frees every due slot; the next event takes slot 0 again.
  engine->eventPass(1 << 30);
  for (const EventSlot& slot : engine->eventQueue) ASSERT_EQ(slot.status, 0);
  engine->processEvents(EventBatch({{0x80, 1, 0, 3}}).events());
  EXPECT_EQ(engine->eventQueue[0].status, 0x80);
}

TEST_F(MidiEventsTest, NoteOffsAndDroppedMessages) {
  play({{0x90, 60, 100}});
  const int v = voiceOf(60);
  ASSERT_GE(v, 0);
  EXPECT_EQ(engine->voices[v].gate, 1);
  EXPECT_EQ(engine->voices[v].velocity, 100);
  EXPECT_TRUE(engine->keyDown[60]);
  EXPECT_EQ(engine->activityReports, 1);

  play({{0x9F, 60, 0}});  // velocity 0 on any channel is a note-off
  EXPECT_EQ(engine->voices[v].gate, 0);
  EXPECT_FALSE(engine->keyDown[60]);

  play({{0x90, 62, 100}});
  play({{0x83, 62, 64}});
  EXPECT_EQ(playing(62).gate, 0);
  EXPECT_EQ(engine->activityReports, 2);  // note-offs don't light the lamp

  // Key pressure, channel pressure, system bytes and stray data bytes: no
  // effect, but the slot is freed.
  const auto before = std::make_unique<Voice>(engine->voices[v]);
  play({{0xA0, 60, 100}, {0xD0, 100, 0}, {0xF8, 60, 100}, {0x3C, 60, 100}});
  EXPECT_EQ(std::memcmp(before.get(), &engine->voices[v], sizeof(Voice)), 0);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(engine->eventQueue[i].status, 0);
  EXPECT_EQ(engine->activityReports, 2);
}

TEST_F(MidiEventsTest, ControllerMapHitsItsParametersAndSkipsTheGaps) {
  struct Row {
    int controller;
    int parameter;
  };
  const Row rows[] = {
      {2, kAnalog},     {7, kVolume},     {21, kOsc1Tune},  {22, kOsc2Tune},  {23, kOsc1Fine},
      {24, kOsc2Fine},  {25, kOsc1Vol},   {26, kOsc2Vol},   {28, kFiltKey},   {71, kReso},
      {72, kReso},      {74, kCutoff},    {91, kEffPar1},   {92, kEffPar2},   {93, kFat},
      {102, kEnvFiltA}, {103, kEnvFiltD}, {104, kEnvFiltS}, {105, kEnvFiltR}, {106, kEnvFilVe},
      {107, kEnvFilSe}, {108, kEnvVolA},  {109, kEnvVolD},  {110, kEnvVolS},  {111, kEnvVolR},
      {112, kEnvVolVe}, {113, kEnvVolPo}, {114, kLFOSend},  {115, kDrive}};
  int value = 1;
  for (const Row& row : rows) {
    play({{0xB5, row.controller, value}});
    const float expected = static_cast<float>(value) / 128.0f;
    EXPECT_EQ(engine->params[row.parameter].load(), expected) << "controller " << row.controller;
    EXPECT_EQ(engine->programs[engine->getProgram()].values[row.parameter].load(), expected);
    value += 4;
  }
  play({{0xB0, 74, 127}});
  EXPECT_EQ(engine->params[kCutoff].load(), 0.9921875f);  // a controller never reaches 1.0

  // 27 and the other unlisted numbers change nothing at all.
  float before[kNumParams];
  for (int p = 0; p < kNumParams; ++p) before[p] = engine->params[p];
  for (int controller : {0, 3, 27, 29, 65, 73, 94, 101, 116, 119, 121, 122}) {
    play({{0xB0, controller, 77}});
  }
  for (int p = 0; p < kNumParams; ++p) EXPECT_EQ(engine->params[p].load(), before[p]) << p;
  EXPECT_EQ(engine->modWheelRaw, 0.0f);
  EXPECT_FALSE(engine->sustainOn);
  EXPECT_FALSE(engine->resetRequested);
  EXPECT_EQ(engine->activityReports, 0);

  // The mod wheel on 1 and 20: its own field, and the activity light.
  play({{0xB0, 1, 64}});
  EXPECT_EQ(engine->modWheelRaw, 0.5f);
  play({{0xB0, 20, 32}});
  EXPECT_EQ(engine->modWheelRaw, 0.25f);
  EXPECT_EQ(engine->activityReports, 2);
}

TEST_F(MidiEventsTest, SustainPedalHoldsKeyUpsUntilReleased) {
  play({{0x90, 60, 100}, {0xB0, 64, 64}, {0x80, 60, 0}});
  EXPECT_TRUE(engine->sustainOn);
  const int v = voiceOf(60);
  ASSERT_GE(v, 0);
  EXPECT_EQ(engine->voices[v].gate, 1);
  EXPECT_TRUE(engine->sustainedKeys[60]);
  EXPECT_TRUE(engine->keyDown[60]);

  play({{0xB0, 64, 63}});
  EXPECT_FALSE(engine->sustainOn);
  EXPECT_EQ(engine->voices[v].gate, 0);
  EXPECT_FALSE(engine->keyDown[60]);
  for (bool held : engine->sustainedKeys) ASSERT_FALSE(held);
}

TEST_F(MidiEventsTest, ResetControllerWithThePedalDownEndsVoicesAtTheNextBlock) {
  play({{0xB0, 64, 127}, {0x90, 60, 100}, {0xB0, 123, 0}});
  EXPECT_TRUE(engine->resetRequested);
  for (bool held : engine->sustainedKeys) ASSERT_TRUE(held);  // the key-ups were only marked
  EXPECT_EQ(playing(60).gate, 1);
  render(16);
  for (const Voice& voice : engine->voices) ASSERT_EQ(voice.ampState, kEnvIdle);

  for (int controller : {120, 124, 125, 126, 127}) {
    engine->resetRequested = false;
    play({{0xB0, controller, 0}});
    EXPECT_TRUE(engine->resetRequested) << controller;
  }
}

TEST_F(MidiEventsTest, PitchWheelCentreFullBendAndDepthReadWhenItMoves) {
  play({{0xE0, 99, 64}});  // data1, the low bits, is ignored
  EXPECT_EQ(engine->pitchBendFactor, 1.0f);
  EXPECT_EQ(engine->activityReports, 1);

  engine->setParameter(kPWDepth, choiceValue(3));  // +-12
  play({{0xE0, 0, 127}});
  const float up = engine->pitchBendFactor;
  EXPECT_NEAR(up, 2.03f, 0.001f);  // 0.059 per semitone overshoots the octave
  // The upper half is stretched: 127 bends further than 63/64 of the way.
  EXPECT_GT(up, static_cast<float>(std::exp(12.0 * (63.0 / 64.0) * 0.059)));
  play({{0xE0, 0, 0}});
  EXPECT_NEAR(engine->pitchBendFactor, 0.4926f, 0.0001f);
  EXPECT_NEAR(up * engine->pitchBendFactor, 1.0f, 1e-5f);

  // A later change of depth waits for the next wheel event.
  engine->setParameter(kPWDepth, choiceValue(0));  // +-1
  EXPECT_NEAR(engine->pitchBendFactor, 0.4926f, 0.0001f);
  play({{0xE0, 0, 0}});
  EXPECT_NEAR(engine->pitchBendFactor, std::exp(-0.059f), 1e-6f);
}

TEST_F(MidiEventsTest, ProgramChangeSelectsOnAnyChannelAndUpdatesTheDisplay) {
  engine->programs[5].values[kCutoff] = 0.125f;
  const int displays = testing::testHost().count(audioMasterUpdateDisplay);
  play({{0xC7, 5, 0}});
  EXPECT_EQ(engine->getProgram(), 5);
  EXPECT_EQ(engine->params[kCutoff].load(), 0.125f);
  EXPECT_TRUE(engine->resetRequested);
  EXPECT_EQ(testing::testHost().count(audioMasterUpdateDisplay), displays + 1);

  play({{0xC0, 127, 0}});
  EXPECT_EQ(engine->getProgram(), 127);
  play({{0xC0, -1, 0}});  // a byte above 127 is limited
  EXPECT_EQ(engine->getProgram(), 0);
  EXPECT_EQ(testing::testHost().count(audioMasterUpdateDisplay), displays + 3);
}

}  // namespace
}  // namespace sablevox
