// Reverb: section lengths, first arrivals, the decay the lengths and decay
// table imply, the mix factors of the two modes, long blocks and reset.
#include "effects/reverb.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "effect_test_support.h"

namespace sablevox {
namespace {

using testing::Stereo2;

std::unique_ptr<Reverb> makeReverb(int mode, float rate, float wet, float size, float feedback) {
  auto r = std::make_unique<Reverb>();
  r->setSampleRate(rate);
  r->setParameter(0, wet);
  r->setParameter(1, size);
  r->setMode(mode);
  r->setParameter(2, feedback);
  return r;
}

// Impulse response with the response to the 1e-05 offset alone taken away
// (the reverb is linear), so that only the impulse's own path remains.
Stereo2 impulseResponse(int mode, float rate, float wet, float size, float feedback, int n) {
  auto withImpulse = makeReverb(mode, rate, wet, size, feedback);
  auto silent = makeReverb(mode, rate, wet, size, feedback);
  Stereo2 a(n), b(n);
  a.left[0] = a.right[0] = 1.0f;
  testing::runBlocks(*withImpulse, a, 4096);
  testing::runBlocks(*silent, b, 4096);
  for (int i = 0; i < n; ++i) {
    a.left[i] -= b.left[i];
    a.right[i] -= b.right[i];
  }
  return a;
}

TEST(Reverb, SectionLengthsScaleWithSizeAndRate) {
  EXPECT_EQ(reverbSectionLength(1.0f, 44100.0f, 50.0f), 16500);
  EXPECT_EQ(reverbSectionLength(0.0f, 44100.0f, 50.0f), 1500);
  EXPECT_EQ(reverbSectionLength(1.0f, 88200.0f, 50.0f), 33000);
  // Beyond 65535 the length wraps like a 16-bit count.
  EXPECT_EQ(reverbSectionLength(1.0f, 192000.0f, 50.0f), 71836 - 65536);
}

// In mode 6 the shortest section of each side is a plain one, so the first
// echo arrives exactly at its length (29.73 and 27.263 times the scale) with
// 0.3 * 0.7 of the loop filter's gain, times the mix factor 2.
TEST(Reverb, FirstEchoArrivesAtTheShortestPlainSection) {
  const float feedback = 0.5f;
  const double a = (0.25 * 0.9 + 0.1) * 0.5 * 48000.0 / 44100.0;
  const double g = 1.0 - std::exp(a * -6.28);
  for (float size : {0.0f, 1.0f}) {
    const int left = reverbSectionLength(size, 44100.0f, 29.73f);
    const int right = reverbSectionLength(size, 44100.0f, 27.263f);
    const Stereo2 s = impulseResponse(6, 44100.0f, 0.5f, size, feedback, left + 10);
    EXPECT_EQ(testing::firstAbove(s.left, 1, 1e-4f), left) << size;
    EXPECT_EQ(testing::firstAbove(s.right, 1, 1e-4f), right) << size;
    // fastExp is within 2 % of exp here.
    EXPECT_NEAR(s.left[left] / (0.5 * 2.0 * 0.3 * 0.7 * g), 1.0, 0.03);
  }
}

// In mode 5 all sections are modulated: the delay shortens by up to 0.4 %.
TEST(Reverb, ModulatedSectionsArriveUpToFourPermilleEarly) {
  for (float size : {0.0f, 1.0f}) {
    const Stereo2 s = impulseResponse(5, 44100.0f, 0.5f, size, 0.5f, 10000);
    const std::vector<float>* sides[2] = {&s.left, &s.right};
    const float shortest[2] = {27.263f, 26.107f};
    for (int side = 0; side < 2; ++side) {
      const int length = reverbSectionLength(size, 44100.0f, shortest[side]);
      const int arrival = testing::firstAbove(*sides[side], 1, 1e-6f);
      EXPECT_GE(arrival, static_cast<int>(length * 0.996f) - 1) << size << " " << side;
      EXPECT_LE(arrival, length + 1) << size << " " << side;
    }
  }
}

// Energy decay of the late tail in dB per sample, from two windows.
double decaySlope(const std::vector<float>& x, int from, int to, int window) {
  auto energy = [&](int start) {
    double e = 0.0;
    for (int i = start; i < start + window; ++i) e += static_cast<double>(x[i]) * x[i];
    return e;
  };
  return 10.0 * std::log10(energy(to) / energy(from)) / (to - from);
}

// Every section loses its decay value once per pass of its length, and the
// tables are matched so that all die away at about 20*log10(0.75)/50 dB per
// unit of scale: 60 dB in about 1200 * scale samples. Measured on the late
// tail, after the eight-section chain of mode 5 has built up its density.
TEST(Reverb, TailsDecayAtTheRateTheSectionsImply) {
  struct Case {
    int mode;
    float size, feedback;
  };
  const Case cases[] = {{6, 0.5f, 0.5f}, {5, 0.0f, 0.9f}};
  for (const Case& c : cases) {
    const float scale = (c.size * c.size + 0.1f) * 300.0f;
    const double expected = 20.0 * std::log10(0.75) / (50.0 * scale);
    const int rt60 = static_cast<int>(60.0 / -expected);
    const Stereo2 s = impulseResponse(c.mode, 44100.0f, 1.0f, c.size, c.feedback, rt60 * 5 / 2);
    const int window = static_cast<int>(8.0f * 50.0f * scale);
    for (const auto* channel : {&s.left, &s.right}) {
      const double slope = decaySlope(*channel, rt60, rt60 * 5 / 2 - window, window);
      EXPECT_NEAR(slope / expected, 1.0, 0.1) << "mode " << c.mode << " size " << c.size;
    }
  }
}

// Before any echo the buffer holds the input plus the offset, so the output
// shows the mix law: x * dry + (x + 1e-05) * wet * k - x * wet * k.
TEST(Reverb, ModesMixTheirReturnsByHalfAndByTwo) {
  for (int mode : {5, 6}) {
    const float k = mode == 5 ? 0.5f : 2.0f;
    auto r = makeReverb(mode, 44100.0f, 0.3f, 0.0f, 0.5f);
    Stereo2 s(200);
    std::fill(s.left.begin(), s.left.end(), 0.25f);
    std::fill(s.right.begin(), s.right.end(), -0.5f);
    r->process(s.left.data(), s.right.data(), s.size());
    const float x = 0.25f, y = -0.5f;
    EXPECT_NEAR(s.left[100], (x + 1e-05f) * 0.3f * k + x * 0.7f - x * 0.3f * k, 1e-7f) << mode;
    EXPECT_NEAR(s.right[100], (y + 1e-05f) * 0.3f * k + y * 0.7f - y * 0.3f * k, 1e-7f) << mode;
  }
}

// Blocks beyond the work buffers are split; the result is the same as many
// small blocks.
TEST(Reverb, LongBlocksMatchShortOnes) {
  auto whole = makeReverb(5, 48000.0f, 0.6f, 0.3f, 0.5f);
  auto pieces = makeReverb(5, 48000.0f, 0.6f, 0.3f, 0.5f);
  Stereo2 a = testing::noise(70000, 5);
  Stereo2 b = a;
  whole->process(a.left.data(), a.right.data(), a.size());
  testing::runBlocks(*pieces, b, 999);
  EXPECT_EQ(a.left, b.left);
  EXPECT_EQ(a.right, b.right);
}

// Reset silences the lines at once; only the loop filters' last values and
// the offset remain.
TEST(Reverb, ResetSilencesTheTail) {
  auto r = makeReverb(6, 44100.0f, 0.5f, 1.0f, 0.5f);
  Stereo2 sound = testing::noise(20000, 6);
  testing::runBlocks(*r, sound, 1000);
  r->reset();
  Stereo2 silence(5000);
  testing::runBlocks(*r, silence, 1000);
  EXPECT_LT(testing::maxAbs(silence.left, 100), 1e-3f);
  EXPECT_LT(testing::maxAbs(silence.right, 100), 1e-3f);
}

}  // namespace
}  // namespace sablevox
