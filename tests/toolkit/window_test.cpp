// The editor window's life as hosts lead it: opened and closed many times,
// twice without close, from two instances, idled from another thread or not
// at all, its parent destroyed first, no X server, a server that dies.
#include <X11/keysym.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "test_editor.h"
#include "toolkit/bitmap.h"
#include "toolkit/buttons.h"
#include "toolkit/platform/platform.h"
#include "toolkit/platform/x11/x11_services.h"
#include "x_server.h"

namespace {

using namespace VSTGUI;
using namespace std::chrono_literals;
using toolkit_test::HostWindow;
using toolkit_test::idleUntil;
using toolkit_test::settle;
using toolkit_test::TestEditor;
using toolkit_test::TestEffect;

constexpr uint32_t kBackground = 0x123456;

void withButton(TestEditor& e) {
  toolkit_test::makeBitmap(9201, 200, 100, [](int, int) { return kBackground; });
  auto* background = new CBitmap(9201);
  e.getFrame()->setBackground(background);
  background->forget();
  e.getFrame()->addView(new CKickButton(CRect(10, 10, 30, 30), &e, 1, 20, nullptr));
}

class WindowTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(toolkit_test::XServer::get().running()); }
  HostWindow host;
};

TEST_F(WindowTest, OpenCloseManyTimesAndTwiceWithoutCloseLeavesNothingBehind) {
  const int windows = platformOpenWindowCount();
  const int displays = platformOpenDisplayCount();
  auto effect = std::make_unique<TestEffect>();
  auto* editor = new TestEditor(effect.get(), 200, 100, withButton);
  ERect* rect = nullptr;
  ASSERT_EQ(effect->call(effEditGetRect, 0, &rect), 1);
  EXPECT_EQ(rect->right, 200);
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(effect->call(effEditOpen, 0, host.handle()), 1);
    effect->call(effEditIdle);
    if (i % 10 == 0) {
      // A second open replaces the first window.
      ASSERT_EQ(effect->call(effEditOpen, 0, host.handle()), 1);
      EXPECT_EQ(platformOpenWindowCount(), windows + 1);
      EXPECT_EQ(platformOpenDisplayCount(), displays + 1);
      EXPECT_EQ(host.childCount(), 1);
    }
    effect->call(effEditClose);
  }
  EXPECT_EQ(platformOpenWindowCount(), windows);
  EXPECT_EQ(platformOpenDisplayCount(), displays);
  EXPECT_EQ(host.childCount(), 0);  // the server agrees

  // Two instances at once, the plug-in closed with its editor open.
  auto second = std::make_unique<TestEffect>();
  new TestEditor(second.get(), 100, 50, withButton);
  ASSERT_EQ(effect->call(effEditOpen, 0, host.handle()), 1);
  ASSERT_EQ(second->call(effEditOpen, 0, host.handle()), 1);
  EXPECT_EQ(platformOpenWindowCount(), windows + 2);
  EXPECT_EQ(editor->getFrame()->getPlatformFrame()->errorCount(), 0);
  second.reset();
  effect.reset();
  EXPECT_EQ(host.childCount(), 0);
  EXPECT_EQ(platformOpenWindowCount(), windows);
  EXPECT_EQ(platformOpenDisplayCount(), displays);
}

