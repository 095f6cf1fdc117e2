// Both envelopes tick by tick through their edge cases, and the release pop.
#include <gtest/gtest.h>

#include <algorithm>

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
  void tickUntil(uint8_t wanted) {
    for (int i = 0; i < 2000 && state != wanted; ++i) tick();
  }
};

struct Filter {
  float a, d, s, r;
  uint8_t gate = 1, state = kEnvAttack;
  float level = 0.0f;
  float tick() { return stepFilterEnvelope(a, d, s, r, gate, state, level); }
};

float filterStep(float t) {
  return static_cast<float>(fastExp(t * -7.0f)) * 0.25f;
}

TEST(VolumeEnvelope, AttackZeroThenDecayToSustain) {
  Volume e{0.0f, 0.5f, 0.5f, 0.5f};
  EXPECT_FLOAT_EQ(e.tick(), 1.0f);
  EXPECT_EQ(e.state, kEnvAttack);
  EXPECT_NEAR(e.core, 0.0f, 1e-7f);
  e.tick();
  EXPECT_EQ(e.state, kEnvDecay);
  EXPECT_FLOAT_EQ(e.core, 1.0f);
  // The decay multiplies until it has passed the sustain level, then holds.
  const float g = volumeFactor(0.5f);
  float expected = 1.0f;
  do {
    expected *= g;
    ASSERT_FLOAT_EQ(e.tick(), expected);
  } while (expected > 0.5f);
  EXPECT_FLOAT_EQ(e.tick(), 0.5f);
  EXPECT_EQ(e.state, kEnvSustain);
}

TEST(VolumeEnvelope, SustainOneJumpsToFullLevelAtTheFirstDecayTick) {
  Volume e{0.3f, 0.5f, 1.0f, 0.5f};
  e.tickUntil(kEnvDecay);
  EXPECT_LT(e.level, 0.95f);  // the attack hands over near 0.9
  EXPECT_FLOAT_EQ(e.tick(), 1.0f);
  EXPECT_EQ(e.state, kEnvSustain);
}

TEST(VolumeEnvelope, ReleaseZeroEndsInTwoTicksBelowZero) {
  Volume e{0.0f, 0.5f, 0.8f, 0.0f};
  e.tickUntil(kEnvSustain);
  e.gate = 0;
  e.tick();
  EXPECT_EQ(e.state, kEnvRelease);
  EXPECT_NEAR(e.tick(), -0.01f, 1e-7f);
  EXPECT_EQ(e.tick(), 0.0f);
  EXPECT_EQ(e.state, kEnvIdle);
}

TEST(VolumeEnvelope, ReleasePopInvertsTheSoundingLevel) {
  Volume e{0.4f, 0.5f, 0.75f, 0.5f};
  e.tickUntil(kEnvSustain);
  e.state = kEnvAttack;  // noteOff with envVolPop: an attack without a gate
  e.gate = 0;
  const float popped = 1.0f - volumeFactor(0.4f) * 0.75f;
  EXPECT_FLOAT_EQ(e.tick(), popped);
  EXPECT_EQ(e.state, kEnvRelease);
  EXPECT_FLOAT_EQ(e.tick(), popped * volumeFactor(0.5f) - 0.01f);
}

TEST(FilterEnvelope, ShortAttackJumpsAndTheShapesBendBothWays) {
  for (float attack : {0.0f, 0.01f}) {
    Filter e{attack, 0.5f, 0.5f, 0.5f};
    EXPECT_EQ(e.tick(), 1.0f);
    EXPECT_EQ(e.state, kEnvDecay);
  }
  Filter e{0.5f, 0.5f, 0.5f, 0.5f};
  const float up = filterStep(0.5f) * 2.0f;
  EXPECT_FLOAT_EQ(e.tick(), (2.0f - up) * up);
  while (e.state == kEnvAttack) e.tick();
  const float down = 1.0f - filterStep(0.5f);
  EXPECT_FLOAT_EQ(e.tick(), down * down * 0.7f + down * 0.3f);
}

TEST(FilterEnvelope, ReleaseInDecayWaitsForTheSustainUnlessDecayIsSlower) {
  Filter slow{0.0f, 0.3f, 0.2f, 0.3f}, fast{0.0f, 0.31f, 0.2f, 0.3f};
  slow.tick();
  fast.tick();
  slow.gate = fast.gate = 0;
  slow.tick();
  fast.tick();
  EXPECT_EQ(slow.state, kEnvDecay);
  EXPECT_EQ(fast.state, kEnvRelease);
  EXPECT_FLOAT_EQ(fast.level, 1.0f - filterStep(0.31f));
  while (slow.state == kEnvDecay) slow.tick();
  EXPECT_EQ(slow.state, kEnvSustain);
  EXPECT_FLOAT_EQ(slow.level, (2.0f - 0.2f) * 0.2f);
  slow.tick();
  EXPECT_EQ(slow.state, kEnvRelease);
  // The release steps down, stops at 0 and ends a tick later.
  for (float before = fast.level; fast.state == kEnvRelease; before = fast.level) {
    fast.tick();
    ASSERT_FLOAT_EQ(fast.level, std::max(0.0f, before - filterStep(0.3f)));
  }
  EXPECT_EQ(fast.state, kEnvIdle);
}

TEST(FilterEnvelope, DecayZeroBehavesAsOneHundredth) {
  // Also in the comparison with the release: 0.01 is not above 0.01.
  Filter zero{0.0f, 0.0f, 0.3f, 0.01f}, floor{0.0f, 0.01f, 0.3f, 0.01f};
  zero.gate = floor.gate = 0;
  for (int i = 0; i < 7; ++i) {
    ASSERT_EQ(zero.tick(), floor.tick());
    ASSERT_EQ(zero.state, floor.state);
  }
  EXPECT_EQ(zero.state, kEnvRelease);
}

}  // namespace
}  // namespace sablevox
