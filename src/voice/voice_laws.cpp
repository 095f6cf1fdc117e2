// LFO destinations, velocity, pan, volume and oscillator level laws.
#include "voice/voice_laws.h"

#include "host/numeric.h"

namespace sablevox {

LfoModulation lfoModulation(int destination, float send, float l) {
  LfoModulation m;
  const float s = (send - 0.5f) * 2.0f;
  const float c = s * s * s;
  switch (destination) {
    case kLfoDestCutoff:
      m.cutoff = c * l;
      break;
    case kLfoDestReso:
      m.reso = c * l;
      break;
    case kLfoDestVolume:
      m.ampMod = (c * l - c * 0.5f) * 2.0f + 1.0f;
      break;
    case kLfoDestOctave: {
      // Up to an octave up, or half of it down, so that l = 1 at either end
      // of LFOSend doubles or halves the speed.
      const float p = c > 0.0f ? 1.0f + c * l : 1.0f + c * l * 0.5f;
      m.pitchMod[0] = m.pitchMod[1] = p;
      break;
    }
    case kLfoDestPitch:
      m.pitchMod[0] = m.pitchMod[1] = (c * l - c * 0.5f) * 0.1f + 1.0f;
      break;
    case kLfoDestDetune: {
      const float p = c * l * 0.1f;
      m.pitchMod[0] = 1.0f - p;
      m.pitchMod[1] = 1.0f + p;
      break;
    }
    case kLfoDestPan:
      m.pan = c * l - c * 0.5f;
      break;
    case kLfoDestCross:
      m.cross = c * l - c * 0.5f;
      break;
    default:
      break;
  }
  return m;
}

float velocityFactor(float amount, int velocity) {
  if (amount > 0.5f) {
    const float w = amount - 0.5f;
    return (1.0f - 2.0f * w) + static_cast<float>(velocity) * 0.020833334f * w;
  }
  if (amount < 0.5f) {
    const float w = 0.5f - amount;
    return static_cast<float>(128 - velocity) * 0.020833334f * w + (1.0f - 2.0f * w);
  }
  return 1.0f;
}

VoiceGains voiceGains(float panMod, float crossMod, float volume, float crossfadeOffset,
                      const float oscGain[2]) {
  VoiceGains g;
  const float f = panMod + 0.5f;
  const float h = 1.0f - f;
  float vol = 0.0f;
  if (volume >= 0.01f) {
    vol = static_cast<float>(fastExp((1.0f - volume) * -6.0f) * static_cast<double>(0.01f));
  }
  g.panLeft = (2.0f - f) * f * vol;
  g.panRight = (2.0f - h) * h * vol;
  const float x = crossMod + 0.5f;
  g.oscLevel[0] = x * (1.0f + crossfadeOffset) * oscGain[0];
  g.oscLevel[1] = (1.0f - x) * (1.0f - crossfadeOffset) * oscGain[1];
  return g;
}

}  // namespace sablevox
