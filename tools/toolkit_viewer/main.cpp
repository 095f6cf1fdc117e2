// sablevox-toolkit-viewer: opens the toolkit's demo frame in a window of its
// own and idles it as a host would.
//   --seconds N   close after N seconds (default: when the window closes)
//   --open-menu   open the wave menu's list once the frame is painted
//   --showcase    every control in its other state, the filter menu open
//   --measure     print the time to open and paint a frame of 100 controls
//                 and the cost of an idle pass, then exit
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <thread>
#include <vector>

#include "demo_panel.h"
#include "toolkit/frame.h"
#include "toolkit/option_menu.h"

namespace {

using Clock = std::chrono::steady_clock;

double microseconds(Clock::duration d) {
  return std::chrono::duration<double, std::micro>(d).count();
}

Window hostWindow(Display* display, const char* title) {
  Window w =
      XCreateSimpleWindow(display, DefaultRootWindow(display), 40, 40, 609, 441, 0, 0, 0x202020);
  XStoreName(display, w, title);
  Atom close = XInternAtom(display, "WM_DELETE_WINDOW", False);
  XSetWMProtocols(display, w, &close, 1);
  XSelectInput(display, w, StructureNotifyMask);
  XMapWindow(display, w);
  XSync(display, False);
  return w;
}

void* handle(Window w) {
  return reinterpret_cast<void*>(static_cast<uintptr_t>(w));
}

int measure(Display* display, Window host) {
  constexpr int kRuns = 21;
  std::vector<double> open;
  std::vector<double> onScreen;
  viewer::DemoEditor editor(100);
  for (int run = 0; run < kRuns; ++run) {
    const auto start = Clock::now();
    if (!editor.dispatchOpen(handle(host))) return 1;
    while (!editor.getFrame()->hasPainted()) editor.dispatchIdle();
    open.push_back(microseconds(Clock::now() - start));
    // The server has drawn it once a request of ours that follows returns.
    XImage* image = XGetImage(display, host, 300, 100, 1, 1, AllPlanes, ZPixmap);
    if (image != nullptr) XDestroyImage(image);
    onScreen.push_back(microseconds(Clock::now() - start));
    if (run + 1 < kRuns) editor.dispatchClose();
  }
  std::sort(open.begin(), open.end());
  std::sort(onScreen.begin(), onScreen.end());
  std::printf("open + first paint, 100 controls: median %.0f us (%.0f us until on screen)\n",
              open[kRuns / 2], onScreen[kRuns / 2]);

  constexpr int kPasses = 5000;
  auto start = Clock::now();
  for (int i = 0; i < kPasses; ++i) editor.dispatchIdle();
  std::printf("idle pass, nothing dirty: %.2f us\n", microseconds(Clock::now() - start) / kPasses);
  start = Clock::now();
  for (int i = 0; i < kPasses; ++i) {
    editor.firstControl()->setValue(static_cast<float>(i & 1));
    editor.dispatchIdle();
  }
  std::printf("idle pass, one dirty control: %.2f us\n",
              microseconds(Clock::now() - start) / kPasses);
  editor.dispatchClose();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  double seconds = 0.0;
  bool openMenu = false;
  bool showcase = false;
  bool measuring = false;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--seconds") == 0 && i + 1 < argc) {
      seconds = std::atof(argv[++i]);
    } else if (std::strcmp(argv[i], "--open-menu") == 0) {
      openMenu = true;
    } else if (std::strcmp(argv[i], "--showcase") == 0) {
      showcase = true;
    } else if (std::strcmp(argv[i], "--measure") == 0) {
      measuring = true;
    } else {
      std::fprintf(stderr, "usage: %s [--seconds N] [--open-menu] [--showcase] [--measure]\n",
                   argv[0]);
      return 2;
    }
  }
  Display* display = XOpenDisplay(nullptr);
  if (display == nullptr) {
    std::fprintf(stderr, "no X display\n");
    return 1;
  }
  const Window host = hostWindow(display, "Sablevox toolkit viewer");
  if (measuring) {
    const int result = measure(display, host);
    XCloseDisplay(display);
    return result;
  }
  auto* editor = new viewer::DemoEditor;
  if (!editor->dispatchOpen(handle(host))) {
    std::fprintf(stderr, "the frame's window could not be opened\n");
    return 1;
  }
  const Atom close = XInternAtom(display, "WM_DELETE_WINDOW", False);
  const auto end = Clock::now() + std::chrono::duration<double>(seconds);
  bool running = true;
  while (running && (seconds <= 0.0 || Clock::now() < end)) {
    editor->dispatchIdle();
    if ((openMenu || showcase) && editor->getFrame()->hasPainted()) {
      std::lock_guard<std::recursive_mutex> guard(editor->getFrame()->pumpLock());
      if (showcase) editor->showOtherStates();
      (showcase ? editor->filterMenu() : editor->waveMenu())->takeFocus(nullptr);
      openMenu = showcase = false;
    }
    while (XPending(display) > 0) {
      XEvent event;
      XNextEvent(display, &event);
      if (event.type == ClientMessage && static_cast<Atom>(event.xclient.data.l[0]) == close) {
        running = false;
      }
      if (event.type == DestroyNotify) running = false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
  }
  editor->dispatchClose();
  delete editor;
  XDestroyWindow(display, host);
  XCloseDisplay(display);
  return 0;
}
