#include "demo_pictures.h"

#include <cmath>
#include <cstdint>
#include <vector>

#include "toolkit/bitmap.h"

namespace viewer {
namespace {

struct Picture {
  int width;
  int height;
  std::vector<uint32_t> pixels;
  Picture(int w, int h) : width(w), height(h), pixels(static_cast<size_t>(w) * h, 0xff000000u) {}
  void set(int x, int y, uint32_t rgb) {
    if (x >= 0 && y >= 0 && x < width && y < height) {
      pixels[static_cast<size_t>(y) * width + x] = 0xff000000u | rgb;
    }
  }
};

uint32_t rgb(int r, int g, int b) {
  return static_cast<uint32_t>(r) << 16 | static_cast<uint32_t>(g) << 8 | static_cast<uint32_t>(b);
}

void add(int id, Picture& p) {
  VSTGUI::registerBitmapResource({id, p.width, p.height, p.pixels.data()});
}

// A dark brushed panel with a lighter band for each row of controls.
Picture panel() {
  Picture p(609, 441);
  for (int y = 0; y < p.height; ++y) {
    for (int x = 0; x < p.width; ++x) {
      const int grain =
          static_cast<int>(6.0 * std::sin(x * 0.9 + y * 0.05) + 3.0 * std::sin(y * 2.1));
      int base = 58 + grain;
      if ((y / 70) % 2 == 1) base += 10;
      p.set(x, y, rgb(base, base - 2, base - 6));
    }
  }
  return p;
}

// Two images of a round button: off (grey) above, on (amber) below.
Picture button(int w, int h, int keyR, int keyG, int keyB) {
  Picture p(w, h * 2);
  for (int image = 0; image < 2; ++image) {
    for (int y = 0; y < h; ++y) {
      for (int x = 0; x < w; ++x) {
        const double dx = x - (w - 1) / 2.0;
        const double dy = y - (h - 1) / 2.0;
        const bool inside = dx * dx + dy * dy <= (w / 2.0) * (w / 2.0);
        const uint32_t on = rgb(255, 170 - static_cast<int>(dy * 6), 40);
        const uint32_t off = rgb(110 - static_cast<int>(dy * 5), 110, 105);
        p.set(x, image * h + y, inside ? (image == 1 ? on : off) : rgb(keyR, keyG, keyB));
      }
    }
  }
  return p;
}

Picture keys() {
  Picture p(21, 212);
  for (int image = 0; image < 2; ++image) {
    for (int y = 0; y < 106; ++y) {
      for (int x = 0; x < 21; ++x) {
        const int shade = image == 1 ? 200 : 240 - y / 8;
        p.set(x, image * 106 + y, x == 20 || y == 105 ? rgb(40, 40, 40) : rgb(shade, shade, shade));
      }
    }
  }
  return p;
}

}  // namespace

void registerPictures() {
  static Picture pictures[] = {panel(), button(11, 11, 255, 255, 255),
                               button(12, 12, 255, 255, 255), button(13, 12, 0, 255, 0), keys()};
  add(kPanel, pictures[0]);
  add(kButton, pictures[1]);
  add(kSwitch, pictures[2]);
  add(kLight, pictures[3]);
  add(kWhiteKeys, pictures[4]);
}

}  // namespace viewer
