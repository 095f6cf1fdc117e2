// Fast approximations and small helpers used in per-sample and per-tick loops.
// Their errors are part of the sound: each one follows a fixed formula with
// fixed constants and precisions, so do not "improve" them. All are pure
// except randomRange and pinkNoise, which advance the process-wide randomState.
// Any thread may call them.
#pragma once

#include <bit>
#include <cstdint>

#include "host/shared_word.h"

namespace sablevox {

// The process-wide generator state, 22222 when the library is loaded; never
// reseeded. Audio and editor threads both advance it without a lock: a lost
// update only changes which numbers come next.
extern Shared<uint32_t> randomState;

namespace numeric_detail {

// Truncation to int32 as the x86 conversion does it: NaN and any value of
// magnitude 2^31 or more give the most negative integer (no UB in C++).
inline int32_t truncateLikeX86(float p) {
  return (p >= -2147483648.0f && p < 2147483648.0f) ? static_cast<int32_t>(p) : INT32_MIN;
}

// The phase quantum pi / 2^31 and the sine polynomial, from their exact bits.
inline constexpr float kPhaseToRadians = std::bit_cast<float>(0x30C90FDBu);
inline constexpr float kRadiansToPhase = 683565248.0f;  // 2^31 / pi as a float
inline constexpr double kSin3 = std::bit_cast<float>(0xBE2AAAABu);
inline constexpr double kSin5 = std::bit_cast<float>(0x3C088887u);
inline constexpr double kSin7 = std::bit_cast<float>(0xB9500C03u);
inline constexpr double kSin9 = std::bit_cast<float>(0x3638B94Fu);
inline constexpr double kSin11 = std::bit_cast<float>(0xB2CD4CA8u);

// Odd polynomial on a quantised phase k (a full turn is 2^32).
inline float sinOfPhase(int32_t k) {
  const float s = static_cast<float>(k) * kPhaseToRadians;
  const float zf = s * s;
  const double z = zf;
  const double p = kSin3 + z * (kSin5 + z * (kSin7 + z * (kSin9 + z * kSin11)));
  return static_cast<float>(static_cast<double>(s) * (1.0 + z * p));
}

}  // namespace numeric_detail

// x with its sign bit cleared (NaN stays NaN).
inline float fastAbs(float x) {
  return std::bit_cast<float>(std::bit_cast<uint32_t>(x) & 0x7FFFFFFFu);
}

// Bit-level 2^t with t = x * 1.4408 (deliberately not log2(e)): a parabola
// 1 + (3f + f^2) / 4 inside each octave, exact at whole t, at most 1.7 % above
// 2^t in between. t is clamped to -1022..1023 so the exponent field stays a
// normal number (NaN gives 2^-1022): outside it the result just saturates.
inline double fastExp(double x) {
  double t = x * 1.4407999515533447;
  t = t > -1022.0 ? t : -1022.0;
  t = t < 1023.0 ? t : 1023.0;
  // floor(t) without a floor function; the offset keeps the truncation of a
  // negative t on the floor side.
  const int32_t n = t >= 0.0 ? static_cast<int32_t>(t) : static_cast<int32_t>(t + 1023.0) - 1023;
  double m = t - static_cast<double>(n - 1);
  // Rounding can push m out of 1..2 when t lies a hair below a whole number:
  // t + 1023 rounds up onto n (m < 1), or t + 1 rounds up to 2. Either way the
  // result would jump an octave; keep m inside the octave instead.
  constexpr double kBelowTwo = std::bit_cast<double>(0x3FFFFFFFFFFFFFFFull);
  m = m >= 1.0 ? m : 1.0;
  m = m <= kBelowTwo ? m : kBelowTwo;
  const uint64_t bits = std::bit_cast<uint64_t>(m);
  const uint32_t mant = static_cast<uint32_t>(bits >> 32) & 0xFFFFFu;
  const uint32_t top = mant >> 11;
  const uint32_t high = (static_cast<uint32_t>(n + 1023) << 20) + top * top + 3u * (mant >> 2);
  return std::bit_cast<double>((static_cast<uint64_t>(high) << 32) | (bits & 0xFFFFFFFFu));
}

// Sine for x in -pi..pi via a 32-bit phase; about 1.6e-4 off near the ends.
// Beyond the range the phase saturates to -pi (result about 0.000189).
inline float fastSin(float x) {
  using namespace numeric_detail;
  return sinOfPhase(truncateLikeX86(x * kRadiansToPhase));
}

// Cosine for x in -pi..pi: a quarter turn added to the negated phase, with
// 32-bit wrap-around folding it back into one turn.
inline float fastCos(float x) {
  using namespace numeric_detail;
  const uint32_t k = static_cast<uint32_t>(truncateLikeX86(x * -kRadiansToPhase));
  return sinOfPhase(static_cast<int32_t>(0x40000000u - k));
}

// Next value of the linear congruential generator scaled to lo..hi. The scale
// 2.33e-10 makes the top of the range reach hi + 0.073 % of (hi - lo); this is
// not clamped. randomRange(a, a) is a and still advances the state.
inline float randomRange(float lo, float hi) {
  const uint32_t state = randomState.load() * 0x0BB38435u + 0x3619636Bu;
  randomState.store(state);
  const double v = state;
  constexpr float kScale = std::bit_cast<float>(0x2F8017D6u);  // 2.33e-10
  return static_cast<float>(lo + v * kScale * (hi - lo));
}

// Economy pink noise: three one-pole low-passes in parallel with a direct
// path. The caller owns the state words, all starting at 0.
inline float pinkNoise(float lo, float hi, float& pink0, float& pink1, float& pink2) {
  const float w = randomRange(lo, hi);
  pink0 = pink0 * 0.99765f + w * 0.099046f;
  pink1 = pink1 * 0.963f + w * 0.2965164f;
  pink2 = pink2 * 0.57f + w * 1.0526913f;
  return pink0 + pink1 + pink2 + w * 0.1848f;
}

// t weights the first value: t = 1 gives a, t = 0 gives b.
inline float crossfade(float t, float a, float b) {
  return t * a + (1.0f - t) * b;
}

// Four-point fifth-order interpolation between y0 (t = 0) and y1 (t = 1),
// with the slopes (y1 - ym1) / 2 and (y2 - y0) / 2 there.
inline float hermite5(float t, float ym1, float y0, float y1, float y2) {
  const float d = y1 - y0;
  const float e = ym1 - y2;
  const float a = 15.0f * (y0 - y1) + 5.0f * (y2 - ym1) + t * (6.0f * d + 2.0f * e);
  const float b = 9.0f * d + 3.0f * e + t * a;
  const float c = (y1 - 2.0f * y0 + ym1) + t * b;
  return y0 + 0.5f * t * ((y1 - ym1) + t * c);
}

}  // namespace sablevox
