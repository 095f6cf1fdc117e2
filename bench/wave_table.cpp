// links: sablevox_waves
// Cost of a wave table rebuild on the worker: the modifier, the 2,560 inverse
// transforms of one table, and both together for the heaviest modifier.
#include "waves/wave_table.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>

#include "waves/inverse_fft.h"
#include "waves/wave_format.h"
#include "waves/wave_modifiers.h"

namespace {

using namespace sablevox;

// A full 256-frame spectrum with every harmonic present, so that no modifier
// or transform meets a shortcut.
std::unique_ptr<float[]> sawSweep() {
  auto spectrum = std::make_unique<float[]>(kWaveValues);
  for (int f = 0; f < kWaveFrames; ++f) {
    for (int i = 0; i < kWaveHarmonics; ++i) {
      spectrum[f * kWaveHarmonics + i] = 65535.0f / static_cast<float>(i + 1) * (1.0f + f / 256.0f);
    }
  }
  return spectrum;
}

void inverseFft1024(benchmark::State& state) {
  float buffer[kMaxFftSize];
  for (auto _ : state) {
    std::fill_n(buffer, kMaxFftSize, 1.0f);
    inverseRealFft(buffer, kMaxFftSize);
    benchmark::DoNotOptimize(buffer);
  }
}
BENCHMARK(inverseFft1024)->Name("inverseRealFft/1024");

void modifier(benchmark::State& state) {
  const auto source = sawSweep();
  auto work = std::make_unique<float[]>(kWaveValues);
  for (auto _ : state) {
    std::copy_n(source.get(), kWaveValues, work.get());
    applyWaveModifier(work.get(), static_cast<int>(state.range(0)), kWaveFrames);
    benchmark::DoNotOptimize(work.get());
  }
}
BENCHMARK(modifier)->DenseRange(1, kModifierSteps - 1)->Unit(benchmark::kMicrosecond);

// One rebuild as the worker runs it, with the modifier given by the argument.
void rebuild(benchmark::State& state) {
  const auto source = sawSweep();
  auto work = std::make_unique<float[]>(kWaveValues);
  auto scratch = std::make_unique<float[]>(buildScratchFloats(kWaveFrames));
  auto table = std::make_unique<int16_t[]>(kTableValues);
  for (auto _ : state) {
    std::copy_n(source.get(), kWaveValues, work.get());
    applyWaveModifier(work.get(), static_cast<int>(state.range(0)), kWaveFrames);
    buildWaveTable(table.get(), work.get(), kWaveFrames, 0.01f, scratch.get());
    benchmark::DoNotOptimize(table.get());
  }
}
BENCHMARK(rebuild)
    ->Arg(kModOff)
    ->Arg(kModFlange2)
    ->Arg(kModMulti2)
    ->Arg(kModHyper1)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
