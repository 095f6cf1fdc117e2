// The LFO: every shape over one cycle, wraps and held values, the stop
// shapes, the rate rules, "auto" and the LFO's own generator.
#include "voice/lfo.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <vector>

#include "host/numeric.h"

namespace sablevox {
namespace {

constexpr int kOneHertz = 7;  // speed index of "1 Hz"

// Eight ticks of one eighth of a cycle each (1 Hz, one sample a tick at 8 Hz):
// phases 0.125 .. 0.875, then 0 with a wrap.
std::vector<float> cycle(int type, float held = 0.0f) {
  std::vector<float> out;
  float phase = 0.0f, previous = 0.0f;
  for (int i = 0; i < 8; ++i) {
    phase = advanceLfoPhase(phase, 1, 8.0f, 120.0, kOneHertz);
    out.push_back(lfoOutput(type, phase, previous, held));
  }
  return out;
}

void expectCycle(int type, std::vector<float> want) {
  const std::vector<float> got = cycle(type);
  for (size_t i = 0; i < want.size(); ++i) {
    EXPECT_NEAR(got[i], want[i], 1e-5f) << "type " << type << " tick " << i;
  }
}

TEST(Lfo, ShapesOverOneCycle) {
  const float s = 0.14644661f, c = 0.85355339f;  // (1 -+ cos(pi/4)) / 2
  expectCycle(kLfoStatic, {1, 1, 1, 1, 1, 1, 1, 1});
  expectCycle(kLfoTri, {.25f, .5f, .75f, 1, .75f, .5f, .25f, 0});
  expectCycle(kLfoTri90, {.75f, 1, .75f, .5f, .25f, 0, .25f, .5f});
  expectCycle(kLfoSawUp, {.125f, .25f, .375f, .5f, .625f, .75f, .875f, 0});
  expectCycle(kLfoSawDown, {.875f, .75f, .625f, .5f, .375f, .25f, .125f, 1});
  expectCycle(kLfoSin, {s, .5f, c, 1, c, .5f, s, 0});
  expectCycle(kLfoCos, {c, 1, c, .5f, s, 0, s, .5f});
  expectCycle(kLfoSquare, {1, 1, 1, 0, 0, 0, 0, 1});
  expectCycle(kLfoImpulse, {0, 0, 0, 0, 0, 0, 0, 1});
  // Patterns: the step of phase k/8 is k - 1 (7.99999, not 8).
  expectCycle(kLfoPattern1, {1, 0, 1, 0, 1, 0, 0, 1});
  expectCycle(kLfoPattern1 + 1, {1, 0, 1, 0, 1, 1, 1, 1});
  expectCycle(kLfoPattern1 + 2, {1, 0, 0, 0, 1, 0, 1, 1});
  expectCycle(kLfoPattern1 + 3, {1, 0, 0, 1, 0, 0, 1, 1});
  expectCycle(kLfoPattern5, {1, 1, 0, 1, 1, 0, 1, 1});
  expectCycle(kLfoTriFree, {.25f, .5f, .75f, 1, .75f, .5f, .25f, 0});
}

TEST(Lfo, StopShapesRunOneCycleThenHoldZero) {
  float phase = 0.0f, previous = 0.0f, held = 0.0f;
  std::vector<float> saw, tri;
  float triPrevious = 0.0f, triHeld = 0.0f;
  for (int i = 0; i < 16; ++i) {
    phase = advanceLfoPhase(phase, 1, 8.0f, 120.0, kOneHertz);
    saw.push_back(lfoOutput(kLfoSawStop, phase, previous, held));
    tri.push_back(lfoOutput(kLfoTriStop, phase, triPrevious, triHeld));
  }
  EXPECT_FLOAT_EQ(saw[0], 0.875f);
  EXPECT_FLOAT_EQ(saw[6], 0.125f);
  EXPECT_FLOAT_EQ(tri[3], 1.0f);
  for (int i = 7; i < 16; ++i) EXPECT_EQ(saw[i] + tri[i], 0.0f) << i;
  EXPECT_EQ(held, 1.0f);
  // Nearly two cycles a tick: the phase runs back, a wrap from the second tick on.
  phase = previous = held = 0.0f;
  for (int i = 0; i < 4; ++i) {
    phase = advanceLfoPhase(phase, 15, 8.0f, 120.0, kOneHertz);  // 1.875 cycles
    EXPECT_EQ(lfoOutput(kLfoSawStop, phase, previous, held), i == 0 ? 0.125f : 0.0f);
  }
}

TEST(Lfo, RandomShapesHoldForACycleAndDrawAtTheWrap) {
  lfoRandomState = 4242u;
  const std::vector<float> random = cycle(kLfoRandom);
  lfoRandomState = 4242u;
  const float first = (lfoRandom() + 1.0f) * 0.5f;
  const float second = (lfoRandom() + 1.0f) * 0.5f;
  for (int i = 0; i < 7; ++i) EXPECT_EQ(random[i], first);
  EXPECT_EQ(random[7], second);

  // Rand Sine: n = trunc(h * h * 15 + 1) sine cycles in one LFO cycle.
  lfoRandomState = 99u;
  const std::vector<float> sine = cycle(kLfoRandSine);
  lfoRandomState = 99u;
  const float h = ((lfoRandom() + 1.0f) * 0.5f) * 0.5f + 0.5f;
  const float n = static_cast<float>(static_cast<int>(h * h * 15.0f + 1.0f));
  for (int i = 0; i < 7; ++i) {
    const float p = (i + 1) * 0.125f;
    EXPECT_NEAR(sine[i], (std::sin(n * p * 6.2831802f + 4.7123852f) + 1.0) * 0.5, 1e-6) << i;
  }

  randomState = 5u;
  const std::vector<float> noise = cycle(kLfoNoise);
  randomState = 5u;
  for (float v : noise) EXPECT_EQ(v, randomRange(0.0f, 1.0f));
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
    EXPECT_EQ(lfoOutput(kLfoImpulse, phase, previous, held), 0.0f);
  }
}

TEST(Lfo, RatesInHertzAndInBeats) {
  // 4 Hz (index 11) and "BPM * 2" (index 23) at 120 beats a minute: 4 cycles
  // a second either way.
  EXPECT_FLOAT_EQ(advanceLfoPhase(0.0f, 110, 44100.0f, 120.0, 11), 110.0f / 44100.0f * 4.0f);
  EXPECT_NEAR(advanceLfoPhase(0.0f, 110, 44100.0f, 120.0, 23), 110.0f / 44100.0f * 4.0f, 1e-8f);
  EXPECT_NEAR(advanceLfoPhase(0.0f, 110, 44100.0f, 90.0, 16), 110.0f / 44100.0f * 1.5f / 16, 1e-9f);
  EXPECT_NEAR(advanceLfoPhase(0.9f, 4410, 44100.0f, 120.0, 14), 0.1f, 1e-6f);  // 12 Hz, wrapped
  EXPECT_EQ(advanceLfoPhase(NAN, 110, 44100.0f, 120.0, 11), 0.0f);
  EXPECT_EQ(advanceLfoPhase(0.5f, 110, 44100.0f, 120.0, 29), 0.5f);  // no such rate
}

TEST(Lfo, AutoSpeedByTypeAndDestination) {
  EXPECT_EQ(autoLfoSpeed(kLfoTri, 0), 6);
  EXPECT_EQ(autoLfoSpeed(kLfoSawStop, 2), 6);
  EXPECT_EQ(autoLfoSpeed(kLfoSin, 3), 24);
  EXPECT_EQ(autoLfoSpeed(kLfoTriStop, 7), 24);
  EXPECT_EQ(autoLfoSpeed(kLfoNoise, 5), 13);
  EXPECT_EQ(autoLfoSpeed(kLfoPattern1 + 2, 0), 22);
  EXPECT_EQ(autoLfoSpeed(kLfoTriFree, 1), 0);
  EXPECT_EQ(autoLfoSpeed(kLfoTri, 8), 0);
}

TEST(Lfo, OwnGeneratorFollowsItsStateOnly) {
  lfoRandomState = 22222u;
  randomState = 1u;
  const uint32_t next = 22222u * 0x0BB38435u + 0x3619636Bu;
  const double scale = std::bit_cast<float>(0x300017D6u);  // 4.66e-10
  EXPECT_EQ(lfoRandom(), static_cast<float>(next * scale - 1.0));
  EXPECT_EQ(lfoRandomState.load(), next);
  EXPECT_EQ(randomState.load(), 1u);  // the shared generator is not touched
}

}  // namespace
}  // namespace sablevox
