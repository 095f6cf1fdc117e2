// The engine as the voices see it where the regression renders (no wheel,
// default tuning and Volume) do not reach: the refresh's render variants by
// quality, voice count, auto LFO rate and filter state clearing; fine tune at
// its ends, the pitch wheel at its depths, and silence at a low Volume. Fat's
// ratios, gains, start phases and stereo spread are pinned by the unison
// regression renders.
#include <algorithm>

#include "voice/lfo.h"
#include "voice/oscillator_render.h"
#include "voice/output_stage.h"
#include "voice_engine_support.h"

namespace sablevox::testing {
namespace {

TEST_F(VoiceEngineTest, RefreshDecodesRoutinesVoicesLfoAndFilterCode) {
  const OscRender players[4] = {renderCubic2x, renderLinear2x, renderLinear, renderNearest};
  const OutputStage stages[4] = {driveOversampled8, driveOversampled2, drivePlain, drivePlain};
  for (int quality : {0, 1, 2, 3, 7}) {  // another value leaves the routines
    engine->config->set(kQuality, quality);
    engine->slowRefresh();
    EXPECT_EQ(engine->osc1Render, players[std::min(quality, 3)]);
    EXPECT_EQ(engine->outputStage, stages[std::min(quality, 3)]);
  }
  engine->setParameter(kOsc2Wave, choiceValue(1));
  engine->setParameter(kOsc1Vol, 0.0f);
  engine->setParameter(kVoices, choiceValue(5));
  engine->setParameter(kLFOType, choiceValue(kLfoSawUp));
  engine->setParameter(kLFOSpeed, 0.0f);             // auto
  engine->setParameter(kLFODest, choiceValue(5));    // "Osc pitch"
  engine->setParameter(kFiltType, choiceValue(23));  // "LP Moog"
  engine->slowRefresh();
  EXPECT_EQ(engine->osc2Render, renderNoise);
  EXPECT_FALSE(engine->oscEnabled[0]);
  EXPECT_EQ(engine->activeVoices, 12);
  EXPECT_EQ(engine->lfoSpeedIndex, 12);  // "6 Hz"
  Voice& v = engine->voices[11];
  EXPECT_EQ(v.filterCode, 42);
  v.filterLeft.set2[0] = 5.0f;
  engine->slowRefresh();  // same type: the state stays
  EXPECT_EQ(v.filterLeft.set2[0], 5.0f);
  engine->setParameter(kFiltType, choiceValue(1));
  engine->slowRefresh();
  EXPECT_EQ(v.filterCode, 0);
  EXPECT_EQ(v.filterLeft.set2[0], 0.0f);
}

constexpr double kExpected = 220.0 * 2.0 * 4.0;  // note 69, "tune octave +1  ", STA Sine

TEST_F(VoiceEngineTest, FineTuneEndsAndPitchWheelDepths) {
  engine->setParameter(kOsc1Fine, 1.0f);
  EXPECT_NEAR(playAndMeasure(), kExpected * 1.02973, kExpected * 0.001);
  engine->setParameter(kOsc1Fine, 0.0f);
  render(22050);
  EXPECT_NEAR(frequency(left, 44100.0), kExpected * 0.9719, kExpected * 0.001);
  engine->setParameter(kOsc1Fine, 0.5f);
  // Wheel at the top with "+-12": exp(12 * 0.059) = 2.03, not 2; at the
  // bottom with "+-2": exp(-2 * 0.059).
  for (const auto& [depth, wheel, semitones] : {std::tuple{3, 127, 12.0f}, {1, 0, -2.0f}}) {
    engine->setParameter(kPWDepth, choiceValue(depth));
    midi(0xE0, 0, wheel);
    render(2200);  // the wheel moves at the next tick
    render(22050);
    const double ratio = std::exp(static_cast<double>(semitones * 0.059f));
    EXPECT_NEAR(frequency(left, 44100.0), kExpected * ratio, kExpected * ratio * 0.001);
  }
}

TEST_F(VoiceEngineTest, VolumeBelowOneHundredthIsSilence) {
  engine->setParameter(kVolume, 0.0099f);
  midi(0x90, 69, 127);
  render(1100);
  ASSERT_NE(engine->voices[0].ampState, kEnvIdle);
  std::vector<float> l(110, 0.0f), r(110, 0.0f);
  engine->renderVoice(0, 110, l.data(), r.data(), 0, 110);
  EXPECT_EQ(l, std::vector<float>(110, 0.0f));
  EXPECT_EQ(r, l);
  engine->setParameter(kVolume, 0.01f);  // about fastExp(-5.94) * 0.01 of full scale
  render(110);
  engine->renderVoice(0, 110, l.data(), r.data(), 0, 110);
  EXPECT_NE(l[50], 0.0f);
}

}  // namespace
}  // namespace sablevox::testing
