// The per-sample filter routines share one form: buffer processed in place.
#pragma once

#include "filter/filter_state.h"

namespace sablevox {

using FilterRoutine = void (*)(float* buffer, int count, FilterState& state);

// Filter type "off": the buffer passes bit-exactly.
void filterNone(float* buffer, int count, FilterState& state);

}  // namespace sablevox
