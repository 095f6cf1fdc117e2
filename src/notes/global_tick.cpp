// The global control tick, once per tick before the voices' own: the
// arpeggiator, the shared "Tri free" LFO, the mod wheel and vibrato, the Fat
// state with the oscillator gains, and the glide's decay. Its cost does not
// depend on the number of voices. Audio thread, from the block driver.
#include <cmath>

#include "host/adelay.h"
#include "voice/lfo.h"
#include "voice/voice_laws.h"

namespace sablevox {
namespace {

enum ModWheelDestination : int {
  kVibratoFast = 0,
  kVibratoSlow,
  kCutoffUp,
  kCutoffDown,
  kResoUp,
  kResoDown,
  kOscCrossfade,
};

// GlTime steps: glide decay in multiples of the beat rate.
constexpr float kGlideRates[9] = {0.125f, 0.25f, 0.5f, 1.0f, 2.0f, 4.0f, 8.0f, 16.0f, 32.0f};

// Fractional part of phase + increment; a non-finite phase restarts at 0.
float wrapPhase(float phase) {
  const float p = phase - std::trunc(phase);
  return p >= 0.0f && p < 1.0f ? p : 0.0f;
}

}  // namespace

void ADelay::globalTick(int tickSamples) {
  const float sampleRate = getSampleRate();
  tickTempo = getTempo();
  arpTick(steppedIndex(params[kArpType], 23), steppedIndex(params[kArpRhyt], 17), arpActive,
          tickTempo, sampleRate, tickSamples);

  if (lfoTypeIndex == kLfoTriFree) {
    sharedLfoPhase =
        advanceLfoPhase(sharedLfoPhase, tickSamples, sampleRate, tickTempo, lfoSpeedIndex);
    sharedLfoValue = lfoOutput(kLfoTriFree, sharedLfoPhase, sharedLfoPrevious, sharedLfoHeld);
  }

  // The wheel moves with a time constant of about ten ticks.
  modWheelSmoothed = modWheelRaw * 0.1f + modWheelSmoothed * 0.9f;
  pitchMultiplier = 1.0f;
  cutoffOffset = resoOffset = crossfadeOffset = 0.0f;
  const float m = modWheelSmoothed;
  const int wheel = steppedIndex(params[kMWDest], 7);
  if (wheel == kVibratoFast || wheel == kVibratoSlow) {
    const float rate = wheel == kVibratoFast ? 8.0f : 4.0f;
    const float depth = wheel == kVibratoFast ? m * 0.05f : m * 0.1f;
    vibratoPhase = wrapPhase(vibratoPhase + (static_cast<float>(tickSamples) / sampleRate) * rate);
    const float tri = vibratoPhase > 0.5f ? 2.0f - 2.0f * vibratoPhase : 2.0f * vibratoPhase;
    pitchMultiplier = 1.0f + (tri - 0.5f) * depth;
  } else if (wheel == kCutoffUp || wheel == kCutoffDown) {
    cutoffOffset = wheel == kCutoffUp ? m : -m;
  } else if (wheel == kResoUp || wheel == kResoDown) {
    resoOffset = wheel == kResoUp ? m : -m;
  } else {
    crossfadeOffset = m * 2.0f - 1.0f;
  }

  // Fat: one, two or four players per oscillator, detuned by fatRatio.
  const float f = unitValue(params[kFat]);
  fatMode = f < 0.01f ? 0 : (f < 0.5f ? 1 : 2);
  if (fatMode == 0) {
    fatRatio[0] = fatRatio[1] = fatRatio[2] = fatRatio[3] = 1.0f;
  } else if (fatMode == 1) {
    const float a = f * 0.04f + 1.0f;
    fatRatio[0] = a;
    fatRatio[1] = 1.0f / a;
    fatRatio[2] = 1.0f / a;
    fatRatio[3] = a;
  } else {
    const float a = (f - 0.5f) * 0.04f + 1.0f;
    const float b = (f - 0.5f) * 0.024f + 1.0f;
    fatRatio[0] = a;
    fatRatio[1] = 1.0f / a;
    fatRatio[2] = 1.0f / b;
    fatRatio[3] = b;
  }
  // The level of the wave the table really holds: 0 until the worker's first pass.
  for (int osc = 0; osc < 2; ++osc) {
    const int wave = waves.playingWave(osc);
    const float level = wave >= 0 ? waves.slot(wave).level : 0.0f;
    oscGain[osc] = level * unitValue(params[kOsc1Vol + osc]);
    // Four players sum louder than one.
    if (fatMode == 2) oscGain[osc] = oscGain[osc] * 0.7f;
  }

  // The step assumes a tick of 0.0025 s: at 120 beats a minute and "BPM" the
  // glide takes half a second.
  const double rate = kGlideRates[steppedIndex(params[kGlTime], 9)];
  const double decay =
      tickTempo * rate * static_cast<double>(0.016666668f) * static_cast<double>(0.0025f);
  glideAmount = static_cast<float>(glideAmount - decay);
  if (!(glideAmount > 0.0f)) glideAmount = 0.0f;
}

}  // namespace sablevox
