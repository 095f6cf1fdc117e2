// links: sablevox_engine
// Cost of one voice per sample, for each quality and Fat mode: two
// oscillators on 256-frame waves, no filter, no LFO; one iteration is one
// control tick (the voice tick and 110 samples of render at 44100 Hz),
// with the drive stage on. Also each drive stage alone, and the control
// work of one tick for 32 sounding voices (global tick and 32 voice ticks).
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "host/adelay.h"
#include "voice/output_stage.h"

namespace sablevox {
namespace {

constexpr int kTick = 110;

VstIntPtr hostCallback(AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void*, float) {
  return opcode == audioMasterVersion ? 2400 : 0;
}

// An engine with its settings in a folder of its own, the tables of
// "EL PWM" and "EL Multisaw" built, and `notes` held notes.
std::unique_ptr<ADelayEdit> makeEngine(int notes) {
  static const bool isolated = [] {
    static char folder[] = "/tmp/sablevox-bench-XXXXXX";
    return mkdtemp(folder) != nullptr && setenv("XDG_CONFIG_HOME", folder, 1) == 0;
  }();
  (void)isolated;
  {
    auto e = std::make_unique<ADelayEdit>(hostCallback);
    e->open();
    e->setSampleRate(44100.0f);
    const struct {
      int index;
      float value;
    } patch[] = {{kOsc1Wave, choiceValue(8)},
                 {kOsc2Wave, choiceValue(12)},
                 {kOsc1Mod, 0.0f},
                 {kOsc2Mod, 0.0f},
                 {kOsc1Vol, 0.8f},
                 {kOsc2Vol, 0.8f},
                 {kFiltType, 0.0f},
                 {kLFODest, 0.0f},
                 {kArpType, 0.0f},
                 {kEnvVolA, 0.0f},
                 {kEnvVolS, 1.0f},
                 {kDrive, 0.5f},
                 {kAnalog, 0.0f},
                 {kVoices, choiceValue(7)},
                 {kGlMode, 0.0f}};
    for (const auto& p : patch) e->setParameter(p.index, p.value);
    std::vector<float> left(kTick), right(kTick);
    float* outputs[2] = {left.data(), right.data()};
    for (int i = 0; i < 2000 && !e->wavesReady(); ++i) {
      e->processReplacing(nullptr, outputs, kTick);
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    e->processReplacing(nullptr, outputs, kTick);
    for (int n = 0; n < notes; ++n) e->noteOn(36 + 2 * n, 100);
    return e;
  }
}

ADelayEdit& engine() {
  static std::unique_ptr<ADelayEdit> instance = makeEngine(1);
  return *instance;
}

void perSample(benchmark::State& state, int samples) {
  state.counters["per_sample"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * samples,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void voiceCost(benchmark::State& state) {
  ADelayEdit& e = engine();
  const int quality = static_cast<int>(state.range(0));
  const float fat[3] = {0.0f, 0.2f, 0.7f};
  e.config->set(kQuality, quality);
  e.setParameter(kFat, fat[state.range(1)]);
  e.slowRefresh();
  e.globalTick(kTick);
  if (!e.wavesReady() || e.voices[0].ampState == kEnvIdle) {
    state.SkipWithError("tables not built or voice idle");
    return;
  }
  std::vector<float> left(kTick, 0.0f), right(kTick, 0.0f);
  for (auto _ : state) {
    e.voiceTick(0);
    e.renderVoice(0, kTick, left.data(), right.data(), 0, kTick);
    benchmark::DoNotOptimize(left.data());
    benchmark::ClobberMemory();
  }
  perSample(state, kTick);
  const char* const names[4] = {"ultra", "high", "medium", "low"};
  state.SetLabel(std::string(names[quality]) + " fatMode " + std::to_string(e.fatMode));
}

BENCHMARK(voiceCost)->ArgsProduct({{0, 1, 2, 3}, {0, 1, 2}})->ArgNames({"quality", "fat"});

// One drive stage on a tick of a loud sawtooth, Drive 0.6, state carried on;
// with `stereo`, both channels of a stereo voice in one pass (ns per sample
// and channel).
template <auto stage, bool stereo>
void driveStage(benchmark::State& state) {
  std::vector<float> source(kTick), left(kTick), right(kTick);
  for (int i = 0; i < kTick; ++i) source[i] = static_cast<float>(i % 50) * 600.0f - 15000.0f;
  float memory[2] = {0.0f, 0.0f};
  const StereoOutputStage both = stereoOutputStage(stage);
  for (auto _ : state) {
    std::copy(source.begin(), source.end(), left.begin());
    if (stereo) {
      std::copy(source.rbegin(), source.rend(), right.begin());
      both(left.data(), right.data(), kTick, 0.004f, 249.99998f, 0.6f, memory[0], memory[1]);
    } else {
      stage(left.data(), kTick, 0.004f, 249.99998f, 0.6f, memory[0]);
    }
    benchmark::DoNotOptimize(left.data());
    benchmark::DoNotOptimize(right.data());
  }
  perSample(state, stereo ? 2 * kTick : kTick);
}
BENCHMARK(driveStage<drivePlain, false>)->Name("drivePlain");
BENCHMARK(driveStage<driveOversampled2, false>)->Name("driveOversampled2");
BENCHMARK(driveStage<driveOversampled8, false>)->Name("driveOversampled8");
BENCHMARK(driveStage<driveOversampled2, true>)->Name("driveOversampled2/stereo");
BENCHMARK(driveStage<driveOversampled8, true>)->Name("driveOversampled8/stereo");

// The control work of one tick with 32 sounding voices, without the render.
void controlTick32(benchmark::State& state) {
  static std::unique_ptr<ADelayEdit> e = makeEngine(32);
  e->slowRefresh();
  int sounding = 0;
  for (const Voice& v : e->voices) sounding += v.ampState != kEnvIdle;
  if (e->activeVoices != 32 || sounding != 32) {
    state.SkipWithError("32 voices are not sounding");
    return;
  }
  for (auto _ : state) {
    e->globalTick(kTick);
    for (int v = 0; v < 32; ++v) e->voiceTick(v);
    benchmark::ClobberMemory();
  }
  state.SetLabel("per iteration: one tick of 32 voices");
}
BENCHMARK(controlTick32);

}  // namespace
}  // namespace sablevox
