// The spectral content of the 85 built-in waves, frame by frame.
#pragma once

#include <cstdint>

namespace sablevox::wavegen {

// 256, or 1 for a single-frame wave.
int waveFrameCount(int wave);

// Fills amplitudes[0..255] (harmonic numbers 1..256) of frame 0..255 of the
// wave; frames at or beyond the wave's frame count are not asked for.
void waveFrame(int wave, int frame, uint16_t* amplitudes);

}  // namespace sablevox::wavegen
