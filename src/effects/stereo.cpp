// Stereo: enhancer and surround loops.
#include "effects/stereo.h"

#include <cmath>

#include "effects/effect_common.h"

namespace sablevox {
void Stereo::process(float* left, float* right, int count) {
  if (count <= 0 || left == nullptr || right == nullptr) return;
  if (mode_ == 0) {
    processEnhance(left, right, count);
  } else if (mode_ == 1) {
    processSurround(left, right, count);
  }
}

// All-pass sections with their quarter-turn point near 1 kHz on sum and
// difference; at w = 0 the matrix rebuilds the input.
void Stereo::processEnhance(float* left, float* right, int count) {
  const double t = std::tan(static_cast<double>(3140.0f / sampleRate_));
  const float a = static_cast<float>((t - 1.0) / (t + 1.0));
  const float w = parameters_[0];
  const float o = (w * 0.5f + 1.0f) * 0.5f;
  float midOut = midOut_;
  float midIn = midIn_;
  float sideOut = sideOut_;
  float sideIn = sideIn_;
  for (int i = 0; i < count; ++i) {
    const float l = left[i];
    const float r = right[i];
    const float sum = r + l;
    const float ap = (sum - midOut) * a + midIn;
    midIn = sum;
    midOut = ap;
    const float diff = l - r;
    const float aq = (diff - sideOut) * a + sideIn;
    sideIn = diff;
    sideOut = aq;
    const float m = (1.0f - w * 0.15f) * sum - ap * 0.15f * w;
    const float s = aq * 0.5f * w + (1.0f - w * 0.5f) * diff;
    left[i] = (s + m) * o;
    right[i] = (m - s) * o;
  }
  midOut_ = midOut;
  midIn_ = midIn;
  sideOut_ = sideOut;
  sideIn_ = sideIn;
}

// The mono sum goes to both sides; "Pan" turns one side's copy towards the
// inverted sum (through silence at 0.25 and 0.75).
void Stereo::processSurround(float* left, float* right, int count) {
  const float w = parameters_[0];
  const float p = parameters_[1];
  const float keep = 1.0f - w;
  if (p < 0.5f) {
    const float c = 1.0f - (0.5f - p) * 4.0f;
    for (int i = 0; i < count; ++i) {
      const float l = left[i];
      const float r = right[i];
      const float mono = (l + r) * w;
      left[i] = l * keep + mono;
      right[i] = c * mono + r * keep;
    }
  } else {
    const float c = 1.0f - (p - 0.5f) * 4.0f;
    for (int i = 0; i < count; ++i) {
      const float l = left[i];
      const float r = right[i];
      const float mono = (l + r) * w;
      left[i] = l * keep + mono * c;
      right[i] = r * keep + mono;
    }
  }
}

}  // namespace sablevox
