// The sample-rate reducer and the amplitude modulator.
#include "filter/filter_routine.h"
#include "host/numeric.h"

namespace sablevox {

void filterResample(float* buffer, int count, FilterState& state) {
  // Averages instead of picking; no denormal offset, as a sum of zeros is zero.
  const float holdLength = static_cast<float>(static_cast<int>(state.set1[0]));
  const float inverse = state.set1[1];
  float held = state.set2[0], sum = state.set2[1], n = state.set2[2];
  for (int i = 0; i < count; ++i) {
    n = n + 1.0f;
    sum = sum + buffer[i];
    // The count is a whole number, so this compares the truncations. A
    // shorter hold length at a tick takes effect on the running sum at once.
    if (n >= holdLength) {
      held = sum * inverse;
      sum = 0.0f;
      n = 0.0f;
    }
    buffer[i] = held;
  }
  state.set2[0] = held;
  state.set2[1] = sum;
  state.set2[2] = n;
}

void filterAm(float* buffer, int count, FilterState& state) {
  const float increment = state.set1[0], depth = state.set1[1];
  float phase = state.set2[0];
  for (int i = 0; i < count; ++i) {
    // The argument runs to 2 pi, past the fast sine's range: from phase 0.5 on
    // it gives its value at -pi, so the modulator is a half sine and a rest.
    const float m = fastSin(phase * 6.283185f);
    buffer[i] = ((1.0f - depth) + m * depth) * (buffer[i] + kFilterDenormalOffset);
    phase = phase + increment;
    phase = phase - static_cast<float>(static_cast<int>(phase));
  }
  state.set2[0] = phase;
}

}  // namespace sablevox
