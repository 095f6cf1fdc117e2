// The one fixture of the binary-interface tests: the built plug-in loaded
// through the host library as a host loads it, with its own settings folder.
// Instance is the bare instance (loaded, opened, resumed); PluginRig adds a
// plain patch, the wait for the wave tables and renders of timed notes.
// Also: loop counts that shrink under the sanitizers, hostile values and the
// check that a stretch of output is finite.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "common/isolated_settings.h"
#include "host/parameters.h"
#include "host/vendor_opcodes.h"
#include "hostlib/plugin.h"

namespace sablevox::testing {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

// A loop count for the Release build, cut to an eighth (at least 1) under a
// sanitizer, whose runs are ten to twenty times slower.
constexpr int scaled(int count) {
  return kSanitized ? std::max(1, count / 8) : count;
}

// Values a careless or hostile host may hand a parameter.
inline constexpr float kHostileValues[] = {std::numeric_limits<float>::quiet_NaN(),
                                           -std::numeric_limits<float>::quiet_NaN(),
                                           std::numeric_limits<float>::infinity(),
                                           -std::numeric_limits<float>::infinity(),
                                           std::numeric_limits<float>::max(),
                                           -std::numeric_limits<float>::max(),
                                           std::numeric_limits<float>::denorm_min(),
                                           -1e30f,
                                           1e30f,
                                           -1.0f,
                                           -0.0f,
                                           1.0f,
                                           1.5f,
                                           2.0f,
                                           65536.0f};

// Half the time a plain value in 0..1, else a hostile one.
inline float anyParameterValue(std::mt19937& random) {
  if (random() % 2 == 0) return static_cast<float>(random() % 100001) / 100000.0f;
  return kHostileValues[random() % std::size(kHostileValues)];
}

inline ::testing::AssertionResult allFinite(std::span<const float> x, const char* what = "") {
  for (size_t i = 0; i < x.size(); ++i) {
    if (!std::isfinite(x[i])) {
      return ::testing::AssertionFailure() << what << " sample " << i << " is " << x[i];
    }
  }
  return ::testing::AssertionSuccess();
}

inline float peak(std::span<const float> x) {
  float p = 0.0f;
  for (float v : x) p = std::max(p, std::fabs(v));
  return p;
}

// One processReplacing block into the vectors (resized); finite or not.
inline ::testing::AssertionResult renderFinite(host::Plugin& plugin, std::vector<float>& left,
                                               std::vector<float>& right, VstInt32 frames) {
  left.assign(static_cast<size_t>(frames), 0.0f);
  right.assign(static_cast<size_t>(frames), 0.0f);
  plugin.processReplacing(left.data(), right.data(), frames);
  auto result = allFinite(left, "left");
  return result ? allFinite(right, "right") : result;
}

// A loaded, opened and resumed instance with its own host and settings.
struct Instance {
  IsolatedSettings settings;
  std::shared_ptr<host::Host> host = std::make_shared<host::Host>();
  std::unique_ptr<host::Plugin> plugin;

  ::testing::AssertionResult start(double rate, VstInt32 blockSize) {
    plugin.reset();
    host->setSampleRate(rate);
    host->setBlockSize(blockSize);
    std::string error;
    plugin = host::Plugin::load(SABLEVOX_PLUGIN_PATH, &error, host);
    if (plugin == nullptr) return ::testing::AssertionFailure() << error;
    plugin->open();
    plugin->setSampleRate(rate);
    plugin->setBlockSize(blockSize);
    plugin->resume();
    return ::testing::AssertionSuccess();
  }

  void chord(std::initializer_list<int> keys, bool on, VstInt32 delta = 0) {
    std::vector<host::MidiMessage> midi;
    for (int key : keys) {
      midi.push_back(on ? host::MidiMessage::noteOn(delta, 0, key, 100)
                        : host::MidiMessage::noteOff(delta, 0, key));
    }
    plugin->sendMidi(midi);
  }

  ::testing::AssertionResult block(std::vector<float>& left, std::vector<float>& right,
                                   VstInt32 frames) {
    return renderFinite(*plugin, left, right, frames);
  }
};

// Choices by position in their value lists (the lists live in the plug-in).
constexpr int kWaveOff = 0;
constexpr int kWaveSaw = 2;        // "STA Saw"
constexpr int kLoopForward = 1;    // Osc1Loop "+-+-+-": starts at frame 0, no random draw
constexpr int kLoopSpeedZero = 1;  // Osc1LSp "0 Hz": the scan stands still
constexpr int kLfoStatic = 0;      // LFOType "static": the LFO is 1
constexpr int kEightVoices = 4;    // Voices "8"

// Effect steps in EffType order; the 20th step has no name and no effect.
// clang-format off
enum EffectStep : int {
  kEffOff, kEffReverbA, kEffReverbB, kEffDelayA, kEffDelayB, kEffDelayC, kEffDelayD, kEffChorus,
  kEffEnsemble, kEffFlanger, kEffRotary, kEffDelRevA, kEffDelRevB, kEffEnsRev, kEffSurround,
  kEffStereoEnhance, kEffRevHiEndA, kEffRevHiEndB, kEffRevHiEndC, kEffUnnamed, kEffSteps
};
// clang-format on

struct StereoRender {
  std::vector<float> left;
  std::vector<float> right;
};

inline host::TimedMidi noteOn(int64_t frame, int key, int velocity = 127) {
  return {frame, host::MidiMessage::noteOn(0, 0, key, velocity)};
}
inline host::TimedMidi noteOff(int64_t frame, int key) {
  return {frame, host::MidiMessage::noteOff(0, 0, key)};
}

// An Instance that sounds: a plain patch, tables ready, timed renders.
class PluginRig {
 public:
  static constexpr int kBlock = 512;

