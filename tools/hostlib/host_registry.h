// Finds the Host that answers a callback. The VST 2 callback carries no user
// pointer, only the AEffect (null inside the entry), so effects are mapped to
// their Host here, and a Host that is loading a plug-in answers the calls made
// before its AEffect is known.
#pragma once

#include "host/vst2.h"
#include "hostlib/host.h"

namespace sablevox::host {

void registerEffect(const AEffect* effect, Host* host);
void unregisterEffect(const AEffect* effect);
// The Host of effect; else the Host loading on this thread; else the Host
// loading on any thread; else null.
Host* hostFor(const AEffect* effect);

// Marks `host` as loading for the lifetime of the scope.
class LoadingScope {
 public:
  explicit LoadingScope(Host* host);
  ~LoadingScope();
  LoadingScope(const LoadingScope&) = delete;
  LoadingScope& operator=(const LoadingScope&) = delete;

 private:
  Host* previous_;
};

}  // namespace sablevox::host
