// The biquad-pair routines: one loop, four arrangements of its two stages.
// The arrangement is a template parameter, so the loop carries no mode branch.
#include "filter/denormal_guard.h"
#include "filter/filter_routine.h"
#include "filter/soft_clip.h"

namespace sablevox {
namespace {

// One direct-form-I stage held in locals for the length of a call.
class Stage {
 public:
  Stage(const float* words, const float* history)
      : a0_(words[0]),
        a1_(words[1]),
        a2_(words[2]),
        b1_(words[3]),
        b2_(words[4]),
        x1_(history[0]),
        x2_(history[1]),
        y1_(history[2]),
        y2_(history[3]) {}

  float tick(float x) {
    const float y = a0_ * x + a1_ * x1_ + a2_ * x2_ + b1_ * y1_ + b2_ * y2_;
    x2_ = x1_;
    x1_ = x;
    y2_ = y1_;
    y1_ = y;
    return y;
  }

  void flush() { flushTiny(x1_, x2_, y1_, y2_); }

  void store(float* history) const {
    history[0] = x1_;
    history[1] = x2_;
    history[2] = y1_;
    history[3] = y2_;
  }

 private:
  const float a0_, a1_, a2_, b1_, b2_;
  float x1_, x2_, y1_, y2_;
};

struct Serial {
  static float input(float x) { return x + kFilterDenormalOffset; }
  static float secondInput(float /*u*/, float y) { return y; }
  static float output(float /*u*/, float /*y*/, float z, float gain) { return gain * z; }
};

struct Parallel {
  static float input(float x) { return x + kFilterDenormalOffset; }
  static float secondInput(float u, float /*y*/) { return u; }
  static float output(float /*u*/, float y, float z, float gain) { return (y + z) * gain; }
};

// All-pass outputs subtracted, dry input added: at DC the input passes unchanged.
struct Phaser {
  static float input(float x) { return x + kFilterDenormalOffset; }
  static float secondInput(float /*u*/, float y) { return y; }
  static float output(float u, float y, float z, float gain) { return ((z - y) + u) * gain; }
};

// Positive samples are limited towards 500 before the filter, negative ones
// towards -500 after it; the branches are the clippers' sign tests.
struct Syncie {
  static float input(float x) {
    float v = (x + kFilterDenormalOffset) * 0.002f;
    if (v > 0.0f) v = -expMinusOne(-v);
    return v * 500.0f;
  }
  static float secondInput(float /*u*/, float y) { return y; }
  static float output(float /*u*/, float /*y*/, float z, float gain) {
    float t = z * 0.002f;
    if (t < 0.0f) t = expMinusOne(t);
    return t * 500.0f * gain;
  }
};

template <typename Arrangement>
void runPair(float* buffer, int count, FilterState& state) {
  Stage first(state.set1, state.hist1);
  Stage second(state.set2, state.hist2);
  const float gain = state.gain;
  runFlushed(
      count,
      [&](int i) {
        const float u = Arrangement::input(buffer[i]);
        const float y = first.tick(u);
        const float z = second.tick(Arrangement::secondInput(u, y));
        buffer[i] = Arrangement::output(u, y, z, gain);
      },
      [&] {
        first.flush();
        second.flush();
      });
  first.store(state.hist1);
  second.store(state.hist2);
}

}  // namespace

void filterSerial(float* buffer, int count, FilterState& state) {
  runPair<Serial>(buffer, count, state);
}

void filterParallel(float* buffer, int count, FilterState& state) {
  runPair<Parallel>(buffer, count, state);
}

void filterPhaser(float* buffer, int count, FilterState& state) {
  runPair<Phaser>(buffer, count, state);
}

void filterSyncie(float* buffer, int count, FilterState& state) {
  runPair<Syncie>(buffer, count, state);
}

}  // namespace sablevox
