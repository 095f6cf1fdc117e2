// The refresh as the voices see it: render variants by quality, the voice
// count, auto LFO rate and filter state clearing. Fat's ratios, gains, start
// phases and stereo spread are pinned by the unison regression renders.
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

}  // namespace
}  // namespace sablevox::testing
