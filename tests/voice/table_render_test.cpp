// The edges of the four table players, which the regression renders (one
// per quality) do not reach: level 1, the last frame, hostile input.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "voice/oscillator_render.h"
#include "waves/wave_format.h"

namespace sablevox {
namespace {

constexpr int32_t kLastPosition = 0xFF0000;  // frame 255, where jumps land
const OscRender kPlayers[] = {renderCubic2x, renderLinear2x, renderLinear, renderNearest};

// Pseudo-random samples over the whole 16-bit range, sized exactly so that a
// read beyond frame 255 is caught by the address sanitizer.
std::vector<int16_t> knownTable() {
  std::vector<int16_t> t(kTableValues);
  uint32_t s = 12345;
  for (int16_t& v : t) v = static_cast<int16_t>((s = s * 1664525u + 1013904223u) >> 16);
  return t;
}

TEST(TableRender, LevelOneStaysInsideItsTwoSamples) {
  std::vector<int16_t> marked(kTableValues, 30000);  // all else is a loud marker
  for (int frame = 0; frame < 256; ++frame) {
    marked[frame * kFrameBlock + 2] = 100;
    marked[frame * kFrameBlock + 3] = -100;
  }
  for (OscRender render : kPlayers) {
    std::vector<float> out(256, 0.0f);
    uint32_t phase = 0;
    int32_t position = 0;
    render(out.data(), marked.data(), 256, phase, position, 3.1f, 1.0f, 200.0f);
    for (float v : out) ASSERT_LE(std::abs(v), 100.0f);
  }
}

TEST(TableRender, HostileSpeedsTargetsAndPositionsStayInsideTheTable) {
  const std::vector<int16_t> table = knownTable();
  for (OscRender render : kPlayers) {
    for (float x : {NAN, INFINITY, -INFINITY, 1e30f, -1e30f, -0.5f}) {
      std::vector<float> out(32, 0.0f);
      uint32_t phase = 0;
      int32_t position = x > 0.0f ? INT32_MAX : kLastPosition + 40000;
      render(out.data(), table.data(), 32, phase, position, x, 1.0f, x);
      for (float v : out) ASSERT_TRUE(std::isfinite(v));
      EXPECT_GE(position, 0);
    }
  }
}

}  // namespace
}  // namespace sablevox
