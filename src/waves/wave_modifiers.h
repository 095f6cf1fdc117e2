// The 24 wave modifiers: spectral reworkings of a wave's 256 frames of 256
// harmonic amplitudes, applied before the tables are synthesised. Results are
// fixed: the same wave and step always give the same buffer. Worker thread.
#pragma once

namespace sablevox {

// Steps of Osc1Mod / Osc2Mod.
enum WaveModifierStep : int {
  kModOff,
  kModMixX2,
  kModMixX4,
  kModMixLayer,
  kModThinSquare,
  kModThinBell,
  kModThinWarm,
  kModShrink,
  kModSpread,
  kModUp,
  kModDown,
  kModMulti1,
  kModMulti2,
  kModFlange1,
  kModFlange2,
  kModHyper1,
  kModHyper2,
  kModFiltLpDown,
  kModFiltLpUp,
  kModTime16,
  kModTime32,
  kModTime37,
  kModTime64,
  kModTime107,
  kModSync,
};

// buffer: A[f][i] at f * 256 + i, frameCount frames (1..256). Values are not
// limited and may turn negative. A step outside 1..24, or frameCount outside
// 1..256, leaves the buffer alone. The steps that move harmonics along the
// time axis ("Time", the scramble of "Multi: Hyper") wrap over 256 frames and
// leave the time axis alone when the buffer has fewer.
void applyWaveModifier(float* buffer, int modifier, int frameCount);

// The comb shape: 1 at whole numbers, -1 at halves, period 1 (for x >= 0).
float foldedTriangle(float x);

// Moves each harmonic along the 256 frames by an offset of its own from a
// private generator that starts afresh on every call, and multiplies by gain.
void timeScramble(float* buffer, float gain);

}  // namespace sablevox
