// The host's operations on the 50 parameters: store, read, name, label and
// display text. Values are stored raw and decoded where they are used.
#include "host/adelay.h"
#include "host/text_copy.h"

namespace sablevox {

void ADelay::setParameter(VstInt32 index, float value) {
  if (index < 0 || index >= kNumParams) return;
  // No clamp: a host's value is stored as it comes, and every reader decodes
  // it defensively.
  programs[curProgram].values[index] = value;
  params[index] = value;
}

float ADelay::getParameter(VstInt32 index) {
  return index >= 0 && index < kNumParams ? params[index].load() : 0.0f;
}

void ADelay::getParameterName(VstInt32 index, char* text) {
  if (index >= 0 && index < kNumParams)
    copyText(text, parameterInfo(index).name, kVstMaxParamStrLen);
}

void ADelay::getParameterLabel(VstInt32 index, char* label) {
  if (index >= 0 && index < kNumParams) {
    copyText(label, parameterInfo(index).label, kVstMaxParamStrLen);
  }
}

void ADelay::getParameterDisplay(VstInt32 index, char* text) {
  if (index >= 0 && index < kNumParams) parameterDisplay(index, params[index], text);
}

}  // namespace sablevox
