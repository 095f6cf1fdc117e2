// The two buttons the editor uses: CKickButton (1 while pressed, 0 after) and
// COnOffButton (toggles at each click). Each bitmap holds the two images one
// above the other.
#pragma once

#include "toolkit/control.h"

namespace VSTGUI {

class CKickButton : public CControl {
 public:
  CKickButton(const CRect& size, CControlListener* listener, long tag, int heightOfOneImage,
              CBitmap* background, const CPoint& offset = {});

  void draw(CDrawContext* context) override;
  // Press, motion and release stand for the polling loop of old: beginEdit,
  // 1 while the pointer lies inside (the old value outside), endEdit, and
  // then always 0.
  void mouse(CDrawContext* context, CPoint& where) override;
  void mouseMoved(CDrawContext* context, CPoint& where) override;
  void mouseUp(CDrawContext* context, CPoint& where) override;

 private:
  void track(CDrawContext* context, const CPoint& where);
  void finish(CDrawContext* context);

  int heightOfOneImage;
  float pressValue = 0.0f;
  float reported = 0.0f;
  bool tracking = false;
};

class COnOffButton : public CControl {
 public:
  COnOffButton(const CRect& size, CControlListener* listener, long tag, CBitmap* background);
  void draw(CDrawContext* context) override;
  void mouse(CDrawContext* context, CPoint& where) override;
};

}  // namespace VSTGUI
