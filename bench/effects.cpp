// links: sablevox_effects
// Cost per sample of each effect configuration and of the equaliser, at
// 44100 Hz on 512-sample blocks of noise (the engine's usual block).
#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

#include "effects/chorus.h"
#include "effects/delay.h"
#include "effects/effect_section.h"
#include "effects/equaliser.h"
#include "effects/reverb.h"
#include "effects/stereo.h"

namespace sablevox {
namespace {

constexpr int kBlock = 512;
constexpr float kRate = 44100.0f;

class HostTempo : public TempoSource {
 public:
  double getTempo() override { return 120.0; }
};

struct Signal {
  std::vector<float> left, right;
  Signal() : left(kBlock), right(kBlock) {
    std::mt19937 rng(1);
    std::uniform_real_distribution<float> dist(-0.5f, 0.5f);
    for (int i = 0; i < kBlock; ++i) {
      left[i] = dist(rng);
      right[i] = dist(rng);
    }
  }
};

// Times run(left, right) on a fresh copy of the noise block per iteration and
// reports the cost per sample.
template <typename Run>
void timeBlocks(benchmark::State& state, Run run) {
  const Signal input;
  Signal work;
  for (auto _ : state) {
    work.left = input.left;
    work.right = input.right;
    run(work.left.data(), work.right.data());
    benchmark::DoNotOptimize(work.left.data());
  }
  state.counters["per_sample"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * kBlock,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void effectType(benchmark::State& state) {
  const int type = static_cast<int>(state.range(0));
  auto delay = std::make_unique<Delay>();
  auto chorus = std::make_unique<Chorus>();
  auto reverb = std::make_unique<Reverb>();
  auto equaliser = std::make_unique<Equaliser>();
  auto stereo = std::make_unique<Stereo>();
  EffectUnits fx{delay.get(), chorus.get(), reverb.get(), equaliser.get(), stereo.get()};
  HostTempo tempo;
  timeBlocks(state, [&](float* left, float* right) {
    runEffect(type, fx, left, right, kBlock, kRate, 0.7f, 0.6f, tempo);
  });
}
BENCHMARK(effectType)->DenseRange(1, 18);

void equaliserStage(benchmark::State& state) {
  Equaliser eq;
  timeBlocks(state, [&](float* left, float* right) {
    eq.setSampleRate(kRate);
    eq.setGain(1.0f);
    eq.process(left, right, kBlock);
  });
}
BENCHMARK(equaliserStage);

}  // namespace
}  // namespace sablevox
