// What the sounding plug-in tests share: one instance loaded from its file
// and driven as a host drives it (isolated settings, a plain patch, the wait
// for the wave tables), and the small measurements they make on its output.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <complex>
#include <cstdint>
#include <functional>
#include <memory>
#include <numbers>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "common/isolated_settings.h"
#include "host/parameters.h"
#include "host/vendor_opcodes.h"
#include "hostlib/plugin.h"

namespace sablevox::testing {

// Choices by position in their value lists (the lists live in the plug-in).
constexpr int kWaveOff = 0;
constexpr int kWaveNoise = 1;      // "STA Noise"
constexpr int kWaveSaw = 2;        // "STA Saw"
constexpr int kLoopForward = 1;    // Osc1Loop "+-+-+-": starts at frame 0, no random draw
constexpr int kLoopSpeedZero = 1;  // Osc1LSp "0 Hz": the scan stands still
constexpr int kLfoStatic = 0;      // LFOType "static": the LFO is 1
constexpr int kLfoTri = 1;         // LFOType "Tri"
constexpr int kLfoNoise = 11;      // LFOType "Noise": a new random value at each control tick
constexpr int kLfoFastHertz = 14;  // LFOSpeed "8 Hz"
constexpr int kLfoToCutoff = 1;    // LFODest "Cutoff"
constexpr int kLfoToPan = 7;       // LFODest "Pan"
constexpr int kEightVoices = 4;    // Voices "8"

// Effect steps in EffType order.
enum EffectStep : int {
  kEffOff,
  kEffReverbA,
  kEffReverbB,
  kEffDelayA,
  kEffDelayB,
  kEffDelayC,
  kEffDelayD,
  kEffChorus,
  kEffEnsemble,
  kEffFlanger,
  kEffRotary,
  kEffDelRevA,
  kEffDelRevB,
  kEffEnsRev,
  kEffSurround,
  kEffStereoEnhance,
  kEffRevHiEndA,
  kEffRevHiEndB,
  kEffRevHiEndC,
  kEffUnnamed,  // the 20th step: no name and no effect
  kEffSteps
};

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

// One plug-in instance with its own host and settings folder.
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
    plugin_.reset();
    host_ = std::make_shared<host::Host>();
    host_->setTempo(tempo);
    host_->setTimeAvailable(timeAvailable);
    host_->setSampleRate(rate);
    host_->setBlockSize(kBlock);
    std::string error;
    plugin_ = host::Plugin::load(SABLEVOX_PLUGIN_PATH, &error, host_);
    if (plugin_ == nullptr) return ::testing::AssertionFailure() << error;
    plugin_->open();
    plugin_->setSampleRate(rate);
    plugin_->setBlockSize(kBlock);
    plugin_->resume();
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
    const struct {
      int index;
      float value;
    } patch[] = {{kOsc1Wave, choiceValue(kWaveSaw)},
                 {kOsc2Wave, choiceValue(kWaveOff)},
                 {kOsc1Mod, 0.0f},
                 {kOsc2Mod, 0.0f},
                 {kOsc1Loop, choiceValue(kLoopForward)},
                 {kOsc1LSp, choiceValue(kLoopSpeedZero)},
                 {kOsc1Tune, 0.25f},  // ratio 1
                 {kOsc1Fine, 0.5f},
                 {kOsc1Vol, 1.0f},
                 {kOsc2Vol, 0.0f},
                 {kFat, 0.0f},
                 {kAnalog, 0.0f},
                 {kFiltType, 0.0f},
                 {kCutoff, 0.5f},
                 {kReso, 0.0f},
                 {kFiltKey, 0.5f},
                 {kEnvFilSe, 0.5f},
                 {kEnvFilVe, 0.5f},
                 {kDrive, 0.0f},
                 {kVolume, 1.0f},
                 {kEnvVolA, 0.0f},
                 {kEnvVolD, 0.5f},
                 {kEnvVolS, 1.0f},
                 {kEnvVolR, 0.0f},
                 {kEnvVolVe, 0.5f},
                 {kEnvVolPo, 0.0f},
                 {kLFODest, 0.0f},
                 {kLFOType, choiceValue(kLfoStatic)},
                 {kLFOSend, 0.5f},
                 {kArpType, 0.0f},
                 {kEffType, 0.0f},
                 {kEffPar1, 0.5f},
                 {kEffPar2, 0.5f},
                 {kVoices, choiceValue(kEightVoices)},
                 {kGlMode, 0.0f}};
    for (const auto& p : patch) set(p.index, p.value);
  }

  void set(int index, float value) { plugin_->setParameter(index, value); }
  void choose(int index, int choice) { set(index, choiceValue(choice)); }

  bool wavesReady() {
    return plugin_->dispatch(effVendorSpecific, kSablevoxVendorIndex, kVendorWavesReady) == 1;
  }

  // Empty blocks let the plug-in take the change of a wave; then the worker
  // needs a moment. A few seconds at most, also under the sanitizers.
  ::testing::AssertionResult waitForWaves() {
    float l = 0.0f, r = 0.0f;
    for (int i = 0; i < 1000; ++i) {
      plugin_->processReplacing(&l, &r, 0);
      if (wavesReady()) return ::testing::AssertionSuccess();
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return ::testing::AssertionFailure() << "the wave tables were not built in time";
  }

  StereoRender render(std::span<const host::TimedMidi> events, int64_t frames,
                      const host::Plugin::BlockHook& beforeBlock = {}) {
    StereoRender out;
    EXPECT_TRUE(plugin_->render(events, frames, kBlock, out.left, out.right, beforeBlock));
    return out;
  }
  StereoRender render(std::initializer_list<host::TimedMidi> events, int64_t frames,
                      const host::Plugin::BlockHook& beforeBlock = {}) {
    const std::vector<host::TimedMidi> list(events);
    return render(list, frames, beforeBlock);
  }

  host::Host& host() { return *host_; }
  host::Plugin& plugin() { return *plugin_; }

 private:
  IsolatedSettings settings_;
  std::shared_ptr<host::Host> host_;
  std::unique_ptr<host::Plugin> plugin_;
};

