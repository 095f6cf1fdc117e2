// The Chamberlin state-variable routines: one pass per sample, and the
// "analog" form with two passes and a one-sided soft clipper at three points.
#include "filter/filter_kernel.h"
#include "filter/filter_routine.h"
#include "filter/soft_clip.h"

namespace sablevox {
namespace {

// Linear upward, bending towards -200 downward. 200 is in the oscillators'
// level units, before the voice's 0.01 output factor.
inline float clip(float v) {
  const float u = v * 0.005f;
  return 200.0f * (u >= 0.0f ? u : expMinusOne(u));
}

// Coefficients and running values shared by both forms.
class StateVariableBase {
 public:
  explicit StateVariableBase(const FilterState& state)
      : f_(state.set1[0]),
        q_(state.set1[1]),
        lowMix_(state.set1[2]),
        bandMix_(state.set1[3]),
        highMix_(state.set1[4]),
        gain_(state.gain),
        low_(state.set2[0]),
        band_(state.set2[1]),
        high_(state.set2[2]) {}
  void flush() { flushTiny(low_, band_, high_); }
  void store(FilterState& state) const {
    state.set2[0] = low_;
    state.set2[1] = band_;
    state.set2[2] = high_;
  }

 protected:
  const float f_, q_, lowMix_, bandMix_, highMix_;
  const float gain_;
  float low_, band_, high_;
};

class StateVariable : public StateVariableBase {
 public:
  using StateVariableBase::StateVariableBase;
  // The gain is an input gain, before the offset.
  float sample(float x) {
    low_ = low_ + f_ * band_;
    high_ = x * gain_ + kFilterDenormalOffset - low_ - q_ * band_;
    band_ = band_ + f_ * high_;
    return lowMix_ * low_ + bandMix_ * band_ + highMix_ * high_;
  }
};

class StateVariableAnalog : public StateVariableBase {
 public:
  using StateVariableBase::StateVariableBase;
  float sample(float x) {
    const float in = (x + kFilterDenormalOffset) * gain_;
    const float low1 = low_ + clip(band_ * f_);
    const float high1 = clip(in - low1) - band_ * q_;
    const float band1 = band_ + high1 * f_;
    low_ = low1 + clip(band1 * f_);
    high_ = clip(in - low_) - band1 * q_;
    band_ = band1 + high_ * f_;
    return ((low1 + low_) * lowMix_ + (band1 + band_) * bandMix_ + (high1 + high_) * highMix_) *
           0.125f;
  }
};

}  // namespace

void filterStateVariable(float* buffer, int count, FilterState& state) {
  runKernel<StateVariable>(buffer, count, state);
}

void filterStateVariableAnalog(float* buffer, int count, FilterState& state) {
  runKernel<StateVariableAnalog>(buffer, count, state);
}

void filterStateVariablePair(float* left, float* right, int count, FilterState& leftState,
                             FilterState& rightState) {
  runKernelPair<StateVariable>(left, right, count, leftState, rightState);
}

void filterStateVariableAnalogPair(float* left, float* right, int count, FilterState& leftState,
                                   FilterState& rightState) {
  runKernelPair<StateVariableAnalog>(left, right, count, leftState, rightState);
}

}  // namespace sablevox
