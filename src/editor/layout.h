// Where everything on the editor's two panels lies: the one table that the
// editor builds its controls from and the artwork generator draws under, so
// that a knob's body is always exactly beneath its knob.
#pragma once

#include <array>
#include <span>

namespace sablevox::editor {

// Pixels of the frame, (left, top)-(right, bottom).
struct Rect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  constexpr int width() const { return right - left; }
  constexpr int height() const { return bottom - top; }
  constexpr bool operator==(const Rect&) const = default;
};

enum class Section {
  Osc1,
  Osc2,
  Filter,
  Lfo,
  FilterEnv,
  VolumeEnv,
  Arp,
  Effect,
  Output,
  Keys,
  Settings
};

enum class ControlKind {
  Menu,
  SmallKnob,
  LargeKnob,
  SmallButton,
  ClickArea,
  Light,
  WhiteKey,
  BlackKey,
  HideKeysSwitch,
  TextField
};

struct Rgb {
  int red = 0;
  int green = 0;
  int blue = 0;
};

struct LayoutControl {
  ControlKind kind;
  int tag;
  Rect rect;
  const char* caption;  // as a musician reads it on the panel; empty for none
  Section section;
  Rgb colour{};  // menus: their drawn colour
};

// Numbers and sizes of the editor's bitmaps.
namespace bitmap {
constexpr int kSkinBase = 170;  // + skin index
constexpr int kSkinCount = 11;
constexpr int kSettings = 160;
constexpr int kWhiteKeys = 161;
constexpr int kBlackKeys = 162;
constexpr int kSmallHandle = 155;
constexpr int kLargeHandle = 133;
constexpr int kLight = 152;
constexpr int kSmallButton = 157;
constexpr int kHideKeys = 163;
}  // namespace bitmap

struct BitmapSpec {
  int id;
  int width;
  int height;
  int frames;  // images stacked top to bottom
};

constexpr int kPanelWidth = 609;
constexpr int kPanelHeight = 441;
constexpr int kKeyboardBottom = 423;
constexpr int kWhiteKeyImageHeight = 106;
constexpr int kBlackKeyImageHeight = 67;

// The key tags run 200..243 for MIDI notes 48..91.
constexpr int kFirstKeyTag = 200;
constexpr int kKeyCount = 44;
constexpr int kKeyTagToNote = -152;

constexpr std::array<const char*, bitmap::kSkinCount> kSkinNames = {
    "Sablevox", "Wood",  "Black", "Brass", "Orange", "Silver",
    "White",    "Night", "Weed",  "Aqua",  "Dorren"};

std::span<const BitmapSpec> bitmapTable();
const BitmapSpec* findBitmap(int id);

// Every control of the main panel in the order the editor creates them: the
// random button, the three click areas, the keys in tag order, the menus,
// the small knobs, the large knobs, the EnvVolPo button and the light.
std::span<const LayoutControl> mainPanel();
// The settings panel in creation order.
std::span<const LayoutControl> settingsPanel();
const LayoutControl* findControl(std::span<const LayoutControl> panel, int tag, ControlKind kind);

// Where a control's caption is written on the panel: above menus, switches
// and fields, below knobs and the retrigger button, right of the random
// button, the light and the settings area. Empty for controls without one.
Rect captionBox(const LayoutControl& control);

// Section headings of the main panel as the artwork writes them.
const char* sectionHeading(Section section);

}  // namespace sablevox::editor
