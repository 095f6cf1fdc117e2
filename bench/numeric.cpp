// links: sablevox_base
// Cost per call of the fast numeric helpers against the runtime's functions.
#include "host/numeric.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

using namespace sablevox;

void fastExpCall(benchmark::State& state) {
  double x = -6.0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(fastExp(x));
    x = x < 6.0 ? x + 0.001 : -6.0;
  }
}
BENCHMARK(fastExpCall);

void stdExpCall(benchmark::State& state) {
  double x = -6.0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(std::exp(x));
    x = x < 6.0 ? x + 0.001 : -6.0;
  }
}
BENCHMARK(stdExpCall);

void fastSinCall(benchmark::State& state) {
  float x = -3.0f;
  for (auto _ : state) {
    benchmark::DoNotOptimize(fastSin(x));
    x = x < 3.0f ? x + 0.001f : -3.0f;
  }
}
BENCHMARK(fastSinCall);

void stdSinCall(benchmark::State& state) {
  double x = -3.0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(std::sin(x));
    x = x < 3.0 ? x + 0.001 : -3.0;
  }
}
BENCHMARK(stdSinCall);

void randomRangeCall(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(randomRange(-1.0f, 1.0f));
}
BENCHMARK(randomRangeCall);

}  // namespace
