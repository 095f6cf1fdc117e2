// Runs a filter kernel over one channel, or over both channels of a stereo
// voice in one loop. A kernel holds one channel's coefficients and running
// values in locals: constructed from the record, sample(x) per sample,
// flush() between stretches, store() back into the record at the end. The
// filters are serial recurrences, so one channel waits on its own latency;
// in the pair loop the other channel's chain fills those gaps. Each channel's
// arithmetic, stretches and flushes are those of the one-channel loop, so
// both forms give the same bits.
#pragma once

#include "filter/denormal_guard.h"
#include "filter/filter_state.h"

namespace sablevox {

template <typename Kernel>
void runKernel(float* buffer, int count, FilterState& state) {
  Kernel kernel(state);
  runFlushed(
      count, [&](int i) { buffer[i] = kernel.sample(buffer[i]); }, [&] { kernel.flush(); });
  kernel.store(state);
}

template <typename Kernel>
void runKernelPair(float* left, float* right, int count, FilterState& leftState,
                   FilterState& rightState) {
  Kernel l(leftState);
  Kernel r(rightState);
  runFlushed(
      count,
      [&](int i) {
        left[i] = l.sample(left[i]);
        right[i] = r.sample(right[i]);
      },
      [&] {
        l.flush();
        r.flush();
      });
  l.store(leftState);
  r.store(rightState);
}

}  // namespace sablevox
