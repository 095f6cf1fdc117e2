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
const OutputStage kStages[] = {drivePlain, driveOversampled2, driveOversampled8};

TEST(DriveStage, DriveZeroPassesBitExactlyAndFullDriveLimits) {
  for (OutputStage stage : kStages) {
    for (float drive : {0.0f, 0.0001f, NAN}) {
      std::vector<float> x(300);
      for (int i = 0; i < 300; ++i) x[i] = 5000.0f * std::sin(0.05f * i);
      x[7] = 1e-30f;  // no offset is added either
      const std::vector<float> before = x;
      float state = 123.0f;
      stage(x.data(), 300, kLow, kHigh, drive, state);
      EXPECT_EQ(x, before);
      EXPECT_EQ(state, 123.0f);
    }
    // f = 50: any level ends near 51/50 of the scale.
    std::vector<float> x(1000, 1e7f);
    float state = 0.0f;
    stage(x.data(), 1000, kLow, kHigh, 1.0f, state);
    EXPECT_NEAR(x[999], 1.02f * kHigh, 0.01f);
    for (float v : x) ASSERT_LE(v, 1.02f * kHigh + 0.001f);
  }
}

TEST(DriveStage, TinyDriveAtUltraLowPassesAtHighPassesStraight) {
  const float drive = 0.00011f;  // just on: f is about 0, only the filters differ
  std::vector<float> ultra(64, 1000.0f), high(64, 1000.0f);
  float ultraState = 0.0f, highState = 0.0f;
  driveOversampled8(ultra.data(), 64, kLow, kHigh, drive, ultraState);
  driveOversampled2(high.data(), 64, kLow, kHigh, drive, highState);
  EXPECT_NEAR(high[0], 1000.0f, 0.5f);  // a = 1 - d * 0.9: the state barely matters
  // a = 0.25 per sub-step: the mean of 1 - 0.75^k over eight sub-steps of a
  // step input is 0.6625 at the first sample, then it settles.
  EXPECT_NEAR(ultra[0], 662.5f, 1.0f);
  EXPECT_NEAR(ultra[63], 1000.0f, 0.5f);
}

}  // namespace
}  // namespace sablevox
