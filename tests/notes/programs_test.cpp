// Programs and banks: the built-in data, bank loading and names. A host's
// writes and total recall of programs are the validator's (hostile_host_test).
#include <cstdint>
#include <cstring>
#include <string>

#include "data/factory_data.h"
#include "notes_support.h"

namespace sablevox {
namespace {

using testing::NotesTest;

class ProgramsTest : public NotesTest {
 protected:
  std::string indexedName(int index) {
    char text[64] = "untouched";
    EXPECT_TRUE(engine->getProgramNameIndexed(0, index, text));
    return text;
  }
  std::string currentName() {
    char text[64];
    std::memset(text, 'x', sizeof text);
    engine->getProgramName(text);
    return text;
  }
};

TEST(FactoryDataTest, StoredLayoutAndDefaultRecord) {
  // The default record follows the four banks: name first, then the floats.
  const unsigned char* last = kFactoryData + kFactoryBanks * kFactoryBankBytes;
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(last)), "Default    ");
  for (int i = 11; i < kProgramNameSize; ++i) EXPECT_EQ(last[i], 0);
  for (int p = 0; p < kNumParams; ++p) {
    float value;
    std::memcpy(&value, last + kProgramNameSize + 4 * p, 4);
    EXPECT_EQ(value, parameterInfo(p).defaultValue) << p;
  }
  EXPECT_EQ(std::string(defaultRecord().name), "Default    ");

  // Every stored value lies in 0..1, every name is terminated.
  for (int bank = 0; bank < kFactoryBanks; ++bank) {
    for (int i = 0; i < kNumPrograms; ++i) {
      const unsigned char* record = kFactoryData + bank * kFactoryBankBytes + i * 224;
      ASSERT_NE(std::memchr(record, 0, kProgramNameSize), nullptr);
      const FactoryRecord decoded = factoryRecord(bank, i);
      for (float value : decoded.values) ASSERT_TRUE(value >= 0.0f && value <= 1.0f);
    }
  }

  // The bytes as generated: a change to the banks must change this on purpose.
  uint64_t hash = 1469598103934665603ull;  // FNV-1a
  for (unsigned char byte : kFactoryData) hash = (hash ^ byte) * 1099511628211ull;
  EXPECT_EQ(hash, 15034782682017728489ull);
}

TEST_F(ProgramsTest, EmptyBankNumbersItsProgramsAndHoldsTheDefaults) {
  engine->setProgram(9);
  engine->loadBank(0);
  EXPECT_EQ(engine->getProgram(), 0);
  EXPECT_TRUE(engine->resetRequested);
  char expected[16];
  for (int i = 0; i < kNumPrograms; ++i) {
    std::snprintf(expected, sizeof expected, "%03d", i);
    ASSERT_EQ(indexedName(i), expected);
    for (int p = 0; p < kNumParams; ++p) {
      ASSERT_EQ(engine->programs[i].values[p].load(), parameterInfo(p).defaultValue);
    }
  }
  for (int p = 0; p < kNumParams; ++p) {
    if (p == kParam43 || p == kParam49) continue;  // refused, they stay in the records
    EXPECT_EQ(engine->params[p].load(), parameterInfo(p).defaultValue) << p;
  }
  engine->setProgram(7);
  EXPECT_EQ(currentName(), "007");
}

TEST_F(ProgramsTest, EveryStoredBankLoadsAndFactoryCHasFiftyNames) {
  for (int bank = 1; bank <= 4; ++bank) {
    engine->loadBank(bank);
    int named = 0;
    for (int i = 0; i < kNumPrograms; ++i) named += indexedName(i).empty() ? 0 : 1;
    EXPECT_EQ(named, bank == 3 ? 50 : 128) << bank;
    EXPECT_EQ(indexedName(5), factoryRecord(bank - 1, 5).name);
    EXPECT_EQ(engine->programs[100].values[kCutoff].load(),
              factoryRecord(bank - 1, 100).values[kCutoff]);
  }
  // An empty place passes its empty name on, without numbering.
  engine->loadBank(3);
  engine->setProgram(60);
  EXPECT_EQ(currentName(), "");

  // An unknown bank changes no record but selects program 0.
  engine->setProgramName(const_cast<char*>("kept"));
  engine->loadBank(5);
  engine->loadBank(-1);
  EXPECT_EQ(engine->getProgram(), 0);
  EXPECT_EQ(indexedName(60), "kept");
}

TEST_F(ProgramsTest, NamesInitNumberingAndLength) {
  engine->setProgram(0);
  engine->setProgramName(const_cast<char*>("Init"));
  EXPECT_EQ(currentName(), "Init 1");
  EXPECT_EQ(indexedName(0), "Init");
  engine->setProgram(127);
  engine->setProgramName(const_cast<char*>("Init"));
  EXPECT_EQ(currentName(), "Init 128");
  engine->setProgramName(const_cast<char*>("Init "));  // not exactly "Init"
  EXPECT_EQ(currentName(), "Init ");

  engine->setProgram(4);
  engine->setProgramName(const_cast<char*>("abcdefghijklmnopqrstuvwxyz0123"));  // 30
  EXPECT_EQ(currentName(), "abcdefghijklmnopqrstuvw");                          // 23
  EXPECT_EQ(indexedName(4), "abcdefghijklmnopqrstuvw");

  char text[64] = "untouched";
  EXPECT_FALSE(engine->getProgramNameIndexed(0, 128, text));
  EXPECT_FALSE(engine->getProgramNameIndexed(0, -1, text));
  EXPECT_STREQ(text, "untouched");
  EXPECT_TRUE(engine->getProgramNameIndexed(7, 4, text));  // the category is ignored
}

}  // namespace
}  // namespace sablevox
