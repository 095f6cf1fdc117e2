// OT and BR: blown instruments as additive models. Brass follows the rule
// that its spectrum brightens as it gets louder: harmonic k grows roughly
// as the k-th power of the lip pressure, drawn here as a tilt that flattens
// with the level.
#include "recipes.h"
#include "wave_math.h"

namespace sablevox::wavegen {
namespace {

// A brass note at level 0..1 with pitch `pitch` Hz: the tilt in nepers per
// harmonic goes from 1.5 (soft, nearly a sine) to 0.12 (loud, blaring), and
// the bell's radiation formant lifts the region near `formantHz`.
double brass(double level, int k, double pitch, double formantHz) {
  const double tilt = 1.5 - 1.38 * level;
  const double hz = pitch * k;
  return level * detExp(-tilt * (k - 1)) * (0.4 + formant(hz, formantHz, 900.0) * 0.6) *
         lowpass(hz, 9000.0, 2);
}

// Crescendo over the frames; the later half, where the default loop swings,
// carries a slow swell.
double crescendo(double t) {
  return 0.15 + 0.85 * smoothStep(t * 1.6) *
                    (1.0 - 0.06 * smoothStep(t * 2.0 - 1.0) * (1.0 + detCos(6.0 * kPi * t)));
}

void trumpet1(Frames& f) {
  fillFrames(f, [](double t, int k) { return brass(crescendo(t), k, 261.6, 1200.0); });
}

// Muted: the mute's narrow resonance near 1.8 kHz and a thin fundamental.
void trumpet2(Frames& f) {
  fillFrames(f, [](double t, int k) {
    const double hz = 261.6 * k;
    return brass(crescendo(t), k, 261.6, 1500.0) * formant(hz, 1800.0, 300.0) *
           highpass(hz, 500.0, 2);
  });
}

// A growl: the loud half roughens as the upper harmonics flutter.
void trumpetGrowl(Frames& f) {
  fillFrames(f, [](double t, int k) {
    const double growl = 1.0 + 0.35 * smoothStep(t * 2.0 - 0.8) * (k > 4 ? 1.0 : 0.0) *
                                   detSin(2.0 * kPi * (9.0 * t + 0.1 * k));
    return brass(crescendo(t), k, 261.6, 1100.0) * growl;
  });
}

// Saxophone: a conical bore speaks all harmonics; a reedy formant near
// 600 Hz and a second one near 1.7 kHz, brightening with the level.
void sax(Frames& f) {
  fillFrames(f, [](double t, int k) {
    const double level = crescendo(t);
    const double hz = 130.8 * k;
    const double tilt = 0.9 - 0.55 * level;
    return level * detExp(-tilt * detLog2(k) * 2.0) *
           (0.3 + 0.5 * formant(hz, 600.0, 400.0) + 0.4 * formant(hz, 1700.0, 700.0)) *
           lowpass(hz, 6000.0, 2);
  });
}

// Flute: a strong fundamental, weak upper harmonics; the first frames carry
// the breathy chiff of the attack, the later ones a gentle vibrato.
void flute(Frames& f) {
  fillFrames(f, [](double t, int k) {
    const double steady = detExp(-1.1 * (k - 1)) + (k == 2 ? 0.15 : 0.0);
    const double chiff = 0.25 * detExp(-18.0 * t) * detPow(k, -0.7) * lowpass(k, 24.0, 2);
    const double vibrato =
        1.0 + 0.12 * smoothStep(t * 3.0 - 1.0) * (k > 1 ? 1.0 : 0.3) * detSin(2.0 * kPi * 5.0 * t);
    return smoothStep(0.3 + t * 6.0) * steady * vibrato + chiff;
  });
}

// Didgeridoo: a low drone, odd harmonics stronger (a nearly closed tube), and
// the player's mouth formant rolling up and down through harmonics 6 to 20.
void didge(Frames& f) {
  fillFrames(f, [](double t, int k) {
    const double centre = 2.6 + 1.7 * (0.5 - 0.5 * detCos(2.0 * kPi * 1.5 * t));
    const double octaves = (detLog2(k) - centre) / 0.3;
    const double tube = k % 2 ? 1.0 : 0.45;
    return detPow(k, -1.3) * tube * (0.6 + 1.5 * detExp(-0.5 * octaves * octaves));
  });
}

constexpr RecipeEntry kRecipes[] = {
    {29, didge}, {30, flute}, {31, sax}, {32, trumpet1}, {33, trumpet2}, {74, trumpetGrowl},
};

}  // namespace

std::span<const RecipeEntry> windRecipes() {
  return kRecipes;
}

}  // namespace sablevox::wavegen
