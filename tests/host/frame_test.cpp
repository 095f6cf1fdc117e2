// What a host sees of the plug-in object: the AEffect after construction, the
// dispatcher's answers, and survival of odd or null arguments.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "common/test_host.h"
#include "host/numeric.h"
#include "host/vendor_opcodes.h"
#include "voice/lfo.h"

namespace sablevox {
namespace {

using testing::IsolatedSettings;
using testing::TestHost;

class FrameTest : public ::testing::Test {
 protected:
  void SetUp() override { TestHost::instance().reset(); }
  IsolatedSettings settings;
};

TEST_F(FrameTest, AEffectAfterConstruction) {
  auto engine = testing::makeEngine();
  const AEffect* e = engine->getAeffect();
  EXPECT_EQ(e->magic, 0x56737450);
  EXPECT_EQ(e->numPrograms, 128);
  EXPECT_EQ(e->numParams, 50);
  EXPECT_EQ(e->numInputs, 0);
  EXPECT_EQ(e->numOutputs, 2);
  // Clip, replacing and synth; no editor yet, no chunks, no VU.
  EXPECT_EQ(e->flags, effFlagsHasClip | effFlagsCanReplacing | effFlagsIsSynth);
  EXPECT_EQ(e->flags, 0x112);
  EXPECT_EQ(e->ioRatio, 1.0f);
  EXPECT_EQ(e->uniqueID, 0x51534256);
  EXPECT_EQ(e->version, 1);
  EXPECT_EQ(e->object, static_cast<AudioEffect*>(engine.get()));
  EXPECT_NE(e->processReplacing, nullptr);
  EXPECT_NE(e->process, nullptr);
  EXPECT_EQ(e->processDoubleReplacing, nullptr);
  EXPECT_EQ(engine->getSampleRate(), 44100.0f);
  EXPECT_EQ(engine->getBlockSize(), 1024);
  EXPECT_EQ(engine->getProgram(), 0);
}

TEST_F(FrameTest, DispatcherAnswers) {
  auto engine = testing::makeEngine();
  AEffect* e = engine->getAeffect();
  auto call = [&](VstInt32 op, VstInt32 index = 0, VstIntPtr value = 0, void* ptr = nullptr,
                  float opt = 0.0f) { return e->dispatcher(e, op, index, value, ptr, opt); };
  EXPECT_EQ(call(effIdentify), kVstIdentify);
  EXPECT_EQ(call(effGetVendorVersion), 1000);
  EXPECT_EQ(call(effGetVstVersion), 2300);
  EXPECT_EQ(call(effGetPlugCategory), kPlugCategEffect);
  EXPECT_EQ(call(effGetNumProgramCategories), 1);
  EXPECT_EQ(call(effKeysRequired), 1);
  EXPECT_EQ(call(effGetVu), 0);
  void* chunk = nullptr;
  EXPECT_EQ(call(effGetChunk, 0, 0, &chunk), 0);
  for (VstInt32 p = 0; p < 60; ++p) EXPECT_EQ(call(effCanBeAutomated, p), 1);

  char text[256];
  std::memset(text, 'x', sizeof text);
  EXPECT_EQ(call(effGetEffectName, 0, 0, text), 1);
  EXPECT_STREQ(text, "QuorlSablevox");
  EXPECT_EQ(call(effGetProductString, 0, 0, text), 1);
  EXPECT_STREQ(text, "QuorlSablevox");
  EXPECT_EQ(call(effGetVendorString, 0, 0, text), 1);
  EXPECT_GT(std::strlen(text), 0u);
  EXPECT_LT(std::strlen(text), 64u);

  char yes1[] = "receiveVstEvents", yes2[] = "receiveVstMidiEvent", yes3[] = "midiProgramNames",
       yes4[] = "receiveVstTimeInfo", no1[] = "sendVstEvents", no2[] = "",
       no3[] = "ReceiveVstEvents";
  for (char* t : {yes1, yes2, yes3, yes4}) EXPECT_EQ(call(effCanDo, 0, 0, t), 1) << t;
  for (char* t : {no1, no2, no3}) EXPECT_EQ(call(effCanDo, 0, 0, t), -1) << t;
}

TEST_F(FrameTest, OutputPinsAndProgramBounds) {
  auto engine = testing::makeEngine();
  AEffect* e = engine->getAeffect();
  for (VstInt32 pin = 0; pin < 2; ++pin) {
    VstPinProperties properties{};
    EXPECT_EQ(e->dispatcher(e, effGetOutputProperties, pin, 0, &properties, 0.0f), 1);
    EXPECT_STREQ(properties.label, "Sablevox");
    EXPECT_STREQ(properties.shortLabel, "Sable");
    EXPECT_EQ(properties.flags, kVstPinIsActive | kVstPinIsStereo);
  }
  VstPinProperties untouched;
  std::memset(&untouched, 0x5A, sizeof untouched);
  EXPECT_EQ(e->dispatcher(e, effGetOutputProperties, 2, 0, &untouched, 0.0f), 0);
  EXPECT_EQ(static_cast<unsigned char>(untouched.label[0]), 0x5A);

  e->dispatcher(e, effSetProgram, 0, 5, nullptr, 0.0f);
  EXPECT_EQ(e->dispatcher(e, effGetProgram, 0, 0, nullptr, 0.0f), 5);
  for (VstIntPtr bad : {VstIntPtr{128}, VstIntPtr{1000}, VstIntPtr{-1}}) {
    e->dispatcher(e, effSetProgram, 0, bad, nullptr, 0.0f);
    EXPECT_EQ(e->dispatcher(e, effGetProgram, 0, 0, nullptr, 0.0f), 5);
  }
}

TEST_F(FrameTest, ResumeAsksForEventsAndIdle) {
  auto engine = testing::makeEngine();
  AEffect* e = engine->getAeffect();
  TestHost::instance().reset();
  e->dispatcher(e, effMainsChanged, 0, 1, nullptr, 0.0f);
  TestHost& host = TestHost::instance();
  ASSERT_EQ(host.count(audioMasterWantMidi), 1);
  EXPECT_EQ(host.calls[0].value, 1);
  EXPECT_EQ(host.count(audioMasterNeedIdle), 1);
  e->dispatcher(e, effMainsChanged, 0, 0, nullptr, 0.0f);
  EXPECT_EQ(host.count(audioMasterWantMidi), 1);
}

TEST_F(FrameTest, TempoFromTheHostOr120) {
  auto engine = testing::makeEngine();
  TestHost& host = TestHost::instance();
  EXPECT_EQ(engine->getTempo(), 120.0);
  host.answerTime = true;
  host.timeInfo.tempo = 97.5;
  EXPECT_EQ(engine->getTempo(), 97.5);
  host.calls.clear();
  engine->getTempo();
  ASSERT_EQ(host.count(audioMasterGetTime), 1);
  EXPECT_EQ(host.calls[0].value, 0x600);
  // A host's unusable tempo is no tempo, and an extreme one is held in range.
  host.timeInfo.tempo = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(engine->getTempo(), 120.0);
  host.timeInfo.tempo = 0.0;
  EXPECT_EQ(engine->getTempo(), 1.0);
  host.timeInfo.tempo = 1e9;
  EXPECT_EQ(engine->getTempo(), 999.0);
}

// Every opcode with null and odd arguments: nothing may crash or misbehave
// (the sanitizer builds turn undefined behaviour into failures).
TEST_F(FrameTest, EveryOpcodeSurvivesNullAndOddArguments) {
  auto engine = testing::makeEngine();
  AEffect* e = engine->getAeffect();
  const VstIntPtr values[] = {0, 1, -1, 127, 128, 1 << 30};
  const float opts[] = {0.0f, -1.0f, 1e30f, std::numeric_limits<float>::quiet_NaN()};
  for (VstInt32 opcode = 0; opcode < 90; ++opcode) {
    if (opcode == effClose) continue;
    for (VstIntPtr value : values) {
      for (float opt : opts) {
        e->dispatcher(e, opcode, static_cast<VstInt32>(value), value, nullptr, opt);
      }
    }
  }
  // The odd sample rates above were held to the engine's range.
  EXPECT_GE(engine->getSampleRate(), 8000.0f);
  EXPECT_LE(engine->getSampleRate(), 384000.0f);
  EXPECT_EQ(e->dispatcher(e, effVendorSpecific, 0, 0, nullptr, 0.0f), 0);
  // Our seed call sets both random generators, and needs its seed.
  const uint32_t before[2] = {randomState, lfoRandomState};
  uint32_t seed = 1234u;
  EXPECT_EQ(e->dispatcher(e, effVendorSpecific, kSablevoxVendorIndex, kVendorSeedRandom, &seed, 0),
            1);
  EXPECT_EQ(randomState.load() + lfoRandomState.load(), 2468u);
  EXPECT_EQ(
      e->dispatcher(e, effVendorSpecific, kSablevoxVendorIndex, kVendorSeedRandom, nullptr, 0), 0);
  randomState = before[0];
  lfoRandomState = before[1];
}

TEST_F(FrameTest, PitchTableFollowsTheSampleRate) {
  auto engine = testing::makeEngine(44100.0f);
  // Entry 69 is 220 Hz, entry 0 about 4.088 Hz, each over the sample rate.
  EXPECT_NEAR(engine->pitchTable[69] * 44100.0f, 220.0f, 220.0f * 1e-5f);
  EXPECT_NEAR(engine->pitchTable[0] * 44100.0f, 4.0879f, 1e-3f);
  EXPECT_NEAR(engine->pitchTable[81] / engine->pitchTable[69], 2.0f, 1e-5f);
  const float r = static_cast<float>(1.0 / 44100.0);
  EXPECT_EQ(engine->pitchTable[0], 523.2511306007598f * 0.0078125f * r);
  engine->setSampleRate(96000.0f);
  EXPECT_NEAR(engine->pitchTable[69] * 96000.0f, 220.0f, 220.0f * 1e-5f);
}

}  // namespace
}  // namespace sablevox
