// Reading records out of the generated factory bytes.
#include "data/factory_data.h"

#include <bit>
#include <cstring>

namespace sablevox {
namespace {

static_assert(std::endian::native == std::endian::little,
              "the stored records hold little-endian floats");
static_assert(sizeof(FactoryRecord) == kFactoryRecordBytes);

FactoryRecord recordAt(int offset) {
  FactoryRecord record;
  std::memcpy(&record, kFactoryData + offset, sizeof record);
  record.name[kProgramNameSize - 1] = '\0';
  return record;
}

}  // namespace

FactoryRecord factoryRecord(int storedBank, int index) {
  if (storedBank < 0 || storedBank >= kFactoryBanks || index < 0 || index >= kNumPrograms) {
    return defaultRecord();
  }
  return recordAt(storedBank * kFactoryBankBytes + index * kFactoryRecordBytes);
}

FactoryRecord defaultRecord() {
  return recordAt(kFactoryBanks * kFactoryBankBytes);
}

}  // namespace sablevox
