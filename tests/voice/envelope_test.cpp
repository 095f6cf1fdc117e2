// Both envelopes tick by tick through their edge cases, and the release pop.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "host/numeric.h"
#include "voice/envelopes.h"
#include "voice/voice.h"

namespace sablevox {
namespace {

struct Volume {
  float a, d, s, r;
  uint8_t gate = 1, state = kEnvAttack;
  float core = 1.0f, level = 0.0f;
  float tick() { return stepVolumeEnvelope(a, d, s, r, gate, state, core, level); }
};

struct Filter {
  float a, d, s, r;
  uint8_t gate = 1, state = kEnvAttack;
  float level = 0.0f;
  float tick() { return stepFilterEnvelope(a, d, s, r, gate, state, level); }
};

TEST(VolumeEnvelope, FactorEndsAtZeroAndAtTheLongestTime) {
  EXPECT_NEAR(volumeFactor(0.0f), 0.0f, 1e-8f);
  EXPECT_FLOAT_EQ(volumeFactor(1.0f), 0.9997f);
  EXPECT_FLOAT_EQ(volumeFactor(0.5f), (1.0f - 0.99f * std::pow(0.5f, 6.0f) - 0.005f) * 0.9997f);
}

TEST(VolumeEnvelope, AttackZeroReachesFullLevelThenDecays) {
  Volume e{0.0f, 0.5f, 0.5f, 0.5f};
  EXPECT_FLOAT_EQ(e.tick(), 1.0f);
  EXPECT_EQ(e.state, kEnvAttack);
  EXPECT_NEAR(e.core, 0.0f, 1e-7f);
  e.tick();
  EXPECT_EQ(e.state, kEnvDecay);
  EXPECT_FLOAT_EQ(e.core, 1.0f);
  // Decay: multiplied by the factor down to the sustain level, then state 3.
  const float g = volumeFactor(0.5f);
  float expected = 1.0f;
  while (expected * g > 0.5f) {
    expected *= g;
    ASSERT_FLOAT_EQ(e.tick(), expected);
    ASSERT_EQ(e.state, kEnvDecay);
  }
  expected *= g;
  EXPECT_FLOAT_EQ(e.tick(), expected);  // the last step still multiplies
  EXPECT_FLOAT_EQ(e.tick(), 0.5f);
  EXPECT_EQ(e.state, kEnvSustain);
}

TEST(VolumeEnvelope, AttackRisesAsAMirroredFallAndHandsOverNearNinety) {
  Volume e{0.6f, 0.5f, 0.5f, 0.5f};
  const float g = volumeFactor(0.6f);
  float core = 1.0f;
  while (core > 0.1f) {
    core *= g;
    ASSERT_FLOAT_EQ(e.tick(), 1.0f - core);
    ASSERT_EQ(e.state, kEnvAttack);
  }
  EXPECT_FLOAT_EQ(e.tick(), 1.0f - core);
  EXPECT_EQ(e.state, kEnvDecay);
  EXPECT_GT(e.level, 0.9f);
}

TEST(VolumeEnvelope, SustainOneJumpsToFullLevelAtTheFirstDecayTick) {
  Volume e{0.3f, 0.5f, 1.0f, 0.5f};
  while (e.state == kEnvAttack) e.tick();
  EXPECT_LT(e.level, 0.95f);
  EXPECT_FLOAT_EQ(e.tick(), 1.0f);
  EXPECT_EQ(e.state, kEnvSustain);
}

TEST(VolumeEnvelope, ReleaseZeroEndsInTwoTicksBelowZero) {
  Volume e{0.0f, 0.5f, 0.8f, 0.0f};
  for (int i = 0; i < 100 && e.state != kEnvSustain; ++i) e.tick();
  EXPECT_EQ(e.state, kEnvSustain);
  e.gate = 0;
  e.tick();  // sustain sees the gate fall
  EXPECT_EQ(e.state, kEnvRelease);
  EXPECT_NEAR(e.tick(), -0.01f, 1e-7f);
  EXPECT_NEAR(e.core, 0.0f, 1e-7f);
  EXPECT_EQ(e.tick(), 0.0f);
  EXPECT_EQ(e.state, kEnvIdle);
  EXPECT_EQ(e.tick(), 0.0f);  // idle does nothing
}

TEST(VolumeEnvelope, DecayBelowTheFloorEntersSustainAndAReleasedKeyEnds) {
  // Sustain 0: the decay reaches the floor, the voice holds at 0 while gated.
  Volume e{0.0f, 0.0f, 0.0f, 0.5f};
  e.tick();
  e.tick();
  e.tick();  // the decay factor 0 takes the core to about 0 at once
  EXPECT_EQ(e.state, kEnvDecay);
  e.tick();  // at the floor: idle for a moment, then sustain at level 0
  EXPECT_EQ(e.state, kEnvSustain);
  EXPECT_EQ(e.level, 0.0f);
  e.gate = 0;
  e.tick();
  EXPECT_EQ(e.state, kEnvRelease);
  e.tick();
  EXPECT_EQ(e.state, kEnvIdle);
}

TEST(VolumeEnvelope, ReleasePopInvertsTheSoundingLevel) {
  Volume e{0.4f, 0.5f, 0.75f, 0.5f};
  while (e.state != kEnvSustain) e.tick();
  // noteOff with envVolPop: attack without a gate.
  e.state = kEnvAttack;
  e.gate = 0;
  const float popped = 1.0f - volumeFactor(0.4f) * 0.75f;
  EXPECT_FLOAT_EQ(e.tick(), popped);
  EXPECT_EQ(e.state, kEnvRelease);
  EXPECT_FLOAT_EQ(e.core, popped);
  EXPECT_FLOAT_EQ(e.tick(), popped * volumeFactor(0.5f) - 0.01f);
}

float filterStep(float t) {
  return static_cast<float>(fastExp(t * -7.0f)) * 0.25f;
}

TEST(FilterEnvelope, ShortAttackJumpsToFullAndTheShapesMeetAtOne) {
  for (float attack : {0.0f, 0.01f}) {
    Filter e{attack, 0.5f, 0.5f, 0.5f};
    EXPECT_EQ(e.tick(), 1.0f);
    EXPECT_EQ(e.state, kEnvDecay);
  }
  Filter e{0.5f, 0.5f, 0.5f, 0.5f};
  const float v = filterStep(0.5f) * 2.0f;
  EXPECT_FLOAT_EQ(e.tick(), (2.0f - v) * v);  // rising edge bent up
  EXPECT_EQ(e.state, kEnvAttack);
  while (e.state == kEnvAttack) e.tick();
  EXPECT_EQ(e.level, 1.0f);
  const float down = 1.0f - filterStep(0.5f);
  EXPECT_FLOAT_EQ(e.tick(), down * down * 0.7f + down * 0.3f);  // falling bent down
}

TEST(FilterEnvelope, ReleaseInDecayWaitsForTheSustainUnlessDecayIsSlower) {
  // Decay not above release: decays to the sustain level, then releases.
  Filter slow{0.0f, 0.3f, 0.2f, 0.3f};
  slow.tick();
  slow.gate = 0;
  slow.tick();
  EXPECT_EQ(slow.state, kEnvDecay);
  while (slow.state == kEnvDecay) slow.tick();
  EXPECT_EQ(slow.state, kEnvSustain);
  EXPECT_FLOAT_EQ(slow.level, (2.0f - 0.2f) * 0.2f);
  slow.tick();
  EXPECT_EQ(slow.state, kEnvRelease);
  // Decay above release: released at once.
  Filter fast{0.0f, 0.31f, 0.2f, 0.3f};
  fast.tick();
  fast.gate = 0;
  fast.tick();
  EXPECT_EQ(fast.state, kEnvRelease);
  EXPECT_FLOAT_EQ(fast.level, 1.0f - filterStep(0.31f));
  // The release steps down to 0 and ends.
  while (fast.state == kEnvRelease) {
    const float before = fast.level;
    fast.tick();
    if (fast.state == kEnvRelease) {
      ASSERT_FLOAT_EQ(fast.level, std::max(0.0f, before - filterStep(0.3f)));
    }
  }
  EXPECT_EQ(fast.level, 0.0f);
}

TEST(FilterEnvelope, DecayZeroBehavesAsOneHundredth) {
  // Also in the comparison with the release: 0.01 is not above 0.01.
  Filter zero{0.0f, 0.0f, 0.3f, 0.01f}, floor{0.0f, 0.01f, 0.3f, 0.01f};
  zero.tick();
  floor.tick();
  zero.gate = floor.gate = 0;
  for (int i = 0; i < 7; ++i) {
    ASSERT_EQ(zero.tick(), floor.tick());
    ASSERT_EQ(zero.state, floor.state);
  }
  EXPECT_EQ(zero.state, kEnvRelease);
}

}  // namespace
}  // namespace sablevox
