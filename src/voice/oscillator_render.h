// The oscillator render variants (signature in render_types.h). Each adds
// sampleCount samples of one stack member into destination, reading the
// wave table at the band-limited level that suits speed, and glides the wave
// position from framePosition towards targetFrame during the call.
//
// Fixed point: phase 24 bits (a cycle is 2^24); position 16 fraction bits
// (frame in the bits above); 12-bit fraction between table samples. The
// caller guarantees a table of 256 frame blocks; any speed, position and
// target are safe (reads stay inside frames 0..255 and inside the level).
#pragma once

#include "voice/render_types.h"

namespace sablevox {

namespace render_detail {
enum class Variant { cubic2x, linear2x, linear, nearest };
// Defined and instantiated for the four variants in table_render.cpp.
template <Variant kVariant>
void renderTable(float* destination, const int16_t* table, int sampleCount, uint32_t& phase,
                 int32_t& framePosition, float speed, float gain, float targetFrame);
}  // namespace render_detail

// "ultra": two steps per sample, 4-point cubic between R(1) and R(2), blended frames.
inline constexpr OscRender renderCubic2x =
    &render_detail::renderTable<render_detail::Variant::cubic2x>;
// "high": two steps per sample, linear between R(1) and R(2), blended frames.
inline constexpr OscRender renderLinear2x =
    &render_detail::renderTable<render_detail::Variant::linear2x>;
// "medium": one step per sample, linear between R(0) and R(1), blended frames.
inline constexpr OscRender renderLinear =
    &render_detail::renderTable<render_detail::Variant::linear>;
// "low": one step per sample, nearest sample of the nearest lower frame.
inline constexpr OscRender renderNearest =
    &render_detail::renderTable<render_detail::Variant::nearest>;

// Wave "STA Noise": white noise at the oscillator's gain; pitch plays no part.
void renderNoise(float* destination, const int16_t* table, int sampleCount, uint32_t& phase,
                 int32_t& framePosition, float speed, float gain, float targetFrame);

// Highest glide target of the wave position: frame 254 with fraction 0xFF01,
// so that a frame and its next frame both exist.
constexpr int32_t kHighestFrameTarget = 255 * 65535;

}  // namespace sablevox
