// The bend of the one-sided soft clippers, shared by "LP Syncie" and the
// analog state-variable routine.
#pragma once

#include "host/numeric.h"

namespace sablevox {

// e^u - 1 for u <= 0, with the fast exponential, which saturates far below
// zero, so the bend ends at -1 however loud the input.
inline float expMinusOne(float u) {
  return static_cast<float>(fastExp(u) - 1.0);
}

}  // namespace sablevox
