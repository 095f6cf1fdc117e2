// Modifiers that give a wave a course in time: the closing and opening
// low-pass (Filt), the per-harmonic time lead (Time) and the harmonic stretch
// that sweeps from about 16.9 down to 1 over the frames (Sync).
#include <algorithm>
#include <array>
#include <cmath>

#include "waves/modifier_families.h"
#include "waves/wave_format.h"
#include "waves/wave_modifiers.h"

namespace sablevox::modifier_detail {
namespace {

// Harmonics kept in a frame at position n of 256: 161 at n = 256, 1 at n <= 1.
int lowPassLimit(int n) {
  const auto e = static_cast<float>(std::exp(static_cast<double>(static_cast<float>(n) / 256.0f)));
  const float limit = (e - 1.0f) * 0.36787954f * 256.0f;
  return std::clamp(static_cast<int>(limit), 1, kWaveHarmonics - 1);
}

// Harmonic k moves to the fractional place r*k, shared by its two neighbours;
// harmonics below trunc(r) also stay where they were.
void syncFrame(int f, float* frame) {
  const int g = kWaveFrames - 1 - f;
  const float r = static_cast<float>(g) * 0.00390625f * static_cast<float>(g) * 0.0625f + 1.0f;
  std::array<float, kWaveHarmonics> t;
  std::copy_n(frame, kWaveHarmonics, t.begin());
  const int whole = static_cast<int>(r);
  if (whole < kWaveHarmonics) std::fill(frame + whole, frame + kWaveHarmonics, 0.0f);
  const int moved = kWaveHarmonics / whole - 1;
  const float w = r - static_cast<float>(whole);
  for (int j = 0; j < moved; ++j) {
    const float p = static_cast<float>(j + 1) * r;
    int a = static_cast<int>(p - 1.0f);
    int b = static_cast<int>(p);
    float wa = 1.0f - w;
    float wb = w;
    if (a > kWaveHarmonics - 1) {
      a = kWaveHarmonics - 1;
      wa = 0.0f;
    }
    if (b > kWaveHarmonics - 1) {
      b = kWaveHarmonics - 1;
      wb = 0.0f;
    }
    frame[a] += t[static_cast<size_t>(j)] * wa;
    frame[b] += t[static_cast<size_t>(j)] * wb;
  }
}

}  // namespace

void sweepFrame(int step, int f, float* frame) {
  switch (step) {
    case kModFiltLpDown:
    case kModFiltLpUp: {
      const int limit = lowPassLimit(step == kModFiltLpDown ? kWaveFrames - f : f);
      std::fill(frame + limit, frame + kWaveHarmonics, 0.0f);
      break;
    }
    case kModSync:
      syncFrame(f, frame);
      break;
    default:
      break;
  }
}

void timeShift(int step, float* buffer) {
  constexpr int kLeads[] = {16, 32, 37, 64, 107};
  if (step < kModTime16 || step > kModTime107) return;
  const int lead = kLeads[step - kModTime16];
  float column[kWaveFrames];
  for (int i = 0; i < kWaveHarmonics; ++i) {
    for (int f = 0; f < kWaveFrames; ++f) column[f] = buffer[f * kWaveHarmonics + i];
    for (int f = 0; f < kWaveFrames; ++f) {
      buffer[f * kWaveHarmonics + i] = column[(f + i * lead) & (kWaveFrames - 1)];
    }
  }
}

}  // namespace sablevox::modifier_detail
