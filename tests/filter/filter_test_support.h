// Helpers of the filter tests: zeroed records on the heap (a record carries
// the 128 KB delay line), tones, and gains measured through the routines.
#pragma once

#include <cmath>
#include <memory>
#include <vector>

#include "filter/filter_design.h"
#include "filter/filter_types.h"

namespace sablevox::test {

inline std::unique_ptr<FilterState> newState() {
  return std::make_unique<FilterState>();
}

inline FilterRoutine designStep(int step, int rate, float c, float r, FilterState& state) {
  return designFilter(filterCodeForStep(step), rate, c, r, state);
}

inline void setWords(float* words, std::initializer_list<float> values) {
  for (float v : values) *words++ = v;
}

// Ratio of output to input level of a sine at hz, after the filter has
// settled, without the DC that a one-sided clipper adds; amplitude 10 keeps
// the clippers nearly linear.
inline double gainAt(int step, int rate, float c, float r, double hz, float amplitude = 10.0f) {
  auto state = newState();
  const FilterRoutine routine = designStep(step, rate, c, r, *state);
  // Settle, then measure over whole periods.
  const int settle = 4096, periods = int(std::ceil(4096 * hz / rate));
  const int measured = int(std::lround(periods * rate / hz)), n = settle + measured;
  std::vector<float> buffer(n);
  for (int i = 0; i < n; ++i) buffer[i] = amplitude * std::sin(2 * M_PI * hz * i / rate);
  routine(buffer.data(), n, *state);
  double mean = 0, sum = 0;
  for (int i = settle; i < n; ++i) mean += buffer[i] / measured;
  for (int i = settle; i < n; ++i) sum += (buffer[i] - mean) * (buffer[i] - mean);
  return std::sqrt(sum / measured) / (amplitude / std::sqrt(2.0));
}

// A sawtooth of 110 Hz at the level the oscillators deliver.
class Sawtooth {
 public:
  explicit Sawtooth(int rate, float level = 30000.0f) : step_(110.0 / rate), level_(level) {}
  float next() {
    phase_ += step_;
    phase_ -= std::floor(phase_);
    return static_cast<float>((phase_ * 2 - 1) * level_);
  }

 private:
  double phase_ = 0, step_;
  float level_;
};

// The record as plain words: header 0..5, set1 6..13, set2 14..18, hist1
// 19..22, hist2 (the start of line) 23..26.
inline float* words(FilterState& state) {
  return reinterpret_cast<float*>(&state);
}
inline const float* words(const FilterState& state) {
  return reinterpret_cast<const float*>(&state);
}
inline constexpr int kRecordWords = 27;

inline bool isSubnormal(float v) {
  return std::fpclassify(v) == FP_SUBNORMAL;
}

}  // namespace sablevox::test
