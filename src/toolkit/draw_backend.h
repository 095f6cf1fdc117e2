// What the platform draws with: exact pixel primitives in the coordinates of
// the target surface. CDrawContext turns the toolkit's drawing rules into
// these; only the platform folder implements them.
#pragma once

#include <cstdint>

#include "toolkit/geometry.h"

namespace VSTGUI {

struct FontSpec {
  const char* family = "Liberation Sans";
  int pixelHeight = 12;
  bool bold = false;
  bool italic = false;
};

// Premultiplied 32-bit ARGB pixels, rows of width * 4 bytes.
struct PixelImage {
  const uint32_t* pixels = nullptr;
  int width = 0;
  int height = 0;
};

class DrawBackend {
 public:
  virtual ~DrawBackend() = default;
  virtual int width() const = 0;
  virtual int height() const = 0;
  // Later primitives touch only this rectangle (half-open).
  virtual void setClip(const CRect& clip) = 0;
  // Fills [left, right) x [top, bottom).
  virtual void fillRect(const CRect& r, CColor colour) = 0;
  // A line of the given width between pixel centres.
  virtual void line(CPoint from, CPoint to, CColor colour, int width) = 0;
  virtual void fillEllipse(const CRect& r, CColor colour) = 0;
  // One line of text, vertically centred in r and clipped to it; align 0
  // left (1 pixel in), 1 centre, 2 right.
  virtual void text(const char* s, const CRect& r, int align, const FontSpec& font,
                    CColor colour) = 0;
  virtual int textWidth(const char* s, const FontSpec& font) = 0;
  // Copies the size of dest from image at source; pixels of alpha 0 leave
  // the target as it is.
  virtual void image(const PixelImage& image, const CRect& dest, CPoint source) = 0;
  // Copies pixels of another backend of the same platform, without scaling.
  virtual void copyFrom(DrawBackend& from, const CRect& dest, CPoint source) = 0;
  // Pixel of an image target, 0xRRGGBB; 0 for a window target.
  virtual uint32_t pixel(int x, int y) = 0;
  virtual void flush() = 0;
};

}  // namespace VSTGUI
