// Each wave modifier against its defining rule on small hand-made spectra.
#include "waves/wave_modifiers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "waves/wave_format.h"

namespace sablevox {
namespace {

using Buffer = std::vector<float>;

template <typename F>
Buffer spectrumOf(F function) {  // A[f][i] = function(f, i)
  Buffer buffer(kWaveValues);
  for (int f = 0; f < kWaveFrames; ++f) {
    for (int i = 0; i < kWaveHarmonics; ++i) buffer[f * kWaveHarmonics + i] = function(f, i);
  }
  return buffer;
}
Buffer flat(float value) {
  return Buffer(kWaveValues, value);
}
// One frame holding only the given harmonics, repeated over all frames.
Buffer harmonics(std::initializer_list<std::pair<int, float>> list) {
  return spectrumOf([&](int, int i) {
    for (auto [index, value] : list) {
      if (index == i) return value;
    }
    return 0.0f;
  });
}
Buffer modified(Buffer buffer, int step) {
  applyWaveModifier(buffer.data(), step, kWaveFrames);
  return buffer;
}
float at(const Buffer& buffer, int frame, int index) {
  return buffer[frame * kWaveHarmonics + index];
}
int kept(const Buffer& buffer, int frame) {
  int count = 0;
  for (int i = 0; i < kWaveHarmonics; ++i) count += at(buffer, frame, i) != 0.0f;
  return count;
}
// A[f][i] = f + 1000 i: each value tells where it came from.
const Buffer kFramesMarked =
    spectrumOf([](int f, int i) { return static_cast<float>(f + 1000 * i); });

TEST(WaveModifiers, OffAndUnknownStepsChangeNothing) {
  for (int step : {int{kModOff}, -1, kModifierSteps})
    EXPECT_EQ(modified(kFramesMarked, step), kFramesMarked);
  Buffer buffer = kFramesMarked;
  applyWaveModifier(buffer.data(), kModMixX2, 0);
  EXPECT_EQ(buffer, kFramesMarked);
}

TEST(WaveModifiers, MixAddsMultiplesFromTheUnmodifiedFrame) {
  const Buffer x2 = modified(harmonics({{0, 100.0f}, {1, 10.0f}, {127, 60.0f}}), kModMixX2);
  EXPECT_FLOAT_EQ(at(x2, 7, 1), 55.0f);   // its own 10 plus harmonic 1's 100, halved
  EXPECT_FLOAT_EQ(at(x2, 7, 3), 5.0f);    // harmonic 2 doubled, harmonic 1 not twice
  EXPECT_FLOAT_EQ(at(x2, 7, 255), 0.0f);  // harmonic 128 has no place at 256
  EXPECT_FLOAT_EQ(at(modified(harmonics({{0, 100.0f}}), kModMixX4), 0, 3), 50.0f);
  const Buffer layer = modified(harmonics({{0, 100.0f}}), kModMixLayer);
  const std::pair<int, float> expected[] = {{0, 40.0f}, {1, 32.0f}, {2, 0.0f},
                                            {3, 24.0f}, {7, 16.0f}, {15, 8.0f}};
  for (auto [i, v] : expected) EXPECT_NEAR(at(layer, 0, i), v, 1e-4f) << i;
}

TEST(WaveModifiers, ThinKeepsOddOrPrimeHarmonicsOrSquares) {
  const Buffer square = modified(flat(10.0f), kModThinSquare);
  EXPECT_FLOAT_EQ(at(square, 3, 254), 12.0f);
  EXPECT_FLOAT_EQ(at(square, 3, 255), 0.0f);
  const Buffer bell = modified(flat(1.0f), kModThinBell);
  EXPECT_EQ(kept(bell, 9), 56);
  for (int k : {1, 2, 3, 251, 255}) EXPECT_EQ(at(bell, 9, k - 1), 1.0f) << k;
  for (int k : {4, 9, 253, 256}) EXPECT_EQ(at(bell, 9, k - 1), 0.0f) << k;
  const Buffer warm = modified(harmonics({{0, 65535.0f}, {1, -128.0f}}), kModThinWarm);
  EXPECT_NEAR(at(warm, 0, 0), 131068.0f, 0.01f);
  EXPECT_FLOAT_EQ(at(warm, 0, 1), 0.5f);
}

TEST(WaveModifiers, ModShrinksSpreadsAndShifts) {
  const Buffer shrink =
      modified(harmonics({{0, 65535.0f}, {1, 65535.0f}, {255, 9.0f}}), kModShrink);
  EXPECT_FLOAT_EQ(at(shrink, 0, 0), 131070.0f);  // may exceed full scale
  EXPECT_FLOAT_EQ(at(shrink, 0, 127), 9.0f);
  EXPECT_EQ(kept(shrink, 0), 2);
  const Buffer spread = modified(harmonics({{0, 10.0f}, {1, 20.0f}, {127, 8.0f}}), kModSpread);
  const std::pair<int, float> expected[] = {{0, 10.0f}, {1, 15.0f},  {2, 20.0f},
                                            {3, 10.0f}, {254, 8.0f}, {255, 0.0f}};
  for (auto [i, v] : expected) EXPECT_FLOAT_EQ(at(spread, 0, i), v) << i;
  const Buffer up = modified(harmonics({{0, 5.0f}, {255, 7.0f}}), kModUp);
  EXPECT_FLOAT_EQ(at(up, 0, 1), 5.0f);
  EXPECT_EQ(kept(up, 0), 1);  // the highest harmonic is lost
  const Buffer down = modified(harmonics({{0, 5.0f}, {1, 7.0f}, {255, 3.0f}}), kModDown);
  EXPECT_FLOAT_EQ(at(down, 0, 0), 7.0f);
  EXPECT_FLOAT_EQ(at(down, 0, 254), 3.0f);
  EXPECT_EQ(kept(down, 0), 2);
}

TEST(WaveModifiers, CombsFollowTheirFactorsOverHarmonicsAndFrames) {
  EXPECT_FLOAT_EQ(foldedTriangle(0.0f), 1.0f);
  EXPECT_FLOAT_EQ(foldedTriangle(0.5f), -1.0f);
  EXPECT_FLOAT_EQ(foldedTriangle(7.75f), 0.0f);
  constexpr float c1 = 0.00074183976f;
  const Buffer multi1 = modified(flat(1.0f), kModMulti1);
  EXPECT_NEAR(at(multi1, 0, 0), 1.5f * 0.8813056f, 1e-5f);  // 1.5 * d(0.029673591)
  EXPECT_NEAR(at(multi1, 0, 16), 1.5f * foldedTriangle(17.0f * (40 * c1)), 1e-5f);
  EXPECT_LT(at(multi1, 0, 16), -1.4f);  // troughs are negative
  EXPECT_NEAR(at(multi1, 60, 0), 1.5f * foldedTriangle(100 * c1), 1e-5f);

  const double d1 = foldedTriangle(40 * c1), d2 = foldedTriangle(13 * c1 * 3.0f),
               d3 = foldedTriangle(80 * c1 * 5.0f);
  EXPECT_NEAR(at(modified(flat(1.0f), kModMulti2), 0, 0), 3.0 * std::sqrt(std::fabs(d1 * d2 * d3)),
              1e-5);
  const Buffer flange1 = modified(flat(1.0f), kModFlange1);
  EXPECT_NEAR(at(flange1, 0, 0), 2.0 * std::pow(0.8813056, 4.0), 1e-5);
  for (int i = 0; i < kWaveHarmonics; ++i) ASSERT_GE(at(flange1, 100, i), 0.0f);
  // Flange 2 combs on a square-root axis: k = 4 sits where k = 2 would.
  const Buffer flange2 = modified(flat(1.0f), kModFlange2);
  const float c2Frame = 40.0f * 0.0028735632f;
  EXPECT_NEAR(at(flange2, 0, 3), 3.0 * std::pow(foldedTriangle(2.0f * c2Frame), 6.0), 1e-5);
}

TEST(WaveModifiers, TheScrambleRotatesEachColumnTheSameWayEveryTime) {
  Buffer first = kFramesMarked;
  timeScramble(first.data(), 0.5f);
  Buffer second = kFramesMarked;
  timeScramble(second.data(), 0.5f);
  EXPECT_EQ(first, second);
  int moved = 0;
  for (int i = 0; i < kWaveHarmonics; ++i) {
    const int lead = static_cast<int>(at(first, 0, i) * 2.0f) - 1000 * i;
    for (int f = 0; f < kWaveFrames; ++f) {
      ASSERT_FLOAT_EQ(at(first, f, i), 0.5f * (((f + lead) & 255) + 1000 * i)) << i;
    }
    // Worked by hand from the generator: harmonics 1 to 4 stay, 5 leads by 4.
    EXPECT_TRUE(i > 4 || lead == (i < 4 ? 0 : 4)) << i;
    moved += lead != 0;
  }
  EXPECT_GT(moved, 200);

  // Hyper: the comb first, then the scramble; harmonic 5 at frame 0 shows
  // frame 4's comb, harmonic 1 its own.
  const Buffer hyper1 = modified(flat(1.0f), kModHyper1);
  EXPECT_NEAR(at(hyper1, 9, 0), 0.7f * 2.0f * foldedTriangle(49 * 0.00074183976f), 1e-5f);
  EXPECT_NEAR(at(hyper1, 0, 4), 0.7f * 2.0f * foldedTriangle(5.0f * (44 * 0.00074183976f)), 1e-5f);
  EXPECT_NEAR(at(modified(flat(1.0f), kModHyper2), 9, 0), 2.0f * foldedTriangle(49 * 0.0028735632f),
              1e-5f);
}

TEST(WaveModifiers, FiltAndTimeMoveAlongTheFrames) {
  const Buffer down = modified(flat(1.0f), kModFiltLpDown);
  const Buffer up = modified(flat(1.0f), kModFiltLpUp);
  EXPECT_EQ(kept(down, 0), 161);
  EXPECT_EQ(kept(down, 255), 1);
  EXPECT_EQ(kept(up, 0), 1);
  EXPECT_EQ(kept(up, 255), 160);
  for (int f = 1; f < kWaveFrames; ++f) ASSERT_LE(kept(down, f), kept(down, f - 1));

  const Buffer single = harmonics({{0, 3.0f}, {9, 4.0f}, {200, 5.0f}});
  for (int step = kModTime16; step <= kModTime107; ++step)
    EXPECT_EQ(modified(single, step), single);
  const Buffer t16 = modified(kFramesMarked, kModTime16);
  const Buffer t107 = modified(kFramesMarked, kModTime107);
  for (int i : {0, 1, 5, 255}) {
    for (int f : {0, 1, 200, 255}) {
      ASSERT_EQ(at(t16, f, i), ((f + 16 * i) & 255) + 1000 * i);
      ASSERT_EQ(at(t107, f, i), ((f + 107 * i) & 255) + 1000 * i);
    }
  }
}

TEST(WaveModifiers, SyncStretchesTheSpectrumFromAbout17DownToOne) {
  // Frame 0: r = 16.875244, R = 16, M = 15. Harmonic 15 moves to 15 * r,
  // between 253 and 254, and also stays in place below R.
  const Buffer sync =
      modified(harmonics({{14, 1.0f}, {15, 2.0f}, {16, 4.0f}, {40, 8.0f}}), kModSync);
  const float w = 0.875244f;
  EXPECT_NEAR(at(sync, 0, 252), 1.0f - w, 1e-4f);
  EXPECT_NEAR(at(sync, 0, 253), w, 1e-4f);
  EXPECT_FLOAT_EQ(at(sync, 0, 14), 1.0f);
  EXPECT_FLOAT_EQ(at(sync, 0, 15), 2.0f);  // below R; j = 15 is not moved
  EXPECT_EQ(kept(sync, 0), 4);             // 17 and 41 are dropped
  // A flat frame 0 keeps 16 in place and moves 15: the sum is 31.
  const Buffer flatSync = modified(flat(1.0f), kModSync);
  float sum = 0.0f;
  for (int i = 0; i < kWaveHarmonics; ++i) sum += at(flatSync, 0, i);
  EXPECT_NEAR(sum, 31.0f, 1e-4f);
  // Frame 255: r = 1, all stays but the top harmonic; the fundamental doubles.
  EXPECT_FLOAT_EQ(at(sync, 255, 40), 8.0f);
  EXPECT_FLOAT_EQ(at(flatSync, 255, 0), 2.0f);
  EXPECT_FLOAT_EQ(at(flatSync, 255, 254), 1.0f);
  EXPECT_FLOAT_EQ(at(flatSync, 255, 255), 0.0f);
}

}  // namespace
}  // namespace sablevox
