// The frame's window on X11: a child of the host's window at (0, 0) on a
// display connection of its own, with a popup window for option menus.
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <cairo-xlib.h>

#include <memory>
#include <vector>

#include "toolkit/frame.h"
#include "toolkit/platform/platform.h"
#include "toolkit/platform/x11/cairo_backend.h"
#include "toolkit/platform/x11/x11_connection.h"
#include "toolkit/platform/x11/x11_input.h"

namespace VSTGUI {
namespace {

// A window of one size only: hosts that place us read these hints.
void fixSize(Display* display, Window window, int width, int height) {
  XSizeHints* hints = XAllocSizeHints();
  if (hints == nullptr) return;
  hints->flags = PMinSize | PMaxSize | PSize;
  hints->min_width = hints->max_width = hints->width = width;
  hints->min_height = hints->max_height = hints->height = height;
  XSetWMNormalHints(display, window, hints);
  XFree(hints);
}

// Finishes a window's surface before its window goes, so cairo sends nothing
// to a window that no longer exists.
void releaseSurface(cairo_surface_t*& surface) {
  if (surface == nullptr) return;
  cairo_surface_finish(surface);
  cairo_surface_destroy(surface);
  surface = nullptr;
}

class X11Frame : public PlatformFrame {
 public:
  X11Frame(CFrame* owner, int width, int height) : frame(owner), w(width), h(height) {}
  ~X11Frame() override;

  bool create(Window parentWindow);
  bool isAlive() const override { return window != 0 && !x11::connectionLost(display); }
  std::unique_ptr<DrawBackend> createWindowBackend() override;
  void pump() override;
  void resize(int width, int height) override;
  void setKeyboardFocus(bool take) override;
  CRect screenRect() override;
  CPoint frameOriginOnScreen() override;
  bool openPopup(PopupClient* client, const CRect& screen) override;
  void closePopup() override;
  void repaintPopup() override;
  void retire(std::unique_ptr<PopupClient> client) override {
    retired.push_back(std::move(client));
  }
  uint64_t nativeWindow() const override { return window; }
  int errorCount() const override { return x11::errorCount(display); }

 private:
  void handle(XEvent& event);
  void handlePopup(XEvent& event);
  void destroyWindow();

  CFrame* frame;
  Display* display = nullptr;
  Window parent = 0;
  Window window = 0;
  Visual* visual = nullptr;
  cairo_surface_t* surface = nullptr;
  int w;
  int h;
  Window previousFocus = 0;
  bool hasFocus = false;

