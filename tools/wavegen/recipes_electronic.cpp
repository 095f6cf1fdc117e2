// EL: analogue-style sweeps. Pulse widths and pulse trains are computed
// exactly from their straight pieces; the sawtooth families move groups of
// partials or comb notches over the frames.
#include <vector>

#include "recipes.h"
#include "wave_math.h"

namespace sablevox::wavegen {
namespace {

// 0 -> 1 -> 0 over t = 0..1, `cycles` times.
double triangleSweep(double t, double cycles) {
  const double x = t * cycles;
  const double phase = x - static_cast<int>(x);
  return phase < 0.5 ? 2.0 * phase : 2.0 - 2.0 * phase;
}

void fillFromPieces(Frames& frames, std::vector<Segment> (*pieces)(double t)) {
  for (int f = 0; f < kFrames; ++f) harmonicsOfSegments(pieces(frameTime(f)), frames[f]);
}

// Width from a square (0.5) down to a thin 4 % pulse.
void pwm(Frames& f) {
  fillFrames(f, [](double t, int k) { return pulseHarmonic(k, 0.5 - 0.46 * t); });
}

// Two pulses started together, one narrowing steadily, the other twice as
// fast and back: their sum steps between three levels.
void pwmDouble(Frames& f) {
  fillFromPieces(f, [](double t) {
    const double w1 = 0.5 - 0.44 * t;
    const double w2 = 0.5 - 0.44 * triangleSweep(t, 1.0);
    const double start2 = 0.5 - 0.5 * w2;
    return std::vector<Segment>{{0.0, w1, 1.0, 1.0}, {start2, start2 + w2, 1.0, 1.0}};
  });
}

// A square whose high half carries a notch of the opposite sign that widens
// and slides: one edge pair becomes a train of bipolar pulses.
void multiSquare(Frames& f) {
  fillFromPieces(f, [](double t) {
    const double gap = 0.02 + 0.3 * t;
    const double at = 0.05 + (0.43 - gap) * triangleSweep(t, 1.5);
    return std::vector<Segment>{{0.0, at, 1.0, 1.0},
                                {at, at + gap, -1.0, -1.0},
                                {at + gap, 0.5, 1.0, 1.0},
                                {0.5, 1.0, -1.0, -1.0}};
  });
}

// A slave sawtooth reset at every master period, its ratio climbing from 1
// to 9: the strongest harmonic follows the ratio.
void synced(Frames& f) {
  fillFromPieces(f, [](double t) {
    const double ratio = 1.0 + 8.0 * t;
    std::vector<Segment> ramps;
    for (int j = 0; j < 10 && j / ratio < 1.0; ++j) {
      const double t0 = j / ratio;
      const double t1 = (j + 1) / ratio < 1.0 ? (j + 1) / ratio : 1.0;
      ramps.push_back({t0, t1, -1.0, -1.0 + 2.0 * (t1 - t0) * ratio});
    }
    return ramps;
  });
}

// Saw or square stacks at multiples of the fundamental (octaves, fifths),
// each stack fading in and out in turn: sliding partial groups.
template <int Stacks>
double stacked(double t, int k, const int (&multiples)[Stacks], double (*shape)(int)) {
  double sum = shape(k);
  for (int s = 0; s < Stacks; ++s) {
    const int m = multiples[s];
    if (k % m) continue;
    const double centre = (s + 0.5) / Stacks;
    sum += 1.2 * bump(t, centre, 0.6 / Stacks) * shape(k / m);
  }
  return sum;
}

void multiSaw(Frames& f) {
  static constexpr int kMultiples[] = {2, 3, 4, 5, 6, 8};
  fillFrames(f, [](double t, int k) { return stacked(t, k, kMultiples, sawHarmonic); });
}

void squareMulti(Frames& f) {
  static constexpr int kMultiples[] = {3, 2, 5, 4, 7};
  fillFrames(f, [](double t, int k) { return stacked(t, k, kMultiples, squareHarmonic); });
}

// A sawtooth with Groups resonant partial groups swinging between harmonics
// 3 and 48 on a log scale, each at its own pace and phase.
template <int Groups>
void sawGroups(Frames& f) {
  fillFrames(f, [](double t, int k) {
    double lift = 1.0;
    for (int g = 0; g < Groups; ++g) {
      const double pace = 0.5 + 0.25 * g;
      const double centre = 3.6 + 2.0 * detSin(2.0 * kPi * (pace * t + g / double{Groups}));
      const double octaves = (detLog2(k) - centre) / 0.18;
      lift += 5.0 * detExp(-0.5 * octaves * octaves);
    }
    return sawHarmonic(k) * lift;
  });
}

// Flangers: a copy delayed by 0.4 % to 20 % of a period, on an exponential
// sweep, so that the notches move evenly in pitch.
double flangeDelay(double t) {
  return 0.004 * detPow(50.0, t);
}

void flange1(Frames& f) {
  fillFrames(
      f, [](double t, int k) { return sawHarmonic(k) * combFeedForward(k, flangeDelay(t), 0.9); });
}

// Resonant: feedback sharpens the peaks between the notches; sweeps down.
void flange2(Frames& f) {
  fillFrames(f, [](double t, int k) {
    return sawHarmonic(k) * combFeedback(k, flangeDelay(1.0 - t), 0.7);
  });
}

// Two delays moving against each other.
void flange3(Frames& f) {
  fillFrames(f, [](double t, int k) {
    return sawHarmonic(k) * combFeedForward(k, flangeDelay(t), 0.8) *
           combFeedForward(k, flangeDelay(0.7 - 0.6 * t), 0.6);
  });
}

void squareFlange(Frames& f) {
  fillFrames(f, [](double t, int k) {
    return squareHarmonic(k) * combFeedForward(k, flangeDelay(t), 1.0);
  });
}

constexpr RecipeEntry kRecipes[] = {
    {8, pwm},          {9, multiSquare},   {10, sawGroups<2>}, {11, sawGroups<4>},
    {12, multiSaw},    {13, flange1},      {14, flange2},      {15, synced},
    {64, squareMulti}, {65, squareFlange}, {66, sawGroups<3>}, {67, pwmDouble},
    {69, flange3},
};

}  // namespace

std::span<const RecipeEntry> electronicRecipes() {
  return kRecipes;
}

}  // namespace sablevox::wavegen
