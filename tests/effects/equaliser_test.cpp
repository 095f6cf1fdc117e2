// Equaliser: the shelves' response from their coefficients, the DC remover's
// approach to the offset, and the silence count over both channels.
#include "effects/equaliser.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "effect_test_support.h"

namespace sablevox {
namespace {

using testing::Stereo2;

// |H| of a section at a frequency; b1 and b2 are subtracted in the loop.
double gainAt(const EqualiserSection& s, double frequency, double rate) {
  const std::complex<double> z1 = std::polar(1.0, -2.0 * std::numbers::pi * frequency / rate);
  const std::complex<double> z2 = z1 * z1;
  const double a0 = s.a0, a1 = s.a1, a2 = s.a2, b1 = s.b1, b2 = s.b2;
  return std::abs((a0 + a1 * z1 + a2 * z2) / (1.0 + b1 * z1 + b2 * z2));
}

double decibels(double gain) {
  return 20.0 * std::log10(gain);
}

// Shelves of +7 dB below 130 Hz and +3 dB towards the top, with half their
// gain at the cutoff; the high cutoff is pulled to 0.49 of the rate.
TEST(Equaliser, ShelvesHaveTheirGainsAndHalfAtTheCutoff) {
  for (float rate : {16000.0f, 22050.0f, 44100.0f, 192000.0f}) {
    Equaliser eq;
    eq.setSampleRate(rate);
    const double nyquist = rate * 0.5;
    const double highCutoff = std::min(10000.0, rate * static_cast<double>(0.49f));
    // Float coefficients of a 130 Hz shelf at high rates cost a little DC accuracy.
    const double tolerance = rate > 50000.0f ? 0.1 : 0.01;
    for (int channel = 0; channel < 2; ++channel) {
      const EqualiserSection& low = eq.section(2 * channel);
      const EqualiserSection& high = eq.section(2 * channel + 1);
      EXPECT_NEAR(decibels(gainAt(low, 0.0, rate)), 7.0, tolerance) << rate;
      EXPECT_NEAR(decibels(gainAt(low, 130.0, rate)), 3.5, tolerance) << rate;
      EXPECT_NEAR(decibels(gainAt(low, nyquist, rate)), 0.0, tolerance) << rate;
      EXPECT_NEAR(decibels(gainAt(high, 0.0, rate)), 0.0, tolerance) << rate;
      EXPECT_NEAR(decibels(gainAt(high, highCutoff, rate)), 1.5, tolerance) << rate;
    }
  }
}

// The DC tracker stalls once its step falls below half a float step of its
// level, so a small constant is used: the residue is then below 1e-06.
TEST(Equaliser, ConstantInputApproachesTheOffset) {
  Equaliser eq;
  eq.setSampleRate(44100.0f);
  eq.setGain(1.0f);
  Stereo2 s(5 * 44100);
  std::fill(s.left.begin(), s.left.end(), 0.01f);
  std::fill(s.right.begin(), s.right.end(), -0.01f);
  testing::runBlocks(eq, s, 1024);
  EXPECT_NEAR(s.left.back(), 1e-05f, 1e-6f);
  EXPECT_NEAR(s.right.back(), 1e-05f, 1e-6f);
  EXPECT_GT(eq.silenceCount(), 44100);
}

// One count for both channels: the left block runs first, then the right.
TEST(Equaliser, SilenceCountSpansBothChannels) {
  Equaliser eq;
  eq.setSampleRate(44100.0f);
  eq.setGain(1.0f);
  auto run = [&eq](int n, int clickLeft, int clickRight) {
    Stereo2 s(n);
    if (clickLeft >= 0) s.left[clickLeft] = 0.5f;
    if (clickRight >= 0) s.right[clickRight] = 0.5f;
    eq.process(s.left.data(), s.right.data(), n);
    return eq.silenceCount();
  };
  EXPECT_EQ(run(1000, -1, -1), 2000);
  // A click on the right wipes what the left block counted; the count
  // restarts once its ring (through the DC remover) has fallen below 0.0005.
  const int afterClick = run(5000, -1, 0);
  EXPECT_GT(afterClick, 0);
  EXPECT_LT(afterClick, 5000);
  EXPECT_EQ(run(1000, -1, -1), afterClick + 2000);
  // A click at the end of the left block: only the silent right block counts.
  EXPECT_EQ(run(1000, 999, -1), 1000);
  eq.reset();
  EXPECT_EQ(eq.silenceCount(), 0);
}

}  // namespace
}  // namespace sablevox
