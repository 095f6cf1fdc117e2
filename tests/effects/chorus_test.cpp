// Chorus: the sweep of each mode measured through a ramp (a linear read of a
// ramp gives its delay back), the flanger's wet path, and reset.
#include "effects/chorus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "effect_test_support.h"

namespace sablevox {
namespace {

using testing::Stereo2;

constexpr float kRate = 192000.0f;
constexpr double kSlope = 1.0 / 64.0;  // keeps the ramp small enough for exact floats

std::unique_ptr<Chorus> makeChorus(int mode, float rate, float speed, float depth, float wet) {
  auto c = std::make_unique<Chorus>();
  c->setSampleRate(rate);
  c->setMode(mode);
  c->setParameter(0, wet);
  c->setParameter(1, speed);
  c->setParameter(2, depth);
  return c;
}

struct Sweep {
  double minLeft = 1e9, maxLeft = -1e9, minSum = 1e9, maxSum = -1e9;
};

// Feeds a ramp to both channels; `delayOf` turns an output sample into the
// delay it stands for. Records the left range and the range of left + right.
template <typename DelayOf>
Sweep measure(Chorus& c, int n, int warmup, DelayOf delayOf) {
  Stereo2 s(n);
  for (int i = 0; i < n; ++i) s.left[i] = s.right[i] = static_cast<float>(i * kSlope);
  testing::runBlocks(c, s, 1024);
  Sweep w;
  for (int i = warmup; i < n; ++i) {
    const double l = delayOf(i, s.left[i]);
    const double r = delayOf(i, s.right[i]);
    w.minLeft = std::min(w.minLeft, l);
    w.maxLeft = std::max(w.maxLeft, l);
    w.minSum = std::min(w.minSum, l + r);
    w.maxSum = std::max(w.maxSum, l + r);
  }
  return w;
}

// Slowest speed, full depth, at 192000 Hz: the deepest sweeps stay well
// inside the 32768-sample lines, and the channels swing in opposition.
TEST(Chorus, ChorusSweepsBetweenTwoAndAHalfAndThreeAndAHalfDepths) {
  auto c = makeChorus(0, kRate, 0.0f, 1.0f, 1.0f);
  const double amp = 0.005 * kRate;  // 1 / (1 Hz) * 0.005 s
  // One LFO cycle (1 Hz) after the line has filled.
  const Sweep w = measure(*c, 200000, 5000, [](int i, float y) { return i - y / kSlope; });
  // The four-point read adds one sample.
  EXPECT_NEAR(w.minLeft, 2.5 * amp + 1.0, 1.0);
  EXPECT_NEAR(w.maxLeft, 3.5 * amp + 1.0, 1.0);
  EXPECT_NEAR(w.minSum, 6.0 * amp + 2.0, 0.2);
  EXPECT_NEAR(w.maxSum, 6.0 * amp + 2.0, 0.2);
}

TEST(Chorus, EnsembleTapsStayWithinTheirRanges) {
  auto c = makeChorus(1, kRate, 0.0f, 1.0f, 1.0f);
  const double amp = 0.00625 * kRate;  // 1 / (0.8 Hz) * 0.005 s
  const double ratio = 0.58823526;
  // The output is the sum of two taps * 0.66: report the sum of their delays.
  const Sweep w =
      measure(*c, 400000, 7000, [](int i, float y) { return 2.0 * i - y / 0.66f / kSlope; });
  EXPECT_GE(w.minLeft, (2.0 + 2.0 * ratio) * amp - 1.0);
  EXPECT_LE(w.maxLeft, (3.0 + 3.0 * ratio) * amp + 1.0);
  EXPECT_GT(w.maxLeft - w.minLeft, amp);  // it does sweep
  EXPECT_NEAR(w.minSum, 5.0 * (1.0 + ratio) * amp, 0.5);
  EXPECT_NEAR(w.maxSum, 5.0 * (1.0 + ratio) * amp, 0.5);
}

// With no tremolo the high band of a ramp is a constant, so the output is the
// ramp delayed by the low rotor.
TEST(Chorus, RotaryLowRotorSweepsAroundItsDepth) {
  auto c = makeChorus(3, kRate, 0.0f, 1.0f, 1.0f);
  c->setParameter(4, 0.0f);
  const double amp = 0.004 * kRate;  // 1 / (2 Hz) * 0.008 s
  const Sweep w = measure(*c, 100000, 4000, [](int i, float y) { return i - y / kSlope; });
  EXPECT_NEAR(w.minLeft, 0.5 * amp, 1.0);
  EXPECT_NEAR(w.maxLeft, 1.5 * amp, 1.0);
  EXPECT_NEAR(w.minSum, 2.0 * amp, 0.2);
  EXPECT_NEAR(w.maxSum, 2.0 * amp, 0.2);
}

// At full wet the flanger's dry signal is gone and it gives half the line.
TEST(Chorus, FlangerAtFullWetIsHalfTheLine) {
  auto c = makeChorus(2, 44100.0f, 1.0f, 0.5f, 1.0f);
  Stereo2 s(4);
  s.left[0] = s.right[0] = 1.0f;
  c->process(s.left.data(), s.right.data(), s.size());
  EXPECT_EQ(s.left[0], 0.0f);
  EXPECT_NEAR(s.left[1], 0.5f, 0.01f);
  EXPECT_EQ(s.right[0], 0.0f);
  // The right channel starts at the far end of its sweep.
  EXPECT_LT(s.right[1], 0.5f);
}

// Run nearly to the lines' end, whose cells a fresh run reads first: a reset
// that clears only the written part must not stop short of them.
TEST(Chorus, ResetReturnsToTheFreshState) {
  testing::expectResetGivesFreshState(
      [](int mode) { return makeChorus(mode, 48000.0f, 0.7f, 0.4f, 0.6f); }, 4,
      Chorus::kLineLength - 3);
}

}  // namespace
}  // namespace sablevox
