// Starting a program apart from the host: no inherited descriptors, not a
// child the host has to reap. Returns at once; false if it couldn't start.
#pragma once

namespace VSTGUI {

bool spawnDetached(const char* const argv[]);

}  // namespace VSTGUI
