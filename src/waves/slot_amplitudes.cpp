// Filling and boosting the slot amplitudes from the packed records.
#include "waves/slot_amplitudes.h"

#include <algorithm>

namespace sablevox {
namespace {

static_assert(kWaveSourceFrames == kWaveFrames && kWaveSourceHarmonics == kWaveHarmonics);

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

void fillSlotAmplitudes(WaveSource source, uint16_t* frames) {
  for (int e = 0; e < kWaveValues; ++e) frames[e] = source.amplitude(e);
  if (source.frameCount() < kWaveFrames) {
    for (int f = 1; f < kWaveFrames; ++f)
      std::copy_n(frames, kWaveHarmonics, frames + f * kWaveHarmonics);
  }
}

void boostSlotAmplitudes(uint16_t* frames, int frameCount, int mode, float amount) {
  if (mode != 1 && mode != 2) return;
  // amount is table data (0..1); the limit only keeps a bad row harmless.
  const double scaled = static_cast<double>(amount) * 256.0;
  const int amt = scaled > 0.0 ? (scaled < 256.0 ? static_cast<int>(scaled) : 256) : 0;
  const Multiple* multiples = mode == 1 ? kAllMultiples : kOctaveMultiples;
  const int count = mode == 1 ? 7 : 3;
  const int last = std::clamp(frameCount, 0, kWaveFrames);
  for (int f = 0; f < last; ++f) boostFrame(frames + f * kWaveHarmonics, multiples, count, amt);
}

bool buildSlotAmplitudes(std::span<const unsigned char> records, std::span<uint16_t> out) {
  if (records.size() != size_t{kWaveCount} * kWaveSourceBytes || out.size() != kSlotAmplitudeCount)
    return false;
  for (int i = 0; i < kWaveCount; ++i) {
    const WaveSource source(records.data() + static_cast<size_t>(i) * kWaveSourceBytes);
    uint16_t* frames = out.data() + static_cast<size_t>(i) * kWaveValues;
    fillSlotAmplitudes(source, frames);
    boostSlotAmplitudes(frames, source.frameCount(), kWaveDescriptors[i].boostMode,
                        kWaveDescriptors[i].boostAmount);
  }
  return true;
}

}  // namespace sablevox
