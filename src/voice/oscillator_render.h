// The oscillator render variants (signature in render_types.h). Each adds
// sampleCount samples of one stack member into destination, reading the
// wave table at the band-limited level that suits speed, and glides the wave
// position from framePosition towards targetFrame during the call.
//
// Fixed point: phase 24 bits (a cycle is 2^24); position 16 fraction bits
// (frame in the bits above); 12-bit fraction between table samples. The
// caller guarantees a table of 256 frame blocks; any speed, position and
// target are safe (reads stay inside frames 0..255 and inside the level).
#pragma once

#include "voice/render_types.h"

namespace sablevox {

// "ultra": two steps per sample, 4-point cubic between R(1) and R(2), blended frames.
void renderCubic2x(float* destination, const int16_t* table, int sampleCount, uint32_t& phase,
                   int32_t& framePosition, float speed, float gain, float targetFrame);
// "high": two steps per sample, linear between R(1) and R(2), blended frames.
void renderLinear2x(float* destination, const int16_t* table, int sampleCount, uint32_t& phase,
                    int32_t& framePosition, float speed, float gain, float targetFrame);
// "medium": one step per sample, linear between R(0) and R(1), blended frames.
void renderLinear(float* destination, const int16_t* table, int sampleCount, uint32_t& phase,
                  int32_t& framePosition, float speed, float gain, float targetFrame);
// "low": one step per sample, nearest sample of the nearest lower frame.
void renderNearest(float* destination, const int16_t* table, int sampleCount, uint32_t& phase,
                   int32_t& framePosition, float speed, float gain, float targetFrame);

// Wave "STA Noise": white noise at the oscillator's gain; pitch plays no part.
void renderNoise(float* destination, const int16_t* table, int sampleCount, uint32_t& phase,
                 int32_t& framePosition, float speed, float gain, float targetFrame);

// Highest glide target of the wave position: frame 254 with fraction 0xFF01,
// so that a frame and its next frame both exist.
constexpr int32_t kHighestFrameTarget = 255 * 65535;

}  // namespace sablevox
