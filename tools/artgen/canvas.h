// Drawing helpers of the artwork generator: a cairo image with pinned fonts,
// seeded textures and PNG output. Everything here is deterministic: fonts
// come from files of a Debian package the build installs, hinting is off,
// and the noise is a hash of the pixel position.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <string>
#include <vector>

#include "editor/layout.h"

namespace sablevox::artgen {

struct Colour {
  double r = 0, g = 0, b = 0;
  static Colour rgb(int red, int green, int blue) {
    return {red / 255.0, green / 255.0, blue / 255.0};
  }
  Colour mix(const Colour& o, double t) const {
    return {r + (o.r - r) * t, g + (o.g - g) * t, b + (o.b - b) * t};
  }
  Colour scaled(double f) const { return {r * f, g * f, b * f}; }
};

enum class Face { Sans, SansBold, Narrow, NarrowBold, Serif, SerifBold, Mono, MonoBold };

class Canvas {
 public:
  // scale 2 draws the same picture at twice the pixels: vector work is
  // scaled, textures and pixel art are doubled.
  Canvas(int width, int height, int scale = 1);
  ~Canvas();
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  cairo_t* cr() const { return cr_; }
  int width() const { return width_; }
  int height() const { return height_; }
  int scale() const { return scale_; }

  void set(const Colour& c, double alpha = 1.0);
  void fillRect(double x, double y, double w, double h, const Colour& c, double alpha = 1.0);
  void roundedRect(double x, double y, double w, double h, double radius);
  void verticalGradient(double x, double y, double w, double h, const Colour& top,
                        const Colour& bottom);

  void font(Face face, double size);
  double textWidth(const std::string& text);
  enum class Align { Left, Centre, Right };
  // Text whose baseline sits so that capitals fill the box's height centre.
  void text(const std::string& text, const editor::Rect& box, Align align, const Colour& c);
  void textAt(const std::string& text, double x, double baseline, const Colour& c);

  // Pixel passes over a rectangle of the finished drawing.
  void brushed(const editor::Rect& r, double amount, uint32_t seed);
  void grain(const editor::Rect& r, double amount, uint32_t seed);
  void wood(const editor::Rect& r, const Colour& light, const Colour& dark, uint32_t seed);

  // Raw 0x00RRGGBB access after drawing (opaque images), in the picture's
  // own coordinates; at scale 2 a pixel is a block of four.
  uint32_t pixel(int x, int y);
  void setPixel(int x, int y, uint32_t rgb);

  std::vector<unsigned char> png();

 private:
  template <class F>
  void eachPixel(const editor::Rect& r, F f);

  int width_;
  int height_;
  int scale_;
  cairo_surface_t* surface_;
  cairo_t* cr_;
};

// A repeatable value in [0, 1) for a position and seed.
double hashNoise(int x, int y, uint32_t seed);
// Smooth noise in [0, 1) over a lattice of the given cell size.
double valueNoise(double x, double y, uint32_t seed);

}  // namespace sablevox::artgen
