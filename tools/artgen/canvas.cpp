#include "artgen/canvas.h"

#include <cairo-ft.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>

namespace sablevox::artgen {
namespace {

const char* faceFile(Face face) {
  switch (face) {
    case Face::Sans:
      return SABLEVOX_FONT_DIR "/LiberationSans-Regular.ttf";
    case Face::SansBold:
      return SABLEVOX_FONT_DIR "/LiberationSans-Bold.ttf";
    case Face::Narrow:
      return SABLEVOX_FONT_DIR "/LiberationSansNarrow-Regular.ttf";
    case Face::NarrowBold:
      return SABLEVOX_FONT_DIR "/LiberationSansNarrow-Bold.ttf";
    case Face::Serif:
      return SABLEVOX_FONT_DIR "/LiberationSerif-Regular.ttf";
    case Face::SerifBold:
      return SABLEVOX_FONT_DIR "/LiberationSerif-Bold.ttf";
    case Face::Mono:
      return SABLEVOX_FONT_DIR "/LiberationMono-Regular.ttf";
    case Face::MonoBold:
      return SABLEVOX_FONT_DIR "/LiberationMono-Bold.ttf";
  }
  return "";
}

// Faces live as long as the program: cairo keeps references to them.
cairo_font_face_t* loadFace(Face face) {
  static FT_Library library = nullptr;
  static std::map<Face, cairo_font_face_t*> faces;
  if (auto it = faces.find(face); it != faces.end()) return it->second;
  if (library == nullptr && FT_Init_FreeType(&library) != 0) {
    std::fprintf(stderr, "artgen: no FreeType\n");
    std::exit(1);
  }
  FT_Face ft = nullptr;
  if (FT_New_Face(library, faceFile(face), 0, &ft) != 0) {
    std::fprintf(stderr, "artgen: cannot load %s\n", faceFile(face));
    std::exit(1);
  }
  cairo_font_face_t* cf = cairo_ft_font_face_create_for_ft_face(ft, 0);
  faces[face] = cf;
  return cf;
}

uint32_t mixBits(uint32_t h) {
  h ^= h >> 16;
  h *= 0x7feb352du;
  h ^= h >> 15;
  h *= 0x846ca68bu;
  h ^= h >> 16;
  return h;
}

uint8_t clampByte(double v) {
  return static_cast<uint8_t>(std::clamp(std::lround(v), 0L, 255L));
}

}  // namespace

double hashNoise(int x, int y, uint32_t seed) {
  const uint32_t h = mixBits(static_cast<uint32_t>(x) * 0x9e3779b1u ^
                             mixBits(static_cast<uint32_t>(y) + seed * 0x85ebca6bu));
  return (h >> 8) / 16777216.0;
}

double valueNoise(double x, double y, uint32_t seed) {
  const int x0 = static_cast<int>(std::floor(x));
  const int y0 = static_cast<int>(std::floor(y));
  const double fx = x - x0, fy = y - y0;
  const double sx = fx * fx * (3 - 2 * fx), sy = fy * fy * (3 - 2 * fy);
  const double a = hashNoise(x0, y0, seed), b = hashNoise(x0 + 1, y0, seed);
  const double c = hashNoise(x0, y0 + 1, seed), d = hashNoise(x0 + 1, y0 + 1, seed);
  return (a + (b - a) * sx) + ((c + (d - c) * sx) - (a + (b - a) * sx)) * sy;
}

Canvas::Canvas(int width, int height, int scale) : width_(width), height_(height), scale_(scale) {
  surface_ = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width * scale, height * scale);
  cr_ = cairo_create(surface_);
  cairo_scale(cr_, scale, scale);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_set_font_options(cr_, options);
  cairo_font_options_destroy(options);
}

Canvas::~Canvas() {
  cairo_destroy(cr_);
  cairo_surface_destroy(surface_);
}

void Canvas::set(const Colour& c, double alpha) {
  cairo_set_source_rgba(cr_, c.r, c.g, c.b, alpha);
}

void Canvas::fillRect(double x, double y, double w, double h, const Colour& c, double alpha) {
  set(c, alpha);
  cairo_rectangle(cr_, x, y, w, h);
  cairo_fill(cr_);
}

