// The global tick and refresh as the voices see them: Fat modes, ratios and
// gains, the stack's start phases and stereo, render variants by quality,
// filter state clearing, and a render that survives hostile parameters.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "host/numeric.h"
#include "voice/lfo.h"
#include "voice/oscillator_render.h"
#include "voice/output_stage.h"
#include "voice/stack_members.h"
#include "voice_engine_support.h"

namespace sablevox::testing {
namespace {

TEST_F(VoiceEngineTest, FatModesRatiosAndGain) {
  struct Row {
    float fat;
    int mode;
    float ratios[4];
    float gain;
  };
  const float a1 = 0.2f * 0.04f + 1.0f;
  const float a2 = 0.25f * 0.04f + 1.0f, b2 = 0.25f * 0.024f + 1.0f;
  const Row rows[] = {{0.0f, 0, {1, 1, 1, 1}, 1.0f},
                      {0.0099f, 0, {1, 1, 1, 1}, 1.0f},
                      {0.01f, 1, {1.0004f, 1 / 1.0004f, 1 / 1.0004f, 1.0004f}, 1.0f},
                      {0.2f, 1, {a1, 1 / a1, 1 / a1, a1}, 1.0f},
                      {0.4999f, 1, {1.019996f, 1 / 1.019996f, 1 / 1.019996f, 1.019996f}, 1.0f},
                      {0.5f, 2, {1, 1, 1, 1}, 0.7f},
                      {0.75f, 2, {a2, 1 / a2, 1 / b2, b2}, 0.7f}};
  for (const Row& row : rows) {
    engine->setParameter(kFat, row.fat);
    engine->globalTick(110);
    EXPECT_EQ(engine->fatMode, row.mode) << row.fat;
    for (int i = 0; i < 4; ++i) EXPECT_FLOAT_EQ(engine->fatRatio[i], row.ratios[i]) << row.fat;
    EXPECT_FLOAT_EQ(engine->oscGain[0], row.gain) << row.fat;  // STA Sine level 1, Osc1Vol 1
  }
}

TEST_F(VoiceEngineTest, StackMembersStartApartAndSpreadOverTheStereoField) {
  engine->setParameter(kFat, 0.3f);
  randomState = 31u;
  midi(0x90, 60, 100);
  render(110);  // the tick at the block's end starts the note
  const Voice& v = engine->voices[0];
  ASSERT_EQ(v.ampState, kEnvAttack);
  // A and C start at 0; B and D apart, drawn in the order B1, B2, D1, D2.
  randomState = 31u;
  for (int member : {kMemberB, kMemberD}) {
    for (int osc = 0; osc < 2; ++osc) {
      const auto drawn = static_cast<uint32_t>(randomRange(0.0f, 16777215.0f));
      EXPECT_EQ(v.oscPhase[member][osc], drawn);
    }
  }
  EXPECT_EQ(v.oscPhase[kMemberA][0] + v.oscPhase[kMemberC][1], 0u);
  // Each member's speed carries its ratio: A a, B a, C 1/a, D 1/a in mode 1.
  const float a = engine->fatRatio[0];
  EXPECT_FLOAT_EQ(v.oscIncrement[kMemberA][0] / v.oscIncrement[kMemberC][0], a * a);
  EXPECT_FLOAT_EQ(v.oscIncrement[kMemberB][0], v.oscIncrement[kMemberA][0]);
  EXPECT_FLOAT_EQ(v.oscIncrement[kMemberD][0], v.oscIncrement[kMemberC][0]);
  // The voice's own output: two detuned players, left and right; then one, centred.
  std::vector<float> l(110, 0.0f), r(110, 0.0f);
  render(4400);
  engine->renderVoice(0, 110, l.data(), r.data(), 0, 110);
  double difference = 0.0;
  for (int i = 0; i < 110; ++i) difference += std::abs(l[i] - r[i]);
  EXPECT_GT(difference, 0.1);
  engine->setParameter(kFat, 0.0f);
  render(110);
  std::fill(l.begin(), l.end(), 0.0f);
  std::fill(r.begin(), r.end(), 0.0f);
  engine->renderVoice(0, 110, l.data(), r.data(), 0, 110);
  EXPECT_EQ(l, r);
  EXPECT_NE(l[60], 0.0f);
}

TEST_F(VoiceEngineTest, RefreshPicksRoutinesByQualityAndNoiseWave) {
  const struct {
    int quality;
    OscRender osc;
    OutputStage stage;
  } rows[] = {{0, renderCubic2x, driveOversampled8},
              {1, renderLinear2x, driveOversampled2},
              {2, renderLinear, drivePlain},
              {3, renderNearest, drivePlain}};
  for (const auto& row : rows) {
    engine->config->set(kQuality, row.quality);
    engine->slowRefresh();
    EXPECT_EQ(engine->osc1Render, row.osc);
    EXPECT_EQ(engine->osc2Render, row.osc);
    EXPECT_EQ(engine->outputStage, row.stage);
  }
  engine->config->set(kQuality, 7);  // another value leaves them
  engine->setParameter(kOsc2Wave, choiceValue(1));
  engine->slowRefresh();
  EXPECT_EQ(engine->osc1Render, renderNearest);
  EXPECT_EQ(engine->osc2Render, renderNoise);
  EXPECT_TRUE(engine->oscEnabled[0]);
  EXPECT_TRUE(engine->oscEnabled[1]);
  engine->setParameter(kOsc1Vol, 0.0f);
  engine->slowRefresh();
  EXPECT_FALSE(engine->oscEnabled[0]);
}

TEST_F(VoiceEngineTest, RefreshDecodesVoicesLfoAndClearsFilterStateOnANewType) {
  engine->setParameter(kGlMode, choiceValue(1));
  engine->slowRefresh();
  EXPECT_EQ(engine->activeVoices, 1);
  engine->setParameter(kGlMode, 0.0f);
  engine->setParameter(kVoices, choiceValue(5));
  engine->setParameter(kLFOType, choiceValue(kLfoSawUp));
  engine->setParameter(kLFOSpeed, 0.0f);  // auto
  engine->setParameter(kLFODest, choiceValue(5));
  engine->slowRefresh();
  EXPECT_EQ(engine->activeVoices, 12);
  EXPECT_EQ(engine->lfoTypeIndex, 3);
  EXPECT_EQ(engine->lfoSpeedIndex, 12);  // "6 Hz"

  engine->setParameter(kFiltType, choiceValue(23));  // "LP Moog"
  engine->slowRefresh();
  Voice& v = engine->voices[3];
  EXPECT_EQ(v.filterCode, 42);
  v.filterLeft.set2[0] = 5.0f;
  v.filterRight.hist1[1] = 6.0f;
  engine->slowRefresh();  // same type: state stays
  EXPECT_EQ(v.filterLeft.set2[0], 5.0f);
  engine->setParameter(kFiltType, choiceValue(1));
  engine->slowRefresh();
  EXPECT_EQ(v.filterCode, 0);
  EXPECT_EQ(v.filterLeft.set2[0], 0.0f);
  EXPECT_EQ(v.filterRight.hist1[1], 0.0f);
}

TEST_F(VoiceEngineTest, HostileParametersNeverReachTheOutput) {
  midi(0x90, 60, 100);
  midi(0x90, 67, 100);
  render(1100);
  const float hostile[] = {NAN, INFINITY, -INFINITY, 1e30f, -1e30f};
  for (float x : hostile) {
    for (int p = 0; p < 43; ++p) {
      if (p == kArpType || p >= kEffType) continue;  // not the voice's
      engine->setParameter(p, x);
    }
    for (int quality = 0; quality < 4; ++quality) {
      engine->config->set(kQuality, quality);
      render(4410);
      for (size_t i = 0; i < left.size(); ++i) {
        ASSERT_TRUE(std::isfinite(left[i]) && std::isfinite(right[i])) << x << " at " << i;
      }
    }
  }
}

}  // namespace
}  // namespace sablevox::testing
