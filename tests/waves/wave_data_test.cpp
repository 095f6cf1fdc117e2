// The embedded wave records and the descriptor table, as the slot building reads them.
#include <gtest/gtest.h>

#include <cstring>

#include "data/wave_descriptors.h"
#include "data/wave_sources.h"

namespace sablevox {
namespace {

TEST(WaveRecords, HaveThePackedLayoutAndTheFrameCountOfEachWave) {
  const std::span<const unsigned char> bytes = waveRecordBytes();
  ASSERT_EQ(bytes.size(), static_cast<size_t>(kWaveCount) * 262148u);
  for (int w = 0; w < kWaveCount; ++w) {
    const bool single = w <= 7 || (w >= 59 && w <= 63);
    const int frames = waveSource(w).frameCount();
    ASSERT_EQ(frames, single ? 1 : 256) << w;
    // Upper bytes are zero; a single-frame record is empty after frame 0.
    const unsigned char* entries = bytes.data() + static_cast<size_t>(w) * kWaveSourceBytes + 4;
    for (int e = 0; e < kWaveSourceEntries; ++e) {
      const unsigned char* entry = entries + 4 * e;
      const bool empty = e >= frames * kWaveSourceHarmonics;
      ASSERT_EQ(entry[2] | entry[3] | (empty ? entry[0] | entry[1] : 0), 0) << w << " " << e;
    }
  }
  // FNV-1a of all records: changes only when the wave content is redesigned.
  uint64_t hash = 14695981039346656037ull;
  for (unsigned char byte : bytes) hash = (hash ^ byte) * 1099511628211ull;
  EXPECT_EQ(hash, 0x54ba859c2fa30faeull) << std::hex << hash;
}

TEST(WaveRecords, BasicWavesHoldTheirExactSpectra) {
  const WaveSource saw = waveSource(2);
  const int sawStart[] = {65535, 32767, 21845, 16384, 13107};
  for (int h = 0; h < 5; ++h) EXPECT_EQ(saw.amplitude(h), sawStart[h]);
  for (int h = 0; h < kWaveSourceHarmonics; ++h) {
    ASSERT_NEAR(saw.amplitude(h), 65535.0 / (h + 1), 0.5) << h;
    ASSERT_EQ(waveSource(3).amplitude(h), h % 2 == 0 ? saw.amplitude(h) : 0) << h;
    ASSERT_EQ(waveSource(4).amplitude(h), h == 0 ? 65535 : 0) << h;
  }
}

TEST(WaveDescriptors, NamesFitTheSlotsAndSettingsTheirRanges) {
  EXPECT_STREQ(kWaveDescriptors[59].displayName, "WV Pulse 25%%");
  EXPECT_STREQ(kWaveDescriptors[84].displayName, "VO Drumloop 4");
  for (const WaveDescriptor& row : kWaveDescriptors) {
    EXPECT_LT(std::strlen(row.displayName), 32u) << row.displayName;
    EXPECT_TRUE(row.pitchStep >= -2 && row.pitchStep <= 2) << row.displayName;
    EXPECT_TRUE(row.boostMode >= 0 && row.boostMode <= 2) << row.displayName;
    EXPECT_EQ(row.boostMode == 0, row.boostAmount == 0.0f) << row.displayName;
  }
}

}  // namespace
}  // namespace sablevox
