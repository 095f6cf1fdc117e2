// Quality steps to routines: the oversampled players go with the
// oversampled drive stages.
#include "voice/render_variants.h"

#include "voice/oscillator_render.h"
#include "voice/output_stage.h"

namespace sablevox {
namespace {

constexpr RenderVariant kVariants[kQualitySteps] = {
    {renderCubic2x, driveOversampled8},   // ultra
    {renderLinear2x, driveOversampled2},  // high
    {renderLinear, drivePlain},           // medium
    {renderNearest, drivePlain},          // low
};

}  // namespace

const RenderVariant* renderVariantForQuality(int quality) {
  return quality >= 0 && quality < kQualitySteps ? &kVariants[quality] : nullptr;
}

}  // namespace sablevox
