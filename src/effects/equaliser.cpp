// Equaliser: shelf design (double precision, stored as floats) and the
// per-channel loop.
#include "effects/equaliser.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include "effects/effect_common.h"
#include "host/numeric.h"

namespace sablevox {
void Equaliser::reset() {
  sections_.fill(EqualiserSection{});
  dcLeft_ = 0.0f;
  dcRight_ = 0.0f;
  silenceCount_ = 0;
}

void Equaliser::setSampleRate(float rate) {
  sampleRate_ = clampEffectRate(rate);
  for (int index = 0; index < kSectionCount; ++index) {
    if (index % 2 == 0) {
      design(index, lowCutoff_, lowGain_, lowQ_);
    } else {
      design(index, highCutoff_, highGain_, 1.0);
    }
  }
  dcCoefficient_ = dcCutoff_ * 100.0f / sampleRate_;
}

// Shelf of the usual public formulas with a slope set by q; even indices low,
// odd indices high. The history of the section is kept.
void Equaliser::design(int index, double frequency, double gain, double q) {
  const double rate = sampleRate_;
  q = std::max(q, static_cast<double>(0.01f));
  frequency = std::min(frequency, rate * static_cast<double>(0.49f));
  const double A = std::pow(10.0, gain * static_cast<double>(0.025f));
  const double w = frequency * static_cast<double>(6.2831855f) / rate;
  const double sn = fastSin(static_cast<float>(w));
  const double cs = fastCos(static_cast<float>(w));
  const float root = static_cast<float>((A * A + 1.0) / q - (A - 1.0) * (A - 1.0));
  const double beta = std::sqrt(static_cast<double>(root)) * sn;
  double n, d, p, u;
  if (index % 2 == 0) {
    n = (A + 1.0) - (A - 1.0) * cs;
    d = (A + 1.0) + (A - 1.0) * cs;
    p = ((A - 1.0) - (A + 1.0) * cs) * A * 2.0;
    u = ((A - 1.0) + (A + 1.0) * cs) * -2.0;
  } else {
    n = (A + 1.0) + (A - 1.0) * cs;
    d = (A + 1.0) - (A - 1.0) * cs;
    p = ((A + 1.0) * cs + (A - 1.0)) * A * -2.0;
    u = ((A - 1.0) - (A + 1.0) * cs) * 2.0;
  }
  const double i = 1.0 / (d + beta);
  EqualiserSection& s = sections_[index];
  s.a0 = static_cast<float>(i * (beta + n) * A);
  s.a1 = static_cast<float>(i * p);
  s.a2 = static_cast<float>(i * (n - beta) * A);
  s.b1 = static_cast<float>(i * u);
  s.b2 = static_cast<float>(i * (d - beta));
}

void Equaliser::process(float* left, float* right, int count) {
  if (count <= 0 || left == nullptr || right == nullptr) return;
  long long silence = silenceCount_;
  processChannel(left, count, sections_[0], sections_[1], dcLeft_, silence);
  processChannel(right, count, sections_[2], sections_[3], dcRight_, silence);
  silenceCount_ = static_cast<int>(std::min<long long>(silence, INT_MAX));
}

void Equaliser::processChannel(float* samples, int count, EqualiserSection& low,
                               EqualiserSection& high, float& dc, long long& silence) const {
  const float la0 = low.a0, la1 = low.a1, la2 = low.a2, lb1 = low.b1, lb2 = low.b2;
  const float ha0 = high.a0, ha1 = high.a1, ha2 = high.a2, hb1 = high.b1, hb2 = high.b2;
  float lx1 = low.x1, lx2 = low.x2, ly1 = low.y1, ly2 = low.y2;
  float hx1 = high.x1, hx2 = high.x2, hy1 = high.y1, hy2 = high.y2;
  const float k = dcCoefficient_;
  const float keep = 1.0f - k;
  const float gain = outputGain_;
  const float threshold = silenceThreshold_;
  float level = dc;
  long long quiet = silence;
  for (int i = 0; i < count; ++i) {
    const float u = samples[i] + kDenormalOffset;
    const float y = la0 * u + la1 * lx1 + la2 * lx2 - lb1 * ly1 - lb2 * ly2;
    lx2 = lx1;
    lx1 = u;
    ly2 = ly1;
    ly1 = y;
    const float z = ha0 * y + ha1 * hx1 + ha2 * hx2 - hb1 * hy1 - hb2 * hy2;
    hx2 = hx1;
    hx1 = y;
    hy2 = hy1;
    hy1 = z;
    level = keep * level + k * z;
    const float o = (z - level) * gain;
    quiet = fastAbs(o) <= threshold ? quiet + 1 : 0;
    samples[i] = o + kDenormalOffset;
  }
  low.x1 = lx1;
  low.x2 = lx2;
  low.y1 = ly1;
  low.y2 = ly2;
  high.x1 = hx1;
  high.x2 = hx2;
  high.y1 = hy1;
  high.y2 = hy2;
  dc = level;
  silence = quiet;
}

}  // namespace sablevox
