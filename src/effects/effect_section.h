// The effect section: the 20 EffType steps, each a fixed configuration of
// one effect or a chain of two, run on the mixed block in place.
#pragma once

#include "host/tempo_source.h"

namespace sablevox {

class Delay;
class Chorus;
class Reverb;
class Equaliser;
class Stereo;

// The engine's effect objects, allocated once with it.
struct EffectUnits {
  Delay* delay;
  Chorus* chorus;
  Reverb* reverb;
  Equaliser* equaliser;  // not used here: the engine runs it after the section
  Stereo* stereo;
};

inline constexpr int kEffectTypeCount = 20;

// Runs EffType step `type` (0..19; 0, 19 and anything else do nothing) over
// both channels in place. par1/par2 are EffPar1/EffPar2 raw. Every setting of
// the step is applied again on each call, so automation, rate and tempo act at
// the next block; values a step does not set stay as the objects last had
// them. The tempo is asked only by steps with a delay. Any count; audio
// thread only. Resets on a change of step are the caller's.
void runEffect(int type, EffectUnits& fx, float* left, float* right, int count, float sampleRate,
               float par1, float par2, TempoSource& tempo);

}  // namespace sablevox
