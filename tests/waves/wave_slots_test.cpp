// Wave slots: filling from the records, the settings of each row, and the
// integer harmonic boost.
#include "waves/wave_slots.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "data/wave_sources.h"

namespace sablevox {
namespace {

// A single-frame slot whose frame 0 holds the given amplitudes.
struct TestSlot {
  WaveSlot slot;
  explicit TestSlot(std::initializer_list<std::pair<int, int>> amplitudes, int frameCount = 1) {
    slot.frameCount = frameCount;
    slot.frames = std::make_unique<uint16_t[]>(kWaveValues);
    for (int f = 0; f < kWaveFrames; ++f) {
      for (auto [index, value] : amplitudes)
        slot.frames[f * kWaveHarmonics + index] = static_cast<uint16_t>(value);
    }
  }
  int operator()(int frame, int index) const { return slot.frames[frame * kWaveHarmonics + index]; }
};

class WaveSlotsTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    slots = new WaveSlot[kWaveCount];
    buildWaveSlots(*reinterpret_cast<WaveSlot(*)[kWaveCount]>(slots));
  }
  static void TearDownTestSuite() { delete[] slots; }
  static WaveSlot* slots;
};
WaveSlot* WaveSlotsTest::slots = nullptr;

TEST_F(WaveSlotsTest, CopyTheRowsSettings) {
  EXPECT_STREQ(slots[59].name, "WV Pulse 25%%");
  char name[kWaveNameSize];
  copyWaveName(slots[4], name);
  EXPECT_STREQ(name, "STA Sine");
  EXPECT_FLOAT_EQ(slots[4].pitchFactor, 4.0f);
  EXPECT_FLOAT_EQ(slots[6].pitchFactor, 0.25f);
  EXPECT_FLOAT_EQ(slots[7].pitchFactor, 0.5f);
  EXPECT_FLOAT_EQ(slots[30].pitchFactor, 2.0f);
  EXPECT_FLOAT_EQ(slots[2].pitchFactor, 1.0f);
  EXPECT_FLOAT_EQ(slots[25].level, 0.3f);
  EXPECT_EQ(slots[37].defaultLoop, 1);
  EXPECT_EQ(slots[37].defaultLoopSpeed, 25);
  EXPECT_EQ(slots[4].frameCount, 1);
  EXPECT_EQ(slots[8].frameCount, 256);
}

TEST_F(WaveSlotsTest, RepeatSingleFramesAndCopyTimeEvolution) {
  const WaveSlot& sine = slots[4];
  for (int f = 0; f < kWaveFrames; ++f) {
    ASSERT_EQ(sine.frames[f * kWaveHarmonics], 65535);
    ASSERT_EQ(sine.frames[f * kWaveHarmonics + 1], 0);
  }
  const WaveSource pwm = waveSource(8);  // no boost
  for (int e = 0; e < kWaveValues; e += 97) ASSERT_EQ(slots[8].frames[e], pwm.amplitude(e)) << e;
}

TEST_F(WaveSlotsTest, TheSingleFrameBoostReachesFrameZeroOnly) {
  // "STA Platine": mode 2, 0.5, one frame. Frame 0 is boosted, the copies not.
  const WaveSlot& platine = slots[7];
  const WaveSource source = waveSource(7);
  bool boosted = false;
  for (int h = 0; h < kWaveHarmonics; ++h) {
    boosted |= platine.frames[h] != source.amplitude(h);
    for (int f = 1; f < kWaveFrames; ++f)
      ASSERT_EQ(platine.frames[f * kWaveHarmonics + h], source.amplitude(h));
  }
  EXPECT_TRUE(boosted);
}

TEST(BoostSlot, AddsTruncatedMultiplesInIntegerSteps) {
  // amount 0.33 is amt 84, not 84.48. Harmonic 1 at full scale, mode 2:
  // target i = 1: (65535*1/256 = 255) * 84 / 2 = 10710, / 256 = 41.
  TestSlot octaves({{0, 65535}});
  boostSlot(octaves.slot, 2, 0.33f);
  EXPECT_EQ(octaves(0, 0), 65535);
  EXPECT_EQ(octaves(0, 1), 41);
  EXPECT_EQ(octaves(0, 3), 62);  // m = 4: 767 * 84 / 4 = 16107, / 256
  EXPECT_EQ(octaves(0, 7), 73);  // m = 8: 1791 * 84 / 8 = 18805, / 256
  EXPECT_EQ(octaves(0, 2), 0);   // mode 2 has no third multiple
  EXPECT_EQ(octaves(1, 1), 0);   // one frame, one boosted frame

  TestSlot all({{0, 65535}});
  boostSlot(all.slot, 1, 0.33f);
  const int added[] = {41, 55, 62, 67, 69, 71, 73};  // m = 2 .. 8 at i = m - 1
  for (int m = 2; m <= 8; ++m) EXPECT_EQ(all(0, m - 1), added[m - 2]) << m;

  // A target fed from two sources takes both; the sources are the frame
  // before the boost, so the multiple of a multiple is not added.
  TestSlot two({{0, 65535}, {1, 32767}});
  boostSlot(two.slot, 1, 1.0f);
  EXPECT_EQ(two(0, 1), 32767 + 127);
  EXPECT_EQ(two(0, 3), 191 + 191);

  // Mode 0 and unknown modes do nothing.
  for (int mode : {0, 3, -1}) {
    TestSlot plain({{0, 65535}});
    boostSlot(plain.slot, mode, 1.0f);
    EXPECT_EQ(plain(0, 1), 0) << mode;
  }
}

TEST(BoostSlot, ClipsEachHarmonicAloneAndStopsAtTheTableLimits) {
  TestSlot loud({{0, 65535}, {1, 65500}}, 256);
  boostSlot(loud.slot, 2, 0.33f);
  for (int f : {0, 128, 255}) {
    EXPECT_EQ(loud(f, 1), 65535) << f;  // 65500 + 41 clipped, nothing rescaled
    EXPECT_EQ(loud(f, 0), 65535);
    EXPECT_EQ(loud(f, 3), 62 + 125);  // and harmonic 2 adds its own octave
  }

  // Harmonic 127 reaches 254 (index 253); harmonic 128 has no target.
  TestSlot top({{126, 60000}, {127, 60000}});
  boostSlot(top.slot, 1, 1.0f);
  EXPECT_EQ(top(0, 253), 29648);
  for (int i = 0; i < kWaveHarmonics; ++i) {
    if (i != 126 && i != 127 && i != 253) {
      ASSERT_EQ(top(0, i), 0) << i;
    }
  }
}

}  // namespace
}  // namespace sablevox
