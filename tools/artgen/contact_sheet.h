// Pictures of whole panels as a user sees them: a skin with the keys, the
// knob handles at their defaults, the light and the menus' colour fields
// laid over it, for README and docs/skins.png.
#pragma once

#include <string>

namespace sablevox::artgen {

bool writePanelPreview(int skin, const std::string& path);  // skin -1: the settings panel
bool writeContactSheet(const std::string& path);

}  // namespace sablevox::artgen
