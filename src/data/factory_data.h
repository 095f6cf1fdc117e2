// The built-in program data: four stored banks of 128 FactoryRecord, 28672
// bytes each, back to back, then the default record "Default    ", whose
// values the "empty" bank copies. The bytes are generated at build time by
// tools/bankgen in exactly the stored record layout (little-endian floats).
#pragma once

#include <cstddef>

#include "host/program_record.h"

namespace sablevox {

constexpr int kFactoryRecordBytes = 224;
constexpr int kFactoryBankBytes = kNumPrograms * kFactoryRecordBytes;
constexpr int kFactoryDataBytes = kFactoryBanks * kFactoryBankBytes + kFactoryRecordBytes;

extern const unsigned char kFactoryData[kFactoryDataBytes];

// Record index (0..127) of stored bank (0..3: "factory A", "factory B",
// "factory C", "Abstracts"); the name is zero-terminated within its 24 bytes.
// Indices out of range give the default record.
FactoryRecord factoryRecord(int storedBank, int index);
FactoryRecord defaultRecord();

}  // namespace sablevox
