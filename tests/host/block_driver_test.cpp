// The block driver where the regression renders (44100 Hz, blocks of 512 and
// 37) do not reach: the tick grid at other rates and any block sizes, block
// lengths from 0 to beyond the scratch buffers and null buffers, resets and
// the effects' sleep. The accumulating process and suspend/resume are the
// validator's (lifecycle_test), through the plug-in's interface.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string_view>
#include <thread>
#include <vector>

#include "common/test_host.h"
#include "filter/filter_types.h"

namespace sablevox {
namespace {

using testing::IsolatedSettings;

class BlockDriverTest : public ::testing::Test {
 protected:
  void SetUp() override { testing::resetTestHost(); }
  IsolatedSettings settings;
  std::vector<float> left, right;
};

// The tick grid is fixed from the first sample on, whatever the block sizes:
// compare the driver's countdown with a tick every tickLength samples.
TEST_F(BlockDriverTest, TicksFallOnAFixedGridAcrossBlocks) {
  for (float rate : {44100.0f, 48000.0f, 96000.0f}) {
    auto engine = testing::makeEngine(rate);
    const int tick = static_cast<int>(static_cast<double>(rate) * static_cast<double>(0.0025f));
    EXPECT_EQ(tick, rate == 44100.0f ? 110 : rate == 48000.0f ? 119 : 239);
    long long elapsed = 0;
    const int sizes[] = {1, 7, 110, 119, 239, 256, 4096, 3, 1000, 64};
    for (int round = 0; round < 3; ++round) {
      for (int size : sizes) {
        testing::renderBlock(*engine, left, right, size);
        elapsed += size;
        // Ticks happened at 0, tick, 2 tick, ... up to and including elapsed.
        const long long nextTick = (elapsed / tick + 1) * tick;
        EXPECT_EQ(engine->samplesToTick, static_cast<float>(nextTick - elapsed))
            << "rate " << rate << " after " << elapsed;
      }
    }
  }
}

TEST_F(BlockDriverTest, AnyBlockLengthIncludingZeroAndLongerThanTheScratch) {
  auto engine = testing::makeEngine();
  std::vector<float> l(100000, 7.0f), r(100000, 7.0f);
  float* outputs[2] = {l.data(), r.data()};
  engine->processReplacing(nullptr, outputs, 0);
  EXPECT_EQ(l[0], 7.0f);  // a count of 0 writes nothing
  for (int count : {1, 2, 109, 110, 111, 65535, 65536, 100000}) {
    std::fill(l.begin(), l.end(), 7.0f);
    engine->processReplacing(nullptr, outputs, count);
    for (int i = 0; i < count; ++i) ASSERT_TRUE(std::isfinite(l[i]) && l[i] != 7.0f) << i;
    EXPECT_EQ(l[count < 100000 ? count : 99999], count < 100000 ? 7.0f : l[99999]);
  }
  engine->processReplacing(nullptr, outputs, -5);
  engine->processReplacing(nullptr, nullptr, 64);
  float* halfNull[2] = {l.data(), nullptr};
  engine->processReplacing(nullptr, halfNull, 64);
}

TEST_F(BlockDriverTest, ProgramChangeResetsAtTheNextBlock) {
  auto engine = testing::makeEngine();
  testing::renderBlock(*engine, left, right, 64);
  EXPECT_FALSE(engine->resetRequested);
  engine->voices[3].ampState = kEnvSustain;
  engine->setProgram(2);
  EXPECT_TRUE(engine->resetRequested);
  testing::renderBlock(*engine, left, right, 64);
  EXPECT_FALSE(engine->resetRequested);
  EXPECT_EQ(engine->voices[3].ampState, kEnvIdle);
  // The refresh ran in that same block.
  EXPECT_EQ(engine->refreshCountdown, 4410 - 64);
}

// A reset skips the FM filter's lines while they were never written; either
// way every byte of every voice must end up zero.
TEST_F(BlockDriverTest, ResetLeavesEveryVoiceByteZeroWithOrWithoutFmLines) {
  auto engine = testing::makeEngine();
  engine->loadBank(0);
  for (const char* filter : {"LP Moog", "FM Saw"}) {
    const auto type =
        std::find_if(std::begin(kFilterTypes), std::end(kFilterTypes),
                     [&](const FilterType& t) { return std::string_view(t.name) == filter; });
    engine->setParameter(kFiltType, choiceValue(static_cast<int>(type - std::begin(kFilterTypes))));
    for (int i = 0; i < 2000 && !engine->wavesReady(); ++i) {
      testing::renderBlock(*engine, left, right, 64);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    for (int note : {48, 55, 60}) engine->noteOn(note, 100);
    // Past the slow refresh that applies the filter type.
    for (int i = 0; i < 20; ++i) testing::renderBlock(*engine, left, right, 512);
    const bool fm = filter[0] == 'F';
    bool lineWritten = false;
    for (const Voice& voice : engine->voices) {
      const float* line = voice.filterLeft.line;
      lineWritten |=
          std::any_of(line + 4, line + kFilterLineLength, [](float x) { return x != 0.0f; });
    }
    EXPECT_EQ(lineWritten, fm) << filter;
    engine->resetEngine();
    const auto* bytes = reinterpret_cast<const unsigned char*>(engine->voices);
    EXPECT_TRUE(std::all_of(bytes, bytes + sizeof engine->voices, [](unsigned char b) {
      return b == 0;
    })) << filter;
  }
}

TEST_F(BlockDriverTest, EffectsSleepAfterOneSecondOfSilenceOnBothChannels) {
  auto engine = testing::makeEngine();
  // The silence count runs over both channels: 2 * 44100 counts in one second.
  for (int i = 0; i < 9; ++i) testing::renderBlock(*engine, left, right, 4410);
  EXPECT_FALSE(engine->effectsAsleep);
  for (int i = 0; i < 2; ++i) testing::renderBlock(*engine, left, right, 4410);
  EXPECT_TRUE(engine->effectsAsleep);
  engine->resume();
  EXPECT_FALSE(engine->effectsAsleep);
}

}  // namespace
}  // namespace sablevox
