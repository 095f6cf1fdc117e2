// Delay: echo times from tempo and "Delaytime", damping, the feedback modes,
// and reset back to the fresh state.
#include "effects/delay.h"

#include <gtest/gtest.h>

#include <memory>

#include "effect_test_support.h"

namespace sablevox {
namespace {

using testing::firstAbove;
using testing::Stereo2;

std::unique_ptr<Delay> makeDelay(int mode, float rate, float bpm, float time, float wet,
                                 float damp) {
  auto d = std::make_unique<Delay>();
  d->setSampleRate(rate);
  d->setTempo(bpm);
  d->setMode(mode);
  d->setParameter(0, wet);
  d->setParameter(1, time);
  d->setParameter(3, damp);
  return d;
}

// An impulse on the chosen channels at sample 0, run in odd-sized blocks.
Stereo2 impulseResponse(Delay& d, int n, bool left = true, bool right = true) {
  Stereo2 s(n);
  s.left[0] = left ? 1.0f : 0.0f;
  s.right[0] = right ? 1.0f : 0.0f;
  testing::runBlocks(d, s, 4093);
  return s;
}

TEST(Delay, EchoTimeIsTheBeatFractionAtTheHostTempo) {
  struct Case {
    float rate, bpm, time;
    int samples;
  };
  const Case cases[] = {
      {44100.0f, 120.0f, 0.0f, 5512},  {44100.0f, 120.0f, 0.25f, 8268},
      {44100.0f, 120.0f, 0.5f, 11025}, {44100.0f, 120.0f, 0.75f, 16537},
      {44100.0f, 120.0f, 1.0f, 22050}, {44100.0f, 100.0f, 1.0f, 26460},
      {96000.0f, 120.0f, 1.0f, 48000}, {48000.0f, 100.0f, 1.0f, 28800},
  };
  for (const Case& c : cases) {
    auto d = makeDelay(0, c.rate, c.bpm, c.time, 1.0f, 0.0f);
    const Stereo2 s = impulseResponse(*d, c.samples + 100);
    EXPECT_EQ(firstAbove(s.left, 1, 0.001f), c.samples) << c.rate << " " << c.bpm << " " << c.time;
    EXPECT_EQ(firstAbove(s.right, 1, 0.001f), c.samples);
  }
}

TEST(Delay, ModeOneDoublesTheLeftEcho) {
  auto d = makeDelay(1, 44100.0f, 120.0f, 0.0f, 1.0f, 0.0f);
  const Stereo2 s = impulseResponse(*d, 12000);
  EXPECT_EQ(firstAbove(s.left, 1, 0.001f), 2 * 5512);
  EXPECT_EQ(firstAbove(s.right, 1, 0.001f), 5512);
}

// The echo of an impulse is the line's one-pole response: g at the echo,
// then g * h one sample later.
TEST(Delay, DampingCoefficientFollowsDampAndRate) {
  struct Case {
    float rate, damp, g;
  };
  const Case cases[] = {
      {44100.0f, 0.0f, 1.0f},
      {96000.0f, 0.0f, 44100.0f / 96000.0f},
      {44100.0f, 1.0f, 0.01f},
      {48000.0f, 1.0f, 0.01f * 44100.0f / 48000.0f},
      {44100.0f, 0.3f, 0.7f * 0.7f * 0.7f * 0.99f + 0.01f},
  };
  for (const Case& c : cases) {
    auto d = makeDelay(0, c.rate, 120.0f, 0.0f, 1.0f, c.damp);
    const int at = static_cast<int>(c.rate / 120.0f * 60.0f * 0.25f);
    const Stereo2 s = impulseResponse(*d, at + 3);
    // Within the 1e-05 offsets that the filter adds each sample.
    EXPECT_NEAR(s.left[at], c.g, 3e-5f) << c.rate << " " << c.damp;
    EXPECT_NEAR(s.left[at + 1], c.g * (1.0f - c.g), 3e-5f);
  }
}

TEST(Delay, ModeTwoEchoesAlternateInPolarity) {
  auto d = makeDelay(2, 44100.0f, 120.0f, 0.0f, 1.0f, 0.0f);
  d->setParameter(2, 0.5f);
  const float fb = 0.5f * 0.9f + 0.1f;
  const Stereo2 s = impulseResponse(*d, 5 * 5512);
  float expected = fb;
  for (int k = 1; k <= 4; ++k) {
    EXPECT_NEAR(s.left[k * 5512], expected, 1e-4f) << "echo " << k;
    EXPECT_NEAR(s.right[k * 5512], expected, 1e-4f);
    expected *= -fb;
  }
}

TEST(Delay, ModeThreeCrossesTheChannels) {
  auto d = makeDelay(3, 44100.0f, 120.0f, 0.0f, 0.8f, 0.0f);
  d->setParameter(2, 0.5f);
  const float fb = 0.5f * 0.9f + 0.1f;
  const int delay = 5512;

  // The right input reaches the left output after one delay, directly.
  Stereo2 s = impulseResponse(*d, 2 * delay, false, true);
  EXPECT_EQ(firstAbove(s.left, 0, 0.001f), delay);
  EXPECT_NEAR(s.left[delay], 0.8f, 1e-4f);

  // The left input enters its line negated and comes out on the right after
  // crossing twice (four delays), the two inversions cancelling.
  d->reset();
  s = impulseResponse(*d, 5 * delay, true, false);
  EXPECT_EQ(firstAbove(s.right, 0, 0.001f), 4 * delay);
  EXPECT_NEAR(s.right[4 * delay], fb * fb * 0.8f, 1e-4f);
}

// Nearly to the lines' end, as for the chorus.
TEST(Delay, ResetReturnsToTheFreshState) {
  testing::expectResetGivesFreshState(
      [](int mode) { return makeDelay(mode, 44100.0f, 133.0f, 0.6f, 0.7f, 0.2f); }, 4,
      Delay::kLineLength - 3);
}

}  // namespace
}  // namespace sablevox