  Window popup = 0;
  cairo_surface_t* popupSurface = nullptr;
  int popupWidth = 0;
  int popupHeight = 0;
  PopupClient* popupClient = nullptr;
  std::vector<std::unique_ptr<PopupClient>> retired;
};

X11Frame::~X11Frame() {
  closePopup();
  destroyWindow();
  retired.clear();
  x11::closeConnection(display);
}

bool X11Frame::create(Window parentWindow) {
  display = x11::openConnection();
  if (display == nullptr) return false;
  parent = parentWindow;
  XWindowAttributes attributes;
  const int errorsBefore = x11::errorCount(display);
  if (parent == 0 || XGetWindowAttributes(display, parent, &attributes) == 0 ||
      x11::errorCount(display) != errorsBefore) {
    return false;
  }
  visual = attributes.visual;
  XSetWindowAttributes set{};
  set.event_mask = ExposureMask | ButtonPressMask | ButtonReleaseMask | PointerMotionMask |
                   KeyPressMask | KeyReleaseMask | StructureNotifyMask;
  set.background_pixel = BlackPixel(display, DefaultScreen(display));
  set.border_pixel = 0;
  set.colormap = attributes.colormap;
  window = XCreateWindow(display, parent, 0, 0, static_cast<unsigned>(w), static_cast<unsigned>(h),
                         0, attributes.depth, InputOutput, visual,
                         CWEventMask | CWBackPixel | CWBorderPixel | CWColormap, &set);
  // The parent's own end is a DestroyNotify of its child, which is us.
  fixSize(display, window, w, h);
  const Atom xembed = XInternAtom(display, "_XEMBED_INFO", False);
  const long info[2] = {0, 1};  // protocol version 0, mapped
  XChangeProperty(display, window, xembed, xembed, 32, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(info), 2);
  XMapWindow(display, window);
  // Hosts size their window after open returns; everything must be on the
  // server by then.
  XSync(display, False);
  if (x11::errorCount(display) != errorsBefore) {
    XDestroyWindow(display, window);
    XSync(display, False);
    window = 0;
    return false;
  }
  x11::openWindows.fetch_add(1, std::memory_order_relaxed);
  surface = cairo_xlib_surface_create(display, window, visual, w, h);
  return true;
}

void X11Frame::destroyWindow() {
  releaseSurface(surface);
  if (window == 0) return;
  if (!x11::connectionLost(display)) {
    if (hasFocus) setKeyboardFocus(false);
    XDestroyWindow(display, window);
    XSync(display, False);
  }
  window = 0;
  x11::openWindows.fetch_sub(1, std::memory_order_relaxed);
}

std::unique_ptr<DrawBackend> X11Frame::createWindowBackend() {
  if (surface == nullptr) return createImageBackend(w, h);  // draws nowhere
  return std::make_unique<CairoBackend>(surface, w, h);
}

void X11Frame::pump() {
  if (window == 0) return;
  // A bounded number per pass, so that a flood of motion can't hold the
  // host's thread; the rest waits for the next idle.
  constexpr int kMaxEventsPerPump = 256;
  for (int n = 0; n < kMaxEventsPerPump && window != 0 && !x11::connectionLost(display) &&
                  XPending(display) > 0;
       ++n) {
    XEvent event;
    XNextEvent(display, &event);
    if (popup != 0 && event.xany.window == popup) {
      handlePopup(event);
    } else if (event.xany.window == window) {
      handle(event);
    }
  }
  if (window != 0 && x11::connectionLost(display)) {
    // The server is gone: nothing of ours exists any more.
    if (surface != nullptr) cairo_surface_destroy(surface);
    surface = nullptr;
    window = 0;
    popup = 0;
    popupClient = nullptr;
    x11::openWindows.fetch_sub(1, std::memory_order_relaxed);
    frame->platformWindowGone();
  }
  if (window != 0) XFlush(display);
  retired.clear();
}

void X11Frame::handle(XEvent& event) {
  switch (event.type) {
    case Expose: {
      const XExposeEvent& e = event.xexpose;
      frame->platformPaint(CRect(e.x, e.y, e.x + e.width, e.y + e.height));
      break;
    }
    case ButtonPress: {
      const XButtonEvent& e = event.xbutton;
      if (e.button > Button3) break;  // wheel steps have no destination here
      frame->platformMouseDown({e.x, e.y}, x11::buttonsFromState(e.state, e.button, true));
      break;
    }
    case ButtonRelease: {
      const XButtonEvent& e = event.xbutton;
      if (e.button > Button3) break;
      frame->platformMouseUp({e.x, e.y}, x11::buttonsFromState(e.state, e.button, false));
      break;
    }
    case MotionNotify: {
      const XMotionEvent& e = event.xmotion;
      frame->platformMouseMoved({e.x, e.y}, x11::buttonsFromState(e.state));
      break;
    }
    case KeyPress:
    case KeyRelease: {
      VstKeyCode key;
      if (x11::keyFromEvent(event.xkey, key)) frame->platformKey(key, event.type == KeyPress);
      break;
    }
    case DestroyNotify:
      // The host destroyed its window (and so ours) before closing us.
      if (event.xdestroywindow.window == window) {
        closePopup();
        if (surface != nullptr) cairo_surface_destroy(surface);
        surface = nullptr;
        window = 0;
        x11::openWindows.fetch_sub(1, std::memory_order_relaxed);
        frame->platformWindowGone();
      }
      break;
    default:
      break;
  }
}

void X11Frame::resize(int width, int height) {
  if (width <= 0 || height <= 0) return;
  w = width;
  h = height;
  if (window == 0) return;
  fixSize(display, window, w, h);
  XResizeWindow(display, window, static_cast<unsigned>(w), static_cast<unsigned>(h));
  if (surface != nullptr) cairo_xlib_surface_set_size(surface, w, h);
  XSync(display, False);  // done before the host looks at our size
}

void X11Frame::setKeyboardFocus(bool take) {
  if (window == 0 || take == hasFocus) return;
  if (take) {
    int revert = 0;
    XGetInputFocus(display, &previousFocus, &revert);
    XSetInputFocus(display, window, RevertToParent, CurrentTime);
  } else if (previousFocus != 0 && previousFocus != PointerRoot) {
    XSetInputFocus(display, previousFocus, RevertToParent, CurrentTime);
  }
  hasFocus = take;
  XFlush(display);
}

CRect X11Frame::screenRect() {
  const int screen = DefaultScreen(display);
  return {0, 0, DisplayWidth(display, screen), DisplayHeight(display, screen)};
}

CPoint X11Frame::frameOriginOnScreen() {
  int x = 0;
  int y = 0;
  Window child = 0;
  if (window != 0) {
    XTranslateCoordinates(display, window, DefaultRootWindow(display), 0, 0, &x, &y, &child);
  }
  return {x, y};
}

bool X11Frame::openPopup(PopupClient* client, const CRect& screen) {
  closePopup();
  if (window == 0 || client == nullptr || screen.isEmpty()) return false;
  popupWidth = screen.width();
  popupHeight = screen.height();
  const int number = DefaultScreen(display);
  XSetWindowAttributes set{};
  set.override_redirect = True;
  set.save_under = True;
  set.event_mask = ExposureMask | ButtonPressMask | ButtonReleaseMask | PointerMotionMask |
                   KeyPressMask | StructureNotifyMask;
  set.background_pixel = WhitePixel(display, number);
  popup = XCreateWindow(display, DefaultRootWindow(display), screen.left, screen.top,
                        static_cast<unsigned>(popupWidth), static_cast<unsigned>(popupHeight), 0,
                        CopyFromParent, InputOutput, CopyFromParent,
                        CWOverrideRedirect | CWSaveUnder | CWEventMask | CWBackPixel, &set);
  const Atom type = XInternAtom(display, "_NET_WM_WINDOW_TYPE", False);
  const Atom menu = XInternAtom(display, "_NET_WM_WINDOW_TYPE_POPUP_MENU", False);
  XChangeProperty(display, popup, type, XA_ATOM, 32, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(&menu), 1);
  XMapRaised(display, popup);
  XSync(display, False);
  x11::openWindows.fetch_add(1, std::memory_order_relaxed);
  popupSurface = cairo_xlib_surface_create(display, popup, DefaultVisual(display, number),
                                           popupWidth, popupHeight);
  popupClient = client;
  // Every press, also outside, comes to the popup, so a click elsewhere
  // closes it; the keys too, for the arrows, Return and Escape.
  XGrabPointer(display, popup, False, ButtonPressMask | ButtonReleaseMask | PointerMotionMask,
               GrabModeAsync, GrabModeAsync, None, None, CurrentTime);
  XGrabKeyboard(display, popup, False, GrabModeAsync, GrabModeAsync, CurrentTime);
  repaintPopup();  // at once, not only at the Expose that follows
  XFlush(display);
  return true;
}

void X11Frame::closePopup() {
  popupClient = nullptr;
  releaseSurface(popupSurface);
  if (popup == 0) return;
  if (!x11::connectionLost(display)) {
    XUngrabPointer(display, CurrentTime);
    XUngrabKeyboard(display, CurrentTime);
    XDestroyWindow(display, popup);
    XFlush(display);
  }
  popup = 0;
  x11::openWindows.fetch_sub(1, std::memory_order_relaxed);
}

void X11Frame::repaintPopup() {
  if (popupClient == nullptr || popupSurface == nullptr) return;
  CDrawContext context(frame,
                       std::make_unique<CairoBackend>(popupSurface, popupWidth, popupHeight));
  popupClient->popupPaint(&context);
  context.flush();
}

void X11Frame::handlePopup(XEvent& event) {
  if (popupClient == nullptr) return;
  switch (event.type) {
    case Expose:
      if (event.xexpose.count == 0) repaintPopup();
      return;
    case ButtonPress:
      popupClient->popupMouseDown({event.xbutton.x, event.xbutton.y},
                                  x11::buttonsFromState(event.xbutton.state, event.xbutton.button));
      break;
    case ButtonRelease:
      popupClient->popupMouseUp(
          {event.xbutton.x, event.xbutton.y},
          x11::buttonsFromState(event.xbutton.state, event.xbutton.button, false));
      break;
    case MotionNotify:
      popupClient->popupMouseMoved({event.xmotion.x, event.xmotion.y},
                                   x11::buttonsFromState(event.xmotion.state));
      break;
    case KeyPress: {
      VstKeyCode key;
      if (x11::keyFromEvent(event.xkey, key)) popupClient->popupKey(key);
      break;
    }
    default:
      return;
  }
  repaintPopup();  // the selection may have moved; no-op once closed
}

}  // namespace

std::unique_ptr<PlatformFrame> createPlatformFrame(CFrame* frame, void* parentWindow, int width,
                                                   int height) {
  if (width <= 0 || height <= 0) return nullptr;
  auto platform = std::make_unique<X11Frame>(frame, width, height);
  if (!platform->create(static_cast<Window>(reinterpret_cast<uintptr_t>(parentWindow)))) {
    return nullptr;
  }
  return platform;
}

int platformOpenWindowCount() {
  return x11::openWindows.load(std::memory_order_relaxed);
}
int platformOpenDisplayCount() {
  return x11::openConnections.load(std::memory_order_relaxed);
}

}  // namespace VSTGUI
