// Programs and banks: the 128 records, their names, and bank loading.
#include <cstdio>
#include <cstring>

#include "host/adelay.h"
#include "host/text_copy.h"

namespace sablevox {

void ADelay::loadBank(int bank) {
  if (programs == nullptr) return;
  if (bank == 0) {
    for (int i = 0; i < kNumPrograms; ++i) {
      for (int p = 0; p < kNumParams; ++p) programs[i].values[p] = parameterInfo(p).defaultValue;
      std::snprintf(programs[i].name, kProgramNameSize, "%03d", i);
    }
  }
  setProgram(0);
}

void ADelay::setProgram(VstInt32 program) {
  if (program < 0 || program >= kNumPrograms) return;
  curProgram = program;
  for (int i = 0; i < kNumParams; ++i) setParameter(i, programs[program].values[i]);
  resetRequested = true;
}

void ADelay::setProgramName(char* name) {
  copyText(programs[curProgram].name, name, kProgramNameSize - 1);
}

void ADelay::getProgramName(char* name) {
  const ProgramRecord& record = programs[curProgram];
  if (std::strcmp(record.name, "Init") == 0) {
    std::snprintf(name, kVstMaxProgNameLen + 1, "%s %d", record.name, curProgram + 1);
  } else {
    copyText(name, record.name, kVstMaxProgNameLen);
  }
}

bool ADelay::getProgramNameIndexed(VstInt32 /*category*/, VstInt32 index, char* text) {
  if (index < 0 || index >= kNumPrograms) return false;
  copyText(text, programs[index].name, kVstMaxProgNameLen);
  return true;
}

}  // namespace sablevox
