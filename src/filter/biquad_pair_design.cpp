// Which primitives feed the two biquad stages, at which positions, and the
// output gain that compensates the resonance, per biquad-pair code.
#include <cmath>

#include "filter/biquad_design.h"
#include "filter/cutoff_law.h"
#include "filter/family_design.h"
#include "host/numeric.h"

namespace sablevox {
namespace {

struct PairDesign {
  BiquadWords stage1, stage2;
  float gain;
  int mode;
  FilterRoutine routine;
};

float fastExpF(float x) {
  return static_cast<float>(fastExp(x));
}

// Returns false for a code that is not a biquad pair.
bool pairFor(int code, int rate, float c, float r, PairDesign& d) {
  const auto L = [rate](float x, float p) { return designLowpass(x, p, rate); };
  const auto H = [rate](float x, float p) { return designHighpass(x, p, rate); };
  const auto B = [rate](float x, float w) { return designBandpass(x, w, rate); };
  const auto P = [rate](float x, float g, float h) { return designPeak(x, g, h, rate); };
  d.mode = kModeBiquadSerial;
  d.routine = filterSerial;
  switch (code) {
    case 0:     // "LP 30dB"
    case 88: {  // "LP Syncie": the same pair between one-sided clippers
      const float p = clamp01((r * r + r) * 0.5f * 0.8f);
      d.stage1 = d.stage2 = L(c, p);
      d.gain = fastExpF(p * p * p * -6.5f);
      if (code == 88) d.routine = filterSyncie;
      return true;
    }
    case 10:  // "LP oct"
      d.stage1 = L(c, clamp01(r * 0.8f));
      d.stage2 = L(c + 0.114f, clamp01((r * r + 1.0f) * 0.5f));
      d.gain = fastExpF(r * r * -1.3f);
      return true;
    case 1:  // "HP 24dB"
      d.stage1 = d.stage2 = H(c, r);
      d.gain = fastExpF(r * r * -1.5f);
      return true;
    case 2:  // "BP 18dB"
      d.stage1 = d.stage2 = B(c, 2.0f - r * 1.9f);
      d.gain = static_cast<float>(fastExp(r * r * -4.0f) * (r + 1.0f) * 4.0f);
      return true;
    case 15:  // "BP Para": the positions may leave 0..1
      d.stage1 = B(c - r * 0.5f, 0.48f);
      d.stage2 = B(c + r * 0.5f, 0.48f);
      d.gain = 1.0f;
      d.mode = kModeBiquadParallel;
      d.routine = filterParallel;
      return true;
    case 3: {  // "Notch"
      const float e = fastExpF(r * 3.0f);
      d.stage1 = d.stage2 = P(c, 1.0f / e, 18.0f / e);
      d.gain = 1.3f;
      return true;
    }
    case 6:  // "Lo shelf"
      d.stage1 = d.stage2 = designLowShelf(c, r, rate);
      d.gain = static_cast<float>(std::pow(2.0, static_cast<double>(r * -2.0f)));
      return true;
    case 7:  // "Hi shelf"
      d.stage1 = d.stage2 = designHighShelf(c, r, rate);
      d.gain = static_cast<float>(std::pow(2.0, static_cast<double>(r * -2.0f)));
      return true;
    case 23:  // "Phaser"
      d.stage1 = d.stage2 = designAllpass(c, 1.0f - r * 0.999f, rate);
      d.gain = 1.0f;
      d.mode = kModeBiquadPhaser;
      d.routine = filterPhaser;
      return true;
    case 11:  // "M-Shape"
      d.stage1 = H(c - r * 0.5f, 0.7f);
      d.stage2 = L(c + r * 0.5f, 0.5f);
      d.gain = 0.7f;
      return true;
    case 26:  // "LP Elliptic"
      d.stage1 = L(c, clamp01(r * 0.2f + 0.15f));
      d.stage2 = L(c + (r + 1.0f) * 0.114f, clamp01(r * 0.3f + 0.6f));
      d.gain = 1.0f - r * 0.25f;
      return true;
    case 27:  // "HP Elliptic"
      d.stage1 = H(c + (r + 1.0f) * 0.114f, clamp01(r * 0.3f));
      d.stage2 = H(c, clamp01(r * 0.7f + 0.2f));
      d.gain = 1.0f;
      return true;
    case 4: {  // "EQ Peak 1"
      const float p = clamp01(r * 0.7f);
      d.stage1 = d.stage2 = P(c, static_cast<float>(fastExp(p * 3.0f) * 0.25f), 0.25f);
      d.gain = fastExpF(p * p * -3.0f);
      return true;
    }
    case 12: {  // "EQ Peak 2"
      d.stage1 = d.stage2 = P(c, fastExpF(r * r * 5.0f), 1.0f);
      const double e = fastExp(r * r * -5.0f);
      d.gain = static_cast<float>(e * e * ((r + 1.0f) * (r + 1.0f)));
      return true;
    }
    case 66:  // "EQ Block"
      d.stage1 = H(c - r * 0.5f, 0.2f);
      d.stage2 = L(c + r * 0.5f, 0.2f);
      d.gain = 1.0f;
      return true;
    default:
      return false;
  }
}

// The vocal types: two formants whose positions move with the cutoff, and
// with the resonance argument.
bool vocalPairFor(int code, int rate, float c, float r, PairDesign& d) {
  const auto L = [rate](float x, float p) { return designLowpass(x, p, rate); };
  const auto B = [rate](float x, float w) { return designBandpass(x, w, rate); };
  // x1 falls with the cutoff; x2 rises until c = 0.5 and then falls back.
  const float x1 = 0.66f - c * 0.17f + r * 0.14f - 0.02f;
  const float x2 = 0.3f - c * c * 0.62f + c * 0.62f + r * 0.14f - 0.02f;
  d.gain = 0.6f;
  d.mode = kModeBiquadSerial;
  d.routine = filterParallel;
  if (code == 17) {  // "Vocals"
    const float g = static_cast<float>(fastExp(2.1f) * 0.1f);
    d.stage1 = designPeak(x1, g, 0.1f, rate);
    d.stage2 = designPeak(x2, g, 0.1f, rate);
    d.routine = filterSerial;
    return true;
  }
  if (code == 70) {  // "Vocals2"
    d.stage1 = B(x1, 0.29f);
    d.stage2 = L(x2, 0.7f);
    return true;
  }
  // "VOC A", "VOC U", "VOC E", "VOC I", "VOC O": first and second formant.
  static constexpr float kFormants[5][2] = {
      {0.46f, 0.52f}, {0.26f, 0.42f}, {0.32f, 0.65f}, {0.23f, 0.7f}, {0.35f, 0.45f}};
  if (code < 18 || code > 22) return false;
  const float* formant = kFormants[code - 18];
  d.stage1 = L(c * 0.16f + formant[0] - 0.08f, 0.7f);
  d.stage2 = B(c * 0.16f + formant[1] - 0.08f + r * 0.1f - 0.05f, 0.29f);
  return true;
}

void storeWords(const BiquadWords& b, float* words) {
  words[0] = b.a0;
  words[1] = b.a1;
  words[2] = b.a2;
  words[3] = b.b1;
  words[4] = b.b2;
}

}  // namespace

FilterRoutine designBiquadPair(int code, int sampleRate, float c, float r, FilterState& state) {
  PairDesign d;
  if (!pairFor(code, sampleRate, c, r, d) && !vocalPairFor(code, sampleRate, c, r, d)) {
    return nullptr;
  }
  state.mode = static_cast<float>(d.mode);
  state.gain = d.gain;
  storeWords(d.stage1, state.set1);
  storeWords(d.stage2, state.set2);
  return d.routine;
}

}  // namespace sablevox
