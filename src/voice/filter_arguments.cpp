// Forming the filter's arguments. The AM filter's cutoff and the FM filters'
// resonance are pitches that follow the key in semitones (0.009628432 * 6 is
// very nearly ln 2 / 12); the others track the key by FiltKey.
#include "voice/filter_arguments.h"

#include "voice/voice_laws.h"

namespace sablevox {
namespace {

constexpr int kCodeAm = 35;
constexpr float kSemitone = 0.009628432f;
// The FM filters' modulator ratios, picked by Reso.
constexpr float kFmRatios[6] = {0.086f, 0.2016f, 0.3846f, 0.4326f, 0.5002f, 0.5481f};

}  // namespace

FilterArguments filterArguments(int code, int key, int velocity, float env, const FilterKnobs& k) {
  const float e = (k.envAmount - 0.5f) * env * 2.0f * velocityFactor(k.envVelocity, velocity);
  const float keyOffset = static_cast<float>(key - 64);
  FilterArguments a;
  if (usesRawEnvelope(code) && code != kCodeAm) {
    float r = k.reso * 5.99f;
    r = r > 0.0f ? (r < 5.0f ? r : 5.0f) : 0.0f;  // guards the conversion
    a.cutoff = k.cutoff + k.lfoCutoff + k.cutoffOffset + e;
    a.resonance = keyOffset * kSemitone + kFmRatios[static_cast<int>(r)] + k.lfoReso + k.resoOffset;
  } else if (code == kCodeAm) {
    a.cutoff = keyOffset * kSemitone + k.cutoff * 0.5f + 0.50015f + k.lfoCutoff * 0.5f +
               k.cutoffOffset * 0.5f + e;
    a.resonance = k.resoOffset * 0.5f + k.lfoReso + k.reso * 0.5f + 0.5f;
  } else {
    a.cutoff =
        keyOffset * (k.keyTrack - 0.5f) * 0.0195f + k.cutoff + k.lfoCutoff + k.cutoffOffset + e;
    a.resonance = k.reso + k.lfoReso + k.resoOffset;
  }
  return a;
}

}  // namespace sablevox
