// The eleven looks of the main panel. A skin is a set of materials,
// colours and type faces; the panel drawing turns it into a picture.
#pragma once

#include <array>

#include "artgen/canvas.h"
#include "editor/layout.h"

namespace sablevox::artgen {

enum class Material { Matte, Brushed, Wood, Gradient };
enum class HeadingStyle { Bar, Rule, Plate };
enum class KnobStyle { Rubber, Metal, Chicken, Flat };

struct Skin {
  const char* name;
  const char* idea;  // one line: the design idea
  Material panel;
  Colour panelTop, panelBottom;
  Material inset;  // the section fields
  Colour insetColour;
  double insetAlpha;
  Colour line;        // frames and section rules
  Colour caption;     // control captions
  Colour heading;     // section headings
  Colour headingBar;  // bar or plate behind headings
  HeadingStyle headingStyle;
  Face captionFace, headingFace;
  double captionSize, headingSize;
  KnobStyle knob;
  Colour knobOuter, knobInner, scale;
  Colour accent;  // logo and range ends
  Colour bed;     // keyboard bed
  Material bedMaterial;
  double texture;  // strength of the panel material
};

const std::array<Skin, editor::bitmap::kSkinCount>& skins();

}  // namespace sablevox::artgen
