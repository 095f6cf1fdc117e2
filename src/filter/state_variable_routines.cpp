// The Chamberlin state-variable routines: one pass per sample, and the
// "analog" form with two passes and a one-sided soft clipper at three points.
#include "filter/denormal_guard.h"
#include "filter/filter_routine.h"
#include "filter/soft_clip.h"

namespace sablevox {

void filterStateVariable(float* buffer, int count, FilterState& state) {
  const float f = state.set1[0], q = state.set1[1];
  const float lowMix = state.set1[2], bandMix = state.set1[3], highMix = state.set1[4];
  const float gain = state.gain;  // an input gain, before the offset
  float low = state.set2[0], band = state.set2[1], high = state.set2[2];
  runFlushed(
      count,
      [&](int i) {
        low = low + f * band;
        high = buffer[i] * gain + kFilterDenormalOffset - low - q * band;
        band = band + f * high;
        buffer[i] = lowMix * low + bandMix * band + highMix * high;
      },
      [&] { flushTiny(low, band, high); });
  state.set2[0] = low;
  state.set2[1] = band;
  state.set2[2] = high;
}

namespace {

// Linear upward, bending towards -200 downward. 200 is in the oscillators'
// level units, before the voice's 0.01 output factor.
inline float clip(float v) {
  const float u = v * 0.005f;
  return 200.0f * (u >= 0.0f ? u : expMinusOne(u));
}

}  // namespace

void filterStateVariableAnalog(float* buffer, int count, FilterState& state) {
  const float f = state.set1[0], q = state.set1[1];
  const float lowMix = state.set1[2], bandMix = state.set1[3], highMix = state.set1[4];
  const float gain = state.gain;
  float low = state.set2[0], band = state.set2[1], high = state.set2[2];
  runFlushed(
      count,
      [&](int i) {
        const float in = (buffer[i] + kFilterDenormalOffset) * gain;
        const float low1 = low + clip(band * f);
        const float high1 = clip(in - low1) - band * q;
        const float band1 = band + high1 * f;
        low = low1 + clip(band1 * f);
        high = clip(in - low) - band1 * q;
        band = band1 + high * f;
        buffer[i] =
            ((low1 + low) * lowMix + (band1 + band) * bandMix + (high1 + high) * highMix) * 0.125f;
      },
      [&] { flushTiny(low, band, high); });
  state.set2[0] = low;
  state.set2[1] = band;
  state.set2[2] = high;
}

}  // namespace sablevox
