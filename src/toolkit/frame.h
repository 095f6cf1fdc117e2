// CFrame: the top view and owner of the platform window. Holds the views in
// the order they were added (later ones on top), the focus view and the
// modal view, and runs the idle pass that paints only what is dirty.
//
// Threads: the host calls in on its user-interface thread; a fallback thread
// of the frame pumps events and idles while the host hasn't idled for 100 ms.
// Both go through runIdle under one lock, so they never run at once. A frame
// must not be destroyed from inside its own event handling (closeWindow
// joins that thread).
#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "toolkit/draw_context.h"
#include "toolkit/view.h"

namespace VSTGUI {

class CBitmap;
class PlatformFrame;

class CFrame : public CView {
 public:
  // Opens the window in parentWindow at (0, 0), the size of size; isOpen()
  // tells whether that worked.
  CFrame(const CRect& size, void* parentWindow, AEffGUIEditor* editor);
  ~CFrame() override;

  bool isOpen() const;
  // Removes the window (and the fallback thread); the views stay.
  void closeWindow();

  bool addView(CView* view);
  bool removeView(CView* view, bool withForget = true);
  bool removeAll(bool withForget = true);
  bool isChild(CView* view) const;
  long getNbViews() const { return static_cast<long>(views.size()); }
  CView* getView(long index) const;

  void setBackground(CBitmap* bitmap);
  CBitmap* getBackground() const { return background; }
  // See the implementation for the host's sizeWindow case.
  bool setSize(int width, int height);

  bool beginEdit(long tag);
  bool endEdit(long tag);

  void setFocusView(CView* view);
  CView* getFocusView() const { return focusView; }
  void setModalView(CView* view);
  CView* getModalView() const { return modalView; }

  void draw(CDrawContext* context) override;
  void drawRect(CDrawContext* context, const CRect& updateRect) override;
  void drawView(CView* view);
  void update(CDrawContext* context) override;
  void mouse(CDrawContext* context, CPoint& where) override;
  bool onWheel(CDrawContext* context, const CPoint& where, float distance) override;
  long onKeyDown(VstKeyCode& key) override;
  long onKeyUp(VstKeyCode& key) override;
  bool isSomethingDirty() const;
  // True once the window's first paint is over; the idle pass waits for it.
  bool hasPainted() const { return firstPaintDone; }
  // The paint pass: repaints what is dirty, once the first paint is over.
  void idle();

  AEffGUIEditor* getEditor() const override { return editor; }
  PlatformFrame* getPlatformFrame() const { return platform.get(); }
  // A context on the window, for one event; null without a window.
  std::unique_ptr<CDrawContext> createDrawContext();

  long getMouseButtons() const { return mouseButtons; }
  CPoint getMouseLocation() const { return mouseLocation; }

  // Pumps the window's events and runs the editor's idle (or the frame's
  // idle without an editor). Re-entry and a concurrent pump return at once.
  void runIdle(bool fromHost);
  // Starts the thread that pumps while the host doesn't idle.
  void startFallbackPump();
  // How long without host idle before that thread pumps (100 ms).
  void setFallbackAfter(int64_t ms) { fallbackAfterMs.store(ms, std::memory_order_relaxed); }
  std::recursive_mutex& pumpLock() { return lock; }
  // Runs a host call under the pump's lock, as a pump: an idle that the
  // host sends from inside it (say from masterIdle) returns at once.
  template <typename Call>
  auto asPump(Call call) {
    std::lock_guard<std::recursive_mutex> guard(lock);
    struct Restore {
      bool& flag;
      bool old;
      ~Restore() { flag = old; }
    } restore{inPump, inPump};
    inPump = true;
    return call();
  }
  // True while the frame's own thread pumps (the host is not in a call).
  bool inFallbackPump() const { return fallbackPumping; }
  // Counters for tests and measurements: pumps from the host's idle and from
  // the fallback thread.
  long hostPumps() const { return hostPumpCount.load(std::memory_order_relaxed); }
  long fallbackPumps() const { return fallbackPumpCount.load(std::memory_order_relaxed); }

  // Calls from the platform, inside pump().
  void platformPaint(const CRect& rect);
  void platformMouseDown(CPoint where, long buttons);
  void platformMouseMoved(CPoint where, long buttons);
  void platformMouseUp(CPoint where, long buttons);
  bool platformKey(VstKeyCode& key, bool down);
  void platformWindowGone();

 private:
  void fallbackLoop();
  void stopFallbackPump();
  void releaseMouseTracker();
  // Ends a press whose release won't come to us (a popup took the pointer,
  // or the window goes), so that a control closes its edit.
  void finishMouseTracker();

  AEffGUIEditor* editor;
  std::unique_ptr<PlatformFrame> platform;
  CBitmap* background = nullptr;
  std::vector<CView*> views;
  CView* modalView = nullptr;
  CView* focusView = nullptr;
  CView* mouseTracker = nullptr;  // the view that took the press, until release
  long mouseButtons = 0;
  CPoint mouseLocation;
  bool firstPaintDone = false;

  std::recursive_mutex lock;
  bool inPump = false;
  bool fallbackPumping = false;
  std::atomic<int64_t> lastHostIdle{0};
  std::atomic<int64_t> fallbackAfterMs{100};
  std::atomic<long> hostPumpCount{0};
  std::atomic<long> fallbackPumpCount{0};
  std::thread fallback;
  std::mutex fallbackMutex;
  std::condition_variable fallbackWake;
  bool fallbackStop = false;
};

}  // namespace VSTGUI
