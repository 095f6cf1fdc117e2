// The two envelopes of a voice, stepped once per control tick. The volume
// envelope multiplies (exponential, with a sixth-power time curve) and its
// state is the voice's life; the filter envelope adds and subtracts steps
// from fastExp and shapes its output. States: kEnvIdle .. kEnvRelease.
// Time parameters are the normalised values 0..1; the caller clamps them.
#pragma once

#include <cstdint>

namespace sablevox {

// Factor per tick of the volume envelope for a time parameter t: 0 at t = 0,
// 0.9997 at t = 1.
float volumeFactor(float t);

// One tick of the volume envelope; returns the new ampLevel. gate is 1 while
// the key holds the voice.
float stepVolumeEnvelope(float attack, float decay, float sustain, float release, uint8_t gate,
                         uint8_t& ampState, float& ampCore, float& ampLevel);

// One tick of the filter envelope; returns its shaped output ((2 - v) * v
// while rising, v * v * 0.7 + v * 0.3 otherwise, v = filtLevel).
float stepFilterEnvelope(float attack, float decay, float sustain, float release, uint8_t gate,
                         uint8_t& filtState, float& filtLevel);

}  // namespace sablevox
