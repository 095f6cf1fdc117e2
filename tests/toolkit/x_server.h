// The toolkit tests' X server and what they do with it: an Xvfb of their own
// on a free display (started once per test program, stopped by its process
// id), a top-level window that plays the host's window, input through XTEST
// and pixels read back with XGetImage.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "toolkit/frame.h"

struct _XDisplay;

namespace toolkit_test {

// Starts Xvfb at the first use and points DISPLAY at it.
class XServer {
 public:
  static XServer& get();
  ~XServer();
  bool running() const { return pid > 0; }
  // Stops the server (for the test of a display that goes away).
  void stop();
  const char* name() const { return displayName; }

 private:
  XServer();
  int pid = -1;
  char displayName[32] = {};
};

// A window of the test's own connection, at (x, y) of the screen.
class HostWindow {
 public:
  HostWindow(int x = 100, int y = 100, int width = 400, int height = 300);
  ~HostWindow();
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;

  void* handle() const { return reinterpret_cast<void*>(static_cast<uintptr_t>(window)); }
  unsigned long id() const { return window; }
  void destroy();

  // Pixel 0xRRGGBB of a window on the screen, in its own coordinates; the
  // root window for 0.
  uint32_t pixel(unsigned long w, int x, int y);
  // Windows inside this one, as the server counts them.
  int childCount();
  // Size of the frame's window on the server.
  VSTGUI::CPoint frameWindowSize(VSTGUI::CFrame* frame);
  // Pixel of the frame's window.
  uint32_t framePixel(VSTGUI::CFrame* frame, int x, int y);

  // Input at screen positions, through XTEST.
  void moveTo(int x, int y);
  void button(unsigned int number, bool down);
  void click(int x, int y, unsigned int number = 1);
  void key(unsigned long keysym, bool down);
  void tap(unsigned long keysym);
  void sync();

  // The mapped override-redirect windows on the screen (popups), as screen
  // rectangles.
  std::vector<VSTGUI::CRect> popups();

 private:
  ::_XDisplay* dpy = nullptr;
  bool lost = false;
  unsigned long window = 0;
  int left;
  int top;
};

// Runs the frame's idle (as a host would) until pred holds or timeoutMs pass.
bool idleUntil(VSTGUI::CFrame* frame, const std::function<bool()>& pred, int timeoutMs = 2000);
// A few idle passes with short pauses, so that pending events arrive.
void settle(VSTGUI::CFrame* frame, int passes = 5);

// A picture registered under id: fill(x, y) gives 0xRRGGBB.
void makeBitmap(int id, int width, int height, const std::function<uint32_t(int, int)>& fill);

}  // namespace toolkit_test
