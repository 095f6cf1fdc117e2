// The spoken-wave data format end to end: codes, the stride expansion, the
// written file and the envelope comparison. The drum loops are checked as
// embedded (waves/wave_content_test.cpp).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "voicegen/envelope_compare.h"
#include "voicegen/spoken_file.h"
#include "wavegen/spoken_waves.h"

namespace sablevox::voicegen {
namespace {

using wavegen::spokenAmplitude;
using wavegen::spokenCode;

TEST(SpokenCodes, SpanTheSixteenBitRangeInEvenDecibelSteps) {
  EXPECT_EQ(spokenAmplitude(255), 65535);
  EXPECT_EQ(spokenAmplitude(0), 0);
  EXPECT_EQ(spokenAmplitude(1), 1);  // 95.25 dB down
  EXPECT_EQ(spokenCode(1.0), 255);
  EXPECT_EQ(spokenCode(2.0), 255);
  EXPECT_EQ(spokenCode(0.0), 0);
  EXPECT_EQ(spokenCode(-1.0), 0);
  EXPECT_EQ(spokenCode(1e-6), 0);
  EXPECT_EQ(spokenCode(std::nan("")), 0);
  for (int c = 1; c <= 255; ++c) {
    ASSERT_EQ(spokenCode(std::pow(10.0, -(255 - c) * wavegen::kSpokenCodeStepDb / 20.0)), c) << c;
    if (c > 1) {
      ASSERT_GE(spokenAmplitude(c), spokenAmplitude(c - 1)) << c;
    }
  }
}

TEST(SpokenFrame, PlacesStoredHarmonicsAtTheirStrideAndInterpolatesBetween) {
  const uint8_t codes[3] = {255, 175, 95};
  uint16_t a[256];
  wavegen::spokenFrame(codes, 3, 1, a);
  EXPECT_EQ(a[0], 65535);
  EXPECT_EQ(a[1], spokenAmplitude(175));
  EXPECT_EQ(a[2], spokenAmplitude(95));
  EXPECT_EQ(a[3], 0);
  wavegen::spokenFrame(codes, 3, 2, a);
  EXPECT_EQ(a[0], 65535);  // below the first stored harmonic
  EXPECT_EQ(a[1], 65535);
  EXPECT_EQ(a[2], spokenAmplitude(215.0));
  EXPECT_EQ(a[3], spokenAmplitude(175));
  EXPECT_EQ(a[4], spokenAmplitude(135.0));
  EXPECT_EQ(a[5], spokenAmplitude(95));
  for (int h = 6; h < 256; ++h) ASSERT_EQ(a[h], 0) << h;
}

TEST(WriteSpokenFile, NormalisesStoresOnlyHarmonicsWithEnergyAndRefusesSilence) {
  std::vector<HarmonicFrame> frames(kFrames, HarmonicFrame{});
  frames[10][0] = 0.25;
  frames[200][39] = 0.5;
  frames[30][99] = 1e-9;  // below the code range: not stored
  const std::string path =
      (std::filesystem::temp_directory_path() / "sablevox_spoken_test.spk").string();
  SpokenFileStats stats;
  ASSERT_TRUE(writeSpokenFile(path, frames, 2, stats));
  EXPECT_EQ(stats.harmonics, 40);
  EXPECT_EQ(stats.silentFrames, kFrames - 2);
  std::ifstream in(path, std::ios::binary);
  const std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)),
                                   std::istreambuf_iterator<char>());
  std::remove(path.c_str());
  ASSERT_EQ(bytes.size(), 8u + kFrames * 40u);
  EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 4), "SVSK");
  EXPECT_EQ(bytes[4] | bytes[5] << 8, 40);
  EXPECT_EQ(bytes[6], 2);
  EXPECT_EQ(bytes[8 + 200 * 40 + 39], 255);
  EXPECT_EQ(bytes[8 + 10 * 40], spokenCode(0.5));

  std::vector<HarmonicFrame> silent(kFrames, HarmonicFrame{});
  EXPECT_FALSE(writeSpokenFile(path, silent, 1, stats));
  EXPECT_FALSE(writeSpokenFile(path, std::vector<HarmonicFrame>(3), 1, stats));
}

TEST(EnvelopeCompare, CorrelatesASoundWithItselfFullyAndNotWithItsReverse) {
  Audio audio;
  audio.sampleRate = 22050.0;
  // A tone gliding up: its envelope moves in one direction only.
  double phase = 0.0;
  for (int n = 0; n < 22050; ++n) {
    phase += 2.0 * 3.141592653589793 * (200.0 + 3000.0 * n / 22050.0) / 22050.0;
    audio.samples.push_back(0.5 * std::sin(phase));
  }
  const Span span{0.0, 22050.0};
  const std::vector<double> e = melEnvelope(audio, span);
  ASSERT_EQ(e.size(), static_cast<size_t>(kFrames * kCompareBands));
  EXPECT_NEAR(pearson(e, e), 1.0, 1e-12);
  EXPECT_LT(pearson(e, reversedInTime(e)), 0.5);
  std::vector<double> negated(e.size());
  for (size_t i = 0; i < e.size(); ++i) negated[i] = -e[i];
  EXPECT_NEAR(pearson(e, negated), -1.0, 1e-12);
}

}  // namespace
}  // namespace sablevox::voicegen
