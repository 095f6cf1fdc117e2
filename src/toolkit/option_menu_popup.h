// The drop-down list of a COptionMenu: its layout in columns, its drawing
// through the menu's scheme, and the mouse and keys while it is open. The
// platform supplies the window (override-redirect, pointer grabbed).
#pragma once

#include <vector>

#include "toolkit/geometry.h"
#include "toolkit/platform/platform.h"

namespace VSTGUI {

class COptionMenu;

class OptionMenuPopup : public PopupClient {
 public:
  explicit OptionMenuPopup(COptionMenu* menu);

  // Places the items; the popup's size in pixels.
  CPoint layout();
  const CRect& itemRect(long index) const { return items[static_cast<size_t>(index)]; }
  long itemAt(CPoint where) const;
  long getSelected() const { return selected; }
  int columnCount() const { return columns; }

  void popupPaint(CDrawContext* context) override;
  void popupMouseDown(CPoint where, long buttons) override;
  void popupMouseMoved(CPoint where, long buttons) override;
  void popupMouseUp(CPoint where, long buttons) override;
  void popupKey(const VstKeyCode& key) override;

 private:
  void select(long index);
  void moveSelection(long step);

  COptionMenu* menu;
  std::vector<CRect> items;
  CPoint extent;
  long selected = -1;
  // A release chooses only after the pointer moved or pressed in the list:
  // a list placed under the pointer mustn't take the opening click's release.
  bool armed = false;
  long perColumn = 0;
  int columns = 1;
};

}  // namespace VSTGUI
