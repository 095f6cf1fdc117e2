// SO: synthetic evolutions: stepped sines, random sine clouds, digital
// steps, shape morphs, feedback FM, filter and formant sweeps.
#include <array>
#include <vector>

#include "recipes.h"
#include "wave_math.h"

namespace sablevox::wavegen {
namespace {

// A random curve through `Points` values drawn at even spacing over t = 0..1,
// joined by raised-cosine steps (smooth, no overshoot).
template <int Points>
class RandomCurve {
 public:
  RandomCurve(Random& random, double low, double high) {
    for (double& v : values_) v = random.range(low, high);
  }
  double at(double t) const {
    const double x = t * (Points - 1);
    int i = static_cast<int>(x);
    if (i >= Points - 1) i = Points - 2;
    const double u = smoothStep(x - i);
    return values_[static_cast<size_t>(i)] * (1.0 - u) + values_[static_cast<size_t>(i) + 1] * u;
  }

 private:
  std::array<double, Points> values_{};
};

// One harmonic per stretch of 16 frames: an arpeggio up the harmonic
// series and back down.
void sines(Frames& f) {
  constexpr int kSteps[16] = {1, 2, 3, 4, 5, 6, 8, 10, 12, 16, 12, 8, 6, 4, 3, 2};
  for (int frame = 0; frame < kFrames; ++frame) f[frame][kSteps[frame / 16] - 1] = 1.0;
}

// A cloud of sines, each swelling and fading on its own random curve; the
// curve is cubed so that only a few partials sound at a time.
void sineCloud(Frames& f, uint64_t seed, int partials, int lowest, int highest) {
  Random random(seed);
  for (int p = 0; p < partials; ++p) {
    const int k = lowest + random.below(highest - lowest + 1);
    const RandomCurve<9> swell(random, 0.0, 1.0);
    const double weight = detPow(k, -0.3);
    for (int frame = 0; frame < kFrames; ++frame) {
      const double s = swell.at(frameTime(frame));
      f[frame][k - 1] += weight * s * s * s;
    }
  }
  // A quiet fundamental keeps the pitch when the cloud thins out.
  for (int frame = 0; frame < kFrames; ++frame) f[frame][0] += 0.15;
}

void ambient1(Frames& f) {
  sineCloud(f, 0x51e5'0001, 14, 1, 24);
}
void ambient3(Frames& f) {
  sineCloud(f, 0x51e5'0003, 12, 2, 40);
}

// A soft, low-passed sawtooth under a slow flanger.
void ambient2(Frames& f) {
  fillFrames(f, [](double t, int k) {
    const double delay = 0.01 + 0.15 * smoothStep(t);
    return sawHarmonic(k) * lowpass(k, 20.0, 2) * combFeedForward(k, delay, 0.85);
  });
}

// A sawtooth with three resonances wandering on random paths.
void ambient4(Frames& f) {
  Random random(0xa11e'0004);
  const RandomCurve<7> paths[3] = {{random, 1.5, 4.0}, {random, 2.5, 5.0}, {random, 3.5, 6.0}};
  fillFrames(f, [&](double t, int k) {
    double lift = 0.3;
    for (const auto& path : paths) {
      const double octaves = (detLog2(k) - path.at(t)) / 0.12;
      lift += 4.0 * detExp(-0.5 * octaves * octaves);
    }
    return sawHarmonic(k) * lift;
  });
}

// Stretches of 8 frames, each a random 16-step waveform: hard digital
// timbres that jump rather than glide.
void digital(Frames& f) {
  Random random(0xd161'7a1);
  std::vector<Segment> steps(16);
  for (int block = 0; block < kFrames / 8; ++block) {
    for (int s = 0; s < 16; ++s) {
      const double level = (random.below(5) - 2) * 0.5;
      steps[static_cast<size_t>(s)] = {s / 16.0, (s + 1) / 16.0, level, level};
    }
    harmonicsOfSegments(steps, f[block * 8]);
    for (int i = 1; i < 8; ++i) f[block * 8 + i] = f[block * 8];
  }
}

// Sine, triangle, sawtooth, square, 25 % and 10 % pulse in turn, each
// crossfaded into the next.
void morph(Frames& f) {
  fillFrames(f, [](double t, int k) {
    auto shape = [k](int i) {
      switch (i) {
        case 0:
          return k == 1 ? 1.0 : 0.0;
        case 1:
          return triangleHarmonic(k);
        case 2:
          return sawHarmonic(k);
        case 3:
          return squareHarmonic(k);
        case 4:
          return pulseHarmonic(k, 0.25) / pulseHarmonic(1, 0.25);
        default:
          return pulseHarmonic(k, 0.1) / pulseHarmonic(1, 0.1);
      }
    };
    const double x = t * 5.0;
    const int i = x >= 5.0 ? 4 : static_cast<int>(x);
    const double u = smoothStep(x - i);
    return shape(i) * (1.0 - u) + shape(i + 1) * u;
  });
}

// Organ registrations of octaves, fifths and thirds crossfading in turn.
void multi(Frames& f) {
  constexpr int kRanks[5][4] = {
      {1, 2, 4, 0}, {1, 3, 6, 0}, {2, 3, 4, 8}, {1, 5, 10, 0}, {1, 4, 8, 16}};
  fillFrames(f, [&](double t, int k) {
    double sum = 0.0;
    for (int r = 0; r < 5; ++r) {
      const double weight = bump(t, r / 4.0, 0.16);
      for (int m : kRanks[r]) {
        // A pipe: fundamental with a weak octave and twelfth.
        if (m == 0 || k % m) continue;
        const int j = k / m;
        sum += weight * (j == 1 ? 1.0 : j == 2 ? 0.25 : j == 3 ? 0.1 : 0.0);
      }
    }
    return sum;
  });
}

// Metallic partials high in the series, each pulsing at its own rate.
void platine(Frames& f) {
  constexpr int kPartials[] = {5, 9, 14, 20, 27, 33, 41, 52, 63, 77};
  Random random(0x91a7'1e);
  for (int p = 0; p < 10; ++p) {
    const double rate = random.range(0.5, 3.5);
    const double phase = random.uniform();
    const double weight = detPow(kPartials[p], -0.15);
    for (int frame = 0; frame < kFrames; ++frame) {
      const double c = 0.5 + 0.5 * detCos(2.0 * kPi * (rate * frameTime(frame) + phase));
      f[frame][kPartials[p] - 1] = weight * (0.25 + c);
    }
  }
}

// Feedback FM: a sine modulating its own phase by the average of its last
// two outputs, the feedback rising from 0 (sine) past the sawtooth-like 1
// to a rough, noisy 1.5.
void feedbackFm(Frames& f) {
  constexpr int kCycle = 2048;
  std::vector<double> cycle(kCycle);
  for (int frame = 0; frame < kFrames; ++frame) {
    const double beta = 1.5 * detPow(frameTime(frame), 0.6);
    double y1 = 0.0;
    double y2 = 0.0;
    for (int pass = 0; pass < 4; ++pass) {  // the last pass is the steady cycle
      for (int i = 0; i < kCycle; ++i) {
        const double y = detSin(2.0 * kPi * i / kCycle + beta * 0.5 * (y1 + y2));
        y2 = y1;
        y1 = y;
        cycle[static_cast<size_t>(i)] = y;
      }
    }
    harmonicsOfCycle(cycle.data(), kCycle, f[frame]);
  }
}

// Acid bass: a sawtooth through a resonant four-pole low-pass whose cut-off
// falls from harmonic 48 to about 3 on an exponential decay.
void acid(Frames& f) {
  fillFrames(f, [](double t, int k) {
    const double cutoff = 2.5 + 45.5 * detExp(-4.0 * t);
    return sawHarmonic(k) * ladderLowpass(k, cutoff, 3.3) * (1.0 - 0.4 * t);
  });
}

// Formant cascade on a sawtooth at `pitch` Hz, with formants from F1 and F2.
double vowel(double pitch, int k, double f1, double f2) {
  const double hz = pitch * k;
  return sawHarmonic(k) * formant(hz, f1, 90.0) * formant(hz, f2, 120.0) *
         formant(hz, 2600.0, 180.0) * lowpass(hz, 4500.0, 2);
}

// "Miaou": i, a, then o-u, as a glide of the first two formants.
void siaou(Frames& f) {
  fillFrames(f, [](double t, int k) {
    const double a = smoothStep(t * 2.0);
    const double u = smoothStep(t * 2.0 - 1.0);
    const double f1 = 300.0 + 450.0 * a - 400.0 * u;
    const double f2 = 2300.0 - 1200.0 * a - 400.0 * u;
    return vowel(100.0, k, f1, f2);
  });
}

// Random spectra, new every 4 frames and glided between, steep above 40.
void electro2(Frames& f) {
  Random random(0xe1ec'7202);
  Spectrum from{};
  Spectrum to{};
  auto draw = [&random](Spectrum& s) {
    for (int k = 1; k <= kHarmonics; ++k) {
      const double r = random.uniform();
      s[static_cast<size_t>(k - 1)] = r * r * detPow(k, -0.5) * lowpass(k, 40.0, 3);
    }
  };
  draw(to);
  for (int frame = 0; frame < kFrames; ++frame) {
    if (frame % 4 == 0) {
      from = to;
      draw(to);
    }
    const double u = (frame % 4) / 4.0;
    for (int h = 0; h < kHarmonics; ++h) f[frame][h] = from[h] * (1.0 - u) + to[h] * u;
  }
}

// "Bwaum": a resonant band sweeping up from harmonic 2 to 24 and back.
void beaum(Frames& f) {
  fillFrames(f, [](double t, int k) {
    const double centre = 1.0 + 3.6 * detSin(kPi * t);  // log2 of the band centre
    const double octaves = (detLog2(k) - centre) / 0.25;
    return sawHarmonic(k) * (0.15 + 3.0 * detExp(-0.5 * octaves * octaves));
  });
}

constexpr RecipeEntry kRecipes[] = {
    {19, sines},    {20, ambient1}, {21, ambient2},   {22, digital}, {23, morph},
    {24, multi},    {25, platine},  {26, feedbackFm}, {27, acid},    {28, siaou},
    {70, ambient3}, {71, ambient4}, {72, electro2},   {73, beaum},
};

}  // namespace

std::span<const RecipeEntry> syntheticRecipes() {
  return kRecipes;
}

}  // namespace sablevox::wavegen
