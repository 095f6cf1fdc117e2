#include "editor/artwork.h"

#include <cairo.h>

#include <cstring>
#include <map>
#include <vector>

#include "toolkit/bitmap.h"

namespace sablevox::editor {
namespace {

struct Reader {
  const unsigned char* data;
  size_t left;
};

cairo_status_t readPng(void* closure, unsigned char* out, unsigned int length) {
  auto* r = static_cast<Reader*>(closure);
  if (length > r->left) return CAIRO_STATUS_READ_ERROR;
  std::memcpy(out, r->data, length);
  r->data += length;
  r->left -= length;
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

std::vector<uint32_t> decodePicture(const EmbeddedPicture& p) {
  Reader reader{embeddedArtworkBytes() + p.offset, p.size};
  cairo_surface_t* s = cairo_image_surface_create_from_png_stream(readPng, &reader);
  std::vector<uint32_t> pixels;
  if (cairo_surface_status(s) == CAIRO_STATUS_SUCCESS &&
      cairo_image_surface_get_width(s) == p.width &&
      cairo_image_surface_get_height(s) == p.height) {
    const unsigned char* data = cairo_image_surface_get_data(s);
    const int stride = cairo_image_surface_get_stride(s);
    pixels.resize(static_cast<size_t>(p.width) * p.height);
    for (int y = 0; y < p.height; ++y) {
      const auto* row = reinterpret_cast<const uint32_t*>(data + static_cast<size_t>(y) * stride);
      for (int x = 0; x < p.width; ++x)
        pixels[static_cast<size_t>(y) * p.width + x] = row[x] | 0xff000000u;
    }
  }
  cairo_surface_destroy(s);
  return pixels;
}

bool loadPicture(int id) {
  static std::map<int, std::vector<uint32_t>> decoded;
  if (auto it = decoded.find(id); it != decoded.end()) return !it->second.empty();
  for (const EmbeddedPicture& p : embeddedPictures()) {
    if (p.id != id || p.scale != 1) continue;
    std::vector<uint32_t>& pixels = decoded[id] = decodePicture(p);
    if (pixels.empty()) return false;
    VSTGUI::registerBitmapResource({p.id, p.width, p.height, pixels.data()});
    return true;
  }
  return false;
}

bool registerArtwork() {
  bool ok = true;
  for (const EmbeddedPicture& p : embeddedPictures()) {
    if (p.scale == 1) ok = loadPicture(p.id) && ok;
  }
  return ok;
}

}  // namespace sablevox::editor
