// Coefficients of the state-variable codes, plain and analog.
#include "filter/state_variable_design.h"

#include <cmath>

#include "filter/cutoff_law.h"
#include "filter/family_design.h"
#include "host/numeric.h"

namespace sablevox {
namespace {

constexpr float kPi = 3.14159f;

float sqrtOf(float v) {
  return static_cast<float>(std::sqrt(static_cast<double>(v)));
}

struct SvfDesign {
  float f, q, low, band, high, gain;
  FilterRoutine routine;
};

bool svfFor(int code, int rate, float c, float r, SvfDesign& d) {
  d.routine = filterStateVariable;
  switch (code) {
    case 28: {  // "LP 12dB"
      const float e = sqrtOf(r) * 0.95f;
      d.f = 2.0f * fastSin(rawCutoffLaw(c + r * 0.1f, rate) * 0.405f * kPi);
      d.q = 1.0f - e;
      d.low = 1.0f, d.band = 0.0f, d.high = 0.0f;
      d.gain = 1.0f - e * e * e * 0.6f;
      return true;
    }
    case 29: {  // "HP 12dB"
      const float e = r * 0.95f;
      d.f = 2.0f * fastSin(rawCutoffLaw(c + r * 0.15f, rate) * 0.3f * kPi);
      d.q = 1.0f - e;
      d.low = 0.0f, d.band = 0.0f, d.high = 1.0f;
      d.gain = 1.0f - e * e * e * 0.6f;
      return true;
    }
    case 30: {  // "BP 9dB": the frequency is capped lower as the resonance falls
      const float e = static_cast<float>(fastExp((1.0f - c) * -0.5f) * r * 0.9f);
      const float raw = rawCutoffLaw(c, rate);
      const float cap = e * e * 0.28f + 0.17f;
      d.f = 2.0f * fastSin((raw < cap ? raw : cap) * kPi);
      d.q = 1.0f - e;
      d.low = 0.0f, d.band = 1.0f, d.high = 0.0f;
      d.gain = (1.0f - d.f * 0.5f) * (1.0f - e * 0.25f);
      return true;
    }
    case 80:  // "LP Analog"
    case 81:  // "HP Analog"
    case 82:  // "BP Analog"
    case 83:  // "BR Analog"
    {
      static constexpr float kMix[4][3] = {{1, 0, 0}, {0, 0, 2}, {0, 2, 0}, {1, 0, 1}};
      const float e = sqrtOf(r) * 0.98f;
      d.f = 2.0f * fastSin(rawCutoffLaw(c, rate) * 0.45f * kPi);
      d.q = 1.0f - e;
      d.low = kMix[code - 80][0], d.band = kMix[code - 80][1], d.high = kMix[code - 80][2];
      d.gain = (1.0f - e * e * e * 0.6f) * 4.0f;
      d.routine = filterStateVariableAnalog;
      return true;
    }
    default:
      return false;
  }
}

}  // namespace

float limitStateVariableFrequency(float f, float q) {
  // A hair inside the edge: at the edge itself a pole sits on -1 and a
  // Nyquist-rate input grows without bound.
  const float edge = static_cast<float>((std::sqrt(static_cast<double>(q) * q + 4.0) - q) * 0.999);
  return f > 0.0f ? (f < edge ? f : edge) : 0.0f;
}

FilterRoutine designStateVariable(int code, int sampleRate, float c, float r, FilterState& state) {
  SvfDesign d;
  if (!svfFor(code, sampleRate, c, r, d)) return nullptr;
  state.mode = static_cast<float>(kModeStateVariable);
  state.gain = d.gain;
  state.set1[0] = limitStateVariableFrequency(d.f, d.q);
  state.set1[1] = d.q;
  state.set1[2] = d.low;
  state.set1[3] = d.band;
  state.set1[4] = d.high;
  return d.routine;
}

}  // namespace sablevox
