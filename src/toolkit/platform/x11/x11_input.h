// X input events in the toolkit's terms: buttons and modifier bits, and
// keys as VST key codes.
#pragma once

#include <X11/Xlib.h>

#include "host/vst2.h"

namespace VSTGUI::x11 {

// The toolkit's button bits from an event's state, with the event's own
// button added (press) or taken away (release).
long buttonsFromState(unsigned int state, unsigned int button = 0, bool pressed = true);
// False for keys the toolkit has no code for.
bool keyFromEvent(XKeyEvent& event, VstKeyCode& key);

}  // namespace VSTGUI::x11
