// DrawBackend on a cairo surface: the frame's window, a popup window or an
// image in memory.
#pragma once

#include <cairo.h>

#include "toolkit/draw_backend.h"

namespace VSTGUI {

class CairoBackend : public DrawBackend {
 public:
  // Takes a reference to surface.
  CairoBackend(cairo_surface_t* surface, int width, int height);
  ~CairoBackend() override;
  CairoBackend(const CairoBackend&) = delete;
  CairoBackend& operator=(const CairoBackend&) = delete;

  int width() const override { return w; }
  int height() const override { return h; }
  void setClip(const CRect& clip) override;
  void fillRect(const CRect& r, CColor colour) override;
  void line(CPoint from, CPoint to, CColor colour, int lineWidth) override;
  void fillEllipse(const CRect& r, CColor colour) override;
  void text(const char* s, const CRect& r, int align, const FontSpec& font, CColor colour) override;
  int textWidth(const char* s, const FontSpec& font) override;
  void image(const PixelImage& image, const CRect& dest, CPoint source) override;
  void copyFrom(DrawBackend& from, const CRect& dest, CPoint source) override;
  uint32_t pixel(int x, int y) override;
  void flush() override;

  cairo_surface_t* surface() const { return target; }

 private:
  void useFont(const FontSpec& font);
  void setColour(CColor c);

  cairo_surface_t* target;
  cairo_t* cr;
  int w;
  int h;
};

}  // namespace VSTGUI
