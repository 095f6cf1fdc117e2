#include "toolkit/draw_context.h"

#include <cstring>
#include <utility>

#include "toolkit/frame.h"
#include "toolkit/platform/platform.h"

namespace VSTGUI {

FontSpec fontFromId(int fontId, int size, int style) {
  // Liberation Sans is metric-compatible with the Arial the sizes were made for.
  static constexpr int kHeights[8] = {12, 18, 14, 12, 11, 10, 9, 13};
  if (fontId < 0 || fontId > 7) fontId = 0;
  FontSpec f;
  f.family = fontId == 7 ? "Symbol" : "Liberation Sans";
  f.pixelHeight = size > 0 ? size : kHeights[fontId];
  f.bold = fontId == 0 || (style & kBoldFace) != 0;
  f.italic = (style & kItalicFace) != 0;
  return f;
}

CDrawContext::CDrawContext(CFrame* owner, std::unique_ptr<DrawBackend> target, CPoint origin)
    : frame(owner), backend(std::move(target)), offset(origin) {
  font = fontFromId(3);
  resetClipRect();
}

CDrawContext::~CDrawContext() = default;

void CDrawContext::resetClipRect() {
  clipRect = CRect(0, 0, backend->width(), backend->height()).offset(offset.x, offset.y);
  backend->setClip(toDevice(clipRect));
}

void CDrawContext::setClipRect(const CRect& clip) {
  clipRect = clip.normalized();
  backend->setClip(toDevice(clipRect));
}

CRect CDrawContext::toDevice(const CRect& r) const {
  CRect d = r;
  return d.offset(-offset.x, -offset.y);
}

void CDrawContext::fillPixels(const CRect& r, CColor colour) {
  CRect n = r.normalized();
  if (n.isEmpty()) return;
  backend->fillRect(toDevice(n), colour);
}

void CDrawContext::lineTo(const CPoint& p) {
  const CPoint from = penPosition;
  penPosition = p;
  if (from == p) return;
  if (from.y == p.y || from.x == p.x) {
    // Straight lines as exact pixel runs, the end pixel left out.
    CRect run;
    if (from.y == p.y) {
      run = from.x < p.x ? CRect(from.x, from.y, p.x, from.y + lineWidth)
                         : CRect(p.x + 1, from.y, from.x + 1, from.y + lineWidth);
    } else {
      run = from.y < p.y ? CRect(from.x, from.y, from.x + lineWidth, p.y)
                         : CRect(from.x, p.y + 1, from.x + lineWidth, from.y + 1);
    }
    fillPixels(run, frameColor);
    return;
  }
  const CRect a = toDevice(CRect(from.x, from.y, p.x, p.y));
  backend->line({a.left, a.top}, {a.right, a.bottom}, frameColor, lineWidth);
}

void CDrawContext::drawRect(const CRect& rect) {
  const CRect r = rect.normalized();
  const int w = lineWidth;
  fillPixels({r.left, r.top, r.right + 1, r.top + w}, frameColor);
  fillPixels({r.left, r.bottom - w + 1, r.right + 1, r.bottom + 1}, frameColor);
  fillPixels({r.left, r.top, r.left + w, r.bottom + 1}, frameColor);
  fillPixels({r.right - w + 1, r.top, r.right + 1, r.bottom + 1}, frameColor);
}

void CDrawContext::fillRect(const CRect& rect) {
  const CRect r = rect.normalized();
  fillPixels({r.left + 1, r.top + 1, r.right, r.bottom}, fillColor);
}

void CDrawContext::fillEllipse(const CRect& rect) {
  const CRect r = rect.normalized();
  if (r.isEmpty()) return;
  backend->fillEllipse(toDevice(r), fillColor);
}

void CDrawContext::drawString(const char* text, const CRect& rect, bool opaque, int align) {
  const CRect r = rect.normalized();
  if (text == nullptr || r.isEmpty()) return;
  if (opaque) fillPixels(r, fillColor);
  backend->text(text, toDevice(r), align, font, fontColor);
}

int CDrawContext::getStringWidth(const char* text) {
  return text == nullptr ? 0 : backend->textWidth(text, font);
}

long CDrawContext::getMouseButtons() const {
  return frame != nullptr ? frame->getMouseButtons() : 0;
}

void CDrawContext::getMouseLocation(CPoint& where) const {
  if (frame != nullptr) where = frame->getMouseLocation();
}

COffscreenContext::COffscreenContext(CFrame* owner, int width, int height, CColor background)
    : CDrawContext(owner, createImageBackend(width < 1 ? 1 : width, height < 1 ? 1 : height)) {
  fillPixels({0, 0, getWidth(), getHeight()}, background);
}

void COffscreenContext::copyFrom(CDrawContext* to, CRect destination, CPoint source) {
  if (to == nullptr) return;
  const CRect d = destination.normalized().offset(-to->getOffset().x, -to->getOffset().y);
  if (d.isEmpty()) return;
  to->getBackend().copyFrom(*backend, d, source);
}

}  // namespace VSTGUI
