// Loading the four bank files and laying them out as stored records.
#include "bank_set.h"

#include <cstring>
#include <fstream>
#include <sstream>

namespace sablevox::bankgen {
namespace {

FactoryRecord makeRecord(const std::string& name, const std::array<float, kNumParams>& values) {
  FactoryRecord record;
  std::memset(&record, 0, sizeof record);
  std::memcpy(record.name, name.data(), std::min<size_t>(name.size(), kProgramNameSize - 1));
  for (int p = 0; p < kNumParams; ++p) record.values[p] = values[p];
  return record;
}

std::array<float, kNumParams> defaults() {
  std::array<float, kNumParams> values{};
  for (int p = 0; p < kNumParams; ++p) values[p] = parameterInfo(p).defaultValue;
  return values;
}

}  // namespace

void checkBank(const BankSource& bank, const BankFile& file, const std::string& path,
               std::vector<std::string>& errors) {
  if (bank.bankName != file.bankName) {
    errors.push_back(path + ":1: this file holds bank \"" + file.bankName + "\", not \"" +
                     bank.bankName + "\"");
  }
  const int count = static_cast<int>(bank.programs.size());
  if (count != file.named) {
    errors.push_back(path + ": bank \"" + file.bankName + "\" must hold exactly " +
                     std::to_string(file.named) + " programs, this file has " +
                     std::to_string(count));
  }
}

std::vector<BankSource> loadBanks(const std::filesystem::path& folder,
                                  std::vector<std::string>& errors) {
  std::vector<BankSource> banks;
  for (const BankFile& file : kBankFiles) {
    const std::filesystem::path path = folder / file.fileName;
    std::ifstream in(path, std::ios::binary);
    if (!in) {
      errors.push_back(path.string() + ": cannot read the file");
      banks.emplace_back();
      continue;
    }
    std::stringstream text;
    text << in.rdbuf();
    banks.push_back(parseBank(text.str(), path.string(), errors));
    checkBank(banks.back(), file, path.string(), errors);
  }
  return banks;
}

std::vector<FactoryRecord> buildRecords(const std::vector<BankSource>& banks) {
  std::vector<FactoryRecord> records;
  for (int b = 0; b < kFactoryBanks; ++b) {
    for (int i = 0; i < kNumPrograms; ++i) {
      const bool named =
          b < static_cast<int>(banks.size()) && i < static_cast<int>(banks[b].programs.size());
      records.push_back(named ? makeRecord(banks[b].programs[i].name, banks[b].programs[i].values)
                              : makeRecord("", defaults()));
    }
  }
  records.push_back(makeRecord("Default    ", defaults()));
  return records;
}

}  // namespace sablevox::bankgen
