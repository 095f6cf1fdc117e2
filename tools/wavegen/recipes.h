// The recipes of the built-in waves, one table per family. A recipe fills
// the frames of one wave (frame 0 only for a single-frame wave) with
// amplitudes in any unit; the caller normalises the wave afterwards.
#pragma once

#include <span>

#include "harmonic_shapes.h"

namespace sablevox::wavegen {

using Recipe = void (*)(Frames& frames);

struct RecipeEntry {
  int wave;  // index in the descriptor table
  Recipe recipe;
};

// STA and WV: single frames.
std::span<const RecipeEntry> basicRecipes();
// EL: pulse-width, multi-pulse, sawtooth-group, flange and sync sweeps.
std::span<const RecipeEntry> electronicRecipes();
// PD: phase-distortion spectra closing to a sine.
std::span<const RecipeEntry> phaseDistortionRecipes();
// SO: synthetic evolutions.
std::span<const RecipeEntry> syntheticRecipes();
// OT and BR: winds and brass.
std::span<const RecipeEntry> windRecipes();
// OR: organs.
std::span<const RecipeEntry> organRecipes();
// GT, PI and PE: plucked and struck notes decaying over the frames.
std::span<const RecipeEntry> struckRecipes();

// Fills every frame with the spectrum of frame time t = 0..1 that `shape`
// draws; most evolving recipes are a function of time alone.
template <typename Shape>
void fillFrames(Frames& frames, Shape shape) {
  for (int f = 0; f < kFrames; ++f) {
    for (int k = 1; k <= kHarmonics; ++k) frames[f][k - 1] = shape(frameTime(f), k);
  }
}

}  // namespace sablevox::wavegen