TEST_F(WindowTest, FallbackPumpRunsOnlyWhileTheHostDoesNotIdle) {
  TestEffect effect;
  auto* editor = new TestEditor(&effect, 200, 100, withButton);
  editor->fallbackAfterMs = 100;
  ASSERT_EQ(effect.call(effEditOpen, 0, host.handle()), 1);
  CFrame* frame = editor->getFrame();
  // No host idle at all: the window still gets painted and answers.
  const auto painted = [&] { return host.framePixel(frame, 50, 50) == kBackground; };
  const auto end = std::chrono::steady_clock::now() + 5s;
  while (!painted() && std::chrono::steady_clock::now() < end) std::this_thread::sleep_for(5ms);
  EXPECT_TRUE(painted());
  EXPECT_GT(frame->fallbackPumps(), 0);
  EXPECT_EQ(frame->hostPumps(), 0);
  {
    std::lock_guard<std::recursive_mutex> guard(frame->pumpLock());
    toolkit_test::eventLog().clear();
  }
  host.click(100 + 20, 100 + 20);
  // The log is written by the frame's thread: read it under the frame's lock.
  const auto clicked = [&] {
    std::lock_guard<std::recursive_mutex> guard(frame->pumpLock());
    return toolkit_test::eventLog().size() >= 2;
  };
  while (!clicked() && std::chrono::steady_clock::now() < end + 2s) {
    std::this_thread::sleep_for(5ms);
  }
  EXPECT_TRUE(clicked());

  // A host that idles (from a thread other than the one that opened):
  // the fallback stays still. Meanwhile another thread writes a control's
  // value, as parameter changes from the host's automation do.
  std::this_thread::sleep_for(50ms);
  auto* button = static_cast<CControl*>(frame->getView(0));
  std::atomic<bool> writing{true};
  std::thread automation([&] {
    for (int i = 0; writing.load(); ++i) {
      button->setValue(static_cast<float>(i & 1));
      std::this_thread::sleep_for(50us);
    }
  });
  std::thread hostThread([&] {
    for (int i = 0; i < 10; ++i) {
      effect.call(effEditIdle);
      std::this_thread::sleep_for(20ms);
    }
  });
  std::this_thread::sleep_for(60ms);  // past any pump already under way
  const long fallbackBefore = frame->fallbackPumps();
  hostThread.join();
  writing = false;
  automation.join();
  // A loaded machine (the sanitizer runs) may stall the host's thread past
  // 100 ms once; then the fallback rightly takes a turn.
  EXPECT_LE(frame->fallbackPumps(), fallbackBefore + 1);
  // The first host idle may find the fallback in the middle of a pump and
  // leave (never wait); from then on the host's calls all pump.
  EXPECT_GE(frame->hostPumps(), 9);
  effect.call(effEditClose);
}

TEST_F(WindowTest, ParentDestroyedBeforeCloseAndNoServerFailCleanly) {
  TestEffect effect;
  auto* editor = new TestEditor(&effect, 200, 100, withButton);
  ASSERT_EQ(effect.call(effEditOpen, 0, host.handle()), 1);
  CFrame* frame = editor->getFrame();
  settle(frame);
  host.destroy();
  ASSERT_TRUE(idleUntil(frame, [&] { return !frame->isOpen(); }));
  EXPECT_EQ(frame->getPlatformFrame()->errorCount(), 0);
  effect.call(effEditIdle);
  effect.call(effEditClose);
  EXPECT_EQ(platformOpenWindowCount(), 0);

  // A window id that isn't one: open fails, the X error is ours and counted.
  EXPECT_EQ(effect.call(effEditOpen, 0, reinterpret_cast<void*>(uintptr_t{0x7fffff})), 0);
  EXPECT_EQ(effect.call(effEditOpen, 0, nullptr), 0);

  // No X server: open answers 0, idle and close do no harm; later it works.
  const std::string display = getenv("DISPLAY");
  setenv("DISPLAY", ":4321", 1);
  EXPECT_EQ(effect.call(effEditOpen, 0, reinterpret_cast<void*>(uintptr_t{1})), 0);
  effect.call(effEditIdle);
  effect.call(effEditClose);
  setenv("DISPLAY", display.c_str(), 1);
  HostWindow again;
  EXPECT_EQ(effect.call(effEditOpen, 0, again.handle()), 1);
  effect.call(effEditClose);
  EXPECT_EQ(platformOpenDisplayCount(), 0);
}

