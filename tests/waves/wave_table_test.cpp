// Band-limited tables: what each level holds, the scale, clip and truncation,
// and the choice of level by speed.
#include "waves/wave_table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "waves/level_table.h"
#include "waves/wave_format.h"

namespace sablevox {
namespace {

class WaveTableTest : public ::testing::Test {
 protected:
  // Builds one frame from the given harmonic amplitudes (index = number - 1).
  void buildFrame(const std::vector<std::pair<int, float>>& harmonics, float scale = 0.01f) {
    std::vector<float> spectrum(kWaveHarmonics, 0.0f);
    for (auto [index, amplitude] : harmonics) spectrum[index] = amplitude;
    buildWaveTable(table.data(), spectrum.data(), 1, scale, scratch.data());
  }
  const int16_t* level(int l) const { return table.data() + levelOffset(l); }
  bool levelIsZero(int l) const {
    for (int j = 0; j < levelLength(l); ++j) {
      if (level(l)[j] != 0) return false;
    }
    return true;
  }

  std::vector<int16_t> table = std::vector<int16_t>(kTableValues, 1234);
  std::vector<float> scratch = std::vector<float>(buildScratchFloats(kWaveFrames));
};

TEST_F(WaveTableTest, ZerosGiveZerosEverywhere) {
  buildFrame({});
  for (int j = 0; j < kFrameBlock; ++j) ASSERT_EQ(table[j], 0) << j;
  EXPECT_EQ(table[kFrameBlock], 1234);  // one frame asked for, one frame written
}

TEST_F(WaveTableTest, ASineIsTheSameSineAtEveryLevelAboveTheFirst) {
  buildFrame({{0, 65535.0f}});
  for (int l = 2; l <= kTableLevels; ++l) {
    const int n = levelLength(l);
    for (int j = 0; j < n; ++j) {
      // Amplitude 2 * 65535 * 0.01, starting at zero and going negative.
      const double expected = -1310.7 * std::sin(2.0 * std::numbers::pi * j / n);
      ASSERT_NEAR(level(l)[j], expected, 1.01) << "level " << l << " j " << j;
    }
  }
  // Level 1 is the pair A(1), -A(1), truncated towards zero.
  EXPECT_EQ(level(1)[0], 655);
  EXPECT_EQ(level(1)[1], -655);
}

TEST_F(WaveTableTest, EachLevelCarriesItsHarmonicsAndNyquistTerm) {
  // Harmonic 32 is the Nyquist term of level 6 (64 samples), a sine above,
  // and absent below.
  buildFrame({{31, 10000.0f}});
  for (int l = 1; l <= 5; ++l) EXPECT_TRUE(levelIsZero(l)) << l;
  for (int j = 0; j < 64; ++j) ASSERT_EQ(level(6)[j], (j & 1) ? -100 : 100) << j;
  for (int l = 7; l <= kTableLevels; ++l) {
    const int n = levelLength(l);
    EXPECT_NEAR(level(l)[n / 128], -200.0, 1.0) << l;  // a quarter of the harmonic's cycle
  }
  // Harmonic 256 stands only in level 9, as its Nyquist term.
  buildFrame({{255, 10000.0f}});
  for (int l = 1; l <= kTableLevels; ++l) {
    if (l == 9) continue;
    EXPECT_TRUE(levelIsZero(l)) << l;
  }
  for (int j = 0; j < 512; ++j) ASSERT_EQ(level(9)[j], (j & 1) ? -100 : 100) << j;
  // Level 1 pairs the fundamental with nothing else.
  buildFrame({{0, 30000.0f}, {1, 20000.0f}, {2, 10000.0f}});
  EXPECT_EQ(level(1)[0], 300);
  EXPECT_EQ(level(1)[1], -300);
}

TEST_F(WaveTableTest, NegativeAmplitudesFlipTheHarmonic) {
  buildFrame({{0, -65535.0f}});
  EXPECT_EQ(level(2)[1], 1310);
  EXPECT_EQ(level(2)[3], -1310);
}

TEST_F(WaveTableTest, LoudSpectraClipSilentlyAndOnlyThere) {
  buildFrame({{0, 1.0e7f}}, 0.01f);
  EXPECT_EQ(level(2)[1], -32768);
  EXPECT_EQ(level(2)[3], 32767);
  EXPECT_EQ(level(2)[0], 0);
  // A NaN amplitude plays as silence, not as undefined behaviour.
  buildFrame({{0, std::numeric_limits<float>::quiet_NaN()}});
  EXPECT_EQ(level(1)[0], 0);
}

TEST_F(WaveTableTest, FramesGoToTheirOwnBlocks) {
  std::vector<float> spectrum(kWaveValues, 0.0f);
  for (int f = 0; f < kWaveFrames; ++f) spectrum[f * kWaveHarmonics] = 100.0f * f;
  buildWaveTable(table.data(), spectrum.data(), kWaveFrames, 1.0f, scratch.data());
  for (int f = 0; f < kWaveFrames; ++f) ASSERT_EQ(table[f * kFrameBlock + 2], 100 * f) << f;
  // No frames, no change.
  buildWaveTable(table.data(), spectrum.data(), 0, 1.0f, scratch.data());
  EXPECT_EQ(table[kFrameBlock + 2], 100);
}

TEST(LevelForSpeed, ChoosesLevelsByPitchIndex) {
  // Index 2 is level 9 alone; then the ranges double.
  EXPECT_EQ(levelTable[0], 10);
  EXPECT_EQ(levelTable[1], 10);
  EXPECT_EQ(levelTable[2], 9);
  EXPECT_EQ(levelTable[3], 8);
  EXPECT_EQ(levelTable[4], 8);
  EXPECT_EQ(levelTable[5], 7);
  EXPECT_EQ(levelTable[128], 3);
  EXPECT_EQ(levelTable[129], 2);
  EXPECT_EQ(levelTable[256], 2);
  EXPECT_EQ(levelTable[257], 1);
  EXPECT_EQ(levelTable[2047], 1);

  const float speed = 440.0f / 44100.0f;
  EXPECT_EQ(levelForSpeed(speed, false), 6);
  EXPECT_EQ(levelForSpeed(speed, true), 7);
  EXPECT_EQ(levelForSpeed(-speed, false), 6);
  EXPECT_EQ(levelForSpeed(0.0f, false), 10);
  EXPECT_EQ(levelForSpeed(2.0f, false), 1);  // beyond the table
  EXPECT_EQ(levelForSpeed(std::numeric_limits<float>::quiet_NaN(), false), 1);
  EXPECT_EQ(levelForSpeed(std::numeric_limits<float>::infinity(), true), 1);
  EXPECT_EQ(levelForSpeed(-1.0e30f, false), 1);
}

}  // namespace
}  // namespace sablevox
