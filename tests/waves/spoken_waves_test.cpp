// The spoken waves and drum loops as embedded: normalised, sounding, moving
// like speech, and drum loops that repeat seamlessly with hits on the beats.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

#include "data/wave_descriptors.h"
#include "data/wave_sources.h"

namespace sablevox {
namespace {

constexpr int kPhrases[] = {49, 50, 51, 52, 53, 54, 55, 56, 77, 78, 79, 80, 81, 82};
constexpr int kDrumLoops[] = {57, 58, 83, 84};

using Frame = std::array<double, kWaveSourceHarmonics>;

std::vector<Frame> framesOf(int wave) {
  const WaveSource source = waveSource(wave);
  std::vector<Frame> frames(kWaveSourceFrames);
  for (int f = 0; f < kWaveSourceFrames; ++f) {
    for (int h = 0; h < kWaveSourceHarmonics; ++h) {
      frames[static_cast<size_t>(f)][static_cast<size_t>(h)] =
          source.amplitude(f * kWaveSourceHarmonics + h);
    }
  }
  return frames;
}

// Energy of harmonics first..last (1-based), in dB of a full-scale harmonic.
double bandDb(const Frame& frame, int first, int last) {
  double sum = 1.0;  // keeps silence finite, at 0 dB
  for (int k = first; k <= last; ++k)
    sum += frame[static_cast<size_t>(k - 1)] * frame[static_cast<size_t>(k - 1)];
  return 10.0 * std::log10(sum);
}

// Amplitude-weighted mean harmonic number.
double centroid(const Frame& frame) {
  double weighted = 0.0, total = 1e-9;
  for (int k = 1; k <= kWaveSourceHarmonics; ++k) {
    weighted += k * frame[static_cast<size_t>(k - 1)];
    total += frame[static_cast<size_t>(k - 1)];
  }
  return weighted / total;
}

// Correlation of the log spectra (harmonics 1..64) of two frames.
double similarity(const Frame& a, const Frame& b) {
  double la[64], lb[64], ma = 0.0, mb = 0.0;
  for (int h = 0; h < 64; ++h) {
    la[h] = std::log10(1.0 + a[static_cast<size_t>(h)]),
    lb[h] = std::log10(1.0 + b[static_cast<size_t>(h)]);
    ma += la[h] / 64.0, mb += lb[h] / 64.0;
  }
  double ab = 0.0, aa = 0.0, bb = 0.0;
  for (int h = 0; h < 64; ++h) {
    ab += (la[h] - ma) * (lb[h] - mb), aa += (la[h] - ma) * (la[h] - ma),
        bb += (lb[h] - mb) * (lb[h] - mb);
  }
  return aa > 0.0 && bb > 0.0 ? ab / std::sqrt(aa * bb) : 0.0;
}

TEST(SpokenWaves, AreTheVoRowsNormalisedSoundingAndDistinct) {
  std::vector<int> rows;
  for (int w = 0; w < kWaveCount; ++w) {
    if (std::strncmp(kWaveDescriptors[w].displayName, "VO ", 3) == 0) rows.push_back(w);
  }
  std::vector<int> expected(std::begin(kPhrases), std::end(kPhrases));
  expected.insert(expected.end(), std::begin(kDrumLoops), std::end(kDrumLoops));
  std::sort(expected.begin(), expected.end());
  ASSERT_EQ(rows, expected);
  std::vector<std::vector<Frame>> all;
  for (int w : rows) {
    SCOPED_TRACE(kWaveDescriptors[w].displayName);
    ASSERT_EQ(waveSource(w).frameCount(), 256);
    const std::vector<Frame> frames = framesOf(w);
    double peak = 0.0;
    int sounding = 0;
    for (const Frame& frame : frames) {
      peak = std::max(peak, *std::max_element(frame.begin(), frame.end()));
      sounding += bandDb(frame, 1, 256) > 20.0 * std::log10(65535.0) - 50.0;  // within 50 dB
    }
    EXPECT_EQ(peak, 65535.0);
    EXPECT_GE(sounding, 200);  // pauses between words are allowed, silence is not
    for (const std::vector<Frame>& other : all) EXPECT_NE(frames, other);
    all.push_back(frames);
  }
}

TEST(SpokenWaves, PhrasesMoveThroughVoicedAndUnvoicedSoundsLikeSpeech) {
  for (int w : kPhrases) {
    SCOPED_TRACE(kWaveDescriptors[w].displayName);
    const std::vector<Frame> frames = framesOf(w);
    // Level: syllables rise and fall by tens of dB.
    double loudest = 0.0, quietest = 1e9;
    double lowCentroid = 1e9, highCentroid = 0.0;
    for (const Frame& frame : frames) {
      const double level = bandDb(frame, 1, 256);
      loudest = std::max(loudest, level), quietest = std::min(quietest, level);
      if (level > 20.0 * std::log10(65535.0) - 30.0) {
        lowCentroid = std::min(lowCentroid, centroid(frame));
        highCentroid = std::max(highCentroid, centroid(frame));
      }
    }
    EXPECT_GT(loudest - quietest, 25.0);
    // "+ stop" holds the last frame after the phrase: it must have died away.
    EXPECT_LT(bandDb(frames.back(), 1, 256), 20.0 * std::log10(65535.0) - 60.0);
    // Timbre: vowels and nasals hold their energy in the low harmonics,
    // consonants spread it far up; the brightness differs several times over.
    EXPECT_GT(highCentroid, 2.5 * lowCentroid) << lowCentroid << " " << highCentroid;
    // Movement: neighbouring frames are alike, frames a quarter apart are not.
    double near = 0.0, far = 0.0;
    for (int f = 0; f + 64 < kWaveSourceFrames; ++f) {
      near += similarity(frames[static_cast<size_t>(f)], frames[static_cast<size_t>(f + 1)]);
      far += similarity(frames[static_cast<size_t>(f)], frames[static_cast<size_t>(f + 64)]);
    }
    EXPECT_GT(near, far + 0.2 * (kWaveSourceFrames - 64)) << near << " " << far;
  }
}

TEST(SpokenWaves, DrumLoopsStartOnAKickRepeatSeamlesslyAndHitOnTheSteps) {
  for (int w : kDrumLoops) {
    SCOPED_TRACE(kWaveDescriptors[w].displayName);
    const std::vector<Frame> frames = framesOf(w);
    // Frame 255 is the moment frame 0 comes back ("++++" wraps there).
    EXPECT_GT(similarity(frames.front(), frames.back()), 0.95);
    // A kick on the one: the low harmonics peak within the first frames.
    double lowPeak = 0.0;
    for (const Frame& frame : frames) lowPeak = std::max(lowPeak, bandDb(frame, 1, 3));
    EXPECT_GT(bandDb(frames[0], 1, 3), lowPeak - 6.0);
    // Hats and snares: the top band rises sharply again and again, about
    // once per sixteenth (16 frames) where the pattern plays.
    int onsets = 0;
    for (int f = 2; f < kWaveSourceFrames; ++f) {
      onsets += bandDb(frames[static_cast<size_t>(f)], 64, 256) >
                bandDb(frames[static_cast<size_t>(f - 2)], 64, 256) + 9.0;
    }
    EXPECT_GE(onsets, 6);
  }
}

}  // namespace
}  // namespace sablevox
