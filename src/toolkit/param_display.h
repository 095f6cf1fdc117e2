// CParamDisplay: a control that shows a text in a box; the base of the
// option menu and the text field.
#pragma once

#include "toolkit/control.h"

namespace VSTGUI {

enum : long {
  kShadowText = 4,
  k3DIn = 128,
  k3DOut = 256,
  kPopupStyle = 512,
  kCheckStyle = 1024,
  kNoTextStyle = 2048,
  kNoDrawStyle = 4096,
  kDoubleClickStyle = 8192,
};

enum { kLeftText = 0, kCenterText = 1, kRightText = 2 };

class CParamDisplay : public CControl {
 public:
  CParamDisplay(const CRect& size, CBitmap* background = nullptr, long style = 0);

  virtual void setFont(int fontId);
  virtual void setFontColor(CColor colour);
  virtual void setBackColor(CColor colour);
  virtual void setFrameColor(CColor colour);
  virtual void setShadowColor(CColor colour);
  virtual void setHoriAlign(int align);
  virtual void setStyle(long newStyle);
  long getStyle() const { return style; }
  virtual void setTxtFace(int face);
  virtual void setTextTransparency(bool value) { textTransparency = value; }

  void draw(CDrawContext* context) override;

 protected:
  // Box, shadow and text, as the style and colours say.
  void drawText(CDrawContext* context, const char* text);
  // A look setting: repainted only when it changes.
  template <typename T>
  void changeLook(T& field, T value) {
    if (field == value) return;
    field = value;
    setDirty();
  }

  int horiTxtAlign = kCenterText;
  long style;
  int fontID = 3;
  int txtFace = 0;  // kNormalFace
  CColor fontColor = kWhiteCColor;
  CColor backColor = kBlackCColor;
  CColor frameColor = kBlackCColor;
  CColor shadowColor = kRedCColor;
  bool textTransparency = false;
};

}  // namespace VSTGUI
