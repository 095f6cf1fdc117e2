// CMovieBitmap: shows one of subPixmaps images stacked in its bitmap, chosen
// by the value 0 to 1. Takes no mouse.
#pragma once

#include "toolkit/control.h"

namespace VSTGUI {

class CMovieBitmap : public CControl {
 public:
  CMovieBitmap(const CRect& size, CControlListener* listener, long tag, int subPixmaps,
               int heightOfOneImage, CBitmap* background, const CPoint& offset = {});
  void draw(CDrawContext* context) override;

 private:
  int subPixmaps;
  int heightOfOneImage;
};

}  // namespace VSTGUI
