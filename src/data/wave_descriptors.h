// The descriptor table of the 85 built-in waves: names and the per-wave
// settings that travel with a wave (default loop and speed, octave, level,
// load-time harmonic boost). Read by the wave slots at construction and by
// the wave record generator.
#pragma once

#include <cstdint>

namespace sablevox {

constexpr int kWaveCount = 85;

struct WaveDescriptor {
  const char* sourceName;    // the spectral source the record was made from; never opened
  const char* displayName;   // menu name, at most 31 characters
  uint8_t defaultLoop;       // index in the Osc?Loop value list that "auto" stands for
  uint8_t defaultLoopSpeed;  // index in the Osc?LSp value list that "auto" stands for
  int32_t pitchStep;         // octaves, -2..2
  float level;               // gain that follows the wave's table
  int32_t boostMode;         // 0 none, 1 multiples 2..8, 2 multiples 2, 4, 8
  float boostAmount;         // 0..1, in 1/256 steps after truncation
};

extern const WaveDescriptor kWaveDescriptors[kWaveCount];

}  // namespace sablevox
