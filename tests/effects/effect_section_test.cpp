// The effect section: which steps run what, the tempo, values kept between
// steps, and a bounds test over all steps, rates and hostile parameters.
#include "effects/effect_section.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>

#include "effect_test_support.h"
#include "effects/chorus.h"
#include "effects/delay.h"
#include "effects/equaliser.h"
#include "effects/reverb.h"
#include "effects/stereo.h"

namespace sablevox {
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

TEST(EffectSection, DelayAAtOneBeatEchoesAfterABeat) {
  for (double bpm : {120.0, 100.0}) {
    Units u;
    FixedTempo tempo(bpm);
    const int beat = static_cast<int>(44100.0f / static_cast<float>(bpm) * 60.0f);
    Stereo2 s(beat + 10);
    s.left[0] = 1.0f;
    u.run(3, s, 44100.0f, 1.0f, 1.0f, tempo);
    EXPECT_EQ(testing::firstAbove(s.left, 1, 0.01f), beat) << bpm;
  }
}

// "Delay B" sets no "Dry/wet": it plays with what "Delay A" left.
TEST(EffectSection, StepsKeepTheValuesTheyDoNotSet) {
  FixedTempo tempo(120.0);
  float echo[2];
  const float wets[2] = {0.2f, 0.8f};
  for (int k = 0; k < 2; ++k) {
    Units u;
    Stereo2 s(10);
    u.run(3, s, 44100.0f, wets[k], 0.0f, tempo);
    u.delay->reset();  // as the engine does on the change of step
    s = Stereo2(5600);
    s.left[0] = 1.0f;
    u.run(4, s, 44100.0f, 0.5f, 0.0f, tempo);
    echo[k] = s.left[5512];
  }
  EXPECT_NEAR(echo[0] / echo[1], 0.25f, 1e-3f);

  // "Rotary" takes its depth from whichever chorus step ran before: 0.5 from
  // "Ens+Rev" is the same as "Chorus" with EffPar2 at 0.5.
  auto rotaryAfter = [&tempo](int type, float p2) {
    Units u;
    Stereo2 s(10);
    u.run(type, s, 44100.0f, 0.3f, p2, tempo);
    u.chorus->reset();
    s = testing::noise(3000, 9);
    u.run(10, s, 44100.0f, 0.6f, 0.8f, tempo);
    return s.left;
  };
  EXPECT_EQ(rotaryAfter(13, 0.9f), rotaryAfter(7, 0.5f));
  EXPECT_NE(rotaryAfter(7, 0.0f), rotaryAfter(7, 1.0f));
}

// Before the first echo the reverb steps show their mix law on a constant:
// x * (1 - wet) + (x + 1e-05) * wet * k - x * wet * k, with k = 2 in mode 6
// and 0.5 in mode 5. The delay in front of the chains has not spoken yet.
TEST(EffectSection, ReverbStepsMixByTheirRows) {
  struct Case {
    int type;
    float wetPerP1, k;
  };
  const Case cases[] = {{1, 0.5f, 2.0f},  {2, 0.5f, 2.0f},  {11, 0.4f, 2.0f}, {12, 0.4f, 2.0f},
                        {16, 1.0f, 0.5f}, {17, 1.0f, 0.5f}, {18, 1.0f, 0.5f}};
  FixedTempo tempo(120.0);
  for (const Case& c : cases) {
    Units u;
    Stereo2 s(200);
    std::fill(s.left.begin(), s.left.end(), 0.25f);
    u.run(c.type, s, 44100.0f, 0.6f, 0.0f, tempo);
    const float x = 0.25f;
    const float wet = 0.6f * c.wetPerP1;
    EXPECT_NEAR(s.left[150], x * (1.0f - wet) + (x + 1e-05f) * wet * c.k - x * wet * c.k, 1e-7f)
        << c.type;
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
