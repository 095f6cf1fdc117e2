// Signatures of the per-stretch routines the engine picks at refresh time:
// the oscillator render variants and the voice's drive and output stage.
#pragma once

#include <cstdint>

namespace sablevox {

// Adds sampleCount samples of one oscillator stack member into destination.
// phase: 24-bit fixed point; framePosition: wave position with 16 fraction
// bits; speed: cycles per output sample; targetFrame: 0 to 254.99.
using OscRender = void (*)(float* destination, const int16_t* table, int sampleCount,
                           uint32_t& phase, int32_t& framePosition, float speed, float gain,
                           float targetFrame);

// Drive and output gain of one channel of a voice, in place.
using OutputStage = void (*)(float* buffer, int count, float driveLow, float driveHigh, float drive,
                             float& state);

}  // namespace sablevox
