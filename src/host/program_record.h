// Programs: the run-time record (values, then name) and the stored factory
// record (name, then values), 224 bytes each.
#pragma once

#include <cstdint>

#include "host/parameters.h"
#include "host/shared_word.h"

namespace sablevox {

constexpr int kNumPrograms = 128;
constexpr int kProgramNameSize = 24;
constexpr int kFactoryBanks = 4;

struct ProgramRecord {
  // Written by setParameter from any thread, read by a program change that
  // may run on the audio thread: shared words.
  Shared<float> values[kNumParams];
  char name[kProgramNameSize] = {'I', 'n', 'i', 't', '\0'};
};

struct FactoryRecord {
  char name[kProgramNameSize];
  float values[kNumParams];
};

static_assert(sizeof(ProgramRecord) == 224);
static_assert(sizeof(FactoryRecord) == 224);

}  // namespace sablevox
