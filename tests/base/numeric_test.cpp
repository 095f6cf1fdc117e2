// Tests of the fast numeric helpers: the values their formulas pin down and
// the properties the sound relies on (bounds, continuity, monotony).
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

TEST(FastExp, WholeExponentsAreExactPowersOfTwo) {
  EXPECT_EQ(fastExp(0.0), 1.0);
  int exact = 0;
  for (int n = -300; n <= 300; ++n) {
    const double x = xForWholeT(n);
    if (x * kT != n) continue;
    ++exact;
    EXPECT_EQ(fastExp(x), std::ldexp(1.0, n)) << n;
  }
  EXPECT_GT(exact, 300);
}

TEST(FastExp, IsAParabolaSlightlyAboveTwoToTheT) {
  // The squared term keeps only 9 bits of the mantissa, so values sit a
  // little under the ideal parabola (0.002535 here), and just below a whole
  // t up to 0.05 % under 2^t.
  EXPECT_NEAR(fastExp(-6.0), 0.002535, 1e-6);
  // Midway in an octave: 1 + (3 * 0.5 + 0.25) / 4 = 1.4375.
  for (int n : {-40, -3, 0, 7, 50}) {
    const double ratio = fastExp((n + 0.5) / kT) / std::ldexp(1.0, n);
    EXPECT_NEAR(ratio, 1.4375, 6e-4) << n;
  }
  double worst = 0.0;
  for (double x = -100.0; x <= 100.0; x += 0.00731) {
    const double ratio = fastExp(x) / std::exp2(x * kT);
    ASSERT_GE(ratio, 0.9995) << x;
    worst = std::max(worst, ratio);
  }
  EXPECT_LT(worst, 1.017);
  EXPECT_GT(worst, 1.015);  // the parabola's real peak, not a flatter curve
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

TEST(RandomRange, FollowsTheGeneratorFromItsLoadState) {
  randomState.store(22222u);  // the value at load; other tests may have run
  EXPECT_NEAR(randomRange(0.0f, 1.0f), 0.9341442630453487, 1e-7);
  EXPECT_EQ(randomState.load(), 4009202705u);
  EXPECT_NEAR(randomRange(0.0f, 1.0f), 0.6043029123257826, 1e-7);
  EXPECT_EQ(randomState.load(), 2593574640u);

  const uint32_t before = randomState.load();
  EXPECT_EQ(randomRange(3.25f, 3.25f), 3.25f);
  EXPECT_EQ(randomState.load(), before * 0x0BB38435u + 0x3619636Bu);
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

TEST(PinkNoise, FirstSampleAndSpectralTilt) {
  randomState.store(12345u);
  const float w = randomRange(-1.0f, 1.0f);
  randomState.store(12345u);
  float p0 = 0.0f, p1 = 0.0f, p2 = 0.0f;
  const float first = pinkNoise(-1.0f, 1.0f, p0, p1, p2);
  EXPECT_NEAR(first, w * (0.099046f + 0.2965164f + 1.0526913f + 0.1848f), 1e-6f);
  EXPECT_FLOAT_EQ(p0, w * 0.099046f);

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

TEST(SmallHelpers, AbsCrossfadeAndHermiteMeetTheirEnds) {
  EXPECT_EQ(fastAbs(-2.5f), 2.5f);
  EXPECT_FALSE(std::signbit(fastAbs(-0.0f)));
  EXPECT_EQ(crossfade(1.0f, 3.0f, -7.0f), 3.0f);
  EXPECT_EQ(crossfade(0.0f, 3.0f, -7.0f), -7.0f);
  EXPECT_EQ(crossfade(0.25f, 4.0f, 8.0f), 7.0f);

  const float ym1 = 2.0f, y0 = -1.0f, y1 = 5.0f, y2 = 3.0f;
  EXPECT_EQ(hermite5(0.0f, ym1, y0, y1, y2), y0);
  EXPECT_EQ(hermite5(1.0f, ym1, y0, y1, y2), y1);
  const float h = 1e-3f;
  const float slope0 = (hermite5(h, ym1, y0, y1, y2) - hermite5(-h, ym1, y0, y1, y2)) / (2 * h);
  const float slope1 =
      (hermite5(1 + h, ym1, y0, y1, y2) - hermite5(1 - h, ym1, y0, y1, y2)) / (2 * h);
  EXPECT_NEAR(slope0, (y1 - ym1) / 2, 2e-2f);
  EXPECT_NEAR(slope1, (y2 - y0) / 2, 2e-2f);
  // Points on a line interpolate along that line.
  for (float t = 0.0f; t <= 1.0f; t += 0.125f) {
    EXPECT_NEAR(hermite5(t, -3.0f, -1.0f, 1.0f, 3.0f), -1.0f + 2.0f * t, 1e-6f) << t;
  }
}

}  // namespace
}  // namespace sablevox
