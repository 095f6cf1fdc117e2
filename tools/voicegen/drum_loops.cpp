// The four drum loops: one bar of our own synthesised kick, snare, hats and
// tom, analysed into 256 frames that "++++" at "BPM /4" replays in time.
#include "drum_loops.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <string_view>

#include "speech_analysis.h"

namespace sablevox::voicegen {
namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;
constexpr int kSteps = 16;  // sixteenth notes

enum Instrument { kKick, kSnare, kClosedHat, kOpenHat, kTom, kInstruments };

// A step string per instrument: 'x' a full hit, 'o' a soft one, '.' none.
struct Pattern {
  std::string_view steps[kInstruments];
};

constexpr Pattern kPatterns[kDrumPatterns] = {
    // Four to the floor with off-beat open hats.
    {{"x...x...x...x...", "....x.......x...", "xx.xxx.xxx.xxx.x", "..x...x...x...x.",
      "................"}},
    // A broken beat: syncopated kick, ghost snares, straight eighths.
    {{"x.x.......x.....", "....x..o.o..x..o", "x.x.x.x.x.x.x.x.", "................",
      "................"}},
    // Dotted kick, sixteenth hats with accents, a tom fill at the end.
    {{"x..x..x...x..x..", "....x.......x...", "xoxoxoxoxoxoxoxo", "................",
      "............ox.x"}},
    // Half-time feel with toms in the second half.
    {{"x.....x.x.....x.", "....x.......x.o.", "x.x.x.x.x.x.x.x.", ".......x.......x",
      ".........x.x...."}},
};

// Deterministic white noise in -1..1.
struct Noise {
  uint32_t state = 22222;
  double next() {
    state = state * 1664525u + 1013904223u;
    return static_cast<double>(state >> 8) / 8388608.0 - 1.0;
  }
};

// A second-order filter (bilinear design), high-pass or band-pass.
struct Biquad {
  double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0, x1 = 0, x2 = 0, y1 = 0, y2 = 0;
  void init(bool bandPass, double hz, double q) {
    const double w = kTwoPi * hz / kDrumSampleRate, alpha = std::sin(w) / (2.0 * q);
    const double a0 = 1.0 + alpha, c = std::cos(w);
    if (bandPass) {
      b0 = alpha / a0, b1 = 0.0, b2 = -alpha / a0;
    } else {
      b0 = (1.0 + c) / 2.0 / a0, b1 = -(1.0 + c) / a0, b2 = b0;
    }
    a1 = -2.0 * c / a0, a2 = (1.0 - alpha) / a0;
  }
  double process(double x) {
    const double y = b0 * x + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2;
    x2 = x1, x1 = x, y2 = y1, y1 = y;
    return y;
  }
};

// Adds one hit of `instrument` at sample `at` into `out`.
void addHit(Instrument instrument, double velocity, size_t at, std::vector<double>& out,
            Noise& noise) {
  const size_t length = static_cast<size_t>(0.6 * kDrumSampleRate);
  Biquad filter;
  if (instrument == kSnare) filter.init(true, 1800.0, 0.7);
  if (instrument == kClosedHat || instrument == kOpenHat) filter.init(false, 7000.0, 0.7);
  double phase = 0.0;
  for (size_t n = 0; n < length && at + n < out.size(); ++n) {
    const double t = static_cast<double>(n) / kDrumSampleRate;
    double v = 0.0;
    switch (instrument) {
      case kKick: {  // a sine falling from 150 to 50 Hz, and a click
        phase += kTwoPi * (50.0 + 100.0 * std::exp(-t / 0.03)) / kDrumSampleRate;
        v = std::sin(phase) * std::exp(-t / 0.25) + 0.3 * noise.next() * std::exp(-t / 0.002);
        break;
      }
      case kSnare:  // two drum-head modes and band-passed rattle
        v = 0.5 * (std::sin(kTwoPi * 185.0 * t) + 0.5 * std::sin(kTwoPi * 330.0 * t)) *
                std::exp(-t / 0.06) +
            1.6 * filter.process(noise.next()) * std::exp(-t / 0.12);
        break;
      case kClosedHat:
        v = 0.5 * filter.process(noise.next()) * std::exp(-t / 0.025);
        break;
      case kOpenHat:
        v = 0.4 * filter.process(noise.next()) * std::exp(-t / 0.2);
        break;
      case kTom:
        phase += kTwoPi * (95.0 + 40.0 * std::exp(-t / 0.08)) / kDrumSampleRate;
        v = 0.8 * std::sin(phase) * std::exp(-t / 0.3);
        break;
      default:
        break;
    }
    out[at + n] += velocity * v;
  }
}

}  // namespace

Audio drumLoop(int pattern) {
  const Pattern& p = kPatterns[(pattern - 1) % kDrumPatterns];
  const size_t bar = static_cast<size_t>(4.0 * 60.0 / kDrumTempo * kDrumSampleRate);
  std::vector<double> twoBars(2 * bar, 0.0);
  Noise noise;
  for (int i = 0; i < kInstruments; ++i) {
    for (int s = 0; s < kSteps; ++s) {
      const char c = p.steps[i][static_cast<size_t>(s)];
      if (c == '.') continue;
      addHit(static_cast<Instrument>(i), c == 'x' ? 1.0 : 0.45,
             static_cast<size_t>(s) * bar / kSteps, twoBars, noise);
    }
  }
  Audio audio;
  audio.sampleRate = kDrumSampleRate;
  audio.samples.assign(twoBars.begin(), twoBars.begin() + static_cast<long>(bar));
  for (size_t n = 0; n < bar; ++n) audio.samples[n] += twoBars[bar + n];
  double peak = 0.0;
  for (double v : audio.samples) peak = std::max(peak, std::abs(v));
  for (double& v : audio.samples) v *= 0.9 / peak;
  return audio;
}

std::vector<HarmonicFrame> analyseDrumLoop(const Audio& bar, double fRef) {
  // 23 ms, centred a quarter of that after the frame's moment: a frame is
  // heard from its moment on, so a hit right there belongs to it in full.
  constexpr int kWindow = 1024;
  std::vector<HarmonicFrame> frames;
  const double length = static_cast<double>(bar.samples.size());
  for (int f = 0; f < kFrames; ++f) {
    const double center = length * f / (kFrames - 1) + kWindow / 4;
    frames.push_back(bandHarmonics(bar.samples, bar.sampleRate, center, fRef, kWindow, true));
  }
  return frames;
}

}  // namespace sablevox::voicegen
