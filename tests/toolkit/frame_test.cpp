// What a user sees of a frame: it is painted, a changed value repaints at
// the next idle and nothing else does, the view on top takes the click, and
// transparent pictures leave the background showing.
#include "toolkit/frame.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "toolkit/bitmap.h"
#include "toolkit/buttons.h"
#include "toolkit/draw_context.h"
#include "toolkit/movie_bitmap.h"
#include "x_server.h"

namespace {

using namespace VSTGUI;
using toolkit_test::HostWindow;
using toolkit_test::idleUntil;
using toolkit_test::makeBitmap;
using toolkit_test::settle;

constexpr int kBackgroundId = 9001;
constexpr uint32_t kBackground = 0x336699;

// Red at 0, green otherwise; counts its paints and presses.
class Swatch : public CControl {
 public:
  explicit Swatch(const CRect& r) : CControl(r) {}
  void draw(CDrawContext* context) override {
    ++draws;
    context->fillPixels(size, getValue() == 0.0f ? CColor{255, 0, 0, 0} : CColor{0, 255, 0, 0});
    setDirty(false);
  }
  void mouse(CDrawContext* /*context*/, CPoint& /*where*/) override { ++presses; }
  int draws = 0;
  int presses = 0;
};

class FrameTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(toolkit_test::XServer::get().running());
    makeBitmap(kBackgroundId, 200, 120, [](int, int) { return kBackground; });
    background = new CBitmap(kBackgroundId);
    frame = new CFrame(CRect(0, 0, 200, 120), host.handle(), nullptr);
    ASSERT_TRUE(frame->isOpen());
    frame->setBackground(background);
  }
  void TearDown() override {
    if (frame != nullptr) frame->forget();
    if (background != nullptr) background->forget();
  }
  // A pixel of the frame's window.
  uint32_t at(int x, int y) { return host.framePixel(frame, x, y); }
  void firstPaint() {
    ASSERT_TRUE(idleUntil(frame, [this] { return at(1, 1) == kBackground; }));
  }

  HostWindow host;
  CBitmap* background = nullptr;
  CFrame* frame = nullptr;
};

TEST_F(FrameTest, PaintsBackgroundAndViewsAndRepaintsOnlyChangedValues) {
  auto* a = new Swatch(CRect(10, 10, 30, 30));
  auto* b = new Swatch(CRect(50, 10, 70, 30));
  frame->addView(a);
  frame->addView(b);
  firstPaint();
  EXPECT_EQ(at(5, 5), kBackground);
  EXPECT_EQ(at(20, 20), 0xff0000u);
  EXPECT_EQ(at(60, 20), 0xff0000u);
  const int aDraws = a->draws;
  const int bDraws = b->draws;

  // Nothing changed: idle paints nothing.
  settle(frame);
  EXPECT_EQ(a->draws, aDraws);
  // The same value again: still nothing.
  a->setValue(0.0f);
  settle(frame);
  EXPECT_EQ(a->draws, aDraws);
  // A new value alone brings the repaint, of that control only.
  a->setValue(1.0f);
  ASSERT_TRUE(idleUntil(frame, [&] { return at(20, 20) == 0x00ff00u; }));
  EXPECT_EQ(a->draws, aDraws + 1);
  EXPECT_EQ(b->draws, bDraws);
  // setDirty(true) marks a control dirty also when its value is -1.
  b->setValue(-1.0f);
  b->setDirty(false);
  EXPECT_FALSE(b->isDirty());
  b->setDirty(true);
  EXPECT_TRUE(b->isDirty());
}

TEST_F(FrameTest, PressReachesTheTopmostEnabledViewIncludingRightAndBottomEdges) {
  auto* under = new Swatch(CRect(10, 10, 40, 40));
  auto* over = new Swatch(CRect(30, 30, 60, 60));
  auto* disabled = new Swatch(CRect(100, 10, 130, 40));
  auto* below = new Swatch(CRect(100, 10, 130, 40));
  frame->addView(under);
  frame->addView(below);
  frame->addView(over);
  frame->addView(disabled);
  disabled->setMouseEnabled(false);
  firstPaint();

  host.click(100 + 35, 100 + 35);  // shared pixels: the view added last
  ASSERT_TRUE(idleUntil(frame, [&] { return over->presses == 1; }));
  EXPECT_EQ(under->presses, 0);
  host.click(100 + 40, 100 + 40);  // under's bottom right corner, inside over too
  ASSERT_TRUE(idleUntil(frame, [&] { return over->presses == 2; }));
  host.click(100 + 40, 100 + 20);  // under's right edge only
  ASSERT_TRUE(idleUntil(frame, [&] { return under->presses == 1; }));
  host.click(100 + 110, 100 + 20);  // a disabled view lets the press through
  ASSERT_TRUE(idleUntil(frame, [&] { return below->presses == 1; }));
  EXPECT_EQ(disabled->presses, 0);

  // A modal view takes every press that hits it, and nothing else gets any.
  frame->setModalView(under);
  host.click(100 + 35, 100 + 35);
  ASSERT_TRUE(idleUntil(frame, [&] { return under->presses == 2; }));
  host.click(100 + 110, 100 + 20);
  settle(frame);
  EXPECT_EQ(below->presses, 1);
  frame->setModalView(nullptr);
}

