// Delay: per-call decode of length and damping, then one loop per mode with
// all state in locals.
#include "effects/delay.h"

#include <algorithm>

#include "effects/effect_common.h"

namespace sablevox {
namespace {

// Delay times in beats, chosen by "Delaytime".
constexpr float kBeats[5] = {0.25f, 0.375f, 0.5f, 0.75f, 1.0f};

// Far beyond the line, yet twice of it still fits an int: only the length
// modulo the line matters.
constexpr float kLongestDelay = 536870912.0f;  // 2^29

}  // namespace

void Delay::reset() {
  clearWritten(lineLeft_.data(), lineWritten_, kLineLength);
  clearWritten(lineRight_.data(), lineWritten_, kLineLength);
  clearWritten(lineAux1_.data(), auxWritten_, kLineLength);
  clearWritten(lineAux2_.data(), auxWritten_, kLineLength);
  lineWritten_ = auxWritten_ = 0;
  writeIndex_ = 0;
  dampLeft_ = 0.0f;
  dampRight_ = 0.0f;
}

int Delay::delayLength() const {
  const float beats = kBeats[static_cast<int>(parameters_[1] * 4.999f)];
  const float samples = sampleRate_ / tempo_ * 60.0f * beats;
  if (!(samples >= 0.0f)) return 0;  // negative or NaN tempo
  return static_cast<int>(std::min(samples, kLongestDelay));
}

void Delay::process(float* left, float* right, int count) {
  if (count <= 0 || left == nullptr || right == nullptr) return;
  const int delay = delayLength();
  const float e = 1.0f - parameters_[3];
  const float g = std::min((e * e * e * 0.99f + 0.01f) * 44100.0f / sampleRate_, 1.0f);
  switch (mode_) {
    case 0:
      processEcho<false>(left, right, count, delay, delay, g);
      break;
    case 1:
      processEcho<false>(left, right, count, 2 * delay, delay, g);
      break;
    case 2:
      processEcho<true>(left, right, count, delay, delay, g);
      break;
    case 3:
      processCross(left, right, count, delay, g);
      break;
    default:
      break;
  }
}

// Modes 0 to 2: one damped line per channel. Modes 0 and 1 feed nothing back
// and play the echo at the squared "Dry/wet". Mode 2 (kInverted) lets input
// and echo enter the line through the same factor, the echo negated, so
// successive echoes alternate in polarity.
template <bool kInverted>
void Delay::processEcho(float* left, float* right, int count, int leftDelay, int delay, float g) {
  const float h = 1.0f - g;
  const float wet = kInverted ? parameters_[0] : parameters_[0] * parameters_[0];
  const float fb = parameters_[2] * 0.9f + 0.1f;
  float* lineL = lineLeft_.data();
  float* lineR = lineRight_.data();
  float dampL = dampLeft_;
  float dampR = dampRight_;
  int w = writeIndex_;
  lineWritten_ = raiseWrittenMark(lineWritten_, w, count, kLineLength);
  for (int i = 0; i < count; ++i) {
    const float l = left[i];
    const float r = right[i];
    const int readL = (w - leftDelay) & kMask;
    const int readR = (w - delay) & kMask;
    float inL = l;
    float inR = r;
    if constexpr (kInverted) {
      inL = fb * l - lineL[readL] * fb;
      inR = fb * r - lineR[readR] * fb;
    }
    dampL = inL * g + h * dampL + kDenormalOffset;
    dampR = inR * g + h * dampR + kDenormalOffset;
    lineL[w] = dampL;
    lineR[w] = dampR;
    // Read after the write: at a zero delay this is the sample just written.
    left[i] = lineL[readL] * wet + l;
    right[i] = lineR[readR] * wet + r;
    w = (w + 1) & kMask;
  }
  dampLeft_ = dampL;
  dampRight_ = dampR;
  writeIndex_ = w;
}

// Mode 3: each channel's delayed signal feeds the other channel's line,
// negated; the right input reaches the left output after one delay.
void Delay::processCross(float* left, float* right, int count, int delay, float g) {
  const float h = 1.0f - g;
  const float wet = parameters_[0];
  const float fb = parameters_[2] * 0.9f + 0.1f;
  const int doubled = 2 * delay;
  float* lineL = lineLeft_.data();
  float* lineR = lineRight_.data();
  float* aux1 = lineAux1_.data();
  float* aux2 = lineAux2_.data();
  float dampL = dampLeft_;
  float dampR = dampRight_;
  int w = writeIndex_;
  lineWritten_ = raiseWrittenMark(lineWritten_, w, count, kLineLength);
  auxWritten_ = raiseWrittenMark(auxWritten_, w, count, kLineLength);
  for (int i = 0; i < count; ++i) {
    const float l = left[i];
    const float r = right[i];
    const int far = (w - doubled) & kMask;
    const float tr = lineR[far] * fb;
    const float tl = lineL[far] * fb;
    aux1[w] = (fb + 1.0f) * tl * 0.5f;
    aux2[w] = r;
    const int near = (w - delay) & kMask;
    left[i] = (aux2[near] + aux1[near]) * wet + l;
    right[i] = tr * wet + r;
    dampL = h * dampL - (tr + l) * g + kDenormalOffset;
    dampR = h * dampR - (tl + r) * g + kDenormalOffset;
    lineL[w] = dampL;
    lineR[w] = dampR;
    w = (w + 1) & kMask;
  }
  dampLeft_ = dampL;
  dampRight_ = dampR;
  writeIndex_ = w;
}

}  // namespace sablevox
