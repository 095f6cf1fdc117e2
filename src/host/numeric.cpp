// Storage of the process-wide random state; the helpers themselves are inline.
#include "host/numeric.h"

namespace sablevox {

constinit Shared<uint32_t> randomState{22222u};

}  // namespace sablevox
