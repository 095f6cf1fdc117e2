// The seven biquad primitives behind the biquad-pair filter types. Each has
// its own resonance law; the words follow the sign convention
// y = a0*x + a1*x1 + a2*x2 + b1*y1 + b2*y2.
#pragma once

namespace sablevox {

struct BiquadWords {
  float a0, a1, a2, b1, b2;
};

// x is a position on the cutoff scale; it is not clamped, only the frequency
// it gives is. p is a resonance amount in 0..1; width is in octaves.
BiquadWords designLowpass(float x, float p, int sampleRate);
BiquadWords designHighpass(float x, float p, int sampleRate);
BiquadWords designBandpass(float x, float width, int sampleRate);
BiquadWords designAllpass(float x, float width, int sampleRate);
// G above H gives a peak, G below H a dip.
BiquadWords designPeak(float x, float G, float H, int sampleRate);
// Slope-1 shelves with the gain given as a power of two.
BiquadWords designLowShelf(float x, float g, int sampleRate);
BiquadWords designHighShelf(float x, float g, int sampleRate);

}  // namespace sablevox
