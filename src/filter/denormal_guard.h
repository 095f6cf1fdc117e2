// Keeps the running values of the filter loops out of the subnormal range
// without touching the processor's floating-point mode. The 1e-06 input
// offset holds the low-pass states at a tiny constant, but the states of
// high-pass, band-pass and band outputs see that constant as DC, reject it,
// and decay towards zero through the subnormal range. So the loops run in
// short stretches and set the values that have fallen below kFlushBelow to
// zero between them: from there a filter fed with silence stays at exact
// zero or at its tiny constant. The level of the signal is that of the
// oscillators (thousands), so 1e-15 is far below anything audible, and no
// decay a filter here can have takes a value from 1e-15 to the subnormal
// range within one stretch.
#pragma once

#include <algorithm>
#include <cmath>

namespace sablevox {

inline constexpr int kFlushStretch = 16;
inline constexpr float kFlushBelow = 1e-15f;

template <typename... Values>
inline void flushTiny(Values&... values) {
  ((values = std::fabs(values) < kFlushBelow ? 0.0f : values), ...);
}

// Calls sample(i) for i in 0..count-1 and flush() after every stretch of
// kFlushStretch samples and at the end.
template <typename Sample, typename Flush>
inline void runFlushed(int count, Sample&& sample, Flush&& flush) {
  for (int start = 0; start < count; start += kFlushStretch) {
    const int end = std::min(count, start + kFlushStretch);
    for (int i = start; i < end; ++i) sample(i);
    flush();
  }
}

}  // namespace sablevox
