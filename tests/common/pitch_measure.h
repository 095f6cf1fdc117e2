// Pitch of a rendered tone: rising zero crossings of the signal less its
// mean, interpolated between samples.
#pragma once

#include <cstddef>
#include <vector>

namespace sablevox::testing {

inline double zeroCrossingFrequency(const std::vector<float>& x, double sampleRate) {
  double mean = 0.0;
  for (float v : x) mean += v;
  mean /= static_cast<double>(x.size());
  double first = -1.0, last = -1.0;
  int crossings = 0;
  for (size_t i = 1; i < x.size(); ++i) {
    const double a = x[i - 1] - mean, b = x[i] - mean;
    if (a < 0.0 && b >= 0.0) {
      const double t = static_cast<double>(i - 1) + a / (a - b);
      if (first < 0.0) first = t;
      last = t;
      ++crossings;
    }
  }
  return crossings > 1 ? (crossings - 1) / (last - first) * sampleRate : 0.0;
}

}  // namespace sablevox::testing
