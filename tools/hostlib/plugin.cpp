// Loading a plug-in and driving its lifecycle, parameters, events and blocks.
#include "hostlib/plugin.h"

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>
#include <thread>
#include <utility>

#include "host/vendor_opcodes.h"
#include "hostlib/host_registry.h"

namespace sablevox::host {
namespace {

void setError(std::string* error, std::string text) {
  if (error != nullptr) *error = std::move(text);
}

}  // namespace

std::unique_ptr<Plugin> Plugin::load(const std::string& path, std::string* error,
                                     std::shared_ptr<Host> host) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) {
    setError(error, "plug-in file not found: " + path);
    return nullptr;
  }
  // A name without a slash would make dlopen search the library path instead.
  const std::string openPath = path.find('/') == std::string::npos ? "./" + path : path;
  void* library = dlopen(openPath.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    const char* why = dlerror();
    setError(error, "cannot load plug-in " + path + ": " + (why != nullptr ? why : "unknown"));
    return nullptr;
  }
  auto entry = reinterpret_cast<Entry>(dlsym(library, "VSTPluginMain"));
  if (entry == nullptr) entry = reinterpret_cast<Entry>(dlsym(library, "main"));
  if (entry == nullptr) {
    setError(error, path + " is not a VST 2 plug-in: it exports neither VSTPluginMain nor main");
    dlclose(library);
    return nullptr;
  }
  return start(entry, library, path, error, std::move(host));
}

std::unique_ptr<Plugin> Plugin::fromEntry(Entry entry, const std::string& name, std::string* error,
                                          std::shared_ptr<Host> host) {
  return start(entry, nullptr, name, error, std::move(host));
}

std::unique_ptr<Plugin> Plugin::start(Entry entry, void* library, const std::string& path,
                                      std::string* error, std::shared_ptr<Host> host) {
  if (host == nullptr) host = std::make_shared<Host>();
  AEffect* effect = nullptr;
  {
    LoadingScope loading(host.get());
    effect = entry(&Host::callback);
  }
  if (effect == nullptr) {
    setError(error, "the plug-in " + path + " refused to start: its entry returned no effect");
    if (library != nullptr) dlclose(library);
    return nullptr;
  }
  if (effect->magic != kEffectMagic) {
    // Unknown memory: neither close it nor unload the code it may still run.
    setError(error, "the entry of " + path + " returned something that is not a VST 2 effect");
    return nullptr;
  }
  registerEffect(effect, host.get());
  return std::unique_ptr<Plugin>(new Plugin(path, library, effect, std::move(host)));
}

Plugin::Plugin(std::string path, void* library, AEffect* effect, std::shared_ptr<Host> host)
    : path_(std::move(path)), library_(library), effect_(effect), host_(std::move(host)) {}

Plugin::~Plugin() {
  if (effect_ != nullptr) {
    if (resumed_) suspend();
    close();
  }
  if (library_ != nullptr && !keepLoaded_) dlclose(library_);
}

VstIntPtr Plugin::dispatch(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr, float opt) {
  if (effect_ == nullptr) return 0;
  return effect_->dispatcher(effect_, opcode, index, value, ptr, opt);
}

void Plugin::open() {
  dispatch(effOpen);
}

void Plugin::setSampleRate(double rate) {
  host_->setSampleRate(rate);
  dispatch(effSetSampleRate, 0, 0, nullptr, static_cast<float>(rate));
}

void Plugin::setBlockSize(VstInt32 frames) {
  host_->setBlockSize(frames);
  dispatch(effSetBlockSize, 0, frames);
  prepareBuffers(frames);
}

void Plugin::resume() {
  dispatch(effMainsChanged, 0, 1);
  resumed_ = true;
}

void Plugin::suspend() {
  dispatch(effMainsChanged, 0, 0);
  resumed_ = false;
}

void Plugin::close() {
  if (effect_ == nullptr) return;
  AEffect* closing = effect_;
  dispatch(effClose);
  effect_ = nullptr;
  resumed_ = false;
  unregisterEffect(closing);
}

