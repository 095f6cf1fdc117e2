#include "toolkit/buttons.h"

#include "toolkit/bitmap.h"
#include "toolkit/draw_context.h"

namespace VSTGUI {
namespace {

void drawImage(CControl* c, CBitmap* bitmap, CDrawContext* context, const CRect& size,
               CPoint source) {
  if (bitmap == nullptr) return;
  if (c->getTransparency()) {
    bitmap->drawTransparent(context, size, source);
  } else {
    bitmap->draw(context, size, source);
  }
}

}  // namespace

CKickButton::CKickButton(const CRect& rect, CControlListener* l, long t, int imageHeight,
                         CBitmap* bitmap, const CPoint& offset)
    : CControl(rect, l, t, bitmap), heightOfOneImage(imageHeight) {
  backOffset = offset;
}

void CKickButton::draw(CDrawContext* context) {
  bounceValue();
  CPoint source = backOffset;
  if (getValue() != 0.0f) source.y += heightOfOneImage;
  drawImage(this, background, context, size, source);
  setDirty(false);
}

void CKickButton::mouse(CDrawContext* context, CPoint& where) {
  const long buttons = context != nullptr ? context->getMouseButtons() : 0;
  if (!mouseEnabled || (buttons & kLButton) == 0) return;
  pressValue = getValue();
  if (buttons == kLButton) {
    beginEdit();
    tracking = true;
    reported = pressValue;
    track(context, where);
    return;
  }
  // With a modifier: the press and the release at once.
  setValue(pressValue == 0.0f ? 1.0f : 0.0f);
  notifyListener(context);
  setValue(0.0f);
  notifyListener(context);
}

void CKickButton::track(CDrawContext* context, const CPoint& where) {
  const float v = size.pointInside(where) ? (pressValue == 0.0f ? 1.0f : 0.0f) : pressValue;
  setValue(v);
  // The loop of old repainted at every pass, so "dirty" meant "changed since
  // the last pass".
  if (v != reported) {
    reported = v;
    notifyListener(context);
  }
  doIdleStuff();
}

void CKickButton::mouseMoved(CDrawContext* context, CPoint& where) {
  if (!tracking) return;
  if (context != nullptr && context->getMouseButtons() != kLButton) {
    finish(context);
    return;
  }
  track(context, where);
}

void CKickButton::mouseUp(CDrawContext* context, CPoint& /*where*/) {
  if (tracking) finish(context);
}

void CKickButton::finish(CDrawContext* context) {
  tracking = false;
  endEdit();
  setValue(0.0f);
  notifyListener(context);
}

COnOffButton::COnOffButton(const CRect& rect, CControlListener* l, long t, CBitmap* bitmap)
    : CControl(rect, l, t, bitmap) {}

void COnOffButton::draw(CDrawContext* context) {
  CPoint source;
  if (getValue() != 0.0f) source.y = size.height();
  drawImage(this, background, context, size, source);
  setDirty(false);
}

void COnOffButton::mouse(CDrawContext* context, CPoint& /*where*/) {
  const long buttons = context != nullptr ? context->getMouseButtons() : 0;
  if (!mouseEnabled || (buttons & kLButton) == 0) return;
  setValue(getValue() == 0.0f ? 1.0f : 0.0f);
  doIdleStuff();
  notifyListener(context);
}

}  // namespace VSTGUI
