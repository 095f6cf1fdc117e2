// The coefficient design of each filter family, called by designFilter after
// it has stored the header words. Each returns the routine for the code, or
// nullptr when the code is not of its family (the record is then untouched).
// c and r are already clamped to 0..1.
#pragma once

#include "filter/filter_routine.h"
#include "filter/filter_state.h"

namespace sablevox {

// The filter modes, which select what copyFilterSettings and resetFilter cover.
enum FilterMode {
  kModeBiquadSerial = 0,
  kModeBiquadParallel = 1,
  kModeBiquadPhaser = 2,
  kModeStateVariable = 3,
  kModeAm = 7,
  kModeFm = 8,
  kModeResample = 9,
  kModeLadder = 10,
  kModeLadderNoisy = 14,
};

FilterRoutine designBiquadPair(int code, int sampleRate, float c, float r, FilterState& state);
FilterRoutine designStateVariable(int code, int sampleRate, float c, float r, FilterState& state);
FilterRoutine designLadder(int code, int sampleRate, float c, float r, FilterState& state);
FilterRoutine designModulation(int code, int sampleRate, float c, float r, FilterState& state);

}  // namespace sablevox
