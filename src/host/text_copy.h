// Host string buffers: at most `limit` characters plus the terminating zero,
// never more, since hosts size their buffers by the interface's limits.
#pragma once

#include <cstddef>

namespace sablevox {

inline void copyText(char* destination, const char* source, std::size_t limit) {
  if (destination == nullptr) return;
  std::size_t i = 0;
  if (source != nullptr) {
    for (; i < limit && source[i] != '\0'; ++i) destination[i] = source[i];
  }
  destination[i] = '\0';
}

}  // namespace sablevox
