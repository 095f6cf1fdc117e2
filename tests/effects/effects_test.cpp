// The effects where the regression renders (one tempo, one rate, two
// settings of each step) do not reach: which steps run what and ask the
// tempo, echo times at any tempo and rate, long blocks, resets, and bounds
// over all steps, rates and hostile parameters.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "effects/chorus.h"
#include "effects/delay.h"
#include "effects/effect_section.h"
#include "effects/equaliser.h"
#include "effects/reverb.h"
#include "effects/stereo.h"
#include "host/tempo_source.h"

namespace sablevox {
namespace testing {

// Signals, block-wise runs and a host tempo for the units.
struct Stereo2 {
  std::vector<float> left, right;
  explicit Stereo2(int n = 0) : left(n, 0.0f), right(n, 0.0f) {}
  int size() const { return static_cast<int>(left.size()); }
};

// Full-scale uniform noise, independent per channel.
inline Stereo2 noise(int n, unsigned seed) {
  std::mt19937 rng(seed);
  std::uniform_real_distribution<float> dist(-1.0f, 1.0f);
  Stereo2 s(n);
  for (int i = 0; i < n; ++i) {
    s.left[i] = dist(rng);
    s.right[i] = dist(rng);
  }
  return s;
}

// Runs unit.process over the signal in blocks of `block` samples.
template <typename Unit>
void runBlocks(Unit& unit, Stereo2& s, int block) {
  for (int done = 0; done < s.size(); done += block) {
    const int n = std::min(block, s.size() - done);
    unit.process(s.left.data() + done, s.right.data() + done, n);
  }
}

// First index at or after `from` whose magnitude exceeds `threshold`, or -1.
inline int firstAbove(const std::vector<float>& x, int from, float threshold) {
  for (int i = from; i < static_cast<int>(x.size()); ++i) {
    if (std::fabs(x[i]) > threshold) return i;
  }
  return -1;
}

inline float maxAbs(const std::vector<float>& x, int from = 0, int to = -1) {
  if (to < 0) to = static_cast<int>(x.size());
  float m = 0.0f;
  for (int i = from; i < to; ++i) m = std::max(m, std::fabs(x[i]));
  return m;
}

// After noise and a reset, a unit plays exactly like a fresh one made the
// same way by make(mode).
template <typename Make>
void expectResetGivesFreshState(Make make, int modes, int samples) {
  for (int mode = 0; mode < modes; ++mode) {
    auto used = make(mode);
    auto fresh = make(mode);
    Stereo2 warmup = noise(samples, 1);
    runBlocks(*used, warmup, 333);
    used->reset();
    Stereo2 a = noise(samples, 2);
    Stereo2 b = a;
    runBlocks(*used, a, 700);
    runBlocks(*fresh, b, 700);
    EXPECT_EQ(a.left, b.left) << "mode " << mode;
    EXPECT_EQ(a.right, b.right) << "mode " << mode;
  }
}

class FixedTempo : public TempoSource {
 public:
  explicit FixedTempo(double bpm) : bpm_(bpm) {}
  double getTempo() override {
    ++calls;
    return bpm_;
  }
  void set(double bpm) { bpm_ = bpm; }
  int calls = 0;

 private:
  double bpm_;
};

}  // namespace testing

namespace {

using testing::FixedTempo;
using testing::Stereo2;

// The five objects as the engine holds them.
struct Units {
  std::unique_ptr<Delay> delay = std::make_unique<Delay>();
  std::unique_ptr<Chorus> chorus = std::make_unique<Chorus>();
  std::unique_ptr<Reverb> reverb = std::make_unique<Reverb>();
  std::unique_ptr<Equaliser> equaliser = std::make_unique<Equaliser>();
  std::unique_ptr<Stereo> stereo = std::make_unique<Stereo>();
  EffectUnits fx{delay.get(), chorus.get(), reverb.get(), equaliser.get(), stereo.get()};

