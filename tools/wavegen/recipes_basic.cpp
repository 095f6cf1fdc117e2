// STA and WV: the single-frame waves (other than the exact sawtooth, pulse
// and sine, which wave_content writes in integers).
#include <cmath>

#include "recipes.h"
#include "wave_math.h"

namespace sablevox::wavegen {
namespace {

template <typename Shape>
void fillSingle(Frames& frames, Shape shape) {
  for (int k = 1; k <= kHarmonics; ++k) frames[0][k - 1] = shape(k);
}

// A spike with a ringing resonance: nearly flat harmonics, rolled off high,
// with a resonant peak at the seventh harmonic.
void peek(Frames& f) {
  fillSingle(f, [](int k) {
    return detPow(k, -0.35) * lowpass(k, 40.0, 2) * (1.0 + 2.5 * bump(k, 7.0, 1.6));
  });
}

// Teeth every fifth harmonic over a bright slope; played two octaves down
// the teeth sit near the played pitch and the gaps make it hollow and nasal.
void comb(Frames& f) {
  fillSingle(f, [](int k) {
    const double tooth = 0.5 + 0.5 * detCos(2.0 * kPi * k / 5.0);
    return detPow(k, -0.7) * tooth * tooth;
  });
}

// Sparse, unevenly spaced partials like a struck metal plate; the load-time
// boost adds their octaves.
void platine(Frames& f) {
  constexpr int kPartials[] = {2, 5, 7, 11, 13, 17, 19, 23, 29, 37};
  constexpr double kLevels[] = {1.0, 0.8, 0.65, 0.7, 0.45, 0.5, 0.3, 0.35, 0.2, 0.15};
  f[0].fill(0.0);
  f[0][0] = 0.35;
  for (int i = 0; i < 10; ++i) f[0][kPartials[i] - 1] = kLevels[i];
}

void pulse25(Frames& f) {
  fillSingle(f, [](int k) { return pulseHarmonic(k, 0.25); });
}

void pulse12(Frames& f) {
  fillSingle(f, [](int k) { return pulseHarmonic(k, 0.125); });
}

// A bright ramp with a copy one eighth of a period later: notches at
// harmonics 4, 12, 20, ... and peaks at the multiples of 8.
void comb2(Frames& f) {
  fillSingle(f, [](int k) { return detPow(k, -0.6) * combFeedForward(k, 0.125, 1.0); });
}

// A sawtooth with its middle scooped out (about harmonics 4 to 16): a strong
// bottom and a bright top with a hollow between.
void sawHollow(Frames& f) {
  fillSingle(f, [](int k) {
    const double octaves = detLog2(k / 8.0) / 0.8;
    return sawHarmonic(k) * (1.0 - 0.95 * detExp(-0.5 * octaves * octaves));
  });
}

// The vowel "oh" on a glottal source at 220 Hz: formant cascade at 500, 850,
// 2500 and 3300 Hz.
void ohh(Frames& f) {
  fillSingle(f, [](int k) {
    const double hz = 220.0 * k;
    return sawHarmonic(k) * formant(hz, 500.0, 80.0) * formant(hz, 850.0, 90.0) *
           formant(hz, 2500.0, 120.0) * formant(hz, 3300.0, 160.0) * lowpass(hz, 5000.0, 2);
  });
}

constexpr RecipeEntry kRecipes[] = {
    {5, peek},     {6, comb},   {7, platine},    {59, pulse25},
    {60, pulse12}, {61, comb2}, {62, sawHollow}, {63, ohh},
};

}  // namespace

std::span<const RecipeEntry> basicRecipes() {
  return kRecipes;
}

}  // namespace sablevox::wavegen
