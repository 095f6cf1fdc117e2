// The 1.0 part of the host frame: construction of the AEffect, the static
// trampolines and the dispatcher's 1.0 opcodes.
#include "host/audio_effect.h"

#include "host/parameters.h"
#include "host/text_copy.h"

namespace sablevox {

AudioEffect::AudioEffect(audioMasterCallback master, VstInt32 programs, VstInt32 params)
    : audioMaster(master), numPrograms(programs), numParams(params) {
  cEffect.magic = kEffectMagic;
  cEffect.dispatcher = &dispatchEffect;
  cEffect.process = &processEffect;
  cEffect.setParameter = &setParameterEffect;
  cEffect.getParameter = &getParameterEffect;
  cEffect.numPrograms = programs;
  cEffect.numParams = params;
  cEffect.numInputs = 1;
  cEffect.numOutputs = 2;
  cEffect.ioRatio = 1.0f;
  cEffect.object = this;
  cEffect.version = 1;
  cEffect.processReplacing = &processReplacingEffect;
}

AudioEffect::~AudioEffect() {
  if (editor != nullptr) editor->detach();
  delete editor;
}

AudioEffect* AudioEffect::fromAeffect(AEffect* effect) {
  return effect != nullptr ? static_cast<AudioEffect*>(effect->object) : nullptr;
}

void AudioEffect::setFlag(VstInt32 flag, bool state) {
  if (state) {
    cEffect.flags |= flag;
  } else {
    cEffect.flags &= ~flag;
  }
}

VstIntPtr AudioEffect::callHost(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                                float opt) {
  return audioMaster != nullptr ? audioMaster(&cEffect, opcode, index, value, ptr, opt) : 0;
}

void AudioEffect::copyName(char* destination, const char* source) {
  copyText(destination, source, kVstMaxParamStrLen);
}

VstInt32 AudioEffect::getMasterVersion() {
  const VstIntPtr version = callHost(audioMasterVersion);
  return version == 0 ? 1 : static_cast<VstInt32>(version);
}

void AudioEffect::masterIdle() {
  callHost(audioMasterIdle);
}

void AudioEffect::setParameterAutomated(VstInt32 index, float value) {
  setParameter(index, value);
  callHost(audioMasterAutomate, index, 0, nullptr, value);
}

bool AudioEffect::beginEdit(VstInt32 index) {
  return callHost(audioMasterBeginEdit, index) != 0;
}

bool AudioEffect::endEdit(VstInt32 index) {
  return callHost(audioMasterEndEdit, index) != 0;
}

void AudioEffect::float2string(float value, char* text) {
  sablevox::float2string(value, text);
}

VstIntPtr AudioEffect::dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                                  float opt) {
  char* text = static_cast<char*>(ptr);
  switch (opcode) {
    case effOpen:
      open();
      return 0;
    case effClose:
      close();
      return 0;
    case effSetProgram:
      if (value >= 0 && value < numPrograms) setProgram(static_cast<VstInt32>(value));
      return 0;
    case effGetProgram:
      return getProgram();
    case effSetProgramName:
      if (text != nullptr) setProgramName(text);
      return 0;
    case effGetProgramName:
      if (text != nullptr) getProgramName(text);
      return 0;
    case effGetParamLabel:
      if (text != nullptr) getParameterLabel(index, text);
      return 0;
    case effGetParamDisplay:
      if (text != nullptr) getParameterDisplay(index, text);
      return 0;
    case effGetParamName:
      if (text != nullptr) getParameterName(index, text);
      return 0;
    case effGetVu:
      return static_cast<VstIntPtr>(getVu() * 32767.0f);
    case effSetSampleRate:
      setSampleRate(opt);
      return 0;
    case effSetBlockSize:
      setBlockSize(static_cast<VstInt32>(value));
      return 0;
    case effMainsChanged:
      if (value == 0) {
        suspend();
      } else {
        resume();
      }
      return 0;
    case effEditGetRect:
      return editor != nullptr && ptr != nullptr && editor->getRect(static_cast<ERect**>(ptr));
    case effEditOpen:
      return editor != nullptr && editor->dispatchOpen(ptr);
    case effEditClose:
      if (editor != nullptr) editor->dispatchClose();
      return 0;
    case effEditIdle:
      if (editor != nullptr) editor->dispatchIdle();
      return 0;
    case effIdentify:
      return kVstIdentify;
    case effGetChunk:
      return ptr != nullptr ? getChunk(static_cast<void**>(ptr), index != 0) : 0;
    case effSetChunk:
      return ptr != nullptr ? setChunk(ptr, static_cast<VstInt32>(value), index != 0) : 0;
    default:
      return 0;
  }
}

VstIntPtr AudioEffect::dispatchEffect(AEffect* e, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                                      void* ptr, float opt) {
  AudioEffect* self = fromAeffect(e);
  if (self == nullptr) return 0;
  if (opcode == effClose) {
    self->dispatcher(opcode, index, value, ptr, opt);
    delete self;
    return 1;
  }
  return self->dispatcher(opcode, index, value, ptr, opt);
}

void AudioEffect::processEffect(AEffect* e, float** inputs, float** outputs, VstInt32 frames) {
  if (AudioEffect* self = fromAeffect(e)) self->process(inputs, outputs, frames);
}

void AudioEffect::processReplacingEffect(AEffect* e, float** inputs, float** outputs,
                                         VstInt32 frames) {
  if (AudioEffect* self = fromAeffect(e)) self->processReplacing(inputs, outputs, frames);
}

void AudioEffect::setParameterEffect(AEffect* e, VstInt32 index, float value) {
  if (AudioEffect* self = fromAeffect(e)) self->setParameter(index, value);
}

float AudioEffect::getParameterEffect(AEffect* e, VstInt32 index) {
  AudioEffect* self = fromAeffect(e);
  return self != nullptr ? self->getParameter(index) : 0.0f;
}

}  // namespace sablevox
