// The ladder routines: four one-pole stages, each summing the current and the
// previous sample of its input, with resonance feedback from the last stage.
#include <algorithm>
#include <cmath>

#include "filter/denormal_guard.h"
#include "filter/filter_kernel.h"
#include "filter/filter_routine.h"
#include "host/numeric.h"

namespace sablevox {
namespace {

// The pink words' output stays within about 7.5 times the amount in steady
// state; beyond 8 it is left over from a larger amount.
constexpr float kNoisyLadderBand = 8.0f;

// The running values of one ladder, in locals for the length of a call.
class Ladder {
 public:
  explicit Ladder(const FilterState& state)
      : y0_(state.set2[0]),
        y1_(state.set2[1]),
        y2_(state.set2[2]),
        y3_(state.set2[3]),
        y4_(state.set2[4]),
        o0_(state.hist1[0]),
        o1_(state.hist1[1]),
        o2_(state.hist1[2]),
        o3_(state.hist1[3]) {}

  void tick(float x, float p, float k, float res) {
    y0_ = x + kFilterDenormalOffset - res * y4_;
    y1_ = (o0_ + y0_) * p - k * y1_;
    y2_ = (o1_ + y1_) * p - k * y2_;
    y3_ = (o2_ + y2_) * p - k * y3_;
    y4_ = (o3_ + y3_) * p - k * y4_;
    o0_ = y0_;
    o1_ = y1_;
    o2_ = y2_;
    o3_ = y3_;
  }

  float tap(const float* w) const {
    return w[0] * y0_ + w[1] * y1_ + w[2] * y2_ + w[3] * y3_ + w[4] * y4_;
  }
  float last() const { return y4_; }

  void flush() { flushTiny(y0_, y1_, y2_, y3_, y4_, o0_, o1_, o2_, o3_); }

  void store(FilterState& state) const {
    state.set2[0] = y0_;
    state.set2[1] = y1_;
    state.set2[2] = y2_;
    state.set2[3] = y3_;
    state.set2[4] = y4_;
    state.hist1[0] = o0_;
    state.hist1[1] = o1_;
    state.hist1[2] = o2_;
    state.hist1[3] = o3_;
  }

 private:
  float y0_, y1_, y2_, y3_, y4_;
  float o0_, o1_, o2_, o3_;
};

// The plain ladder with its output taps, as a kernel.
class LadderKernel {
 public:
  explicit LadderKernel(const FilterState& state)
      : p_(state.set1[0]),
        k_(state.set1[1]),
        res_(state.set1[2]),
        w_{state.set1[3], state.set1[4], state.set1[5], state.set1[6], state.set1[7]},
        gain_(state.gain),
        ladder_(state) {}
  float sample(float x) {
    ladder_.tick(x, p_, k_, res_);
    return ladder_.tap(w_) * gain_;
  }
  void flush() { ladder_.flush(); }
  void store(FilterState& state) const { ladder_.store(state); }

 private:
  const float p_, k_, res_;
  const float w_[5];
  const float gain_;
  Ladder ladder_;
};

}  // namespace

void filterLadder(float* buffer, int count, FilterState& state) {
  runKernel<LadderKernel>(buffer, count, state);
}

void filterLadderPair(float* left, float* right, int count, FilterState& leftState,
                      FilterState& rightState) {
  runKernelPair<LadderKernel>(left, right, count, leftState, rightState);
}

void filterLadderNoisy(float* buffer, int count, FilterState& state) {
  const float k = state.set1[1], res = state.set1[2], g = state.set1[3];
  // The tremble grows with the cutoff and shrinks with the resonance.
  const float n = (2.0f - res * 1.3f) * g * 0.2f;
  // The pink words remember the amount of earlier ticks. After a fall of the
  // cutoff that old noise would drive the pole past the edge of stability,
  // so the tremble is held to the band the present amount can reach.
  const float band = std::fabs(n) * kNoisyLadderBand;
  float pink0 = state.hist2[0], pink1 = state.hist2[1], pink2 = state.hist2[2];
  Ladder ladder(state);
  runFlushed(
      count,
      [&](int i) {
        const float noise = pinkNoise(-n, n, pink0, pink1, pink2);
        const float kn = std::clamp(noise, -band, band) + k;
        const float pn = (kn + 1.0f) * 0.5f;
        ladder.tick(buffer[i], pn, kn, res);
        buffer[i] = ladder.last() * 1.5f;
      },
      // With no noise amount at all the pink words decay towards zero.
      [&] {
        ladder.flush();
        flushTiny(pink0, pink1, pink2);
      });
  ladder.store(state);
  state.hist2[0] = pink0;
  state.hist2[1] = pink1;
  state.hist2[2] = pink2;
}

}  // namespace sablevox
