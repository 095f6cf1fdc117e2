// The written mark of a delay line: how many cells at its start may hold
// anything but zero since its last clear. Lines are written at rising,
// wrapping indices from 0 after a clear, so a clear need write only up to
// the mark, and the pages beyond it are never touched: a line that was
// never written costs nothing to clear and stays out of the resident set.
// Header-only; any library may use it.
#pragma once

#include <algorithm>
#include <cstdint>

namespace sablevox {

// The mark after writing `count` cells from `first` (0 .. length - 1) on;
// past the end the index wraps and the whole line counts as written.
inline int32_t raiseWrittenMark(int32_t mark, int first, int count, int length) {
  const int reach = first + std::max(count, 0);
  return reach > length ? length : std::max(mark, reach);
}

// Clears the cells below the mark, and at least `least` (words that other
// code writes without marking); the caller then sets the mark to 0.
inline void clearWritten(float* line, int32_t mark, int length, int least = 0) {
  std::fill(line, line + std::clamp(mark, least, length), 0.0f);
}

}  // namespace sablevox
