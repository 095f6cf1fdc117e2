// Dispatch of the wave modifiers, and the families that work on one frame at
// a time without regard to its place in time: Mix, Thin and Mod.
#include "waves/wave_modifiers.h"

#include <algorithm>
#include <array>

#include "waves/modifier_families.h"
#include "waves/wave_format.h"

namespace sablevox {
namespace modifier_detail {
namespace {

using Frame = std::array<float, kWaveHarmonics>;

Frame copyOf(const float* frame) {
  Frame t;
  std::copy_n(frame, kWaveHarmonics, t.begin());
  return t;
}

void scale(float* frame, float gain) {
  for (int i = 0; i < kWaveHarmonics; ++i) frame[i] = frame[i] * gain;
}

// Harmonic j + 1 is added to harmonic m * (j + 1) for j below 256/m - 1 (the
// top multiple is left out); the sources are the unmodified copy, so that
// additions don't build on each other.
void addMultiple(float* frame, const Frame& t, int m, float gain) {
  for (int j = 0; j < kWaveHarmonics / m - 1; ++j) frame[m * j + m - 1] += gain * t[j];
}
void addMultiple(float* frame, const Frame& t, int m) {
  for (int j = 0; j < kWaveHarmonics / m - 1; ++j) frame[m * j + m - 1] += t[j];
}

// Harmonic numbers "Thin: Bell" keeps: 1, the primes up to 251, and 255.
constexpr std::array<bool, kWaveHarmonics + 1> makeBellHarmonics() {
  std::array<bool, kWaveHarmonics + 1> keep{};
  for (int k = 2; k <= 251; ++k) {
    keep[k] = true;
    for (int d = 2; d * d <= k; ++d) {
      if (k % d == 0) keep[k] = false;
    }
  }
  keep[1] = true;
  keep[255] = true;
  return keep;
}
constexpr std::array<bool, kWaveHarmonics + 1> kBellHarmonics = makeBellHarmonics();
static_assert(std::count(kBellHarmonics.begin(), kBellHarmonics.end(), true) == 56);

}  // namespace

void reshapeFrame(int step, float* frame) {
  const Frame t = copyOf(frame);
  switch (step) {
    case kModMixX2:
      addMultiple(frame, t, 2);
      scale(frame, 0.5f);
      break;
    case kModMixX4:
      addMultiple(frame, t, 4);
      scale(frame, 0.5f);
      break;
    case kModMixLayer:
      addMultiple(frame, t, 2, 0.8f);
      addMultiple(frame, t, 4, 0.6f);
      addMultiple(frame, t, 8, 0.4f);
      addMultiple(frame, t, 16, 0.2f);
      scale(frame, 0.4f);
      break;
    case kModThinSquare:
      for (int i = 0; i < kWaveHarmonics; i += 2) {
        frame[i] = frame[i] * 1.2f;
        frame[i + 1] = 0.0f;
      }
      break;
    case kModThinBell:
      for (int i = 0; i < kWaveHarmonics; ++i) {
        if (!kBellHarmonics[static_cast<size_t>(i + 1)]) frame[i] = 0.0f;
      }
      break;
    case kModThinWarm:  // v*v/32768: quiet harmonics fade, negative ones turn positive
      for (int i = 0; i < kWaveHarmonics; ++i)
        frame[i] = frame[i] * 0.00390625f * 0.0078125f * frame[i];
      break;
    case kModShrink:
      std::fill_n(frame, kWaveHarmonics, 0.0f);
      for (int i = 0; i < kWaveHarmonics / 2; ++i) frame[i] = t[2 * i] + t[2 * i + 1];
      break;
    case kModSpread:
      std::fill_n(frame, kWaveHarmonics, 0.0f);
      for (int i = 0; i < kWaveHarmonics / 2; ++i) frame[2 * i] = t[i];
      for (int i = 0; i < kWaveHarmonics / 2 - 1; ++i) frame[2 * i + 1] = (t[i] + t[i + 1]) * 0.5f;
      break;
    case kModUp:
      frame[0] = 0.0f;
      for (int i = 0; i < kWaveHarmonics - 1; ++i) frame[i + 1] = t[i];
      break;
    case kModDown:
      for (int i = 0; i < kWaveHarmonics - 1; ++i) frame[i] = t[i + 1];
      frame[kWaveHarmonics - 1] = 0.0f;
      break;
    default:
      break;
  }
}

}  // namespace modifier_detail

void applyWaveModifier(float* buffer, int modifier, int frameCount) {
  using namespace modifier_detail;
  if (modifier <= kModOff || modifier > kModSync) return;
  if (frameCount < 1 || frameCount > kWaveFrames) return;
  const bool fullTime = frameCount == kWaveFrames;
  for (int f = 0; f < frameCount; ++f) {
    float* frame = buffer + f * kWaveHarmonics;
    if (modifier <= kModDown) {
      reshapeFrame(modifier, frame);
    } else if (modifier <= kModHyper2) {
      combFrame(modifier, f, frame);
    } else if (modifier <= kModFiltLpUp || modifier == kModSync) {
      sweepFrame(modifier, f, frame);
    }
  }
  if (!fullTime) return;
  if (modifier == kModHyper1) timeScramble(buffer, 0.7f);
  if (modifier == kModHyper2) timeScramble(buffer, 1.0f);
  if (modifier >= kModTime16 && modifier <= kModTime107) timeShift(modifier, buffer);
}

}  // namespace sablevox
