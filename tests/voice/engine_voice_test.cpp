// The global tick and refresh as the voices see them: the stack's start
// phases and stereo, render variants by quality, the voice count, auto LFO
// rate and filter state clearing. Fat's ratios and gains are pinned by the
// unison regression renders.
#include <algorithm>

#include "host/numeric.h"
#include "voice/lfo.h"
#include "voice/oscillator_render.h"
#include "voice/output_stage.h"
#include "voice/stack_members.h"
#include "voice_engine_support.h"

namespace sablevox::testing {
namespace {

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
      EXPECT_EQ(v.oscPhase[member][osc], static_cast<uint32_t>(randomRange(0.0f, 16777215.0f)));
    }
  }
  EXPECT_EQ(v.oscPhase[kMemberA][0] + v.oscPhase[kMemberC][1], 0u);
  // Speeds carry the ratios: A and B a, C and D 1/a in mode 1.
  EXPECT_FLOAT_EQ(v.oscIncrement[kMemberA][0] / v.oscIncrement[kMemberC][0],
                  engine->fatRatio[0] * engine->fatRatio[0]);
  EXPECT_EQ(v.oscIncrement[kMemberB][0], v.oscIncrement[kMemberA][0]);
  EXPECT_EQ(v.oscIncrement[kMemberD][0], v.oscIncrement[kMemberC][0]);

  // The voice's own output: two detuned players apart; then one, centred.
  std::vector<float> l(110, 0.0f), r(110, 0.0f);
  render(4400);
  engine->renderVoice(0, 110, l.data(), r.data(), 0, 110);
  EXPECT_NE(l, r);
  engine->setParameter(kFat, 0.0f);
  render(110);
  std::fill(l.begin(), l.end(), 0.0f);
  std::fill(r.begin(), r.end(), 0.0f);
  engine->renderVoice(0, 110, l.data(), r.data(), 0, 110);
  EXPECT_EQ(l, r);
  EXPECT_NE(l[60], 0.0f);
}

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

}  // namespace
}  // namespace sablevox::testing
