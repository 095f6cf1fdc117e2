// The delay-line frequency modulator: the low-passed input goes into a line
// whose read delay an internal 16-point shape swings, at a depth ramped
// across each render pass from the last tick's value to this tick's.
#include "filter/denormal_guard.h"
#include "filter/filter_routine.h"
#include "filter/fm_shapes.h"
#include "host/written_mark.h"

namespace sablevox {
namespace {

constexpr int kLineMask = kFilterLineLength - 1;

}  // namespace

void filterFm(float* buffer, int count, FilterState& state) {
  const float increment = state.set1[0], depth = state.set1[1], cf = state.set1[2];
  const float* shape = fmShape(state.set1[3]);
  int write = static_cast<int>(state.set2[0]) & kLineMask;
  // Cells write + 1 .. write + count are written below.
  state.lineWritten = raiseWrittenMark(state.lineWritten, write + 1, count, kFilterLineLength);
  float phase = state.set2[1];
  const float lastDepth = state.set2[2];
  float low = state.hist1[0], band = state.hist1[1], high = state.hist1[2];
  float* line = state.line;
  const float inverseCount = count > 0 ? 1.0f / static_cast<float>(count) : 0.0f;
  runFlushed(
      count,
      [&](int i) {
        const float x = buffer[i];
        const float d =
            (static_cast<float>(count - i) * lastDepth + static_cast<float>(i) * depth) *
            inverseCount;
        const float t = phase * 16.0f;
        const int j = static_cast<int>(t);
        const float e = t - static_cast<float>(j);
        const float a = shape[j & 15] * (1.0f - e) + shape[(j + 1) & 15] * e;
        // The delay swings around d + 1 samples, between 1 and 2d + 1.
        const float v = a * d + d + 1.0f;
        const int vi = static_cast<int>(v);
        const float ev = v - static_cast<float>(vi);
        const int r = write - vi;
        buffer[i] = line[r & kLineMask] * (1.0f - ev) + line[(r - 1) & kLineMask] * ev;
        // Input low-pass with a fixed damping of 0.999.
        low = low + cf * band;
        high = x + kFilterDenormalOffset - low - band * 0.999f;
        band = band + cf * high;
        // Written after the read, so the shortest path is two samples.
        write = (write + 1) & kLineMask;
        line[write] = low;
        phase = phase + increment;
        phase = phase - static_cast<float>(static_cast<int>(phase));
      },
      [&] { flushTiny(low, band, high); });
  state.set2[0] = static_cast<float>(write);
  state.set2[1] = phase;
  // A second pass in the same tick finds no ramp left.
  state.set2[2] = depth;
  state.hist1[0] = low;
  state.hist1[1] = band;
  state.hist1[2] = high;
}

}  // namespace sablevox
