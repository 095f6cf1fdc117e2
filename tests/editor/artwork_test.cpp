// The embedded artwork as the editor will load it: every picture at its
// number and size, readable captions on every skin, key images whose
// transparent parts are exactly the other keys, and a checksum that shows
// any change of the generator's output.
#include "editor/artwork.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "editor/layout.h"
#include "toolkit/bitmap.h"

namespace {

using namespace sablevox::editor;

constexpr uint32_t kGreen = 0x00ff00;

uint32_t rawPixel(int id, int x, int y) {
  const VSTGUI::BitmapResource* r = VSTGUI::findBitmapResource(id);
  return r->pixels[static_cast<size_t>(y) * r->width + x] & 0xffffffu;
}

class ArtworkTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(registerArtwork()); }

  static uint32_t pixel(int id, int x, int y) { return rawPixel(id, x, y); }
};

double luminance(uint32_t rgb) {
  auto channel = [](uint32_t v) {
    const double c = v / 255.0;
    return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * channel(rgb >> 16 & 255) + 0.7152 * channel(rgb >> 8 & 255) +
         0.0722 * channel(rgb & 255);
}

double contrast(double a, double b) {
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

// The background is the median luminance of the box (most of it is not
// ink); the ink is the pixel farthest from it.
double captionContrast(int id, const Rect& box) {
  std::vector<double> l;
  for (int y = box.top; y < box.bottom; ++y)
    for (int x = box.left; x < box.right; ++x) l.push_back(luminance(rawPixel(id, x, y)));
  std::nth_element(l.begin(), l.begin() + l.size() / 2, l.end());
  const double background = l[l.size() / 2];
  double best = 1;
  for (double v : l) best = std::max(best, contrast(v, background));
  return best;
}

TEST_F(ArtworkTest, EveryBitmapIsBuiltInAtItsNumberAndSize) {
  for (const BitmapSpec& spec : bitmapTable()) {
    VSTGUI::CBitmap bitmap(spec.id);
    EXPECT_TRUE(bitmap.isLoaded()) << spec.id;
    EXPECT_EQ(bitmap.getWidth(), spec.width) << spec.id;
    EXPECT_EQ(bitmap.getHeight(), spec.height) << spec.id;
  }
  // The double-size drawings for high-density screens: each picture once more.
  int doubled = 0;
  for (const EmbeddedPicture& p : embeddedPictures()) {
    if (p.scale != 2) continue;
    ++doubled;
    const BitmapSpec* spec = findBitmap(p.id);
    ASSERT_NE(spec, nullptr) << p.id;
    EXPECT_EQ(p.width, spec->width * 2) << p.id;
    EXPECT_EQ(p.height, spec->height * 2) << p.id;
    EXPECT_EQ(decodePicture(p).size(), size_t(p.width) * p.height) << p.id;
  }
  EXPECT_EQ(doubled, int(bitmapTable().size()));
  EXPECT_LE(embeddedArtworkSize(), 3000000u) << "the artwork's budget in the plug-in";
}

TEST_F(ArtworkTest, CaptionsAreReadableAndEverySkinIsItsOwnPicture) {
  for (int skin = 0; skin < bitmap::kSkinCount; ++skin) {
    for (const LayoutControl& c : mainPanel()) {
      const Rect box = captionBox(c);
      if (box.width() == 0) continue;
      EXPECT_GE(captionContrast(bitmap::kSkinBase + skin, box), 4.5)
          << kSkinNames[skin] << ": " << c.caption << " (tag " << c.tag << ")";
    }
  }
  for (const LayoutControl& c : settingsPanel()) {
    const Rect box = captionBox(c);
    if (box.width() != 0) {
      EXPECT_GE(captionContrast(bitmap::kSettings, box), 4.5) << c.caption;
    }
  }
  // Two skins differ by more than a tint: the mean colour distance.
  for (int a = 0; a < bitmap::kSkinCount; ++a) {
    for (int b = a + 1; b < bitmap::kSkinCount; ++b) {
      double distance = 0;
      int n = 0;
      for (int y = 0; y < kPanelHeight; y += 3) {
        for (int x = 0; x < kPanelWidth; x += 3, ++n) {
          const uint32_t p = pixel(bitmap::kSkinBase + a, x, y),
                         q = pixel(bitmap::kSkinBase + b, x, y);
          for (int shift : {0, 8, 16})
            distance += std::abs(int(p >> shift & 255) - int(q >> shift & 255));
        }
      }
      EXPECT_GT(distance / n, 30.0) << kSkinNames[a] << " and " << kSkinNames[b];
    }
  }
}

TEST_F(ArtworkTest, KeyImagesAreTransparentExactlyWhereTheOtherKeysLie) {
  constexpr int kWhiteTop = 317;
  auto underBlackKey = [](int x, int screenY) {
    for (const LayoutControl& c : mainPanel()) {
      if (c.kind == ControlKind::BlackKey && x >= c.rect.left && x < c.rect.right &&
          screenY >= c.rect.top && screenY < c.rect.bottom)
        return true;
    }
    return false;
  };
  for (const LayoutControl& c : mainPanel()) {
    for (int frame = 0; frame < 2; ++frame) {
      if (c.kind == ControlKind::WhiteKey) {
        for (int y = 0; y < kWhiteKeyImageHeight; ++y)
          for (int x = c.rect.left; x < c.rect.right; ++x)
            ASSERT_EQ(pixel(bitmap::kWhiteKeys, x, frame * kWhiteKeyImageHeight + y) == kGreen,
                      underBlackKey(x, kWhiteTop + y))
                << "white key " << c.tag << " at " << x << ", " << y << " frame " << frame;
      } else if (c.kind == ControlKind::BlackKey) {
        for (int y = 0; y < kBlackKeyImageHeight; ++y)
          for (int x = c.rect.left; x < c.rect.right; ++x)
            ASSERT_NE(pixel(bitmap::kBlackKeys, x, frame * kBlackKeyImageHeight + y), kGreen)
                << "black key " << c.tag << " at " << x << ", " << y;
      }
    }
  }
  // Knob handles: transparent white at the corners, a visible dot inside.
  EXPECT_EQ(pixel(bitmap::kSmallHandle, 0, 0), 0xffffffu);
  EXPECT_NE(pixel(bitmap::kSmallHandle, 2, 2), 0xffffffu);
  EXPECT_EQ(pixel(bitmap::kLargeHandle, 0, 0), 0xffffffu);
  EXPECT_NE(pixel(bitmap::kLargeHandle, 3, 3), 0xffffffu);
  // The light: dark frame above, lit below, green outside the lamp.
  EXPECT_EQ(pixel(bitmap::kLight, 0, 0), kGreen);
  EXPECT_GT(luminance(pixel(bitmap::kLight, 6, 18)), luminance(pixel(bitmap::kLight, 6, 6)) * 3);
}

// A change of the pictures, at both scales, must be deliberate: update the
// sum with it (and docs/skins.png with scripts/make-skins-sheet.sh).
TEST_F(ArtworkTest, GeneratorOutputIsUnchanged) {
  uint64_t hash = 1469598103934665603ull;
  for (const EmbeddedPicture& p : embeddedPictures()) {
    for (uint32_t pixel : decodePicture(p)) {
      for (int shift : {0, 8, 16}) hash = (hash ^ (pixel >> shift & 255)) * 1099511628211ull;
    }
  }
  EXPECT_EQ(hash, 9808190781084466391ull);
}

}  // namespace
