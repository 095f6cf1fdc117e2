// The four table players. All table arithmetic is integer; only the final
// sum is float. Level, increment and position step are fixed per call, so the
// sample loops carry no branch on the mode.
#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "host/numeric.h"
#include "voice/oscillator_render.h"
#include "waves/level_table.h"
#include "waves/wave_format.h"

namespace sablevox::render_detail {
namespace {

constexpr uint32_t kPhaseMask = 0xFFFFFF;

// The two frames that a position blends, and the weight of the second.
struct Rows {
  const int16_t* a;
  const int16_t* b;
  int32_t w;
};

// base points at the level's first sample in frame block 0. A position of
// frame 255 (jumps reach 0xFF0000 and a little beyond) blends frame 255 with
// itself: nothing beyond frame 255 may be read.
inline Rows rowsAt(const int16_t* base, int32_t position) {
  const int frame = (position >> 16) & 0xFF;
  const int next = frame < 255 ? frame + 1 : 255;
  return {base + frame * kFrameBlock, base + next * kFrameBlock, position & 0xFFFF};
}

// Blended read R: the weights sum to 65535, not 65536.
inline int32_t blend(const Rows& r, uint32_t p) {
  return (r.b[p] * r.w + r.a[p] * (65535 - r.w)) >> 16;
}

// Catmull-Rom between y1 and y2 with a 12-bit fraction, in integers.
inline int32_t cubic(int32_t y0, int32_t y1, int32_t y2, int32_t y3, int32_t f) {
  const int32_t a = (3 * (y1 - y2) - y0 + y3) >> 1;
  const int32_t b = y0 + 2 * y2 - ((y3 + 5 * y1) >> 1);
  const int32_t c = (y2 - y0) >> 1;
  return (((((((a * f) >> 12) + b) * f) >> 12) + c) * f >> 12) + y1;
}

// The wave position's truncated target; NaN and out-of-range targets are limited.
int32_t targetPosition(float targetFrame) {
  const float t = targetFrame * 65535.0f;
  if (!(t > 0.0f)) return 0;
  return t < static_cast<float>(kHighestFrameTarget) ? static_cast<int32_t>(t)
                                                     : kHighestFrameTarget;
}

constexpr bool twoStep(Variant v) {
  return v == Variant::cubic2x || v == Variant::linear2x;
}

// The sample loop for one level: shifts and masks are constants, so the
// loop holds nothing but the phase, the position and the reads.
template <Variant kVariant, int kLevel>
void renderLevel(float* destination, const int16_t* table, int sampleCount, uint32_t& phase,
                 int32_t& framePosition, uint32_t increment, int32_t step, float gain) {
  constexpr uint32_t kMask = (1u << kLevel) - 1u;
  const int16_t* base = table + levelOffset(kLevel);
  uint32_t ph = phase;
  int32_t position = framePosition;
  // One phase step: the wave position glides, the phase wraps at 24 bits;
  // index is the sample within the level, f the 12 bits below it.
  auto advance = [&](uint32_t& index, int32_t& f) {
    position += step;
    ph = (ph + increment) & kPhaseMask;
    index = (ph >> (24 - kLevel)) & 0xFFFF;
    f = (static_cast<int32_t>(ph << kLevel) >> 12) & 0xFFF;
  };
  // One interpolated value of the current step.
  auto value = [&](uint32_t index, int32_t f) -> int32_t {
    if constexpr (kVariant == Variant::nearest) {
      return base[((position >> 16) & 0xFF) * kFrameBlock + (index & kMask)];
    } else {
      const Rows r = rowsAt(base, position);
      if constexpr (kVariant == Variant::cubic2x) {
        return cubic(blend(r, index & kMask), blend(r, (index + 1) & kMask),
                     blend(r, (index + 2) & kMask), blend(r, (index + 3) & kMask), f);
      } else if constexpr (kVariant == Variant::linear2x) {
        return (blend(r, (index + 1) & kMask) * (4096 - f) + blend(r, (index + 2) & kMask) * f) >>
               12;
      } else {
        return (blend(r, index & kMask) * (4096 - f) + blend(r, (index + 1) & kMask) * f) >> 12;
      }
    }
  };

  uint32_t index = 0;
  int32_t f = 0;
  for (int i = 0; i < sampleCount; ++i) {
    advance(index, f);
    const int32_t v1 = value(index, f);
    if constexpr (twoStep(kVariant)) {
      advance(index, f);
      const int32_t v2 = value(index, f);
      destination[i] =
          destination[i] + (static_cast<float>(v1) + static_cast<float>(v2)) * gain * 0.5f;
    } else {
      destination[i] = destination[i] + static_cast<float>(v1) * gain;
    }
  }
  phase = ph;
  framePosition = position;
}

using LevelLoop = void (*)(float*, const int16_t*, int, uint32_t&, int32_t&, uint32_t, int32_t,
                           float);

template <Variant kVariant, int... kLevels>
constexpr std::array<LevelLoop, kTableLevels + 1> levelLoops(
    std::integer_sequence<int, kLevels...>) {
  return {nullptr, &renderLevel<kVariant, kLevels + 1>...};
}

}  // namespace

template <Variant kVariant>
void renderTable(float* destination, const int16_t* table, int sampleCount, uint32_t& phase,
                 int32_t& framePosition, float speed, float gain, float targetFrame) {
  if (sampleCount < 1) return;
  static constexpr auto kLoops =
      levelLoops<kVariant>(std::make_integer_sequence<int, kTableLevels>{});
  const int level = levelForSpeed(speed, twoStep(kVariant));

  float scaled = speed * 65536.0f * 256.0f;
  if constexpr (twoStep(kVariant)) scaled = scaled * 0.5f;
  const uint32_t increment = static_cast<uint32_t>(numeric_detail::truncateLikeX86(scaled));

  // Positions are ours alone and lie in 0..0xFF30F6; the limit keeps the
  // glide's arithmetic clear of overflow whatever a record holds.
  framePosition = std::clamp(framePosition, 0, 0xFFFFFF);
  int32_t step = (targetPosition(targetFrame) - framePosition) / sampleCount;
  if constexpr (twoStep(kVariant)) step = step / 2;

  kLoops[level](destination, table, sampleCount, phase, framePosition, increment, step, gain);
}

template void renderTable<Variant::cubic2x>(float*, const int16_t*, int, uint32_t&, int32_t&, float,
                                            float, float);
template void renderTable<Variant::linear2x>(float*, const int16_t*, int, uint32_t&, int32_t&,
                                             float, float, float);
template void renderTable<Variant::linear>(float*, const int16_t*, int, uint32_t&, int32_t&, float,
                                           float, float);
template void renderTable<Variant::nearest>(float*, const int16_t*, int, uint32_t&, int32_t&, float,
                                            float, float);

}  // namespace sablevox::render_detail
