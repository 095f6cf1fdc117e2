// Helpers of the filter tests: zeroed records on the heap (a record carries
// the 128 KB delay line), a sawtooth and the record as plain words.
#pragma once

#include <cmath>
#include <memory>

#include "filter/filter_design.h"
#include "filter/filter_types.h"

namespace sablevox::test {

inline std::unique_ptr<FilterState> newState() {
  return std::make_unique<FilterState>();
}

inline FilterRoutine designStep(int step, int rate, float c, float r, FilterState& state) {
  return designFilter(filterCodeForStep(step), rate, c, r, state);
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