TEST_F(WindowTest, ServerThatGoesAwayLeavesTheHostRunning) {
  TestEffect effect;
  auto* editor = new TestEditor(&effect, 200, 100, withButton);
  ASSERT_EQ(effect.call(effEditOpen, 0, host.handle()), 1);
  settle(editor->getFrame());
  toolkit_test::XServer::get().stop();
  for (int i = 0; i < 5; ++i) {
    effect.call(effEditIdle);
    std::this_thread::sleep_for(20ms);
  }
  EXPECT_FALSE(editor->getFrame()->isOpen());
  effect.call(effEditClose);
  EXPECT_EQ(platformOpenWindowCount(), 0);
}

// The editor asks for (w, h - 1) and then (w, h): a host that resizes
// carries out the first, and the frame's size, left as it was, drops the
// second. Without the host's help the frame resizes itself.
TEST_F(WindowTest, SetSizeWithAndWithoutTheHostsHelp) {
  for (const bool hostHelps : {true, false}) {
    toolkit_test::hostCanSizeWindow = hostHelps;
    TestEffect effect;
    auto* editor = new TestEditor(&effect, 200, 100, withButton);
    ASSERT_EQ(effect.call(effEditOpen, 0, host.handle()), 1);
    CFrame* frame = editor->getFrame();
    toolkit_test::eventLog().clear();
    EXPECT_FALSE(frame->setSize(200, 100));
    EXPECT_TRUE(frame->setSize(200, 99));
    EXPECT_EQ(host.frameWindowSize(frame), CPoint(200, 99));
    if (hostHelps) {
      EXPECT_EQ(toolkit_test::eventLog(), std::vector<std::string>{"size 200x99"});
      EXPECT_EQ(frame->getSize(), CRect(0, 0, 200, 100));
      EXPECT_FALSE(frame->setSize(200, 100));
    } else {
      EXPECT_TRUE(toolkit_test::eventLog().empty());
      EXPECT_EQ(frame->getSize(), CRect(0, 0, 200, 99));
      EXPECT_TRUE(frame->setSize(200, 100));
      EXPECT_EQ(host.frameWindowSize(frame), CPoint(200, 100));
    }
    effect.call(effEditClose);
  }
  toolkit_test::hostCanSizeWindow = false;
}

TEST_F(WindowTest, QuestionBoxAnswersYesAndNo) {
  // The box is centred on the 1024 x 768 screen, 420 x 120, its buttons
  // at the lower right; it has the keys while the pointer is over it.
  constexpr int kLeft = (1024 - 420) / 2;
  constexpr int kTop = (768 - 120) / 2;
  for (const bool yes : {true, false}) {
    bool answer = !yes;
    std::thread asker([&] { answer = platformAskYesNo("Sablevox", "Do you want to visit?"); });
    const auto end = std::chrono::steady_clock::now() + 3s;
    while (host.pixel(0, kLeft + 5, kTop + 5) != 0xececec &&
           std::chrono::steady_clock::now() < end) {
      std::this_thread::sleep_for(5ms);
    }
    if (yes) {
      host.moveTo(kLeft + 100, kTop + 40);
      host.tap(XK_y);
    } else {
      host.click(kLeft + 360, kTop + 92);
    }
    asker.join();
    EXPECT_EQ(answer, yes);
  }
  EXPECT_EQ(platformOpenWindowCount(), 0);
}

TEST(DetachedStartTest, StartsWithoutWaitingAndWithoutTheHostsDescriptors) {
  int fds[2];
  ASSERT_EQ(pipe(fds), 0);  // inheritable: no close-on-exec
  const char* argv[] = {"sleep", "1", nullptr};
  const auto start = std::chrono::steady_clock::now();
  ASSERT_TRUE(spawnDetached(argv));
  close(fds[1]);
  char c;
  // The read end sees the end at once only if the child holds no copy of
  // the write end.
  EXPECT_EQ(read(fds[0], &c, 1), 0);
  close(fds[0]);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 500ms);
  const char* missing[] = {"/nonexistent/program", nullptr};
  EXPECT_TRUE(spawnDetached(missing));  // started; the failure is the child's
}

}  // namespace
