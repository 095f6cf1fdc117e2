#include "toolkit/option_menu_popup.h"

#include <algorithm>

#include "toolkit/draw_context.h"
#include "toolkit/option_menu.h"

namespace VSTGUI {
namespace {

constexpr int kBorder = 1;
// With this many entries or more the list stays in one column.
constexpr long kMaxEntriesForColumns = 160;

}  // namespace

OptionMenuPopup::OptionMenuPopup(COptionMenu* owner) : menu(owner) {
  selected = menu->getCurrent();
}

CPoint OptionMenuPopup::layout() {
  const long count = menu->getNbEntries();
  perColumn = menu->getNbItemsPerColumn();
  if (perColumn <= 0 || count >= kMaxEntriesForColumns) perColumn = count;
  perColumn = std::max(1L, perColumn);
  COffscreenContext measure(nullptr, 1, 1);
  items.assign(static_cast<size_t>(count), CRect());
  int x = kBorder;
  int tallest = 0;
  columns = 0;
  for (long first = 0; first < count; first += perColumn) {
    const long last = std::min(count, first + perColumn);
    int width = 0;
    for (long i = first; i < last; ++i) {
      width = std::max(
          width,
          static_cast<int>(menu->getScheme()->getItemSize(menu->entryText(i).c_str(), &measure).x));
    }
    for (long i = first; i < last; ++i) {
      const int top = kBorder + static_cast<int>(i - first) * COptionMenuScheme::kItemHeight;
      items[static_cast<size_t>(i)] = {x, top, x + width, top + COptionMenuScheme::kItemHeight};
    }
    tallest = std::max(tallest, static_cast<int>(last - first) * COptionMenuScheme::kItemHeight);
    x += width;
    ++columns;
  }
  extent = {x + kBorder, tallest + 2 * kBorder};
  return extent;
}

long OptionMenuPopup::itemAt(CPoint where) const {
  for (size_t i = 0; i < items.size(); ++i) {
    const CRect& r = items[i];
    if (where.x >= r.left && where.x < r.right && where.y >= r.top && where.y < r.bottom) {
      return static_cast<long>(i);
    }
  }
  return -1;
}

void OptionMenuPopup::popupPaint(CDrawContext* context) {
  const COptionMenuScheme* scheme = menu->getScheme();
  context->fillPixels({0, 0, extent.x, extent.y}, scheme->backgroundColor);
  context->setFrameColor(scheme->disableTextColor);
  context->drawRect({0, 0, extent.x - 1, extent.y - 1});
  for (size_t i = 0; i < items.size(); ++i) {
    const long index = static_cast<long>(i);
    scheme->drawItem(menu->entryText(index).c_str(), menu->isCheckEntry(index),
                     index == selected && !menu->isSeparator(index), false, context, items[i]);
  }
}

void OptionMenuPopup::select(long index) {
  if (index >= 0 && menu->isSeparator(index)) index = -1;
  selected = index;
}

// A press outside the list closes it with no choice; inside, the release
// chooses.
void OptionMenuPopup::popupMouseDown(CPoint where, long /*buttons*/) {
  if (where.x < 0 || where.y < 0 || where.x >= extent.x || where.y >= extent.y) {
    menu->popupDone(-1);
    return;
  }
  armed = true;
  select(itemAt(where));
}

void OptionMenuPopup::popupMouseMoved(CPoint where, long /*buttons*/) {
  armed = true;
  select(itemAt(where));
}

// Also the release of the press that opened the list, after a drag onto an
// item; a release elsewhere leaves the list open.
void OptionMenuPopup::popupMouseUp(CPoint where, long /*buttons*/) {
  const long index = itemAt(where);
  if (armed && index >= 0 && !menu->isSeparator(index)) menu->popupDone(index);
}

void OptionMenuPopup::moveSelection(long step) {
  const long count = menu->getNbEntries();
  long index = selected;
  for (long tries = 0; tries < count; ++tries) {
    index = index < 0 ? (step > 0 ? 0 : count - 1) : index + step;
    if (index < 0 || index >= count) return;  // stays at the list's end
    if (!menu->isSeparator(index)) {
      selected = index;
      return;
    }
  }
}

void OptionMenuPopup::popupKey(const VstKeyCode& key) {
  switch (key.virt) {
    case VKEY_UP:
      moveSelection(-1);
      break;
    case VKEY_DOWN:
      moveSelection(1);
      break;
    case VKEY_LEFT:
      if (selected - perColumn >= 0) moveSelection(-perColumn);
      break;
    case VKEY_RIGHT:
      if (selected + perColumn < menu->getNbEntries()) moveSelection(perColumn);
      break;
    case VKEY_RETURN:
    case VKEY_ENTER:
      menu->popupDone(selected);
      break;
    case VKEY_ESCAPE:
      menu->popupDone(-1);
      break;
    default:
      break;
  }
}

}  // namespace VSTGUI
