// The record of one filter channel. Every field but the line's mark is a
// float, whole numbers too, so that one record can be cleared or copied as
// plain words. Each voice owns a left and a right one.
#pragma once

#include <cstdint>

namespace sablevox {

constexpr int kFilterLineLength = 32768;

struct FilterState {
  float code;
  float sampleRate;
  float cutoff;     // after clamping to 0..1
  float resonance;  // after clamping to 0..1
  float mode;       // selects what copy and reset cover
  float gain;
  float set1[8];  // coefficients and parameters
  float set2[5];  // second coefficient set, or running state
  float hist1[4];
  // hist2 is the start of the FM filter's delay line: the same storage.
  union {
    float hist2[4];
    float line[kFilterLineLength];
  };
  // Cells at the start of `line` that may be other than zero: the FM filter
  // raises it as it writes, a clear of the line sets it back to 0. The first
  // four cells (hist2, which other routines write) always count as written.
  // Clearing up to the mark clears the line whole at a fraction of the cost,
  // and leaves the untouched pages of the 128 KB record untouched.
  int32_t lineWritten;
};

static_assert(sizeof(FilterState) == (6 + 8 + 5 + 4 + 1 + kFilterLineLength) * sizeof(float));

}  // namespace sablevox