// ---- Measurements ----

// Every sample finite and below `bound` in magnitude; else says which is not.
inline ::testing::AssertionResult finiteAndBelow(std::span<const float> x, float bound) {
  for (size_t i = 0; i < x.size(); ++i) {
    if (!(std::fabs(x[i]) < bound)) {
      return ::testing::AssertionFailure() << "sample " << i << " is " << x[i];
    }
  }
  return ::testing::AssertionSuccess();
}

inline float peak(std::span<const float> x) {
  float p = 0.0f;
  for (float v : x) p = std::max(p, std::fabs(v));
  return p;
}

inline double energy(std::span<const float> x) {
  double e = 0.0;
  for (float v : x) e += static_cast<double>(v) * v;
  return e;
}

inline double decibels(double ratio) {
  return 10.0 * std::log10(ratio);
}

// Energy between lowHz and highHz of a Hann-windowed stretch whose length is
// a power of two, by a plain radix-2 transform.
inline double bandEnergy(std::span<const float> x, double rate, double lowHz, double highHz) {
  const size_t n = x.size();
  std::vector<std::complex<double>> a(n);
  for (size_t i = 0; i < n; ++i) {
    const double w = 0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * static_cast<double>(i) / n);
    a[i] = x[i] * w;
  }
  for (size_t i = 1, j = 0; i < n; ++i) {
    size_t bit = n >> 1;
    for (; j & bit; bit >>= 1) j ^= bit;
    j ^= bit;
    if (i < j) std::swap(a[i], a[j]);
  }
  for (size_t len = 2; len <= n; len <<= 1) {
    const std::complex<double> step =
        std::polar(1.0, -2.0 * std::numbers::pi / static_cast<double>(len));
    for (size_t i = 0; i < n; i += len) {
      std::complex<double> t = 1.0;
      for (size_t k = 0; k < len / 2; ++k) {
        const std::complex<double> u = a[i + k];
        const std::complex<double> v = a[i + k + len / 2] * t;
        a[i + k] = u + v;
        a[i + k + len / 2] = u - v;
        t *= step;
      }
    }
  }
  double e = 0.0;
  for (size_t k = 1; k < n / 2; ++k) {
    const double hz = static_cast<double>(k) * rate / static_cast<double>(n);
    if (hz >= lowHz && hz < highHz) e += std::norm(a[k]);
  }
  return e;
}

// The lag at which `pattern` best matches `signal` (normalised correlation,
// by magnitude), searched over lags from..to; the sign tells the polarity.
struct Match {
  int64_t lag = -1;
  double correlation = 0.0;
};
inline Match bestMatch(std::span<const float> signal, std::span<const float> pattern, int64_t from,
                       int64_t to) {
  double patternEnergy = energy(pattern);
  Match best;
  for (int64_t lag = std::max<int64_t>(from, 0); lag <= to; ++lag) {
    const auto end = lag + static_cast<int64_t>(pattern.size());
    if (end > static_cast<int64_t>(signal.size())) break;
    double dot = 0.0, e = 0.0;
    for (size_t i = 0; i < pattern.size(); ++i) {
      const double s = signal[static_cast<size_t>(lag) + i];
      dot += s * pattern[i];
      e += s * s;
    }
    const double c = e > 0.0 ? dot / std::sqrt(e * patternEnergy) : 0.0;
    if (std::fabs(c) > std::fabs(best.correlation)) best = {lag, c};
  }
  return best;
}

}  // namespace sablevox::testing
