// The per-sample filter routines share one form: buffer processed in place,
// all running values kept in the record so that a tick split over two render
// passes goes on seamlessly. Audio thread only; no allocation, no locks.
#pragma once

#include "filter/filter_state.h"

namespace sablevox {

using FilterRoutine = void (*)(float* buffer, int count, FilterState& state);

// Filter type "off": the buffer passes bit-exactly.
void filterNone(float* buffer, int count, FilterState& state);

// Two biquads in series; in parallel; the phaser's difference form of two
// all-passes; in series between two one-sided soft clippers.
void filterSerial(float* buffer, int count, FilterState& state);
void filterParallel(float* buffer, int count, FilterState& state);
void filterPhaser(float* buffer, int count, FilterState& state);
void filterSyncie(float* buffer, int count, FilterState& state);

// The Chamberlin state-variable filter, plain and run twice per sample with
// one-sided clipping.
void filterStateVariable(float* buffer, int count, FilterState& state);
void filterStateVariableAnalog(float* buffer, int count, FilterState& state);

// Four one-pole stages with resonance feedback; the noisy one trembles its
// pole with pink noise drawn from the shared random state.
void filterLadder(float* buffer, int count, FilterState& state);
void filterLadderNoisy(float* buffer, int count, FilterState& state);

// Sample-rate reduction by averaging, amplitude modulation by a half sine,
// frequency modulation by a swung delay line.
void filterResample(float* buffer, int count, FilterState& state);
void filterAm(float* buffer, int count, FilterState& state);
void filterFm(float* buffer, int count, FilterState& state);

// Both channels of a stereo voice in one loop, for the routines whose
// latency-bound recurrences gain from it (the biquad pairs, bound by their
// multiplies, do not): each channel's result is that of the one-channel
// routine, bit for bit. The noisy ladder may not: it draws from the shared
// random state in sample order.
using StereoFilterRoutine = void (*)(float* left, float* right, int count, FilterState& leftState,
                                     FilterState& rightState);
void filterStateVariablePair(float* left, float* right, int count, FilterState& leftState,
                             FilterState& rightState);
void filterStateVariableAnalogPair(float* left, float* right, int count, FilterState& leftState,
                                   FilterState& rightState);
void filterLadderPair(float* left, float* right, int count, FilterState& leftState,
                      FilterState& rightState);
// The two-channel form of a routine, or null if it has none. Decided once
// per voice render.
StereoFilterRoutine stereoFilterRoutine(FilterRoutine routine);

// Added to every input sample (but Resample's): it keeps running states away
// from denormals, in place of any processor mode.
inline constexpr float kFilterDenormalOffset = 1e-06f;

}  // namespace sablevox
