// The bank compiler: what a source line means, and that every kind of fault
// in a bank file is reported with its file and line.
#include "bank_source.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bank_set.h"

namespace sablevox::bankgen {
namespace {

BankSource parse(const std::string& text, std::vector<std::string>& errors) {
  return parseBank(text, "test.txt", errors);
}

TEST(BankSourceTest, ProgramsStartFromTheDefaultsAndTakeNamedValues) {
  std::vector<std::string> errors;
  const BankSource bank = parse(R"(bank "factory A"
# a comment line
template warm
  Osc1Wave = "PD Saw"     # a trailing comment
  Cutoff = 0.25
program "BAS One" like warm
  FiltType = "LP Moog"
  Cutoff = 0.5
  Osc2Wave = "WV Pulse 25%"
  ArpRhyt = "|.|.|.|.|.|.|.|."
  LFOType = "\___stop"
  Osc1Tune = "-1"
  Osc2Tune = "+3"
program "BAS Two" like "BAS One"
  Reso = 1; Drive = 0.25;  EffType = "Del+Rev A"
program "PAD Plain"
)",
                                errors);
  ASSERT_TRUE(errors.empty()) << errors.front();
  EXPECT_EQ(bank.bankName, "factory A");
  ASSERT_EQ(bank.programs.size(), 3u);
  const SourceProgram& one = bank.programs[0];
  EXPECT_EQ(one.name, "BAS One");
  EXPECT_EQ(one.line, 6);
  // Stepped values are written exactly as the editor writes choice i.
  EXPECT_EQ(one.values[kOsc1Wave], choiceValue(18));
  EXPECT_EQ(one.values[kFiltType], choiceValue(23));
  EXPECT_EQ(one.values[kOsc2Wave], choiceValue(59));
  EXPECT_EQ(one.values[kArpRhyt], choiceValue(2));
  EXPECT_EQ(one.values[kLFOType], choiceValue(17));
  EXPECT_EQ(one.values[kCutoff], 0.5f);  // the program's own value wins over the template's
  EXPECT_EQ(tuneRatio(one.values[kOsc1Tune]), 0.5f);
  EXPECT_EQ(tuneRatio(one.values[kOsc2Tune]), 8.0f);
  EXPECT_EQ(one.values[kVolume], parameterInfo(kVolume).defaultValue);

