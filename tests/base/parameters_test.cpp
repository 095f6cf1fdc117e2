// Tests of the parameter model: the stepped and tune decodes, the display
// texts hosts show, the value-name lists and the default program.
#include "host/parameters.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <set>
#include <string>

namespace sablevox {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

std::string display(int index, float value) {
  char text[32] = "untouched";
  parameterDisplay(index, value, text);
  return text;
}

std::string asText(float value) {
  char text[32] = "untouched";
  float2string(value, text);
  return text;
}

TEST(SteppedIndex, DecodesTheEditorsValuesAndClampsEverythingElse) {
  EXPECT_EQ(steppedIndex(0.0f, 20), 0);
  EXPECT_EQ(steppedIndex(0.005f, 20), 0);
  EXPECT_EQ(steppedIndex(1.0f, 85), 84);
  EXPECT_EQ(steppedIndex(0.9999f, 20), 19);
  EXPECT_EQ(steppedIndex(0.1f, 20), 19);  // EffType's last step, which has no name
  for (float hostile : {kNaN, -kInf, -1e30f, -0.3f}) EXPECT_EQ(steppedIndex(hostile, 85), 0);
  for (float hostile : {kInf, 1e30f, 7.0f}) EXPECT_EQ(steppedIndex(hostile, 85), 84);
  EXPECT_EQ(steppedIndex(0.5f, 0), 0);
  EXPECT_EQ(steppedIndex(0.5f, -3), 0);

  for (int p = 0; p < kNumParams; ++p) {
    const ParameterInfo& info = parameterInfo(p);
    for (int i = 0; i < info.steps && info.kind == ParamKind::stepped; ++i) {
      ASSERT_EQ(steppedIndex(choiceValue(i), info.steps), i) << info.name << " " << i;
    }
  }
}

TEST(Float2String, TruncatesToEightCharacters) {
  EXPECT_EQ(asText(0.5f), "0.500000");
  EXPECT_EQ(asText(-0.5f), "-0.50000");
  EXPECT_EQ(asText(123.4f), "123.4000");
  EXPECT_EQ(asText(0.7f), "0.699999");  // 0.69999998..., truncated not rounded
  EXPECT_EQ(asText(0.0f), "0.000000");
  EXPECT_EQ(asText(-0.0f), "0.000000");
  EXPECT_EQ(asText(1e-30f), "0.000000");
  EXPECT_EQ(asText(1234567.0f), "1234567.");
  EXPECT_EQ(asText(12345678.0f), "12345678");
  EXPECT_EQ(asText(-9999999.0f), "-9999999");
  EXPECT_EQ(asText(99999992.0f), "99999992");  // the largest float not above 99999999
  for (float left : {1e8f, -10000000.0f, 1e30f, -1e30f, kInf, -kInf, kNaN}) {
    EXPECT_EQ(asText(left), "untouched") << left;
  }
}

TEST(ParameterDisplay, FollowsEachParametersDisplayForm) {
  EXPECT_EQ(display(kCutoff, 0.5f), "0.500000");
  EXPECT_EQ(display(kOsc1Fine, 0.5f), "0.000000");
  EXPECT_EQ(display(kOsc1Fine, 1.0f), "100.0000");
  EXPECT_EQ(display(kOsc2Fine, 0.0f), "-100.000");
  EXPECT_EQ(display(kFiltKey, 0.0f), "-1.00000");
  EXPECT_EQ(display(kArpType, 0.0f), "0");
  EXPECT_EQ(display(kArpType, 0.005f), "1");
  EXPECT_EQ(display(kOsc1Wave, -0.005f), "-1");
  EXPECT_EQ(display(kOsc1Wave, 1.0f), "201");
  EXPECT_EQ(display(kVoices, 0.03f), "0.029999");  // raw though stepped; 0.0299999993
  for (int i = 0; i < 20; ++i) EXPECT_EQ(display(kEffType, choiceValue(i)), std::to_string(i + 1));
  for (float left : {kNaN, kInf, -kInf, 1e30f}) EXPECT_EQ(display(kArpType, left), "untouched");
  EXPECT_EQ(display(kNumParams, 0.5f), "untouched");
  EXPECT_EQ(display(-1, 0.5f), "untouched");
}

TEST(ParameterDisplay, NeverWritesMoreThanEightCharacters) {
  std::mt19937 random(7);
  std::uniform_int_distribution<uint32_t> bits;
  for (int round = 0; round < 20000; ++round) {
    const float value = round % 2 ? std::bit_cast<float>(bits(random))
                                  : std::uniform_real_distribution<float>(-2e7f, 2e8f)(random);
    char text[16];
    std::memset(text, '#', sizeof text);
    text[0] = '\0';
    parameterDisplay(round % kNumParams, value, text);
    ASSERT_LE(std::strlen(text), 8u) << value;
    ASSERT_EQ(text[9], '#') << value;
  }
}

TEST(TuneAndFine, DecodeToFrequencyRatios) {
  EXPECT_EQ(tuneRatio(0.0f), 0.25f);
  EXPECT_EQ(tuneRatio(0.1f), 0.25f);  // 0.1 * 9.99 stays under 1
  EXPECT_EQ(tuneRatio(0.101f), 0.5f);
  EXPECT_EQ(tuneRatio(0.5f), 2.0f);
  EXPECT_EQ(tuneRatio(1.0f), 8.0f);
  EXPECT_EQ(tuneRatio(kNaN), 0.25f);
  EXPECT_EQ(tuneRatio(1e30f), 8.0f);
  EXPECT_STREQ(tuneHint(0.0f), "tune octave -2  ");
  EXPECT_STREQ(tuneHint(0.75f), "tune octave +2.3");
  EXPECT_STREQ(tuneHint(1.0f), "tune octave +3  ");
  float previous = 0.0f;
  for (int k = 0; k < 10; ++k) {
    const float value = (k + 0.5f) / 9.99f;
    EXPECT_GT(tuneRatio(value), previous) << k;
    EXPECT_EQ(std::strlen(tuneHint(value)), 16u) << k;
    previous = tuneRatio(value);
  }

  EXPECT_EQ(fineRatio(0.5f), 1.0f);
  EXPECT_NEAR(fineRatio(1.0f), 1.02973f, 1e-6f);
  EXPECT_NEAR(fineRatio(0.0f), 0.9719f, 1e-6f);
  EXPECT_NEAR(fineRatio(0.25f), 0.98595f, 1e-6f);
  EXPECT_EQ(fineRatio(kNaN), 1.0f);
  EXPECT_EQ(fineRatio(7.0f), fineRatio(1.0f));
  EXPECT_EQ(fineRatio(-kInf), fineRatio(0.0f));
}

TEST(ParameterTable, NamesLabelsAndLookups) {
  std::set<std::string> names;
  for (int i = 0; i < kNumParams; ++i) {
    const ParameterInfo& info = parameterInfo(i);
    EXPECT_LE(std::strlen(info.name), 8u) << i;
    if (i == kParam43 || i == kParam49) {
      EXPECT_STREQ(info.name, "-");
      EXPECT_EQ(info.kind, ParamKind::none);
      continue;
    }
    EXPECT_TRUE(names.insert(info.name).second) << info.name;
    EXPECT_EQ(findParameter(info.name), i);
    const bool hasLabel = i == kOsc1Fine || i == kOsc2Fine || i == kReso;
    EXPECT_EQ(std::strlen(info.label) > 0, hasLabel) << info.name;
  }
  EXPECT_STREQ(parameterInfo(kOsc2Fine).label, "cent");
  EXPECT_STREQ(parameterInfo(kReso).label, "Q");
  EXPECT_EQ(findParameter("-"), -1);
  EXPECT_EQ(findParameter("cutoff"), -1);
  EXPECT_EQ(findParameter(""), -1);
  EXPECT_EQ(parameterInfo(kNumParams).kind, ParamKind::none);
  EXPECT_EQ(parameterInfo(-5).kind, ParamKind::none);
}

TEST(ParameterTable, ValueListsFitTheirSteps) {
  struct Expected {
    int index, steps, names;
  };
  for (Expected e : {Expected{kOsc1Mod, 25, 25},
                     {kOsc2Loop, 18, 18},
                     {kOsc1LSp, 34, 34},
                     {kLFOType, 20, 20},
                     {kLFOSpeed, 30, 30},
                     {kLFODest, 9, 9},
                     {kArpType, 23, 23},
                     {kArpRhyt, 17, 17},
                     {kEffType, 20, 19},
                     {kVoices, 8, 8},
                     {kPWDepth, 5, 5},
                     {kMWDest, 7, 7},
                     {kGlMode, 3, 3},
                     {kGlTime, 9, 9},
                     {kOsc1Wave, 85, 0},
                     {kFiltType, 39, 0}}) {
    const ParameterInfo& info = parameterInfo(e.index);
    EXPECT_EQ(info.kind, ParamKind::stepped) << info.name;
    EXPECT_EQ(info.steps, e.steps) << info.name;
    EXPECT_EQ(info.choiceCount, e.names) << info.name;
    EXPECT_EQ(info.choices == nullptr, e.names == 0) << info.name;
    for (int i = 0; i < info.choiceCount; ++i) EXPECT_EQ(findChoice(e.index, info.choices[i]), i);
  }
  EXPECT_EQ(findChoice(kLFOType, "Tri 90\xC2\xB0"), 2);
  EXPECT_EQ(findChoice(kLFOType, "\\___stop"), 17);
  EXPECT_EQ(findChoice(kLFOType, "/\\___stop"), 18);
  EXPECT_EQ(findChoice(kEffType, "RevHiEndC"), 18);
  EXPECT_EQ(findChoice(kOsc1Wave, "off"), -1);
  EXPECT_EQ(findChoice(kCutoff, "off"), -1);
  EXPECT_EQ(findChoice(kLFOType, "tri"), -1);
  EXPECT_EQ(findChoice(99, "off"), -1);
}

// The empty bank's program: a plain patch with effects, LFO and arpeggiator
// settings that the decodes turn into these choices.
TEST(ParameterTable, DefaultsDecodeToTheEmptyProgram) {
  auto choice = [](int index) {
    const ParameterInfo& info = parameterInfo(index);
    return steppedIndex(info.defaultValue, info.steps);
  };
  auto name = [&](int index) { return std::string(parameterInfo(index).choices[choice(index)]); };
  EXPECT_EQ(choice(kOsc1Wave), 2);
  EXPECT_EQ(choice(kOsc2Wave), 0);  // oscillator 2 off
  EXPECT_EQ(name(kOsc1Mod), "off");
  EXPECT_EQ(name(kOsc1Loop), "auto");
  EXPECT_EQ(name(kLFOType), "Tri");
  EXPECT_EQ(name(kLFOSpeed), "BPM * 3/4");
  EXPECT_EQ(name(kLFODest), "off");
  EXPECT_EQ(name(kArpType), "off");
  EXPECT_EQ(name(kEffType), "off");
  EXPECT_EQ(name(kVoices), "12");
  EXPECT_EQ(name(kPWDepth), "+-2");
  EXPECT_EQ(name(kGlMode), "off");
  EXPECT_EQ(choice(kFiltType), 0);
  EXPECT_EQ(tuneRatio(parameterInfo(kOsc1Tune).defaultValue), 1.0f);
  EXPECT_EQ(tuneRatio(parameterInfo(kOsc2Tune).defaultValue), 1.0f);
  EXPECT_EQ(fineRatio(parameterInfo(kOsc1Fine).defaultValue), 1.0f);
  for (int i = 0; i < kNumParams; ++i) {
    const float v = parameterInfo(i).defaultValue;
    EXPECT_TRUE(v >= 0.0f && v <= 1.0f) << i;
  }
}

}  // namespace
}  // namespace sablevox
