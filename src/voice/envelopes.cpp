// Volume and filter envelope steps.
#include "voice/envelopes.h"

#include "host/numeric.h"
#include "voice/voice.h"

namespace sablevox {
namespace {

// Filter envelope step for a time parameter t, 0.25 at t = 0.
float filterStep(float t) {
  return static_cast<float>(fastExp(t * -7.0f)) * 0.25f;
}

}  // namespace

float volumeFactor(float t) {
  const float u = 1.0f - t;
  const float u6 = u * u * u * u * u * u;
  return (1.0f - 0.99f * u6 - 0.01f * u) * 0.9997f;
}

float stepVolumeEnvelope(float attack, float decay, float sustain, float release, uint8_t gate,
                         uint8_t& ampState, float& ampCore, float& ampLevel) {
  switch (ampState) {
    case kEnvAttack:
      // The attack mirrors an exponential fall and hands over near 0.9. With
      // no gate (a release pop, or a key let go in the attack) the level it
      // reached is where the release starts.
      if (static_cast<double>(ampCore) <= 0.1) {
        ampState = kEnvDecay;
        ampCore = 1.0f - ampCore;
        ampLevel = ampCore;
      } else {
        ampCore = volumeFactor(attack) * ampCore;
        ampLevel = 1.0f - ampCore;
      }
      if (gate == 0) {
        ampCore = ampLevel;
        ampState = kEnvRelease;
      }
      break;
    case kEnvDecay:
      if (gate == 0) ampState = kEnvRelease;
      if (ampCore <= 0.01f) {
        ampState = kEnvIdle;
        ampCore = 0.0f;
        ampLevel = 0.0f;
      }
      // Reaching the sustain level always enters the sustain state, also
      // after the two steps above: a following tick without gate releases.
      if (ampCore > sustain) {
        ampCore = volumeFactor(decay) * ampCore;
        ampLevel = ampCore;
      } else {
        ampCore = sustain;
        ampLevel = sustain;
        ampState = kEnvSustain;
      }
      break;
    case kEnvSustain:
      ampCore = sustain;
      ampLevel = sustain;
      if (gate == 0) ampState = kEnvRelease;
      break;
    case kEnvRelease:
      if (ampCore <= 0.01f) {
        ampState = kEnvIdle;
        ampCore = 0.0f;
        ampLevel = 0.0f;
      } else {
        ampCore = volumeFactor(release) * ampCore;
        ampLevel = ampCore - 0.01f;
      }
      break;
    default:
      break;
  }
  return ampLevel;
}

float stepFilterEnvelope(float attack, float decay, float sustain, float release, uint8_t gate,
                         uint8_t& filtState, float& filtLevel) {
  const float level = (2.0f - sustain) * sustain;
  if (decay < 0.01f) decay = 0.01f;
  switch (filtState) {
    case kEnvAttack:
      if (filtLevel < 1.0f && attack > 0.01f) {
        filtLevel = filtLevel + filterStep(attack) * 2.0f;
        if (filtLevel > 1.0f) filtLevel = 1.0f;
      } else {
        filtState = kEnvDecay;
        filtLevel = 1.0f;
      }
      break;
    case kEnvDecay:
      // A key let go in the decay releases at once only when the release is
      // the faster of the two; else the decay runs down to the sustain level.
      if (gate == 0 && decay > release) filtState = kEnvRelease;
      if (filtLevel > level) {
        filtLevel = filtLevel - filterStep(decay);
      } else {
        filtLevel = level;
        filtState = kEnvSustain;
      }
      break;
    case kEnvSustain:
      filtLevel = level;
      if (gate == 0) filtState = kEnvRelease;
      break;
    case kEnvRelease:
      if (filtLevel <= 0.0f) filtState = kEnvIdle;
      filtLevel = filtLevel - filterStep(release);
      if (filtLevel < 0.0f) filtLevel = 0.0f;
      break;
    default:
      break;
  }
  const float v = filtLevel;
  return filtState == kEnvAttack ? (2.0f - v) * v : v * v * 0.7f + v * 0.3f;
}

}  // namespace sablevox
