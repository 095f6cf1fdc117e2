// The filter's cutoff scale: a position (0..1 for the knob, beyond it once
// offsets are added) becomes a normalised frequency in cycles per sample.
#pragma once

namespace sablevox {

// About 50.3 Hz at x = 0 and 19845 Hz at x = 1, the same in Hz at every
// rate; unlimited, so it may pass the Nyquist frequency.
float rawCutoffLaw(float x, int sampleRate);

// rawCutoffLaw limited to 0.0001..0.45, which keeps the biquad tangents away
// from their pole.
float cutoffLaw(float x, int sampleRate);

// Limits a value to 0..1; NaN becomes 0.
inline float clamp01(float v) {
  return v > 0.0f ? (v < 1.0f ? v : 1.0f) : 0.0f;
}

}  // namespace sablevox
