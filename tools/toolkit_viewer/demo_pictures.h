// Pictures for the viewer, drawn in code and registered under resource
// numbers, as the editor's artwork will be.
#pragma once

namespace viewer {

enum PictureId {
  kPanel = 9500,      // 609 x 441 background
  kButton = 9501,     // 11 x 22: off above, on below
  kSwitch = 9502,     // 12 x 24: off above, on below
  kLight = 9503,      // 13 x 24: dark above, lit below, key colour (0, 255, 0)
  kWhiteKeys = 9504,  // 21 x 212: released above, pressed below
};

void registerPictures();

}  // namespace viewer
