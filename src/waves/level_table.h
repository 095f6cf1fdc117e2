// Which band-limited level of a table an oscillator plays at a given speed.
// Levels hold fewer harmonics the higher the pitch, so that the highest one
// stays near 0.37 of the rate at which the table is stepped (0.46 at level 8,
// 0.55 at level 9).
#pragma once

#include <array>
#include <cstdint>

namespace sablevox {

constexpr int kLevelTableSize = 2048;

namespace level_detail {
constexpr std::array<int8_t, kLevelTableSize> makeLevelTable() {
  std::array<int8_t, kLevelTableSize> table{};
  // Index 0 and 1 play the full level 10; then each level covers a range
  // twice as wide as the one before: 2 -> 9, 3..4 -> 8, 5..8 -> 7, ...,
  // 129..256 -> 2, and everything above plays level 1.
  table[0] = 10;
  table[1] = 10;
  int level = 9;
  int first = 2;
  for (int width = 1; level >= 2; width *= 2, --level) {
    for (int i = first; i < first + width; ++i) table[i] = static_cast<int8_t>(level);
    first += width;
  }
  for (int i = first; i < kLevelTableSize; ++i) table[i] = 1;
  return table;
}
}  // namespace level_detail

// Pitch index -> level 1..10.
inline constexpr std::array<int8_t, kLevelTableSize> levelTable = level_detail::makeLevelTable();

// speed: cycles per output sample; oversampled: the render variant steps
// twice per output sample. Any float is accepted: NaN, infinities and
// speeds beyond the table give level 1, the safest against aliasing.
// Audio thread; constant time.
inline int levelForSpeed(float speed, bool oversampled) {
  float t = speed * 65536.0f * 350.0f;
  if (oversampled) t = t * 0.5f;
  if (!(t < 2147483648.0f && t > -2147483648.0f)) return 1;
  int i = static_cast<int>(t);
  i = (i < 0 ? -i : i) >> 14;
  return i < kLevelTableSize ? levelTable[static_cast<size_t>(i)] : 1;
}

}  // namespace sablevox
