// The wave scan: every loop mode's positions over the first ticks, the random
// modes from the LFO generator's state, jumps of the render position, and the
// loop speed steps.
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
  v.oscFrame[0][1] = 0x777;  // a position that only a start or jump changes
  Walk w;
  for (int t = 0; t < ticks; ++t) {
    scanStep(mode, rate, v, 1);
    w.positions.push_back(v.scanPos[1]);
    w.frames.push_back(v.oscFrame[0][1]);
    ++v.tickCount;
  }
  return w;
}

struct Sequence {
  int mode;
  std::vector<float> positions;
  int32_t startFrame;
};

TEST(WaveScan, FixedModesWalkAtTheRate) {
  const Sequence sequences[] = {
      {0, {0, .3f, .6f, .9f, .8f, .5f, .2f, .1f, .4f}, 0},                    // +-+-+-
      {1, {1, .7f, .4f, .1f, .2f, .5f, .8f, .9f, .6f}, kLastFramePosition},   // -+-+-+
      {3, {0, .3f, .6f, .9f, 1, 1, 1, 1, 1}, 0},                              // + stop
      {4, {1, .7f, .4f, .1f, 0, 0, 0, 0, 0}, kLastFramePosition},             // - stop
      {5, {0, .3f, .6f, .9f, .8f, .5f, .2f, 0, 0}, 0},                        // +- stop
      {6, {1, .7f, .4f, .1f, .2f, .5f, .8f, 1, 1}, kLastFramePosition},       // -+ stop
      {7, {0, .3f, .6f, .9f, .8f, .5f, .8f, .9f, .6f}, 0},                    // +50%-+-+
      {8, {0, .3f, .6f, .9f, .8f, 1, .8f, .9f, .9f}, 0},                      // +25%-+-+
      {9, {0, .3f, .6f, .9f, .8f, .5f, .3f, .6f, .9f}, 0},                    // +75%-+-+
      {10, {0, .3f, .6f, .9f, .2f, .5f, .8f, .1f, .4f}, 0},                   // ++++
      {11, {1, .7f, .4f, .1f, .8f, .5f, .2f, .9f, .6f}, kLastFramePosition},  // ----
  };
  for (const Sequence& s : sequences) {
    const Walk w = walk(s.mode, 9);
    for (size_t t = 0; t < s.positions.size(); ++t) {
      EXPECT_NEAR(w.positions[t], s.positions[t], 1e-5f) << "mode " << s.mode << " tick " << t;
    }
    EXPECT_EQ(w.frames[0], s.startFrame) << "mode " << s.mode;
  }
  // Between jumps the render position is left to glide; a wrap jumps it.
  const Walk up = walk(10, 9);
  EXPECT_EQ(up.frames[3], 0);
  EXPECT_EQ(up.frames[4], jumpPosition(up.positions[4]));
  EXPECT_EQ(up.frames[7], jumpPosition(up.positions[7]));
  const Walk pingPong = walk(0, 9);
  for (int32_t f : pingPong.frames) EXPECT_EQ(f, 0);
}

TEST(WaveScan, RandomModesFollowTheLfoGenerator) {
  auto randomPosition = [] { return (lfoRandom() + 1.0f) * 0.5f; };
  for (int mode : {2, 12, 13}) {  // random start and direction
    lfoRandomState = 1000u + mode;
    const Walk w = walk(mode, 3);
    lfoRandomState = 1000u + mode;
    const float start = randomPosition();
    const float dir = lfoRandom() > 0.0f ? 1.0f : -1.0f;
    EXPECT_EQ(w.positions[0], start);
    EXPECT_EQ(w.frames[0], jumpPosition(start));
    // "?+-+-+-" moves by its direction; "?++++" and "?----" by their own.
    const float step = mode == 2 ? dir * kRate : (mode == 12 ? kRate : -kRate);
    float next = start + step;
    if (next > 1.0f) next = mode == 2 ? 2.0f - next : next - 1.0f;
    if (next < 0.0f) next = mode == 2 ? -next : next + 1.0f;
    EXPECT_NEAR(w.positions[1], next, 1e-6f) << mode;
  }

  // "?????": a new random place each time the timer passes 1.
  lfoRandomState = 7u;
  const Walk timer = walk(14, 6);
  lfoRandomState = 7u;
  const float first = randomPosition();
  const float second = randomPosition();
  for (int t = 0; t < 4; ++t) EXPECT_EQ(timer.positions[t], first) << t;
  EXPECT_EQ(timer.positions[4], second);  // timer 1.2 at the fourth step
  EXPECT_EQ(timer.frames[4], jumpPosition(second));

  // "?": the start stays for the note, whatever the rate.
  lfoRandomState = 8u;
  const Walk stay = walk(15, 5, 0.9f);
  lfoRandomState = 8u;
  const float place = randomPosition();
  for (float p : stay.positions) EXPECT_EQ(p, place);
}

