#include "toolkit/bitmap.h"

#include <map>

#include "toolkit/draw_context.h"

namespace VSTGUI {
namespace {

std::map<int, BitmapResource>& registry() {
  static std::map<int, BitmapResource> resources;
  return resources;
}

}  // namespace

void registerBitmapResource(const BitmapResource& resource) {
  if (resource.pixels == nullptr || resource.width <= 0 || resource.height <= 0) return;
  registry()[resource.id] = resource;
}

const BitmapResource* findBitmapResource(int id) {
  auto it = registry().find(id);
  return it == registry().end() ? nullptr : &it->second;
}

CBitmap::CBitmap(int id) : resourceId(id) {
  // Built-in pixels are used where they lie: loading costs a lookup.
  if (const BitmapResource* r = findBitmapResource(id)) {
    width = r->width;
    height = r->height;
    pixels = r->pixels;
  }
}

void CBitmap::setTransparentColor(CColor colour) {
  if (colour == transparentColor) return;
  transparentColor = colour;
  keyedValid = false;
}

void CBitmap::draw(CDrawContext* context, const CRect& rect, const CPoint& offset) {
  drawImage(context, {pixels, width, height}, rect, offset);
}

void CBitmap::drawTransparent(CDrawContext* context, const CRect& rect, const CPoint& offset) {
  if (pixels == nullptr) return;
  if (!keyedValid) {
    const uint32_t key = transparentColor.rgb();
    keyed.assign(pixels, pixels + static_cast<size_t>(width) * height);
    for (uint32_t& p : keyed) {
      if ((p & 0xffffffu) == key) p = 0;  // premultiplied: all zero is clear
    }
    keyedValid = true;
  }
  drawImage(context, {keyed.data(), width, height}, rect, offset);
}

void CBitmap::drawImage(CDrawContext* context, const PixelImage& image, const CRect& rect,
                        const CPoint& offset) {
  if (context == nullptr || image.pixels == nullptr) return;
  const CRect r = rect.normalized();
  if (r.isEmpty()) return;
  CRect device = r;
  device.offset(-context->getOffset().x, -context->getOffset().y);
  context->getBackend().image(image, device, offset);
}

}  // namespace VSTGUI
