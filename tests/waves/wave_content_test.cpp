// The designed content of the built-in waves, read from the embedded
// records: what each family's name promises must hold of its spectra.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "data/wave_descriptors.h"
#include "data/wave_sources.h"

namespace sablevox {
namespace {

using Frame = std::vector<double>;

Frame frameOf(int wave, int frame) {
  const WaveSource source = waveSource(wave);
  Frame a(kWaveSourceHarmonics);
  for (int h = 0; h < kWaveSourceHarmonics; ++h) {
    a[static_cast<size_t>(h)] = source.amplitude(frame * kWaveSourceHarmonics + h);
  }
  return a;
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

}  // namespace
}  // namespace sablevox