  void run(int type, Stereo2& s, float rate, float p1, float p2, TempoSource& tempo) {
    runEffect(type, fx, s.left.data(), s.right.data(), s.size(), rate, p1, p2, tempo);
  }
};

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

std::unique_ptr<Reverb> makeReverb(int mode, float rate, float wet, float size, float feedback) {
  auto r = std::make_unique<Reverb>();
  r->setSampleRate(rate);
  r->setParameter(0, wet);
  r->setParameter(1, size);
  r->setMode(mode);
  r->setParameter(2, feedback);
  return r;
}

std::unique_ptr<Chorus> makeChorus(int mode, float rate, float speed, float depth, float wet) {
  auto c = std::make_unique<Chorus>();
  c->setSampleRate(rate);
  c->setMode(mode);
  c->setParameter(0, wet);
  c->setParameter(1, speed);
  c->setParameter(2, depth);
  return c;
}

// Steps 1 to 18 change the block (given time for the shortest echo); the
// others leave it as it is. Only steps with a delay ask the tempo, once.
TEST(EffectSection, StepsRunTheirUnitsAndAskTheTempoForDelays) {
  Units u;
  const Stereo2 in = testing::noise(6000, 8);
  for (int type : {-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20}) {
    FixedTempo tempo(120.0);
    Stereo2 s = in;
    u.run(type, s, 44100.0f, 0.7f, 0.0f, tempo);
    EXPECT_EQ(s.left != in.left, type >= 1 && type <= 18) << type;
    const bool hasDelay = (type >= 3 && type <= 6) || type == 11 || type == 12;
    EXPECT_EQ(tempo.calls, hasDelay ? 1 : 0) << type;
  }
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
    Stereo2 s(c.samples + 100);
    s.left[0] = s.right[0] = 1.0f;
    testing::runBlocks(*d, s, 4093);
    const int left = testing::firstAbove(s.left, 1, 0.001f);
    EXPECT_EQ(left, c.samples) << c.rate << " " << c.bpm << " " << c.time;
    EXPECT_EQ(testing::firstAbove(s.right, 1, 0.001f), c.samples);
  }
}

// "Surround" at full mix and centre pan gives l + r on both sides; "Stereo
// enhance" at mix 0 passes the input.
TEST(EffectSection, StereoSteps) {
  Units u;
  FixedTempo tempo(120.0);
  const Stereo2 in = testing::noise(300, 10);
  Stereo2 surround = in, enhance = in;
  u.run(14, surround, 44100.0f, 1.0f, 0.5f, tempo);
  u.run(15, enhance, 44100.0f, 0.0f, 0.9f, tempo);
  for (int i = 0; i < in.size(); ++i) {
    ASSERT_EQ(surround.right[i], in.left[i] + in.right[i]);
    ASSERT_NEAR(enhance.left[i], in.left[i], 2e-7f);
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

// After a reset the delay and the chorus play exactly like fresh ones, also
// when played nearly to their lines' end, whose cells a fresh run reads
// first (a reset clears only what was written); the reverb's lines fall
// silent at once (only its loop filters' last values and the offset remain).
TEST(EffectUnits, ResetReturnsToTheFreshState) {
  testing::expectResetGivesFreshState(
      [](int mode) { return makeDelay(mode, 44100.0f, 133.0f, 0.6f, 0.7f, 0.2f); }, 4,
      Delay::kLineLength - 3);
  testing::expectResetGivesFreshState(
      [](int mode) { return makeChorus(mode, 48000.0f, 0.7f, 0.4f, 0.6f); }, 4,
      Chorus::kLineLength - 3);
  auto r = makeReverb(6, 44100.0f, 0.5f, 1.0f, 0.5f);
  Stereo2 sound = testing::noise(20000, 6);
  testing::runBlocks(*r, sound, 1000);
  r->reset();
  Stereo2 silence(5000);
  testing::runBlocks(*r, silence, 1000);
  EXPECT_LT(testing::maxAbs(silence.left, 100), 1e-3f);
  EXPECT_LT(testing::maxAbs(silence.right, 100), 1e-3f);
}

// Every step, at every rate, under full-scale noise, with parameter values
// and tempi a host might send (NaN, infinities, out of range), in blocks of
// any length: the output stays finite and bounded.
TEST(EffectSection, EveryStepStaysFiniteAndBounded) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float inf = std::numeric_limits<float>::infinity();
  const float values[] = {nan, inf, -inf, -1.0f, 2.0f, 1e30f, 0.0f, 1.0f, 0.5f, 0.999f};
  const double tempi[] = {120.0, 20.0, 999.0, 0.0, -5.0, 1e12, std::nan(""), 1e-9};
  const int blocks[] = {0, 1, 17, 512, 4096};
  std::mt19937 rng(11);
  auto pick = [&rng](const auto& list) {
    return list[std::uniform_int_distribution<size_t>(0, std::size(list) - 1)(rng)];
  };
  float worst = 0.0f;
  for (float rate : {8000.0f, 22050.0f, 44100.0f, 96000.0f, 192000.0f, 384000.0f, nan}) {
    Units u;
    for (int type = 0; type < kEffectTypeCount; ++type) {
      u.delay->reset();
      u.chorus->reset();
      u.reverb->reset();
      for (int round = 0; round < 4; ++round) {
        FixedTempo tempo(pick(tempi));
        // One block beyond the reverb's work buffers where a reverb runs.
        const bool reverb =
            (type >= 1 && type <= 2) || (type >= 11 && type <= 13) || (type >= 16 && type <= 18);
        const int n = round < 3 ? pick(blocks) : reverb ? 33000 : 4096;
        Stereo2 s = testing::noise(n, rng());
        const float p1 = round == 0 ? 1.0f : pick(values);
        const float p2 = round == 0 ? 1.0f : pick(values);
        u.run(type, s, rate, p1, p2, tempo);
        for (int i = 0; i < n; ++i) {
          ASSERT_TRUE(std::isfinite(s.left[i]) && std::isfinite(s.right[i]))
              << "type " << type << " rate " << rate << " sample " << i;
        }
        worst = std::max({worst, testing::maxAbs(s.left), testing::maxAbs(s.right)});
      }
    }
  }
  // About 8 in practice: the reverbs' resonances on noise.
  EXPECT_LT(worst, 64.0f);
}

}  // namespace
}  // namespace sablevox
