// The layout table against the designed positions: the editor builds its
// panels from it and the artwork is drawn under it, so a wrong number here
// puts a control beside its picture.
#include "editor/layout.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace {

using namespace sablevox::editor;
using K = ControlKind;

std::map<K, int> countKinds(std::span<const LayoutControl> panel) {
  std::map<K, int> counts;
  for (const LayoutControl& c : panel) ++counts[c.kind];
  return counts;
}

Rect rectOf(std::span<const LayoutControl> panel, int tag, K kind) {
  const LayoutControl* c = findControl(panel, tag, kind);
  EXPECT_NE(c, nullptr) << "tag " << tag;
  return c ? c->rect : Rect{};
}

bool overlap(const Rect& a, const Rect& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

TEST(LayoutTest, MainPanelHasEveryControlAtItsDesignedPlace) {
  const auto main = mainPanel();
  auto counts = countKinds(main);
  EXPECT_EQ(counts[K::Menu], 15);
  EXPECT_EQ(counts[K::SmallKnob], 11);
  EXPECT_EQ(counts[K::LargeKnob], 16);
  EXPECT_EQ(counts[K::WhiteKey], 26);
  EXPECT_EQ(counts[K::BlackKey], 18);
  EXPECT_EQ(counts[K::ClickArea], 3);
  EXPECT_EQ(counts[K::SmallButton], 2);
  EXPECT_EQ(counts[K::Light], 1);

  // Creation order, which the editor keeps: its pointers are filled in it.
  std::map<K, std::vector<int>> order;
  for (const LayoutControl& c : main) order[c.kind].push_back(c.tag);
  EXPECT_EQ(order[K::Menu], (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 16, 34, 35, 36, 38, 39, 40}));
  EXPECT_EQ(order[K::SmallKnob], (std::vector<int>{8, 9, 10, 11, 12, 13, 37, 26, 27, 32, 19}));
  EXPECT_EQ(order[K::LargeKnob],
            (std::vector<int>{14, 15, 17, 18, 20, 21, 22, 23, 24, 25, 28, 29, 30, 31, 41, 42}));
  EXPECT_EQ(order[K::ClickArea], (std::vector<int>{108, 109, 105}));

  // Menus: (left, top) and size as given, colour of their group.
  EXPECT_EQ(rectOf(main, 0, K::Menu), (Rect{57, 23, 114, 36}));
  EXPECT_EQ(rectOf(main, 7, K::Menu), (Rect{266, 68, 323, 81}));
  EXPECT_EQ(rectOf(main, 16, K::Menu), (Rect{58, 125, 114, 137}));
  EXPECT_EQ(rectOf(main, 36, K::Menu), (Rect{519, 124, 575, 136}));
  EXPECT_EQ(rectOf(main, 40, K::Menu), (Rect{239, 264, 295, 276}));
  const LayoutControl* filter = findControl(main, 16, K::Menu);
  ASSERT_NE(filter, nullptr);
  EXPECT_EQ(filter->colour.red, 68);
  EXPECT_EQ(findControl(main, 40, K::Menu)->colour.blue, 48);
  // Knobs: (x - 1, y - 1) and 23 or 28 pixels square.
  EXPECT_EQ(rectOf(main, 13, K::SmallKnob), (Rect{418, 59, 441, 82}));
  EXPECT_EQ(rectOf(main, 19, K::SmallKnob), (Rect{259, 118, 282, 141}));
  EXPECT_EQ(rectOf(main, 37, K::SmallKnob), (Rect{486, 117, 509, 140}));
  EXPECT_EQ(rectOf(main, 14, K::LargeKnob), (Rect{455, 33, 483, 61}));
  EXPECT_EQ(rectOf(main, 17, K::LargeKnob), (Rect{130, 115, 158, 143}));
  EXPECT_EQ(rectOf(main, 31, K::LargeKnob), (Rect{470, 186, 498, 214}));
  EXPECT_EQ(rectOf(main, 42, K::LargeKnob), (Rect{358, 258, 386, 286}));
  // Buttons, click areas and the light.
  EXPECT_EQ(rectOf(main, 104, K::SmallButton), (Rect{480, 291, 491, 302}));
  EXPECT_EQ(rectOf(main, 33, K::SmallButton), (Rect{554, 195, 565, 206}));
  EXPECT_EQ(rectOf(main, 108, K::ClickArea), (Rect{540, 0, 590, 100}));
  EXPECT_EQ(rectOf(main, 109, K::ClickArea), (Rect{0, 50, 22, 123}));
  EXPECT_EQ(rectOf(main, 105, K::ClickArea), (Rect{476, 272, 491, 282}));
  EXPECT_EQ(rectOf(main, 0, K::Light), (Rect{478, 252, 491, 264}));
}

