#include "x_server.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <thread>

#include "toolkit/bitmap.h"
#include "toolkit/platform/platform.h"

namespace toolkit_test {

XServer& XServer::get() {
  static XServer server;
  return server;
}

// Xvfb picks a free display itself and writes its number to the pipe once
// it accepts connections.
XServer::XServer() {
  int fds[2];
  if (pipe(fds) != 0) return;
  const pid_t child = fork();
  if (child == 0) {
    // The server ends with the test program, also one that a sanitizer
    // or a crash ends without running destructors.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() == 1) _exit(1);
    close(fds[0]);
    const int null = open("/dev/null", O_RDWR);
    dup2(null, 1);
    dup2(null, 2);
    char fd[16];
    std::snprintf(fd, sizeof fd, "%d", fds[1]);
    execlp("Xvfb", "Xvfb", "-displayfd", fd, "-screen", "0", "1024x768x24", "-nolisten", "tcp",
           "-ac", static_cast<char*>(nullptr));
    _exit(127);
  }
  close(fds[1]);
  if (child < 0) {
    close(fds[0]);
    return;
  }
  char number[16] = {};
  size_t got = 0;
  while (got < sizeof number - 1) {
    const ssize_t n = read(fds[0], number + got, 1);
    if (n <= 0 || number[got] == '\n') break;
    ++got;
  }
  close(fds[0]);
  if (got == 0) {
    kill(child, SIGTERM);
    waitpid(child, nullptr, 0);
    return;
  }
  number[got] = 0;
  pid = child;
  std::snprintf(displayName, sizeof displayName, ":%s", number);
  setenv("DISPLAY", displayName, 1);
}

void XServer::stop() {
  if (pid <= 0) return;
  kill(pid, SIGTERM);
  waitpid(pid, nullptr, 0);
  pid = -1;
}

XServer::~XServer() {
  stop();
}

HostWindow::HostWindow(int x, int y, int width, int height) : left(x), top(y) {
  XServer::get();
  dpy = XOpenDisplay(nullptr);
  if (dpy == nullptr) return;
  // Survives the server's end, as the test of that needs, and windows that
  // vanish while the test looks at them.
  XSetIOErrorExitHandler(
      dpy, [](Display*, void* lost) { *static_cast<bool*>(lost) = true; }, &lost);
  XSetIOErrorHandler([](Display*) { return 0; });
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
  XSetWindowAttributes set{};
  set.background_pixel = 0x202020;
  set.override_redirect = False;
  window = XCreateWindow(dpy, DefaultRootWindow(dpy), x, y, static_cast<unsigned>(width),
                         static_cast<unsigned>(height), 0, CopyFromParent, InputOutput,
                         CopyFromParent, CWBackPixel, &set);
  XMapWindow(dpy, window);
  XSync(dpy, False);
}

HostWindow::~HostWindow() {
  if (dpy == nullptr || lost) return;  // a dead connection is left alone
  // Let go of any button or key a failed test left down.
  button(1, false);
  if (!lost) destroy();
  if (!lost) XCloseDisplay(dpy);
}

void HostWindow::destroy() {
  if (window == 0) return;
  XDestroyWindow(dpy, window);
  XSync(dpy, False);
  window = 0;
}

void HostWindow::sync() {
  XSync(dpy, False);
}

uint32_t HostWindow::framePixel(VSTGUI::CFrame* frame, int x, int y) {
  auto* platform = frame->getPlatformFrame();
  return platform != nullptr ? pixel(static_cast<Window>(platform->nativeWindow()), x, y)
                             : 0xdeadbeef;
}

int HostWindow::childCount() {
  XSync(dpy, False);
  Window root = 0;
  Window parent = 0;
  Window* children = nullptr;
  unsigned int count = 0;
  if (XQueryTree(dpy, window, &root, &parent, &children, &count) == 0) return -1;
  if (children != nullptr) XFree(children);
  return static_cast<int>(count);
}

VSTGUI::CPoint HostWindow::frameWindowSize(VSTGUI::CFrame* frame) {
  XSync(dpy, False);
  XWindowAttributes a{};
  if (frame->getPlatformFrame() == nullptr ||
      XGetWindowAttributes(dpy, static_cast<Window>(frame->getPlatformFrame()->nativeWindow()),
                           &a) == 0) {
    return {};
  }
  return {a.width, a.height};
}

uint32_t HostWindow::pixel(unsigned long w, int x, int y) {
  XSync(dpy, False);
  if (w == 0) w = DefaultRootWindow(dpy);
  XImage* image = XGetImage(dpy, w, x, y, 1, 1, AllPlanes, ZPixmap);
  if (image == nullptr) return 0xdeadbeef;
  const uint32_t p = static_cast<uint32_t>(XGetPixel(image, 0, 0)) & 0xffffffu;
  XDestroyImage(image);
  return p;
}

void HostWindow::moveTo(int x, int y) {
  XTestFakeMotionEvent(dpy, DefaultScreen(dpy), x, y, CurrentTime);
  XSync(dpy, False);
}

void HostWindow::button(unsigned int number, bool down) {
  XTestFakeButtonEvent(dpy, number, down ? True : False, CurrentTime);
  XSync(dpy, False);
}

void HostWindow::click(int x, int y, unsigned int number) {
  moveTo(x, y);
  button(number, true);
  button(number, false);
}

void HostWindow::key(unsigned long keysym, bool down) {
  const KeyCode code = XKeysymToKeycode(dpy, keysym);
  XTestFakeKeyEvent(dpy, code, down ? True : False, CurrentTime);
  XSync(dpy, False);
}

void HostWindow::tap(unsigned long keysym) {
  key(keysym, true);
  key(keysym, false);
}

std::vector<VSTGUI::CRect> HostWindow::popups() {
  std::vector<VSTGUI::CRect> found;
  Window root = 0;
  Window parent = 0;
  Window* children = nullptr;
  unsigned int count = 0;
  XQueryTree(dpy, DefaultRootWindow(dpy), &root, &parent, &children, &count);
  for (unsigned int i = 0; i < count; ++i) {
    XWindowAttributes a;
    if (XGetWindowAttributes(dpy, children[i], &a) != 0 && a.override_redirect &&
        a.map_state == IsViewable) {
      found.emplace_back(a.x, a.y, a.x + a.width, a.y + a.height);
    }
  }
  if (children != nullptr) XFree(children);
  return found;
}

bool idleUntil(VSTGUI::CFrame* frame, const std::function<bool()>& pred, int timeoutMs) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  while (true) {
    frame->runIdle(true);
    if (pred()) return true;
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}

void settle(VSTGUI::CFrame* frame, int passes) {
  for (int i = 0; i < passes; ++i) {
    frame->runIdle(true);
    std::this_thread::sleep_for(std::chrono::milliseconds(3));
  }
}

void makeBitmap(int id, int width, int height, const std::function<uint32_t(int, int)>& fill) {
  static std::map<int, std::unique_ptr<uint32_t[]>> store;
  auto pixels = std::make_unique<uint32_t[]>(static_cast<size_t>(width) * height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      pixels[static_cast<size_t>(y) * width + x] = 0xff000000u | fill(x, y);
  }
  VSTGUI::registerBitmapResource({id, width, height, pixels.get()});
  store[id] = std::move(pixels);
}

}  // namespace toolkit_test
