// Spectra of the built-in waves: dispatch to the family recipes and
// normalisation to 16-bit amplitudes.
//
// "off", "STA Noise", "STA Saw", "STA Pulse" and "STA Sine" hold exact
// integer spectra; the spoken waves come from their analysed data; every
// other wave comes from a recipe in double precision and is scaled so that
// its largest amplitude over all frames is 65535.
#include "wave_content.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "recipes.h"
#include "spoken_waves.h"

namespace sablevox::wavegen {
namespace {

constexpr int kSingleFrame[] = {0, 1, 2, 3, 4, 5, 6, 7, 59, 60, 61, 62, 63};

// 65535 / k, halves rounded down: 65535, 32767, 21845, 16384, 13107, ...
uint16_t saw(int k) {
  return static_cast<uint16_t>((2 * 65535 + k - 1) / (2 * k));
}

bool exactFrame(int wave, uint16_t* a) {
  if (wave < 0 || wave > 4) return false;
  for (int k = 1; k <= kHarmonics; ++k) {
    if (wave == 4) {
      a[k - 1] = k == 1 ? 65535 : 0;
    } else {
      a[k - 1] = (wave == 3 && k % 2 == 0) ? 0 : saw(k);
    }
  }
  return true;
}

Recipe findRecipe(int wave) {
  for (auto family : {basicRecipes, electronicRecipes, phaseDistortionRecipes, syntheticRecipes,
                      windRecipes, organRecipes, struckRecipes}) {
    for (const RecipeEntry& entry : family()) {
      if (entry.wave == wave) return entry.recipe;
    }
  }
  return nullptr;
}

// Scales a designed wave to 16 bits, its loudest amplitude becoming 65535.
// A negative, non-finite or all-zero amplitude set is a recipe fault and
// stops the generator.
void normalise(int wave, const Frames& in, int frameCount, Frames& out) {
  double peak = 0.0;
  for (int f = 0; f < frameCount; ++f) {
    for (double a : in[f]) {
      if (!(a >= 0.0 && a < 1e300)) {
        std::fprintf(stderr, "wavegen: wave %d has amplitude %g\n", wave, a);
        std::exit(1);
      }
      peak = std::fmax(peak, a);
    }
  }
  if (!(peak > 0.0)) {
    std::fprintf(stderr, "wavegen: wave %d is silent\n", wave);
    std::exit(1);
  }
  const double scale = 65535.0 / peak;
  for (int f = 0; f < frameCount; ++f) {
    for (int h = 0; h < kHarmonics; ++h) {
      const double v = in[f][h] * scale;
      out[f][h] = std::floor(std::fmin(v, 65535.0) + 0.5);
    }
  }
}

// The generator asks for frames in order, wave by wave: one designed wave is
// kept at a time.
struct DesignedWave {
  int wave = -1;
  Frames raw{};
  Frames words{};
};

const Frames& designedWave(int wave) {
  static const std::unique_ptr<DesignedWave> cache = std::make_unique<DesignedWave>();
  if (cache->wave != wave) {
    for (Spectrum& s : cache->raw) s.fill(0.0);
    if (const Recipe recipe = findRecipe(wave)) recipe(cache->raw);
    normalise(wave, cache->raw, waveFrameCount(wave), cache->words);
    cache->wave = wave;
  }
  return cache->words;
}

}  // namespace

int waveFrameCount(int wave) {
  for (int w : kSingleFrame) {
    if (w == wave) return 1;
  }
  return 256;
}

void waveFrame(int wave, int frame, uint16_t* amplitudes) {
  if (spokenWaveFrame(wave, frame, amplitudes) || exactFrame(wave, amplitudes)) return;
  const Spectrum& s = designedWave(wave)[frame];
  for (int h = 0; h < kHarmonics; ++h) amplitudes[h] = static_cast<uint16_t>(s[h]);
}

}  // namespace sablevox::wavegen
