// The controls as a user works them with the mouse and keys, through a real
// X server: what the listener and the host hear, in order, and what shows.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <memory>

#include "test_editor.h"
#include "toolkit/bitmap.h"
#include "toolkit/buttons.h"
#include "toolkit/option_menu.h"
#include "toolkit/option_menu_popup.h"
#include "toolkit/text_edit.h"
#include "x_server.h"

namespace {

using namespace VSTGUI;
using toolkit_test::eventLog;
using toolkit_test::HostWindow;
using toolkit_test::idleUntil;
using toolkit_test::settle;
using toolkit_test::TestEditor;
using toolkit_test::TestEffect;
using Log = std::vector<std::string>;

constexpr int kX = 100;  // the host window's place on the screen
constexpr int kY = 100;

class ControlsTest : public ::testing::Test {
 protected:
  void open(std::function<void(TestEditor&)> build, int width = 300, int height = 200) {
    ASSERT_TRUE(toolkit_test::XServer::get().running());
    editor = new TestEditor(&effect, width, height, std::move(build));
    ASSERT_EQ(effect.call(effEditOpen, 0, host.handle()), 1);
    frame = editor->getFrame();
    ASSERT_TRUE(idleUntil(frame, [this] { return host.framePixel(frame, 0, 0) != 0xdeadbeef; }));
    settle(frame);
    eventLog().clear();
  }
  void TearDown() override { effect.call(effEditClose); }
  bool logIs(const Log& expected) {
    return idleUntil(
        frame, [&] { return eventLog() == expected; }, 1500);
  }

