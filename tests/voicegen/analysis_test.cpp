// The spoken-wave analysis on signals whose answers are known: transform,
// pitch, harmonic amplitudes of tones and of noise, and a made-up phrase.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include "voicegen/fft.h"
#include "voicegen/harmonic_analysis.h"
#include "voicegen/speech_analysis.h"

namespace sablevox::voicegen {
namespace {

constexpr double kRate = 22050.0;
constexpr double kTwoPi = 2.0 * std::numbers::pi;

// Deterministic white noise, uniform in -1..1 (variance 1/3).
struct Noise {
  uint32_t state = 12345;
  double next() {
    state = state * 1664525u + 1013904223u;
    return static_cast<double>(state >> 8) / 8388608.0 - 1.0;
  }
};

// Harmonics 1..count of f0 with amplitude amplitudeOf(k), for `seconds`.
template <typename Amplitude>
std::vector<double> tone(double f0, int count, double seconds, Amplitude amplitudeOf) {
  std::vector<double> x(static_cast<size_t>(seconds * kRate));
  for (size_t n = 0; n < x.size(); ++n) {
    for (int k = 1; k <= count; ++k) {
      x[n] += amplitudeOf(k) * std::sin(kTwoPi * k * f0 * static_cast<double>(n) / kRate + 0.3 * k);
    }
  }
  return x;
}

TEST(PitchAt, FindsTheFundamentalOfAToneAndNoneInNoise) {
  for (double f0 : {82.0, 131.7, 210.0}) {
    const std::vector<double> x = tone(f0, 12, 0.2, [](int k) { return 1.0 / k; });
    const Pitch p = pitchAt(x, kRate, 0.1 * kRate, 60.0, 400.0);
    EXPECT_NEAR(p.frequency, f0, 0.01 * f0);
    EXPECT_GT(p.clarity, 0.9);
  }
  // Only harmonics 2 and 3: the period is still that of the missing fundamental.
  const std::vector<double> x = tone(120.0, 3, 0.2, [](int k) { return k == 1 ? 0.0 : 1.0; });
  EXPECT_NEAR(pitchAt(x, kRate, 0.1 * kRate, 90.0, 160.0).frequency, 120.0, 1.2);
  Noise noise;
  std::vector<double> hiss(4410);
  for (double& v : hiss) v = noise.next();
  EXPECT_LT(pitchAt(hiss, kRate, 2205.0, 60.0, 400.0).clarity, 0.4);
}

TEST(VoicedHarmonics, MeasuresEachHarmonicAndCarriesTheEnvelopeToAnotherPitch) {
  const auto falling = [](int k) { return 0.5 / k; };
  const std::vector<double> x = tone(128.0, 80, 0.2, falling);
  const HarmonicFrame same = voicedHarmonics(x, kRate, 0.1 * kRate, 128.0, 128.0);
  for (int k = 1; k <= 80; ++k) EXPECT_NEAR(same[k - 1], falling(k), 0.02 * falling(k)) << k;
  // Read at 64 Hz: the odd harmonics fall halfway between measured ones,
  // and nothing is made above the source's Nyquist limit.
  const HarmonicFrame low = voicedHarmonics(x, kRate, 0.1 * kRate, 128.0, 64.0);
  EXPECT_NEAR(low[3], falling(2), 0.02 * falling(2));
  EXPECT_NEAR(low[2], 0.5 * (falling(1) + falling(2)), 0.03 * falling(1));
  EXPECT_NEAR(low[0], falling(1), 0.02);  // flat below the fundamental
  for (int k = 173; k <= kHarmonics; ++k) EXPECT_EQ(low[k - 1], 0.0) << k;
}

TEST(BandHarmonics, GiveASineItsAmplitudeAndNoiseItsPowerPerBand) {
  const std::vector<double> sine = tone(5 * 100.0, 1, 0.1, [](int) { return 0.5; });
  const HarmonicFrame s = bandHarmonics(sine, kRate, 0.05 * kRate, 100.0, 441, false);
  EXPECT_NEAR(s[4], 0.5, 0.03);
  EXPECT_LT(s[1], 0.05);
  EXPECT_LT(s[8], 0.05);
  // White noise of variance 1/3 holds (1/3) * 100 / 11025 of its power in a
  // 100 Hz band: a sine of that power has amplitude sqrt(2 * power).
  Noise noise;
  std::vector<double> hiss(2205);
  for (double& v : hiss) v = noise.next();
  const HarmonicFrame n = bandHarmonics(hiss, kRate, 1102.0, 100.0, 882, false);
  const double expected = std::sqrt(2.0 * (1.0 / 3.0) * 100.0 / 11025.0);
  double mean = 0.0;
  for (int k = 20; k < 100; ++k) mean += n[k - 1] / 80.0;
  EXPECT_NEAR(mean, expected, 0.15 * expected);
  EXPECT_EQ(n[110], 0.0);  // 11.1 kHz lies above the Nyquist limit
}

// A phrase in miniature: silence, a vowel at 130 Hz, a hiss, silence.
TEST(AnalyseSpeech, CoversTheSoundMeasuresVowelsByPitchAndHissByBands) {
  Audio audio;
  audio.sampleRate = kRate;
  const std::vector<double> vowel = tone(130.0, 80, 0.4, [](int k) { return k == 5 ? 0.3 : 0.02; });
  audio.samples.assign(static_cast<size_t>(0.3 * kRate), 0.0);
  audio.samples.insert(audio.samples.end(), vowel.begin(), vowel.end());
  Noise noise;
  for (int n = 0; n < 0.2 * kRate; ++n) audio.samples.push_back(0.2 * noise.next());
  audio.samples.resize(audio.samples.size() + static_cast<size_t>(0.3 * kRate), 0.0);

  const SpeechAnalysis a = analyseSpeech(audio, 130.0);
  EXPECT_NEAR(a.span.start / kRate, 0.29, 0.011);
  EXPECT_NEAR(a.span.end / kRate, 0.96, 0.011);
  EXPECT_NEAR(a.medianF0, 130.0, 1.0);
  ASSERT_EQ(a.frames.size(), static_cast<size_t>(kFrames));
  // The vowel fills about 0.4 / 0.67 of the frames, all voiced.
  EXPECT_NEAR(a.voicedFrames, 0.4 / 0.67 * kFrames, 12);
  const HarmonicFrame& v = a.frames[kFrames / 3];
  EXPECT_NEAR(v[4], 0.3, 0.01);
  EXPECT_NEAR(v[9], 0.02, 0.005);
  // The hiss is broad and level, and the end has died away.
  const HarmonicFrame& h = a.frames[kFrames * 8 / 10];
  EXPECT_GT(h[60], 0.3 * h[10]);
  EXPECT_LT(h[60], 3.0 * h[10]);
  double last = 0.0;
  for (double amplitude : a.frames.back()) last = std::max(last, amplitude);
  EXPECT_LT(last, 1e-4);
}

}  // namespace
}  // namespace sablevox::voicegen
