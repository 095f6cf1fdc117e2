// Deterministic maths for the wave generator: the records are pinned by a
// checksum, so nothing here may depend on the C library's version or on the
// machine. Plain double arithmetic in a fixed order (the build forbids
// contraction) gives the same bits everywhere.
#pragma once

#include <cstdint>

namespace sablevox::wavegen {

constexpr double kPi = 3.14159265358979323846;

// Series with fixed range reduction; accurate to about 1e-15, which is far
// below the 16-bit resolution of the records.
double detSin(double x);
double detCos(double x);
double detExp(double x);
double detLog(double x);  // x > 0; otherwise returns -745
double detLog2(double x);
double detPow(double base, double exponent);  // base > 0

// 0 at 0, 1 at 1, smooth in between (raised cosine); clamps outside.
double smoothStep(double x);

// A small random generator of our own (SplitMix64), so that every library
// version draws the same numbers.
class Random {
 public:
  explicit Random(uint64_t seed) : state_(seed) {}
  uint64_t next();
  double uniform();                       // [0, 1)
  double range(double low, double high);  // [low, high)
  int below(int n);                       // 0 .. n - 1, n > 0

 private:
  uint64_t state_;
};

}  // namespace sablevox::wavegen
