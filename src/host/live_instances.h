// Every engine object the entry gave a host, so that unloading the library
// can end the ones the host never closed: their wave workers run code of the
// library, which must not be unmapped under them. The entry adds, the
// engine's destructor removes; never the audio thread.
#pragma once

namespace sablevox {

class ADelay;

// instance: allocated with new, so that the unload may delete it.
void addLiveInstance(ADelay* instance);
// Does nothing for an instance that was never added.
void removeLiveInstance(ADelay* instance);

}  // namespace sablevox