TEST(LayoutTest, KeysFollowThePianoPatternInTagOrder) {
  int previousTag = kFirstKeyTag - 1;
  for (const LayoutControl& c : mainPanel()) {
    if (c.kind != K::WhiteKey && c.kind != K::BlackKey) continue;
    EXPECT_EQ(c.tag, previousTag + 1) << "keys are created in ascending tag order";
    previousTag = c.tag;
  }
  EXPECT_EQ(previousTag, kFirstKeyTag + kKeyCount - 1);
  EXPECT_EQ(rectOf(mainPanel(), 200, K::WhiteKey), (Rect{29, 317, 50, 423}));    // C 48
  EXPECT_EQ(rectOf(mainPanel(), 201, K::BlackKey), (Rect{39, 316, 59, 383}));    // C# 49
  EXPECT_EQ(rectOf(mainPanel(), 205, K::WhiteKey), (Rect{92, 317, 113, 423}));   // F 53
  EXPECT_EQ(rectOf(mainPanel(), 242, K::BlackKey), (Rect{548, 316, 568, 383}));  // F# 90
  EXPECT_EQ(rectOf(mainPanel(), 243, K::WhiteKey), (Rect{559, 317, 580, 423}));  // G 91
}

TEST(LayoutTest, SettingsPanelHasEveryControlAtItsDesignedPlace) {
  const auto settings = settingsPanel();
  EXPECT_EQ(countKinds(settings)[K::Menu], 9);
  EXPECT_EQ(rectOf(settings, 106, K::SmallButton), (Rect{71, 46, 82, 57}));
  EXPECT_EQ(rectOf(settings, 111, K::Menu), (Rect{355, 94, 411, 107}));
  EXPECT_EQ(rectOf(settings, 113, K::Menu), (Rect{49, 150, 105, 163}));
  EXPECT_EQ(rectOf(settings, 45, K::Menu), (Rect{147, 44, 204, 57}));
  EXPECT_EQ(rectOf(settings, 48, K::Menu), (Rect{458, 44, 515, 57}));
  EXPECT_EQ(findControl(settings, 47, K::Menu)->colour.blue, 37);
  EXPECT_EQ(rectOf(settings, 110, K::ClickArea), (Rect{366, 264, 566, 423}));
  EXPECT_EQ(rectOf(settings, 102, K::HideKeysSwitch), (Rect{272, 94, 284, 106}));
  EXPECT_EQ(rectOf(settings, 112, K::TextField), (Rect{50, 395, 300, 411}));
}

// A caption under a control or over another caption is unreadable.
TEST(LayoutTest, CaptionsLieInThePanelClearOfControlsAndEachOther) {
  for (auto panel : {mainPanel(), settingsPanel()}) {
    for (const LayoutControl& c : panel) {
      const Rect box = captionBox(c);
      if (box.width() == 0) continue;
      EXPECT_GE(box.left, 0);
      EXPECT_LE(box.right, kPanelWidth);
      EXPECT_GE(box.top, 0);
      for (const LayoutControl& other : panel) {
        if (other.kind == K::ClickArea && other.tag != 105)
          continue;  // the link areas lie under art
        EXPECT_FALSE(overlap(box, other.rect)) << c.caption << " " << c.tag << " on " << other.tag;
        const Rect otherBox = captionBox(other);
        if (&other != &c && otherBox.width() != 0) {
          EXPECT_FALSE(overlap(box, otherBox)) << c.caption << " " << c.tag << " and " << other.tag;
        }
      }
    }
  }
}

TEST(LayoutTest, BitmapTableGivesTheDesignedSizes) {
  for (int skin = 0; skin < bitmap::kSkinCount; ++skin) {
    const BitmapSpec* b = findBitmap(bitmap::kSkinBase + skin);
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(b->width, 609);
    EXPECT_EQ(b->height, 441);
  }
  const struct {
    int id, width, height, frames;
  } expected[] = {{160, 609, 441, 1}, {161, 609, 441, 2}, {162, 609, 441, 2}, {155, 5, 5, 1},
                  {133, 7, 7, 1},     {152, 13, 24, 2},   {157, 11, 22, 2},   {163, 12, 24, 2}};
  for (const auto& e : expected) {
    const BitmapSpec* b = findBitmap(e.id);
    ASSERT_NE(b, nullptr) << e.id;
    EXPECT_EQ(b->width, e.width) << e.id;
    EXPECT_EQ(b->height, e.height) << e.id;
    EXPECT_EQ(b->frames, e.frames) << e.id;
  }
  EXPECT_EQ(bitmapTable().size(), 19u);
}

}  // namespace
