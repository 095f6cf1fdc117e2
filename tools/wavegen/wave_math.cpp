// Deterministic sine, exponential and logarithm for the wave recipes.
#include "wave_math.h"

#include <cmath>

namespace sablevox::wavegen {
namespace {

// sin on [-pi/2, pi/2] by its Taylor series, summed from the small end.
double sinSeries(double x) {
  const double x2 = x * x;
  double term = x;
  double terms[12];
  for (int n = 0; n < 12; ++n) {
    terms[n] = term;
    term = -term * x2 / ((2.0 * n + 2.0) * (2.0 * n + 3.0));
  }
  double sum = 0.0;
  for (int n = 11; n >= 0; --n) sum += terms[n];
  return sum;
}

}  // namespace

double detSin(double x) {
  if (!(std::fabs(x) < 1e9)) return 0.0;
  const double turns = std::nearbyint(x / (2.0 * kPi));
  double r = x - turns * (2.0 * kPi);  // -pi .. pi
  if (r > kPi / 2) r = kPi - r;
  if (r < -kPi / 2) r = -kPi - r;
  return sinSeries(r);
}

double detCos(double x) {
  return detSin(x + kPi / 2);
}

double detExp(double x) {
  if (x < -700.0) return 0.0;
  if (x > 700.0) x = 700.0;
  constexpr double kLn2 = 0.69314718055994530942;
  const double n = std::nearbyint(x / kLn2);
  const double r = x - n * kLn2;  // |r| <= 0.35
  double term = 1.0;
  double sum = 1.0;
  for (int k = 1; k < 20; ++k) {
    term = term * r / k;
    sum += term;
  }
  return std::ldexp(sum, static_cast<int>(n));
}

double detLog(double x) {
  if (!(x > 0.0)) return -745.0;
  int exponent = 0;
  const double m = std::frexp(x, &exponent);  // 0.5 <= m < 1
  // log m = 2 atanh(z), z = (m - 1) / (m + 1), |z| <= 1/3.
  const double z = (m - 1.0) / (m + 1.0);
  const double z2 = z * z;
  double power = z;
  double sum = 0.0;
  for (int k = 0; k < 30; ++k) {
    sum += power / (2.0 * k + 1.0);
    power *= z2;
  }
  constexpr double kLn2 = 0.69314718055994530942;
  return 2.0 * sum + exponent * kLn2;
}

double detLog2(double x) {
  return detLog(x) / 0.69314718055994530942;
}

double detPow(double base, double exponent) {
  if (!(base > 0.0)) return 0.0;
  return detExp(exponent * detLog(base));
}

double smoothStep(double x) {
  if (x <= 0.0) return 0.0;
  if (x >= 1.0) return 1.0;
  return 0.5 - 0.5 * detCos(kPi * x);
}

uint64_t Random::next() {
  state_ += 0x9e3779b97f4a7c15ull;
  uint64_t z = state_;
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
  return z ^ (z >> 31);
}

double Random::uniform() {
  return static_cast<double>(next() >> 11) * 0x1.0p-53;
}

double Random::range(double low, double high) {
  return low + (high - low) * uniform();
}

int Random::below(int n) {
  return static_cast<int>(next() % static_cast<uint64_t>(n));
}

}  // namespace sablevox::wavegen