TEST(WaveScan, StaticPlacesThePositionAtTheRate) {
  const float sixteenHertz = loopSpeedRate(16, 120.0, 0.0f, 44100.0f);
  EXPECT_FLOAT_EQ(sixteenHertz, 0.04f);
  const Walk w = walk(kScanModeStatic, 4, sixteenHertz);
  for (float p : w.positions) EXPECT_EQ(p, 0.04f);
  EXPECT_EQ(w.frames[0], static_cast<int32_t>(0.04f * 65536.0f * 255.0f));
  const Walk zero = walk(kScanModeStatic, 2, 0.0f);
  EXPECT_EQ(zero.frames[0], 0);
}

TEST(WaveScan, JumpsStayInsideTheFrames) {
  EXPECT_EQ(jumpPosition(1.0f), kLastFramePosition);
  EXPECT_EQ(jumpPosition(0.5f), static_cast<int32_t>(0.5f * 65536.0f * 255.0f));
  for (float hostile : {NAN, INFINITY, -INFINITY, 1e30f, -3.0f}) {
    const int32_t p = jumpPosition(hostile);
    EXPECT_GE(p, 0);
    EXPECT_LT(p, 256 << 16);
  }
}

TEST(WaveScan, LoopSpeedSteps) {
  EXPECT_EQ(loopSpeedRate(1, 120.0, 0.01f, 44100.0f), 0.0f);  // 0 Hz
  EXPECT_FLOAT_EQ(loopSpeedRate(3, 120.0, 0.01f, 44100.0f), 0.185f * 0.0025f);
  EXPECT_FLOAT_EQ(loopSpeedRate(8, 120.0, 0.01f, 44100.0f), 0.0025f);  // 1 Hz
  // "BPM" at 120: two beats a second; "BPM /8" an eighth of that.
  EXPECT_FLOAT_EQ(loopSpeedRate(20, 120.0, 0.01f, 44100.0f), 0.005f);
  EXPECT_FLOAT_EQ(loopSpeedRate(17, 120.0, 0.01f, 44100.0f), 0.000625f);
  // "key 3" (m = 1) follows the note: 220 Hz plays 220 / 44100 * 64 * 0.0025.
  const float a3 = 220.0f / 44100.0f;
  EXPECT_NEAR(loopSpeedRate(28, 120.0, a3, 44100.0f), 220.0f / 44100.0f * 64.0f * 0.0025f, 1e-7f);
  EXPECT_NEAR(loopSpeedRate(33, 120.0, a3, 44100.0f), 32 * 220.0f / 44100.0f * 64.0f * 0.0025f,
              1e-5f);
  EXPECT_EQ(loopSpeedRate(0, 120.0, a3, 44100.0f), 0.0f);
  EXPECT_EQ(loopSpeedRate(34, 120.0, a3, 44100.0f), 0.0f);
}

TEST(WaveScan, ModifiersImposeSpeedsForAuto) {
  const int expected[25] = {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 10, 7,
                            7,  5,  10, 8,  -1, -1, 18, 19, 5,  18, 5,  -1};
  for (int m = 0; m < 25; ++m) EXPECT_EQ(loopSpeedOverride(m), expected[m]) << m;
  EXPECT_EQ(loopSpeedOverride(25), -1);
  EXPECT_EQ(loopSpeedOverride(-1), -1);
}

}  // namespace
}  // namespace sablevox
