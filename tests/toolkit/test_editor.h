// A plug-in and editor for the toolkit tests: the effect's host calls and
// the controls' listener calls land in one log, in the order they happen.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/audio_effect_x.h"
#include "toolkit/control.h"
#include "toolkit/editor.h"
#include "toolkit/frame.h"

namespace toolkit_test {

std::vector<std::string>& eventLog();
// Whether the test host says it can "sizeWindow" (and does).
extern bool hostCanSizeWindow;
class TestEditor;
// An editor whose idle the test host calls from inside masterIdle.
extern TestEditor* reenteringEditor;

class TestEffect : public sablevox::AudioEffectX {
 public:
  TestEffect();
  // Lets the test run the host's dispatcher as a host would.
  VstIntPtr call(VstInt32 opcode, VstIntPtr value = 0, void* ptr = nullptr, VstInt32 index = 0,
                 float opt = 0.0f) {
    return dispatcher(opcode, index, value, ptr, opt);
  }
};

// Builds a frame of the given size with what build() adds; logs every
// valueChanged as "tag=value".
class TestEditor : public VSTGUI::AEffGUIEditor, public VSTGUI::CControlListener {
 public:
  TestEditor(sablevox::AudioEffect* effect, int width, int height,
             std::function<void(TestEditor&)> build = {});
  bool open(void* window) override;
  void valueChanged(VSTGUI::CDrawContext* context, VSTGUI::CControl* control) override;
  void idle() override;
  int idles = 0;
  // The frame's own pump stays out of the way unless a test wants it.
  int64_t fallbackAfterMs = 1000000;

 private:
  int width;
  int height;
  std::function<void(TestEditor&)> builder;
};

}  // namespace toolkit_test
