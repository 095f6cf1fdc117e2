// The LFO where the regression renders do not reach: the random shape's own
// generator, "0 Hz", and the rates in Hz and in beats. Every other shape,
// wraps, held values and stops included, is pinned by the LFO shapes render.
#include "voice/lfo.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace sablevox {
namespace {

// Eight ticks of an eighth of a cycle ("1 Hz", one sample a tick at 8 Hz):
// phases 0.125 .. 0.875, then 0 with a wrap; ticks more if asked.
std::vector<float> run(int type, int ticks = 8) {
  std::vector<float> out;
  float phase = 0.0f, previous = 0.0f, held = 0.0f;
  for (int i = 0; i < ticks; ++i) {
    phase = advanceLfoPhase(phase, 1, 8.0f, 120.0, 7);
    out.push_back(lfoOutput(type, phase, previous, held));
  }
  return out;
}

TEST(Lfo, RandomDrawsFromItsOwnGeneratorAtTheWrap) {
  auto unit = [] { return (lfoRandom() + 1.0f) * 0.5f; };
  lfoRandomState = 4242u;
  const std::vector<float> random = run(kLfoRandom);
  lfoRandomState = 4242u;
  const float first = unit(), second = unit();
  EXPECT_EQ(random, std::vector<float>({first, first, first, first, first, first, first, second}));

  EXPECT_EQ(lfoRandomState.load(), (4242u * 0x0BB38435u + 0x3619636Bu) * 0x0BB38435u + 0x3619636Bu);
}

TEST(Lfo, ZeroHertzHoldsPhaseZeroAndSeesNoWrap) {
  for (int speed : {-1, 0}) {
    float phase = 0.0f, previous = 0.0f, held = 0.0f;
    for (int i = 0; i < 5; ++i) phase = advanceLfoPhase(phase, 110, 44100.0f, 120.0, speed);
    EXPECT_EQ(phase, 0.0f);
    EXPECT_EQ(lfoOutput(kLfoTri, phase, previous, held), 0.0f);
    EXPECT_EQ(lfoOutput(kLfoSawDown, phase, previous, held), 1.0f);
    EXPECT_NEAR(lfoOutput(kLfoCos, phase, previous, held), 0.5f, 1e-5f);
    EXPECT_EQ(lfoOutput(kLfoSquare, phase, previous, held), 1.0f);
    EXPECT_EQ(lfoOutput(kLfoSawStop, phase, previous, held), 1.0f);
  }
}

TEST(Lfo, RatesInHertzAndInBeats) {
  // "4 Hz" and "BPM * 2" at 120 beats a minute: 4 cycles a second either way.
  EXPECT_FLOAT_EQ(advanceLfoPhase(0.0f, 110, 44100.0f, 120.0, 11), 110.0f / 44100.0f * 4.0f);
  EXPECT_NEAR(advanceLfoPhase(0.0f, 110, 44100.0f, 120.0, 23), 110.0f / 44100.0f * 4.0f, 1e-8f);
  EXPECT_NEAR(advanceLfoPhase(0.9f, 4410, 44100.0f, 120.0, 14), 0.1f, 1e-6f);  // 12 Hz, wrapped
  EXPECT_EQ(advanceLfoPhase(NAN, 110, 44100.0f, 120.0, 11), 0.0f);
}

}  // namespace
}  // namespace sablevox
