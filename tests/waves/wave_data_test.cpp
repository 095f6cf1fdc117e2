// The embedded wave records and the descriptor table, as the slots read them.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "data/wave_descriptors.h"
#include "data/wave_sources.h"

namespace sablevox {
namespace {

bool singleFrame(int wave) {
  return wave <= 7 || (wave >= 59 && wave <= 63);
}

TEST(WaveRecords, HaveThePackedLayoutAndTheFrameCountOfEachWave) {
  ASSERT_EQ(waveRecordBytes().size(), static_cast<size_t>(kWaveCount) * 262148u);
  for (int w = 0; w < kWaveCount; ++w) {
    const WaveSource source = waveSource(w);
    ASSERT_EQ(source.frameCount(), singleFrame(w) ? 1 : 256) << w;
  }
  // The upper two bytes of every entry are zero, and single-frame records
  // hold nothing after frame 0.
  const std::span<const unsigned char> bytes = waveRecordBytes();
  for (int w = 0; w < kWaveCount; ++w) {
    const unsigned char* record = bytes.data() + static_cast<size_t>(w) * kWaveSourceBytes;
    const int frames = waveSource(w).frameCount();
    for (int e = 0; e < kWaveSourceEntries; ++e) {
      const unsigned char* entry = record + 4 + 4 * e;
      ASSERT_EQ(entry[2] | entry[3], 0) << w << " " << e;
      if (e >= frames * kWaveSourceHarmonics) {
        ASSERT_EQ(entry[0] | entry[1], 0) << w << " " << e;
      }
    }
  }
}

TEST(WaveRecords, BasicWavesHoldTheirExactSpectra) {
  const WaveSource saw = waveSource(2);
  const WaveSource pulse = waveSource(3);
  const WaveSource sine = waveSource(4);
  const int sawStart[] = {65535, 32767, 21845, 16384, 13107};
  for (int h = 0; h < 5; ++h) EXPECT_EQ(saw.amplitude(h), sawStart[h]);
  for (int h = 0; h < kWaveSourceHarmonics; ++h) {
    ASSERT_NEAR(saw.amplitude(h), 65535.0 / (h + 1), 0.5) << h;
    ASSERT_EQ(pulse.amplitude(h), h % 2 == 0 ? saw.amplitude(h) : 0) << h;
    ASSERT_EQ(sine.amplitude(h), h == 0 ? 65535 : 0) << h;
  }
}

TEST(WaveRecords, ChecksumGuardsTheGeneratedData) {
  // FNV-1a of all records. Changes only when the wave content is redesigned.
  uint64_t hash = 14695981039346656037ull;
  for (unsigned char byte : waveRecordBytes()) hash = (hash ^ byte) * 1099511628211ull;
  EXPECT_EQ(hash, 0xa89ee1addfd1fbbfull) << std::hex << hash;
}

TEST(WaveDescriptors, RowsAreUsable) {
  EXPECT_STREQ(kWaveDescriptors[0].displayName, "off");
  EXPECT_STREQ(kWaveDescriptors[59].displayName, "WV Pulse 25%%");
  EXPECT_STREQ(kWaveDescriptors[60].displayName, "WV Pulse 12%%");
  EXPECT_STREQ(kWaveDescriptors[84].displayName, "VO Drumloop 4");
  for (const WaveDescriptor& row : kWaveDescriptors) {
    EXPECT_LT(std::strlen(row.displayName), 32u) << row.displayName;
    EXPECT_EQ(std::string(row.sourceName).ends_with(".mf"), true) << row.sourceName;
    EXPECT_GE(row.pitchStep, -2);
    EXPECT_LE(row.pitchStep, 2);
    EXPECT_GE(row.boostMode, 0);
    EXPECT_LE(row.boostMode, 2);
    EXPECT_EQ(row.boostMode == 0, row.boostAmount == 0.0f) << row.displayName;
  }
}

}  // namespace
}  // namespace sablevox
