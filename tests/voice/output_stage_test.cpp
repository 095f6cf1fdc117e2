// The drive stage: untouched at Drive 0, limited at full drive, and the
// oversampled variants' low-pass in front of the shaper.
#include "voice/output_stage.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <vector>

#include "voice/render_types.h"

namespace sablevox {
namespace {

const float kLow = std::bit_cast<float>(0x3B83126Fu);
const float kHigh = std::bit_cast<float>(0x4379FFFFu);

struct Stage {
  const char* name;
  OutputStage run;
};
const Stage kStages[] = {{"plain", drivePlain},
                         {"oversampled2", driveOversampled2},
                         {"oversampled8", driveOversampled8}};

std::vector<float> sine(int n, float amplitude) {
  std::vector<float> x(n);
  for (int i = 0; i < n; ++i) x[i] = amplitude * std::sin(0.05f * i);
  return x;
}

TEST(DriveStage, DriveZeroPassesBitExactlyAndLeavesTheState) {
  for (const Stage& s : kStages) {
    for (float drive : {0.0f, 0.0001f, -1.0f, NAN}) {
      std::vector<float> x = sine(300, 5000.0f);
      x[7] = 1e-30f;  // no offset is added either
      const std::vector<float> before = x;
      float state = 123.0f;
      s.run(x.data(), 300, kLow, kHigh, drive, state);
      EXPECT_EQ(x, before) << s.name << " at drive " << drive;
      EXPECT_EQ(state, 123.0f);
    }
    // Nor does anything happen without driveLow.
    std::vector<float> x = sine(16, 100.0f);
    const std::vector<float> before = x;
    float state = 0.0f;
    s.run(x.data(), 16, 0.0f, kHigh, 1.0f, state);
    EXPECT_EQ(x, before);
  }
}

TEST(DriveStage, FullDriveLimitsAnyLevelNear255) {
  // f = 50: shape(s) tends to 51/50 of the scale for large s.
  for (const Stage& s : kStages) {
    std::vector<float> x(2000, 1e7f);
    for (int i = 1000; i < 2000; ++i) x[i] = -1e7f;
    float state = 0.0f;
    s.run(x.data(), 2000, kLow, kHigh, 1.0f, state);
    EXPECT_NEAR(x[999], 1.02f * kHigh, 0.01f) << s.name;
    EXPECT_NEAR(x[1999], -1.02f * kHigh, 0.01f) << s.name;
    for (float v : x) ASSERT_LE(std::abs(v), 1.02f * kHigh + 0.001f);
  }
  // A small signal passes at the gain f + 1 = 51.
  std::vector<float> x{0.001f};
  float state = 0.0f;
  drivePlain(x.data(), 1, kLow, kHigh, 1.0f, state);
  EXPECT_NEAR(x[0], 0.051f, 1e-4f);
}

TEST(DriveStage, TinyDriveAtUltraLowPassesAtHighPassesStraight) {
  // Just above the switch: f is about 0, so only the filters in front differ.
  const float drive = 0.00011f;
  std::vector<float> ultra(64, 1000.0f), high(64, 1000.0f);
  float ultraState = 0.0f, highState = 0.0f;
  driveOversampled8(ultra.data(), 64, kLow, kHigh, drive, ultraState);
  driveOversampled2(high.data(), 64, kLow, kHigh, drive, highState);
  // "high": a = 1 - d * 0.9 is nearly 1, the state barely matters.
  EXPECT_NEAR(high[0], 1000.0f, 0.5f);
  // "ultra": a = 0.25 per sub-step; the mean of 1 - 0.75^k over the eight
  // sub-steps of a step input is 0.6625 at the first sample, then it settles.
  EXPECT_NEAR(ultra[0], 662.5f, 1.0f);
  EXPECT_LT(ultra[0], ultra[1]);
  EXPECT_NEAR(ultra[63], 1000.0f, 0.5f);
  EXPECT_NE(ultraState, 0.0f);
}

}  // namespace
}  // namespace sablevox
