// What the plug-in tells a host about itself: names, pins, category, canDo,
// versions, and our own vendor-specific questions.
#include <cstring>

#include "host/adelay.h"
#include "host/numeric.h"
#include "host/text_copy.h"
#include "host/vendor_opcodes.h"
#include "voice/lfo.h"

namespace sablevox {

bool ADelay::getOutputProperties(VstInt32 index, VstPinProperties* properties) {
  if (index < 0 || index > 1 || properties == nullptr) return false;
  copyText(properties->label, "Sablevox", kVstMaxLabelLen - 1);
  copyText(properties->shortLabel, "Sable", kVstMaxShortLabelLen - 1);
  properties->flags = kVstPinIsActive | kVstPinIsStereo;
  return true;
}

// The category the product has always reported, though it is an instrument.
VstPlugCategory ADelay::getPlugCategory() {
  return kPlugCategEffect;
}

bool ADelay::getEffectName(char* name) {
  copyText(name, kEffectName, kVstMaxEffectNameLen);
  return true;
}

bool ADelay::getVendorString(char* text) {
  copyText(text, kVendorName, kVstMaxVendorStrLen);
  return true;
}

bool ADelay::getProductString(char* text) {
  copyText(text, kEffectName, kVstMaxProductStrLen);
  return true;
}

VstInt32 ADelay::getVendorVersion() {
  return 1000;
}

VstInt32 ADelay::canDo(char* text) {
  static constexpr const char* kCanDo[] = {"receiveVstEvents", "receiveVstMidiEvent",
                                           "midiProgramNames", "receiveVstTimeInfo"};
  if (text == nullptr) return -1;
  for (const char* feature : kCanDo) {
    if (std::strcmp(text, feature) == 0) return 1;
  }
  return -1;
}

VstIntPtr ADelay::dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                             float opt) {
  if (opcode == effVendorSpecific && index == kSablevoxVendorIndex) {
    if (value == kVendorSeedRandom && ptr != nullptr) {
      uint32_t seed = 0;
      std::memcpy(&seed, ptr, sizeof seed);
      randomState = seed;
      lfoRandomState = seed;
      return 1;
    }
    return value == kVendorWavesReady && wavesReady() ? 1 : 0;
  }
  return AudioEffectX::dispatcher(opcode, index, value, ptr, opt);
}

}  // namespace sablevox
