// The wave generator's own maths against independent references: the C
// library for the series, Fourier series of known shapes for the analysis,
// and the textbook values of the filter responses.
#include "wavegen/harmonic_shapes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "wavegen/wave_math.h"

namespace sablevox::wavegen {
namespace {

TEST(WavegenMaths, SeriesMatchTheLibraryOverTheRangesRecipesUse) {
  for (double x = -200.0; x <= 200.0; x += 0.37) {
    ASSERT_NEAR(detSin(x), std::sin(x), 1e-13) << x;
    ASSERT_NEAR(detCos(x), std::cos(x), 1e-13) << x;
  }
  for (double x = -60.0; x <= 60.0; x += 0.173) {
    ASSERT_NEAR(detExp(x) / std::exp(x), 1.0, 1e-14) << x;
  }
  for (double x = 1e-9; x < 1e9; x *= 1.7) {
    ASSERT_NEAR(detLog(x), std::log(x), 1e-13) << x;
    ASSERT_NEAR(detLog2(x), std::log2(x), 1e-13) << x;
    ASSERT_NEAR(detPow(x, -0.7) / std::pow(x, -0.7), 1.0, 1e-12) << x;
  }
  // Out-of-domain inputs give quiet, finite answers rather than NaN.
  EXPECT_EQ(detLog(0.0), -745.0);
  EXPECT_EQ(detLog(-1.0), -745.0);
  EXPECT_EQ(detPow(0.0, 2.0), 0.0);
  EXPECT_EQ(detSin(INFINITY), 0.0);
  EXPECT_EQ(detExp(-1000.0), 0.0);
  EXPECT_TRUE(std::isfinite(detExp(1000.0)));
  EXPECT_EQ(smoothStep(-1.0), 0.0);
  EXPECT_EQ(smoothStep(2.0), 1.0);
  EXPECT_NEAR(smoothStep(0.5), 0.5, 1e-15);
}

TEST(WavegenMaths, RandomIsRepeatableAndStaysInRange) {
  Random a(42);
  Random b(42);
  Random c(43);
  int differences = 0;
  double sum = 0.0;
  for (int i = 0; i < 10000; ++i) {
    const uint64_t x = a.next();
    ASSERT_EQ(x, b.next());
    differences += x != c.next();
    const double u = a.uniform();
    b.uniform();
    ASSERT_TRUE(u >= 0.0 && u < 1.0);
    sum += u;
    const int n = a.below(7);
    b.below(7);
    ASSERT_TRUE(n >= 0 && n < 7);
    const double r = a.range(-2.0, 3.0);
    b.range(-2.0, 3.0);
    ASSERT_TRUE(r >= -2.0 && r < 3.0);
  }
  EXPECT_GT(differences, 9990);
  EXPECT_NEAR(sum / 10000.0, 0.5, 0.01);
}

// A sampled cycle analysed by the FFT agrees with the exact pieces of the
// same shape, and a mix of sines comes back with its amplitudes whatever
// their phases. The shape is a ramp with a jump: in a continuous shape the
// terms of the pieces that a wrong sign would spoil cancel out.
TEST(WavegenSpectrum, AnalysedCyclesAgreeWithExactPiecesAndKnownSines) {
  constexpr int n = 4096;
  std::vector<double> cycle(n);
  for (int i = 0; i < n; ++i) {
    const double t = static_cast<double>(i) / n;
    cycle[static_cast<size_t>(i)] = t < 0.3 ? t / 0.3 : 0.0;
  }
  Spectrum sampled{};
  harmonicsOfCycle(cycle.data(), n, sampled);
  Spectrum exact{};
  const Segment fin[] = {{0.0, 0.3, 0.0, 1.0}};
  harmonicsOfSegments(fin, exact);
  // The sampled jump aliases by about 1 / (2 pi n).
  for (int k = 1; k <= 64; ++k) ASSERT_NEAR(sampled[k - 1], exact[k - 1], 2e-4) << k;

  for (int i = 0; i < n; ++i) {
    const double x = 2.0 * kPi * i / n;
    cycle[static_cast<size_t>(i)] =
        0.5 * std::sin(x) + 0.25 * std::cos(3.0 * x + 1.0) + 0.125 * std::sin(256.0 * x + 2.0);
  }
  harmonicsOfCycle(cycle.data(), n, sampled);
  for (int k = 1; k <= kHarmonics; ++k) {
    const double expected = k == 1 ? 0.5 : k == 3 ? 0.25 : k == 256 ? 0.125 : 0.0;
    ASSERT_NEAR(sampled[k - 1], expected, 1e-12) << k;
  }
}

TEST(WavegenSpectrum, FilterResponsesHaveTheirTextbookValues) {
  const double halfPower = 1.0 / std::sqrt(2.0);
  for (int order = 1; order <= 4; ++order) {
    EXPECT_NEAR(lowpass(10.0, 10.0, order), halfPower, 1e-12);
    EXPECT_NEAR(highpass(10.0, 10.0, order), halfPower, 1e-12);
    EXPECT_NEAR(lowpass(1.0, 100.0, order), 1.0, 1e-3);
    EXPECT_NEAR(highpass(100.0, 1.0, order), 1.0, 1e-3);
    // Roll-off of 6 dB an octave per order, far above the cut-off.
    EXPECT_NEAR(lowpass(200.0, 1.0, order) / lowpass(100.0, 1.0, order), std::pow(0.5, order),
                1e-3);
  }
  // Ladder: unity at 0 Hz whatever the feedback, a peak near the cut-off that
  // grows with it, and 24 dB an octave far above.
  EXPECT_NEAR(ladderLowpass(1e-9, 10.0, 3.0), 1.0, 1e-9);
  EXPECT_GT(ladderLowpass(10.0, 10.0, 3.5), ladderLowpass(10.0, 10.0, 2.0));
  EXPECT_GT(ladderLowpass(10.0, 10.0, 3.5), 3.0);
  EXPECT_NEAR(ladderLowpass(2000.0, 10.0, 0.0) / ladderLowpass(1000.0, 10.0, 0.0), 1.0 / 16.0,
              1e-3);
  // Formant: unity at 0 Hz, centre / bandwidth at the centre.
  EXPECT_NEAR(formant(0.0, 800.0, 100.0), 1.0, 1e-12);
  EXPECT_NEAR(formant(800.0, 800.0, 100.0), 8.0, 1e-12);
  EXPECT_NEAR(bump(5.0, 5.0, 2.0), 1.0, 1e-15);
  EXPECT_NEAR(bump(7.0, 5.0, 2.0), std::exp(-0.5), 1e-13);
  // Combs: a copy half a period of harmonic k late cancels it; feedback
  // combs peak at 1 on the multiples of the delay's inverse.
  EXPECT_NEAR(combFeedForward(5, 0.1, 1.0), 0.0, 1e-12);
  EXPECT_NEAR(combFeedForward(10, 0.1, 1.0), 1.0, 1e-12);
  EXPECT_NEAR(combFeedback(10, 0.1, 0.7), 1.0, 1e-12);
  EXPECT_NEAR(combFeedback(5, 0.1, 0.7), 0.3 / 1.7, 1e-12);
}

}  // namespace
}  // namespace sablevox::wavegen
