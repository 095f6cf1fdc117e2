// The biquad primitives. tan, sinh, pow and sqrt run in double and round to
// float; sine and cosine are the fast helpers, whose error is part of the sound.
#include "filter/biquad_design.h"

#include <cmath>

#include "filter/cutoff_law.h"
#include "host/numeric.h"

namespace sablevox {
namespace {

// Not the exact pi: these are the design's own constants.
constexpr float kPi = 3.14159f;
constexpr float kTwoPi = 6.28318f;
// ln(2)/2 * 2 pi: octaves of bandwidth to the cookbook's sinh argument.
constexpr float kOctaveWidth = 2.177586f;

float tanOf(float v) {
  return static_cast<float>(std::tan(static_cast<double>(v)));
}
float sinhOf(float v) {
  return static_cast<float>(std::sinh(static_cast<double>(v)));
}

}  // namespace

BiquadWords designLowpass(float x, float p, int sampleRate) {
  const float f = cutoffLaw(x, sampleRate);
  // The resonance amount also shifts the frequency: 10 % up at p = 0, 5 % down at p = 1.
  const float w = tanOf((1.1f - p * 0.15f) * f * kPi);
  const float q = static_cast<float>(w / (fastExp(p * p * 5.0f) * 0.75f));
  const float d = q + 1.0f + w * w;
  BiquadWords b;
  b.a0 = w * w / d;
  b.a1 = 2.0f * w * w / d;
  b.a2 = b.a0;
  b.b1 = -2.0f * (w * w - 1.0f) / d;
  b.b2 = -(1.0f - q + w * w) / d;
  return b;
}

BiquadWords designHighpass(float x, float p, int sampleRate) {
  const float f = cutoffLaw(x, sampleRate);
  const float w = tanOf(f * kTwoPi * 0.5f);
  const float q = w / (p * p * 6.0f + 0.2f);
  const float d = w * w + q + 1.0f;
  // The numerator holds q too: this is not the mirror image of the low-pass.
  BiquadWords b;
  b.a0 = (1.0f + q) / d;
  b.a1 = -2.0f / d;
  b.a2 = (1.0f - q) / d;
  b.b1 = -2.0f * (w * w - 1.0f) / d;
  b.b2 = -(w * w + 1.0f - q) / d;
  return b;
}

BiquadWords designBandpass(float x, float width, int sampleRate) {
  const float f = cutoffLaw(x, sampleRate);
  // A gain that rises with frequency, about 7.45 at the top limit; it enters
  // the bandwidth term too.
  const float v = static_cast<float>(fastExp(f * f * f * 22.0f));
  const float s = fastSin(f * kTwoPi) * v;
  const float h = sinhOf(width * kOctaveWidth * f / s);
  const float alpha = h * s;
  const float d = 1.0f + alpha;
  BiquadWords b;
  b.a0 = 0.5f * s / d;
  b.a1 = 0.0f;
  b.a2 = -0.5f * s / d;
  b.b1 = 2.0f * fastCos(f * kTwoPi) / d;
  b.b2 = -(1.0f - alpha) / d;
  return b;
}

BiquadWords designAllpass(float x, float width, int sampleRate) {
  const float f = cutoffLaw(x, sampleRate);
  const float s = fastSin(f * kTwoPi);
  const float alpha = s * sinhOf(width * kOctaveWidth * f / s);
  const float d = 1.0f + alpha;
  const float cs = fastCos(f * kTwoPi);
  BiquadWords b;
  b.a0 = (1.0f - alpha) / d;
  b.a1 = -2.0f * cs / d;
  b.a2 = 1.0f;
  b.b1 = 2.0f * cs / d;
  b.b2 = -(1.0f - alpha) / d;
  return b;
}

BiquadWords designPeak(float x, float G, float H, int sampleRate) {
  const float f = cutoffLaw(x, sampleRate);
  const float t = tanOf(f * kPi);
  const float d = t * H + 1.0f + t * t;
  BiquadWords b;
  b.a0 = (t * G + 1.0f + t * t) / d;
  b.a1 = 2.0f * (t * t - 1.0f) / d;
  b.a2 = (1.0f - t * G + t * t) / d;
  b.b1 = -2.0f * (t * t - 1.0f) / d;
  b.b2 = -(1.0f - t * H + t * t) / d;
  return b;
}

namespace {

struct ShelfTerms {
  float A, cs, beta;
};

ShelfTerms shelfTerms(float x, float g, int sampleRate) {
  ShelfTerms t;
  t.A = static_cast<float>(std::pow(2.0, static_cast<double>(g)));
  const float f = cutoffLaw(x, sampleRate);
  t.cs = fastCos(f * kTwoPi);
  t.beta = fastSin(f * kTwoPi) * static_cast<float>(std::sqrt(static_cast<double>(t.A * 2.0f)));
  return t;
}

}  // namespace

BiquadWords designLowShelf(float x, float g, int sampleRate) {
  const auto [A, cs, beta] = shelfTerms(x, g, sampleRate);
  const float d = (A + 1.0f) + (A - 1.0f) * cs + beta;
  BiquadWords b;
  b.a0 = A * ((A + 1.0f) - (A - 1.0f) * cs + beta) / d;
  b.a1 = 2.0f * A * ((A - 1.0f) - (A + 1.0f) * cs) / d;
  b.a2 = A * ((A + 1.0f) - (A - 1.0f) * cs - beta) / d;
  b.b1 = 2.0f * ((A + 1.0f) * cs + (A - 1.0f)) / d;
  b.b2 = -((A + 1.0f) + (A - 1.0f) * cs - beta) / d;
  return b;
}

BiquadWords designHighShelf(float x, float g, int sampleRate) {
  const auto [A, cs, beta] = shelfTerms(x, g, sampleRate);
  const float d = (A + 1.0f) - (A - 1.0f) * cs + beta;
  BiquadWords b;
  b.a0 = A * ((A + 1.0f) + (A - 1.0f) * cs + beta) / d;
  b.a1 = -2.0f * A * ((A - 1.0f) + (A + 1.0f) * cs) / d;
  b.a2 = A * ((A + 1.0f) + (A - 1.0f) * cs - beta) / d;
  b.b1 = -2.0f * ((A - 1.0f) - (A + 1.0f) * cs) / d;
  b.b2 = -((A + 1.0f) - (A - 1.0f) * cs - beta) / d;
  return b;
}

}  // namespace sablevox
