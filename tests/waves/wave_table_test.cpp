// Band-limited tables: what each level holds, the scale, clip and truncation,
// and the choice of level by speed.
#include "waves/wave_table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "waves/level_table.h"

namespace sablevox {
namespace {

class WaveTableTest : public ::testing::Test {
 protected:
  // Builds frame 0 from the given amplitudes (index = harmonic number - 1).
  void buildFrame(std::initializer_list<std::pair<int, float>> harmonics) {
    std::vector<float> spectrum(kWaveHarmonics, 0.0f);
    for (auto [index, amplitude] : harmonics) spectrum[index] = amplitude;
    buildWaveTable(table.data(), spectrum.data(), 1, 0.01f, scratch.data());
  }
  const int16_t* level(int l) const { return table.data() + levelOffset(l); }
  bool alternates(int l, int value) const {
    for (int j = 0; j < levelLength(l); ++j) {
      if (level(l)[j] != ((j & 1) ? -value : value)) return false;
    }
    return true;
  }

  std::vector<int16_t> table = std::vector<int16_t>(kTableValues, 1234);
  std::vector<float> scratch = std::vector<float>(buildScratchFloats(kWaveFrames));
};

TEST_F(WaveTableTest, ZerosGiveZerosAndASineTheSameSineAtEveryLevel) {
  buildFrame({});
  for (int j = 0; j < kFrameBlock; ++j) ASSERT_EQ(table[j], 0) << j;
  EXPECT_EQ(table[kFrameBlock], 1234);  // one frame asked for, one written

  buildFrame({{0, 65535.0f}});
  for (int l = 2; l <= kTableLevels; ++l) {
    const int n = levelLength(l);
    for (int j = 0; j < n; ++j) {
      // Amplitude 2 * 65535 * 0.01, starting at zero and going negative.
      ASSERT_NEAR(level(l)[j], -1310.7 * std::sin(2.0 * std::numbers::pi * j / n), 1.01) << l;
    }
  }
  EXPECT_TRUE(alternates(1, 655));  // A(1), -A(1), truncated towards zero
}

TEST_F(WaveTableTest, HarmonicsAboveALevelStayOutAndItsNyquistTermAlternates) {
  buildFrame({{255, 10000.0f}});  // harmonic 256: level 9's Nyquist term only
  for (int l = 1; l <= kTableLevels; ++l) {
    EXPECT_EQ(alternates(l, l == 9 ? 100 : 0), true) << l;
  }
  buildFrame({{31, 10000.0f}});  // harmonic 32: Nyquist of level 6, a sine above
  for (int l = 1; l <= 6; ++l) EXPECT_EQ(alternates(l, l == 6 ? 100 : 0), true) << l;
  for (int l = 7; l <= kTableLevels; ++l) EXPECT_NEAR(level(l)[levelLength(l) / 128], -200.0, 1.0);
  buildFrame({{0, 30000.0f}, {1, 20000.0f}, {2, 10000.0f}});
  EXPECT_TRUE(alternates(1, 300));  // the fundamental alone
}

TEST_F(WaveTableTest, SignsFlipAndLoudOrBadValuesClipSilently) {
  buildFrame({{0, -65535.0f}});
  EXPECT_EQ(level(2)[1], 1310);
  buildFrame({{0, 1.0e7f}});
  EXPECT_EQ(level(2)[1], -32768);
  EXPECT_EQ(level(2)[3], 32767);
  EXPECT_EQ(level(2)[0], 0);
  buildFrame({{0, std::numeric_limits<float>::quiet_NaN()}});
  EXPECT_EQ(level(1)[0], 0);
}

TEST_F(WaveTableTest, FramesGoToTheirOwnBlocks) {
  std::vector<float> spectrum(kWaveValues, 0.0f);
  for (int f = 0; f < kWaveFrames; ++f) spectrum[f * kWaveHarmonics] = 100.0f * f;
  buildWaveTable(table.data(), spectrum.data(), kWaveFrames, 1.0f, scratch.data());
  for (int f = 0; f < kWaveFrames; ++f) ASSERT_EQ(table[f * kFrameBlock + 2], 100 * f) << f;
  buildWaveTable(table.data(), spectrum.data(), 0, 1.0f, scratch.data());  // no frames, no change
  EXPECT_EQ(table[kFrameBlock + 2], 100);
}

TEST(LevelForSpeed, ChoosesLevelsByPitchIndex) {
  // Index 2 is level 9 alone; then each level's range doubles.
  const std::pair<int, int> bounds[] = {{0, 10},  {1, 10},  {2, 9},   {3, 8},   {4, 8},   {5, 7},
                                        {128, 3}, {129, 2}, {256, 2}, {257, 1}, {2047, 1}};
  for (auto [i, level] : bounds) EXPECT_EQ(levelTable[i], level) << i;
  const float speed = 440.0f / 44100.0f;
  EXPECT_EQ(levelForSpeed(speed, false), 6);
  EXPECT_EQ(levelForSpeed(speed, true), 7);
  EXPECT_EQ(levelForSpeed(-speed, false), 6);
  EXPECT_EQ(levelForSpeed(0.0f, false), 10);
  for (float bad : {2.0f, -1.0e30f, std::numeric_limits<float>::quiet_NaN(),
                    std::numeric_limits<float>::infinity()}) {
    EXPECT_EQ(levelForSpeed(bad, true), 1) << bad;
  }
}

}  // namespace
}  // namespace sablevox
