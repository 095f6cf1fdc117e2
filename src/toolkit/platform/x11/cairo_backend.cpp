#include "toolkit/platform/x11/cairo_backend.h"

#include <cmath>
#include <string>

#include "toolkit/platform/platform.h"

namespace VSTGUI {
namespace {

// The toolkit's texts are 8-bit (Latin-1); cairo wants UTF-8 and refuses
// anything else for good, so every text is converted.
std::string toUtf8(const char* s) {
  std::string out;
  for (; *s != 0; ++s) {
    const auto c = static_cast<unsigned char>(*s);
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else {
      out += static_cast<char>(0xc0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3f));
    }
  }
  return out;
}

}  // namespace

CairoBackend::CairoBackend(cairo_surface_t* surface, int width, int height)
    : target(cairo_surface_reference(surface)), cr(cairo_create(surface)), w(width), h(height) {
  // Pixel-exact shapes, as the artwork's coordinates assume; text keeps
  // its smoothing through the font options.
  cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_SLIGHT);
  cairo_set_font_options(cr, options);
  cairo_font_options_destroy(options);
}

CairoBackend::~CairoBackend() {
  cairo_destroy(cr);
  cairo_surface_destroy(target);
}

void CairoBackend::setColour(CColor c) {
  cairo_set_source_rgb(cr, c.red / 255.0, c.green / 255.0, c.blue / 255.0);
}

void CairoBackend::setClip(const CRect& clip) {
  cairo_reset_clip(cr);
  const CRect c = clip.normalized();
  cairo_rectangle(cr, c.left, c.top, c.width(), c.height());
  cairo_clip(cr);
}

void CairoBackend::fillRect(const CRect& r, CColor colour) {
  setColour(colour);
  cairo_rectangle(cr, r.left, r.top, r.width(), r.height());
  cairo_fill(cr);
}

void CairoBackend::line(CPoint from, CPoint to, CColor colour, int lineWidth) {
  setColour(colour);
  cairo_set_line_width(cr, lineWidth);
  cairo_move_to(cr, from.x + 0.5, from.y + 0.5);
  cairo_line_to(cr, to.x + 0.5, to.y + 0.5);
  cairo_stroke(cr);
}

void CairoBackend::fillEllipse(const CRect& r, CColor colour) {
  setColour(colour);
  cairo_save(cr);
  cairo_translate(cr, (r.left + r.right) / 2.0, (r.top + r.bottom) / 2.0);
  cairo_scale(cr, r.width() / 2.0, r.height() / 2.0);
  cairo_arc(cr, 0.0, 0.0, 1.0, 0.0, 6.283185307179586);
  cairo_restore(cr);
  cairo_fill(cr);
}

void CairoBackend::useFont(const FontSpec& font) {
  cairo_select_font_face(cr, font.family,
                         font.italic ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
                         font.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(cr, font.pixelHeight);
}

void CairoBackend::text(const char* s, const CRect& r, int align, const FontSpec& font,
                        CColor colour) {
  const std::string utf8 = toUtf8(s);
  useFont(font);
  cairo_font_extents_t fe;
  cairo_font_extents(cr, &fe);
  cairo_text_extents_t te;
  cairo_text_extents(cr, utf8.c_str(), &te);
  double x = r.left + 1.0;
  if (align == 1) x = r.left + (r.width() - te.x_advance) / 2.0;
  if (align == 2) x = r.right - te.x_advance;
  const double y = r.top + (r.height() - (fe.ascent + fe.descent)) / 2.0 + fe.ascent;
  cairo_save(cr);
  cairo_rectangle(cr, r.left, r.top, r.width(), r.height());
  cairo_clip(cr);
  setColour(colour);
  cairo_move_to(cr, static_cast<int>(x + 0.5), static_cast<int>(y + 0.5));
  cairo_show_text(cr, utf8.c_str());
  cairo_restore(cr);
}

int CairoBackend::textWidth(const char* s, const FontSpec& font) {
  const std::string utf8 = toUtf8(s);
  useFont(font);
  cairo_text_extents_t te;
  cairo_text_extents(cr, utf8.c_str(), &te);
  return static_cast<int>(std::ceil(te.x_advance));
}

void CairoBackend::image(const PixelImage& img, const CRect& dest, CPoint source) {
  if (img.pixels == nullptr || img.width <= 0 || img.height <= 0) return;
  // cairo only reads a source surface; the cast drops const for its signature.
  cairo_surface_t* s = cairo_image_surface_create_for_data(
      reinterpret_cast<unsigned char*>(const_cast<uint32_t*>(img.pixels)), CAIRO_FORMAT_ARGB32,
      img.width, img.height, img.width * 4);
  cairo_set_source_surface(cr, s, dest.left - source.x, dest.top - source.y);
  cairo_rectangle(cr, dest.left, dest.top, dest.width(), dest.height());
  cairo_fill(cr);
  cairo_set_source_rgb(cr, 0, 0, 0);  // lets go of the image before it is destroyed
  cairo_surface_destroy(s);
}

void CairoBackend::copyFrom(DrawBackend& from, const CRect& dest, CPoint source) {
  auto* other = dynamic_cast<CairoBackend*>(&from);
  if (other == nullptr) return;
  cairo_surface_flush(other->target);
  cairo_set_source_surface(cr, other->target, dest.left - source.x, dest.top - source.y);
  cairo_rectangle(cr, dest.left, dest.top, dest.width(), dest.height());
  cairo_fill(cr);
  cairo_set_source_rgb(cr, 0, 0, 0);
}

uint32_t CairoBackend::pixel(int x, int y) {
  if (cairo_surface_get_type(target) != CAIRO_SURFACE_TYPE_IMAGE || x < 0 || y < 0 || x >= w ||
      y >= h) {
    return 0;
  }
  cairo_surface_flush(target);
  const unsigned char* data = cairo_image_surface_get_data(target);
  const int stride = cairo_image_surface_get_stride(target);
  return *reinterpret_cast<const uint32_t*>(data + y * stride + x * 4) & 0xffffffu;
}

void CairoBackend::flush() {
  cairo_surface_flush(target);
}

std::unique_ptr<DrawBackend> createImageBackend(int width, int height) {
  cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
  auto backend = std::make_unique<CairoBackend>(s, width, height);
  cairo_surface_destroy(s);
  return backend;
}

}  // namespace VSTGUI
