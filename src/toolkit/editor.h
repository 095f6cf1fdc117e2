// AEffGUIEditor: the plug-in editor's bond with the host and the toolkit. The
// host's editor opcodes arrive through the dispatch operations, which keep
// the host's thread and the frame's fallback pump apart; a derived editor
// overrides open, close, idle and the key operations.
#pragma once

#include <cstdint>

#include "host/aeff_editor.h"
#include "host/vst2.h"

namespace sablevox {
class AudioEffect;
}

namespace VSTGUI {

class CFrame;

// The knob mode, one for the process.
extern long knobMode;

class AEffGUIEditor : public sablevox::AEffEditor {
 public:
  // effect may be null (the development viewer); otherwise the editor
  // registers itself with it.
  explicit AEffGUIEditor(sablevox::AudioEffect* effect);
  ~AEffGUIEditor() override;

  bool getRect(ERect** rect) override;
  // Base: marks for update and stores the window; a derived editor then
  // creates its frame (see setFrame).
  bool open(void* window) override;
  void close() override {}
  // Base: the update flag, then the frame's paint pass; nothing while the
  // host is being idled from doIdleStuff.
  void idle() override;
  virtual void update() {}
  virtual void postUpdate() { updateFlag = true; }
  bool onKeyDown(VstKeyCode& key) override;
  bool onKeyUp(VstKeyCode& key) override;
  bool setKnobMode(VstInt32 mode) override;
  virtual bool onWheel(float distance);
  virtual void setParameter(VstInt32 /*index*/, float /*value*/) {}
  // Repaints the frame's dirty views and gives the host some time; at most
  // every 100 ms.
  virtual void doIdleStuff();

  bool dispatchOpen(void* window) override;
  void dispatchClose() override;
  void dispatchIdle() override;
  bool dispatchKey(VstKeyCode& key, bool down) override;
  void detach() override;

  CFrame* getFrame() const { return frame; }
  // Takes a new frame, giving the old one up.
  void setFrame(CFrame* newFrame);
  sablevox::AudioEffect* getEffect() const { return effect; }
  bool beginEdit(long tag);
  bool endEdit(long tag);
  // True if the host resized the window on its own ("sizeWindow").
  bool hostResizes(int width, int height);
  void setRect(int width, int height);

 protected:
  sablevox::AudioEffect* effect;
  void* systemWindow = nullptr;
  bool updateFlag = false;
  ERect rect{0, 0, 0, 0};
  CFrame* frame = nullptr;
  int64_t lastTicks = 0;
  bool inIdleStuff = false;
};

}  // namespace VSTGUI
