// Keys, knob handles, the activity light and the two buttons. The same in
// every skin. Where a bitmap has a transparent colour, edges against it are
// hard: a blended pixel would show as a fringe.
#include <cmath>

#include "artgen/drawing.h"

namespace sablevox::artgen {
namespace {

using editor::ControlKind;
using editor::LayoutControl;

constexpr uint32_t kKeyGreen = 0x00ff00;

void fillKeyGreen(Canvas& c) {
  c.fillRect(0, 0, c.width(), c.height(), {0, 1, 0});
}

// Pixel art: '.' transparent, other characters index the palette.
void pixelArt(Canvas& c, const char* const* rows, int size, uint32_t transparent,
              uint32_t (*palette)(char)) {
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      const char ch = rows[y][x];
      c.setPixel(x, y, ch == '.' ? transparent : palette(ch));
    }
  }
}

uint32_t handlePalette(char ch) {
  switch (ch) {
    case 'o':
      return 0x1c1c1c;  // rim
    case 'a':
      return 0x5a5a5a;  // soft edge
    case 'x':
      return 0xf4f1ea;  // lit face, not pure white
    case 'h':
      return 0xfefcf6;
    default:
      return 0x808080;
  }
}

void drawWhiteKey(Canvas& c, int left, int top, bool pressed) {
  const int w = 20;  // one column of the 21 is the gap shadow
  const int h = editor::kWhiteKeyImageHeight;
  const Colour ivoryTop = pressed ? Colour::rgb(222, 218, 206) : Colour::rgb(252, 250, 242);
  const Colour ivoryBottom = pressed ? Colour::rgb(236, 232, 220) : Colour::rgb(238, 234, 224);
  c.verticalGradient(left, top, w, h, ivoryTop, ivoryBottom);
  if (pressed) c.verticalGradient(left, top, w, 10, Colour::rgb(150, 146, 136), ivoryTop);
  // The front lip: short when the key is down.
  const int lip = pressed ? 3 : 6;
  c.verticalGradient(left, top + h - lip, w, lip, Colour::rgb(214, 210, 198),
                     Colour::rgb(168, 164, 152));
  c.fillRect(left, top, 1, h, Colour::rgb(255, 255, 252), 0.8);
  c.fillRect(left + w, top, 1, h, Colour::rgb(96, 94, 90));
}

void drawBlackKey(Canvas& c, int left, int top, bool pressed) {
  const int w = 20;
  const int h = editor::kBlackKeyImageHeight;
  c.fillRect(left, top, w, h, Colour::rgb(14, 14, 16));
  const int front = pressed ? 4 : 9;
  // The top face, with a bevel on each side and a sheen.
  c.verticalGradient(left + 2, top, w - 4, h - front, Colour::rgb(40, 40, 44),
                     Colour::rgb(24, 24, 28));
  c.fillRect(left + 4, top + 2, 2, h - front - 6, Colour::rgb(255, 255, 255),
             pressed ? 0.08 : 0.16);
  c.verticalGradient(left + 2, top + h - front, w - 4, front - 1, Colour::rgb(70, 70, 76),
                     Colour::rgb(36, 36, 40));
}

}  // namespace

void drawWhiteKeys(Canvas& c) {
  fillKeyGreen(c);
  const int h = editor::kWhiteKeyImageHeight;
  const int whiteTop = 317;
  for (const LayoutControl& k : editor::mainPanel()) {
    if (k.kind != ControlKind::WhiteKey) continue;
    drawWhiteKey(c, k.rect.left, 0, false);
    drawWhiteKey(c, k.rect.left, h, true);
  }
  // Where a black key lies over a white key, the white key is transparent.
  for (const LayoutControl& k : editor::mainPanel()) {
    if (k.kind != ControlKind::BlackKey) continue;
    const int rows = k.rect.bottom - whiteTop;
    c.fillRect(k.rect.left, 0, k.rect.width(), rows, {0, 1, 0});
    c.fillRect(k.rect.left, h, k.rect.width(), rows, {0, 1, 0});
  }
}

