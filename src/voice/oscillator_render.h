// The oscillator render variants (see render_types.h for the signature).
#pragma once

#include "voice/render_types.h"

namespace sablevox {

// Wave "STA Noise": white noise at the oscillator's gain; pitch plays no part.
void renderNoise(float* destination, const int16_t* table, int sampleCount, uint32_t& phase,
                 int32_t& framePosition, float speed, float gain, float targetFrame);

}  // namespace sablevox
