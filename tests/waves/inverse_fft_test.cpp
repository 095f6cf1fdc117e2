// The inverse real FFT against the direct sum of its defining formula.
#include "waves/inverse_fft.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

namespace sablevox {
namespace {

// x[j] = b0 + (-1)^j b[n/2] + 2 sum (b[k] cos - b[n-k] sin), in double.
double directSum(const std::vector<float>& b, int j) {
  const int n = static_cast<int>(b.size());
  double sum = b[0] + ((j & 1) ? -1.0 : 1.0) * b[n / 2];
  for (int k = 1; k < n / 2; ++k) {
    const double angle = 2.0 * std::numbers::pi * k * j / n;
    sum += 2.0 * (b[k] * std::cos(angle) - b[n - k] * std::sin(angle));
  }
  return sum;
}

TEST(InverseRealFft, MatchesTheDirectSumAtEverySize) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<float> amplitude(-65535.0f, 65535.0f);
  for (int n = 2; n <= kMaxFftSize; n *= 2) {
    std::vector<float> b(static_cast<size_t>(n));
    double magnitude = 0.0;
    for (float& v : b) {
      v = amplitude(rng);
      magnitude += 2.0 * std::fabs(v);
    }
    const std::vector<float> input = b;
    inverseRealFft(b.data(), n);
    // Float rounding grows with the number of stages; a wrong sign, bin or
    // permutation is off by the size of the amplitudes.
    const double tolerance = 1e-7 * magnitude * std::log2(n);
    for (int j = 0; j < n; ++j) ASSERT_NEAR(b[j], directSum(input, j), tolerance) << n << " " << j;
  }
}

TEST(InverseRealFft, IgnoresSizesItCannotTransform) {
  for (int n : {0, 1, 3, 6, 2048}) {
    std::vector<float> b(static_cast<size_t>(n > 0 ? n : 1), 1.0f);
    inverseRealFft(b.data(), n);
    for (float v : b) EXPECT_EQ(v, 1.0f) << n;
  }
}

}  // namespace
}  // namespace sablevox
