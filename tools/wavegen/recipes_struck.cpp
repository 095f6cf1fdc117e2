// GT, PI and PE: plucked and struck notes. Frame 0 is the bright attack and
// the frames are the decay: each partial dies away exponentially, the higher
// ones faster (losses in strings and bars grow with frequency), so the note
// loses level and brightness as it goes.
#include <cmath>

#include "recipes.h"
#include "wave_math.h"

namespace sablevox::wavegen {
namespace {

// A string excited at `position` (0..0.5 of its length): the excitation
// misses the harmonics with a node there. `tilt`: spectral slope of the
// attack, amplitude k^-tilt. Decay rate of harmonic k over the whole wave,
// in nepers: base + perHarmonic * (k - 1)^power.
struct StringModel {
  double position;
  double tilt;
  double cutoff;  // softness of the plectrum or hammer, in harmonics
  double base;
  double perHarmonic;
  double power;
};

double stringExcitation(const StringModel& m, int k) {
  return (0.15 + std::fabs(detSin(kPi * k * m.position))) * detPow(k, -m.tilt) *
         lowpass(k, m.cutoff, 2);
}

double stringRate(const StringModel& m, int k) {
  return m.base + m.perHarmonic * detPow(k - 1, m.power);
}

double stringPartial(const StringModel& m, int k, double t) {
  return stringExcitation(m, k) * detExp(-stringRate(m, k) * t);
}

void pluck(Frames& f, const StringModel& m) {
  fillFrames(f, [&m](double t, int k) { return stringPartial(m, k, t); });
}

// Slapped bass: a thumb against the string near the neck end, very bright
// at first (the string hits the frets), the top gone within a few frames.
void slap1(Frames& f) {
  pluck(f, {0.22, 0.75, 90.0, 2.0, 0.5, 1.2});
}
void slap2(Frames& f) {
  pluck(f, {0.13, 0.6, 120.0, 1.6, 0.35, 1.3});
}

// Sitar: the curved bridge makes the string buzz, a band of strong upper
// partials that sweeps down as the note decays; the sympathetic strings
// keep a slow tail.
void sitar(Frames& f) {
  const StringModel m{0.1, 0.8, 120.0, 1.2, 0.02, 1.3};
  fillFrames(f, [&m](double t, int k) {
    const double centre = 5.3 - 2.2 * t;  // log2 of the buzz band, falling
    const double octaves = (detLog2(k) - centre) / 0.35;
    const double buzz = 1.0 + 3.0 * detExp(-0.5 * octaves * octaves) * detExp(-1.5 * t);
    return stringPartial(m, k, t) * buzz;
  });
}

// Saz: a metal-strung long-neck lute, plucked with a plectrum near the
// bridge: bright and twangy, a moderate decay.
void saz(Frames& f) {
  pluck(f, {0.07, 0.85, 100.0, 1.8, 0.06, 1.25});
}

// Piano: a felt hammer at 1/7 (low) or 1/8 of the string, each partial in
// two stages, the prompt sound and the long aftersound.
void piano(Frames& f, double position, double hammer, double tilt) {
  const StringModel m{position, tilt, hammer, 2.5, 0.12, 1.2};
  fillFrames(f, [&m](double t, int k) {
    const double rate = stringRate(m, k);
    return stringExcitation(m, k) * (0.7 * detExp(-rate * t) + 0.3 * detExp(-0.25 * rate * t));
  });
}

void piano1(Frames& f) {
  piano(f, 1.0 / 7.0, 30.0, 0.9);
}
void piano2(Frames& f) {
  piano(f, 1.0 / 8.0, 16.0, 1.0);
}

// Harpsichord: a quill near the end of the string; bright and slow to lose
// its brightness.
void harpsichord(Frames& f) {
  pluck(f, {0.08, 0.7, 140.0, 1.5, 0.03, 1.1});
}

// Struck modes at harmonic positions: harmonic, attack amplitude, decay
// rate over the wave, and a beat (rate over the wave, depth) for the
// warble of bells and bowls.
struct Mode {
  int harmonic;
  double amplitude;
  double rate;
  double beatRate;
  double beatDepth;
};

template <size_t N>
void struck(Frames& f, const Mode (&modes)[N], double click) {
  for (int frame = 0; frame < kFrames; ++frame) {
    const double t = frameTime(frame);
    for (const Mode& m : modes) {
      const double beat = 1.0 - m.beatDepth * (0.5 - 0.5 * detCos(2.0 * kPi * m.beatRate * t));
      f[frame][m.harmonic - 1] += m.amplitude * detExp(-m.rate * t) * beat;
    }
    // The strike itself: a burst of every harmonic, gone in a few frames.
    const double burst = click * detExp(-60.0 * t);
    for (int k = 1; k <= kHarmonics; ++k) f[frame][k - 1] += burst * lowpass(k, 48.0, 1) / k;
  }
}

// Church bell, tuned on harmonic 2 as the hum: prime, tierce, quint,
// nominal and upper partials, the hum ringing longest.
void bell(Frames& f) {
  static constexpr Mode kModes[] = {
      {1, 0.15, 1.5, 0.0, 0.0},  {2, 0.8, 1.2, 2.0, 0.2},    {4, 0.9, 1.8, 3.0, 0.25},
      {5, 0.6, 2.4, 1.5, 0.3},   {6, 0.35, 3.0, 0.0, 0.0},   {8, 1.0, 3.5, 2.5, 0.15},
      {10, 0.4, 5.0, 0.0, 0.0},  {12, 0.35, 6.0, 0.0, 0.0},  {16, 0.4, 8.0, 0.0, 0.0},
      {21, 0.2, 11.0, 0.0, 0.0}, {27, 0.15, 14.0, 0.0, 0.0},
  };
  struck(f, kModes, 0.4);
}

// Singing bowl struck with a soft mallet: few partials, long rings, slow
// beating between the split modes.
void bowl(Frames& f) {
  static constexpr Mode kModes[] = {
      {2, 1.0, 0.9, 1.5, 0.1},   {5, 0.7, 1.6, 2.0, 0.12},  {10, 0.45, 2.6, 2.5, 0.12},
      {16, 0.25, 4.0, 0.0, 0.0}, {23, 0.12, 6.0, 0.0, 0.0},
  };
  struck(f, kModes, 0.15);
}

// Marimba: a bar tuned so that its modes stand near 1 : 4 : 10, the upper
// ones short; the resonator tube holds the fundamental.
void marimba(Frames& f) {
  static constexpr Mode kModes[] = {
      {1, 1.0, 2.5, 0.0, 0.0},
      {4, 0.55, 7.0, 0.0, 0.0},
      {10, 0.3, 14.0, 0.0, 0.0},
      {17, 0.1, 22.0, 0.0, 0.0},
  };
  struck(f, kModes, 0.6);
}

// Drum pipe: a tube struck at its open end, closed at the other: odd
// harmonics, and a thump of the low even ones that dies at once.
void drumPipe(Frames& f) {
  static constexpr Mode kModes[] = {
      {1, 1.0, 3.0, 0.0, 0.0},   {3, 0.6, 4.5, 0.0, 0.0},   {5, 0.4, 6.0, 0.0, 0.0},
      {7, 0.25, 8.0, 0.0, 0.0},  {9, 0.15, 10.0, 0.0, 0.0}, {2, 0.4, 20.0, 0.0, 0.0},
      {4, 0.25, 25.0, 0.0, 0.0},
  };
  struck(f, kModes, 0.8);
}

constexpr RecipeEntry kRecipes[] = {
    {39, slap1},       {40, slap2}, {41, sitar}, {42, saz},     {43, piano1},   {44, piano2},
    {45, harpsichord}, {46, bowl},  {47, bell},  {48, marimba}, {76, drumPipe},
};

}  // namespace

std::span<const RecipeEntry> struckRecipes() {
  return kRecipes;
}

}  // namespace sablevox::wavegen
