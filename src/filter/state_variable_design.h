// The frequency word limit of the state-variable filter, apart so that tests
// can show what it guards against.
#pragma once

namespace sablevox {

// Limits a Chamberlin frequency word f to the region where the loop with
// damping q (0 < q <= 1) keeps its poles inside the unit circle:
// 0 <= f < sqrt(q*q + 4) - q, a hair inside. The design's formulas run the
// raw cutoff law unlimited, so at high resonance they pass that edge below
// about 34 kHz ("LP 12dB", "HP 12dB") and 19.6 kHz (the analog types); at
// 44100 Hz and above the limit never acts.
float limitStateVariableFrequency(float f, float q);

}  // namespace sablevox
