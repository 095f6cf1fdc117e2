// COptionMenu: a text box that shows its current entry and, on a click,
// drops down the list of its entries in a popup window of its own.
// COptionMenuScheme gives the list its colours.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "toolkit/param_display.h"

namespace VSTGUI {

class OptionMenuPopup;

class COptionMenuScheme : public CReferenceCounter {
 public:
  static constexpr int kItemHeight = 18;
  static constexpr int kTextIndent = 18;
  static constexpr int kSeparatorWidth = 6;

  COptionMenuScheme();
  // Size of one item: its text plus 18, 18 high; a separator 6 x 18.
  CPoint getItemSize(const char* text, CDrawContext* context) const;
  void drawItem(const char* text, bool checked, bool selected, bool disabled, CDrawContext* context,
                const CRect& rect) const;

  CColor backgroundColor;
  CColor selectionColor;
  CColor textColor;
  CColor hiliteTextColor;
  CColor disableTextColor;
  int font = 4;
};

class COptionMenu : public CParamDisplay {
 public:
  static constexpr int kMaxEntries = 1024;
  static constexpr size_t kMaxEntryLength = 255;

  COptionMenu(const CRect& size, CControlListener* listener, long tag,
              CBitmap* background = nullptr, CBitmap* bgWhenClick = nullptr, long style = 0);
  ~COptionMenu() override;

  bool addEntry(const char* text, long index = -1);
  long getCurrent() const { return currentIndex; }
  bool setCurrent(long index, bool countSeparator = true);
  bool getEntry(long index, char* text) const;
  bool setEntry(long index, const char* text);
  bool removeEntry(long index);
  bool removeAllEntry();
  long getNbEntries() const { return static_cast<long>(entries.size()); }
  long getIndex(const char* text) const;
  bool checkEntry(long index, bool checked);
  bool checkEntryAlone(long index);
  bool isCheckEntry(long index) const;
  void setNbItemsPerColumn(long n) { nbItemsPerColumn = n; }
  long getNbItemsPerColumn() const { return nbItemsPerColumn; }
  void setScheme(COptionMenuScheme* scheme);
  COptionMenuScheme* getScheme() const { return scheme; }
  void setPrefixNumbers(int digits) { prefixNumbers = digits; }

  void setValue(float v) override;
  void draw(CDrawContext* context) override;
  void mouse(CDrawContext* context, CPoint& where) override;
  void takeFocus(CDrawContext* context) override;
  void looseFocus(CDrawContext* context) override;
  bool removed(CView* parent) override;

  // The popup's answer: an entry index, or -1 for none.
  void popupDone(long index);
  bool isPopupOpen() const { return popup != nullptr; }
  const OptionMenuPopup* getPopup() const { return popup.get(); }
  const std::string& entryText(long index) const { return entries[static_cast<size_t>(index)]; }
  bool isSeparator(long index) const { return entryText(index) == "-"; }

 private:
  void closePopup();

  std::vector<std::string> entries;
  std::vector<bool> checked;
  long currentIndex = -1;
  long nbItemsPerColumn = -1;
  int prefixNumbers = 0;
  long lastButtons = 0;
  COptionMenuScheme* scheme = nullptr;
  std::unique_ptr<OptionMenuPopup> popup;
};

}  // namespace VSTGUI
