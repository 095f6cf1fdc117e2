// Spectra of the built-in waves.
//
// "STA Saw", "STA Pulse" and "STA Sine" (and "off" and "STA Noise", which come
// from the same sawtooth source and are never played from a table) hold their
// final content. Every other wave holds a TEMPORARY placeholder of its frame
// count until the designed spectra replace it: a sawtooth family whose
// brightness walks over the frames, so that loops and modifiers can be heard
// and tested. Integer arithmetic only, so the records are the same on every
// machine.
#include "wave_content.h"

namespace sablevox::wavegen {
namespace {

constexpr int kHarmonics = 256;
constexpr int kSingleFrame[] = {0, 1, 2, 3, 4, 5, 6, 7, 59, 60, 61, 62, 63};

// 65535 / k, halves rounded down: 65535, 32767, 21845, 16384, 13107, ...
uint16_t saw(int k) {
  return static_cast<uint16_t>((2 * 65535 + k - 1) / (2 * k));
}

void sawFrame(uint16_t* a, bool oddOnly) {
  for (int k = 1; k <= kHarmonics; ++k) a[k - 1] = (oddOnly && k % 2 == 0) ? 0 : saw(k);
}

// TEMPORARY: single-frame placeholders, four sawtooth variants by index.
void placeholderSingle(int wave, uint16_t* a) {
  for (int k = 1; k <= kHarmonics; ++k) {
    switch (wave % 4) {
      case 0:
        a[k - 1] = saw(k);
        break;
      case 1:
        a[k - 1] = k % 2 ? saw(k) : 0;
        break;
      case 2:
        a[k - 1] = static_cast<uint16_t>(65535 / (k * k));
        break;
      default:
        a[k - 1] = k % (2 + wave % 3) ? saw(k) : 0;
        break;
    }
  }
}

// TEMPORARY: a sawtooth (odd harmonics only for odd indices) whose cutoff
// harmonic rises and falls over the frames at a pace and phase set by the
// wave index; above the cutoff the harmonics fall off gently.
void placeholderFrame(int wave, int frame, uint16_t* a) {
  const int phase = (frame * (1 + wave % 3) + wave * 37) % 512;
  const int cutoff = 1 + (phase < 256 ? phase : 511 - phase);
  for (int k = 1; k <= kHarmonics; ++k) {
    int v = saw(k);
    if (k > cutoff) v = v * 16 / (16 + k - cutoff);
    if (wave % 2 == 1 && k % 2 == 0) v = 0;
    a[k - 1] = static_cast<uint16_t>(v);
  }
}

}  // namespace

int waveFrameCount(int wave) {
  for (int w : kSingleFrame) {
    if (w == wave) return 1;
  }
  return 256;
}

void waveFrame(int wave, int frame, uint16_t* amplitudes) {
  switch (wave) {
    case 0:
    case 1:
    case 2:
      sawFrame(amplitudes, false);
      return;
    case 3:
      sawFrame(amplitudes, true);
      return;
    case 4:
      for (int h = 0; h < kHarmonics; ++h) amplitudes[h] = h == 0 ? 65535 : 0;
      return;
    default:
      break;
  }
  if (waveFrameCount(wave) == 1) {
    placeholderSingle(wave, amplitudes);
  } else {
    placeholderFrame(wave, frame, amplitudes);
  }
}

}  // namespace sablevox::wavegen
