// The 2.x extension of the host frame: events, pin properties, names, canDo,
// and the host services of the 2.x interface (time info, idle, window size).
#pragma once

#include "host/audio_effect.h"
#include "host/tempo_source.h"

namespace sablevox {

class AudioEffectX : public AudioEffect, public TempoSource {
 public:
  AudioEffectX(audioMasterCallback audioMaster, VstInt32 numPrograms, VstInt32 numParams);

  VstIntPtr dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                       float opt) override;

  virtual VstInt32 processEvents(VstEvents* /*events*/) { return 0; }
  virtual bool canParameterBeAutomated(VstInt32 /*index*/) { return true; }
  virtual bool string2parameter(VstInt32 /*index*/, char* /*text*/) { return false; }
  virtual VstInt32 getNumCategories() { return 1; }
  virtual bool getProgramNameIndexed(VstInt32 /*category*/, VstInt32 /*index*/, char* /*text*/) {
    return false;
  }
  virtual bool getInputProperties(VstInt32 /*index*/, VstPinProperties* /*properties*/) {
    return false;
  }
  virtual bool getOutputProperties(VstInt32 /*index*/, VstPinProperties* /*properties*/) {
    return false;
  }
  virtual VstPlugCategory getPlugCategory() { return kPlugCategUnknown; }
  virtual bool getEffectName(char* /*name*/) { return false; }
  virtual bool getVendorString(char* /*text*/) { return false; }
  virtual bool getProductString(char* /*text*/) { return false; }
  virtual VstInt32 getVendorVersion() { return 0; }
  virtual VstInt32 canDo(char* /*text*/) { return 0; }
  virtual VstInt32 getVstVersion() { return 2300; }
  virtual VstInt32 getTailSize() { return 0; }

  // Host services.
  bool wantEvents(VstInt32 filter = 1);
  bool needIdle();
  VstTimeInfo* getTimeInfo(VstInt32 filter);
  bool canHostDo(const char* text);
  bool sizeWindow(VstInt32 width, VstInt32 height);
  bool updateDisplay();
  bool ioChanged();
  void isSynth(bool state = true) { setFlag(effFlagsIsSynth, state); }
  void noTail(bool state = true) { setFlag(effFlagsNoSoundInStop, state); }

  // The host's tempo in beats per minute, 120.0 when it gives none.
  double getTempo() override;
};

}  // namespace sablevox
