// Filter type "off".
#include "filter/filter_routine.h"

namespace sablevox {

void filterNone(float* /*buffer*/, int /*count*/, FilterState& /*state*/) {}

}  // namespace sablevox
