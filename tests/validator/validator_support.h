// What the validator suite shares: loop counts that shrink under the
// sanitizers, a loaded-and-running instance, a held chord, hostile values and
// the check that a stretch of output is finite.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "common/isolated_settings.h"
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

}  // namespace sablevox::testing
