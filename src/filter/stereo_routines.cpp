// The table from one-channel routines to their two-channel forms.
#include "filter/filter_routine.h"

namespace sablevox {

StereoFilterRoutine stereoFilterRoutine(FilterRoutine routine) {
  struct Twin {
    FilterRoutine mono;
    StereoFilterRoutine pair;
  };
  static constexpr Twin kTwins[] = {
      {filterStateVariable, filterStateVariablePair},
      {filterStateVariableAnalog, filterStateVariableAnalogPair},
      {filterLadder, filterLadderPair},
  };
  for (const Twin& twin : kTwins) {
    if (twin.mono == routine) return twin.pair;
  }
  return nullptr;
}

}  // namespace sablevox
