// A note through the engine: its pitch with tune, wave octave, fine tune and
// pitch wheel, when it starts sounding, and silence at a low Volume.
#include <cmath>

#include "voice/stack_members.h"
#include "voice_engine_support.h"

namespace sablevox::testing {
namespace {

constexpr double kExpected = 220.0 * 2.0 * 4.0;  // note 69, "tune octave +1  ", STA Sine

TEST_F(VoiceEngineTest, SineSoundsAtTheNotesPitchTimesTuneAndWaveOctave) {
  EXPECT_NEAR(playAndMeasure(), kExpected, kExpected * 0.001);
  const Voice& v = engine->voices[0];
  EXPECT_FLOAT_EQ(v.oscIncrement[kMemberA][0], engine->pitchTable[69] * 8.0f);
}

TEST_F(VoiceEngineTest, FineTuneEnds) {
  engine->setParameter(kOsc1Fine, 1.0f);
  EXPECT_NEAR(playAndMeasure(), kExpected * 1.02973, kExpected * 0.001);
  engine->setParameter(kOsc1Fine, 0.0f);
  render(22050);
  EXPECT_NEAR(frequency(left, 44100.0), kExpected * 0.9719, kExpected * 0.001);
}

TEST_F(VoiceEngineTest, PitchWheelFollowsItsDepth) {
  // "+-12" and the wheel at the top: exp(12 * 0.059) = 2.03, not 2.
  engine->setParameter(kPWDepth, choiceValue(3));
  midi(0xE0, 0, 127);
  const double up = std::exp(static_cast<double>(12.0f * 1.0f * 0.059f));
  EXPECT_NEAR(playAndMeasure(), kExpected * up, kExpected * up * 0.001);
  // "+-2" and the wheel at the bottom.
  engine->setParameter(kPWDepth, choiceValue(1));
  midi(0xE0, 0, 0);
  render(2200);  // the wheel moves at the next tick
  render(22050);
  const double down = std::exp(static_cast<double>(2.0f * -1.0f * 0.059f));
  EXPECT_NEAR(frequency(left, 44100.0), kExpected * down, kExpected * down * 0.001);
}

// First sample of the left channel that differs from the block's silence.
int firstSound(const std::vector<float>& x) {
  for (size_t i = 1; i < x.size(); ++i) {
    if (std::abs(x[i] - x[0]) > 1e-4f) return static_cast<int>(i);
  }
  return -1;
}

TEST_F(VoiceEngineTest, NoteStartsAtTheTickThatTakesItsEvent) {
  // Ticks fall on multiples of 110: an event at 120 is taken by the tick at
  // 110 (whose limit is 220), one at 220 by the tick at 220. The ramp starts
  // at 0, so the stretch's first sample is still silent.
  ASSERT_EQ(engine->samplesToTick, 110.0f);
  midi(0x90, 69, 100, 120);
  render(330);
  EXPECT_GE(firstSound(left), 110);
  EXPECT_LE(firstSound(left), 112);

  midi(0x80, 69, 0);
  render(44000);  // released and gone; whole ticks again
  ASSERT_EQ(engine->voices[0].ampState, kEnvIdle);
  ASSERT_EQ(engine->samplesToTick, 110.0f);
  midi(0x90, 69, 100, 220);
  render(330);
  EXPECT_GE(firstSound(left), 220);
  EXPECT_LE(firstSound(left), 222);
}

TEST_F(VoiceEngineTest, VolumeBelowOneHundredthIsSilence) {
  engine->setParameter(kVolume, 0.0099f);
  midi(0x90, 69, 127);
  render(1100);
  const Voice& v = engine->voices[0];
  ASSERT_NE(v.ampState, kEnvIdle);
  EXPECT_EQ(v.panLeft, 0.0f);
  EXPECT_EQ(v.panRight, 0.0f);
  std::vector<float> l(110, 0.0f), r(110, 0.0f);
  engine->renderVoice(0, 110, l.data(), r.data(), 0, 110);
  for (int i = 0; i < 110; ++i) ASSERT_EQ(std::abs(l[i]) + std::abs(r[i]), 0.0f);
  // At 0.01 the voice sounds, at fastExp(-5.94) * 0.01 of full scale.
  engine->setParameter(kVolume, 0.01f);
  render(110);
  EXPECT_GT(engine->voices[0].panLeft, 0.0f);
  engine->renderVoice(0, 110, l.data(), r.data(), 0, 110);
  EXPECT_GT(std::abs(l[50]), 0.0f);
}

}  // namespace
}  // namespace sablevox::testing
