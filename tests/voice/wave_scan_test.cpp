// The wave scan where the regression renders do not reach: the random modes
// from the LFO generator's state, "static" at its rate, and the loop speed
// steps that need a clock or a key. The fixed modes' walks, turns, stops and
// jumps are pinned by the scan modes render.
#include "voice/wave_scan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "voice/lfo.h"

namespace sablevox {
namespace {

constexpr float kRate = 0.3f;

struct Walk {
  std::vector<float> positions;
  std::vector<int32_t> frames;  // render position of member A
};

Walk walk(int mode, int ticks, float rate = kRate) {
  Voice v;
  std::memset(static_cast<void*>(&v), 0, sizeof v);
  v.oscFrame[0][1] = 0x777;  // only a start or a jump changes it
  Walk w;
  for (; v.tickCount < ticks; ++v.tickCount) {
    scanStep(mode, rate, v, 1);
    w.positions.push_back(v.scanPos[1]);
    w.frames.push_back(v.oscFrame[0][1]);
  }
  return w;
}

TEST(WaveScan, RandomModesFollowTheLfoGenerator) {
  auto random = [] { return (lfoRandom() + 1.0f) * 0.5f; };
  for (int mode : {2, 12, 13, 14, 15}) {
    lfoRandomState = 1000u + mode;
    const Walk w = walk(mode, 5);
    lfoRandomState = 1000u + mode;
    const float start = random();
    EXPECT_EQ(w.positions[0], start) << mode;
    EXPECT_EQ(w.frames[0], jumpPosition(start)) << mode;
    if (mode == 2) {  // "?+-+-+-" moves by its random direction
      const float dir = lfoRandom() > 0.0f ? 1.0f : -1.0f;
      const float p = start + dir * kRate;
      EXPECT_NEAR(w.positions[1], p > 1.0f ? 2.0f - p : (p < 0.0f ? -p : p), 1e-6f);
    }
    if (mode == 14) {  // "?????": a new place when the timer passes 1 (1.2 at tick 4)
      EXPECT_EQ(w.positions[3], start);
      EXPECT_EQ(w.positions[4], random());
    }
    if (mode == 15) {
      EXPECT_EQ(w.positions[4], start);  // "?" stays for the note
    }
  }
}

TEST(WaveScan, StaticPlacesThePositionAtTheRate) {
  const float sixteenHertz = loopSpeedRate(16, 120.0, 0.0f, 44100.0f);
  EXPECT_FLOAT_EQ(sixteenHertz, 0.04f);
  const Walk w = walk(kScanModeStatic, 4, sixteenHertz);
  EXPECT_EQ(w.positions, std::vector<float>(4, 0.04f));
  EXPECT_EQ(w.frames[0], static_cast<int32_t>(0.04f * 65536.0f * 255.0f));
  EXPECT_EQ(jumpPosition(NAN), 0);
  EXPECT_LT(jumpPosition(INFINITY), 256 << 16);
}

TEST(WaveScan, BeatAndKeySpeeds) {
  // "BPM" at 120: two beats a second; "key 3" plays the note's frequency / 44100 * 64.
  EXPECT_FLOAT_EQ(loopSpeedRate(20, 120.0, 0.0f, 44100.0f), 0.005f);
  const float a3 = 220.0f / 44100.0f;
  EXPECT_NEAR(loopSpeedRate(28, 120.0, a3, 44100.0f), a3 * 64.0f * 0.0025f, 1e-7f);
  EXPECT_EQ(loopSpeedOverride(20), 19);
  EXPECT_EQ(loopSpeedOverride(24), -1);
}

}  // namespace
}  // namespace sablevox
