// The four table players against a direct evaluation of their formulas on a
// known table, and their edges: level 1, the last frame, hostile input.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "voice/oscillator_render.h"
#include "waves/level_table.h"
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

int64_t floorDiv(int64_t a, int64_t b) {
  return static_cast<int64_t>(std::floor(double(a) / b));
}

// Variant k of kPlayers, evaluated step by step in 64-bit integers and
// floor divisions, added to 7.0.
std::vector<float> expected(int k, const std::vector<int16_t>& t, int count, uint32_t phase,
                            int64_t position, float speed, float gain, int64_t target) {
  const bool twoStep = k < 2;
  const int level = levelForSpeed(speed, twoStep);
  const int64_t n = int64_t{1} << level;
  const auto increment = static_cast<uint32_t>(int64_t(speed * 16777216.0f * (twoStep ? 0.5f : 1)));
  const int64_t positionStep = (target - position) / count / (twoStep ? 2 : 1);
  std::vector<float> out(count, 7.0f);
  for (int i = 0; i < count; ++i) {
    int64_t v[2];
    for (int s = 0; s < (twoStep ? 2 : 1); ++s) {
      position += positionStep;
      phase = (phase + increment) % (1u << 24);
      const int64_t index = phase >> (24 - level), f = (phase * n) % (1 << 24) / 4096;
      const int64_t frame = (position >> 16) & 0xFF, w = position & 0xFFFF;
      auto r = [&](int j) {
        const int64_t p = n + ((index + j) & (n - 1));
        const int64_t a = t[frame * 2048 + p], b = t[std::min<int64_t>(frame + 1, 255) * 2048 + p];
        return floorDiv(b * w + a * (65535 - w), 65536);
      };
      if (k == 0) {  // Catmull-Rom between r(1) and r(2)
        const int64_t ca = floorDiv(3 * (r(1) - r(2)) - r(0) + r(3), 2);
        const int64_t cb = r(0) + 2 * r(2) - floorDiv(r(3) + 5 * r(1), 2);
        const int64_t cc = floorDiv(r(2) - r(0), 2);
        v[s] = floorDiv((floorDiv((floorDiv(ca * f, 4096) + cb) * f, 4096) + cc) * f, 4096) + r(1);
      } else if (k == 1) {
        v[s] = floorDiv(r(1) * (4096 - f) + r(2) * f, 4096);
      } else if (k == 2) {
        v[s] = floorDiv(r(0) * (4096 - f) + r(1) * f, 4096);
      } else {
        v[s] = t[frame * 2048 + n + index];
      }
    }
    out[i] += twoStep ? (float(v[0]) + float(v[1])) * gain * 0.5f : float(v[0]) * gain;
  }
  return out;
}

TEST(TableRender, MatchesTheFormulaAtEveryLevelAndPosition) {
  const std::vector<int16_t> table = knownTable();
  // From standstill (level 10, the phase stands) to beyond the table (level
  // 1); blend weight 0 (start 0, target 0), glides up, down, from the jump
  // position 0xFF0000 and to the highest target.
  for (int k = 0; k < 4; ++k) {
    for (float speed : {0.0f, 0.0013f, 0.01f, 0.09f, 0.3f, 1.7f, 3.5f}) {
      for (int32_t start : {0, 0x123456, kLastPosition}) {
        for (float targetFrame : {0.0f, 77.3f, 254.99f}) {
          std::vector<float> out(110, 7.0f);
          uint32_t phase = 0xABCDEF;
          int32_t position = start;
          kPlayers[k](out.data(), table.data(), 110, phase, position, speed, 0.37f, targetFrame);
          const auto target = static_cast<int32_t>(targetFrame * 65535.0f);
          ASSERT_EQ(out, expected(k, table, 110, 0xABCDEF, start, speed, 0.37f, target))
              << "variant " << k << " speed " << speed << " start " << start;
          // The glide ends a little short of the target, never beyond it.
          EXPECT_LE(std::abs(target - position), std::abs(target - start));
        }
      }
    }
  }
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
