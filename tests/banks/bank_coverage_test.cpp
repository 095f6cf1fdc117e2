// The built factory banks as a whole: they are the compiled sources, their
// names follow the house rules, and together they use every wave, modifier,
// filter type, effect, arpeggiator mode and rhythm, LFO shape and
// destination, unison mode, glide mode and glide time, and voice count.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "bank_listing.h"
#include "bank_set.h"
#include "data/factory_data.h"

namespace sablevox {
namespace {

constexpr int kBanks = kFactoryBanks;

std::vector<FactoryRecord> namedRecords() {
  std::vector<FactoryRecord> records;
  for (int b = 0; b < kBanks; ++b) {
    for (int i = 0; i < kNumPrograms; ++i) {
      const FactoryRecord record = factoryRecord(b, i);
      if (record.name[0] != '\0') records.push_back(record);
    }
  }
  return records;
}

int choiceOf(const FactoryRecord& r, int index) {
  return steppedIndex(r.values[index], parameterInfo(index).steps);
}

// Which of `count` choices no program uses, as "name, name".
template <typename Used>
std::string missing(int index, int count, const std::vector<FactoryRecord>& records, Used used) {
  std::set<int> seen;
  for (const FactoryRecord& r : records) {
    if (used(r)) seen.insert(choiceOf(r, index));
  }
  std::string out;
  for (int i = 0; i < count; ++i) {
    if (seen.count(i) == 0)
      out += (out.empty() ? "\"" : ", \"") + bankgen::choiceName(index, i) + "\"";
  }
  return out;
}

TEST(FactoryBanksTest, DataIsTheCompiledSources) {
  const std::filesystem::path folder =
      std::filesystem::path(__FILE__).parent_path() / "../../data/banks";
  std::vector<std::string> errors;
  const auto banks = bankgen::loadBanks(folder, errors);
  ASSERT_TRUE(errors.empty()) << errors.front();
  const std::vector<FactoryRecord> records = bankgen::buildRecords(banks);
  ASSERT_EQ(records.size() * sizeof(FactoryRecord), static_cast<size_t>(kFactoryDataBytes));
  EXPECT_EQ(std::memcmp(records.data(), kFactoryData, kFactoryDataBytes), 0)
      << "the built data is older than data/banks: rebuild";
}

TEST(FactoryBanksTest, ListingInTheDocsIsCurrent) {
  const std::filesystem::path root = std::filesystem::path(__FILE__).parent_path() / "../..";
  std::vector<std::string> errors;
  const auto banks = bankgen::loadBanks(root / "data/banks", errors);
  ASSERT_TRUE(errors.empty()) << errors.front();
  std::ifstream in(root / "docs/programs.md", std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  EXPECT_EQ(text.str(), bankgen::programListing(banks))
      << "docs/programs.md is out of date: sablevox_bankgen --listing docs/programs.md";
}

TEST(FactoryBanksTest, NamesAndPlaces) {
  std::set<std::string> categories;
  for (int b = 0; b < kBanks; ++b) {
    int named = 0;
    for (int i = 0; i < kNumPrograms; ++i) {
      const FactoryRecord r = factoryRecord(b, i);
      const std::string name = r.name;
      if (name.empty()) {
        EXPECT_EQ(b, 2) << "only factory C has empty places; program " << i;
        continue;
      }
      ++named;
      EXPECT_LE(name.size(), 23u);
      EXPECT_NE(name.back(), ' ') << name;
      const std::string category = bankgen::categoryOf(name);
      if (b < 3) {
        EXPECT_FALSE(category.empty()) << "no category: " << name;
      }
      categories.insert(category);
    }
    EXPECT_EQ(named, b == 2 ? 50 : kNumPrograms) << "bank " << b;
  }
  for (const char* category : {"ARP", "SYN", "ATM", "VOC", "BAS", "LEA", "PAD", "KEY", "ORG", "PLK",
                               "BRS", "SEQ", "FX", "DRM"}) {
    EXPECT_EQ(categories.count(category), 1u) << category;
  }
}

TEST(FactoryBanksTest, NoTwoProgramsAreTheSameSound) {
  const auto records = namedRecords();
  for (size_t i = 0; i < records.size(); ++i) {
    for (size_t j = i + 1; j < records.size(); ++j) {
      EXPECT_NE(std::memcmp(records[i].values, records[j].values, sizeof records[i].values), 0)
          << records[i].name << " = " << records[j].name;
    }
  }
}

TEST(FactoryBanksTest, EveryChoiceIsUsedSomewhere) {
  const auto records = namedRecords();
  const auto always = [](const FactoryRecord&) { return true; };
  const auto osc1 = [](const FactoryRecord& r) { return r.values[kOsc1Vol] > 0.0f; };
  const auto osc2 = [](const FactoryRecord& r) { return r.values[kOsc2Vol] > 0.0f; };
  const auto arpOn = [](const FactoryRecord& r) { return choiceOf(r, kArpType) != 0; };
  const auto lfoOn = [](const FactoryRecord& r) { return choiceOf(r, kLFODest) != 0; };
  const auto glideOn = [](const FactoryRecord& r) { return choiceOf(r, kGlMode) != 0; };

  // A wave or modifier counts where its oscillator is heard.
  std::set<int> waves;
  std::set<int> mods;
  for (const FactoryRecord& r : records) {
    for (int o = 0; o < 2; ++o) {
      if ((o == 0 ? osc1 : osc2)(r)) {
        waves.insert(choiceOf(r, kOsc1Wave + o));
        if (choiceOf(r, kOsc1Wave + o) != 0) mods.insert(choiceOf(r, kOsc1Mod + o));
      }
    }
  }
  for (int w = 1; w < 85; ++w) EXPECT_EQ(waves.count(w), 1u) << bankgen::choiceName(kOsc1Wave, w);
  for (int m = 0; m < 25; ++m) EXPECT_EQ(mods.count(m), 1u) << bankgen::choiceName(kOsc1Mod, m);

  EXPECT_EQ(missing(kFiltType, 39, records, always), "");
  EXPECT_EQ(missing(kEffType, 19, records, always), "");  // the 20th step has no effect
  EXPECT_EQ(missing(kArpType, 23, records, always), "");
  EXPECT_EQ(missing(kArpRhyt, 17, records, arpOn), "");
  EXPECT_EQ(missing(kLFOType, 20, records, lfoOn), "");
  EXPECT_EQ(missing(kLFODest, 9, records, always), "");
  EXPECT_EQ(missing(kVoices, 8, records, always), "");
  EXPECT_EQ(missing(kGlMode, 3, records, always), "");
  EXPECT_EQ(missing(kGlTime, 9, records, glideOn), "");
  // Scan modes and speeds, in either oscillator.
  for (int p : {kOsc1Loop, kOsc1LSp}) {
    std::set<int> seen;
    for (const FactoryRecord& r : records) {
      if (osc1(r)) seen.insert(choiceOf(r, p));
      if (osc2(r)) seen.insert(choiceOf(r, p + 1));
    }
    for (int i = 0; i < parameterInfo(p).steps; ++i) {
      EXPECT_EQ(seen.count(i), 1u) << parameterInfo(p).name << " " << bankgen::choiceName(p, i);
    }
  }

  // Unison: the two-copy and the four-copy stack.
  int twoCopies = 0, fourCopies = 0;
  for (const FactoryRecord& r : records) {
    twoCopies += r.values[kFat] >= 0.01f && r.values[kFat] < 0.5f;
    fourCopies += r.values[kFat] >= 0.5f;
  }
  EXPECT_GT(twoCopies, 0);
  EXPECT_GT(fourCopies, 0);
}

}  // namespace
}  // namespace sablevox
