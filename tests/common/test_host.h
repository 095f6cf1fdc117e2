// A minimal in-process host for engine tests: a host callback that answers the
// version and, when asked, the time, and records what the plug-in calls; plus
// an isolated settings folder so tests never touch the user's own file.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "common/isolated_settings.h"
#include "host/adelay.h"
#include "host/vst2.h"

namespace sablevox::testing {

struct HostCall {
  VstInt32 opcode;
  VstInt32 index;
  VstIntPtr value;
  float opt;
};

// One process-wide host; tests reset it in their set-up.
struct TestHost {
  VstIntPtr version = 2400;
  bool answerTime = false;
  VstTimeInfo timeInfo{};
  std::mutex mutex;
  std::vector<HostCall> calls;

  static TestHost& instance() {
    static TestHost host;
    return host;
  }
  void reset() {
    std::lock_guard<std::mutex> lock(mutex);
    version = 2400;
    answerTime = false;
    timeInfo = VstTimeInfo{};
    calls.clear();
  }
  int count(VstInt32 opcode) {
    std::lock_guard<std::mutex> lock(mutex);
    int n = 0;
    for (const HostCall& call : calls) n += call.opcode == opcode ? 1 : 0;
    return n;
  }
  static VstIntPtr callback(AEffect* /*effect*/, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                            void* /*ptr*/, float opt) {
    TestHost& host = instance();
    std::lock_guard<std::mutex> lock(host.mutex);
    host.calls.push_back({opcode, index, value, opt});
    switch (opcode) {
      case audioMasterVersion:
        return host.version;
      case audioMasterGetTime:
        return host.answerTime ? reinterpret_cast<VstIntPtr>(&host.timeInfo) : 0;
      default:
        return 0;
    }
  }
};

// Created and opened, as a host does: the tables of program 0 are built and
// the worker runs.
inline std::unique_ptr<ADelayEdit> makeEngine(float sampleRate = 44100.0f) {
  auto engine = std::make_unique<ADelayEdit>(&TestHost::callback);
  engine->open();
  engine->setSampleRate(sampleRate);
  return engine;
}

// Renders `count` samples in one block into the two vectors.
inline void renderBlock(ADelay& engine, std::vector<float>& left, std::vector<float>& right,
                        int count) {
  left.assign(static_cast<size_t>(count), 0.0f);
  right.assign(static_cast<size_t>(count), 0.0f);
  float* outputs[2] = {left.data(), right.data()};
  engine.processReplacing(nullptr, outputs, count);
}

}  // namespace sablevox::testing
