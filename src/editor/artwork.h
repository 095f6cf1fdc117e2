// The editor's bitmaps, drawn at build time by tools/artgen and embedded as
// PNG streams. registerArtwork() decodes them and hands them to the toolkit
// under their numbers, so that CBitmap(number) finds them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace sablevox::editor {

struct EmbeddedPicture {
  int id;
  int scale;  // 1, or 2 for the double-size drawing of the same picture
  int width;  // pixels of this drawing
  int height;
  size_t offset;  // into embeddedArtworkBytes()
  size_t size;
};

std::span<const EmbeddedPicture> embeddedPictures();
const unsigned char* embeddedArtworkBytes();
size_t embeddedArtworkSize();

// Opaque 0xAARRGGBB pixels of one picture; empty if its stream is bad.
std::vector<uint32_t> decodePicture(const EmbeddedPicture& picture);

// Decodes one picture, once, and registers it with the toolkit under its
// number. False if there is no such picture or its stream is bad. The editor
// loads what a panel needs (about 10 ms for a skin with keys, handles and
// light); decoding all of them takes six times as long. User-interface
// thread only.
bool loadPicture(int id);
// Every picture; false if any failed.
bool registerArtwork();

}  // namespace sablevox::editor
