// Filling and boosting the wave slots from the embedded records.
#include "waves/wave_slots.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "data/wave_sources.h"

namespace sablevox {
namespace {

static_assert(kWaveSourceFrames == kWaveFrames && kWaveSourceHarmonics == kWaveHarmonics);

void fillSlot(WaveSlot& slot, const WaveDescriptor& row, WaveSource source) {
  slot.pitchFactor = pitchFactorForStep(row.pitchStep);
  slot.defaultLoop = row.defaultLoop;
  slot.defaultLoopSpeed = row.defaultLoopSpeed;
  slot.level = row.level;
  std::snprintf(slot.name, kWaveNameSize, "%s", row.displayName);
  if (!slot.frames) slot.frames = std::make_unique_for_overwrite<uint16_t[]>(kWaveValues);
  slot.frameCount = source.frameCount();
  uint16_t* frames = slot.frames.get();
  for (int e = 0; e < kWaveValues; ++e) frames[e] = source.amplitude(e);
  if (slot.frameCount < kWaveFrames) {
    for (int f = 1; f < kWaveFrames; ++f)
      std::copy_n(frames, kWaveHarmonics, frames + f * kWaveHarmonics);
  }
}

// The multipliers of each mode, with the last source index j of each: the
// target m*j + m - 1 stays below 256 and the top multiple is left out.
struct Multiple {
  int m;
  int lastJ;
};
constexpr Multiple kAllMultiples[] = {{2, 126}, {3, 83}, {4, 62}, {5, 49},
                                      {6, 40},  {7, 34}, {8, 30}};
constexpr Multiple kOctaveMultiples[] = {{2, 126}, {4, 62}, {8, 30}};

void boostFrame(uint16_t* frame, const Multiple* multiples, int count, int amt) {
  int32_t in[kWaveHarmonics / 2];
  int32_t out[kWaveHarmonics];
  for (int i = 0; i < kWaveHarmonics / 2; ++i) in[i] = frame[i];
  for (int i = 0; i < kWaveHarmonics; ++i) out[i] = frame[i];
  for (int n = 0; n < count; ++n) {
    const int m = multiples[n].m;
    for (int j = 0; j <= multiples[n].lastJ; ++j) {
      const int i = m * j + m - 1;
      // Weight i/256 for the target harmonic, 1/m against the high multiples;
      // integer divisions in this order, as the stored waves were made.
      int32_t t = (in[j] * i) / 256;
      t = (t * amt) / m;
      out[i] = out[i] + t / 256;
    }
  }
  for (int i = 0; i < kWaveHarmonics; ++i)
    frame[i] = static_cast<uint16_t>(std::min(out[i], 65535));
}

}  // namespace

float pitchFactorForStep(int pitchStep) {
  constexpr float kFactors[] = {0.25f, 0.5f, 1.0f, 2.0f, 4.0f};
  return kFactors[std::clamp(pitchStep, -2, 2) + 2];
}

void buildWaveSlots(std::span<WaveSlot, kWaveCount> slots) {
  for (int i = 0; i < kWaveCount; ++i) fillSlot(slots[i], kWaveDescriptors[i], waveSource(i));
  for (int i = 0; i < kWaveCount; ++i) {
    boostSlot(slots[i], kWaveDescriptors[i].boostMode, kWaveDescriptors[i].boostAmount);
  }
}

void boostSlot(WaveSlot& slot, int mode, float amount) {
  if (mode != 1 && mode != 2) return;
  if (!slot.frames) return;
  // amount is table data (0..1); the limit only keeps a bad row harmless.
  const double scaled = static_cast<double>(amount) * 256.0;
  const int amt = scaled > 0.0 ? (scaled < 256.0 ? static_cast<int>(scaled) : 256) : 0;
  const Multiple* multiples = mode == 1 ? kAllMultiples : kOctaveMultiples;
  const int count = mode == 1 ? 7 : 3;
  const int frames = std::clamp(slot.frameCount, 0, kWaveFrames);
  for (int f = 0; f < frames; ++f)
    boostFrame(slot.frames.get() + f * kWaveHarmonics, multiples, count, amt);
}

void copyWaveName(const WaveSlot& slot, char* destination) {
  std::memcpy(destination, slot.name, kWaveNameSize);
  destination[kWaveNameSize - 1] = '\0';
}

}  // namespace sablevox
