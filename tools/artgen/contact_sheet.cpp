#include "artgen/contact_sheet.h"

#include <cmath>
#include <memory>

#include "artgen/drawing.h"

namespace sablevox::artgen {
namespace {

using editor::ControlKind;
using editor::LayoutControl;

// An ARGB copy of a canvas with one colour made transparent.
cairo_surface_t* keyed(Canvas& c, uint32_t key, bool keyOut) {
  cairo_surface_t* s = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, c.width(), c.height());
  unsigned char* data = cairo_image_surface_get_data(s);
  const int stride = cairo_image_surface_get_stride(s);
  for (int y = 0; y < c.height(); ++y) {
    auto* row = reinterpret_cast<uint32_t*>(data + static_cast<size_t>(y) * stride);
    for (int x = 0; x < c.width(); ++x) {
      const uint32_t p = c.pixel(x, y);
      row[x] = keyOut && p == key ? 0 : (p | 0xff000000u);
    }
  }
  cairo_surface_mark_dirty(s);
  return s;
}

void paint(cairo_t* cr, cairo_surface_t* s, double x, double y, double sx, double sy, double w,
           double h) {
  cairo_save(cr);
  cairo_rectangle(cr, x, y, w, h);
  cairo_clip(cr);
  cairo_set_source_surface(cr, s, x - sx, y - sy);
  cairo_paint(cr);
  cairo_restore(cr);
}

bool defaultAtZero(int tag) {
  return tag == 14 || tag == 15 || tag == 17 || tag == 18 || tag == 20;
}

// The main panel with every control at its default, as the editor shows it.
void composeMain(Canvas& out, int skin) {
  drawMainPanel(out, skins()[skin], static_cast<uint32_t>(editor::bitmap::kSkinBase + skin));
  Canvas white(editor::kPanelWidth, editor::kPanelHeight),
      black(editor::kPanelWidth, editor::kPanelHeight);
  drawWhiteKeys(white);
  drawBlackKeys(black);
  Canvas small(5, 5), large(7, 7), light(13, 24);
  drawHandle(small);
  drawHandle(large);
  drawLight(light);
  cairo_surface_t* w = keyed(white, 0x00ff00, true);
  cairo_surface_t* b = keyed(black, 0x00ff00, true);
  cairo_surface_t* hs = keyed(small, 0xffffff, true);
  cairo_surface_t* hl = keyed(large, 0xffffff, true);
  cairo_surface_t* li = keyed(light, 0x00ff00, true);
  cairo_t* cr = out.cr();
  for (const LayoutControl& k : editor::mainPanel()) {
    const auto& r = k.rect;
    switch (k.kind) {
      case ControlKind::WhiteKey:
        paint(cr, w, r.left, r.top, r.left, 0, r.width(), 106);
        break;
      case ControlKind::BlackKey:
        paint(cr, b, r.left, r.top, r.left, 0, r.width(), 67);
        break;
      case ControlKind::Menu:
        out.fillRect(r.left, r.top, r.width(), r.height(),
                     Colour::rgb(k.colour.red, k.colour.green, k.colour.blue));
        break;
      case ControlKind::SmallKnob:
      case ControlKind::LargeKnob: {
        const bool isLarge = k.kind == ControlKind::LargeKnob;
        const double radius = r.width() * 0.5, inset = 6;
        const double value = defaultAtZero(k.tag) ? 0.0 : 0.5;
        const double alpha = 225.0 * M_PI / 180.0 - value * 270.0 * M_PI / 180.0;
        const int px = static_cast<int>(radius + std::cos(alpha) * (radius - inset) + 0.5);
        const int py = static_cast<int>(radius - std::sin(alpha) * (radius - inset) + 0.5);
        const int size = isLarge ? 7 : 5;
        paint(cr, isLarge ? hl : hs, r.left + px - size / 2, r.top + py - size / 2, 0, 0, size,
              size);
        break;
      }
      case ControlKind::SmallButton:
        cairo_save(cr);
        {
          Canvas button(11, 22);
          drawSmallButton(button);
          cairo_surface_t* bs = keyed(button, 0, false);
          paint(cr, bs, r.left, r.top, 0, 0, 11, 11);
          cairo_surface_destroy(bs);
        }
        cairo_restore(cr);
        break;
      case ControlKind::Light:
        paint(cr, li, r.left, r.top, 0, 12, 13, 12);
        break;
      default:
        break;
    }
  }
  for (cairo_surface_t* s : {w, b, hs, hl, li}) cairo_surface_destroy(s);
}

void composeSettings(Canvas& out) {
  drawSettingsPanel(out);
  Canvas sw(12, 24);
  drawHideKeysSwitch(sw);
  cairo_surface_t* s = keyed(sw, 0, false);
  for (const LayoutControl& k : editor::settingsPanel()) {
    if (k.kind == ControlKind::Menu)
      out.fillRect(k.rect.left, k.rect.top, k.rect.width(), k.rect.height(),
                   Colour::rgb(k.colour.red, k.colour.green, k.colour.blue));
    if (k.kind == ControlKind::HideKeysSwitch)
      paint(out.cr(), s, k.rect.left, k.rect.top, 0, 0, 12, 12);
  }
  cairo_surface_destroy(s);
}

bool save(Canvas& c, const std::string& path) {
  cairo_surface_t* s = cairo_get_target(c.cr());
  cairo_surface_flush(s);
  return cairo_surface_write_to_png(s, path.c_str()) == CAIRO_STATUS_SUCCESS;
}

}  // namespace

bool writePanelPreview(int skin, const std::string& path) {
  Canvas c(editor::kPanelWidth, editor::kPanelHeight);
  if (skin < 0)
    composeSettings(c);
  else
    composeMain(c, skin);
  return save(c, path);
}

bool writeContactSheet(const std::string& path) {
  // Four columns of half-size panels, each with its name under it.
  constexpr int kCols = 4, kW = 305, kH = 221, kLabel = 16, kGap = 8;
  const int count = editor::bitmap::kSkinCount + 1;
  const int rows = (count + kCols - 1) / kCols;
  Canvas sheet(kCols * (kW + kGap) + kGap, rows * (kH + kLabel + kGap) + kGap);
  sheet.fillRect(0, 0, sheet.width(), sheet.height(), Colour::rgb(34, 34, 36));
  for (int i = 0; i < count; ++i) {
    Canvas panel(editor::kPanelWidth, editor::kPanelHeight);
    const bool settings = i == editor::bitmap::kSkinCount;
    if (settings)
      composeSettings(panel);
    else
      composeMain(panel, i);
    const double x = kGap + (i % kCols) * (kW + kGap),
                 y = kGap + (i / kCols) * (kH + kLabel + kGap);
    cairo_t* cr = sheet.cr();
    cairo_save(cr);
    cairo_translate(cr, x, y);
    cairo_scale(cr, 0.5, 0.5);
    cairo_set_source_surface(cr, cairo_get_target(panel.cr()), 0, 0);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_GOOD);
    cairo_paint(cr);
    cairo_restore(cr);
    sheet.font(Face::SansBold, 11);
    const std::string name =
        settings ? std::string("Settings panel") : std::string(editor::kSkinNames[i]);
    sheet.text(name,
               {static_cast<int>(x), static_cast<int>(y) + kH + 2, static_cast<int>(x) + kW,
                static_cast<int>(y) + kH + 14},
               Canvas::Align::Centre, Colour::rgb(230, 230, 230));
  }
  return save(sheet, path);
}

}  // namespace sablevox::artgen
