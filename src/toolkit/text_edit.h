// CTextEdit: a text box that turns into an edit field of its own on a click:
// all text selected at first, a caret, Return or the loss of the focus ends
// and copies the text back (Escape ends and keeps the old text). The
// listener hears of a change once, at the end.
#pragma once

#include <string>

#include "toolkit/param_display.h"

namespace VSTGUI {

class CTextEdit : public CParamDisplay {
 public:
  static constexpr size_t kMaxLength = 255;

  CTextEdit(const CRect& size, CControlListener* listener, long tag, const char* text = nullptr,
            CBitmap* background = nullptr, long style = 0);

  void setText(const char* text);
  void getText(char* text) const;
  const std::string& text() const { return current; }
  bool isEditing() const { return editing; }

  void draw(CDrawContext* context) override;
  void mouse(CDrawContext* context, CPoint& where) override;
  void takeFocus(CDrawContext* context) override;
  void looseFocus(CDrawContext* context) override;
  long onKeyDown(VstKeyCode& key) override;

 private:
  void endEditing(bool keep);

  std::string current;
  std::string edited;
  size_t caret = 0;
  bool allSelected = false;
  bool editing = false;
};

}  // namespace VSTGUI
