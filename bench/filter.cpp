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

void benchFilterType(benchmark::State& bench, int step, bool silent) {
  auto state = std::make_unique<FilterState>();
  const int code = filterCodeForStep(step);
  const FilterRoutine routine = designFilter(code, kRate, 0.6f, 0.7f, *state);
  std::vector<float> source(kTick), buffer(kTick);
  for (int i = 0; i < kTick; ++i) source[i] = silent ? 0.0f : (i % 73) * 400.0f - 14600.0f;
  for (auto _ : bench) {
    buffer = source;
    routine(buffer.data(), kTick, *state);
    benchmark::DoNotOptimize(buffer.data());
  }
  bench.SetItemsProcessed(bench.iterations() * kTick);
  bench.counters["ns_per_sample"] =
      benchmark::Counter(static_cast<double>(bench.iterations()) * kTick,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// Both channels of a stereo voice through the two-channel form, where the
// routine has one: ns per sample and channel.
void benchFilterPair(benchmark::State& bench, int step) {
  auto left = std::make_unique<FilterState>();
  auto right = std::make_unique<FilterState>();
  const int code = filterCodeForStep(step);
  const StereoFilterRoutine pair =
      stereoFilterRoutine(designFilter(code, kRate, 0.6f, 0.7f, *left));
  designFilter(code, kRate, 0.6f, 0.7f, *right);
  if (pair == nullptr) {
    bench.SkipWithError("no two-channel form");
    return;
  }
  std::vector<float> source(kTick), l(kTick), r(kTick);
  for (int i = 0; i < kTick; ++i) source[i] = (i % 73) * 400.0f - 14600.0f;
  for (auto _ : bench) {
    l = source;
    r = source;
    pair(l.data(), r.data(), kTick, *left, *right);
    benchmark::DoNotOptimize(l.data());
    benchmark::DoNotOptimize(r.data());
  }
  bench.counters["ns_per_sample"] =
      benchmark::Counter(static_cast<double>(bench.iterations()) * kTick * 2,
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
      benchmark::RegisterBenchmark((std::string("stereo/") + r.routine).c_str(),
                                   [step](benchmark::State& s) { benchFilterPair(s, step); });
    }
  }
  return 0;
}();

}  // namespace
}  // namespace sablevox
