// The LFO: one running LFO per voice, restarted by each note, and one
// engine-wide "Tri free" that never restarts. It delivers a value 0 to 1 once
// per control tick. Audio thread only, but for lfoRandomState (see below).
#pragma once

#include <cstdint>

#include "host/shared_word.h"

namespace sablevox {

// LFOType steps.
enum LfoType : int {
  kLfoStatic = 0,
  kLfoTri,
  kLfoTri90,
  kLfoSawUp,
  kLfoSawDown,
  kLfoSin,
  kLfoCos,
  kLfoSquare,
  kLfoRandom,
  kLfoRandSine,
  kLfoImpulse,
  kLfoNoise,
  kLfoPattern1,  // the five rhythmic step patterns, 12 to 16
  kLfoPattern5 = kLfoPattern1 + 4,
  kLfoSawStop,
  kLfoTriStop,
  kLfoTriFree,
};
constexpr int kLfoTypeCount = 20;

// LFOSpeed steps less one ("auto" taken out): -1 is a rate of 0, 0 to 15 are
// rates in Hz, 16 to 28 rates in cycles a beat.
constexpr int kLfoSpeedCount = 29;
constexpr int kLfoFirstBeatSpeed = 16;

// The LFOSpeed step that "auto" (step 0) stands for, by LFOType and LFODest
// step: slow for the filter, beat-synced for level, octave and pan, fast for
// pitch, the beat for the rhythmic patterns; 0 (standing still) for "Tri
// free" and for "Osc cross".
int autoLfoSpeed(int type, int destination);

// The LFO generator's own state, process-wide and shared by all instances
// (22222 at load). Audio threads of several instances may advance it without
// a lock: a lost update only changes the sequence.
extern Shared<uint32_t> lfoRandomState;

// Next value of the LFO generator, -1 up to about 1.0015.
float lfoRandom();

// The phase after one tick of tickSamples samples at speedIndex, in 0 up to 1.
// tempo in beats a minute. A phase that is not finite restarts at 0.
float advanceLfoPhase(float phase, int tickSamples, float sampleRate, double tempo, int speedIndex);

// The value 0 to 1 of shape type at phase. previous is the phase of the last
// tick (a wrap is previous > phase) and receives phase; held is the shape's
// memory (random value, stop flag). Both belong to the voice or the shared LFO.
float lfoOutput(int type, float phase, float& previous, float& held);

}  // namespace sablevox
