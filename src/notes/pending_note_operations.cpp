// Placeholder body of the arpeggiator's tick so that the engine links until
// the arpeggiator is written.
#include "host/adelay.h"

namespace sablevox {

void ADelay::arpTick(int /*type*/, int /*rhythm*/, bool /*active*/, double /*tempo*/,
                     float /*sampleRate*/, int /*tickLength*/) {}

}  // namespace sablevox
