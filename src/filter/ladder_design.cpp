// Coefficients of the two ladder codes: pole and feedback from the K and Z
// tables, which carry the ladder's tuning against the cutoff.
#include "filter/cutoff_law.h"
#include "filter/family_design.h"

namespace sablevox {
namespace {

// Indexed by the cutoff in steps of 0.05 of the sample rate.
constexpr float kPole[11] = {-0.997f, -0.683f, -0.375f, -0.082f, 0.182f, 0.422f,
                             0.625f,  0.79f,   0.908f,  0.976f,  1.0f};
constexpr float kFeedback[11] = {480, 355, 280, 225, 187, 162, 144, 130, 124, 120, 94};

}  // namespace

FilterRoutine designLadder(int code, int sampleRate, float c, float r, FilterState& state) {
  if (code != 42 && code != 63) return nullptr;
  // The noisy ladder stops rising at a quarter of the sample rate.
  const float top = code == 42 ? 0.499f : 0.25f;
  float g = rawCutoffLaw(c, sampleRate);
  g = g < top ? g : top;
  const float u = g * 20.0f;
  int i = static_cast<int>(u > 0.0f ? u : 0.0f);  // g is positive; the guard is for NaN
  i = i < 9 ? i : 9;
  const float d = u - static_cast<float>(i);
  const float k = kPole[i] * (1.0f - d) + kPole[i + 1] * d;
  const float p = (k + 1.0f) * 0.5f;
  const float res = (kFeedback[i] * (1.0f - d) + kFeedback[i + 1] * d) * r * 0.008f;
  state.set1[0] = p;
  state.set1[1] = k;
  state.set1[2] = res;
  if (code == 63) {  // "LP Moog Noisy": no tap weights, no gain
    state.mode = static_cast<float>(kModeLadderNoisy);
    state.set1[3] = g;
    return filterLadderNoisy;
  }
  state.mode = static_cast<float>(kModeLadder);  // "LP Moog": the fourth stage only
  state.set1[3] = 0.0f;
  state.set1[4] = 0.0f;
  state.set1[5] = 0.0f;
  state.set1[6] = 0.0f;
  state.set1[7] = 1.0f;
  const float t = r * 2.0f - 1.0f;
  state.gain = ((1.0f - t * t) * 0.3f + 1.0f) * ((1.0f - p) * r + 1.0f);
  return filterLadder;
}

}  // namespace sablevox
