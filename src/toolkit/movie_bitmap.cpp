#include "toolkit/movie_bitmap.h"

#include "toolkit/bitmap.h"

namespace VSTGUI {

CMovieBitmap::CMovieBitmap(const CRect& rect, CControlListener* l, long t, int images,
                           int imageHeight, CBitmap* bitmap, const CPoint& offset)
    : CControl(rect, l, t, bitmap), subPixmaps(images), heightOfOneImage(imageHeight) {
  backOffset = offset;
}

void CMovieBitmap::draw(CDrawContext* context) {
  float v = getValue();
  if (v > 1.0f) v = 1.0f;
  if (!(v >= 0.0f)) v = 0.0f;  // also NaN
  CPoint source = backOffset;
  // The image index is rounded; the light's two images flip at 0.5.
  source.y += static_cast<int>((subPixmaps - 1) * v + 0.5f) * heightOfOneImage;
  if (background != nullptr) {
    if (transparency) {
      background->drawTransparent(context, size, source);
    } else {
      background->draw(context, size, source);
    }
  }
  setDirty(false);
}

}  // namespace VSTGUI
