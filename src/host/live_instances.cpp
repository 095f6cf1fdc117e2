// The registry of engine objects and its clean-up at unload.
#include "host/live_instances.h"

#include <mutex>
#include <vector>

#include "host/adelay.h"

namespace sablevox {
namespace {

// Constant-initialised and trivially destroyed, so that both are usable in
// the unload hook, whatever order the library's static objects go in.
std::mutex registryMutex;
ADelay* firstInstance = nullptr;

}  // namespace

void addLiveInstance(ADelay* instance) {
  std::lock_guard<std::mutex> lock(registryMutex);
  instance->nextLive = firstInstance;
  instance->previousLive = nullptr;
  if (firstInstance != nullptr) firstInstance->previousLive = instance;
  firstInstance = instance;
}

void removeLiveInstance(ADelay* instance) {
  std::lock_guard<std::mutex> lock(registryMutex);
  if (instance->previousLive != nullptr) {
    instance->previousLive->nextLive = instance->nextLive;
  } else if (firstInstance == instance) {
    firstInstance = instance->nextLive;
  }
  if (instance->nextLive != nullptr) instance->nextLive->previousLive = instance->previousLive;
  instance->nextLive = instance->previousLive = nullptr;
}

namespace {

// Runs when the library is unloaded (dlclose) or the process ends: deletes
// each instance the host left open, which stops and joins its worker. Such an
// instance can't be used any more anyway: its code is about to go.
__attribute__((destructor)) void endInstancesLeftOpen() {
  for (;;) {
    ADelay* instance = nullptr;
    {
      std::lock_guard<std::mutex> lock(registryMutex);
      instance = firstInstance;
    }
    if (instance == nullptr) return;
    delete instance;  // removes itself from the registry
  }
}

}  // namespace
}  // namespace sablevox
