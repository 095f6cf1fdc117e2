// The four factory bank files as one set: where they are, what each must
// hold, and the stored records they compile into.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "bank_source.h"
#include "host/program_record.h"

namespace sablevox::bankgen {

struct BankFile {
  const char* fileName;  // in the banks folder
  const char* bankName;  // the header line of the file must name it
  int named;             // programs it must hold; the rest of its 128 places stay empty
};

inline constexpr BankFile kBankFiles[kFactoryBanks] = {
    {"factory-a.txt", "factory A", 128},
    {"factory-b.txt", "factory B", 128},
    {"factory-c.txt", "factory C", 50},
    {"abstracts.txt", "Abstracts", 128},
};

// Reads and checks all four files of `folder`; faults go to `errors` as
// "file:line: message" (or "file: message" for a whole-file fault).
std::vector<BankSource> loadBanks(const std::filesystem::path& folder,
                                  std::vector<std::string>& errors);

// Checks one parsed bank against its place in the set.
void checkBank(const BankSource& bank, const BankFile& file, const std::string& path,
               std::vector<std::string>& errors);

// The stored data: 4 x 128 records, empty places holding the defaults with
// an empty name, then the default record "Default    ".
std::vector<FactoryRecord> buildRecords(const std::vector<BankSource>& banks);

}  // namespace sablevox::bankgen