  // Loads, opens and resumes the plug-in at `rate`, sets the plain patch and
  // then `patch`, and waits for the tables. Settings made here are in place
  // at the first block; later changes of a wave or the filter type are taken
  // at the engine's next 0.1 s refresh.
  using Patch = std::function<void(PluginRig&)>;
  ::testing::AssertionResult start(double rate, double tempo = 120.0, bool timeAvailable = true,
                                   const Patch& patch = {}) {
    instance_.host->setTempo(tempo);
    instance_.host->setTimeAvailable(timeAvailable);
    auto started = instance_.start(rate, kBlock);
    if (!started) return started;
    plainPatch();
    if (patch) patch(*this);
    return waitForWaves();
  }
  ::testing::AssertionResult start(double rate, const Patch& patch) {
    return start(rate, 120.0, true, patch);
  }

  // A bare sawtooth: one oscillator that starts at phase 0 and stands still
  // in its wave, no filter, LFO, drive or effect, an organ envelope, the
  // level independent of velocity. Everything random at a note start is out,
  // so two renders of the same notes are the same.
  void plainPatch() {
    // clang-format off
    const struct { int index; float value; } patch[] = {
        {kOsc1Wave, choiceValue(kWaveSaw)}, {kOsc2Wave, choiceValue(kWaveOff)}, {kOsc1Mod, 0.0f},
        {kOsc2Mod, 0.0f}, {kOsc1Loop, choiceValue(kLoopForward)},
        {kOsc1LSp, choiceValue(kLoopSpeedZero)}, {kOsc1Tune, 0.25f} /* ratio 1 */,
        {kOsc1Fine, 0.5f}, {kOsc1Vol, 1.0f}, {kOsc2Vol, 0.0f}, {kFat, 0.0f}, {kAnalog, 0.0f},
        {kFiltType, 0.0f}, {kCutoff, 0.5f}, {kReso, 0.0f}, {kFiltKey, 0.5f}, {kEnvFilSe, 0.5f},
        {kEnvFilVe, 0.5f}, {kDrive, 0.0f}, {kVolume, 1.0f}, {kEnvVolA, 0.0f}, {kEnvVolD, 0.5f},
        {kEnvVolS, 1.0f}, {kEnvVolR, 0.0f}, {kEnvVolVe, 0.5f}, {kEnvVolPo, 0.0f},
        {kLFODest, 0.0f}, {kLFOType, choiceValue(kLfoStatic)}, {kLFOSend, 0.5f},
        {kArpType, 0.0f}, {kEffType, 0.0f}, {kEffPar1, 0.5f}, {kEffPar2, 0.5f},
        {kVoices, choiceValue(kEightVoices)}, {kGlMode, 0.0f}};
    // clang-format on
    for (const auto& p : patch) set(p.index, p.value);
  }

  void set(int index, float value) { plugin().setParameter(index, value); }
  void choose(int index, int choice) { set(index, choiceValue(choice)); }

  bool wavesReady() {
    return plugin().dispatch(effVendorSpecific, kSablevoxVendorIndex, kVendorWavesReady) == 1;
  }

  // Empty blocks let the plug-in take the change of a wave; then the worker
  // needs a moment. A few seconds at most, also under the sanitizers.
  ::testing::AssertionResult waitForWaves() {
    float l = 0.0f, r = 0.0f;
    for (int i = 0; i < 1000; ++i) {
      plugin().processReplacing(&l, &r, 0);
      if (wavesReady()) return ::testing::AssertionSuccess();
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return ::testing::AssertionFailure() << "the wave tables were not built in time";
  }

  StereoRender render(std::span<const host::TimedMidi> events, int64_t frames,
                      const host::Plugin::BlockHook& beforeBlock = {}) {
    StereoRender out;
    EXPECT_TRUE(plugin().render(events, frames, kBlock, out.left, out.right, beforeBlock));
    return out;
  }
  StereoRender render(std::initializer_list<host::TimedMidi> events, int64_t frames,
                      const host::Plugin::BlockHook& beforeBlock = {}) {
    const std::vector<host::TimedMidi> list(events);
    return render(list, frames, beforeBlock);
  }

  host::Host& host() { return *instance_.host; }
  host::Plugin& plugin() { return *instance_.plugin; }

 private:
  Instance instance_;
};

}  // namespace sablevox::testing