VstInt32 Plugin::numPrograms() const {
  return effect_ != nullptr ? effect_->numPrograms : 0;
}
VstInt32 Plugin::numParams() const {
  return effect_ != nullptr ? effect_->numParams : 0;
}
VstInt32 Plugin::numInputs() const {
  return effect_ != nullptr ? effect_->numInputs : 0;
}
VstInt32 Plugin::numOutputs() const {
  return effect_ != nullptr ? effect_->numOutputs : 0;
}
VstInt32 Plugin::flags() const {
  return effect_ != nullptr ? effect_->flags : 0;
}
VstInt32 Plugin::uniqueId() const {
  return effect_ != nullptr ? effect_->uniqueID : 0;
}
VstInt32 Plugin::version() const {
  return effect_ != nullptr ? effect_->version : 0;
}

void Plugin::setParameter(int index, float value) {
  if (effect_ != nullptr) effect_->setParameter(effect_, index, value);
}

float Plugin::getParameter(int index) {
  return effect_ != nullptr ? effect_->getParameter(effect_, index) : 0.0f;
}

VstIntPtr Plugin::sendMidi(std::span<const MidiMessage> messages) {
  events_.clear();
  for (const MidiMessage& message : messages) events_.add(message);
  return sendEvents(events_);
}

VstIntPtr Plugin::sendEvents(EventList& events) {
  return dispatch(effProcessEvents, 0, 0, events.get());
}

// Silent inputs first, then a spare output for each output beyond the pair
// and one for a mono plug-in's accumulating call.
void Plugin::prepareBuffers(VstInt32 frames) {
  if (effect_ == nullptr) return;
  const size_t inputs = static_cast<size_t>(std::max(effect_->numInputs, 0));
  const size_t outputs = static_cast<size_t>(std::max(effect_->numOutputs, 0));
  const size_t spares = inputs + std::max<size_t>(outputs, 2) - 1;
  frames = std::max(frames, scratchFrames_);
  if (scratch_.size() == spares && frames == scratchFrames_) return;
  scratch_.assign(spares, std::vector<float>(static_cast<size_t>(frames), 0.0f));
  scratchFrames_ = frames;
  inputs_.assign(std::max<size_t>(inputs, 1), nullptr);
  for (size_t i = 0; i < inputs; ++i) inputs_[i] = scratch_[i].data();
  outputs_.assign(std::max<size_t>(outputs, 2), nullptr);
  for (size_t i = 2; i < outputs_.size(); ++i) outputs_[i] = scratch_[inputs + i - 1].data();
}

void Plugin::processReplacing(float* left, float* right, VstInt32 frames) {
  if (effect_ == nullptr) return;
  // Counts of 0 and below go to the plug-in as they are: hosts send them too.
  const VstInt32 length = std::max<VstInt32>(frames, 0);
  prepareBuffers(length);
  for (int i = 0; i < effect_->numInputs; ++i) std::fill_n(inputs_[i], length, 0.0f);
  outputs_[0] = left;
  outputs_[1] = right;
  if (effect_->numOutputs < 2) std::fill_n(left, length, 0.0f);
  effect_->processReplacing(effect_, inputs_.data(), outputs_.data(), frames);
  if (effect_->numOutputs < 2) std::copy_n(left, length, right);
  host_->advance(length);
}

bool Plugin::process(float* left, float* right, VstInt32 frames) {
  if (effect_ == nullptr || effect_->process == nullptr) return false;
  const VstInt32 length = std::max<VstInt32>(frames, 0);
  prepareBuffers(length);
  for (int i = 0; i < effect_->numInputs; ++i) std::fill_n(inputs_[i], length, 0.0f);
  const bool mono = effect_->numOutputs < 2;
  float* monoSum = scratch_.back().data();
  if (mono) std::fill_n(monoSum, length, 0.0f);
  outputs_[0] = mono ? monoSum : left;
  outputs_[1] = right;
  effect_->process(effect_, inputs_.data(), outputs_.data(), frames);
  for (VstInt32 i = 0; mono && i < length; ++i) {
    left[i] += monoSum[i];
    right[i] += monoSum[i];
  }
  host_->advance(length);
  return true;
}

bool Plugin::waitForSablevoxWaves(std::chrono::milliseconds limit) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  float left = 0.0f, right = 0.0f;
  while (dispatch(effVendorSpecific, kSablevoxVendorIndex, kVendorWavesReady) != 1) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    processReplacing(&left, &right, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

bool Plugin::seedSablevoxRandom(uint32_t seed) {
  return dispatch(effVendorSpecific, kSablevoxVendorIndex, kVendorSeedRandom, &seed) == 1;
}

}  // namespace sablevox::host
