// The plug-in's exported entry, under both names a Linux host looks for.
#include <new>

#include "host/adelay.h"
#include "host/live_instances.h"

using sablevox::ADelayEdit;

extern "C" {

__attribute__((visibility("default"))) AEffect* VSTPluginMain(audioMasterCallback audioMaster) {
  if (audioMaster == nullptr) return nullptr;
  // A host that answers version 0 can't serve the plug-in.
  if (audioMaster(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f) == 0) return nullptr;
  // Nothing may escape into the host: any failure is a null.
  try {
    ADelayEdit* effect = new ADelayEdit(audioMaster);
    sablevox::addLiveInstance(effect);
    return effect->getAeffect();
  } catch (...) {
    return nullptr;
  }
}

// C++ forbids a function named main with this signature, so the second name
// is given to the assembler directly.
__attribute__((visibility("default"))) AEffect* sablevoxMainEntry(
    audioMasterCallback audioMaster) __asm__("main");
AEffect* sablevoxMainEntry(audioMasterCallback audioMaster) {
  return VSTPluginMain(audioMaster);
}

}  // extern "C"