TEST_F(FrameTest, TransparentBitmapsLeaveTheBackgroundWhereTheKeyColourIs) {
  // Left half the key colour (0, 255, 0), right half white.
  makeBitmap(9002, 20, 20, [](int x, int) { return x < 10 ? 0x00ff00u : 0xffffffu; });
  auto* picture = new CBitmap(9002);
  picture->setTransparentColor({0, 255, 0, 0});
  auto* light = new CMovieBitmap(CRect(10, 10, 30, 30), nullptr, 0, 1, 20, picture);
  light->setTransparency(true);
  auto* opaque = new CMovieBitmap(CRect(50, 10, 70, 30), nullptr, 0, 1, 20, picture);
  picture->forget();
  frame->addView(light);
  frame->addView(opaque);
  firstPaint();
  EXPECT_EQ(at(12, 20), kBackground);
  EXPECT_EQ(at(25, 20), 0xffffffu);
  EXPECT_EQ(at(52, 20), 0x00ff00u);  // without transparency the key colour shows
  EXPECT_EQ(at(65, 20), 0xffffffu);
}

TEST(DrawContextTest, DrawingRulesAndBadInput) {
  ASSERT_TRUE(toolkit_test::XServer::get().running());
  COffscreenContext c(nullptr, 20, 20, kBlackCColor);
  auto px = [&](int x, int y) { return c.getBackend().pixel(x, y); };
  c.setFrameColor(kWhiteCColor);
  c.drawRect(CRect(2, 2, 6, 6));  // edges inclusive
  EXPECT_EQ(px(6, 6), 0xffffffu);
  EXPECT_EQ(px(2, 4), 0xffffffu);
  EXPECT_EQ(px(4, 4), 0u);
  c.setFillColor(kRedCColor);
  c.fillRect(CRect(2, 2, 6, 6));  // the inside: 3..5
  EXPECT_EQ(px(3, 3), 0xff0000u);
  EXPECT_EQ(px(5, 5), 0xff0000u);
  EXPECT_EQ(px(6, 5), 0xffffffu);
  c.moveTo({10, 10});
  c.lineTo({15, 10});  // the last pixel left out
  EXPECT_EQ(px(14, 10), 0xffffffu);
  EXPECT_EQ(px(15, 10), 0u);
  // Inverted rectangles are drawn as their normal form; empty ones, null
  // texts and null pictures draw nothing and don't fail.
  c.setFillColor({0, 0, 255, 0});
  c.fillRect(CRect(19, 19, 16, 16));
  EXPECT_EQ(px(17, 17), 0x0000ffu);
  c.fillRect(CRect(5, 5, 5, 5));
  c.drawString(nullptr, CRect(0, 0, 20, 20));
  c.drawString("a text far longer than the rectangle it must stay in", CRect(0, 0, 20, 8));
  CBitmap missing(-12345);
  EXPECT_FALSE(missing.isLoaded());
  missing.draw(&c, CRect(0, 0, 10, 10));
  missing.drawTransparent(&c, CRect(0, 0, 10, 10));
  // An offscreen picture copied to another context, unscaled, from a point.
  COffscreenContext box(nullptr, 8, 8, {0, 0, 255, 0});
  box.fillPixels(CRect(4, 4, 8, 8), {0, 255, 0, 0});
  box.copyFrom(&c, CRect(10, 0, 14, 4), CPoint(4, 4));
  EXPECT_EQ(px(10, 0), 0x00ff00u);
  EXPECT_EQ(px(13, 3), 0x00ff00u);
  EXPECT_NE(px(14, 3), 0x00ff00u);
  // Fonts: 0 to 7, others count as 0; size 0 takes the table's height.
  EXPECT_EQ(fontFromId(4).pixelHeight, 11);
  EXPECT_EQ(fontFromId(99).pixelHeight, 12);
  EXPECT_TRUE(fontFromId(99).bold);
  EXPECT_GT(c.getStringWidth("Reset to default"), 40);
}

}  // namespace

namespace {

// Counts destructions, so that a test sees who frees a view and when.
class Counted : public CView {
 public:
  Counted(int* deaths) : CView(CRect(0, 0, 10, 10)), deaths(deaths) {}
  ~Counted() override { ++*deaths; }
  int* deaths;
};

// The editor empties the frame without destroying the views and keeps
// addressing them; the frame gives up only what it still holds.
TEST(FrameModelTest, ViewsLeaveTheFrameAliveAndTheFrameFreesWhatItHolds) {
  int deaths = 0;
  auto* frame = new CFrame(CRect(0, 0, 100, 100), nullptr, nullptr);  // no window
  EXPECT_FALSE(frame->isOpen());
  auto* kept = new Counted(&deaths);
  auto* dropped = new Counted(&deaths);
  auto* held = new Counted(&deaths);
  frame->addView(kept);
  frame->addView(dropped);
  EXPECT_EQ(frame->getNbViews(), 2);
  EXPECT_TRUE(frame->removeView(dropped, true));
  EXPECT_EQ(deaths, 1);
  frame->setFocusView(kept);
  frame->removeAll(false);
  EXPECT_EQ(frame->getFocusView(), nullptr);
  EXPECT_EQ(deaths, 1);
  EXPECT_FALSE(frame->isChild(kept));
  kept->setDirty(true);  // still a valid object
  frame->addView(kept);
  frame->addView(held);
  held->remember();  // someone else holds it too
  frame->forget();
  EXPECT_EQ(deaths, 2);  // kept went with the frame; held lives on
  EXPECT_EQ(held->getNbReference(), 1);
  held->forget();
  EXPECT_EQ(deaths, 3);
}

}  // namespace
