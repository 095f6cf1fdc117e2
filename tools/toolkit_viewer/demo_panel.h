// The viewer's editor: a frame with every control kind of the toolkit, and
// a listener that shows the last change.
#pragma once

#include "toolkit/control.h"
#include "toolkit/editor.h"

namespace VSTGUI {
class CTextEdit;
class CMovieBitmap;
class CParamDisplay;
class COptionMenu;
}  // namespace VSTGUI

namespace viewer {

class DemoEditor : public VSTGUI::AEffGUIEditor, public VSTGUI::CControlListener {
 public:
  // With controls > 0: a frame of that many kick buttons instead of the demo
  // panel (for measurements).
  explicit DemoEditor(int controls = 0);
  bool open(void* window) override;
  void idle() override;
  void valueChanged(VSTGUI::CDrawContext* context, VSTGUI::CControl* control) override;

  VSTGUI::COptionMenu* waveMenu() const { return waves; }
  VSTGUI::COptionMenu* filterMenu() const { return filters; }
  // Switches, the light and a key on, the text field editing: every
  // control in its other state, for a picture.
  void showOtherStates();
  VSTGUI::CControl* firstControl() const { return first; }

 private:
  void buildDemo();
  void buildGrid();

  int gridControls;
  VSTGUI::CMovieBitmap* light = nullptr;
  VSTGUI::CParamDisplay* display = nullptr;
  VSTGUI::COptionMenu* waves = nullptr;
  VSTGUI::COptionMenu* filters = nullptr;
  VSTGUI::CControl* onOff = nullptr;
  VSTGUI::CControl* hide = nullptr;
  VSTGUI::CControl* key = nullptr;
  VSTGUI::CTextEdit* text = nullptr;
  VSTGUI::CControl* first = nullptr;
  int lightHold = 0;
};

}  // namespace viewer
