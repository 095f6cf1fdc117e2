#include "toolkit/platform/x11/x11_input.h"

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include "toolkit/draw_context.h"

namespace VSTGUI::x11 {
namespace {

long buttonBit(unsigned int button) {
  switch (button) {
    case Button1:
      return kLButton;
    case Button2:
      return kMButton;
    case Button3:
      return kRButton;
    default:
      return 0;
  }
}

}  // namespace

long buttonsFromState(unsigned int state, unsigned int button, bool pressed) {
  long b = 0;
  if ((state & Button1Mask) != 0) b |= kLButton;
  if ((state & Button2Mask) != 0) b |= kMButton;
  if ((state & Button3Mask) != 0) b |= kRButton;
  if ((state & ShiftMask) != 0) b |= kShift;
  if ((state & ControlMask) != 0) b |= kControl;
  if ((state & Mod1Mask) != 0) b |= kAlt;
  if (pressed) {
    b |= buttonBit(button);
  } else {
    b &= ~buttonBit(button);
  }
  return b;
}

bool keyFromEvent(XKeyEvent& event, VstKeyCode& key) {
  char text[8] = {};
  KeySym sym = NoSymbol;
  const int length = XLookupString(&event, text, sizeof text, &sym, nullptr);
  key = {0, 0, 0};
  if ((event.state & ShiftMask) != 0) key.modifier |= MODIFIER_SHIFT;
  if ((event.state & Mod1Mask) != 0) key.modifier |= MODIFIER_ALTERNATE;
  if ((event.state & ControlMask) != 0) key.modifier |= MODIFIER_CONTROL;
  switch (sym) {
    case XK_BackSpace:
      key.virt = VKEY_BACK;
      return true;
    case XK_Tab:
      key.virt = VKEY_TAB;
      return true;
    case XK_Return:
      key.virt = VKEY_RETURN;
      return true;
    case XK_KP_Enter:
      key.virt = VKEY_ENTER;
      return true;
    case XK_Escape:
      key.virt = VKEY_ESCAPE;
      return true;
    case XK_Delete:
      key.virt = VKEY_DELETE;
      return true;
    case XK_Home:
      key.virt = VKEY_HOME;
      return true;
    case XK_End:
      key.virt = VKEY_END;
      return true;
    case XK_Left:
      key.virt = VKEY_LEFT;
      return true;
    case XK_Right:
      key.virt = VKEY_RIGHT;
      return true;
    case XK_Up:
      key.virt = VKEY_UP;
      return true;
    case XK_Down:
      key.virt = VKEY_DOWN;
      return true;
    case XK_Page_Up:
      key.virt = VKEY_PAGEUP;
      return true;
    case XK_Page_Down:
      key.virt = VKEY_PAGEDOWN;
      return true;
    default:
      break;
  }
  if (length == 1 && static_cast<unsigned char>(text[0]) >= 32) {
    key.character = static_cast<unsigned char>(text[0]);
    if (key.character == ' ') key.virt = 0;
    return true;
  }
  return false;
}

}  // namespace VSTGUI::x11
