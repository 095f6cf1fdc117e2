// Chorus: per-call decode of rate and depth, then one loop per mode with all
// state in locals. Delays are in samples behind the write position.
#include "effects/chorus.h"

#include "effects/effect_common.h"
#include "host/numeric.h"

namespace sablevox {
namespace {

constexpr int kMask = Chorus::kLineLength - 1;

// Linear interpolation d samples behind w (d >= 0, bounded).
inline float readLinear(const float* line, int w, float d) {
  const int i = static_cast<int>(d);
  const float e = d - static_cast<float>(i);
  return crossfade(1.0f - e, line[(w - i) & kMask], line[(w - i - 1) & kMask]);
}

// Four-point read, one sample later than readLinear for the same d.
inline float readHermite(const float* line, int w, float d) {
  const int i = static_cast<int>(d);
  const float e = d - static_cast<float>(i);
  return hermite5(1.0f - e, line[(w - i - 3) & kMask], line[(w - i - 2) & kMask],
                  line[(w - i - 1) & kMask], line[(w - i) & kMask]);
}

}  // namespace

void Chorus::reset() {
  clearWritten(lineLeft_.data(), lineWritten_, kLineLength);
  clearWritten(lineRight_.data(), lineWritten_, kLineLength);
  clearWritten(lineHighLeft_.data(), highWritten_, kLineLength);
  clearWritten(lineHighRight_.data(), highWritten_, kLineLength);
  lineWritten_ = highWritten_ = 0;
  writeIndex_ = 0;
  phase1_ = 0.0f;
  phase2_ = 0.0f;
  lowLeft_ = 0.0f;
  lowRight_ = 0.0f;
}

void Chorus::process(float* left, float* right, int count) {
  if (count <= 0 || left == nullptr || right == nullptr) return;
  switch (mode_) {
    case 0:
      processChorus(left, right, count);
      break;
    case 1:
      processEnsemble(left, right, count);
      break;
    case 2:
      processFlanger(left, right, count);
      break;
    case 3:
      processRotary(left, right, count);
      break;
    default:
      break;
  }
}

// 1 to 5 Hz triangle; the depth is divided by the rate so that the pitch
// deviation does not depend on the speed. Channels swing in opposition.
void Chorus::processChorus(float* left, float* right, int count) {
  const float m = parameters_[0];
  const float inc = (parameters_[1] * 0.8f + 0.2f) / sampleRate_ * 5.0f;
  const float amp = (parameters_[2] * 0.8f + 0.2f) / inc * 0.005f;
  const float centre = amp * 2.5f;
  float* lineL = lineLeft_.data();
  float* lineR = lineRight_.data();
  float phase = phase1_;
  int w = writeIndex_;
  lineWritten_ = raiseWrittenMark(lineWritten_, w, count, kLineLength);
  for (int i = 0; i < count; ++i) {
    const float l = left[i];
    const float r = right[i];
    phase = advancePhase(phase, inc);
    const float t = triangleShape(phase);
    lineL[w] = l;
    lineR[w] = r;
    const float dl = t * amp + centre;
    const float dr = (1.0f - t) * amp + centre;
    left[i] = l * (1.0f - m) + readHermite(lineL, w, dl) * m;
    right[i] = r * (1.0f - m) + readHermite(lineR, w, dr) * m;
    w = (w + 1) & kMask;
  }
  phase1_ = phase;
  writeIndex_ = w;
}

// Two parabolic LFOs at a ratio of 1.7, two taps per channel.
void Chorus::processEnsemble(float* left, float* right, int count) {
  const float m = parameters_[0];
  const float inc = (parameters_[1] * 0.8f + 0.2f) / sampleRate_ * 4.0f;
  const float inc2 = inc * 1.7f;
  const float amp = (parameters_[2] * 0.8f + 0.2f) / inc * 0.005f;
  const float wet = m * 0.66f;
  float* lineL = lineLeft_.data();
  float* lineR = lineRight_.data();
  float p1 = phase1_;
  float p2 = phase2_;
  int w = writeIndex_;
  lineWritten_ = raiseWrittenMark(lineWritten_, w, count, kLineLength);
  for (int i = 0; i < count; ++i) {
    const float l = left[i];
    const float r = right[i];
    lineL[w] = l;
    lineR[w] = r;
    p1 = advancePhase(p1, inc);
    p2 = advancePhase(p2, inc2);
    const float f = parabolicShape(p1);
    const float g = parabolicShape(p2);
    const float d1 = (f + 2.0f) * amp;
    const float d2 = ((1.0f - f) + 2.0f) * amp;
    const float d3 = (g + 2.0f) * amp * 0.58823526f;  // 1/1.7
    const float d4 = ((1.0f - g) + 2.0f) * amp * 0.58823526f;
    left[i] = (readLinear(lineL, w, d1) + readLinear(lineL, w, d3)) * wet + l * (1.0f - m);
    right[i] = (readLinear(lineR, w, d2) + readLinear(lineR, w, d4)) * wet + r * (1.0f - m);
    w = (w + 1) & kMask;
  }
  phase1_ = p1;
  phase2_ = p2;
  writeIndex_ = w;
}

// 0.02 to 1 Hz. The feedback takes the difference of a tap at d and one at
// 2d, the latter interpolated with the fraction of d: part of the sound.
void Chorus::processFlanger(float* left, float* right, int count) {
  const float m = parameters_[0];
  const float s = parameters_[1];
  const float inc = (s * s * 0.98f + 0.02f) / sampleRate_;
  const float amp = (parameters_[2] * 0.8f + 0.2f) / inc * 0.001f;
  const float fb = (parameters_[3] * 0.45f + 0.5f) * 0.5f;
  float* lineL = lineLeft_.data();
  float* lineR = lineRight_.data();
  float phase = phase1_;
  int w = writeIndex_;
  // Written one ahead: cells w + 1 .. w + count.
  lineWritten_ = raiseWrittenMark(lineWritten_, w + 1, count, kLineLength);
  auto secondTap = [](const float* line, int at, float d) {
    const int i = static_cast<int>(2.0f * d);
    const int j = static_cast<int>(2.0f * d + 1.0f);
    const float e = d - static_cast<float>(static_cast<int>(d));
    return line[(at - i) & kMask] * (1.0f - e) + line[(at - j) & kMask] * e;
  };
  for (int i = 0; i < count; ++i) {
    const float l = left[i];
    const float r = right[i];
    phase = advancePhase(phase, inc);
    const float t = triangleShape(phase);
    const float dl = t * amp;
    const float dr = (1.0f - t) * amp;
    const float a1 = readLinear(lineL, w, dl);
    const float a2 = secondTap(lineL, w, dl);
    const float b1 = readLinear(lineR, w, dr);
    const float b2 = secondTap(lineR, w, dr);
    w = (w + 1) & kMask;  // before the write: the taps above were one sample longer
    lineL[w] = l - a1 * fb + a2 * fb;
    lineR[w] = r - b1 * fb + b2 * fb;
    left[i] = a1 * m * 0.5f + l * (1.0f - m);
    right[i] = b1 * m * 0.5f + r * (1.0f - m);
  }
  phase1_ = phase;
  writeIndex_ = w;
}

// Rotating speaker: a one-pole crossover splits low and high bands, each
// band pitch-modulated by its rotor's delay and amplitude-modulated by the
// same LFO (tremolo depth from the fifth parameter), opposite per channel.
void Chorus::processRotary(float* left, float* right, int count) {
  const float m = parameters_[0];
  const float depth = parameters_[2] * 0.8f + 0.2f;
  const float tremolo = parameters_[4];
  const float base = (parameters_[1] * 0.8f + 0.2f) / sampleRate_;
  const float inc1 = base * 10.0f;
  const float inc2 = base * 14.5f;
  const float c = 1.0f / sampleRate_ * 0.14f * 44100.0f;
  const float amp1 = depth / inc1 * 0.008f;
  const float amp2 = depth / inc2 * 0.008f;
  const float centre1 = amp1 * 0.5f;
  float* lowL = lineLeft_.data();
  float* lowR = lineRight_.data();
  float* highL = lineHighLeft_.data();
  float* highR = lineHighRight_.data();
  float p1 = phase1_;
  float p2 = phase2_;
  float bandL = lowLeft_;
  float bandR = lowRight_;
  int w = writeIndex_;
  lineWritten_ = raiseWrittenMark(lineWritten_, w, count, kLineLength);
  highWritten_ = raiseWrittenMark(highWritten_, w, count, kLineLength);
  for (int i = 0; i < count; ++i) {
    const float l = left[i];
    const float r = right[i];
    p1 = advancePhase(p1, inc1);
    p2 = advancePhase(p2, inc2);
    const float f = parabolicShape(p1);
    const float g = parabolicShape(p2);
    bandL = l * c + (1.0f - c) * bandL + kDenormalOffset;
    bandR = r * c + (1.0f - c) * bandR + kDenormalOffset;
    lowL[w] = bandL;
    lowR[w] = bandR;
    highL[w] = l - bandL;
    highR[w] = r - bandR;
    const float d1 = f * amp1 + centre1;
    const float d2 = (1.0f - f) * amp1 + centre1;
    const float d3 = (g + 1.0f) * amp2;
    const float d4 = ((1.0f - g) + 1.0f) * amp2;
    left[i] = (readLinear(lowL, w, d1) * (f * tremolo + (1.0f - tremolo)) +
               readLinear(highL, w, d3) * ((1.0f - tremolo) + g * tremolo)) *
                  m +
              l * (1.0f - m);
    right[i] = ((1.0f - g * tremolo) * readLinear(highR, w, d4) +
                (1.0f - f * tremolo) * readLinear(lowR, w, d2)) *
                   m +
               r * (1.0f - m);
    w = (w + 1) & kMask;
  }
  phase1_ = p1;
  phase2_ = p2;
  lowLeft_ = bandL;
  lowRight_ = bandR;
  writeIndex_ = w;
}

}  // namespace sablevox