void Canvas::roundedRect(double x, double y, double w, double h, double radius) {
  cairo_new_sub_path(cr_);
  cairo_arc(cr_, x + w - radius, y + radius, radius, -M_PI / 2, 0);
  cairo_arc(cr_, x + w - radius, y + h - radius, radius, 0, M_PI / 2);
  cairo_arc(cr_, x + radius, y + h - radius, radius, M_PI / 2, M_PI);
  cairo_arc(cr_, x + radius, y + radius, radius, M_PI, 1.5 * M_PI);
  cairo_close_path(cr_);
}

void Canvas::verticalGradient(double x, double y, double w, double h, const Colour& top,
                              const Colour& bottom) {
  cairo_pattern_t* p = cairo_pattern_create_linear(0, y, 0, y + h);
  cairo_pattern_add_color_stop_rgb(p, 0, top.r, top.g, top.b);
  cairo_pattern_add_color_stop_rgb(p, 1, bottom.r, bottom.g, bottom.b);
  cairo_set_source(cr_, p);
  cairo_rectangle(cr_, x, y, w, h);
  cairo_fill(cr_);
  cairo_pattern_destroy(p);
}

void Canvas::font(Face face, double size) {
  cairo_set_font_face(cr_, loadFace(face));
  cairo_set_font_size(cr_, size);
}

double Canvas::textWidth(const std::string& text) {
  cairo_text_extents_t e;
  cairo_text_extents(cr_, text.c_str(), &e);
  return e.x_advance;
}

void Canvas::textAt(const std::string& text, double x, double baseline, const Colour& c) {
  set(c);
  cairo_move_to(cr_, x, baseline);
  cairo_show_text(cr_, text.c_str());
}

void Canvas::text(const std::string& text, const editor::Rect& box, Align align, const Colour& c) {
  cairo_font_extents_t fe;
  cairo_font_extents(cr_, &fe);
  const double w = textWidth(text);
  double x = box.left;
  if (align == Align::Centre) x = box.left + (box.width() - w) / 2;
  if (align == Align::Right) x = box.right - w;
  // Capitals are about 0.72 of the ascent: centre them in the box.
  const double capital = fe.ascent * 0.72;
  const double baseline = std::round(box.top + (box.height() + capital) / 2);
  textAt(text, std::round(x), baseline, c);
}

template <class F>
void Canvas::eachPixel(const editor::Rect& r, F f) {
  cairo_surface_flush(surface_);
  unsigned char* data = cairo_image_surface_get_data(surface_);
  const int stride = cairo_image_surface_get_stride(surface_);
  const int s = scale_;
  for (int y = std::max(0, r.top) * s; y < std::min(height_, r.bottom) * s; ++y) {
    auto* row = reinterpret_cast<uint32_t*>(data + static_cast<size_t>(y) * stride);
    for (int x = std::max(0, r.left) * s; x < std::min(width_, r.right) * s; ++x) {
      const uint32_t p = row[x];
      double rgb[3] = {double(p >> 16 & 255), double(p >> 8 & 255), double(p & 255)};
      f(x / s, y / s, rgb);
      row[x] =
          uint32_t{clampByte(rgb[0])} << 16 | uint32_t{clampByte(rgb[1])} << 8 | clampByte(rgb[2]);
    }
  }
  cairo_surface_mark_dirty(surface_);
}

void Canvas::brushed(const editor::Rect& r, double amount, uint32_t seed) {
  eachPixel(r, [&](int x, int y, double* rgb) {
    const double streak = valueNoise(x * 0.02, y * 1.0, seed) - 0.5;
    // Fibres sixteen pixels long: the look of brushing, and PNG's row filters
    // compress them far better than noise in every pixel.
    const double fine = hashNoise(x / 16, y, seed + 1) - 0.5;
    const double f = 1.0 + amount * (streak * 0.8 + fine * 0.35);
    for (int i = 0; i < 3; ++i) rgb[i] *= f;
  });
}

