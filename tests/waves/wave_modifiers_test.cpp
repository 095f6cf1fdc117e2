// The wave modifiers where the regression renders do not reach: steps that
// are off or unknown, and Time, which moves harmonics between frames. Each
// other modifier is pinned by the modifiers render (a fault in any of their
// gains, limits, combs, the scramble or the stretch moves its checksum).
#include "waves/wave_modifiers.h"

#include <gtest/gtest.h>

#include <vector>

#include "waves/wave_format.h"

namespace sablevox {
namespace {

using Buffer = std::vector<float>;

template <typename F>
Buffer spectrumOf(F function) {  // A[f][i] = function(f, i)
  Buffer buffer(kWaveValues);
  for (int f = 0; f < kWaveFrames; ++f) {
    for (int i = 0; i < kWaveHarmonics; ++i) buffer[f * kWaveHarmonics + i] = function(f, i);
  }
  return buffer;
}
// One frame holding only the given harmonics, repeated over all frames.
Buffer harmonics(std::initializer_list<std::pair<int, float>> list) {
  return spectrumOf([&](int, int i) {
    for (auto [index, value] : list) {
      if (index == i) return value;
    }
    return 0.0f;
  });
}
Buffer modified(Buffer buffer, int step) {
  applyWaveModifier(buffer.data(), step, kWaveFrames);
  return buffer;
}
float at(const Buffer& buffer, int frame, int index) {
  return buffer[frame * kWaveHarmonics + index];
}
// A[f][i] = f + 1000 i: each value tells where it came from.
const Buffer kFramesMarked =
    spectrumOf([](int f, int i) { return static_cast<float>(f + 1000 * i); });

TEST(WaveModifiers, OffAndUnknownStepsChangeNothing) {
  for (int step : {int{kModOff}, -1, kModifierSteps})
    EXPECT_EQ(modified(kFramesMarked, step), kFramesMarked);
  Buffer buffer = kFramesMarked;
  applyWaveModifier(buffer.data(), kModMixX2, 0);
  EXPECT_EQ(buffer, kFramesMarked);
}

// What Time does is heard only on waves of many frames; the regression
// renders play the fixed single-frame waves, where it changes nothing.
TEST(WaveModifiers, TimeLeadsEachHarmonicAlongTheFrames) {
  const Buffer single = harmonics({{0, 3.0f}, {9, 4.0f}, {200, 5.0f}});
  for (int step = kModTime16; step <= kModTime107; ++step)
    EXPECT_EQ(modified(single, step), single);
  const int leads[] = {16, 32, 37, 64, 107};
  for (int step = kModTime16; step <= kModTime107; ++step) {
    const Buffer shifted = modified(kFramesMarked, step);
    const int lead = leads[step - kModTime16];
    for (int i : {0, 1, 5, 255}) {
      for (int f : {0, 1, 200, 255}) {
        ASSERT_EQ(at(shifted, f, i), ((f + lead * i) & 255) + 1000 * i) << step;
      }
    }
  }
}

}  // namespace
}  // namespace sablevox
