// Stereo: the enhancer's matrix and all-pass design, the surround's pan law.
#include "effects/stereo.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "effect_test_support.h"

namespace sablevox {
namespace {

using testing::Stereo2;

TEST(StereoEnhance, AtMixZeroPassesTheInput) {
  Stereo st;
  st.setSampleRate(44100.0f);
  st.setMode(0);
  st.setParameter(0, 0.0f);
  const Stereo2 in = testing::noise(5000, 7);
  Stereo2 out = in;
  testing::runBlocks(st, out, 256);
  for (int i = 0; i < in.size(); ++i) {
    ASSERT_NEAR(out.left[i], in.left[i], 2e-7f) << i;
    ASSERT_NEAR(out.right[i], in.right[i], 2e-7f) << i;
  }
}

// The all-pass turns a quarter at 3140 / pi Hz at any rate. At full mix a
// centred sine there comes out at 2 * 0.75 * |0.85 + 0.15j| and a side
// signal at 2 * 0.75 * |0.5 - 0.5j|.
TEST(StereoEnhance, AllPassTurnsAQuarterNearOneKilohertz) {
  const double frequency = 3140.0 / std::numbers::pi;
  for (float rate : {44100.0f, 96000.0f}) {
    for (bool side : {false, true}) {
      Stereo st;
      st.setSampleRate(rate);
      st.setMode(0);
      st.setParameter(0, 1.0f);
      const int n = static_cast<int>(rate);
      Stereo2 s(n);
      for (int i = 0; i < n; ++i) {
        s.left[i] = static_cast<float>(std::sin(2.0 * std::numbers::pi * frequency * i / rate));
        s.right[i] = side ? -s.left[i] : s.left[i];
      }
      testing::runBlocks(st, s, 512);
      const double expected = side ? 1.5 * std::sqrt(0.5) : 1.5 * std::hypot(0.85, 0.15);
      EXPECT_NEAR(testing::maxAbs(s.left, n / 2), expected, 0.003) << rate << " side " << side;
      EXPECT_NEAR(testing::maxAbs(s.right, n / 2), expected, 0.003) << rate << " side " << side;
    }
  }
}

// At full mix the sum goes to both sides; "Pan" turns one side towards the
// inverted sum, through silence at 0.25 and 0.75.
TEST(StereoSurround, PanSetsThePolarityOfOneSide) {
  struct Case {
    float mix, pan, left, right;  // outputs for l = 0.25, r = 0.5
  };
  const Case cases[] = {
      {1.0f, 0.5f, 0.75f, 0.75f},  {1.0f, 0.0f, 0.75f, -0.75f}, {1.0f, 0.25f, 0.75f, 0.0f},
      {1.0f, 1.0f, -0.75f, 0.75f}, {1.0f, 0.75f, 0.0f, 0.75f},  {0.0f, 0.1f, 0.25f, 0.5f},
      {0.5f, 0.5f, 0.5f, 0.625f},
  };
  for (const Case& c : cases) {
    Stereo st;
    st.setSampleRate(44100.0f);
    st.setMode(1);
    st.setParameter(0, c.mix);
    st.setParameter(1, c.pan);
    float l[3] = {0.25f, 0.25f, 0.25f};
    float r[3] = {0.5f, 0.5f, 0.5f};
    st.process(l, r, 3);
    EXPECT_NEAR(l[2], c.left, 1e-6f) << c.mix << " " << c.pan;
    EXPECT_NEAR(r[2], c.right, 1e-6f) << c.mix << " " << c.pan;
  }
}

}  // namespace
}  // namespace sablevox
