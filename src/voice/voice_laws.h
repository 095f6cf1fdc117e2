// The control laws of a voice's tick: LFO destinations, velocity, and the
// pan, volume and oscillator levels that renderVoice uses until the next
// tick. Pure functions of their arguments.
#pragma once

namespace sablevox {

// LFODest steps.
enum LfoDestination : int {
  kLfoDestOff = 0,
  kLfoDestCutoff,
  kLfoDestReso,
  kLfoDestVolume,
  kLfoDestOctave,
  kLfoDestPitch,
  kLfoDestDetune,
  kLfoDestPan,
  kLfoDestCross,
};
constexpr int kLfoDestinations = 9;

// What one tick of the LFO does; the defaults are no modulation.
struct LfoModulation {
  float ampMod = 1.0f;
  float pitchMod[2] = {1.0f, 1.0f};
  float cutoff = 0.0f;
  float reso = 0.0f;
  float pan = 0.0f;
  float cross = 0.0f;
};

// The modulation of destination for the LFO value l (0..1) at LFOSend send:
// a cubic law (send - 0.5) * 2 cubed, centred on no modulation.
LfoModulation lfoModulation(int destination, float send, float l);

// Velocity scaling of an envelope by a velocity amount (EnvVolVe, EnvFilVe):
// 1 at amount 0.5; above, louder with velocity; below, softer.
float velocityFactor(float amount, int velocity);

// Parameter values read by a voice are held to 0..1 (NaN gives 0): a host may
// store anything, and these values reach gains, exponents and conversions.
inline float unitValue(float v) {
  return v > 0.0f ? (v < 1.0f ? v : 1.0f) : 0.0f;
}

struct VoiceGains {
  float panLeft, panRight;
  float oscLevel[2];
};

// Parabolic pan (0.75 each at the centre) times the Volume law (silence below
// 0.01, else fastExp((1 - volume) * -6) * 0.01), and the oscillators' levels
// from the balance crossMod + 0.5, the mod wheel's crossfade and oscGain.
VoiceGains voiceGains(float panMod, float crossMod, float volume, float crossfadeOffset,
                      const float oscGain[2]);

}  // namespace sablevox
