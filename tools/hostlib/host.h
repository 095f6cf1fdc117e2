// The host side of the VST 2 callback: what this host answers a plug-in
// (version, time, sample rate, strings, canDo) and a log of every call the
// plug-in made, readable by tests. One Host serves one plug-in instance; its
// answers and log may be used from any thread.
#pragma once

#include <array>
#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include "host/vst2.h"

namespace sablevox::host {

// One call of the plug-in into the host, as it arrived.
struct HostCall {
  VstInt32 opcode;
  VstInt32 index;
  VstIntPtr value;
  float opt;
  bool effectWasNull;  // the entry asks before its AEffect exists
  std::string text;    // the text argument of audioMasterCanDo, else empty
};

class Host {
 public:
  Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // What audioMasterVersion answers; 0 tells the plug-in that the host is too old.
  void setVersion(VstIntPtr version) { version_.store(version); }
  // Beats per minute reported by audioMasterGetTime from now on.
  void setTempo(double bpm) { tempo_.store(bpm); }
  double tempo() const { return tempo_.load(); }
  // false: audioMasterGetTime answers null ("no time information").
  void setTimeAvailable(bool available) { timeAvailable_.store(available); }
  void setSampleRate(double rate) { sampleRate_.store(rate); }
  double sampleRate() const { return sampleRate_.load(); }
  void setBlockSize(VstInt32 frames) { blockSize_.store(frames); }
  VstInt32 blockSize() const { return blockSize_.load(); }
  // What audioMasterGetCurrentProcessLevel answers: kVstProcessLevelUnknown
  // (0, the default), or kVstProcessLevelOffline while rendering to a file.
  void setProcessLevel(VstInt32 level) { processLevel_.store(level); }
  // Host features audioMasterCanDo answers 1 for; any other text gets 0.
  void setHostCanDo(std::vector<std::string> features);

  // Transport: the sample position of the next block and its musical position.
  // advance() moves both by a block of `frames` at the current tempo.
  void setPosition(double samplePos, double ppqPos);
  void advance(VstInt32 frames);
  double samplePosition() const;
  double ppqPosition() const;

  // The log. count() is cheap and lock-free for opcodes 0..63. A long render
  // turns the list off (the counts go on), so that memory stays flat.
  void keepCallLog(bool keep) { keepLog_.store(keep); }
  std::vector<HostCall> calls() const;
  int count(VstInt32 opcode) const;
  void clearCalls();

  // The answer to one callback; records the call first.
  VstIntPtr answer(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                   float opt);

  // The function to hand to a plug-in's entry. It finds the Host of the
  // calling effect through the registry (host_registry.cpp).
  static VstIntPtr callback(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                            void* ptr, float opt);

  static constexpr int kCountedOpcodes = 64;

 private:
  VstIntPtr timeAnswer(VstIntPtr wantedFlags);

  std::atomic<VstIntPtr> version_{2400};
  std::atomic<double> tempo_{120.0};
  std::atomic<bool> timeAvailable_{true};
  std::atomic<double> sampleRate_{44100.0};
  std::atomic<VstInt32> blockSize_{1024};
  std::atomic<bool> keepLog_{true};
  std::atomic<VstInt32> processLevel_{kVstProcessLevelUnknown};

  mutable std::mutex mutex_;  // guards everything below
  std::vector<std::string> canDo_;
  double samplePos_ = 0.0;
  double ppqPos_ = 0.0;
  std::vector<HostCall> calls_;
  std::array<std::atomic<int>, kCountedOpcodes + 1> counts_{};  // last: any other opcode
};

}  // namespace sablevox::host
