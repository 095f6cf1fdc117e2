// The designed content of the built-in waves, read from the embedded
// records: what each family's name promises must hold of its spectra, the
// spoken phrases moving like speech and the drum loops repeating seamlessly
// with hits on the beats. The records' bytes are pinned in wave_data_test.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "data/wave_descriptors.h"
#include "data/wave_sources.h"

namespace sablevox {
namespace {

constexpr int kPhrases[] = {49, 50, 51, 52, 53, 54, 55, 56, 77, 78, 79, 80, 81, 82};
constexpr int kDrumLoops[] = {57, 58, 83, 84};

using Frame = std::vector<double>;

Frame frameOf(int wave, int frame) {
  const WaveSource source = waveSource(wave);
  Frame a(kWaveSourceHarmonics);
  for (int h = 0; h < kWaveSourceHarmonics; ++h) {
    a[static_cast<size_t>(h)] = source.amplitude(frame * kWaveSourceHarmonics + h);
  }
  return a;
}

std::vector<Frame> framesOf(int wave) {
  std::vector<Frame> frames;
  for (int f = 0; f < kWaveSourceFrames; ++f) frames.push_back(frameOf(wave, f));
  return frames;
}

double energy(const Frame& a) {
  double sum = 0.0;
  for (double v : a) sum += v * v;
  return sum;
}

// Amplitude-weighted mean harmonic number: the brightness of a frame.
double centroid(const Frame& a) {
  double sum = 0.0;
  double weighted = 0.0;
  for (size_t h = 0; h < a.size(); ++h) {
    sum += a[h];
    weighted += a[h] * static_cast<double>(h + 1);
  }
  return sum > 0.0 ? weighted / sum : 0.0;
}

// Energy of harmonics first..last (1-based), in dB of a full-scale harmonic.
double bandDb(const Frame& frame, int first, int last) {
  double sum = 1.0;  // keeps silence finite, at 0 dB
  for (int k = first; k <= last; ++k)
    sum += frame[static_cast<size_t>(k - 1)] * frame[static_cast<size_t>(k - 1)];
  return 10.0 * std::log10(sum);
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

int loudest(const Frame& a) {
  size_t best = 0;
  for (size_t h = 1; h < a.size(); ++h) best = a[h] > a[best] ? h : best;
  return static_cast<int>(best) + 1;
}

bool named(int wave, const char* prefix) {
  return std::strncmp(kWaveDescriptors[wave].displayName, prefix, std::strlen(prefix)) == 0;
}

std::vector<int> wavesNamed(std::initializer_list<const char*> prefixes) {
  std::vector<int> waves;
  for (int w = 0; w < kWaveCount; ++w) {
    for (const char* p : prefixes) {
      if (named(w, p)) waves.push_back(w);
    }
  }
  return waves;
}

int waveNamed(const char* name) {
  for (int w = 0; w < kWaveCount; ++w) {
    if (std::string(kWaveDescriptors[w].displayName) == name) return w;
  }
  return -1;
}

TEST(WaveContent, EveryWaveReachesFullScaleAndOnlySpeechFallsSilent) {
  for (int w = 0; w < kWaveCount; ++w) {
    const int frames = waveSource(w).frameCount();
    double peak = 0.0;
    for (int f = 0; f < frames; ++f) {
      const Frame a = frameOf(w, f);
      for (double v : a) peak = v > peak ? v : peak;
      // A silent frame in a loop is a drop-out; spoken phrases have pauses.
      if (!named(w, "VO ")) {
        ASSERT_GT(energy(a), 0.0) << kWaveDescriptors[w].displayName << f;
      }
    }
    EXPECT_EQ(peak, 65535.0) << kWaveDescriptors[w].displayName;
  }
}

TEST(WaveContent, PulseWavesMissTheHarmonicsTheirWidthDivides) {
  const struct {
    const char* name;
    int period;  // 1 / width
  } pulses[] = {{"WV Pulse 25%%", 4}, {"WV Pulse 12%%", 8}};
  for (const auto& pulse : pulses) {
    const Frame a = frameOf(waveNamed(pulse.name), 0);
    for (int k = 1; k <= kWaveSourceHarmonics; ++k) {
      if (k % pulse.period == 0) {
        ASSERT_EQ(a[static_cast<size_t>(k - 1)], 0.0) << pulse.name << " " << k;
      } else {
        ASSERT_GT(a[static_cast<size_t>(k - 1)], 0.0) << pulse.name << " " << k;
      }
    }
    EXPECT_EQ(loudest(a), 1) << pulse.name;
  }
}

// Frame 0 full, frame 255 the fundamental alone, and the brightness falls
// all the way like a closing filter.
TEST(WaveContent, PhaseDistortionWavesCloseToTheFundamental) {
  const std::vector<int> waves = wavesNamed({"PD "});
  ASSERT_EQ(waves.size(), 4u);
  for (int w : waves) {
    const char* name = kWaveDescriptors[w].displayName;
    const Frame first = frameOf(w, 0);
    int audible = 0;  // harmonics within 60 dB of the loudest
    for (double v : first) audible += v * 1000.0 >= 65535.0;
    EXPECT_GE(audible, 32) << name;
    const Frame last = frameOf(w, 255);
    EXPECT_GT(last[0], 0.0) << name;
    EXPECT_EQ(energy(last), last[0] * last[0]) << name;
    for (int f = 16; f < 256; f += 16) {
      EXPECT_LE(centroid(frameOf(w, f)), centroid(frameOf(w, f - 16)) * 1.01) << name << f;
    }
  }
}

TEST(WaveContent, SyncedSawClimbsFromTheFundamentalToTheNinth) {
  const int w = waveNamed("EL Synced");
  EXPECT_EQ(loudest(frameOf(w, 0)), 1);
  EXPECT_EQ(loudest(frameOf(w, 255)), 9);
  for (int f = 1; f < 256; ++f) {
    ASSERT_GE(loudest(frameOf(w, f)), loudest(frameOf(w, f - 1))) << f;
  }
  // Frame 0 is a sawtooth: harmonic k at 1/k of the fundamental.
  const Frame saw = frameOf(w, 0);
  for (int k = 2; k <= 16; ++k)
    EXPECT_NEAR(saw[static_cast<size_t>(k - 1)] * k, saw[0], 0.01 * saw[0]);
}

TEST(WaveContent, SoSinesHoldsOneHarmonicAtATimeAndMovesOnInStretches) {
  const int w = waveNamed("SO Sines");
  int changes = 0;
  int run = 0;
  int previous = 0;
  for (int f = 0; f < 256; ++f) {
    const Frame a = frameOf(w, f);
    const int k = loudest(a);
    ASSERT_EQ(energy(a), a[static_cast<size_t>(k - 1)] * a[static_cast<size_t>(k - 1)]) << f;
    if (f > 0 && k != previous) {
      EXPECT_GE(run, 8) << "a stretch ends at frame " << f;
      ++changes;
      run = 0;
    }
    ++run;
    previous = k;
  }
  EXPECT_GE(changes, 8);
}

// The frames of a plucked or struck wave are the decay of one note.
TEST(WaveContent, PluckedAndStruckWavesLoseLevelAndBrightness) {
  const std::vector<int> waves = wavesNamed({"GT ", "PI ", "PE "});
  ASSERT_EQ(waves.size(), 11u);
  for (int w : waves) {
    const char* name = kWaveDescriptors[w].displayName;
    for (int f = 16; f < 256; f += 16) {
      const Frame earlier = frameOf(w, f - 16);
      const Frame later = frameOf(w, f);
      EXPECT_LT(energy(later), energy(earlier)) << name << " " << f;
      EXPECT_LE(centroid(later), centroid(earlier) * 1.01) << name << " " << f;
    }
    const Frame attack = frameOf(w, 0);
    const Frame tail = frameOf(w, 255);
    EXPECT_LT(energy(tail), energy(attack) / 10.0) << name;
    EXPECT_LT(centroid(tail), centroid(attack) * 0.8) << name;
  }
}

TEST(WaveContent, BrassIsBrighterWhereItIsLouder) {
  const std::vector<int> waves = wavesNamed({"BR "});
  ASSERT_EQ(waves.size(), 4u);
  for (int w : waves) {
    int quiet = 0;
    int loud = 0;
    for (int f = 1; f < 256; ++f) {
      const double e = energy(frameOf(w, f));
      if (e < energy(frameOf(w, quiet))) quiet = f;
      if (e > energy(frameOf(w, loud))) loud = f;
    }
    EXPECT_GT(centroid(frameOf(w, loud)), centroid(frameOf(w, quiet)) * 1.5)
        << kWaveDescriptors[w].displayName;
  }
}

// Full scale is checked for every wave above.
TEST(SpokenWaves, AreTheVoRowsSoundingAndDistinct) {
  std::vector<int> expected(std::begin(kPhrases), std::end(kPhrases));
  expected.insert(expected.end(), std::begin(kDrumLoops), std::end(kDrumLoops));
  std::sort(expected.begin(), expected.end());
  ASSERT_EQ(wavesNamed({"VO "}), expected);
  std::vector<std::vector<Frame>> all;
  for (int w : expected) {
    SCOPED_TRACE(kWaveDescriptors[w].displayName);
    ASSERT_EQ(waveSource(w).frameCount(), 256);
    const std::vector<Frame> frames = framesOf(w);
    int sounding = 0;
    for (const Frame& frame : frames) {
      sounding += bandDb(frame, 1, 256) > 20.0 * std::log10(65535.0) - 50.0;  // within 50 dB
    }
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
    double top = 0.0, bottom = 1e9;
    double lowCentroid = 1e9, highCentroid = 0.0;
    for (const Frame& frame : frames) {
      const double level = bandDb(frame, 1, 256);
      top = std::max(top, level), bottom = std::min(bottom, level);
      if (level > 20.0 * std::log10(65535.0) - 30.0) {
        lowCentroid = std::min(lowCentroid, centroid(frame));
        highCentroid = std::max(highCentroid, centroid(frame));
      }
    }
    EXPECT_GT(top - bottom, 25.0);
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
