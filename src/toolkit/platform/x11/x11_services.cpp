// Services of the platform beside the frame's window: the clock, the
// question box and starting the browser.
#include "toolkit/platform/x11/x11_services.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <cairo-xlib.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>

#include "toolkit/draw_context.h"
#include "toolkit/platform/platform.h"
#include "toolkit/platform/x11/cairo_backend.h"
#include "toolkit/platform/x11/x11_connection.h"
#include "toolkit/platform/x11/x11_input.h"

namespace VSTGUI {

int64_t platformTicks() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

// X has no system-wide double-click time; the toolkit's least.
int platformDoubleClickTime() {
  return 250;
}

namespace {

constexpr int kBoxWidth = 420;
constexpr int kBoxHeight = 120;
constexpr CRect kYes{230, 80, 310, 104};
constexpr CRect kNo{320, 80, 400, 104};

void paintBox(CDrawContext& c, const char* text) {
  c.fillPixels({0, 0, kBoxWidth, kBoxHeight}, {236, 236, 236, 0});
  c.setFont(3);
  c.setFontColor(kBlackCColor);
  // The text in lines of at most 60 characters, broken at spaces.
  std::string rest = text;
  int y = 12;
  while (!rest.empty() && y < 70) {
    size_t cut = rest.size() <= 60 ? rest.size() : rest.rfind(' ', 60);
    if (cut == std::string::npos || cut == 0) cut = std::min<size_t>(60, rest.size());
    c.drawString(rest.substr(0, cut).c_str(), {12, y, kBoxWidth - 12, y + 16}, false, 0);
    rest.erase(0, cut);
    while (!rest.empty() && rest[0] == ' ') rest.erase(0, 1);
    y += 16;
  }
  for (const CRect& r : {kYes, kNo}) {
    c.fillPixels(r, kWhiteCColor);
    c.setFrameColor(kGreyCColor);
    c.drawRect({r.left, r.top, r.right - 1, r.bottom - 1});
    c.drawString(r == kYes ? "Yes" : "No", r, false, 1);
  }
}

}  // namespace

bool platformAskYesNo(const char* caption, const char* text) {
  Display* display = x11::openConnection();
  if (display == nullptr) return false;
  const int screen = DefaultScreen(display);
  XSetWindowAttributes set{};
  set.event_mask = ExposureMask | ButtonPressMask | KeyPressMask | StructureNotifyMask;
  set.background_pixel = WhitePixel(display, screen);
  const int x = (DisplayWidth(display, screen) - kBoxWidth) / 2;
  const int y = (DisplayHeight(display, screen) - kBoxHeight) / 2;
  Window box =
      XCreateWindow(display, DefaultRootWindow(display), x, y, kBoxWidth, kBoxHeight, 0,
                    CopyFromParent, InputOutput, CopyFromParent, CWEventMask | CWBackPixel, &set);
  XStoreName(display, box, caption != nullptr ? caption : "");
  XSizeHints* hints = XAllocSizeHints();
  hints->flags = PMinSize | PMaxSize | PPosition;
  hints->min_width = hints->max_width = kBoxWidth;
  hints->min_height = hints->max_height = kBoxHeight;
  XSetWMNormalHints(display, box, hints);
  XFree(hints);
  Atom close = XInternAtom(display, "WM_DELETE_WINDOW", False);
  XSetWMProtocols(display, box, &close, 1);
  Atom above = XInternAtom(display, "_NET_WM_STATE_ABOVE", False);
  XChangeProperty(display, box, XInternAtom(display, "_NET_WM_STATE", False), 4 /* XA_ATOM */, 32,
                  PropModeReplace, reinterpret_cast<unsigned char*>(&above), 1);
  XMapRaised(display, box);
  x11::openWindows.fetch_add(1, std::memory_order_relaxed);
  cairo_surface_t* surface = cairo_xlib_surface_create(display, box, DefaultVisual(display, screen),
                                                       kBoxWidth, kBoxHeight);
  int answer = -1;
  while (answer < 0 && !x11::connectionLost(display)) {
    XEvent event;
    XNextEvent(display, &event);
    if (x11::connectionLost(display)) break;
    switch (event.type) {
      case Expose:
        if (event.xexpose.count == 0) {
          CDrawContext c(nullptr, std::make_unique<CairoBackend>(surface, kBoxWidth, kBoxHeight));
          paintBox(c, text != nullptr ? text : "");
          c.flush();
          XFlush(display);
        }
        break;
      case ButtonPress:
        if (kYes.pointInside({event.xbutton.x, event.xbutton.y})) answer = 1;
        if (kNo.pointInside({event.xbutton.x, event.xbutton.y})) answer = 0;
        break;
      case KeyPress: {
        VstKeyCode key;
        if (!x11::keyFromEvent(event.xkey, key)) break;
        if (key.virt == VKEY_RETURN || key.character == 'y' || key.character == 'Y') answer = 1;
        if (key.virt == VKEY_ESCAPE || key.character == 'n' || key.character == 'N') answer = 0;
        break;
      }
      case ClientMessage:
        if (static_cast<Atom>(event.xclient.data.l[0]) == close) answer = 0;
        break;
      case DestroyNotify:
        answer = 0;
        break;
      default:
        break;
    }
  }
  cairo_surface_finish(surface);
  cairo_surface_destroy(surface);
  if (!x11::connectionLost(display)) XDestroyWindow(display, box);
  x11::openWindows.fetch_sub(1, std::memory_order_relaxed);
  x11::closeConnection(display);
  return answer == 1;
}

bool spawnDetached(const char* const argv[]) {
  // Between fork and exec only async-signal-safe calls, as the host has
  // threads. The middle process exits at once, so the browser is never the
  // host's child to reap; everything above stdin, stdout and stderr is
  // closed.
  const pid_t middle = fork();
  if (middle < 0) return false;
  if (middle == 0) {
    setsid();
    const int null = open("/dev/null", O_RDWR);
    if (null >= 0) {
      dup2(null, 0);
      dup2(null, 1);
      dup2(null, 2);
    }
    close_range(3, ~0U, 0);
    const pid_t browser = fork();
    if (browser == 0) {
      execvp(argv[0], const_cast<char* const*>(argv));
      _exit(127);
    }
    _exit(browser < 0 ? 1 : 0);
  }
  int status = 0;
  while (waitpid(middle, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool platformOpenUrl(const char* address) {
  if (address == nullptr || address[0] == 0) return false;
  const char* argv[] = {"xdg-open", address, nullptr};
  return spawnDetached(argv);
}

}  // namespace VSTGUI
