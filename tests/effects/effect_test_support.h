// Helpers shared by the effect tests: signals, block-wise runs, a host tempo.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "host/tempo_source.h"

namespace sablevox::testing {

struct Stereo2 {
  std::vector<float> left, right;
  explicit Stereo2(int n = 0) : left(n, 0.0f), right(n, 0.0f) {}
  int size() const { return static_cast<int>(left.size()); }
};

// Full-scale uniform noise, independent per channel.
inline Stereo2 noise(int n, unsigned seed) {
  std::mt19937 rng(seed);
  std::uniform_real_distribution<float> dist(-1.0f, 1.0f);
  Stereo2 s(n);
  for (int i = 0; i < n; ++i) {
    s.left[i] = dist(rng);
    s.right[i] = dist(rng);
  }
  return s;
}

// Runs unit.process over the signal in blocks of `block` samples.
template <typename Unit>
void runBlocks(Unit& unit, Stereo2& s, int block) {
  for (int done = 0; done < s.size(); done += block) {
    const int n = std::min(block, s.size() - done);
    unit.process(s.left.data() + done, s.right.data() + done, n);
  }
}

// First index at or after `from` whose magnitude exceeds `threshold`, or -1.
inline int firstAbove(const std::vector<float>& x, int from, float threshold) {
  for (int i = from; i < static_cast<int>(x.size()); ++i) {
    if (std::fabs(x[i]) > threshold) return i;
  }
  return -1;
}

inline float maxAbs(const std::vector<float>& x, int from = 0, int to = -1) {
  if (to < 0) to = static_cast<int>(x.size());
  float m = 0.0f;
  for (int i = from; i < to; ++i) m = std::max(m, std::fabs(x[i]));
  return m;
}

// After noise and a reset, a unit plays exactly like a fresh one made the
// same way by make(mode).
template <typename Make>
void expectResetGivesFreshState(Make make, int modes, int samples) {
  for (int mode = 0; mode < modes; ++mode) {
    auto used = make(mode);
    auto fresh = make(mode);
    Stereo2 warmup = noise(samples, 1);
    runBlocks(*used, warmup, 333);
    used->reset();
    Stereo2 a = noise(samples, 2);
    Stereo2 b = a;
    runBlocks(*used, a, 700);
    runBlocks(*fresh, b, 700);
    EXPECT_EQ(a.left, b.left) << "mode " << mode;
    EXPECT_EQ(a.right, b.right) << "mode " << mode;
  }
}

class FixedTempo : public TempoSource {
 public:
  explicit FixedTempo(double bpm) : bpm_(bpm) {}
  double getTempo() override {
    ++calls;
    return bpm_;
  }
  void set(double bpm) { bpm_ = bpm; }
  int calls = 0;

 private:
  double bpm_;
};

}  // namespace sablevox::testing
