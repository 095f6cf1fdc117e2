// The map from effects to their Hosts, and the loading Host of each thread.
#include "hostlib/host_registry.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

namespace sablevox::host {
namespace {

std::mutex& registryMutex() {
  static std::mutex mutex;
  return mutex;
}

std::vector<std::pair<const AEffect*, Host*>>& registry() {
  static std::vector<std::pair<const AEffect*, Host*>> entries;
  return entries;
}

thread_local Host* loadingHere = nullptr;
std::atomic<Host*> loadingAnywhere{nullptr};

}  // namespace

void registerEffect(const AEffect* effect, Host* host) {
  std::lock_guard<std::mutex> lock(registryMutex());
  registry().emplace_back(effect, host);
}

void unregisterEffect(const AEffect* effect) {
  if (effect == nullptr) return;
  std::lock_guard<std::mutex> lock(registryMutex());
  auto& entries = registry();
  std::erase_if(entries, [effect](const auto& entry) { return entry.first == effect; });
}

Host* hostFor(const AEffect* effect) {
  if (effect != nullptr) {
    std::lock_guard<std::mutex> lock(registryMutex());
    for (const auto& [known, host] : registry()) {
      if (known == effect) return host;
    }
  }
  if (loadingHere != nullptr) return loadingHere;
  return loadingAnywhere.load();
}

LoadingScope::LoadingScope(Host* host) : previous_(loadingHere) {
  loadingHere = host;
  loadingAnywhere.store(host);
}

LoadingScope::~LoadingScope() {
  loadingHere = previous_;
  loadingAnywhere.store(previous_);
}

}  // namespace sablevox::host
