// The main panel: five bands of section fields on the skin's material, with
// headings, menu bezels, knob faces with scales, captions from the layout
// table, the maker's marks on the link areas and the keyboard bed.
#include <cmath>
#include <string>
#include <utility>

#include "artgen/drawing.h"

namespace sablevox::artgen {
namespace {

using editor::ControlKind;
using editor::LayoutControl;
using editor::Rect;
using editor::Section;

struct Field {
  Rect rect;
  const char* heading;
};

// The section fields; their edges keep clear of every control and caption.
constexpr Field kFields[] = {
    {{26, 4, 450, 49}, ""},
    {{26, 51, 450, 96}, ""},
    {{453, 4, 535, 96}, "CHARACTER"},
    {{26, 99, 300, 160}, "FILTER"},
    {{304, 99, 592, 160}, "LFO"},
    {{26, 163, 300, 230}, "FILTER ENVELOPE"},
    {{304, 163, 592, 230}, "AMP ENVELOPE"},
    {{26, 233, 200, 309}, "ARPEGGIATOR"},
    {{204, 233, 410, 309}, "EFFECT"},
    {{414, 233, 592, 309}, "OUTPUT"},
};

// The 270 degree sweep: lowest value at the lower left, clockwise.
constexpr double kStartAngle = 225.0 * M_PI / 180.0;
constexpr double kSweep = -270.0 * M_PI / 180.0;

bool bipolar(int tag) {
  return tag == 10 || tag == 11 || tag == 37 || tag == 26 || tag == 27 || tag == 32 || tag == 19 ||
         tag == 8 || tag == 9;
}

void fillMaterial(Canvas& c, Material m, const Rect& r, const Colour& top, const Colour& bottom,
                  double texture, uint32_t seed) {
  switch (m) {
    case Material::Wood:
      c.wood(r, top, bottom, seed);
      break;
    case Material::Brushed:
      c.verticalGradient(r.left, r.top, r.width(), r.height(), top, bottom);
      c.brushed(r, texture, seed);
      break;
    case Material::Gradient:
      c.verticalGradient(r.left, r.top, r.width(), r.height(), top, bottom);
      c.grain(r, texture * 0.3, seed);
      break;
    case Material::Matte:
      c.verticalGradient(r.left, r.top, r.width(), r.height(), top, bottom);
      c.grain(r, texture, seed);
      break;
  }
}

void drawField(Canvas& c, const Skin& s, const Field& f, uint32_t seed) {
  const Rect& r = f.rect;
  cairo_t* cr = c.cr();
  c.roundedRect(r.left + 0.5, r.top + 0.5, r.width() - 1, r.height() - 1, 4);
  c.set(s.insetColour, s.insetAlpha);
  cairo_fill_preserve(cr);
  c.set(s.line, 0.7);
  cairo_set_line_width(cr, 1);
  cairo_stroke(cr);
  if (s.inset == Material::Brushed)
    c.brushed({r.left + 2, r.top + 2, r.right - 2, r.bottom - 2}, s.texture * 0.6, seed);
  if (f.heading[0] == '\0') return;
  c.font(s.headingFace, s.headingSize);
  const double w = c.textWidth(f.heading);
  const Rect box{r.left + 7, r.top + 2, r.left + 7 + static_cast<int>(w) + 1, r.top + 13};
  switch (s.headingStyle) {
    case HeadingStyle::Bar:
      c.roundedRect(r.left + 2, r.top + 2, r.width() - 4, 11, 2.5);
      c.set(s.headingBar);
      cairo_fill(cr);
      break;
    case HeadingStyle::Plate:
      c.roundedRect(box.left - 4, box.top, w + 8, 11, 5);
      c.set(s.headingBar);
      cairo_fill(cr);
      break;
    case HeadingStyle::Rule:
      c.fillRect(box.right + 5, r.top + 7, r.right - box.right - 12, 1, s.headingBar);
      break;
  }
  c.text(f.heading, box, Canvas::Align::Left, s.heading);
}

void drawOscLabel(Canvas& c, const Skin& s, const Field& f, const char* digit) {
  const Rect& r = f.rect;
  c.font(s.headingFace, 7.0);
  c.text("OSC", {r.left + 4, r.top + 6, r.left + 28, r.top + 14}, Canvas::Align::Centre, s.heading);
  c.font(s.headingFace, 20.0);
  c.text(digit, {r.left + 4, r.top + 17, r.left + 28, r.top + 37}, Canvas::Align::Centre, s.accent);
}

void drawScale(Canvas& c, const Skin& s, double cx, double cy, double inner, double outer,
               bool centreMark) {
  cairo_t* cr = c.cr();
  cairo_new_path(cr);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
  for (int i = 0; i <= 10; ++i) {
    const double a = kStartAngle + kSweep * i / 10.0;
    const bool end = i == 0 || i == 10;
    const bool centre = centreMark && i == 5;
    const double o = outer + (end || centre ? 1.0 : 0.0);
    cairo_move_to(cr, cx + std::cos(a) * inner, cy - std::sin(a) * inner);
    cairo_line_to(cr, cx + std::cos(a) * o, cy - std::sin(a) * o);
    c.set(end || centre ? s.accent : s.scale, end || centre ? 1.0 : 0.75);
    cairo_set_line_width(cr, end || centre ? 1.4 : 0.9);
    cairo_stroke(cr);
  }
}

void drawKnobFace(Canvas& c, const Skin& s, double cx, double cy, double radius) {
  cairo_t* cr = c.cr();
  cairo_new_path(cr);
  // A soft shadow lifts the knob off the panel.
  cairo_arc(cr, cx + 0.8, cy + 1.2, radius + 0.8, 0, 2 * M_PI);
  c.set({0, 0, 0}, 0.35);
  cairo_fill(cr);
  cairo_arc(cr, cx, cy, radius, 0, 2 * M_PI);
  c.set(s.knobOuter);
  cairo_fill(cr);
  double inner = radius - 1.5;
  if (s.knob == KnobStyle::Chicken) inner = radius * 0.72;
  if (s.knob == KnobStyle::Metal) {
    // Knurled rim.
    for (int i = 0; i < 36; ++i) {
      const double a = i * M_PI / 18;
      cairo_move_to(cr, cx + std::cos(a) * (radius - 2), cy + std::sin(a) * (radius - 2));
      cairo_line_to(cr, cx + std::cos(a) * radius, cy + std::sin(a) * radius);
    }
    c.set(s.knobInner, 0.5);
    cairo_set_line_width(cr, 0.8);
    cairo_stroke(cr);
    inner = radius - 2.5;
  }
  cairo_pattern_t* p = cairo_pattern_create_linear(cx - inner, cy - inner, cx + inner, cy + inner);
  const Colour hi = s.knobInner.mix({1, 1, 1}, 0.25);
  const Colour lo = s.knobInner.scaled(0.7);
  cairo_pattern_add_color_stop_rgb(p, 0, hi.r, hi.g, hi.b);
  cairo_pattern_add_color_stop_rgb(p, 1, lo.r, lo.g, lo.b);
  if (s.knob == KnobStyle::Flat) {
    cairo_pattern_destroy(p);
    p = cairo_pattern_create_rgb(s.knobInner.r, s.knobInner.g, s.knobInner.b);
  }
  cairo_arc(cr, cx, cy, inner, 0, 2 * M_PI);
  cairo_set_source(cr, p);
  cairo_fill(cr);
  cairo_pattern_destroy(p);
  if (s.knob == KnobStyle::Rubber) {
    cairo_arc(cr, cx, cy, inner - 0.5, M_PI * 1.1, M_PI * 1.6);
    c.set({1, 1, 1}, 0.25);
    cairo_set_line_width(cr, 1);
    cairo_stroke(cr);
  }
}

void drawKnob(Canvas& c, const Skin& s, const LayoutControl& k) {
  const bool large = k.kind == ControlKind::LargeKnob;
  // Centre of the handle's circle: the knob draws its dot around this.
  const double cx = k.rect.left + (large ? 14.5 : 12.0);
  const double cy = k.rect.top + (large ? 14.5 : 12.0);
  const double face = large ? 12.0 : 8.5;
  drawScale(c, s, cx, cy, face + 1.5, face + (large ? 3.5 : 3.0), bipolar(k.tag));
  drawKnobFace(c, s, cx, cy, face);
}

void drawSmallButtonWell(Canvas& c, const Skin& s, const Rect& r) {
  c.roundedRect(r.left - 1.5, r.top - 1.5, r.width() + 3, r.height() + 3, 2);
  c.set(s.line, 0.9);
  cairo_set_line_width(c.cr(), 1);
  cairo_stroke(c.cr());
}

void drawSettingsMark(Canvas& c, const Skin& s, const Rect& r) {
  // A small cog so that the settings area is found.
  cairo_t* cr = c.cr();
  cairo_new_path(cr);
  const double cx = r.left + r.width() / 2.0, cy = r.top + r.height() / 2.0;
  for (int i = 0; i < 8; ++i) {
    const double a = i * M_PI / 4;
    cairo_move_to(cr, cx + std::cos(a) * 3, cy + std::sin(a) * 3);
    cairo_line_to(cr, cx + std::cos(a) * 5.2, cy + std::sin(a) * 5.2);
  }
  c.set(s.caption);
  cairo_set_line_width(cr, 1.6);
  cairo_stroke(cr);
  cairo_arc(cr, cx, cy, 3.4, 0, 2 * M_PI);
  cairo_set_line_width(cr, 1.4);
  cairo_stroke(cr);
}

void drawLightBezel(Canvas& c, const Skin& s, const Rect& r) {
  cairo_new_path(c.cr());
  cairo_arc(c.cr(), r.left + 6.5, r.top + 6, 6.8, 0, 2 * M_PI);
  c.set(s.line);
  cairo_set_line_width(c.cr(), 1);
  cairo_stroke(c.cr());
}

void drawLogoPlate(Canvas& c, const Skin& s) {
  // Top right: the maker's mark over the first web-link area.
  cairo_t* cr = c.cr();
  c.roundedRect(541.5, 5.5, 48, 90, 4);
  c.set(s.insetColour, std::min(1.0, s.insetAlpha + 0.15));
  cairo_fill_preserve(cr);
  c.set(s.accent);
  cairo_set_line_width(cr, 1);
  cairo_stroke(cr);
  // Emblem: a spectrum of bars in a ring.
  const double cx = 565.5, cy = 22.5;
  cairo_new_path(cr);
  cairo_arc(cr, cx, cy, 12, 0, 2 * M_PI);
  c.set(s.accent);
  cairo_set_line_width(cr, 1.5);
  cairo_stroke(cr);
  const double heights[] = {4, 8, 13, 9, 6, 11, 5};
  for (int i = 0; i < 7; ++i) {
    const double x = cx - 9.5 + i * 2.8;
    c.fillRect(x, cy + 6 - heights[i], 1.8, heights[i], s.accent);
  }
  cairo_save(cr);
  cairo_translate(cr, 569.5, 92);
  cairo_rotate(cr, -M_PI / 2);
  c.font(s.headingFace, 10);
  c.textAt("SABLEVOX", 0, 0, s.heading);
  cairo_restore(cr);
}

void drawEdgeMark(Canvas& c, const Skin& s) {
  // Left edge: the second web-link area, a vertical name plate.
  cairo_t* cr = c.cr();
  c.roundedRect(3.5, 52.5, 16, 69, 3);
  c.set(s.accent, 0.9);
  cairo_fill(cr);
  cairo_save(cr);
  cairo_translate(cr, 15, 118);
  cairo_rotate(cr, -M_PI / 2);
  c.font(Face::SansBold, 8);
  const double lum = 0.2126 * s.accent.r + 0.7152 * s.accent.g + 0.0722 * s.accent.b;
  c.textAt("sablevox", 0, 0, lum > 0.45 ? Colour{0.08, 0.08, 0.08} : Colour{1, 1, 1});
  cairo_restore(cr);
}

void drawScrew(Canvas& c, double cx, double cy) {
  cairo_t* cr = c.cr();
  cairo_new_path(cr);
  cairo_arc(cr, cx + 0.5, cy + 0.8, 4, 0, 2 * M_PI);
  c.set({0, 0, 0}, 0.4);
  cairo_fill(cr);
  cairo_pattern_t* p = cairo_pattern_create_linear(cx - 4, cy - 4, cx + 4, cy + 4);
  cairo_pattern_add_color_stop_rgb(p, 0, 0.86, 0.86, 0.84);
  cairo_pattern_add_color_stop_rgb(p, 1, 0.42, 0.42, 0.42);
  cairo_arc(cr, cx, cy, 3.6, 0, 2 * M_PI);
  cairo_set_source(cr, p);
  cairo_fill(cr);
  cairo_pattern_destroy(p);
  // A slot at a slant, as a screw is left when it is driven home.
  cairo_move_to(cr, cx - 2.6, cy + 1.4);
  cairo_line_to(cr, cx + 2.6, cy - 1.4);
  c.set({0.15, 0.15, 0.15});
  cairo_set_line_width(cr, 1.1);
  cairo_stroke(cr);
}

void drawKeyboardBed(Canvas& c, const Skin& s, uint32_t seed) {
  cairo_t* cr = c.cr();
  const Rect bed{0, 311, editor::kPanelWidth, editor::kPanelHeight};
  if (s.bedMaterial == Material::Wood) {
    c.wood(bed, s.panelTop, s.panelBottom, seed + 11);
  } else {
    c.verticalGradient(bed.left, bed.top, bed.width(), bed.height(), s.bed.mix({1, 1, 1}, 0.08),
                       s.bed);
  }
  // The key well: dark felt under the keys, a lip above them.
  c.fillRect(27, 314, 555, 111, {0.04, 0.04, 0.045});
  c.fillRect(27, 314, 555, 2, s.accent, 0.8);
  c.fillRect(0, 311, editor::kPanelWidth, 1, s.line, 0.8);
  // The name on the rail under the keys.
  c.font(s.headingFace, 9);
  const std::string name = "SABLEVOX  ·  SPECTRAL WAVETABLE SYNTHESIZER";
  const double w = c.textWidth(name);
  c.textAt(name, std::round((editor::kPanelWidth - w) / 2), 436,
           s.bed.mix({1, 1, 1}, 0.55).mix(s.accent, 0.4));
  (void)cr;
}

}  // namespace

void drawMenuBezel(Canvas& c, const Rect& r, const Colour& dark, const Colour& light,
                   const Colour& arrow) {
  // Drawn outside the menu's rectangle, which the menu paints itself.
  c.fillRect(r.left - 2, r.top - 2, r.width() + 4, 1, dark);
  c.fillRect(r.left - 2, r.top - 2, 1, r.height() + 4, dark);
  c.fillRect(r.left - 2, r.bottom + 1, r.width() + 4, 1, light);
  c.fillRect(r.right + 1, r.top - 2, 1, r.height() + 4, light);
  c.fillRect(r.left - 1, r.top - 1, r.width() + 2, r.height() + 2,
             {0.05, 0.05, 0.05});  // A small arrow beside the frame says that the field drops down.
  const double ax = r.right + 3.5, ay = r.top + r.height() / 2.0 - 1.5;
  cairo_new_path(c.cr());
  cairo_move_to(c.cr(), ax, ay);
  cairo_line_to(c.cr(), ax + 5, ay);
  cairo_line_to(c.cr(), ax + 2.5, ay + 3);
  cairo_close_path(c.cr());
  c.set(arrow);
  cairo_fill(c.cr());
}

void drawWordmark(Canvas& c, double x, double baseline, double size, const Colour& colour) {
  c.font(Face::SansBold, size);
  c.textAt("SABLEVOX", x, baseline, colour);
}

void drawMainPanel(Canvas& c, const Skin& s, uint32_t seed) {
  const Rect whole{0, 0, editor::kPanelWidth, editor::kPanelHeight};
  fillMaterial(c, s.panel, whole, s.panelTop, s.panelBottom, s.texture, seed);
  // A light top edge and a dark bottom edge make the panel a plate.
  c.fillRect(0, 0, editor::kPanelWidth, 1, {1, 1, 1}, 0.25);
  int index = 0;
  for (const Field& f : kFields) drawField(c, s, f, seed + 100 + index++);
  drawOscLabel(c, s, kFields[0], "1");
  drawOscLabel(c, s, kFields[1], "2");
  drawLogoPlate(c, s);
  drawEdgeMark(c, s);
  drawKeyboardBed(c, s, seed);
  for (const auto& [x, y] : {std::pair{12.5, 12.5}, {12.5, 298.5}, {599.5, 12.5}, {599.5, 298.5}})
    drawScrew(c, x, y);

  const Colour bezelDark = s.insetColour.scaled(0.4);
  const Colour bezelLight = s.line;
  for (const LayoutControl& k : editor::mainPanel()) {
    switch (k.kind) {
      case ControlKind::Menu:
        drawMenuBezel(c, k.rect, bezelDark, bezelLight, s.caption);
        break;
      case ControlKind::SmallKnob:
      case ControlKind::LargeKnob:
        drawKnob(c, s, k);
        break;
      case ControlKind::SmallButton:
        drawSmallButtonWell(c, s, k.rect);
        break;
      case ControlKind::Light:
        drawLightBezel(c, s, k.rect);
        break;
      case ControlKind::ClickArea:
        if (k.tag == 105) drawSettingsMark(c, s, k.rect);
        break;
      default:
        break;
    }
    const Rect box = editor::captionBox(k);
    if (box.width() == 0) continue;
    c.font(s.captionFace, s.captionSize);
    const bool left = k.kind == ControlKind::Menu || k.kind == ControlKind::ClickArea ||
                      k.kind == ControlKind::Light ||
                      (k.kind == ControlKind::SmallButton && k.tag == 104);
    c.text(k.caption, box, left ? Canvas::Align::Left : Canvas::Align::Centre, s.caption);
  }
}

}  // namespace sablevox::artgen
