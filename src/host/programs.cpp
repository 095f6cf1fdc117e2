// Programs and banks: the 128 records, their names, and bank loading. A
// parameter change writes the current record at once (setParameter), so a
// record is always the program as last heard; there is no edit buffer.
#include <cstdio>
#include <cstring>

#include "data/factory_data.h"
#include "host/adelay.h"
#include "host/text_copy.h"

namespace sablevox {

void ADelay::loadBank(int bank) {
  // User interface thread (editor's bank menu) or construction.
  if (programs == nullptr) return;
  if (bank >= 1 && bank <= kFactoryBanks) {
    for (int i = 0; i < kNumPrograms; ++i) {
      const FactoryRecord record = factoryRecord(bank - 1, i);
      std::memcpy(programs[i].name, record.name, kProgramNameSize);
      for (int p = 0; p < kNumParams; ++p) programs[i].values[p] = record.values[p];
    }
  } else if (bank == 0) {
    // "empty": the default record everywhere, named by number.
    const FactoryRecord record = defaultRecord();
    for (int i = 0; i < kNumPrograms; ++i) {
      for (int p = 0; p < kNumParams; ++p) programs[i].values[p] = record.values[p];
      std::snprintf(programs[i].name, kProgramNameSize, "%03d", i);
    }
  }
  // Any other bank changes no record but still selects program 0.
  setProgram(0);
}

void ADelay::setProgram(VstInt32 program) {
  // The host's opcode and the MIDI pass bound program; this guard only keeps
  // a direct caller's mistake from reading beyond the records.
  if (programs == nullptr || program < 0 || program >= kNumPrograms) return;
  curProgram = program;
  // Through the virtual operation, so that the editor follows; the two
  // unused words are refused there and stay only in the record.
  for (int i = 0; i < kNumParams; ++i) setParameter(i, programs[program].values[i]);
  // The audio thread ends all voices and rebuilds the tables at its next block.
  resetRequested = true;
}

void ADelay::setProgramName(char* name) {
  if (name == nullptr) return;
  copyText(programs[curProgram].name, name, kProgramNameSize - 1);
}

void ADelay::getProgramName(char* name) {
  if (name == nullptr) return;
  const ProgramRecord& record = programs[curProgram];
  // Programs never named count themselves from 1: "Init 5" is the fifth.
  if (std::strcmp(record.name, "Init") == 0) {
    std::snprintf(name, kVstMaxProgNameLen, "Init %d", curProgram + 1);
  } else {
    copyText(name, record.name, kProgramNameSize - 1);
  }
}

bool ADelay::getProgramNameIndexed(VstInt32 /*category*/, VstInt32 index, char* text) {
  if (index < 0 || index >= kNumPrograms) return false;
  copyText(text, programs[index].name, kProgramNameSize - 1);
  return true;
}

}  // namespace sablevox
