// The 2.x part of the host frame: the dispatcher's 2.x opcodes and the host
// services that came with them.
#include "host/audio_effect_x.h"

#include <cmath>

#include "host/text_copy.h"

namespace sablevox {

AudioEffectX::AudioEffectX(audioMasterCallback master, VstInt32 programs, VstInt32 params)
    : AudioEffect(master, programs, params) {}

VstIntPtr AudioEffectX::dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                                   float opt) {
  char* text = static_cast<char*>(ptr);
  switch (opcode) {
    case effProcessEvents:
      return ptr != nullptr ? processEvents(static_cast<VstEvents*>(ptr)) : 0;
    case effCanBeAutomated:
      return canParameterBeAutomated(index) ? 1 : 0;
    case effString2Parameter:
      return string2parameter(index, text) ? 1 : 0;
    case effGetNumProgramCategories:
      return getNumCategories();
    case effGetProgramNameIndexed:
      return text != nullptr && getProgramNameIndexed(static_cast<VstInt32>(value), index, text);
    case effGetInputProperties:
      return ptr != nullptr && getInputProperties(index, static_cast<VstPinProperties*>(ptr));
    case effGetOutputProperties:
      return ptr != nullptr && getOutputProperties(index, static_cast<VstPinProperties*>(ptr));
    case effGetPlugCategory:
      return getPlugCategory();
    case effGetEffectName:
      return text != nullptr && getEffectName(text);
    case effGetVendorString:
      return text != nullptr && getVendorString(text);
    case effGetProductString:
      return text != nullptr && getProductString(text);
    case effGetVendorVersion:
      return getVendorVersion();
    case effCanDo:
      return text != nullptr ? canDo(text) : 0;
    case effGetTailSize:
      return getTailSize();
    case effKeysRequired:
      return 1;  // key events are welcome but not demanded
    case effGetVstVersion:
      return getVstVersion();
    case effEditKeyDown:
    case effEditKeyUp:
      if (editor != nullptr) {
        VstKeyCode key{index, static_cast<unsigned char>(value), static_cast<unsigned char>(opt)};
        return editor->dispatchKey(key, opcode == effEditKeyDown);
      }
      return 0;
    case effSetEditKnobMode:
      return editor != nullptr && editor->setKnobMode(static_cast<VstInt32>(value));
    default:
      return AudioEffect::dispatcher(opcode, index, value, ptr, opt);
  }
}

bool AudioEffectX::wantEvents(VstInt32 filter) {
  return callHost(audioMasterWantMidi, 0, filter) != 0;
}

bool AudioEffectX::needIdle() {
  return callHost(audioMasterNeedIdle) != 0;
}

VstTimeInfo* AudioEffectX::getTimeInfo(VstInt32 filter) {
  return reinterpret_cast<VstTimeInfo*>(callHost(audioMasterGetTime, 0, filter));
}

bool AudioEffectX::canHostDo(const char* text) {
  return callHost(audioMasterCanDo, 0, 0, const_cast<char*>(text)) > 0;
}

bool AudioEffectX::sizeWindow(VstInt32 width, VstInt32 height) {
  return callHost(audioMasterSizeWindow, width, height) != 0;
}

bool AudioEffectX::updateDisplay() {
  return callHost(audioMasterUpdateDisplay) != 0;
}

bool AudioEffectX::ioChanged() {
  return callHost(audioMasterIOChanged) != 0;
}

double AudioEffectX::getTempo() {
  const VstTimeInfo* info = getTimeInfo(kVstPpqPosValid | kVstTempoValid);
  if (info == nullptr) return 120.0;
  const double tempo = info->tempo;
  // Tempo-synced lengths divide by the tempo: a host's non-finite value counts
  // as no tempo, and the rest is held to 1..999 beats a minute.
  if (!std::isfinite(tempo)) return 120.0;
  if (tempo < 1.0) return 1.0;
  return tempo > 999.0 ? 999.0 : tempo;
}

}  // namespace sablevox
