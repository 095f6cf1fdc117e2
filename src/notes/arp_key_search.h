// The four searches of the arpeggiator's key table. Each gives -1 when
// nothing is found. lowest and below never see key 0: a walk that leans on
// them can't settle on it (0 is reached only through highest or above).
#pragma once

#include <algorithm>

#include "host/adelay.h"

namespace sablevox {

using ArpKeyTable = bool[kKeys];

// The highest set key, 0..127.
inline int arpHighest(const ArpKeyTable& keys) {
  for (int k = kKeys - 1; k >= 0; --k) {
    if (keys[k]) return k;
  }
  return -1;
}

// The lowest set key, 1..127.
inline int arpLowest(const ArpKeyTable& keys) {
  for (int k = 1; k < kKeys; ++k) {
    if (keys[k]) return k;
  }
  return -1;
}

// The next set key above k; any k is accepted.
inline int arpAbove(const ArpKeyTable& keys, int k) {
  for (int i = std::clamp(k, -1, kKeys - 1) + 1; i < kKeys; ++i) {
    if (keys[i]) return i;
  }
  return -1;
}

// The next set key below k, 1 or higher; any k is accepted.
inline int arpBelow(const ArpKeyTable& keys, int k) {
  for (int i = std::clamp(k, 1, kKeys) - 1; i >= 1; --i) {
    if (keys[i]) return i;
  }
  return -1;
}

}  // namespace sablevox
