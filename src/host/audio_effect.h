// The VST 2 host frame: holds the AEffect the host sees, turns dispatcher
// opcodes into virtual operations and wraps the host callback. Operations a
// plug-in leaves alone keep the empty answers defined here.
#pragma once

#include "host/aeff_editor.h"
#include "host/shared_word.h"
#include "host/vst2.h"

namespace sablevox {

class AudioEffect {
 public:
  AudioEffect(audioMasterCallback audioMaster, VstInt32 numPrograms, VstInt32 numParams);
  virtual ~AudioEffect();
  AudioEffect(const AudioEffect&) = delete;
  AudioEffect& operator=(const AudioEffect&) = delete;

  AEffect* getAeffect() { return &cEffect; }
  static AudioEffect* fromAeffect(AEffect* effect);

  virtual VstIntPtr dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                               float opt);

  virtual void setParameter(VstInt32 /*index*/, float /*value*/) {}
  virtual float getParameter(VstInt32 /*index*/) { return 0.0f; }
  virtual void setParameterAutomated(VstInt32 index, float value);
  virtual void process(float** /*inputs*/, float** /*outputs*/, VstInt32 /*sampleFrames*/) {}
  virtual void processReplacing(float** /*inputs*/, float** /*outputs*/,
                                VstInt32 /*sampleFrames*/) {}

  virtual VstInt32 getProgram() { return curProgram; }
  virtual void setProgram(VstInt32 program) { curProgram = program; }
  virtual void setProgramName(char* /*name*/) {}
  virtual void getProgramName(char* name) { copyName(name, ""); }
  virtual void getParameterLabel(VstInt32 /*index*/, char* /*label*/) {}
  virtual void getParameterDisplay(VstInt32 /*index*/, char* /*text*/) {}
  virtual void getParameterName(VstInt32 /*index*/, char* /*text*/) {}
  virtual float getVu() { return 0.0f; }
  virtual VstInt32 getChunk(void** /*data*/, bool /*isPreset*/) { return 0; }
  virtual VstInt32 setChunk(void* /*data*/, VstInt32 /*byteSize*/, bool /*isPreset*/) { return 0; }
  virtual void setSampleRate(float rate) { sampleRate = rate; }
  virtual void setBlockSize(VstInt32 size) { blockSize = size; }
  virtual void suspend() {}
  virtual void resume() {}

  virtual void open() {}
  virtual void close() {}

  float getSampleRate() const { return sampleRate; }
  VstInt32 getBlockSize() const { return blockSize; }
  AEffEditor* getEditor() const { return editor; }
  void setEditor(AEffEditor* newEditor) { editor = newEditor; }

  // Frame set-up.
  void setUniqueID(VstInt32 id) { cEffect.uniqueID = id; }
  void setNumInputs(VstInt32 n) { cEffect.numInputs = n; }
  void setNumOutputs(VstInt32 n) { cEffect.numOutputs = n; }
  void canProcessReplacing(bool state = true) { setFlag(effFlagsCanReplacing, state); }
  void hasVu(bool state = true) { setFlag(effFlagsHasVu, state); }
  void hasClip(bool state = true) { setFlag(effFlagsHasClip, state); }
  void programsAreChunks(bool state = true) { setFlag(effFlagsProgramChunks, state); }

  // Host services.
  VstInt32 getMasterVersion();
  void masterIdle();
  bool beginEdit(VstInt32 index);
  bool endEdit(VstInt32 index);

  // Writes 8 characters of value, truncated not rounded: 0.5 -> "0.500000".
  static void float2string(float value, char* text);

 protected:
  void setFlag(VstInt32 flag, bool state);
  VstIntPtr callHost(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, void* ptr = nullptr,
                     float opt = 0.0f);
  static void copyName(char* destination, const char* source);

  // Order as the frame has always held them.
  Shared<float> sampleRate{44100.0f};
  AEffEditor* editor = nullptr;
  audioMasterCallback audioMaster = nullptr;
  VstInt32 numPrograms = 0;
  VstInt32 numParams = 0;
  Shared<VstInt32> curProgram{0};
  Shared<VstInt32> blockSize{1024};
  AEffect cEffect{};

 private:
  static VstIntPtr dispatchEffect(AEffect* e, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                                  void* ptr, float opt);
  static void processEffect(AEffect* e, float** inputs, float** outputs, VstInt32 frames);
  static void processReplacingEffect(AEffect* e, float** inputs, float** outputs, VstInt32 frames);
  static void setParameterEffect(AEffect* e, VstInt32 index, float value);
  static float getParameterEffect(AEffect* e, VstInt32 index);
};

}  // namespace sablevox
