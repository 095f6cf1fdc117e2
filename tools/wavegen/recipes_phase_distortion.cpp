// PD: phase distortion. A cosine read through a bent phase ramp; the bend
// relaxes over the frames, so the full spectrum of frame 0 closes like a
// filter to the pure fundamental of frame 255, where the ramp is straight.
#include <vector>

#include "recipes.h"
#include "wave_math.h"

namespace sablevox::wavegen {
namespace {

constexpr int kCycle = 4096;

// Phase 0..1 at time x of a ramp through the points (times[i], phases[i]),
// times rising from 0 to 1.
double bentPhase(double x, const std::vector<double>& times, const std::vector<double>& phases) {
  for (size_t i = 1; i < times.size(); ++i) {
    if (x < times[i]) {
      const double span = times[i] - times[i - 1];
      const double u = span > 0.0 ? (x - times[i - 1]) / span : 0.0;
      return phases[i - 1] + (phases[i] - phases[i - 1]) * u;
    }
  }
  return phases.back();
}

// Depth 1 at frame 0 to 0 at frame 255, fast at first like a filter's
// exponential close.
double depthAt(int frame) {
  const double t = frameTime(frame);
  return (1.0 - t) * (1.0 - t);
}

// shape(depth, times, phases) draws the ramp for a depth.
void fillPhaseDistortion(Frames& frames,
                         void (*shape)(double, std::vector<double>&, std::vector<double>&)) {
  std::vector<double> cycle(kCycle);
  std::vector<double> times;
  std::vector<double> phases;
  for (int f = 0; f < kFrames; ++f) {
    times.clear();
    phases.clear();
    shape(depthAt(f), times, phases);
    for (int i = 0; i < kCycle; ++i) {
      const double phase = bentPhase(static_cast<double>(i) / kCycle, times, phases);
      cycle[static_cast<size_t>(i)] = detCos(2.0 * kPi * phase);
    }
    harmonicsOfCycle(cycle.data(), kCycle, frames[f]);
  }
}

// The first half turn of phase is squeezed into a knee: a sawtooth.
void saw(Frames& f) {
  fillPhaseDistortion(f, [](double d, std::vector<double>& t, std::vector<double>& p) {
    t = {0.0, 0.5 - 0.494 * d, 1.0};
    p = {0.0, 0.5, 1.0};
  });
}

// Each half turn is squeezed and then held: a square.
void square(Frames& f) {
  fillPhaseDistortion(f, [](double d, std::vector<double>& t, std::vector<double>& p) {
    const double w = 0.5 - 0.49 * d;
    t = {0.0, w, 0.5, 0.5 + w, 1.0};
    p = {0.0, 0.5, 0.5, 1.0, 1.0};
  });
}

// The whole turn squeezed into a window in the middle: a narrow peak.
void peak(Frames& f) {
  fillPhaseDistortion(f, [](double d, std::vector<double>& t, std::vector<double>& p) {
    const double w = 1.0 - 0.97 * d;
    t = {0.0, 0.5 - 0.5 * w, 0.5 + 0.5 * w, 1.0};
    p = {0.0, 0.0, 1.0, 1.0};
  });
}

// A plain first half turn, then the second half squeezed into a peak.
void peakSine(Frames& f) {
  fillPhaseDistortion(f, [](double d, std::vector<double>& t, std::vector<double>& p) {
    const double w = 0.5 - 0.47 * d;
    t = {0.0, 0.5, 0.75 - 0.5 * w, 0.75 + 0.5 * w, 1.0};
    p = {0.0, 0.5, 0.5, 1.0, 1.0};
  });
}

constexpr RecipeEntry kRecipes[] = {{16, peak}, {17, square}, {18, saw}, {68, peakSine}};

}  // namespace

std::span<const RecipeEntry> phaseDistortionRecipes() {
  return kRecipes;
}

}  // namespace sablevox::wavegen
