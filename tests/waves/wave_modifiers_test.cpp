// Each wave modifier against its defining rule on small hand-made spectra.
#include "waves/wave_modifiers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "wave_test_support.h"

namespace sablevox {
namespace {

using test::at;
using test::flatSpectrum;
using test::spectrumOf;

// One frame holding only the given harmonics, repeated over all frames.
std::vector<float> harmonics(std::initializer_list<std::pair<int, float>> list) {
  std::vector<float> buffer(kWaveValues, 0.0f);
  for (int f = 0; f < kWaveFrames; ++f) {
    for (auto [index, value] : list) at(buffer, f, index) = value;
  }
  return buffer;
}

std::vector<float> modified(std::vector<float> buffer, int step) {
  applyWaveModifier(buffer.data(), step, kWaveFrames);
  return buffer;
}

int keptHarmonics(std::vector<float>& buffer, int frame) {
  int kept = 0;
  for (int i = 0; i < kWaveHarmonics; ++i) kept += at(buffer, frame, i) != 0.0f;
  return kept;
}

TEST(WaveModifiers, OffAndUnknownStepsChangeNothing) {
  const auto original = spectrumOf([](int f, int i) { return static_cast<float>(f * 3 + i); });
  for (int step : {int{kModOff}, -1, kModifierSteps, 1000})
    EXPECT_EQ(modified(original, step), original);
  auto buffer = original;
  applyWaveModifier(buffer.data(), kModMixX2, 0);
  EXPECT_EQ(buffer, original);
}

TEST(WaveModifiers, MixAddsOctavesFromTheUnmodifiedFrame) {
  auto x2 = modified(harmonics({{0, 100.0f}, {1, 10.0f}, {127, 60.0f}}), kModMixX2);
  EXPECT_FLOAT_EQ(at(x2, 7, 0), 50.0f);
  EXPECT_FLOAT_EQ(at(x2, 7, 1), 55.0f);   // its own 10 plus harmonic 1's 100, halved
  EXPECT_FLOAT_EQ(at(x2, 7, 3), 5.0f);    // harmonic 2 doubled, but not harmonic 1 twice
  EXPECT_FLOAT_EQ(at(x2, 7, 255), 0.0f);  // harmonic 128 has no place at 256
  auto x4 = modified(harmonics({{0, 100.0f}}), kModMixX4);
  EXPECT_FLOAT_EQ(at(x4, 0, 3), 50.0f);
  EXPECT_FLOAT_EQ(at(x4, 0, 1), 0.0f);
  auto layer = modified(harmonics({{0, 100.0f}}), kModMixLayer);
  const float expected[] = {40.0f, 32.0f, 0.0f, 24.0f, 0.0f, 0.0f, 0.0f, 16.0f};
  for (int i = 0; i < 8; ++i) EXPECT_NEAR(at(layer, 0, i), expected[i], 1e-4f) << i;
  EXPECT_NEAR(at(layer, 0, 15), 8.0f, 1e-4f);
}

TEST(WaveModifiers, ThinKeepsOddPrimeOrSquaredHarmonics) {
  auto square = modified(flatSpectrum(10.0f), kModThinSquare);
  EXPECT_FLOAT_EQ(at(square, 3, 0), 12.0f);
  EXPECT_FLOAT_EQ(at(square, 3, 1), 0.0f);
  EXPECT_FLOAT_EQ(at(square, 3, 254), 12.0f);
  EXPECT_FLOAT_EQ(at(square, 3, 255), 0.0f);

  auto bell = modified(flatSpectrum(1.0f), kModThinBell);
  EXPECT_EQ(keptHarmonics(bell, 9), 56);
  for (int k : {1, 2, 3, 5, 7, 251, 255}) EXPECT_EQ(at(bell, 9, k - 1), 1.0f) << k;
  for (int k : {4, 9, 253, 256}) EXPECT_EQ(at(bell, 9, k - 1), 0.0f) << k;

  auto warm = modified(harmonics({{0, 65535.0f}, {1, -128.0f}}), kModThinWarm);
  EXPECT_NEAR(at(warm, 0, 0), 131068.0f, 0.01f);
  EXPECT_FLOAT_EQ(at(warm, 0, 1), 0.5f);
}

TEST(WaveModifiers, ModShrinksSpreadsAndShifts) {
  auto shrink =
      modified(harmonics({{0, 65535.0f}, {1, 65535.0f}, {2, 4.0f}, {255, 9.0f}}), kModShrink);
  EXPECT_FLOAT_EQ(at(shrink, 0, 0), 131070.0f);  // may exceed full scale
  EXPECT_FLOAT_EQ(at(shrink, 0, 1), 4.0f);
  EXPECT_FLOAT_EQ(at(shrink, 0, 127), 9.0f);
  EXPECT_FLOAT_EQ(at(shrink, 0, 128), 0.0f);

  auto spread = modified(harmonics({{0, 10.0f}, {1, 20.0f}, {127, 8.0f}}), kModSpread);
  EXPECT_FLOAT_EQ(at(spread, 0, 0), 10.0f);
  EXPECT_FLOAT_EQ(at(spread, 0, 1), 15.0f);
  EXPECT_FLOAT_EQ(at(spread, 0, 2), 20.0f);
  EXPECT_FLOAT_EQ(at(spread, 0, 3), 10.0f);
  EXPECT_FLOAT_EQ(at(spread, 0, 254), 8.0f);
  EXPECT_FLOAT_EQ(at(spread, 0, 255), 0.0f);

  auto up = modified(harmonics({{0, 5.0f}, {255, 7.0f}}), kModUp);
  EXPECT_FLOAT_EQ(at(up, 0, 0), 0.0f);
  EXPECT_FLOAT_EQ(at(up, 0, 1), 5.0f);
  EXPECT_EQ(keptHarmonics(up, 0), 1);  // the highest harmonic is lost

  auto down = modified(harmonics({{0, 5.0f}, {1, 7.0f}, {255, 3.0f}}), kModDown);
  EXPECT_FLOAT_EQ(at(down, 0, 0), 7.0f);
  EXPECT_FLOAT_EQ(at(down, 0, 254), 3.0f);
  EXPECT_FLOAT_EQ(at(down, 0, 255), 0.0f);
}

TEST(WaveModifiers, FoldedTriangle) {
  EXPECT_FLOAT_EQ(foldedTriangle(0.0f), 1.0f);
  EXPECT_FLOAT_EQ(foldedTriangle(0.5f), -1.0f);
  EXPECT_FLOAT_EQ(foldedTriangle(0.25f), 0.0f);
  EXPECT_FLOAT_EQ(foldedTriangle(3.0f), 1.0f);
  EXPECT_FLOAT_EQ(foldedTriangle(7.75f), 0.0f);
}

TEST(WaveModifiers, CombsFollowTheirFactorsOverHarmonicsAndFrames) {
  auto multi1 = modified(flatSpectrum(1.0f), kModMulti1);
  EXPECT_NEAR(at(multi1, 0, 0), 1.5f * 0.8813056f, 1e-5f);  // 1.5 * d(0.029673591)
  EXPECT_NEAR(at(multi1, 0, 16), 1.5f * foldedTriangle(17.0f * 0.029673591f), 1e-5f);
  EXPECT_LT(at(multi1, 0, 16), -1.4f);  // the comb's troughs are negative
  EXPECT_NEAR(at(multi1, 60, 0), 1.5f * foldedTriangle(100.0f * 0.00074183976f), 1e-5f);

  // Multi 2 at frame 0, k = 1: q = 13.
  const double c1 = 0.00074183976;
  const double d1 = foldedTriangle(static_cast<float>(40 * c1));
  const double d2 = foldedTriangle(static_cast<float>(13 * c1 * 3.0));
  const double d3 = foldedTriangle(static_cast<float>(80 * c1 * 5.0));
  auto multi2 = modified(flatSpectrum(1.0f), kModMulti2);
  EXPECT_NEAR(at(multi2, 0, 0), 3.0 * std::sqrt(std::fabs(d1 * d2 * d3)), 1e-5);

  auto flange1 = modified(flatSpectrum(1.0f), kModFlange1);
  EXPECT_NEAR(at(flange1, 0, 0), 2.0 * std::pow(0.8813056, 4.0), 1e-5);
  for (int i = 0; i < kWaveHarmonics; ++i) ASSERT_GE(at(flange1, 100, i), 0.0f);

  // Flange 2 combs on a square-root axis: k = 4 sits where k = 2 would for c2.
  auto flange2 = modified(flatSpectrum(1.0f), kModFlange2);
  const float c2Frame = 40.0f * 0.0028735632f;
  EXPECT_NEAR(at(flange2, 0, 0), 3.0 * std::pow(foldedTriangle(c2Frame), 6.0), 1e-5);
  EXPECT_NEAR(at(flange2, 0, 3), 3.0 * std::pow(foldedTriangle(2.0f * c2Frame), 6.0), 1e-5);
}

TEST(WaveModifiers, TheScrambleShiftsEachColumnTheSameWayEveryTime) {
  const auto frames = spectrumOf([](int f, int i) { return static_cast<float>(f + 1000 * i); });
  auto first = frames;
  timeScramble(first.data(), 0.5f);
  auto second = frames;
  timeScramble(second.data(), 0.5f);
  EXPECT_EQ(first, second);
  // Harmonics 1 to 4 keep their place; harmonic 5 leads by 4 frames, 6 by 5.
  for (int f = 0; f < kWaveFrames; ++f) {
    ASSERT_FLOAT_EQ(at(first, f, 0), 0.5f * f);
    ASSERT_FLOAT_EQ(at(first, f, 3), 0.5f * (f + 3000));
    ASSERT_FLOAT_EQ(at(first, f, 4), 0.5f * (((f + 4) & 255) + 4000));
    ASSERT_FLOAT_EQ(at(first, f, 5), 0.5f * (((f + 5) & 255) + 5000));
  }
  // Every column is a rotation of itself.
  int moved = 0;
  for (int i = 0; i < kWaveHarmonics; ++i) {
    const int lead = static_cast<int>(at(first, 0, i) * 2.0f) - 1000 * i;
    for (int f = 0; f < kWaveFrames; ++f) {
      ASSERT_FLOAT_EQ(at(first, f, i), 0.5f * (((f + lead) & 255) + 1000 * i)) << i;
    }
    moved += lead != 0;
  }
  EXPECT_GT(moved, 200);
}

TEST(WaveModifiers, HyperCombsFirstThenScrambles) {
  auto hyper1 = modified(flatSpectrum(1.0f), kModHyper1);
  auto hyper2 = modified(flatSpectrum(1.0f), kModHyper2);
  for (int f : {0, 77, 255}) {
    // Harmonic 1 is not moved in time, so it shows the comb of its own frame.
    EXPECT_NEAR(at(hyper1, f, 0), 0.7f * 2.0f * foldedTriangle((f + 40) * 0.00074183976f), 1e-5f);
    EXPECT_NEAR(at(hyper2, f, 0), 2.0f * foldedTriangle((f + 40) * 0.0028735632f), 1e-5f);
  }
  // Harmonic 5 leads by 4 frames: frame 0 shows frame 4's comb.
  EXPECT_NEAR(at(hyper1, 0, 4), 0.7f * 2.0f * foldedTriangle(5.0f * (44 * 0.00074183976f)), 1e-5f);
}

TEST(WaveModifiers, LowPassClosesOrOpensOverTheFrames) {
  auto down = modified(flatSpectrum(1.0f), kModFiltLpDown);
  auto up = modified(flatSpectrum(1.0f), kModFiltLpUp);
  EXPECT_EQ(keptHarmonics(down, 0), 161);
  EXPECT_EQ(keptHarmonics(down, 255), 1);
  EXPECT_EQ(keptHarmonics(up, 0), 1);
  EXPECT_EQ(keptHarmonics(up, 255), 160);
  for (int f = 1; f < kWaveFrames; ++f) {
    ASSERT_LE(keptHarmonics(down, f), keptHarmonics(down, f - 1));
    ASSERT_GE(keptHarmonics(up, f), keptHarmonics(up, f - 1));
  }
  EXPECT_EQ(at(down, 0, 160), 1.0f);  // the kept ones are untouched
}

TEST(WaveModifiers, TimeLeadsEachHarmonicAlongTheFrames) {
  const auto single = harmonics({{0, 3.0f}, {9, 4.0f}, {200, 5.0f}});
  for (int step = kModTime16; step <= kModTime107; ++step)
    EXPECT_EQ(modified(single, step), single);

  const auto frames = spectrumOf([](int f, int i) { return static_cast<float>(f + 1000 * i); });
  auto t16 = modified(frames, kModTime16);
  auto t107 = modified(frames, kModTime107);
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
  auto sync = modified(harmonics({{14, 1.0f}, {15, 2.0f}, {16, 4.0f}, {40, 8.0f}}), kModSync);
  const float w = 0.875244f;
  EXPECT_FLOAT_EQ(at(sync, 0, 14), 1.0f);
  EXPECT_NEAR(at(sync, 0, 252), 1.0f - w, 1e-4f);
  EXPECT_NEAR(at(sync, 0, 253), w, 1e-4f);
  EXPECT_FLOAT_EQ(at(sync, 0, 15), 2.0f);  // below R, but j = 15 is not moved
  EXPECT_FLOAT_EQ(at(sync, 0, 16), 0.0f);  // above R and not moved: dropped
  EXPECT_FLOAT_EQ(at(sync, 0, 40), 0.0f);
  // Frame 0 keeps 15 moved harmonics: a flat spectrum sums to 16 kept + 15.
  auto flat = modified(flatSpectrum(1.0f), kModSync);
  float sum = 0.0f;
  for (int i = 0; i < kWaveHarmonics; ++i) sum += at(flat, 0, i);
  EXPECT_NEAR(sum, 31.0f, 1e-4f);
  // Frame 255: r = 1, everything stays but the top harmonic, and the
  // fundamental is doubled.
  EXPECT_FLOAT_EQ(at(sync, 255, 0), 0.0f);
  EXPECT_FLOAT_EQ(at(sync, 255, 14), 1.0f);
  EXPECT_FLOAT_EQ(at(sync, 255, 40), 8.0f);
  EXPECT_FLOAT_EQ(at(flat, 255, 0), 2.0f);
  EXPECT_FLOAT_EQ(at(flat, 255, 254), 1.0f);
  EXPECT_FLOAT_EQ(at(flat, 255, 255), 0.0f);
}

}  // namespace
}  // namespace sablevox
