// Band-limited tables at their edges: clip and truncation, frames in their
// blocks, and the choice of level by speed, also for hostile speeds. What
// each level holds (and the inverse transform behind it) is pinned by the
// regression renders, which play the fixed waves at every level.
#include "waves/wave_table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
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

  std::vector<int16_t> table = std::vector<int16_t>(kTableValues, 1234);
  std::vector<float> scratch = std::vector<float>(buildScratchFloats(kWaveFrames));
};

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
