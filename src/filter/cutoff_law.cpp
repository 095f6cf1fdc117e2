// The cutoff scale shared by every filter design.
#include "filter/cutoff_law.h"

#include "host/numeric.h"

namespace sablevox {

float rawCutoffLaw(float x, int sampleRate) {
  // The factor 44100 / sampleRate is all of the rate independence.
  return static_cast<float>(fastExp((1.0f - x) * -6.0f) * 0.45f / sampleRate * 44100);
}

float cutoffLaw(float x, int sampleRate) {
  const float f = rawCutoffLaw(x, sampleRate);
  return f > 0.0001f ? (f < 0.45f ? f : 0.45f) : 0.0001f;
}

}  // namespace sablevox
