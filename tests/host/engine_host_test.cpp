// What the engine object keeps for and takes from its host: raw parameter
// values, the settings file, the tempo (or 120 without one, held in range)
// and the sample rate its pitch table follows. The AEffect and the
// dispatcher's answers are the validator's (validator/interface_test.cpp).
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>

#include "common/test_host.h"
#include "host/numeric.h"
#include "host/vendor_opcodes.h"
#include "voice/lfo.h"

namespace sablevox {
namespace {

using testing::IsolatedSettings;

class EngineHostTest : public ::testing::Test {
 protected:
  void SetUp() override { testing::resetTestHost(); }
  IsolatedSettings settings;
};

TEST_F(EngineHostTest, StoredRawWithoutClampAndTheDashesRefused) {
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

TEST_F(EngineHostTest, SettingsStartAtDefaultsAndAreSavedAtClose) {
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

TEST_F(EngineHostTest, TempoFromTheHostOr120) {
  auto engine = testing::makeEngine();
  host::Host& host = testing::testHost();
  EXPECT_EQ(engine->getTempo(), 120.0);
  host.setTimeAvailable(true);
  host.setTempo(97.5);
  EXPECT_EQ(engine->getTempo(), 97.5);
  host.clearCalls();
  engine->getTempo();
  ASSERT_EQ(host.count(audioMasterGetTime), 1);
  EXPECT_EQ(host.calls()[0].value, 0x600);
  // A host's unusable tempo is no tempo, and an extreme one is held in range.
  host.setTempo(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(engine->getTempo(), 120.0);
  host.setTempo(0.0);
  EXPECT_EQ(engine->getTempo(), 1.0);
  host.setTempo(1e9);
  EXPECT_EQ(engine->getTempo(), 999.0);
}

// Our seed call sets both process-wide random generators, and needs its seed.
TEST_F(EngineHostTest, SeedCallSetsTheRandomGenerators) {
  auto engine = testing::makeEngine();
  AEffect* e = engine->getAeffect();
  const uint32_t before[2] = {randomState, lfoRandomState};
  uint32_t seed = 1234u;
  EXPECT_EQ(e->dispatcher(e, effVendorSpecific, kSablevoxVendorIndex, kVendorSeedRandom, &seed, 0),
            1);
  EXPECT_EQ(randomState.load() + lfoRandomState.load(), 2468u);
  EXPECT_EQ(
      e->dispatcher(e, effVendorSpecific, kSablevoxVendorIndex, kVendorSeedRandom, nullptr, 0), 0);
  randomState = before[0];
  lfoRandomState = before[1];
}

TEST_F(EngineHostTest, PitchTableFollowsTheSampleRate) {
  auto engine = testing::makeEngine(44100.0f);
  // Entry 69 is 220 Hz, entry 0 about 4.088 Hz, each over the sample rate.
  EXPECT_NEAR(engine->pitchTable[69] * 44100.0f, 220.0f, 220.0f * 1e-5f);
  EXPECT_NEAR(engine->pitchTable[0] * 44100.0f, 4.0879f, 1e-3f);
  EXPECT_NEAR(engine->pitchTable[81] / engine->pitchTable[69], 2.0f, 1e-5f);
  const float r = static_cast<float>(1.0 / 44100.0);
  EXPECT_EQ(engine->pitchTable[0], 523.2511306007598f * 0.0078125f * r);
  engine->setSampleRate(96000.0f);
  EXPECT_NEAR(engine->pitchTable[69] * 96000.0f, 220.0f, 220.0f * 1e-5f);
}

}  // namespace
}  // namespace sablevox
