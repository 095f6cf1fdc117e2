// The editor's face toward the frame: the frame forwards the host's editor
// opcodes to the dispatch operations, which by default call the operations
// of the same names; an editor with threads of its own serialises there.
// Called on the host's user-interface thread only.
#pragma once

#include "host/vst2.h"

namespace sablevox {

class AEffEditor {
 public:
  virtual ~AEffEditor() = default;
  virtual bool getRect(ERect** rect) = 0;
  virtual bool open(void* parentWindow) = 0;
  virtual void close() = 0;
  virtual void idle() {}
  virtual bool onKeyDown(VstKeyCode& /*key*/) { return false; }
  virtual bool onKeyUp(VstKeyCode& /*key*/) { return false; }
  virtual bool setKnobMode(VstInt32 /*mode*/) { return false; }

  virtual bool dispatchOpen(void* parentWindow) { return open(parentWindow); }
  virtual void dispatchClose() { close(); }
  virtual void dispatchIdle() { idle(); }
  virtual bool dispatchKey(VstKeyCode& key, bool down) {
    return down ? onKeyDown(key) : onKeyUp(key);
  }
  // Called before the editor is deleted, while it is still whole: stops
  // whatever of it runs on threads of its own.
  virtual void detach() {}
};

}  // namespace sablevox
