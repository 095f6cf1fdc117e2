// Words of the codes that are no filter in the strict sense: the sample-rate
// reducer, the amplitude modulator and the delay-line frequency modulators.
// For AM the cutoff argument is a pitch, for FM the resonance argument.
#include <cmath>

#include "filter/family_design.h"
#include "filter/fm_shapes.h"
#include "host/numeric.h"

namespace sablevox {
namespace {

// The phase increment of a pitch argument x, with the exact exponential.
float pitchIncrement(float x, int rate, float scale) {
  return static_cast<float>(std::exp(static_cast<double>((1.0f - x) * -6.0f)) * 0.45f / rate *
                            44100 * scale);
}

// The input low-pass of the FM codes closes as the depth rises.
constexpr float kFmLowpass[5] = {0.9f, 0.3f, 0.07f, 0.045f, 0.02f};

void designResample(int rate, float c, FilterState& state) {
  // The rate cancels out: the hold length depends on c alone.
  double v = fastExp((1.0f - c) * -6.0f) * 0.45f * rate * 3;
  v = v < rate ? v : rate;
  const double n = std::trunc(rate / v);
  const float held = static_cast<float>(n > 1.0 ? n : 1.0);
  state.mode = static_cast<float>(kModeResample);
  state.set1[0] = held;
  state.set1[1] = 1.0f / held;
}

void designFm(int code, int rate, float c, float r, FilterState& state) {
  const float increment = pitchIncrement(r, rate, 0.25f);
  const float depth = c * c / increment * 10.0f;
  const float u = c * 3.999f;
  const int i = static_cast<int>(u);  // c is 0..1
  const float d = u - static_cast<float>(i);
  state.mode = static_cast<float>(kModeFm);
  state.set1[0] = increment;
  state.set1[1] = depth < kFmMaxDepth ? depth : kFmMaxDepth;
  state.set1[2] = kFmLowpass[i] * (1.0f - d) + kFmLowpass[i + 1] * d;
  state.set1[3] = static_cast<float>(code - 36);
}

}  // namespace

FilterRoutine designModulation(int code, int sampleRate, float c, float r, FilterState& state) {
  switch (code) {
    case 41:  // "Resample"
      designResample(sampleRate, c, state);
      return filterResample;
    case 35:  // "AM"
      state.mode = static_cast<float>(kModeAm);
      state.set1[0] = pitchIncrement(c, sampleRate, 0.5f);
      state.set1[1] = r;
      return filterAm;
    case 36:  // "FM Sine"
    case 37:  // "FM Tri"
    case 38:  // "FM Saw"
    case 40:  // "FM Square"
      designFm(code, sampleRate, c, r, state);
      return filterFm;
    default:
      return nullptr;
  }
}

}  // namespace sablevox
