// The cutoff and resonance arguments that a voice hands to the filter design
// at each tick, from the knobs, key tracking, the filter envelope, velocity,
// the LFO and the mod wheel. All offsets are in units of the normalised knobs.
#pragma once

namespace sablevox {

struct FilterKnobs {
  float cutoff;       // Cutoff
  float reso;         // Reso
  float keyTrack;     // FiltKey, 0.5 is no tracking
  float envAmount;    // EnvFilSe, 0.5 is no envelope
  float envVelocity;  // EnvFilVe, 0.5 is no velocity effect
  float lfoCutoff;    // this tick's LFO offsets
  float lfoReso;
  float cutoffOffset;  // the mod wheel's offsets
  float resoOffset;
};

struct FilterArguments {
  float cutoff;
  float resonance;
};

// The AM and FM codes take the raw filter envelope level; the others its
// shaped output.
inline bool usesRawEnvelope(int code) {
  return code >= 35 && code <= 40;
}

// env is the filter envelope's value as usesRawEnvelope says.
FilterArguments filterArguments(int code, int key, int velocity, float env,
                                const FilterKnobs& knobs);

}  // namespace sablevox
