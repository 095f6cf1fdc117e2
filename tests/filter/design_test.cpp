// What the design does beyond the regression renders (one rate, in range):
// the cutoff law at every rate, the clamps and unknown codes, what copy and
// reset cover, and the resample hold at every rate. Each type's words and
// routine are pinned by the renders of all types.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "filter/biquad_design.h"
#include "filter/cutoff_law.h"
#include "filter_test_support.h"

namespace sablevox {
namespace {

using test::designStep;
using test::newState;

TEST(CutoffLaw, MapsPositionsToTheSameHzAtEveryRate) {
  // 0.022823 is the ideal parabola of the fast exponential; its 9-bit
  // squared term lands 8e-6 lower (1006.1 Hz instead of 1006.5 Hz).
  EXPECT_NEAR(cutoffLaw(0.5f, 44100), 0.022823, 1e-5);
  for (float x : {0.0f, 0.3f, 1.0f}) {
    const double hz = rawCutoffLaw(x, 44100) * 44100.0;
    for (int rate : {8000, 22050, 96000, 192000, 384000}) {
      EXPECT_NEAR(rawCutoffLaw(x, rate) * double(rate), hz, hz * 1e-6) << x << " " << rate;
    }
  }
  EXPECT_NEAR(rawCutoffLaw(0.0f, 44100) * 44100.0, 50.3, 0.1);
  EXPECT_NEAR(rawCutoffLaw(1.0f, 44100) * 44100.0, 19845.0, 0.01);
  // Only the limits are relative to the rate: the top at 22050 Hz is 9922.5 Hz.
  EXPECT_FLOAT_EQ(cutoffLaw(1.0f, 22050) * 22050.0f, 9922.5f);
  EXPECT_FLOAT_EQ(cutoffLaw(-4.0f, 44100), 0.0001f);
  EXPECT_FLOAT_EQ(cutoffLaw(3.0f, 192000), 0.45f);
}

TEST(FilterDesign, StoresClampedHeaderAndIgnoresUnknownCodes) {
  auto state = newState();
  designFilter(0, 44100, 1.7f, -0.3f, *state);
  EXPECT_EQ(state->code, 0.0f);
  EXPECT_EQ(state->sampleRate, 44100.0f);
  EXPECT_EQ(state->cutoff, 1.0f);
  EXPECT_EQ(state->resonance, 0.0f);
  designFilter(0, 44100, std::numeric_limits<float>::quiet_NaN(), 2.0f, *state);
  EXPECT_EQ(state->cutoff, 0.0f);
  EXPECT_EQ(state->resonance, 1.0f);
  // A code outside the table writes the four header words and nothing else.
  for (int code : {39, 255, -1, 1000}) {
    std::fill_n(test::words(*state), test::kRecordWords, 7.0f);
    EXPECT_EQ(designFilter(code, 48000, 0.5f, 0.5f, *state), filterNone);
    EXPECT_EQ(state->code, float(code));
    EXPECT_EQ(state->sampleRate, 48000.0f);
    for (int w = 4; w < test::kRecordWords; ++w) EXPECT_EQ(test::words(*state)[w], 7.0f) << w;
  }
}

// Copy takes the header and the mode's coefficients, never running values;
// reset clears the mode's running values and nothing else.
TEST(FilterDesign, CopyAndResetCoverWhatTheModeSays) {
  const struct {
    int code, set1Copied, set2Copied, set2Cleared;
    bool histories, hist2, line;
  } kModes[] = {
      {0, 5, 5, 0, true, true, false},     // biquad pair
      {28, 5, 0, 3, false, false, false},  // state-variable
      {35, 2, 0, 1, false, false, false},  // AM: the phase
      {41, 2, 0, 3, false, false, false},  // Resample: held, sum, count
      {36, 8, 0, 5, true, false, true},    // FM: all of the line
      {42, 8, 0, 5, true, false, false},   // ladder
      {63, 8, 0, 5, true, false, false},   // noisy ladder: the pink words survive
  };
  for (const auto& m : kModes) {
    auto left = newState(), right = newState();
    designFilter(m.code, 44100, 0.6f, 0.4f, *left);
    std::fill_n(test::words(*left) + 14, 13, 5.0f);  // running values of the left channel
    std::fill_n(test::words(*right), test::kRecordWords, 9.0f);
    copyFilterSettings(*left, *right);
    const float* l = test::words(*left);
    const float* r = test::words(*right);
    for (int w = 0; w < test::kRecordWords; ++w) {
      const bool copied =
          w < 6 || (w >= 6 && w < 6 + m.set1Copied) || (w >= 14 && w < 14 + m.set2Copied);
      EXPECT_EQ(r[w], copied ? l[w] : 9.0f) << m.code << " word " << w;
    }
    left->line[kFilterLineLength - 1] = 5.0f;
    left->lineWritten = kFilterLineLength;  // as the FM routine marks a full line
    resetFilter(*left);
    for (int w = 14; w < test::kRecordWords; ++w) {
      const bool cleared = (w < 14 + m.set2Cleared) || (w >= 19 && w < 23 && m.histories) ||
                           (w >= 23 && (m.hist2 || m.line));
      EXPECT_EQ(l[w], cleared ? 0.0f : 5.0f) << m.code << " word " << w;
    }
    EXPECT_EQ(left->line[kFilterLineLength - 1], m.line ? 0.0f : 5.0f) << m.code;
  }
}

TEST(FilterDesign, ResampleHoldLengthDependsOnCutoffAlone) {
  for (int rate : {22050, 44100, 96000, 192000}) {
    auto state = newState();
    designStep(16, rate, 0.0f, 0.7f, *state);
    EXPECT_EQ(state->set1[0], 292.0f) << rate;
    EXPECT_FLOAT_EQ(state->set1[1], 1.0f / 292.0f);
    float firstSingle = 2.0f;
    for (float c = 1.0f; c > 0.5f; c -= 0.001f) {
      designStep(16, rate, c, 0.0f, *state);
      if (state->set1[0] == 1.0f) firstSingle = c;
    }
    EXPECT_NEAR(firstSingle, 0.84f, 0.01f) << rate;
  }
}

}  // namespace
}  // namespace sablevox
