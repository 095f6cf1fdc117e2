// The render variants that the Quality setting selects: oscillator player
// and drive stage together, from "ultra" (0) to "low" (3).
#pragma once

#include "voice/render_types.h"

namespace sablevox {

constexpr int kQualitySteps = 4;

struct RenderVariant {
  OscRender osc;
  OutputStage output;
};

// The variant of quality step 0..3; null for any other value, which leaves
// the engine's current routines in place.
const RenderVariant* renderVariantForQuality(int quality);

}  // namespace sablevox
