// The answers of the host callback and the call log.
#include "hostlib/host.h"

#include <algorithm>
#include <cstring>

#include "hostlib/host_registry.h"

namespace sablevox::host {
namespace {

constexpr const char* kVendor = "Sablevox";
constexpr const char* kProduct = "sablevox-render";
constexpr VstIntPtr kHostVendorVersion = 1000;

// Writes the text and its zero and nothing more: plug-ins pass buffers of
// many sizes, some smaller than the interface's 64 bytes.
void copyHostString(void* ptr, const char* text) {
  if (ptr != nullptr) std::memcpy(ptr, text, std::strlen(text) + 1);
}

}  // namespace

Host::Host() : canDo_{"sendVstEvents", "sendVstMidiEvent", "sendVstTimeInfo", "sizeWindow"} {}

void Host::setHostCanDo(std::vector<std::string> features) {
  std::lock_guard<std::mutex> lock(mutex_);
  canDo_ = std::move(features);
}

void Host::setPosition(double samplePos, double ppqPos) {
  std::lock_guard<std::mutex> lock(mutex_);
  samplePos_ = samplePos;
  ppqPos_ = ppqPos;
}

void Host::advance(VstInt32 frames) {
  std::lock_guard<std::mutex> lock(mutex_);
  samplePos_ += frames;
  ppqPos_ += frames / sampleRate_.load() * tempo_.load() / 60.0;
}

double Host::samplePosition() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return samplePos_;
}

double Host::ppqPosition() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return ppqPos_;
}

std::vector<HostCall> Host::calls() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return calls_;
}

int Host::count(VstInt32 opcode) const {
  if (opcode < 0 || opcode >= kCountedOpcodes) return 0;
  return counts_[static_cast<size_t>(opcode)].load();
}

void Host::clearCalls() {
  std::lock_guard<std::mutex> lock(mutex_);
  calls_.clear();
  for (auto& count : counts_) count.store(0);
}

// Each calling thread gets its own answer, so that two threads asking at once
// never share the structure they read.
VstIntPtr Host::timeAnswer(VstIntPtr /*wantedFlags*/) {
  if (!timeAvailable_.load()) return 0;
  thread_local VstTimeInfo info;
  info = VstTimeInfo{};
  {
    std::lock_guard<std::mutex> lock(mutex_);
    info.samplePos = samplePos_;
    info.ppqPos = ppqPos_;
  }
  info.sampleRate = sampleRate_.load();
  info.tempo = tempo_.load();
  info.timeSigNumerator = 4;
  info.timeSigDenominator = 4;
  info.flags = kVstTransportPlaying | kVstTempoValid | kVstPpqPosValid;
  return reinterpret_cast<VstIntPtr>(&info);
}

VstIntPtr Host::answer(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                       float opt) {
  HostCall call{opcode, index, value, opt, effect == nullptr, {}};
  if (opcode == audioMasterCanDo && ptr != nullptr) call.text = static_cast<const char*>(ptr);
  bool canDo = false;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    if (opcode == audioMasterCanDo) {
      canDo = std::find(canDo_.begin(), canDo_.end(), call.text) != canDo_.end();
    }
    if (keepLog_.load()) calls_.push_back(std::move(call));
  }
  const bool counted = opcode >= 0 && opcode < kCountedOpcodes;
  counts_[counted ? static_cast<size_t>(opcode) : kCountedOpcodes].fetch_add(1);

  switch (opcode) {
    case audioMasterVersion:
      return version_.load();
    case audioMasterGetTime:
      return timeAnswer(value);
    case audioMasterCanDo:
      return canDo ? 1 : 0;
    case audioMasterGetSampleRate:
      return static_cast<VstIntPtr>(sampleRate_.load());
    case audioMasterGetBlockSize:
      return blockSize_.load();
    case audioMasterGetCurrentProcessLevel:
      return processLevel_.load();
    case audioMasterGetVendorString:
      copyHostString(ptr, kVendor);
      return 1;
    case audioMasterGetProductString:
      copyHostString(ptr, kProduct);
      return 1;
    case audioMasterGetVendorVersion:
      return kHostVendorVersion;
    case audioMasterWantMidi:
    case audioMasterNeedIdle:
    case audioMasterSizeWindow:
    case audioMasterUpdateDisplay:
    case audioMasterBeginEdit:
    case audioMasterEndEdit:
      return 1;
    default:  // audioMasterAutomate and everything else: logged, answer 0
      return 0;
  }
}

VstIntPtr Host::callback(AEffect* effect, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                         void* ptr, float opt) {
  Host* host = hostFor(effect);
  if (host == nullptr) return opcode == audioMasterVersion ? 2400 : 0;
  return host->answer(effect, opcode, index, value, ptr, opt);
}

}  // namespace sablevox::host
