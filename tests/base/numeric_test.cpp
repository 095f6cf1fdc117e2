// The properties of the fast numeric helpers that the sound relies on over
// their whole range (bounds, continuity, monotony, hostile arguments); their
// values where the engine uses them are pinned by the regression renders.
#include "host/numeric.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace sablevox {
namespace {

constexpr double kT = 1.4407999515533447;  // t = x * kT in fastExp
constexpr float kPi = 3.14159265f;

// The x nearest to t = n; its product with kT may miss n by a rounding step,
// since neighbouring products can step over n.
double xForWholeT(int n) {
  double x = n / kT;
  for (int i = 0; i < 4 && x * kT != n; ++i) x = std::nextafter(x, x * kT < n ? 1e9 : -1e9);
  return x;
}

TEST(FastExp, MonotonicAndContinuousIncludingOctaveEdges) {
  double previous = 0.0;
  for (double x = -100.0; x <= 100.0; x += 0.001) {
    const double y = fastExp(x);
    ASSERT_GE(y, previous) << x;
    previous = y;
  }
  // Just below a whole t the truncation of t + 1023 can round onto the
  // integer: the result must still approach 2^n from below, not jump an
  // octave up (it lies up to 0.05 % under 2^n there).
  for (int n = -30; n <= 30; ++n) {
    const double edge = fastExp(xForWholeT(n));
    double x = xForWholeT(n);
    for (int step = 0; step < 2000; ++step) {
      x = std::nextafter(x, -1e9);
      const double y = fastExp(x);
      ASSERT_LE(y, edge) << n << " " << step;
      ASSERT_GT(y, edge * 0.9995) << n << " " << step;
    }
  }
}

TEST(FastExp, HostileArgumentsSaturateToFinitePositiveValues) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  for (double x : {1e300, kInf, 710.0}) EXPECT_TRUE(fastExp(x) > 1e300 && fastExp(x) < kInf);
  for (double x : {-1e300, -kInf, -800.0, std::nan("")}) {
    EXPECT_TRUE(fastExp(x) > 0.0 && fastExp(x) < 1e-300) << x;
  }
}

TEST(FastSinCos, CloseToTheTrueFunctionsOverOneTurn) {
  EXPECT_EQ(fastSin(0.0f), 0.0f);
  EXPECT_NEAR(fastSin(3.1f), 0.041425, 1e-6);
  EXPECT_NEAR(fastCos(0.0f), 1.0, 1e-6);
  float worstSin = 0.0f, worstCos = 0.0f;
  // Open range: at exactly +-pi the phase product reaches +-2^31.
  for (float x = -3.14159f; x < 3.14159f; x += 0.0007f) {
    worstSin = std::max(worstSin, std::fabs(fastSin(x) - std::sin(x)));
    worstCos = std::max(worstCos, std::fabs(fastCos(x) - std::cos(x)));
    ASSERT_EQ(fastSin(-x), -fastSin(x)) << x;
  }
  EXPECT_LT(worstSin, 2e-4f);
  EXPECT_LT(worstCos, 2e-4f);
  EXPECT_NEAR(fastCos(kPi), -1.0, 2e-4);
  EXPECT_NEAR(fastCos(-kPi), -1.0, 2e-4);
}

TEST(FastSinCos, OutOfRangePhaseSaturatesWithoutUndefinedBehaviour) {
  // A phase product of 2^31 or more becomes the most negative phase, -pi.
  const float atMinusPi = fastSin(-kPi * 1.0001f);
  EXPECT_NEAR(atMinusPi, 0.000189, 2e-6);
  for (float x : {4.0f, -4.0f, 1e30f, -1e30f, std::numeric_limits<float>::infinity(),
                  std::numeric_limits<float>::quiet_NaN()}) {
    EXPECT_EQ(fastSin(x), atMinusPi) << x;
    EXPECT_TRUE(std::isfinite(fastCos(x))) << x;
  }
}

TEST(RandomRange, CoversTheRangeWithItsSmallOvershoot) {
  double sum = 0.0;
  float lowest = 1.0f, highest = -1.0f;
  for (int i = 0; i < 200000; ++i) {
    const float v = randomRange(-1.0f, 1.0f);
    sum += v;
    lowest = std::min(lowest, v);
    highest = std::max(highest, v);
  }
  EXPECT_TRUE(lowest >= -1.0f && lowest < -0.999f) << lowest;
  EXPECT_TRUE(highest > 0.999f && highest <= 1.0f + 2 * 0.00073f + 1e-6f) << highest;
  EXPECT_NEAR(sum / 200000, 0.0, 0.01);
}

TEST(PinkNoise, SpectralTiltAndBound) {
  float p0 = 0.0f, p1 = 0.0f, p2 = 0.0f;
  const float first = pinkNoise(-1.0f, 1.0f, p0, p1, p2);
  // Pink noise carries more energy low than high: the sum of neighbours
  // varies more than their difference (equal for white noise). The sum of
  // the section gains over (1 - pole) bounds the output.
  double sums = 0.0, differences = 0.0;
  float previous = first;
  for (int i = 0; i < 100000; ++i) {
    const float v = pinkNoise(-1.0f, 1.0f, p0, p1, p2);
    ASSERT_LT(std::fabs(v), 53.0f);
    sums += (v + previous) * (v + previous);
    differences += (v - previous) * (v - previous);
    previous = v;
  }
  EXPECT_GT(sums, 3.0 * differences);
}

}  // namespace
}  // namespace sablevox
