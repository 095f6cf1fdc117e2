#include "toolkit/text_edit.h"

#include <cstring>

#include "toolkit/draw_context.h"
#include "toolkit/frame.h"
#include "toolkit/platform/platform.h"

namespace VSTGUI {
namespace {

constexpr CColor kSelectionColor{51, 102, 204, 0};
constexpr int kMargin = 2;

}  // namespace

CTextEdit::CTextEdit(const CRect& rect, CControlListener* l, long t, const char* text,
                     CBitmap* bitmap, long s)
    : CParamDisplay(rect, bitmap, s) {
  listener = l;
  tag = t;
  setText(text);
}

void CTextEdit::setText(const char* text) {
  current.assign(text != nullptr ? text : "", text != nullptr ? strnlen(text, kMaxLength) : 0);
  setDirty();
}

void CTextEdit::getText(char* text) const {
  if (text != nullptr) std::memcpy(text, current.c_str(), current.size() + 1);
}

void CTextEdit::draw(CDrawContext* context) {
  if (!editing) {
    drawText(context, current.c_str());
    setDirty(false);
    return;
  }
  context->fillPixels(size, backColor);
  context->setFrameColor(fontColor);
  context->drawRect({size.left, size.top, size.right - 1, size.bottom - 1});
  context->setFont(fontID, 0, txtFace);
  const int before = context->getStringWidth(edited.substr(0, caret).c_str());
  const int room = size.width() - 2 * kMargin;
  // Scrolls left so that the caret stays inside a text longer than the field.
  const int shift = before > room ? before - room : 0;
  const CRect saved = context->getClipRect();
  CRect inside{size.left + 1, size.top + 1, size.right - 1, size.bottom - 1};
  context->setClipRect(inside.bound(saved));
  CRect line{size.left + kMargin - shift, size.top, size.right + 4096, size.bottom};
  if (allSelected && !edited.empty()) {
    const int w = context->getStringWidth(edited.c_str());
    context->fillPixels({line.left, size.top + 2, line.left + w + 1, size.bottom - 2},
                        kSelectionColor);
    context->setFontColor(kWhiteCColor);
  } else {
    context->setFontColor(fontColor);
    const int x = line.left + before;
    context->fillPixels({x, size.top + 2, x + 1, size.bottom - 2}, fontColor);
  }
  context->drawString(edited.c_str(), line, false, kLeftText);
  context->setClipRect(saved);
  setDirty(false);
}

void CTextEdit::mouse(CDrawContext* context, CPoint& /*where*/) {
  const long buttons = context != nullptr ? context->getMouseButtons() : 0;
  if (!mouseEnabled || (buttons & kLButton) == 0 || editing) return;
  if (frame != nullptr) frame->setFocusView(this);
  takeFocus(context);
}

void CTextEdit::takeFocus(CDrawContext* /*context*/) {
  if (editing) return;
  editing = true;
  edited = current;
  caret = edited.size();
  allSelected = true;
  if (frame != nullptr && frame->getPlatformFrame() != nullptr) {
    frame->getPlatformFrame()->setKeyboardFocus(true);
  }
  setDirty();
}

void CTextEdit::looseFocus(CDrawContext* /*context*/) {
  endEditing(true);
}

void CTextEdit::endEditing(bool keep) {
  if (!editing) return;
  editing = false;
  if (frame != nullptr && frame->getPlatformFrame() != nullptr) {
    frame->getPlatformFrame()->setKeyboardFocus(false);
  }
  setDirty();
  if (!keep || edited == current) return;
  current = edited;
  auto context = frame != nullptr ? frame->createDrawContext() : nullptr;
  notifyListener(context.get());
}

long CTextEdit::onKeyDown(VstKeyCode& key) {
  if (!editing) return -1;
  auto replaceSelection = [this] {
    if (!allSelected) return;
    edited.clear();
    caret = 0;
    allSelected = false;
  };
  switch (key.virt) {
    case VKEY_RETURN:
    case VKEY_ENTER:
    case VKEY_ESCAPE: {
      endEditing(key.virt != VKEY_ESCAPE);
      if (frame != nullptr && frame->getFocusView() == this) frame->setFocusView(nullptr);
      return 1;
    }
    case VKEY_BACK:
      if (allSelected) {
        replaceSelection();
      } else if (caret > 0) {
        edited.erase(--caret, 1);
      }
      break;
    case VKEY_DELETE:
      if (allSelected) {
        replaceSelection();
      } else if (caret < edited.size()) {
        edited.erase(caret, 1);
      }
      break;
    case VKEY_LEFT:
      allSelected = false;
      if (caret > 0) --caret;
      break;
    case VKEY_RIGHT:
      allSelected = false;
      if (caret < edited.size()) ++caret;
      break;
    case VKEY_HOME:
      allSelected = false;
      caret = 0;
      break;
    case VKEY_END:
      allSelected = false;
      caret = edited.size();
      break;
    case 0:
      if (key.character < 32 || key.character > 126) return -1;
      replaceSelection();
      if (edited.size() >= kMaxLength) return 1;
      edited.insert(caret++, 1, static_cast<char>(key.character));
      break;
    default:
      return -1;
  }
  setDirty();
  return 1;
}

}  // namespace VSTGUI
