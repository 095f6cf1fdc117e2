// Band-limited table synthesis: one inverse real FFT per level and frame.
#include "waves/wave_table.h"

#include <algorithm>

#include "waves/inverse_fft.h"
#include "waves/wave_format.h"

namespace sablevox {
namespace {

// One frame block: levels N = 2 .. 512 carry harmonics 1 .. N/2 - 1 as sines
// and harmonic N/2 as the Nyquist term; level 1024 carries harmonics 1 .. 255
// and no Nyquist term (harmonic 256 would alias at that length).
void synthesiseFrame(float* block, const float* amplitudes) {
  block[0] = 0.0f;
  block[1] = 0.0f;
  for (int n = 2; n <= 512; n *= 2) {
    float* b = block + n;
    std::fill_n(b, n / 2, 0.0f);
    for (int k = 1; k < n / 2; ++k) b[n - k] = amplitudes[k - 1];
    b[n / 2] = amplitudes[n / 2 - 1];
    inverseRealFft(b, n);
  }
  constexpr int kTop = 1024;
  float* b = block + kTop;
  std::fill_n(b, kTop, 0.0f);
  for (int k = 1; k < kWaveHarmonics; ++k) b[kTop - k] = amplitudes[k - 1];
  inverseRealFft(b, kTop);
}

int16_t toSample(float value, float scale) {
  float v = value * scale;
  if (v > 32767.0f) v = 32767.0f;
  if (v < -32768.0f) v = -32768.0f;
  if (v != v) v = 0.0f;  // a NaN amplitude plays as silence
  return static_cast<int16_t>(v);
}

}  // namespace

void buildWaveTable(int16_t* table, const float* spectrum, int frameCount, float scale,
                    float* scratch) {
  frameCount = std::min(frameCount, kWaveFrames);
  if (frameCount < 1) return;
  for (int f = 0; f < frameCount; ++f) {
    synthesiseFrame(scratch + f * kFrameBlock, spectrum + f * kWaveHarmonics);
  }
  const int count = frameCount * kFrameBlock;
  for (int i = 0; i < count; ++i) table[i] = toSample(scratch[i], scale);
}

}  // namespace sablevox
