// The four table players against a direct evaluation of their formulas on a
// known table, their edge cases (blend weight 0, level 1, speed 0, the last
// frame), and the noise render.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "host/numeric.h"
#include "voice/oscillator_render.h"
#include "waves/level_table.h"
#include "waves/wave_format.h"

namespace sablevox {
namespace {

// A table of pseudo-random samples over the whole 16-bit range, sized exactly
// so that a read beyond frame 255 is caught by the address sanitizer.
std::vector<int16_t> knownTable() {
  std::vector<int16_t> t(kTableValues);
  uint32_t s = 12345;
  for (int16_t& v : t) {
    s = s * 1664525u + 1013904223u;
    v = static_cast<int16_t>(s >> 16);
  }
  return t;
}

// Floor division, as an arithmetic shift right divides.
int64_t floorDiv(int64_t a, int64_t b) {
  return static_cast<int64_t>(std::floor(double(a) / b));
}

// The formulas, evaluated step by step with 64-bit integers.
struct Reference {
  const std::vector<int16_t>& t;
  int level;
  int64_t position;
  uint32_t phase;

  int64_t blended(uint32_t index, int k) const {
    const int64_t n = int64_t{1} << level;
    const int64_t frame = (position >> 16) & 0xFF;
    const int64_t next = frame < 255 ? frame + 1 : 255;
    const int64_t w = position & 0xFFFF;
    const int64_t p = n + ((index + k) & (n - 1));
    return floorDiv(t[next * 2048 + p] * w + t[frame * 2048 + p] * (65535 - w), 65536);
  }
  void step(uint32_t increment, int64_t positionStep, uint32_t& index, int64_t& f) {
    position += positionStep;
    phase = (phase + increment) % (1u << 24);
    index = phase >> (24 - level);
    f = (phase * (int64_t{1} << level)) % (int64_t{1} << 24) / 4096;
  }
};

int64_t cubic(int64_t y0, int64_t y1, int64_t y2, int64_t y3, int64_t f) {
  const int64_t a = floorDiv(3 * (y1 - y2) - y0 + y3, 2);
  const int64_t b = y0 + 2 * y2 - floorDiv(y3 + 5 * y1, 2);
  const int64_t c = floorDiv(y2 - y0, 2);
  return floorDiv((floorDiv((floorDiv(a * f, 4096) + b) * f, 4096) + c) * f, 4096) + y1;
}

constexpr int32_t kLastPosition = 0xFF0000;  // frame 255, where jumps land

enum class Kind { cubic2x, linear2x, linear, nearest };

struct Case {
  Kind kind;
  OscRender render;
};

std::vector<float> expected(Kind kind, const std::vector<int16_t>& t, int count, uint32_t phase,
                            int32_t position, float speed, float gain, int32_t target) {
  const bool twoStep = kind == Kind::cubic2x || kind == Kind::linear2x;
  Reference r{t, levelForSpeed(speed, twoStep), position, phase};
  const uint32_t increment =
      static_cast<uint32_t>(static_cast<int64_t>(speed * 16777216.0f * (twoStep ? 0.5f : 1.0f)));
  int64_t positionStep = (target - position) / count;
  if (twoStep) positionStep /= 2;
  std::vector<float> out(count, 0.0f);
  for (int i = 0; i < count; ++i) {
    int64_t v[2];
    for (int s = 0; s < (twoStep ? 2 : 1); ++s) {
      uint32_t index;
      int64_t f;
      r.step(increment, positionStep, index, f);
      switch (kind) {
        case Kind::cubic2x:
          v[s] = cubic(r.blended(index, 0), r.blended(index, 1), r.blended(index, 2),
                       r.blended(index, 3), f);
          break;
        case Kind::linear2x:
          v[s] = floorDiv(r.blended(index, 1) * (4096 - f) + r.blended(index, 2) * f, 4096);
          break;
        case Kind::linear:
          v[s] = floorDiv(r.blended(index, 0) * (4096 - f) + r.blended(index, 1) * f, 4096);
          break;
        case Kind::nearest:
          v[s] = t[((r.position >> 16) & 0xFF) * 2048 + (1 << r.level) + index];
          break;
      }
    }
    out[i] = twoStep ? (float(v[0]) + float(v[1])) * gain * 0.5f : float(v[0]) * gain;
  }
  return out;
}

class TableRenderTest : public ::testing::TestWithParam<Case> {
 protected:
  std::vector<int16_t> table = knownTable();
};

TEST_P(TableRenderTest, MatchesTheFormulaAtEveryLevelAndPosition) {
  const Case c = GetParam();
  // Speeds from standstill (level 10) to beyond the table (level 1); glides
  // up, down, from the jump position 0xFF0000 and to the highest target.
  const float speeds[] = {0.0f, 0.0013f, 0.01f, 0.09f, 0.3f, 1.7f, 3.5f};
  const int32_t starts[] = {0, 0x123456, kLastPosition};
  const float targets[] = {0.0f, 77.3f, 254.99f};
  for (float speed : speeds) {
    for (int32_t start : starts) {
      for (float targetFrame : targets) {
        std::vector<float> out(110, 0.0f);
        uint32_t phase = 0xABCDEF;
        int32_t position = start;
        c.render(out.data(), table.data(), 110, phase, position, speed, 0.37f, targetFrame);
        const int32_t target = static_cast<int32_t>(targetFrame * 65535.0f);
        const std::vector<float> want =
            expected(c.kind, table, 110, 0xABCDEF, start, speed, 0.37f, target);
        ASSERT_EQ(out, want) << "speed " << speed << " start " << start << " target "
                             << targetFrame;
        // The glide ends a little short of the target, never beyond it.
        EXPECT_LE(std::abs(target - position), std::abs(target - start));
      }
    }
  }
}

TEST_P(TableRenderTest, AddsIntoTheBufferAndWritesStateBack) {
  const Case c = GetParam();
  std::vector<float> out(64, 1000.0f);
  uint32_t phase = 0;
  int32_t position = 0;
  c.render(out.data(), table.data(), 64, phase, position, 0.02f, 1.0f, 100.0f);
  const std::vector<float> alone = expected(c.kind, table, 64, 0, 0, 0.02f, 1.0f, 100 * 65535);
  for (int i = 0; i < 64; ++i) ASSERT_EQ(out[i], 1000.0f + alone[i]);
  EXPECT_NE(phase, 0u);
  EXPECT_GT(position, 0);
  // A call of 0 samples changes nothing.
  const uint32_t p0 = phase;
  const int32_t f0 = position;
  c.render(out.data(), table.data(), 0, phase, position, 0.02f, 1.0f, 0.0f);
  EXPECT_EQ(phase, p0);
  EXPECT_EQ(position, f0);
}

INSTANTIATE_TEST_SUITE_P(Variants, TableRenderTest,
                         ::testing::Values(Case{Kind::cubic2x, renderCubic2x},
                                           Case{Kind::linear2x, renderLinear2x},
                                           Case{Kind::linear, renderLinear},
                                           Case{Kind::nearest, renderNearest}));

TEST(TableRenderEdges, BlendWeightZeroLosesOneUnitAndLowQualityDoesNot) {
  std::vector<int16_t> table(kTableValues, 1000);
  std::vector<float> blended(8, 0.0f), nearest(8, 0.0f);
  uint32_t phase = 0;
  int32_t position = 0;
  renderLinear(blended.data(), table.data(), 8, phase, position, 0.01f, 1.0f, 0.0f);
  phase = 0;
  renderNearest(nearest.data(), table.data(), 8, phase, position, 0.01f, 1.0f, 0.0f);
  EXPECT_EQ(blended[3], 999.0f);  // 1000 * 65535 >> 16
  EXPECT_EQ(nearest[3], 1000.0f);
}

TEST(TableRenderEdges, LevelOneStaysInsideItsTwoSamples) {
  // Only level 1 of each frame holds sound; everything else is a loud marker.
  std::vector<int16_t> table(kTableValues, 30000);
  for (int frame = 0; frame < 256; ++frame) {
    table[frame * kFrameBlock + 2] = 100;
    table[frame * kFrameBlock + 3] = -100;
  }
  for (OscRender render : {renderCubic2x, renderLinear2x, renderLinear, renderNearest}) {
    std::vector<float> out(256, 0.0f);
    uint32_t phase = 0;
    int32_t position = 0;
    render(out.data(), table.data(), 256, phase, position, 3.1f, 1.0f, 200.0f);
    for (float v : out) ASSERT_LE(std::abs(v), 100.0f);
  }
}

TEST(TableRenderEdges, SpeedZeroPlaysAConstantFromLevelTen) {
  const std::vector<int16_t> table = knownTable();
  std::vector<float> out(50, 0.0f);
  uint32_t phase = 0x400000;  // a quarter cycle: sample 256 of level 10
  int32_t position = 5 << 16;
  renderNearest(out.data(), table.data(), 50, phase, position, 0.0f, 1.0f, 5.0f / 65535 * 65536);
  for (float v : out) ASSERT_EQ(v, float(table[5 * kFrameBlock + 1024 + 256]));
  EXPECT_EQ(phase, 0x400000u);
}

TEST(TableRenderEdges, HostileSpeedsAndTargetsStayInsideTheTable) {
  const std::vector<int16_t> table = knownTable();
  const float hostile[] = {NAN, INFINITY, -INFINITY, 1e30f, -1e30f, -0.5f};
  for (OscRender render : {renderCubic2x, renderLinear2x, renderLinear, renderNearest}) {
    for (float x : hostile) {
      std::vector<float> out(32, 0.0f);
      uint32_t phase = 0;
      int32_t position = kLastPosition + 40000;  // a random jump may land here
      render(out.data(), table.data(), 32, phase, position, x, 1.0f, x);
      for (float v : out) ASSERT_TRUE(std::isfinite(v));
      EXPECT_GE(position, 0);
      EXPECT_LE(position, kLastPosition + 40000);
    }
  }
}

TEST(NoiseRender, IgnoresPitchAndFollowsTheSharedGenerator) {
  randomState = 777u;
  std::vector<float> out(16, 1.0f);
  uint32_t phase = 9;
  int32_t position = 9;
  renderNoise(out.data(), nullptr, 16, phase, position, 0.3f, 0.5f, 10.0f);
  randomState = 777u;
  for (float v : out) EXPECT_EQ(v, 1.0f + randomRange(-1000.0f, 1000.0f) * 0.5f);
  EXPECT_EQ(phase, 9u);
  EXPECT_EQ(position, 9);
}

}  // namespace
}  // namespace sablevox
