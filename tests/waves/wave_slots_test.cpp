// Wave slots: the embedded amplitudes against the slot building run on the
// embedded records, the settings of each row, and the integer harmonic boost.
#include "waves/wave_slots.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "data/wave_sources.h"
#include "waves/slot_amplitudes.h"

namespace sablevox {
namespace {

// The generator embeds what the slot building makes of its records; the
// records embedded beside them must give exactly the same amplitudes.
TEST(EmbeddedSlots, EqualTheSlotsBuiltFromTheRecords) {
  std::vector<uint16_t> built(kSlotAmplitudeCount);
  ASSERT_TRUE(buildSlotAmplitudes(waveRecordBytes(), built));
  EXPECT_FALSE(buildSlotAmplitudes(waveRecordBytes().first(kWaveSourceBytes), built));
  for (int w = 0; w < kWaveCount; ++w) {
    const uint16_t* embedded = slotAmplitudes(w);
    const uint16_t* expected = built.data() + static_cast<size_t>(w) * kWaveValues;
    int differing = 0;
    for (int e = 0; e < kWaveValues; ++e) differing += embedded[e] != expected[e];
    EXPECT_EQ(differing, 0) << "wave " << w;
    EXPECT_EQ(kSlotFrameCounts[w], waveSource(w).frameCount()) << w;
  }
  EXPECT_EQ(slotAmplitudes(-1), slotAmplitudes(0));
  EXPECT_EQ(slotAmplitudes(kWaveCount), slotAmplitudes(0));
  // Page-aligned, so that the pages map from the plug-in file as read.
  EXPECT_EQ(reinterpret_cast<uintptr_t>(slotAmplitudes(0)) % 4096, 0u);
}

TEST(SetUpWaveSlots, CopiesRowsRepeatsSingleFramesAndBoostsBeforehand) {
  auto slots = std::make_unique<WaveSlot[]>(kWaveCount);
  setUpWaveSlots(std::span<WaveSlot, kWaveCount>(slots.get(), kWaveCount));
  char name[kWaveNameSize];
  copyWaveName(slots[60], name);
  EXPECT_STREQ(name, "WV Pulse 12%%");
  const int waves[] = {6, 7, 2, 30, 4};  // pitch steps -2 .. 2
  const float factors[] = {0.25f, 0.5f, 1.0f, 2.0f, 4.0f};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(slots[waves[i]].pitchFactor, factors[i]);
  EXPECT_FLOAT_EQ(slots[25].level, 0.3f);
  EXPECT_EQ(slots[37].defaultLoop, 1);
  EXPECT_EQ(slots[37].defaultLoopSpeed, 25);

  // "STA Sine" repeats its one frame; "EL PWM" copies all 256.
  EXPECT_EQ(slots[4].frameCount, 1);
  EXPECT_EQ(slots[8].frameCount, 256);
  for (int f = 0; f < kWaveFrames; ++f) ASSERT_EQ(slots[4].frames[f * kWaveHarmonics], 65535);
  for (int e = 0; e < kWaveValues; e += 97)
    ASSERT_EQ(slots[8].frames[e], waveSource(8).amplitude(e));
  // "STA Platine" (boost 2, 0.5, one frame): frame 0 boosted, the copies plain.
  bool boosted = false;
  for (int h = 0; h < kWaveHarmonics; ++h) {
    boosted |= slots[7].frames[h] != waveSource(7).amplitude(h);
    ASSERT_EQ(slots[7].frames[255 * kWaveHarmonics + h], waveSource(7).amplitude(h));
  }
  EXPECT_TRUE(boosted);
}

// A slot of frameCount frames, every frame holding the given amplitudes.
struct TestSlot {
  std::vector<uint16_t> frames = std::vector<uint16_t>(kWaveValues);
  int frameCount;
  TestSlot(std::initializer_list<std::pair<int, int>> amplitudes, int count = 1)
      : frameCount(count) {
    for (int f = 0; f < kWaveFrames; ++f) {
      for (auto [i, v] : amplitudes) frames[f * kWaveHarmonics + i] = static_cast<uint16_t>(v);
    }
  }
  void boost(int mode, float amount) {
    boostSlotAmplitudes(frames.data(), frameCount, mode, amount);
  }
  int operator()(int frame, int index) const { return frames[frame * kWaveHarmonics + index]; }
};

TEST(BoostSlot, AddsTruncatedMultiplesInIntegerSteps) {
  // 0.33 is amt 84, not 84.48: harmonic 1 at full scale gives target i = 1
  // (65535*1/256 = 255) * 84 / 2 = 10710, / 256 = 41; likewise for m = 3..8.
  TestSlot all({{0, 65535}});
  all.boost(1, 0.33f);
  const int added[] = {41, 55, 62, 67, 69, 71, 73};
  for (int m = 2; m <= 8; ++m) EXPECT_EQ(all(0, m - 1), added[m - 2]) << m;
  EXPECT_EQ(all(1, 1), 0);  // one frame, one boosted frame

  TestSlot octaves({{0, 65535}});
  octaves.boost(2, 0.33f);
  EXPECT_EQ(octaves(0, 2), 0);  // mode 2 has no third multiple
  EXPECT_EQ(octaves(0, 7), 73);

  // Two sources into one target both count; the sources are the frame before
  // the boost, so a multiple of a multiple is not added.
  TestSlot two({{0, 65535}, {1, 32767}});
  two.boost(1, 1.0f);
  EXPECT_EQ(two(0, 1), 32767 + 127);
  EXPECT_EQ(two(0, 3), 191 + 191);

  for (int mode : {0, 3, -1}) {
    TestSlot plain({{0, 65535}});
    plain.boost(mode, 1.0f);
    EXPECT_EQ(plain(0, 1), 0) << mode;
  }
}

TEST(BoostSlot, ClipsEachHarmonicAloneAndStopsAtTheTableLimits) {
  TestSlot loud({{0, 65535}, {1, 65500}}, 256);
  loud.boost(2, 0.33f);
  for (int f : {0, 128, 255}) {
    EXPECT_EQ(loud(f, 1), 65535) << f;  // 65500 + 41 clipped, nothing rescaled
    EXPECT_EQ(loud(f, 3), 62 + 125);
  }
  // Harmonic 127 reaches 254 (index 253); harmonic 128 has no target.
  TestSlot top({{126, 60000}, {127, 60000}});
  top.boost(1, 1.0f);
  EXPECT_EQ(top(0, 253), 29648);
  for (int i = 0; i < kWaveHarmonics; ++i) {
    if (i != 126 && i != 127 && i != 253) {
      ASSERT_EQ(top(0, i), 0) << i;
    }
  }
}

}  // namespace
}  // namespace sablevox
