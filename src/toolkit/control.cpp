#include "toolkit/control.h"

#include <algorithm>

#include "toolkit/bitmap.h"
#include "toolkit/editor.h"
#include "toolkit/frame.h"
#include "toolkit/platform/platform.h"

namespace VSTGUI {

CControl::CControl(const CRect& rect, CControlListener* l, long t, CBitmap* bitmap)
    : CView(rect), listener(l), tag(t), doubleClickDelay(std::max(250, platformDoubleClickTime())) {
  setBackground(bitmap);
}

CControl::~CControl() {
  if (background != nullptr) background->forget();
}

bool CControl::isDirty() const {
  return dirty || getValue() != getOldValue();
}

void CControl::setDirty(bool val) {
  dirty = val;
  const float v = getValue();
  if (val) {
    setOldValue(v != -1.0f ? -1.0f : 0.0f);
  } else {
    setOldValue(v);
  }
}

void CControl::doIdleStuff() {
  if (AEffGUIEditor* editor = getEditor()) editor->doIdleStuff();
}

void CControl::setBackground(CBitmap* bitmap) {
  replaceCounted(background, bitmap);
  setDirty();
}

void CControl::bounceValue() {
  setValue(std::max(vmin, std::min(getValue(), vmax)));
}

void CControl::notifyListener(CDrawContext* context) {
  if (listener != nullptr) listener->valueChanged(context, this);
}

void CControl::beginEdit() {
  if (frame != nullptr) frame->beginEdit(tag);
}

void CControl::endEdit() {
  if (frame != nullptr) frame->endEdit(tag);
}

}  // namespace VSTGUI