  const SourceProgram& two = bank.programs[1];
  EXPECT_EQ(two.values[kFiltType], choiceValue(23));
  EXPECT_EQ(two.values[kReso], 1.0f);
  EXPECT_EQ(two.values[kDrive], 0.25f);
  EXPECT_EQ(two.values[kEffType], choiceValue(11));
  for (int p = 0; p < kNumParams; ++p) {
    EXPECT_EQ(bank.programs[2].values[p], parameterInfo(p).defaultValue) << p;
  }
}

TEST(BankSourceTest, EveryChoiceNameOfEverySteppedParameterRoundTrips) {
  for (int p = 0; p < kNumParams; ++p) {
    const ParameterInfo& info = parameterInfo(p);
    if (info.kind == ParamKind::continuous || info.kind == ParamKind::none) continue;
    const int named = p == kOsc1Wave || p == kOsc2Wave    ? 85
                      : p == kFiltType                    ? 39
                      : info.kind == ParamKind::ratioStep ? 10
                                                          : info.choiceCount;
    for (int i = 0; i < named; ++i) {
      const float value = choiceByName(p, choiceName(p, i));
      ASSERT_GE(value, 0.0f) << info.name << " " << i;
      const int decoded = info.kind == ParamKind::ratioStep ? static_cast<int>(value * 9.99f)
                                                            : steppedIndex(value, info.steps);
      EXPECT_EQ(decoded, i) << info.name << " \"" << choiceName(p, i) << "\"";
    }
  }
}

struct Fault {
  const char* text;     // the file after its bank line
  int line;             // where the fault must be reported
  const char* message;  // a part of the message
};

TEST(BankSourceTest, FaultsNameFileLineAndCause) {
  const Fault faults[] = {
      {"program \"A\"\n  Cutof = 0.5\n", 3, "unknown parameter 'Cutof'"},
      {"program \"A\"\n  cutoff = 0.5\n", 3, "did you mean 'Cutoff'"},
      {"program \"A\"\n  FiltType = \"LP Mog\"\n", 3, "'LP Mog' is not a choice of FiltType"},
      {"program \"A\"\n  Osc1Wave = \"STA Sawtooth\"\n", 3, "not a choice of Osc1Wave"},
      {"program \"A\"\n  Osc1Tune = \"+4\"\n", 3, "not a choice of Osc1Tune"},
      {"program \"A\"\n  Cutoff = 1.5\n", 3, "outside 0..1"},
      {"program \"A\"\n  Reso = -0.1\n", 3, "outside 0..1"},
      {"program \"A\"\n  Reso = 0.5x\n", 3, "not a number"},
      {"program \"A\"\n  Reso = nan\n", 3, "outside 0..1"},
      {"program \"A\"\n  FiltType = 0.005\n", 3, "takes the quoted name of a choice"},
      {"program \"A\"\n  Cutoff = \"LP Moog\"\n", 3, "takes a number"},
      {"program \"A\"\n  Cutoff = 0.5\n  Cutoff = 0.6\n", 4, "'Cutoff' is set twice"},
      {"program \"A\"\n  Reso = 0.5; Cutoff = 2\n", 3, "Cutoff = '2' lies outside 0..1"},
      {"program \"SYN This name is far too long\"\n", 2, "at most 23 fit"},
      {"program \"A\"\nprogram \"A\"\n", 3, "appears twice"},
      {"program \"A\" like nothing\n", 2, "no template 'nothing'"},
      {"program \"A\" like \"B\"\n", 2, "no earlier program \"B\""},
      {"Cutoff = 0.5\n", 2, "stands outside a program"},
      {"template t\ntemplate t\n", 3, "defined twice"},
      {"programme \"A\"\n", 2, "unknown keyword 'programme'"},
      {"program A\n", 2, "quoted program name"},
      {"program \"\"\n", 2, "needs a name"},
  };
  for (const Fault& fault : faults) {
    std::vector<std::string> errors;
    parse(std::string("bank \"factory A\"\n") + fault.text, errors);
    ASSERT_EQ(errors.size(), 1u) << fault.text;
    const std::string expected = "test.txt:" + std::to_string(fault.line) + ": ";
    EXPECT_EQ(errors[0].rfind(expected, 0), 0u) << errors[0];
    EXPECT_NE(errors[0].find(fault.message), std::string::npos) << errors[0];
  }
}

TEST(BankSourceTest, AFileMustNameItsBankAndHoldItsCount) {
  std::vector<std::string> errors;
  parse("program \"A\"\n", errors);
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_NE(errors[0].find("test.txt:1: the file must begin with"), std::string::npos);

  errors.clear();
  const BankSource bank = parse("bank \"factory B\"\nprogram \"A\"\n", errors);
  EXPECT_TRUE(errors.empty());
  checkBank(bank, kBankFiles[2], "c.txt", errors);
  ASSERT_EQ(errors.size(), 2u);
  EXPECT_NE(errors[0].find("c.txt:1: this file holds bank \"factory C\", not \"factory B\""),
            std::string::npos);
  EXPECT_NE(errors[1].find("must hold exactly 50 programs, this file has 1"), std::string::npos);
}

TEST(BankSourceTest, CategoryIsTheLeadingCapitalsBeforeABlank) {
  EXPECT_EQ(categoryOf("PAD Glass"), "PAD");
  EXPECT_EQ(categoryOf("FX Rise"), "FX");
  EXPECT_EQ(categoryOf("Pad Glass"), "");
  EXPECT_EQ(categoryOf("PADS"), "");
  EXPECT_EQ(categoryOf("ABCDE x"), "");
}

}  // namespace
}  // namespace sablevox::bankgen
