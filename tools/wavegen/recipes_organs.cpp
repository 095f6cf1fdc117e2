// OR: organs. Tonewheel drawbars (harmonic 1 is the 16' bar, so the bars
// 16', 5 1/3', 8', 4', 2 2/3', 2', 1 3/5', 1 1/3', 1' are harmonics 1, 3,
// 2, 4, 6, 8, 10, 12, 16) and pipe ranks held over the frames.
#include "recipes.h"
#include "wave_math.h"

namespace sablevox::wavegen {
namespace {

constexpr int kDrawbarHarmonic[9] = {1, 3, 2, 4, 6, 8, 10, 12, 16};

// A registration as written on the bars, "888000000"; each step below 8 is
// 3 dB down and 0 is off. Sine tonewheels, with a trace of leakage into
// the next bar's wheel.
void drawbars(const char* setting, Spectrum& s, double gain) {
  for (int bar = 0; bar < 9; ++bar) {
    const int n = setting[bar] - '0';
    if (n == 0) continue;
    const double amplitude = gain * detPow(10.0, -3.0 * (8 - n) / 20.0);
    s[kDrawbarHarmonic[bar] - 1] += amplitude;
    if (bar < 8) s[kDrawbarHarmonic[bar + 1] - 1] += 0.01 * amplitude;
  }
}

// A walk through registrations around a full 8' bar, crossfaded.
void hammond(Frames& f) {
  constexpr const char* kSettings[] = {"658000000", "668400000", "648000300", "608000005",
                                       "408000656"};
  for (int frame = 0; frame < kFrames; ++frame) {
    const double x = frameTime(frame) * 4.0;
    const int i = x >= 4.0 ? 3 : static_cast<int>(x);
    const double u = smoothStep(x - i);
    drawbars(kSettings[i], f[frame], 1.0 - u);
    drawbars(kSettings[i + 1], f[frame], u);
  }
}

// Key click (a short burst of every harmonic) and the decaying third-harmonic
// percussion over a steady "888000000".
void clicks(Frames& f) {
  for (int frame = 0; frame < kFrames; ++frame) {
    const double t = frameTime(frame);
    drawbars("888000000", f[frame], 1.0);
    f[frame][5] += 1.2 * detExp(-7.0 * t);  // 2 2/3' percussion
    const double click = detExp(-90.0 * t);
    for (int k = 1; k <= kHarmonics; ++k) f[frame][k - 1] += 0.5 * click * lowpass(k, 60.0, 1);
  }
}

// One half of a tremolo cycle, quiet to loud; the default loop swings
// through it back and forth. The loud side is a touch brighter.
void tremolo(Frames& f) {
  for (int frame = 0; frame < kFrames; ++frame) {
    const double swell = smoothStep(frameTime(frame));
    drawbars("888808808", f[frame], 0.35 + 0.65 * swell);
    f[frame][15] *= 0.5 + 0.5 * swell;
  }
}

// Plucked organ: the registration decays like a plucked note, the upper bars
// first, down to a quiet tail.
void pizzicato(Frames& f) {
  for (int frame = 0; frame < kFrames; ++frame) {
    const double t = frameTime(frame);
    drawbars("888808008", f[frame], 1.0);
    for (int k = 1; k <= kHarmonics; ++k) f[frame][k - 1] *= detExp(-(2.0 + 0.35 * k) * t);
  }
}

// A pipe rank sounding at harmonic m: principal-like, a strong fundamental
// and falling upper partials.
void pipe(Spectrum& s, int m, double gain, double brightness) {
  for (int j = 1; m * j <= kHarmonics && j <= 8; ++j) {
    s[m * j - 1] += gain * detPow(j, -2.2 + brightness);
  }
}

// Church plenum: stopped 16' bourdon, principals 8', 4', 2 2/3', 2', and a
// mixture; each rank breathes slowly against the others, and the first
// frames hold the pipes' speech chiff.
void church(Frames& f) {
  constexpr int kRanks[] = {2, 4, 6, 8, 12, 16, 24};
  constexpr double kGains[] = {1.0, 0.7, 0.4, 0.45, 0.3, 0.25, 0.15};
  for (int frame = 0; frame < kFrames; ++frame) {
    const double t = frameTime(frame);
    Spectrum& s = f[frame];
    for (int k = 1; k <= 7; k += 2) s[k - 1] += 0.6 / (k * k);  // bourdon: odd only
    for (int r = 0; r < 7; ++r) {
      const double breath = 1.0 + 0.12 * detSin(2.0 * kPi * ((1.0 + 0.7 * r) * t + 0.13 * r));
      pipe(s, kRanks[r], kGains[r] * breath, 0.6);
    }
    const double chiff = 0.3 * detExp(-25.0 * t);
    for (int k = 9; k <= kHarmonics; ++k) s[k - 1] += chiff * lowpass(k, 80.0, 2) / k;
  }
}

// String organ of divided-down sawtooths, 8' and 4', under a slowly drifting
// ensemble shimmer.
void ice(Frames& f) {
  fillFrames(f, [](double t, int k) {
    const double saws = sawHarmonic(k) + (k % 2 ? 0.0 : 0.6 * sawHarmonic(k / 2));
    const double delay = 0.02 + 0.01 * detSin(2.0 * kPi * t);
    return saws * lowpass(k, 36.0, 2) * combFeedForward(k, delay, 0.3);
  });
}

constexpr RecipeEntry kRecipes[] = {
    {34, church}, {35, clicks}, {36, hammond}, {37, tremolo}, {38, pizzicato}, {75, ice},
};

}  // namespace

std::span<const RecipeEntry> organRecipes() {
  return kRecipes;
}

}  // namespace sablevox::wavegen
