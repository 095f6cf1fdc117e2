// Spectra and buffers for the wave store tests.
#pragma once

#include <vector>

#include "waves/wave_format.h"

namespace sablevox::test {

// A work buffer of 256 frames, every amplitude `value`.
inline std::vector<float> flatSpectrum(float value) {
  return std::vector<float>(kWaveValues, value);
}

// A[f][i] = function(f, i).
template <typename F>
std::vector<float> spectrumOf(F function) {
  std::vector<float> buffer(kWaveValues);
  for (int f = 0; f < kWaveFrames; ++f) {
    for (int i = 0; i < kWaveHarmonics; ++i) buffer[f * kWaveHarmonics + i] = function(f, i);
  }
  return buffer;
}

inline float& at(std::vector<float>& buffer, int frame, int index) {
  return buffer[static_cast<size_t>(frame * kWaveHarmonics + index)];
}

}  // namespace sablevox::test
