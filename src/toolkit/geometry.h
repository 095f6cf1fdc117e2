// Points, rectangles and colours of the toolkit: pixels, origin at the frame's
// top left corner, y growing downward.
#pragma once

#include <algorithm>
#include <cstdint>

namespace VSTGUI {

struct CPoint {
  int32_t x = 0;
  int32_t y = 0;
  constexpr CPoint() = default;
  constexpr CPoint(int32_t px, int32_t py) : x(px), y(py) {}
  constexpr bool operator==(const CPoint&) const = default;
  constexpr CPoint& offset(int32_t dx, int32_t dy) {
    x += dx;
    y += dy;
    return *this;
  }
};

struct CRect {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;
  constexpr CRect() = default;
  constexpr CRect(int32_t l, int32_t t, int32_t r, int32_t b)
      : left(l), top(t), right(r), bottom(b) {}
  constexpr bool operator==(const CRect&) const = default;

  constexpr int32_t width() const { return right - left; }
  constexpr int32_t height() const { return bottom - top; }
  constexpr bool isEmpty() const { return right <= left || bottom <= top; }
  // The right and bottom edges belong to the rectangle for hit tests, so that
  // of two views sharing an edge the later one takes a click on it.
  constexpr bool pointInside(const CPoint& p) const {
    return p.x >= left && p.x <= right && p.y >= top && p.y <= bottom;
  }
  constexpr bool rectOverlap(const CRect& r) const {
    return r.right >= left && r.left <= right && r.bottom >= top && r.top <= bottom;
  }
  constexpr CRect& offset(int32_t dx, int32_t dy) {
    left += dx;
    right += dx;
    top += dy;
    bottom += dy;
    return *this;
  }
  constexpr CRect& moveTo(int32_t x, int32_t y) { return offset(x - left, y - top); }
  // Intersection; an empty result keeps right >= left and bottom >= top.
  constexpr CRect& bound(const CRect& r) {
    left = std::max(left, r.left);
    top = std::max(top, r.top);
    right = std::max(left, std::min(right, r.right));
    bottom = std::max(top, std::min(bottom, r.bottom));
    return *this;
  }
  // Swaps inverted edges, so that drawing code may take any rectangle.
  constexpr CRect normalized() const {
    return {std::min(left, right), std::min(top, bottom), std::max(left, right),
            std::max(top, bottom)};
  }
};

struct CColor {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;
  uint8_t unused = 0;
  constexpr bool operator==(const CColor& c) const {
    return red == c.red && green == c.green && blue == c.blue;
  }
  constexpr uint32_t rgb() const { return uint32_t{red} << 16 | uint32_t{green} << 8 | blue; }
};

inline constexpr CColor kBlackCColor{0, 0, 0, 0};
inline constexpr CColor kWhiteCColor{255, 255, 255, 0};
inline constexpr CColor kRedCColor{255, 0, 0, 0};
inline constexpr CColor kGreyCColor{127, 127, 127, 0};

}  // namespace VSTGUI
