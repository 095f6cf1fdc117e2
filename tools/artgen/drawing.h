// The pictures the generator makes, one function per bitmap kind.
#pragma once

#include "artgen/canvas.h"
#include "artgen/skins.h"

namespace sablevox::artgen {

void drawMainPanel(Canvas& canvas, const Skin& skin, uint32_t seed);
void drawSettingsPanel(Canvas& canvas);
void drawWhiteKeys(Canvas& canvas);
void drawBlackKeys(Canvas& canvas);
void drawHandle(Canvas& canvas);  // 5 x 5 or 7 x 7, from the canvas size
void drawLight(Canvas& canvas);
void drawSmallButton(Canvas& canvas);
void drawHideKeysSwitch(Canvas& canvas);

// Shared by both panels.
void drawMenuBezel(Canvas& canvas, const editor::Rect& r, const Colour& dark, const Colour& light,
                   const Colour& arrow);
void drawWordmark(Canvas& canvas, double x, double baseline, double size, const Colour& c);

}  // namespace sablevox::artgen