void drawBlackKeys(Canvas& c) {
  fillKeyGreen(c);
  for (const LayoutControl& k : editor::mainPanel()) {
    if (k.kind != ControlKind::BlackKey) continue;
    drawBlackKey(c, k.rect.left, 0, false);
    drawBlackKey(c, k.rect.left, editor::kBlackKeyImageHeight, true);
  }
}

void drawHandle(Canvas& c) {
  static const char* const small[] = {".aoa.", "axhxa", "oxxxo", "axxxa", ".aoa."};
  static const char* const large[] = {"..aoa..", ".oxxxo.", "axhhxxa", "oxhxxxo",
                                      "axxxxxa", ".oxxxo.", "..aoa.."};
  if (c.width() == 5)
    pixelArt(c, small, 5, 0xffffff, handlePalette);
  else
    pixelArt(c, large, 7, 0xffffff, handlePalette);
}

void drawLight(Canvas& c) {
  // Two 13 x 12 frames: a dark and a lit red lamp in a black bezel; outside
  // the bezel's circle the key colour, set by pixel so that edges are hard.
  for (int frame = 0; frame < 2; ++frame) {
    const double cy = frame * 12 + 6.0, cx = 6.5;
    c.fillRect(0, frame * 12, 13, 12, Colour::rgb(20, 20, 20));
    cairo_pattern_t* p = cairo_pattern_create_radial(cx - 1.2, cy - 1.2, 0.5, cx, cy, 4.6);
    if (frame == 0) {
      cairo_pattern_add_color_stop_rgb(p, 0, 0.45, 0.12, 0.1);
      cairo_pattern_add_color_stop_rgb(p, 1, 0.22, 0.04, 0.04);
    } else {
      cairo_pattern_add_color_stop_rgb(p, 0, 1.0, 0.92, 0.8);
      cairo_pattern_add_color_stop_rgb(p, 0.4, 1.0, 0.25, 0.12);
      cairo_pattern_add_color_stop_rgb(p, 1, 0.75, 0.05, 0.02);
    }
    cairo_arc(c.cr(), cx, cy, 4.6, 0, 2 * M_PI);
    cairo_set_source(c.cr(), p);
    cairo_fill(c.cr());
    cairo_pattern_destroy(p);
    for (int y = 0; y < 12; ++y) {
      for (int x = 0; x < 13; ++x) {
        const double dx = x + 0.5 - cx, dy = y + 0.5 - 6.0;
        if (dx * dx + dy * dy > 6.2 * 6.2) c.setPixel(x, frame * 12 + y, kKeyGreen);
      }
    }
  }
}

void drawSmallButton(Canvas& c) {
  for (int frame = 0; frame < 2; ++frame) {
    const double y = frame * 11;
    c.fillRect(0, y, 11, 11, Colour::rgb(16, 16, 16));
    c.verticalGradient(1, y + 1, 9, 9, Colour::rgb(92, 92, 96), Colour::rgb(52, 52, 56));
    if (frame == 1) {
      c.verticalGradient(3, y + 3, 5, 5, Colour::rgb(255, 214, 120), Colour::rgb(236, 140, 40));
    } else {
      c.fillRect(3, y + 3, 5, 5, Colour::rgb(40, 36, 32));
    }
  }
}

void drawHideKeysSwitch(Canvas& c) {
  // A slide switch: lever left (keys shown) above, right (hidden) below.
  for (int frame = 0; frame < 2; ++frame) {
    const double y = frame * 12;
    c.fillRect(0, y, 12, 12, Colour::rgb(18, 18, 18));
    c.fillRect(1, y + 4, 10, 4, Colour::rgb(60, 60, 60));
    const double x = frame == 0 ? 1 : 6;
    c.verticalGradient(x, y + 2, 5, 8, Colour::rgb(230, 230, 226), Colour::rgb(150, 150, 146));
    if (frame == 1) c.fillRect(2, y + 5, 3, 2, Colour::rgb(240, 150, 50));
  }
}

}  // namespace sablevox::artgen
