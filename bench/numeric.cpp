// links: sablevox_base
// Cost per call of the fast numeric helpers against the runtime's functions.
#include "host/numeric.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

using namespace sablevox;

double stdExp(double x) {
  return std::exp(x);
}
double stdSin(double x) {
  return std::sin(x);
}

// Calls f over a sweep of -3..3 so that no call can be folded away.
template <typename T, auto f>
void sweep(benchmark::State& state) {
  T x = -3;
  for (auto _ : state) {
    benchmark::DoNotOptimize(f(x));
    x = x < 3 ? x + static_cast<T>(0.001) : -3;
  }
}
BENCHMARK(sweep<double, fastExp>)->Name("fastExp");
BENCHMARK(sweep<double, stdExp>)->Name("std::exp");
BENCHMARK(sweep<float, fastSin>)->Name("fastSin");
BENCHMARK(sweep<float, fastCos>)->Name("fastCos");
BENCHMARK(sweep<double, stdSin>)->Name("std::sin");

void randomRangeCall(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(randomRange(-1.0f, 1.0f));
}
BENCHMARK(randomRangeCall)->Name("randomRange");

}  // namespace
