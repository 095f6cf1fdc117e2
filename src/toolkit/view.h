// CView: the base of everything on a frame. Reference-counted, with a
// rectangle, a mouse on/off switch and a dirty flag that the frame's idle
// pass repaints. Mouse handling is event-driven: a press goes to mouse(), and
// the view that took it gets the motion and the release until the buttons
// are up.
#pragma once

#include "host/vst2.h"
#include "toolkit/geometry.h"
#include "toolkit/reference_counter.h"

namespace VSTGUI {

class CDrawContext;
class CFrame;
class AEffGUIEditor;

class CView : public CReferenceCounter {
 public:
  explicit CView(const CRect& size);
  ~CView() override = default;

  virtual void draw(CDrawContext* context);
  virtual void drawRect(CDrawContext* context, const CRect& updateRect);
  virtual bool checkUpdate(const CRect& updateRect) const { return updateRect.rectOverlap(size); }
  virtual void mouse(CDrawContext* context, CPoint& where);
  virtual void mouseMoved(CDrawContext* /*context*/, CPoint& /*where*/) {}
  virtual void mouseUp(CDrawContext* /*context*/, CPoint& /*where*/) {}
  virtual void update(CDrawContext* context);
  // Key messages: 1 if the key was used, -1 if not.
  virtual long onKeyDown(VstKeyCode& /*key*/) { return -1; }
  virtual long onKeyUp(VstKeyCode& /*key*/) { return -1; }
  virtual bool onWheel(CDrawContext* /*context*/, const CPoint& /*where*/, float /*distance*/) {
    return false;
  }
  virtual void looseFocus(CDrawContext* /*context*/) {}
  virtual void takeFocus(CDrawContext* /*context*/) {}
  virtual bool isDirty() const { return dirty; }
  virtual void setDirty(bool value = true) { dirty = value; }
  virtual void setMouseEnabled(bool value) { mouseEnabled = value; }
  virtual bool getMouseEnabled() const { return mouseEnabled; }
  virtual void setMouseableArea(const CRect& rect) { mouseableArea = rect; }
  virtual CRect& getMouseableArea(CRect& rect) const { return rect = mouseableArea; }
  virtual bool hitTest(const CPoint& where, long /*buttons*/ = -1) const {
    return size.pointInside(where);
  }
  virtual void setTransparency(bool value) { transparency = value; }
  virtual bool getTransparency() const { return transparency; }
  virtual void setViewSize(const CRect& rect);
  virtual CRect& getViewSize(CRect& rect) const { return rect = size; }
  virtual void setParentView(CView* view) { parent = view; }
  virtual void setFrame(CFrame* owner) { frame = owner; }
  virtual AEffGUIEditor* getEditor() const;
  virtual bool removed(CView* /*parent*/) { return true; }
  virtual bool attached(CView* /*view*/) { return true; }

  CFrame* getFrame() const { return frame; }
  const CRect& getSize() const { return size; }

 protected:
  CRect size;
  CRect mouseableArea;
  CFrame* frame = nullptr;
  CView* parent = nullptr;
  bool dirty = false;
  bool mouseEnabled = true;
  bool transparency = false;
};

}  // namespace VSTGUI
