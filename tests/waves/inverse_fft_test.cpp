// The inverse real FFT against the direct sum of its defining formula.
#include "waves/inverse_fft.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

namespace sablevox {
namespace {

std::vector<double> directSum(const std::vector<float>& b) {
  const int n = static_cast<int>(b.size());
  std::vector<double> x(static_cast<size_t>(n));
  for (int j = 0; j < n; ++j) {
    double sum = b[0] + ((j & 1) ? -1.0 : 1.0) * b[n / 2];
    for (int k = 1; k < n / 2; ++k) {
      const double angle = 2.0 * std::numbers::pi * k * j / n;
      sum += 2.0 * (b[k] * std::cos(angle) - b[n - k] * std::sin(angle));
    }
    x[j] = sum;
  }
  return x;
}

TEST(InverseRealFft, MatchesTheDirectSumAtEverySize) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<float> amplitude(-65535.0f, 65535.0f);
  for (int n = 2; n <= kMaxFftSize; n *= 2) {
    for (int trial = 0; trial < 3; ++trial) {
      std::vector<float> b(static_cast<size_t>(n));
      double magnitude = 0.0;
      for (float& v : b) {
        v = amplitude(rng);
        magnitude += 2.0 * std::fabs(v);
      }
      const std::vector<double> expected = directSum(b);
      inverseRealFft(b.data(), n);
      // Float rounding grows with the number of stages.
      const double tolerance = 1e-7 * magnitude * std::log2(n);
      for (int j = 0; j < n; ++j)
        ASSERT_NEAR(b[j], expected[j], tolerance) << "n " << n << " j " << j;
    }
  }
}

TEST(InverseRealFft, SingleBinsGiveExactShapes) {
  // Imaginary part A at bin 1: -2A sin, sampled at a quarter cycle.
  std::vector<float> b(16, 0.0f);
  b[15] = 100.0f;
  inverseRealFft(b.data(), 16);
  EXPECT_FLOAT_EQ(b[0], 0.0f);
  EXPECT_FLOAT_EQ(b[4], -200.0f);
  EXPECT_FLOAT_EQ(b[12], 200.0f);
  // The Nyquist bin alternates.
  std::vector<float> nyquist(8, 0.0f);
  nyquist[4] = 3.0f;
  inverseRealFft(nyquist.data(), 8);
  for (int j = 0; j < 8; ++j) EXPECT_FLOAT_EQ(nyquist[j], (j & 1) ? -3.0f : 3.0f);
}

TEST(InverseRealFft, IgnoresSizesItCannotTransform) {
  for (int n : {0, 1, 3, 6, 2048}) {
    std::vector<float> b(static_cast<size_t>(n > 0 ? n : 1), 1.0f);
    inverseRealFft(b.data(), n);
    for (float v : b) EXPECT_EQ(v, 1.0f);
  }
}

}  // namespace
}  // namespace sablevox
