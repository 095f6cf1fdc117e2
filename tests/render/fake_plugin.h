// An in-process stand-in for a VST 2 instrument that records what a host
// does to it: the dispatcher calls, the MIDI events with the block they
// arrived in, and the time information it got at each block. Its output is
// a constant pair so that block and accumulate calls can be told apart.
#pragma once

#include <cstdint>
#include <vector>

#include "host/vst2.h"

namespace sablevox::testing {

struct FakeEvent {
  int64_t blockStart;  // frames rendered before the block the event came with
  VstInt32 deltaFrames;
  unsigned char bytes[4];
};

struct FakeTime {
  bool answered;
  VstTimeInfo info;
};

struct FakePlugin {
  static constexpr float kLeft = 0.25f;
  static constexpr float kRight = -0.5f;

  // The entry to hand to Plugin::fromEntry. Refuses a host of version 0.
  static AEffect* entry(audioMasterCallback host);
  static FakePlugin& state();  // the one fake; entry() resets it

  AEffect effect{};
  audioMasterCallback host = nullptr;
  std::vector<VstInt32> opcodes;  // dispatcher calls in order
  std::vector<FakeEvent> events;
  std::vector<FakeTime> times;  // one per block
  std::vector<VstInt32> blockLengths;
  int64_t framesRendered = 0;
  float sampleRate = 0.0f;
  VstIntPtr blockSize = 0;
  bool closed = false;
  float parameters[4] = {};
};

}  // namespace sablevox::testing
