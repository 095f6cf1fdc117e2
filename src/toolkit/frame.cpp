#include "toolkit/frame.h"

#include <algorithm>
#include <chrono>

#include "toolkit/bitmap.h"
#include "toolkit/editor.h"
#include "toolkit/platform/platform.h"

namespace VSTGUI {
namespace {

constexpr auto kFallbackPeriod = std::chrono::milliseconds(16);

}  // namespace

CFrame::CFrame(const CRect& rect, void* parentWindow, AEffGUIEditor* owner)
    : CView(rect), editor(owner) {
  frame = this;
  platform = createPlatformFrame(this, parentWindow, rect.width(), rect.height());
  lastHostIdle.store(platformTicks(), std::memory_order_relaxed);
}

CFrame::~CFrame() {
  closeWindow();
  removeAll(true);
  if (background != nullptr) background->forget();
}

bool CFrame::isOpen() const {
  return platform != nullptr && platform->isAlive();
}

void CFrame::closeWindow() {
  stopFallbackPump();
  std::lock_guard<std::recursive_mutex> guard(lock);
  if (focusView != nullptr) setFocusView(nullptr);
  finishMouseTracker();
  platform.reset();
  firstPaintDone = false;
}

bool CFrame::addView(CView* view) {
  if (view == nullptr) return false;
  if (views.capacity() == views.size()) views.reserve(views.size() + 20);
  views.push_back(view);
  view->setParentView(this);
  view->setFrame(this);
  view->attached(this);
  view->setDirty();
  return true;
}

bool CFrame::removeView(CView* view, bool withForget) {
  auto it = std::find(views.begin(), views.end(), view);
  if (it == views.end()) return false;
  if (focusView == view) focusView = nullptr;
  if (modalView == view) modalView = nullptr;
  if (mouseTracker == view) releaseMouseTracker();
  views.erase(it);
  view->removed(this);
  if (withForget) view->forget();
  setDirty();
  return true;
}

bool CFrame::removeAll(bool withForget) {
  setFocusView(nullptr);
  releaseMouseTracker();
  modalView = nullptr;
  std::vector<CView*> old;
  old.swap(views);
  for (CView* v : old) {
    v->removed(this);
    if (withForget) v->forget();
  }
  setDirty();
  return true;
}

bool CFrame::isChild(CView* view) const {
  return std::find(views.begin(), views.end(), view) != views.end();
}

CView* CFrame::getView(long index) const {
  return index >= 0 && index < getNbViews() ? views[static_cast<size_t>(index)] : nullptr;
}

void CFrame::setBackground(CBitmap* bitmap) {
  replaceCounted(background, bitmap);
  setDirty();
}

// A host that can "sizeWindow" resizes its window and ours, and size keeps
// its value, so that of two requests in a row for the same new height only
// the first is carried out. Otherwise the frame resizes itself.
bool CFrame::setSize(int width, int height) {
  if (width == size.width() && height == size.height()) return false;
  if (editor != nullptr && editor->hostResizes(width, height)) {
    if (platform) platform->resize(width, height);
    return true;
  }
  size.right = size.left + width;
  size.bottom = size.top + height;
  if (platform) platform->resize(width, height);
  setDirty();
  return true;
}

bool CFrame::beginEdit(long tag) {
  return editor != nullptr && editor->beginEdit(tag);
}

bool CFrame::endEdit(long tag) {
  return editor != nullptr && editor->endEdit(tag);
}

void CFrame::setFocusView(CView* view) {
  CView* old = focusView;
  focusView = view;
  if (old != nullptr && old != view) {
    auto context = createDrawContext();
    old->looseFocus(context.get());
  }
}

void CFrame::setModalView(CView* view) {
  modalView = view;
  setDirty();
}

void CFrame::draw(CDrawContext* context) {
  drawRect(context, size);
  setDirty(false);
}

void CFrame::drawRect(CDrawContext* context, const CRect& updateRect) {
  if (context == nullptr) return;
  CRect clip = updateRect.normalized();
  clip.bound(CRect(0, 0, size.width(), size.height()));
  if (clip.isEmpty()) return;
  const CRect savedClip = context->getClipRect();
  context->setClipRect(clip);
  if (background != nullptr && background->isLoaded()) {
    background->draw(context, clip, {clip.left, clip.top});
  } else {
    context->fillPixels(clip, kBlackCColor);
  }
  for (CView* v : views) {
    if (v->checkUpdate(clip)) {
      v->drawRect(context, clip);
      v->setDirty(false);
    }
  }
  if (modalView != nullptr) {
    modalView->drawRect(context, clip);
    modalView->setDirty(false);
  }
  context->setClipRect(savedClip);
}

void CFrame::drawView(CView* view) {
  auto context = createDrawContext();
  if (context && view != nullptr) {
    view->draw(context.get());
    context->flush();
  }
}

void CFrame::update(CDrawContext* context) {
  if (modalView != nullptr) {
    modalView->update(context);
  } else if (dirty) {
    draw(context);
  } else {
    for (CView* v : views) v->update(context);
  }
}

bool CFrame::isSomethingDirty() const {
  if (dirty) return true;
  if (modalView != nullptr && modalView->isDirty()) return true;
  return std::any_of(views.begin(), views.end(), [](const CView* v) { return v->isDirty(); });
}

void CFrame::idle() {
  if (!isOpen() || !firstPaintDone || !isSomethingDirty()) return;
  auto context = createDrawContext();
  if (!context) return;
  update(context.get());
  context->flush();
}

std::unique_ptr<CDrawContext> CFrame::createDrawContext() {
  if (!isOpen()) return nullptr;
  return std::make_unique<CDrawContext>(this, platform->createWindowBackend());
}

void CFrame::mouse(CDrawContext* context, CPoint& where) {
  if (focusView != nullptr) setFocusView(nullptr);
  const long buttons = context != nullptr ? context->getMouseButtons() : mouseButtons;
  if (modalView != nullptr) {
    if (modalView->hitTest(where, buttons)) {
      mouseTracker = modalView;
      mouseTracker->remember();
      modalView->mouse(context, where);
    }
    return;
  }
  for (auto it = views.rbegin(); it != views.rend(); ++it) {
    CView* v = *it;
    if (v->getMouseEnabled() && v->hitTest(where, buttons)) {
      mouseTracker = v;
      mouseTracker->remember();
      v->mouse(context, where);
      return;
    }
  }
}

bool CFrame::onWheel(CDrawContext* context, const CPoint& where, float distance) {
  if (modalView != nullptr) return modalView->onWheel(context, where, distance);
  for (auto it = views.rbegin(); it != views.rend(); ++it) {
    if ((*it)->getMouseEnabled() && (*it)->hitTest(where)) {
      return (*it)->onWheel(context, where, distance);
    }
  }
  return false;
}

long CFrame::onKeyDown(VstKeyCode& key) {
  if (modalView != nullptr) return modalView->onKeyDown(key);
  return focusView != nullptr ? focusView->onKeyDown(key) : -1;
}

long CFrame::onKeyUp(VstKeyCode& key) {
  if (modalView != nullptr) return modalView->onKeyUp(key);
  return focusView != nullptr ? focusView->onKeyUp(key) : -1;
}

void CFrame::releaseMouseTracker() {
  CView* v = mouseTracker;
  mouseTracker = nullptr;
  if (v != nullptr) v->forget();
}

void CFrame::finishMouseTracker() {
  if (mouseTracker == nullptr) return;
  CView* v = mouseTracker;
  mouseTracker = nullptr;
  const long heldBefore = mouseButtons;
  mouseButtons &= ~(kLButton | kMButton | kRButton);
  auto context = createDrawContext();
  v->mouseUp(context.get(), mouseLocation);
  mouseButtons = heldBefore;
  v->forget();
}

void CFrame::platformPaint(const CRect& rect) {
  auto context = createDrawContext();
  if (!context) return;
  drawRect(context.get(), rect);
  context->flush();
  firstPaintDone = true;
}

void CFrame::platformMouseDown(CPoint where, long buttons) {
  finishMouseTracker();  // a release we never saw (a popup had the pointer)
  mouseButtons = buttons;
  mouseLocation = where;
  auto context = createDrawContext();
  mouse(context.get(), where);
  if (context) context->flush();
}

void CFrame::platformMouseMoved(CPoint where, long buttons) {
  mouseButtons = buttons;
  mouseLocation = where;
  if (mouseTracker == nullptr) return;
  CView* v = mouseTracker;
  v->remember();  // the view may leave the frame from inside its handler
  auto context = createDrawContext();
  v->mouseMoved(context.get(), where);
  v->forget();
}

void CFrame::platformMouseUp(CPoint where, long buttons) {
  mouseButtons = buttons;
  mouseLocation = where;
  if (mouseTracker == nullptr) return;
  CView* v = mouseTracker;
  v->remember();
  auto context = createDrawContext();
  v->mouseUp(context.get(), where);
  if ((buttons & (kLButton | kMButton | kRButton)) == 0 && mouseTracker == v) {
    releaseMouseTracker();
  }
  v->forget();
}

bool CFrame::platformKey(VstKeyCode& key, bool down) {
  return (down ? onKeyDown(key) : onKeyUp(key)) == 1;
}

void CFrame::platformWindowGone() {
  firstPaintDone = false;
}

void CFrame::runIdle(bool fromHost) {
  if (fromHost) lastHostIdle.store(platformTicks(), std::memory_order_relaxed);
  std::unique_lock<std::recursive_mutex> guard(lock, std::try_to_lock);
  if (!guard.owns_lock() || inPump) return;
  inPump = true;
  fallbackPumping = !fromHost;
  (fromHost ? hostPumpCount : fallbackPumpCount).fetch_add(1, std::memory_order_relaxed);
  if (platform) platform->pump();
  if (editor != nullptr) {
    editor->idle();
  } else {
    idle();
  }
  fallbackPumping = false;
  inPump = false;
}

void CFrame::startFallbackPump() {
  if (fallback.joinable() || !isOpen()) return;
  fallbackStop = false;
  fallback = std::thread([this] { fallbackLoop(); });
}

void CFrame::stopFallbackPump() {
  if (!fallback.joinable()) return;
  {
    std::lock_guard<std::mutex> guard(fallbackMutex);
    fallbackStop = true;
  }
  fallbackWake.notify_all();
  fallback.join();
}

void CFrame::fallbackLoop() {
  std::unique_lock<std::mutex> wait(fallbackMutex);
  while (!fallbackWake.wait_for(wait, kFallbackPeriod, [this] { return fallbackStop; })) {
    const int64_t quiet = platformTicks() - lastHostIdle.load(std::memory_order_relaxed);
    if (quiet < fallbackAfterMs.load(std::memory_order_relaxed)) continue;
    wait.unlock();
    runIdle(false);
    wait.lock();
  }
}

}  // namespace VSTGUI
