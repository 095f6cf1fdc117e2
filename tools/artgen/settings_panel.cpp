// The settings panel: one dark console for every skin, with its nine menus
// in three groups, the Hide Keys switch, the back button, the version field
// and the maker's plate over the web-link area.
#include <cmath>

#include "artgen/drawing.h"

namespace sablevox::artgen {
namespace {

using editor::ControlKind;
using editor::LayoutControl;
using editor::Rect;

const Colour kPanelTop = Colour::rgb(48, 48, 50);
const Colour kPanelBottom = Colour::rgb(30, 30, 32);
const Colour kField = Colour::rgb(20, 20, 22);
const Colour kLine = Colour::rgb(90, 90, 92);
const Colour kCaption = Colour::rgb(226, 226, 222);
const Colour kAccent = Colour::rgb(236, 178, 96);

void group(Canvas& c, const Rect& r, const char* heading) {
  c.roundedRect(r.left + 0.5, r.top + 0.5, r.width() - 1, r.height() - 1, 4);
  c.set(kField, 0.85);
  cairo_fill_preserve(c.cr());
  c.set(kLine);
  cairo_set_line_width(c.cr(), 1);
  cairo_stroke(c.cr());
  c.font(Face::SansBold, 8.5);
  c.text(heading, {r.left + 7, r.top + 2, r.right, r.top + 13}, Canvas::Align::Left, kAccent);
}

}  // namespace

void drawSettingsPanel(Canvas& c) {
  const Rect whole{0, 0, editor::kPanelWidth, editor::kPanelHeight};
  c.verticalGradient(0, 0, whole.width(), whole.height(), kPanelTop, kPanelBottom);
  c.brushed(whole, 0.08, 160);
  group(c, {40, 20, 530, 66}, "PLAYING");
  group(c, {40, 70, 530, 116}, "ENGINE AND BANK");
  group(c, {40, 126, 200, 172}, "LOOK");
  group(c, {40, 368, 320, 420}, "ABOUT");

  c.font(Face::SansBold, 14);
  c.textAt("SETTINGS", 40, 14, kCaption);

  // The maker's plate over the third web-link area.
  c.roundedRect(366.5, 264.5, 199, 158, 6);
  c.set(kField);
  cairo_fill_preserve(c.cr());
  c.set(kAccent);
  cairo_stroke(c.cr());
  drawWordmark(c, 400, 322, 22, kAccent);
  c.font(Face::Sans, 9);
  c.text("spectral wavetable synthesizer", {366, 330, 566, 342}, Canvas::Align::Centre, kCaption);
  c.text("new sounds, products and updates:", {366, 370, 566, 382}, Canvas::Align::Centre,
         kCaption);
  c.font(Face::SansBold, 9);
  c.text("click here to visit the web site", {366, 384, 566, 396}, Canvas::Align::Centre, kAccent);

  c.font(Face::Sans, 9);
  c.text("Hide Keys takes effect when you return to the panel.", {220, 150, 560, 162},
         Canvas::Align::Left, kCaption.scaled(0.85));

  for (const LayoutControl& k : editor::settingsPanel()) {
    switch (k.kind) {
      case ControlKind::Menu:
        drawMenuBezel(c, k.rect, {0.03, 0.03, 0.03}, kLine, kCaption);
        break;
      case ControlKind::SmallButton: {
        // The back button is an invisible area: the arrow is here.
        const Rect& r = k.rect;
        c.fillRect(r.left - 1, r.top - 1, r.width() + 2, r.height() + 2, kLine);
        c.fillRect(r.left, r.top, r.width(), r.height(), Colour::rgb(60, 60, 64));
        cairo_move_to(c.cr(), r.left + 2.5, r.top + 5.5);
        cairo_line_to(c.cr(), r.left + 8, r.top + 2);
        cairo_line_to(c.cr(), r.left + 8, r.top + 9);
        cairo_close_path(c.cr());
        c.set(kAccent);
        cairo_fill(c.cr());
        break;
      }
      case ControlKind::HideKeysSwitch:
        c.fillRect(k.rect.left - 1, k.rect.top - 1, k.rect.width() + 2, k.rect.height() + 2, kLine);
        break;
      case ControlKind::TextField:
        c.fillRect(k.rect.left, k.rect.top, k.rect.width(), k.rect.height(),
                   Colour::rgb(26, 26, 26));
        break;
      default:
        break;
    }
    const Rect box = editor::captionBox(k);
    if (box.width() == 0) continue;
    c.font(Face::SansBold, 8);
    c.text(k.caption, box, Canvas::Align::Left, kCaption);
  }
}

}  // namespace sablevox::artgen
