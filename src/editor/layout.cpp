#include "editor/layout.h"

#include <vector>

namespace sablevox::editor {
namespace {

using K = ControlKind;
using S = Section;

constexpr Rgb kOscMenu{76, 75, 72};
constexpr Rgb kFilterMenu{68, 67, 65};
constexpr Rgb kModMenu{55, 55, 53};
constexpr Rgb kEffectMenu{52, 51, 48};
constexpr Rgb kSystemMenu{39, 39, 39};
constexpr Rgb kPlayMenu{52, 51, 49};
constexpr Rgb kGlideMenu{39, 39, 37};

constexpr int kSmallButtonSide = 11;  // bitmap 157: 11 wide, two frames of 11 rows

constexpr LayoutControl menu(int tag, int left, int top, int width, int height, const char* caption,
                             Section section, Rgb colour) {
  return {K::Menu, tag, {left, top, left + width, top + height}, caption, section, colour};
}
constexpr LayoutControl smallKnob(int tag, int x, int y, const char* caption, Section section) {
  return {K::SmallKnob, tag, {x - 1, y - 1, x + 22, y + 22}, caption, section};
}
constexpr LayoutControl largeKnob(int tag, int x, int y, const char* caption, Section section) {
  return {K::LargeKnob, tag, {x - 1, y - 1, x + 27, y + 27}, caption, section};
}
constexpr LayoutControl smallButton(int tag, int x, int y, const char* caption, Section section) {
  return {
      K::SmallButton, tag, {x, y, x + kSmallButtonSide, y + kSmallButtonSide}, caption, section};
}

constexpr int kWhiteLefts[] = {29,  50,  71,  92,  113, 135, 156, 177, 198, 219, 241, 262, 283,
                               304, 326, 347, 368, 389, 410, 432, 453, 474, 495, 517, 538, 559};
constexpr int kBlackLefts[] = {39,  60,  102, 123, 145, 187, 208, 251, 272,
                               293, 336, 357, 399, 420, 442, 484, 505, 548};
constexpr bool kBlackInOctave[12] = {false, true,  false, true,  false, false,
                                     true,  false, true,  false, true,  false};

std::vector<LayoutControl> buildMainPanel() {
  std::vector<LayoutControl> p;
  p.push_back(smallButton(104, 480, 291, "Random", S::Output));
  p.push_back({K::ClickArea, 108, {540, 0, 590, 100}, "", S::Output});
  p.push_back({K::ClickArea, 109, {0, 50, 22, 123}, "", S::Osc1});
  p.push_back({K::ClickArea, 105, {476, 272, 491, 282}, "Settings", S::Output});

  int white = 0;
  int black = 0;
  for (int i = 0; i < kKeyCount; ++i) {
    const int tag = kFirstKeyTag + i;
    if (kBlackInOctave[(tag + kKeyTagToNote) % 12]) {
      const int left = kBlackLefts[black++];
      p.push_back({K::BlackKey, tag, {left, 316, left + 20, 383}, "", S::Keys});
    } else {
      const int left = kWhiteLefts[white++];
      p.push_back({K::WhiteKey, tag, {left, 317, left + 21, kKeyboardBottom}, "", S::Keys});
    }
  }

  p.push_back(menu(0, 57, 23, 57, 13, "Wave", S::Osc1, kOscMenu));
  p.push_back(menu(1, 57, 68, 57, 13, "Wave", S::Osc2, kOscMenu));
  p.push_back(menu(2, 127, 23, 57, 13, "Modifier", S::Osc1, kOscMenu));
  p.push_back(menu(3, 127, 68, 57, 13, "Modifier", S::Osc2, kOscMenu));
  p.push_back(menu(4, 197, 23, 57, 13, "Loop", S::Osc1, kOscMenu));
  p.push_back(menu(5, 197, 68, 57, 13, "Loop", S::Osc2, kOscMenu));
  p.push_back(menu(6, 266, 23, 57, 13, "Loop Speed", S::Osc1, kOscMenu));
  p.push_back(menu(7, 266, 68, 57, 13, "Loop Speed", S::Osc2, kOscMenu));
  p.push_back(menu(16, 58, 125, 56, 12, "Type", S::Filter, kFilterMenu));
  p.push_back(menu(34, 342, 124, 56, 12, "Wave", S::Lfo, kModMenu));
  p.push_back(menu(35, 414, 124, 56, 12, "Speed", S::Lfo, kModMenu));
  p.push_back(menu(36, 519, 124, 56, 12, "Target", S::Lfo, kModMenu));
  p.push_back(menu(38, 58, 262, 56, 12, "Mode", S::Arp, kModMenu));
  p.push_back(menu(39, 129, 262, 56, 12, "Rhythm", S::Arp, kModMenu));
  p.push_back(menu(40, 239, 264, 56, 12, "Type", S::Effect, kEffectMenu));

  p.push_back(smallKnob(8, 343, 14, "Tune", S::Osc1));
  p.push_back(smallKnob(9, 343, 60, "Tune", S::Osc2));
  p.push_back(smallKnob(10, 381, 14, "Fine", S::Osc1));
  p.push_back(smallKnob(11, 381, 60, "Fine", S::Osc2));
  p.push_back(smallKnob(12, 418, 14, "Volume", S::Osc1));
  p.push_back(smallKnob(13, 419, 60, "Volume", S::Osc2));
  p.push_back(smallKnob(37, 487, 118, "Amount", S::Lfo));
  p.push_back(smallKnob(26, 222, 189, "Velocity", S::FilterEnv));
  p.push_back(smallKnob(27, 260, 189, "Depth", S::FilterEnv));
  p.push_back(smallKnob(32, 515, 189, "Velocity", S::VolumeEnv));
  p.push_back(smallKnob(19, 260, 119, "Key", S::Filter));

  p.push_back(largeKnob(14, 456, 34, "Fat", S::Osc1));
  p.push_back(largeKnob(15, 500, 34, "Analog", S::Osc1));
  p.push_back(largeKnob(17, 131, 116, "Cutoff", S::Filter));
  p.push_back(largeKnob(18, 175, 116, "Reso", S::Filter));
  p.push_back(largeKnob(20, 219, 116, "Drive", S::Filter));
  p.push_back(largeKnob(21, 440, 259, "Volume", S::Output));
  p.push_back(largeKnob(22, 49, 187, "Attack", S::FilterEnv));
  p.push_back(largeKnob(23, 91, 187, "Decay", S::FilterEnv));
  p.push_back(largeKnob(24, 133, 187, "Sustain", S::FilterEnv));
  p.push_back(largeKnob(25, 176, 187, "Release", S::FilterEnv));
  p.push_back(largeKnob(28, 344, 187, "Attack", S::VolumeEnv));
  p.push_back(largeKnob(29, 386, 187, "Decay", S::VolumeEnv));
  p.push_back(largeKnob(30, 428, 187, "Sustain", S::VolumeEnv));
  p.push_back(largeKnob(31, 471, 187, "Release", S::VolumeEnv));
  p.push_back(largeKnob(41, 315, 259, "Param 1", S::Effect));
  p.push_back(largeKnob(42, 359, 259, "Param 2", S::Effect));

  p.push_back(smallButton(33, 554, 195, "Retrig", S::VolumeEnv));
  p.push_back({K::Light, 0, {478, 252, 491, 264}, "Note", S::Output});
  return p;
}

std::vector<LayoutControl> buildSettingsPanel() {
  std::vector<LayoutControl> p;
  p.push_back(smallButton(106, 71, 46, "Back", S::Settings));
  p.push_back(menu(111, 355, 94, 56, 13, "Bank", S::Settings, kSystemMenu));
  p.push_back(menu(113, 49, 150, 56, 13, "Skin", S::Settings, kSystemMenu));
  p.push_back(menu(114, 458, 94, 56, 13, "Intonation", S::Settings, kSystemMenu));
  p.push_back(menu(101, 48, 94, 56, 13, "Quality", S::Settings, kPlayMenu));
  p.push_back(menu(44, 148, 94, 56, 13, "Voices", S::Settings, kPlayMenu));
  p.push_back(menu(45, 147, 44, 57, 13, "Bend Range", S::Settings, kPlayMenu));
  p.push_back(menu(46, 250, 44, 57, 13, "Mod Wheel", S::Settings, kPlayMenu));
  p.push_back(menu(47, 355, 44, 57, 13, "Glide", S::Settings, kGlideMenu));
  p.push_back(menu(48, 458, 44, 57, 13, "Glide Time", S::Settings, kGlideMenu));
  p.push_back({K::ClickArea, 110, {366, 264, 566, 423}, "", S::Settings});
  p.push_back({K::HideKeysSwitch, 102, {272, 94, 284, 106}, "Hide Keys", S::Settings});
  p.push_back({K::TextField, 112, {50, 395, 300, 411}, "Version", S::Settings});
  return p;
}

constexpr BitmapSpec kBitmaps[] = {
    {bitmap::kSkinBase + 0, kPanelWidth, kPanelHeight, 1},
    {bitmap::kSkinBase + 1, kPanelWidth, kPanelHeight, 1},
    {bitmap::kSkinBase + 2, kPanelWidth, kPanelHeight, 1},
    {bitmap::kSkinBase + 3, kPanelWidth, kPanelHeight, 1},
    {bitmap::kSkinBase + 4, kPanelWidth, kPanelHeight, 1},
    {bitmap::kSkinBase + 5, kPanelWidth, kPanelHeight, 1},
    {bitmap::kSkinBase + 6, kPanelWidth, kPanelHeight, 1},
    {bitmap::kSkinBase + 7, kPanelWidth, kPanelHeight, 1},
    {bitmap::kSkinBase + 8, kPanelWidth, kPanelHeight, 1},
    {bitmap::kSkinBase + 9, kPanelWidth, kPanelHeight, 1},
    {bitmap::kSkinBase + 10, kPanelWidth, kPanelHeight, 1},
    {bitmap::kSettings, kPanelWidth, kPanelHeight, 1},
    {bitmap::kWhiteKeys, kPanelWidth, kPanelHeight, 2},
    {bitmap::kBlackKeys, kPanelWidth, kPanelHeight, 2},
    {bitmap::kSmallHandle, 5, 5, 1},
    {bitmap::kLargeHandle, 7, 7, 1},
    {bitmap::kLight, 13, 24, 2},
    {bitmap::kSmallButton, 11, 22, 2},
    {bitmap::kHideKeys, 12, 24, 2},
};

}  // namespace

std::span<const BitmapSpec> bitmapTable() {
  return kBitmaps;
}

const BitmapSpec* findBitmap(int id) {
  for (const BitmapSpec& b : kBitmaps) {
    if (b.id == id) return &b;
  }
  return nullptr;
}

std::span<const LayoutControl> mainPanel() {
  static const std::vector<LayoutControl> table = buildMainPanel();
  return table;
}

std::span<const LayoutControl> settingsPanel() {
  static const std::vector<LayoutControl> table = buildSettingsPanel();
  return table;
}

const LayoutControl* findControl(std::span<const LayoutControl> panel, int tag, ControlKind kind) {
  for (const LayoutControl& c : panel) {
    if (c.tag == tag && c.kind == kind) return &c;
  }
  return nullptr;
}

Rect captionBox(const LayoutControl& c) {
  const Rect& r = c.rect;
  if (c.caption[0] == '\0') return {};
  switch (c.kind) {
    case K::Menu:  // clear of the bezel drawn around the menu
      return {r.left, r.top - 11, r.right, r.top - 2};
    case K::HideKeysSwitch:
    case K::TextField:
      return {r.left, r.top - 11, r.left + 62, r.top - 2};
    case K::SmallKnob:
      return {r.left - 7, r.bottom + 2, r.right + 7, r.bottom + 11};
    case K::LargeKnob:
      return {r.left - 6, r.bottom + 3, r.right + 6, r.bottom + 12};
    case K::SmallButton:
      if (c.tag == 33) return {r.left - 8, r.bottom + 2, r.right + 8, r.bottom + 11};
      if (c.tag == 106) return {r.right + 4, r.top + 1, r.right + 44, r.bottom};
      [[fallthrough]];
    case K::ClickArea:
    case K::Light:
      return {r.right + 4, r.top + 1, r.right + 46, r.bottom};
    case K::WhiteKey:
    case K::BlackKey:
      return {};
  }
  return {};
}

const char* sectionHeading(Section section) {
  switch (section) {
    case S::Osc1:
      return "OSCILLATOR 1";
    case S::Osc2:
      return "OSCILLATOR 2";
    case S::Filter:
      return "FILTER";
    case S::Lfo:
      return "LFO";
    case S::FilterEnv:
      return "FILTER ENVELOPE";
    case S::VolumeEnv:
      return "AMP ENVELOPE";
    case S::Arp:
      return "ARPEGGIATOR";
    case S::Effect:
      return "EFFECT";
    case S::Output:
      return "OUTPUT";
    case S::Keys:
      return "";
    case S::Settings:
      return "SETTINGS";
  }
  return "";
}

}  // namespace sablevox::editor
