#include "test_editor.h"

#include <cstdio>

namespace toolkit_test {
namespace {

VstIntPtr hostCallback(AEffect* /*effect*/, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                       void* ptr, float /*opt*/) {
  switch (opcode) {
    case audioMasterVersion:
      return 2400;
    case audioMasterBeginEdit:
      eventLog().push_back("begin " + std::to_string(index));
      return 1;
    case audioMasterEndEdit:
      eventLog().push_back("end " + std::to_string(index));
      return 1;
    case audioMasterIdle:
      // Hosts may idle the editor from inside this call: it must not run.
      if (reenteringEditor != nullptr) {
        const int before = reenteringEditor->idles;
        reenteringEditor->dispatchIdle();
        eventLog().push_back(reenteringEditor->idles == before ? "masterIdle" : "reentered");
      }
      return 0;
    case audioMasterCanDo:
      return hostCanSizeWindow && std::string(static_cast<const char*>(ptr)) == "sizeWindow";
    case audioMasterSizeWindow:
      eventLog().push_back("size " + std::to_string(index) + "x" + std::to_string(value));
      return hostCanSizeWindow;
    default:
      return 0;
  }
}

}  // namespace

bool hostCanSizeWindow = false;
TestEditor* reenteringEditor = nullptr;

std::vector<std::string>& eventLog() {
  static std::vector<std::string> log;
  return log;
}

TestEffect::TestEffect() : AudioEffectX(hostCallback, 1, 1) {}

TestEditor::TestEditor(sablevox::AudioEffect* effect, int w, int h,
                       std::function<void(TestEditor&)> build)
    : AEffGUIEditor(effect), width(w), height(h), builder(std::move(build)) {
  setRect(w, h);
}

bool TestEditor::open(void* window) {
  AEffGUIEditor::open(window);
  setFrame(new VSTGUI::CFrame(VSTGUI::CRect(0, 0, width, height), window, this));
  getFrame()->setFallbackAfter(fallbackAfterMs);
  if (builder) builder(*this);
  return true;
}

void TestEditor::idle() {
  ++idles;
  AEffGUIEditor::idle();
}

void TestEditor::valueChanged(VSTGUI::CDrawContext* /*context*/, VSTGUI::CControl* control) {
  char text[48];
  std::snprintf(text, sizeof text, "%ld=%g", control->getTag(),
                static_cast<double>(control->getValue()));
  eventLog().push_back(text);
}

}  // namespace toolkit_test
