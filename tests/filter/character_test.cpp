// Each type has the character its name says: measured magnitude responses
// of the filter types, the hold of Resample and the half sine of AM.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "filter_test_support.h"

namespace sablevox {
namespace {

using test::gainAt;

enum class Shape { kLowPass, kHighPass, kPeak, kDip };

// Octave steps from 31 Hz to 16 kHz at 44100 Hz, c = 0.5 (about 1 kHz), r = 0.3.
std::vector<double> response(int step, int rate = 44100) {
  std::vector<double> gains;
  for (double hz = 31.25; hz <= 16000; hz *= 2) gains.push_back(gainAt(step, rate, 0.5f, 0.3f, hz));
  return gains;
}

void expectShape(int step, Shape shape, int rate = 44100) {
  const std::vector<double> g = response(step, rate);
  const double low = g.front(), high = g.back();
  const double top = *std::max_element(g.begin(), g.end());
  const double bottom = *std::min_element(g.begin(), g.end());
  const char* name = kFilterTypes[step].name;
  switch (shape) {
    case Shape::kLowPass:  // falls above the cutoff, further with distance
      EXPECT_GT(low, 0.5) << name;
      EXPECT_LT(high, low * 0.1) << name;
      EXPECT_LT(g[8], g[6] * 0.5) << name;
      break;
    case Shape::kHighPass:
      EXPECT_GT(high, 0.5) << name;
      EXPECT_LT(low, high * 0.1) << name;
      EXPECT_LT(g[0], g[1]) << name;
      break;
    case Shape::kPeak:  // a maximum inside the range, well above both ends
      EXPECT_GT(top, 1.4 * std::max(low, high)) << name;
      break;
    case Shape::kDip:
      EXPECT_LT(bottom, 0.6 * std::min(low, high)) << name;
      break;
  }
}

TEST(FilterCharacter, LowAndHighPassesFallOnTheirSide) {
  for (int step : {1, 2, 3, 4, 22, 23, 24, 38}) expectShape(step, Shape::kLowPass);
  for (int step : {5, 6, 25, 26}) expectShape(step, Shape::kHighPass);
  // A position is the same frequency at every rate.
  for (int rate : {22050, 96000}) {
    expectShape(1, Shape::kLowPass, rate);
    EXPECT_NEAR(gainAt(1, rate, 0.5f, 0.3f, 2000), gainAt(1, 44100, 0.5f, 0.3f, 2000), 0.02);
  }
}

TEST(FilterCharacter, BandsPeakAndNotchesDip) {
  // Band-passes, peaking equalisers, the band shapes and the vocal formants.
  for (int step : {7, 8, 9, 27, 29, 30, 31, 15, 14, 32, 33, 34, 35, 36, 37}) {
    expectShape(step, Shape::kPeak);
  }
  for (int step : {10, 28}) expectShape(step, Shape::kDip);
}

TEST(FilterCharacter, PhaserPassesDcUnchanged) {
  for (float r : {0.0f, 0.6f, 1.0f}) {
    auto state = test::newState();
    const FilterRoutine routine = test::designStep(13, 44100, 0.5f, r, *state);
    std::vector<float> dc(20000, 1000.0f);
    routine(dc.data(), 20000, *state);
    // Exactly in the words; the float loop's rounding leaves a trace.
    EXPECT_NEAR(dc.back(), 1000.0f, 2.0f) << r;
  }
}

TEST(FilterCharacter, ResampleHoldsTheAverage) {
  auto state = test::newState();
  const FilterRoutine routine = test::designStep(16, 96000, 0.0f, 0.5f, *state);
  std::vector<float> ramp(292 * 3);
  for (int i = 0; i < int(ramp.size()); ++i) ramp[i] = float(i);
  routine(ramp.data(), int(ramp.size()), *state);
  // Held from the last sample of each run of 292: the mean of that run.
  EXPECT_EQ(ramp[290], 0.0f);
  for (int i = 291; i < 291 + 292; ++i) EXPECT_FLOAT_EQ(ramp[i], 145.5f) << i;
  EXPECT_FLOAT_EQ(ramp[291 + 292], 145.5f + 292.0f);
}

TEST(FilterCharacter, AmModulatesWithAHalfSine) {
  auto state = test::newState();
  const FilterRoutine routine = test::designStep(17, 44100, 0.7f, 1.0f, *state);
  const int period = int(1.0f / state->set1[0]);
  std::vector<float> ones(period * 4, 1.0f);
  routine(ones.data(), int(ones.size()), *state);
  int resting = 0;
  float top = 0;
  for (float v : ones) {
    resting += v < 0.001f;
    top = std::max(top, v);
  }
  EXPECT_NEAR(resting, period * 2, 8);
  EXPECT_NEAR(top, 1.0f, 0.01f);  // the nearest sample to the crest
}

}  // namespace
}  // namespace sablevox
