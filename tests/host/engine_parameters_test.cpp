// Parameters and settings as the engine object serves them to a host.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>
#include <sstream>

#include "common/test_host.h"

namespace sablevox {
namespace {

using testing::IsolatedSettings;
using testing::TestHost;

class EngineParametersTest : public ::testing::Test {
 protected:
  void SetUp() override { TestHost::instance().reset(); }
  IsolatedSettings settings;
};

std::string dispatchText(AEffect* e, VstInt32 opcode, VstInt32 index) {
  char text[64];
  std::memset(text, 0, sizeof text);
  e->dispatcher(e, opcode, index, 0, text, 0.0f);
  return text;
}

TEST_F(EngineParametersTest, StoredRawWithoutClampAndTheDashesRefused) {
  auto engine = testing::makeEngine();
  const int program = engine->getProgram();
  for (float value : {-3.0f, 0.25f, 7.5f, std::numeric_limits<float>::infinity()}) {
    engine->setParameter(kCutoff, value);
    EXPECT_EQ(engine->getParameter(kCutoff), value);
    EXPECT_EQ(engine->programs[program].values[kCutoff].load(), value);
  }
  engine->setParameter(kCutoff, std::numeric_limits<float>::quiet_NaN());
  EXPECT_TRUE(std::isnan(engine->getParameter(kCutoff)));

  const float before43 = engine->params[kParam43];
  const float before49 = engine->params[kParam49];
  engine->setParameter(kParam43, 0.77f);
  engine->setParameter(kParam49, 0.77f);
  EXPECT_EQ(engine->params[kParam43].load(), before43);
  EXPECT_EQ(engine->params[kParam49].load(), before49);
  EXPECT_NE(engine->programs[program].values[kParam43].load(), 0.77f);
  EXPECT_EQ(engine->getParameter(50), 0.0f);
  EXPECT_EQ(engine->getParameter(-1), 0.0f);
  engine->setParameter(50, 1.0f);
  engine->setParameter(-7, 1.0f);
}

TEST_F(EngineParametersTest, NamesLabelsAndDisplayThroughTheDispatcher) {
  auto engine = testing::makeEngine();
  AEffect* e = engine->getAeffect();
  EXPECT_EQ(dispatchText(e, effGetParamName, kOsc1Wave), "Osc1Wave");
  EXPECT_EQ(dispatchText(e, effGetParamName, kEnvFiltA), "EnvFiltA");
  EXPECT_EQ(dispatchText(e, effGetParamName, kParam43), "-");
  EXPECT_EQ(dispatchText(e, effGetParamLabel, kOsc1Fine), "cent");
  EXPECT_EQ(dispatchText(e, effGetParamLabel, kReso), "Q");
  EXPECT_EQ(dispatchText(e, effGetParamLabel, kCutoff), "");
  for (int i = 0; i < kNumParams; ++i) {
    EXPECT_LE(dispatchText(e, effGetParamName, i).size(), 8u);
  }
  EXPECT_EQ(dispatchText(e, effGetParamName, 50), "");  // left alone

  engine->setParameter(kCutoff, 0.5f);
  EXPECT_EQ(dispatchText(e, effGetParamDisplay, kCutoff), "0.500000");
  engine->setParameter(kCutoff, -0.5f);
  EXPECT_EQ(dispatchText(e, effGetParamDisplay, kCutoff), "-0.50000");
  engine->setParameter(kArpType, 0.0f);
  EXPECT_EQ(dispatchText(e, effGetParamDisplay, kArpType), "0");
  engine->setParameter(kArpType, 0.005f);
  EXPECT_EQ(dispatchText(e, effGetParamDisplay, kArpType), "1");
  engine->setParameter(kOsc1Fine, 0.5f);
  EXPECT_EQ(dispatchText(e, effGetParamDisplay, kOsc1Fine), "0.000000");
  engine->setParameter(kOsc1Fine, 1.0f);
  EXPECT_EQ(dispatchText(e, effGetParamDisplay, kOsc1Fine), "100.0000");
  engine->setParameter(kFiltKey, 0.0f);
  EXPECT_EQ(dispatchText(e, effGetParamDisplay, kFiltKey), "-1.00000");
}

TEST_F(EngineParametersTest, SettingsStartAtDefaultsAndAreSavedAtClose) {
  {
    auto engine = testing::makeEngine();
    EXPECT_EQ(engine->config->get(kQuality), 0);
    EXPECT_EQ(engine->config->get(kBank), 1);
    engine->config->set(kIQM, 3);
  }
  std::ifstream file(settings.settingsFile());
  ASSERT_TRUE(file.good());
  std::stringstream content;
  content << file.rdbuf();
  for (const char* name : {"Hide Keys=", "Quality=", "Bank=1", "Skin=", "IQM=3"}) {
    EXPECT_NE(content.str().find(name), std::string::npos) << name;
  }
  auto next = testing::makeEngine();
  EXPECT_EQ(next->config->get(kIQM), 3);
}

}  // namespace
}  // namespace sablevox
