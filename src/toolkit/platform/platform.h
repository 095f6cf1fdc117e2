// The toolkit's calls into the window system. Implemented once per platform
// (platform/x11); nothing else in the toolkit includes a system header.
#pragma once

#include <cstdint>
#include <memory>

#include "host/vst2.h"
#include "toolkit/draw_backend.h"
#include "toolkit/geometry.h"

namespace VSTGUI {

class CFrame;
class CDrawContext;

// A popup list's side of its window: the platform reports the window's
// events in the popup's own coordinates.
class PopupClient {
 public:
  virtual ~PopupClient() = default;
  virtual void popupPaint(CDrawContext* context) = 0;
  virtual void popupMouseDown(CPoint where, long buttons) = 0;
  virtual void popupMouseMoved(CPoint where, long buttons) = 0;
  virtual void popupMouseUp(CPoint where, long buttons) = 0;
  virtual void popupKey(const VstKeyCode& key) = 0;
};

// The frame's window. Every call comes from the thread that holds the
// frame's pump lock.
class PlatformFrame {
 public:
  virtual ~PlatformFrame() = default;
  // False once the window or its display is gone.
  virtual bool isAlive() const = 0;
  virtual std::unique_ptr<DrawBackend> createWindowBackend() = 0;
  // Handles the pending events (at most a few hundred), calling back into
  // the frame.
  virtual void pump() = 0;
  virtual void resize(int width, int height) = 0;
  // Takes or gives back the keyboard focus (only while a text field edits).
  virtual void setKeyboardFocus(bool take) = 0;
  // Screen rectangle and the frame's origin on it.
  virtual CRect screenRect() = 0;
  virtual CPoint frameOriginOnScreen() = 0;
  // One popup at a time; a new one replaces the old. Rect in screen pixels.
  virtual bool openPopup(PopupClient* client, const CRect& screen) = 0;
  virtual void closePopup() = 0;
  // Keeps a closed popup's object until the event that closed it is over.
  virtual void retire(std::unique_ptr<PopupClient> client) = 0;
  virtual void repaintPopup() = 0;
  virtual uint64_t nativeWindow() const = 0;
  virtual int errorCount() const = 0;
};

// Null when there is no display or the window can't be made.
std::unique_ptr<PlatformFrame> createPlatformFrame(CFrame* frame, void* parentWindow, int width,
                                                   int height);
std::unique_ptr<DrawBackend> createImageBackend(int width, int height);
// Milliseconds of a monotonic clock.
int64_t platformTicks();
int platformDoubleClickTime();
// A modal yes/no question on its own display connection; false without one.
bool platformAskYesNo(const char* caption, const char* text);
// Starts the browser on the address, without waiting for it and without
// passing on open file descriptors. False if it couldn't be started.
bool platformOpenUrl(const char* address);
// Windows and display connections this process holds now (for leak tests).
int platformOpenWindowCount();
int platformOpenDisplayCount();

}  // namespace VSTGUI
