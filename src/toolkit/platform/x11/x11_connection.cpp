#include "toolkit/platform/x11/x11_connection.h"

#include <map>
#include <mutex>

namespace VSTGUI::x11 {

std::atomic<int> openWindows{0};
std::atomic<int> openConnections{0};

namespace {

struct Registry {
  std::mutex mutex;
  std::map<Display*, int> errors;  // our connections and their error counts
  std::map<Display*, bool> lost;
  XErrorHandler previous = nullptr;
  XIOErrorHandler previousIo = nullptr;
  bool installed = false;
};

Registry& registry() {
  static Registry r;
  return r;
}

int onError(Display* display, XErrorEvent* event) {
  Registry& r = registry();
  XErrorHandler forward = nullptr;
  {
    std::lock_guard<std::mutex> guard(r.mutex);
    auto it = r.errors.find(display);
    if (it != r.errors.end()) {
      ++it->second;
      return 0;
    }
    forward = r.previous;
  }
  return forward != nullptr ? forward(display, event) : 0;
}

// Returning from both lets Xlib mark the connection dead rather than end
// the process; the first is process-wide, so others' connections go on to
// the handler that was there before.
void onConnectionLost(Display* display, void* /*data*/) {
  Registry& r = registry();
  std::lock_guard<std::mutex> guard(r.mutex);
  r.lost[display] = true;
}

int onIoError(Display* display) {
  Registry& r = registry();
  XIOErrorHandler forward = nullptr;
  {
    std::lock_guard<std::mutex> guard(r.mutex);
    if (r.errors.count(display) != 0) {
      r.lost[display] = true;
      return 0;
    }
    forward = r.previousIo;
  }
  return forward != nullptr ? forward(display) : 0;
}

}  // namespace

Display* openConnection() {
  Display* display = XOpenDisplay(nullptr);
  if (display == nullptr) return nullptr;
  XSetIOErrorExitHandler(display, onConnectionLost, nullptr);
  Registry& r = registry();
  std::lock_guard<std::mutex> guard(r.mutex);
  r.errors[display] = 0;
  r.lost[display] = false;
  if (!r.installed) {
    r.previous = XSetErrorHandler(onError);
    if (r.previous == onError) r.previous = nullptr;
    r.previousIo = XSetIOErrorHandler(onIoError);
    if (r.previousIo == onIoError) r.previousIo = nullptr;
    r.installed = true;
  }
  openConnections.fetch_add(1, std::memory_order_relaxed);
  return display;
}

void closeConnection(Display* display) {
  if (display == nullptr) return;
  XCloseDisplay(display);
  Registry& r = registry();
  std::lock_guard<std::mutex> guard(r.mutex);
  r.errors.erase(display);
  r.lost.erase(display);
  // The last connection gone: give the process its handler back, unless
  // someone replaced ours in the meantime.
  if (r.errors.empty() && r.installed) {
    XErrorHandler current = XSetErrorHandler(r.previous);
    if (current != onError) XSetErrorHandler(current);
    XIOErrorHandler currentIo = XSetIOErrorHandler(r.previousIo);
    if (currentIo != onIoError) XSetIOErrorHandler(currentIo);
    r.installed = false;
    r.previous = nullptr;
    r.previousIo = nullptr;
  }
  openConnections.fetch_sub(1, std::memory_order_relaxed);
}

int errorCount(Display* display) {
  Registry& r = registry();
  std::lock_guard<std::mutex> guard(r.mutex);
  auto it = r.errors.find(display);
  return it == r.errors.end() ? 0 : it->second;
}

bool connectionLost(Display* display) {
  Registry& r = registry();
  std::lock_guard<std::mutex> guard(r.mutex);
  auto it = r.lost.find(display);
  return it != r.lost.end() && it->second;
}

}  // namespace VSTGUI::x11
