// The record of one filter channel. Every field is a float, whole numbers too,
// so that one record can be cleared or copied as plain words. Each voice owns
// a left and a right one.
#pragma once

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
};

static_assert(sizeof(FilterState) == (6 + 8 + 5 + 4 + kFilterLineLength) * sizeof(float));

}  // namespace sablevox
