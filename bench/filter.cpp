// links: sablevox_filter
// Nanoseconds per sample of each filter routine, on one tick of a sawtooth at
// 44100 Hz with the coefficients of a mid cutoff and resonance.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "filter/filter_design.h"
#include "filter/filter_routine.h"
#include "filter/filter_types.h"

namespace sablevox {
namespace {

constexpr int kRate = 44100;
constexpr int kTick = 110;

// One tick through the routine; with `stereo`, both channels of a stereo
// voice through the two-channel form (ns per sample and channel).
void benchFilterType(benchmark::State& bench, int step, bool silent, bool stereo = false) {
  auto left = std::make_unique<FilterState>();
  auto right = std::make_unique<FilterState>();
  const int code = filterCodeForStep(step);
  const FilterRoutine routine = designFilter(code, kRate, 0.6f, 0.7f, *left);
  designFilter(code, kRate, 0.6f, 0.7f, *right);
  const StereoFilterRoutine pair = stereoFilterRoutine(routine);
  std::vector<float> source(kTick), l(kTick), r(kTick);
  for (int i = 0; i < kTick; ++i) source[i] = silent ? 0.0f : (i % 73) * 400.0f - 14600.0f;
  for (auto _ : bench) {
    l = source;
    if (stereo) {
      r = source;
      pair(l.data(), r.data(), kTick, *left, *right);
    } else {
      routine(l.data(), kTick, *left);
    }
    benchmark::DoNotOptimize(l.data());
    benchmark::DoNotOptimize(r.data());
  }
  const int channels = stereo ? 2 : 1;
  bench.counters["ns_per_sample"] =
      benchmark::Counter(static_cast<double>(bench.iterations()) * kTick * channels,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// The design, once per control tick and voice.
void benchDesign(benchmark::State& bench, int step) {
  auto state = std::make_unique<FilterState>();
  const int code = filterCodeForStep(step);
  float cutoff = 0.0f;
  for (auto _ : bench) {
    cutoff = cutoff > 1.0f ? 0.0f : cutoff + 0.01f;
    benchmark::DoNotOptimize(designFilter(code, kRate, cutoff, 0.7f, *state));
  }
}

// One benchmark per routine, through a type that uses it; silence too for the
// routines whose states could fall into the subnormal range.
const int registered = [] {
  const struct {
    const char* routine;
    int step;
  } kRoutines[] = {{"filterSerial", 1},           // "LP 30dB"
                   {"filterSerial_highpass", 5},  // "HP 24dB"
                   {"filterParallel", 9},         // "BP Para"
                   {"filterStateVariable", 2},    // "LP 12dB"
                   {"filterStateVariableAnalog", 22},
                   {"filterLadder", 23},
                   {"filterLadderNoisy", 4},
                   {"filterPhaser", 13},
                   {"filterSyncie", 38},
                   {"filterResample", 16},
                   {"filterAm", 17},
                   {"filterFm", 18}};  // "FM Sine"
  for (const auto& r : kRoutines) {
    const int step = r.step;
    benchmark::RegisterBenchmark((std::string("routine/") + r.routine).c_str(),
                                 [step](benchmark::State& s) { benchFilterType(s, step, false); });
    benchmark::RegisterBenchmark((std::string("silent/") + r.routine).c_str(),
                                 [step](benchmark::State& s) { benchFilterType(s, step, true); });
    benchmark::RegisterBenchmark((std::string("design/") + r.routine).c_str(),
                                 [step](benchmark::State& s) { benchDesign(s, step); });
    FilterState probe{};
    if (stereoFilterRoutine(designFilter(filterCodeForStep(step), kRate, 0.6f, 0.7f, probe))) {
      benchmark::RegisterBenchmark(
          (std::string("stereo/") + r.routine).c_str(),
          [step](benchmark::State& s) { benchFilterType(s, step, false, true); });
    }
  }
  return 0;
}();

}  // namespace
}  // namespace sablevox
