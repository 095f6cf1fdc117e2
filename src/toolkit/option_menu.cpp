#include "toolkit/option_menu.h"

#include <algorithm>
#include <cstring>

#include "toolkit/draw_context.h"
#include "toolkit/frame.h"
#include "toolkit/option_menu_popup.h"
#include "toolkit/platform/platform.h"

namespace VSTGUI {

COptionMenuScheme::COptionMenuScheme()
    : backgroundColor{255, 255, 255, 0},
      selectionColor{0, 0, 128, 0},
      textColor{0, 0, 0, 0},
      hiliteTextColor{255, 255, 255, 0},
      disableTextColor{127, 127, 127, 0} {}

CPoint COptionMenuScheme::getItemSize(const char* text, CDrawContext* context) const {
  if (std::strcmp(text, "-") == 0) return {kSeparatorWidth, kItemHeight};
  context->setFont(font);
  return {context->getStringWidth(text) + kTextIndent, kItemHeight};
}

void COptionMenuScheme::drawItem(const char* text, bool checked, bool selected, bool disabled,
                                 CDrawContext* context, const CRect& r) const {
  context->fillPixels(r, selected ? selectionColor : backgroundColor);
  if (std::strcmp(text, "-") == 0) {
    const int y = r.top + r.height() / 2;
    context->fillPixels({r.left + 2, y, r.right - 2, y + 1}, kBlackCColor);
    context->fillPixels({r.left + 2, y + 1, r.right - 2, y + 2}, kWhiteCColor);
    return;
  }
  const CColor ink = disabled ? disableTextColor : selected ? hiliteTextColor : textColor;
  if (checked) {
    context->setFillColor(ink);
    context->fillEllipse({r.left + 6, r.top + 4, r.left + 14, r.top + 12});
  }
  context->setFont(font);
  context->setFontColor(ink);
  // Left alignment keeps a pixel of margin: the text starts kTextIndent in.
  context->drawString(text, {r.left + kTextIndent - 1, r.top, r.right, r.bottom}, false, kLeftText);
}

COptionMenu::COptionMenu(const CRect& rect, CControlListener* l, long t, CBitmap* bitmap,
                         CBitmap* /*bgWhenClick*/, long s)
    : CParamDisplay(rect, bitmap, s) {
  listener = l;
  tag = t;
  scheme = new COptionMenuScheme;
}

COptionMenu::~COptionMenu() {
  closePopup();
  if (scheme != nullptr) scheme->forget();
}

bool COptionMenu::addEntry(const char* text, long index) {
  if (text == nullptr || getNbEntries() >= kMaxEntries) return false;
  std::string entry(text, strnlen(text, kMaxEntryLength));
  if (index < 0 || index >= getNbEntries()) {
    entries.push_back(std::move(entry));
    checked.push_back(false);
  } else {
    entries.insert(entries.begin() + index, std::move(entry));
    checked.insert(checked.begin() + index, false);
  }
  return true;
}

bool COptionMenu::setCurrent(long index, bool /*countSeparator*/) {
  if (index < 0 || index >= getNbEntries() || isSeparator(index)) return false;
  currentIndex = index;
  if ((style & kCheckStyle) != 0) checkEntryAlone(index);
  CControl::setValue(static_cast<float>(index));
  setDirty();
  return true;
}

bool COptionMenu::getEntry(long index, char* text) const {
  if (text == nullptr) return false;
  if (index < 0 || index >= getNbEntries()) {
    text[0] = 0;
    return false;
  }
  std::memcpy(text, entryText(index).c_str(), entryText(index).size() + 1);
  return true;
}

bool COptionMenu::setEntry(long index, const char* text) {
  if (text == nullptr || index < 0 || index >= getNbEntries()) return false;
  entries[static_cast<size_t>(index)].assign(text, strnlen(text, kMaxEntryLength));
  if (index == currentIndex) setDirty();
  return true;
}

bool COptionMenu::removeEntry(long index) {
  if (index < 0 || index >= getNbEntries()) return false;
  entries.erase(entries.begin() + index);
  checked.erase(checked.begin() + index);
  if (currentIndex >= getNbEntries()) currentIndex = getNbEntries() - 1;
  setDirty();
  return true;
}

bool COptionMenu::removeAllEntry() {
  closePopup();
  entries.clear();
  checked.clear();
  currentIndex = -1;
  setDirty();
  return true;
}

long COptionMenu::getIndex(const char* text) const {
  if (text == nullptr) return -1;
  for (long i = 0; i < getNbEntries(); ++i) {
    if (entryText(i) == text) return i;
  }
  return -1;
}

bool COptionMenu::checkEntry(long index, bool state) {
  if (index < 0 || index >= getNbEntries()) return false;
  checked[static_cast<size_t>(index)] = state;
  return true;
}

bool COptionMenu::checkEntryAlone(long index) {
  std::fill(checked.begin(), checked.end(), false);
  return checkEntry(index, true);
}

bool COptionMenu::isCheckEntry(long index) const {
  return index >= 0 && index < getNbEntries() && checked[static_cast<size_t>(index)];
}

void COptionMenu::setScheme(COptionMenuScheme* s) {
  replaceCounted(scheme, s);
}

void COptionMenu::setValue(float v) {
  CControl::setValue(v);
  if (!(v >= 0.0f) || v >= static_cast<float>(getNbEntries())) return;
  const long index = static_cast<long>(v);
  if (index < getNbEntries()) {
    currentIndex = index;
    if ((style & kCheckStyle) != 0) checkEntryAlone(index);
  }
}

void COptionMenu::draw(CDrawContext* context) {
  drawText(context, currentIndex >= 0 && currentIndex < getNbEntries()
                        ? entryText(currentIndex).c_str()
                        : "");
  setDirty(false);
}

void COptionMenu::mouse(CDrawContext* context, CPoint& /*where*/) {
  const long buttons = context != nullptr ? context->getMouseButtons() : 0;
  if (!mouseEnabled || (buttons & (kLButton | kRButton)) == 0) return;
  lastButtons = buttons;
  if (frame != nullptr) frame->setFocusView(this);
  takeFocus(context);
}

// Opens the list at the menu's lower left corner and returns; the choice
// arrives through popupDone.
void COptionMenu::takeFocus(CDrawContext* /*context*/) {
  closePopup();
  PlatformFrame* platform = frame != nullptr ? frame->getPlatformFrame() : nullptr;
  if (platform == nullptr || entries.empty()) {
    if (frame != nullptr && frame->getFocusView() == this) frame->setFocusView(nullptr);
    return;
  }
  popup = std::make_unique<OptionMenuPopup>(this);
  const CPoint extent = popup->layout();
  const CPoint origin = platform->frameOriginOnScreen();
  const CRect screen = platform->screenRect();
  CRect place(0, 0, extent.x, extent.y);
  place.moveTo(origin.x + size.left, origin.y + size.bottom);
  // Stay on screen: flip above the menu when there is no room below.
  if (place.bottom > screen.bottom) place.moveTo(place.left, origin.y + size.top - extent.y);
  if (place.top < screen.top)
    place.moveTo(place.left, std::max(screen.top, screen.bottom - extent.y));
  if (place.right > screen.right) place.moveTo(screen.right - extent.x, place.top);
  if (place.left < screen.left) place.moveTo(screen.left, place.top);
  if (!platform->openPopup(popup.get(), place)) popupDone(-1);
}

void COptionMenu::looseFocus(CDrawContext* /*context*/) {
  closePopup();
}

bool COptionMenu::removed(CView* parent) {
  closePopup();
  return CParamDisplay::removed(parent);
}

void COptionMenu::closePopup() {
  if (!popup) return;
  if (frame != nullptr && frame->getPlatformFrame() != nullptr) {
    frame->getPlatformFrame()->closePopup();
  }
  popup.reset();
}

void COptionMenu::popupDone(long index) {
  // Called from inside the popup's event handler: the popup object must
  // outlive this call, so it is destroyed by the platform's deferred close.
  remember();
  PlatformFrame* platform = frame != nullptr ? frame->getPlatformFrame() : nullptr;
  if (platform != nullptr) platform->closePopup();
  std::unique_ptr<OptionMenuPopup> keep = std::move(popup);
  if (index >= 0 && index < getNbEntries() && !isSeparator(index)) {
    setValue(static_cast<float>(index));
    auto context = frame != nullptr ? frame->createDrawContext() : nullptr;
    notifyListener(context.get());
  }
  if (frame != nullptr && frame->getFocusView() == this) frame->setFocusView(nullptr);
  if (platform != nullptr) platform->retire(std::move(keep));
  forget();
}

}  // namespace VSTGUI
