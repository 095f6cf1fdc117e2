#include "toolkit/param_display.h"

#include <cstdio>

#include "toolkit/bitmap.h"
#include "toolkit/draw_context.h"

namespace VSTGUI {

CParamDisplay::CParamDisplay(const CRect& rect, CBitmap* bitmap, long s)
    : CControl(rect, nullptr, 0, bitmap), style(s) {}

void CParamDisplay::setFont(int fontId) {
  changeLook(fontID, fontId);
}

void CParamDisplay::setFontColor(CColor c) {
  changeLook(fontColor, c);
}

void CParamDisplay::setBackColor(CColor c) {
  changeLook(backColor, c);
}

void CParamDisplay::setFrameColor(CColor c) {
  changeLook(frameColor, c);
}

void CParamDisplay::setShadowColor(CColor c) {
  changeLook(shadowColor, c);
}

void CParamDisplay::setHoriAlign(int align) {
  changeLook(horiTxtAlign, align);
}

void CParamDisplay::setStyle(long s) {
  style = s;
  setDirty();
}

void CParamDisplay::setTxtFace(int face) {
  txtFace = face;
  setDirty();
}

void CParamDisplay::draw(CDrawContext* context) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", static_cast<double>(getValue()));
  drawText(context, text);
  setDirty(false);
}

void CParamDisplay::drawText(CDrawContext* context, const char* text) {
  if (context == nullptr || (style & kNoDrawStyle) != 0) return;
  if (background != nullptr) {
    if (transparency) {
      background->drawTransparent(context, size, backOffset);
    } else {
      background->draw(context, size, backOffset);
    }
  } else if (!transparency) {
    context->setFillColor(backColor);
    context->fillPixels(size, backColor);
    context->setFrameColor(frameColor);
    context->drawRect({size.left, size.top, size.right - 1, size.bottom - 1});
  }
  if ((style & kNoTextStyle) != 0 || text == nullptr) return;
  context->setFont(fontID, 0, txtFace);
  if ((style & kShadowText) != 0) {
    CRect shadow = size;
    shadow.offset(1, 1);
    context->setFontColor(shadowColor);
    context->drawString(text, shadow, false, horiTxtAlign);
  }
  context->setFontColor(fontColor);
  context->drawString(text, size, false, horiTxtAlign);
}

}  // namespace VSTGUI
