#include "toolkit/view.h"

#include "toolkit/frame.h"

namespace VSTGUI {

CView::CView(const CRect& rect) : size(rect), mouseableArea(rect) {}

void CView::draw(CDrawContext* /*context*/) {
  setDirty(false);
}

void CView::drawRect(CDrawContext* context, const CRect& /*updateRect*/) {
  draw(context);
}

void CView::mouse(CDrawContext* /*context*/, CPoint& /*where*/) {}

void CView::update(CDrawContext* context) {
  if (isDirty()) {
    draw(context);
    setDirty(false);
  }
}

void CView::setViewSize(const CRect& rect) {
  size = rect;
  setDirty();
}

AEffGUIEditor* CView::getEditor() const {
  return frame != nullptr ? frame->getEditor() : nullptr;
}

}  // namespace VSTGUI