  HostWindow host{kX, kY, 300, 200};
  TestEffect effect;  // owns the editor
  TestEditor* editor = nullptr;
  CFrame* frame = nullptr;
};

TEST_F(ControlsTest, KickButtonSendsOneThenZeroAndZeroTwiceWhenDraggedOff) {
  open([](TestEditor& e) {
    e.getFrame()->addView(new CKickButton(CRect(10, 10, 30, 30), &e, 7, 20, nullptr));
  });
  host.click(kX + 20, kY + 20);
  EXPECT_TRUE(logIs({"begin 7", "7=1", "end 7", "7=0"})) << ::testing::PrintToString(eventLog());

  // Off the button with the button held: 0 as the mouse leaves, 0 at the end;
  // back on it, 1 again.
  eventLog().clear();
  host.moveTo(kX + 20, kY + 20);
  host.button(1, true);
  settle(frame);
  host.moveTo(kX + 80, kY + 80);
  settle(frame);
  host.moveTo(kX + 21, kY + 21);
  settle(frame);
  host.moveTo(kX + 80, kY + 80);
  settle(frame);
  host.button(1, false);
  EXPECT_TRUE(logIs({"begin 7", "7=1", "7=0", "7=1", "7=0", "end 7", "7=0"}))
      << ::testing::PrintToString(eventLog());

  // With a modifier held: press and release at once, no edit toward the host.
  eventLog().clear();
  host.key(XK_Shift_L, true);
  host.click(kX + 20, kY + 20);
  host.key(XK_Shift_L, false);
  EXPECT_TRUE(logIs({"7=1", "7=0"})) << ::testing::PrintToString(eventLog());
}

TEST_F(ControlsTest, OnOffButtonTogglesAndShowsItsOtherImage) {
  toolkit_test::makeBitmap(9101, 20, 40, [](int, int y) { return y < 20 ? 0xff0000u : 0x0000ffu; });
  COnOffButton* button = nullptr;
  open([&](TestEditor& e) {
    auto* picture = new CBitmap(9101);
    button = new COnOffButton(CRect(10, 10, 30, 30), &e, 3, picture);
    picture->forget();
    e.getFrame()->addView(button);
  });
  EXPECT_EQ(host.framePixel(frame, 20, 20), 0xff0000u);
  // The click gives the host its idle first (which idles the editor back,
  // in vain), then tells the listener.
  toolkit_test::reenteringEditor = editor;
  host.click(kX + 20, kY + 20);
  EXPECT_TRUE(logIs({"masterIdle", "3=1"})) << ::testing::PrintToString(eventLog());
  toolkit_test::reenteringEditor = nullptr;
  eventLog().erase(eventLog().begin());
  EXPECT_TRUE(idleUntil(frame, [&] { return host.framePixel(frame, 20, 20) == 0x0000ffu; }));
  host.click(kX + 20, kY + 20);
  EXPECT_TRUE(logIs({"3=1", "3=0"}));
  // A right click does nothing.
  host.click(kX + 20, kY + 20, 3);
  settle(frame);
  EXPECT_EQ(eventLog().size(), 2u);
}

COptionMenu* addMenu(TestEditor& e, const CRect& r, int count) {
  auto* menu = new COptionMenu(r, &e, 16, nullptr, nullptr, kCheckStyle | kShadowText);
  for (int i = 0; i < count; ++i) menu->addEntry(("entry " + std::to_string(i)).c_str());
  menu->setNbItemsPerColumn(count >= 40 ? (count + 2) / 3 : count >= 20 ? (count + 1) / 2 : 20);
  menu->setCurrent(2);
  e.getFrame()->addView(menu);
  return menu;
}

TEST_F(ControlsTest, OptionMenuListOpensBelowInColumnsAndChoosesWithMouseAndKeys) {
  COptionMenu* menu = nullptr;
  open([&](TestEditor& e) { menu = addMenu(e, CRect(20, 40, 77, 53), 85); });
  host.click(kX + 30, kY + 45);
  ASSERT_TRUE(idleUntil(frame, [&] { return host.popups().size() == 1; }));
  settle(frame);
  const CRect list = host.popups()[0];
  EXPECT_EQ(list.left, kX + 20);
  EXPECT_EQ(list.top, kY + 53);
  EXPECT_EQ(list.height(), 29 * 18 + 2);
  const OptionMenuPopup* popup = menu->getPopup();
  ASSERT_NE(popup, nullptr);
  EXPECT_EQ(popup->columnCount(), 3);
  EXPECT_EQ(popup->itemRect(29).top, popup->itemRect(0).top);
  EXPECT_GT(popup->itemRect(58).left, popup->itemRect(29).left);
  // The current entry shows checked and selected, in the list's colours.
  const COptionMenuScheme* scheme = menu->getScheme();
  const CRect checked = popup->itemRect(2);
  EXPECT_EQ(host.pixel(0, list.left + checked.left + 10, list.top + checked.top + 8),
            scheme->hiliteTextColor.rgb());
  EXPECT_EQ(host.pixel(0, list.left + checked.left + 2, list.top + checked.top + 2),
            scheme->selectionColor.rgb());
  const CRect other = popup->itemRect(3);
  EXPECT_EQ(host.pixel(0, list.left + other.left + 10, list.top + other.top + 8),
            scheme->backgroundColor.rgb());

  const CRect item = popup->itemRect(60);
  host.click(list.left + item.left + 20, list.top + item.top + 9);
  EXPECT_TRUE(logIs({"16=60"})) << ::testing::PrintToString(eventLog());
  EXPECT_TRUE(idleUntil(frame, [&] { return host.popups().empty(); }));
  EXPECT_EQ(menu->getCurrent(), 60);

  // Keys: down twice from the current entry, then Return.
  host.click(kX + 30, kY + 45);
  ASSERT_TRUE(idleUntil(frame, [&] { return host.popups().size() == 1; }));
  host.tap(XK_Down);
  host.tap(XK_Down);
  host.tap(XK_Return);
  EXPECT_TRUE(logIs({"16=60", "16=62"})) << ::testing::PrintToString(eventLog());

  // Escape and a click outside choose nothing.
  for (int way = 0; way < 2; ++way) {
    host.click(kX + 30, kY + 45);
    ASSERT_TRUE(idleUntil(frame, [&] { return host.popups().size() == 1; }));
    if (way == 0) {
      host.tap(XK_Escape);
    } else {
      host.click(5, 5);
    }
    EXPECT_TRUE(idleUntil(frame, [&] { return host.popups().empty(); }));
    settle(frame);
    EXPECT_EQ(eventLog().size(), 2u);
    EXPECT_EQ(menu->getCurrent(), 62);
  }

  // Press on the menu, drag onto an entry, release there: that entry.
  host.moveTo(kX + 30, kY + 45);
  host.button(1, true);
  ASSERT_TRUE(idleUntil(frame, [&] { return host.popups().size() == 1; }));
  const CRect fifth = menu->getPopup()->itemRect(5);
  host.moveTo(list.left + fifth.left + 20, list.top + fifth.top + 9);
  settle(frame);
  host.button(1, false);
  EXPECT_TRUE(logIs({"16=60", "16=62", "16=5"})) << ::testing::PrintToString(eventLog());
}

TEST_F(ControlsTest, OptionMenuListStaysOnScreenNearItsEdges) {
  HostWindow corner(1024 - 120, 768 - 60, 120, 60);
  COptionMenu* menu = nullptr;
  editor = new TestEditor(&effect, 120, 60,
                          [&](TestEditor& e) { menu = addMenu(e, CRect(60, 40, 117, 53), 39); });
  ASSERT_EQ(effect.call(effEditOpen, 0, corner.handle()), 1);
  frame = editor->getFrame();
  settle(frame);
  corner.click(1024 - 120 + 80, 768 - 60 + 45);
  ASSERT_TRUE(idleUntil(frame, [&] { return corner.popups().size() == 1; }));
  const CRect list = corner.popups()[0];
  EXPECT_GE(list.left, 0);
  EXPECT_GE(list.top, 0);
  EXPECT_LE(list.right, 1024);
  EXPECT_LE(list.bottom, 768);
  EXPECT_EQ(menu->getPopup()->columnCount(), 2);  // 20 and 19
  corner.tap(XK_Escape);
  EXPECT_TRUE(idleUntil(frame, [&] { return corner.popups().empty(); }));
  // Closing the editor with the list open removes the list too.
  corner.click(1024 - 120 + 80, 768 - 60 + 45);
  ASSERT_TRUE(idleUntil(frame, [&] { return corner.popups().size() == 1; }));
  effect.call(effEditClose);
  EXPECT_TRUE(corner.popups().empty());
}

// 85 entries are too tall for the room above and below a menu in the
// middle of the screen: the list covers the pointer, and the release of
// the click that opened it must not choose.
TEST_F(ControlsTest, OptionMenuListUnderThePointerWaitsForTheUser) {
  HostWindow middle(100, 380, 120, 60);
  COptionMenu* menu = nullptr;
  editor = new TestEditor(&effect, 120, 60,
                          [&](TestEditor& e) { menu = addMenu(e, CRect(20, 20, 77, 33), 85); });
  ASSERT_EQ(effect.call(effEditOpen, 0, middle.handle()), 1);
  frame = editor->getFrame();
  settle(frame);
  eventLog().clear();
  middle.moveTo(100 + 40, 380 + 25);
  middle.button(1, true);
  ASSERT_TRUE(idleUntil(frame, [&] { return middle.popups().size() == 1; }));
  middle.button(1, false);  // now that the list has the pointer
  settle(frame);
  const CRect list = middle.popups()[0];
  EXPECT_TRUE(list.pointInside({140, 405}));
  EXPECT_EQ(list.bottom, 768);
  EXPECT_TRUE(menu->isPopupOpen());
  EXPECT_TRUE(eventLog().empty());
  middle.tap(XK_Escape);
  EXPECT_TRUE(idleUntil(frame, [&] { return middle.popups().empty(); }));
}

TEST_F(ControlsTest, TextFieldEditsAndReportsOnce) {
  CTextEdit* field = nullptr;
  open([&](TestEditor& e) {
    field = new CTextEdit(CRect(50, 100, 250, 116), &e, 112, "v2.0");
    field->setFont(5);
    field->setHoriAlign(kLeftText);
    e.getFrame()->addView(field);
  });
  // Not editing: the host's keys are not ours.
  EXPECT_EQ(effect.call(effEditKeyDown, 0, nullptr, 'x'), 0);

  host.click(kX + 100, kY + 108);
  ASSERT_TRUE(idleUntil(frame, [&] { return field->isEditing(); }));
  host.tap(XK_a);  // replaces the selected text
  host.tap(XK_b);
  settle(frame);
  EXPECT_EQ(effect.call(effEditKeyDown, 0, nullptr, 'c'), 1);  // the host's keys too
  host.tap(XK_BackSpace);
  host.tap(XK_d);
  settle(frame);
  EXPECT_TRUE(eventLog().empty());
  host.tap(XK_Return);
  ASSERT_TRUE(idleUntil(frame, [&] { return !field->isEditing(); }));
  settle(frame);
  EXPECT_EQ(field->text(), "abd");
  EXPECT_EQ(eventLog().size(), 1u);

  // Escape keeps the old text and reports nothing; so does an unchanged edit
  // ended by a click elsewhere.
  host.click(kX + 100, kY + 108);
  ASSERT_TRUE(idleUntil(frame, [&] { return field->isEditing(); }));
  host.tap(XK_z);
  host.tap(XK_Escape);
  ASSERT_TRUE(idleUntil(frame, [&] { return !field->isEditing(); }));
  host.click(kX + 100, kY + 108);
  ASSERT_TRUE(idleUntil(frame, [&] { return field->isEditing(); }));
  host.click(kX + 10, kY + 10);
  ASSERT_TRUE(idleUntil(frame, [&] { return !field->isEditing(); }));
  settle(frame);
  EXPECT_EQ(field->text(), "abd");
  EXPECT_EQ(eventLog().size(), 1u);
}

}  // namespace
