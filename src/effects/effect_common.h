// Small pieces the effect units share: input guards, LFO shapes, the denormal
// offset. Header-only; everything here is cheap enough for a sample loop.
#pragma once

#include <array>

#include "host/text_copy.h"

namespace sablevox {

// Added into feedback paths so that silence decays to a small constant and
// never into denormals (the float 0x3727C5AC).
inline constexpr float kDenormalOffset = 1e-05f;

// The effects are sized and tested for host rates in this range; a rate
// outside it (or a non-number) is treated as the nearest end.
inline constexpr float kMinEffectRate = 8000.0f;
inline constexpr float kMaxEffectRate = 384000.0f;

// Sample rate as the units use it: finite and within the supported range.
inline float clampEffectRate(float rate) {
  if (!(rate >= kMinEffectRate)) return kMinEffectRate;  // also NaN
  if (rate > kMaxEffectRate) return kMaxEffectRate;
  return rate;
}

// Parameter values are 0..1 by contract; hosts may send anything, so clamp
// here (NaN becomes 0) and every decode downstream stays finite.
inline float clampUnit(float value) {
  if (!(value >= 0.0f)) return 0.0f;
  if (value > 1.0f) return 1.0f;
  return value;
}

// Fractional part of phase + increment, for a phase in 0..1 and an increment
// in 0..1 (below one cycle per sample, which every LFO here is). Kept to one
// compare so that the phase recursion stays short in the sample loops.
inline float advancePhase(float phase, float increment) {
  phase += increment;
  return phase >= 1.0f ? phase - 1.0f : phase;
}

// Triangle over one cycle: 0 at p = 0, 1 at p = 0.5.
inline float triangleShape(float p) {
  return p <= 0.5f ? 2.0f * p : 2.0f - 2.0f * p;
}

// Parabolic approximation of a sine over one cycle, in 0..1: 0.5 at p = 0,
// 1 at 0.25, 0.5 at 0.5, 0 at 0.75. No table.
inline float parabolicShape(float p) {
  return p < 0.5f ? (4.0f - 8.0f * p) * p + 0.5f : 8.0f * p * p - 12.0f * p + 4.5f;
}

// The effects' setParameter: values clamped to 0..1, an index outside the
// list ignored.
template <std::size_t kCount>
inline void storeParameter(std::array<float, kCount>& parameters, int index, float value) {
  if (index >= 0 && index < static_cast<int>(kCount)) parameters[index] = clampUnit(value);
}

// Parameter names go into the caller's buffer, which must hold
// kEffectNameLimit characters plus the terminating zero. An index outside the
// list, or a parameter without a name, gives the empty text.
inline constexpr int kEffectNameLimit = 23;

inline void writeParameterName(const char* const* names, int nameCount, int index, char* text) {
  const char* name = index >= 0 && index < nameCount ? names[index] : "";
  copyText(text, name, kEffectNameLimit);
}

}  // namespace sablevox
