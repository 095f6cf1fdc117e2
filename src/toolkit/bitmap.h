// CBitmap: a picture built into the library, found by its resource number.
// Reference-counted; a number without a picture gives a 0 x 0 bitmap that
// draws nothing.
#pragma once

#include <cstdint>
#include <vector>

#include "toolkit/draw_backend.h"
#include "toolkit/geometry.h"
#include "toolkit/reference_counter.h"

namespace VSTGUI {

class CDrawContext;

// Opaque 0xAARRGGBB pixels (alpha 255), rows of width pixels.
struct BitmapResource {
  int id = 0;
  int width = 0;
  int height = 0;
  const uint32_t* pixels = nullptr;
};

// Makes a picture available under a resource number for every later
// CBitmap(id); the pixels must outlive the bitmaps. The built-in artwork
// registers itself the same way. User-interface thread only.
void registerBitmapResource(const BitmapResource& resource);
const BitmapResource* findBitmapResource(int id);

class CBitmap : public CReferenceCounter {
 public:
  explicit CBitmap(int resourceId);

  int getResourceId() const { return resourceId; }
  int getWidth() const { return width; }
  int getHeight() const { return height; }
  bool isLoaded() const { return pixels != nullptr; }

  void setTransparentColor(CColor colour);
  CColor getTransparentColor() const { return transparentColor; }

  // Copies the size of rect from the bitmap at offset to rect.
  void draw(CDrawContext* context, const CRect& rect, const CPoint& offset = {});
  // The same, leaving out the pixels of the transparent colour.
  void drawTransparent(CDrawContext* context, const CRect& rect, const CPoint& offset = {});

 private:
  void drawImage(CDrawContext* context, const PixelImage& image, const CRect& rect,
                 const CPoint& offset);

  int resourceId;
  int width = 0;
  int height = 0;
  const uint32_t* pixels = nullptr;
  CColor transparentColor = kWhiteCColor;
  std::vector<uint32_t> keyed;  // pixels with the transparent colour cleared, made on demand
  bool keyedValid = false;
};

}  // namespace VSTGUI
