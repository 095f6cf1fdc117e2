// Turns a spectral work buffer (frames of 256 harmonic amplitudes, after the
// modifier) into a playable table of ten band-limited levels per frame.
// Worker thread only.
#pragma once

#include <cstdint>

#include "waves/wave_format.h"

namespace sablevox {

// Floats of scratch that a build of frameCount frames needs: one float per
// table sample, frameCount * kFrameBlock.
constexpr int buildScratchFloats(int frameCount) {
  return frameCount * kFrameBlock;
}

// table: frameCount * kFrameBlock samples; spectrum: frameCount * 256
// amplitudes (any sign, any size); scale: table units per amplitude unit
// (the worker uses 0.01); scratch: buildScratchFloats(frameCount) floats of
// the caller's, so that a build allocates nothing. frameCount is limited to
// 256; below 1 nothing happens.
//
// Every level is synthesised into scratch first and the table is written
// only in one final conversion pass, frame by frame in ascending order: a
// reader of a live table sees old and new frames for that pass alone.
// Samples are clipped to -32768..32767 and truncated towards zero.
void buildWaveTable(int16_t* table, const float* spectrum, int frameCount, float scale,
                    float* scratch);

}  // namespace sablevox
