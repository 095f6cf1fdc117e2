// The noise render: no table, no phase, no position.
#include "host/numeric.h"
#include "voice/oscillator_render.h"

namespace sablevox {

void renderNoise(float* destination, const int16_t* /*table*/, int sampleCount, uint32_t& /*phase*/,
                 int32_t& /*framePosition*/, float /*speed*/, float gain, float /*targetFrame*/) {
  for (int i = 0; i < sampleCount; ++i) destination[i] += randomRange(-1000.0f, 1000.0f) * gain;
}

}  // namespace sablevox
