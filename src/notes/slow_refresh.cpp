// The 0.1-second refresh: decodes what may not change at tick speed (voice
// count, LFO rate, render variants, filter code and its state clearing) into
// the fields the ticks and renders use. Audio thread, from the block driver.
#include <bit>

#include "filter/filter_design.h"
#include "host/adelay.h"
#include "voice/lfo.h"
#include "voice/oscillator_render.h"
#include "voice/render_variants.h"

namespace sablevox {
namespace {

constexpr int kVoiceCounts[8] = {1, 2, 3, 4, 8, 12, 16, 32};
constexpr int kNoiseWave = 1;

}  // namespace

void ADelay::slowRefresh() {
  const int type = steppedIndex(params[kLFOType], kLfoTypeCount);
  int speed = steppedIndex(params[kLFOSpeed], kLfoSpeedCount + 1);
  const int destination = steppedIndex(params[kLFODest], 9);
  if (speed == 0) speed = autoLfoSpeed(type, destination);
  lfoTypeIndex = type;
  lfoSpeedIndex = speed - 1;

  activeVoices = kVoiceCounts[steppedIndex(params[kVoices], 8)];
  if (steppedIndex(params[kGlMode], 3) > 0) activeVoices = 1;

  if (const RenderVariant* variant = renderVariantForQuality(config->get(kQuality))) {
    osc1Render = variant->osc;
    osc2Render = variant->osc;
    outputStage = variant->output;
  }
  if (steppedIndex(params[kOsc1Wave], kWaveCount) == kNoiseWave) osc1Render = renderNoise;
  if (steppedIndex(params[kOsc2Wave], kWaveCount) == kNoiseWave) osc2Render = renderNoise;

  // A new filter type starts every active voice from cleared records.
  const int code = filterCodeForStep(steppedIndex(params[kFiltType], 39));
  for (int v = 0; v < activeVoices; ++v) {
    Voice& voice = voices[v];
    if (voice.filterCode != code) {
      clearFilter(voice.filterLeft);
      clearFilter(voice.filterRight);
    }
    voice.filterCode = code;
  }

  envVolPop = params[kEnvVolPo] > 0.5f;
  for (int osc = 0; osc < 2; ++osc) {
    oscEnabled[osc] =
        steppedIndex(params[kOsc1Wave + osc], kWaveCount) != 0 && params[kOsc1Vol + osc] != 0.0f;
  }
  // Into the shaper's range and back out; their product is 1 within rounding.
  driveLow = std::bit_cast<float>(0x3B83126Fu);   // 0.004
  driveHigh = std::bit_cast<float>(0x4379FFFFu);  // 249.99998
}

}  // namespace sablevox