void Canvas::grain(const editor::Rect& r, double amount, uint32_t seed) {
  if (amount * 255 * 0.3 < 1.5) return;  // finer than a level: bytes for nothing
  eachPixel(r, [&](int x, int y, double* rgb) {
    // Three levels of grain: texture for the eye at a fraction of the bytes.
    const double n = std::round((hashNoise(x, y, seed) - 0.5) * 2.0) * 0.3;
    for (int i = 0; i < 3; ++i) rgb[i] += amount * 255 * n;
  });
}

void Canvas::wood(const editor::Rect& r, const Colour& light, const Colour& dark, uint32_t seed) {
  eachPixel(r, [&](int x, int y, double* rgb) {
    const double warp =
        6.0 * valueNoise(x * 0.01, y * 0.05, seed) + 2.0 * valueNoise(x * 0.05, y * 0.2, seed + 7);
    const double t = y * 0.45 + warp * 3.0;
    const double ring = 0.5 + 0.5 * std::sin(t);
    const double fibre = valueNoise(x * 0.12, y * 0.5, seed + 3) * 0.25;
    const double m = std::clamp(ring * 0.75 + fibre, 0.0, 1.0);
    const Colour c = light.mix(dark, m);
    rgb[0] = c.r * 255;
    rgb[1] = c.g * 255;
    rgb[2] = c.b * 255;
  });
}

uint32_t Canvas::pixel(int x, int y) {
  cairo_surface_flush(surface_);
  const unsigned char* data = cairo_image_surface_get_data(surface_);
  const int stride = cairo_image_surface_get_stride(surface_);
  return reinterpret_cast<const uint32_t*>(data +
                                           static_cast<size_t>(y) * scale_ * stride)[x * scale_] &
         0xffffffu;
}

void Canvas::setPixel(int x, int y, uint32_t rgb) {
  cairo_surface_flush(surface_);
  unsigned char* data = cairo_image_surface_get_data(surface_);
  const int stride = cairo_image_surface_get_stride(surface_);
  for (int dy = 0; dy < scale_; ++dy) {
    auto* row = reinterpret_cast<uint32_t*>(data + static_cast<size_t>(y * scale_ + dy) * stride);
    for (int dx = 0; dx < scale_; ++dx) row[x * scale_ + dx] = rgb;
  }
  cairo_surface_mark_dirty(surface_);
}

std::vector<unsigned char> Canvas::png() {
  // libpng at its strongest setting: the artwork has a size budget in the
  // plug-in, and this costs build time only.
  cairo_surface_flush(surface_);
  const int w = cairo_image_surface_get_width(surface_),
            h = cairo_image_surface_get_height(surface_);
  const unsigned char* data = cairo_image_surface_get_data(surface_);
  const int stride = cairo_image_surface_get_stride(surface_);
  std::vector<unsigned char> out;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  if (setjmp(png_jmpbuf(png))) {
    std::fprintf(stderr, "artgen: PNG encoding failed\n");
    std::exit(1);
  }
  png_set_write_fn(
      png, &out,
      [](png_structp p, png_bytep bytes, png_size_t length) {
        auto* v = static_cast<std::vector<unsigned char>*>(png_get_io_ptr(p));
        v->insert(v->end(), bytes, bytes + length);
      },
      nullptr);
  png_set_compression_level(png, 9);
  png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_ALL_FILTERS);
  png_set_IHDR(png, info, static_cast<png_uint_32>(w), static_cast<png_uint_32>(h), 8,
               PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_BASE,
               PNG_FILTER_TYPE_BASE);
  png_write_info(png, info);
  std::vector<unsigned char> row(static_cast<size_t>(w) * 3);
  for (int y = 0; y < h; ++y) {
    const auto* src = reinterpret_cast<const uint32_t*>(data + static_cast<size_t>(y) * stride);
    for (int x = 0; x < w; ++x) {
      row[3 * x] = static_cast<unsigned char>(src[x] >> 16);
      row[3 * x + 1] = static_cast<unsigned char>(src[x] >> 8);
      row[3 * x + 2] = static_cast<unsigned char>(src[x]);
    }
    png_write_row(png, row.data());
  }
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return out;
}

}  // namespace sablevox::artgen
