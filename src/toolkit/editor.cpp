#include "toolkit/editor.h"

#include <mutex>

#include "host/audio_effect.h"
#include "host/audio_effect_x.h"
#include "toolkit/frame.h"
#include "toolkit/platform/platform.h"

namespace VSTGUI {

long knobMode = 0;

AEffGUIEditor::AEffGUIEditor(sablevox::AudioEffect* owner) : effect(owner) {
  lastTicks = platformTicks();
  if (effect != nullptr) effect->setEditor(this);
}

AEffGUIEditor::~AEffGUIEditor() {
  setFrame(nullptr);
  if (effect != nullptr && effect->getEditor() == this) effect->setEditor(nullptr);
}

bool AEffGUIEditor::getRect(ERect** out) {
  *out = &rect;
  return true;
}

void AEffGUIEditor::setRect(int width, int height) {
  rect = {0, 0, static_cast<VstInt16>(height), static_cast<VstInt16>(width)};
}

bool AEffGUIEditor::open(void* window) {
  updateFlag = true;
  systemWindow = window;
  return true;
}

void AEffGUIEditor::setFrame(CFrame* newFrame) {
  CFrame* old = frame;
  frame = newFrame;
  if (old != nullptr) old->forget();
}

void AEffGUIEditor::idle() {
  if (inIdleStuff) return;
  if (updateFlag) {
    updateFlag = false;
    update();
  }
  if (frame != nullptr) frame->idle();
}

bool AEffGUIEditor::onKeyDown(VstKeyCode& key) {
  return frame != nullptr && frame->onKeyDown(key) == 1;
}

bool AEffGUIEditor::onKeyUp(VstKeyCode& key) {
  return frame != nullptr && frame->onKeyUp(key) == 1;
}

bool AEffGUIEditor::setKnobMode(VstInt32 mode) {
  knobMode = mode;
  return true;
}

bool AEffGUIEditor::onWheel(float distance) {
  if (frame == nullptr) return false;
  auto context = frame->createDrawContext();
  return frame->onWheel(context.get(), frame->getMouseLocation(), distance);
}

// Event-driven mouse handling calls this from the control's handlers; the
// wait of the polling loop it replaces is left out. The host gets its time
// only on its own thread: the frame's fallback thread doesn't call it.
void AEffGUIEditor::doIdleStuff() {
  const int64_t now = platformTicks();
  if (now < lastTicks) return;
  idle();
  lastTicks = now + 100;
  if (effect == nullptr || (frame != nullptr && frame->inFallbackPump())) return;
  inIdleStuff = true;
  effect->masterIdle();
  inIdleStuff = false;
}

bool AEffGUIEditor::beginEdit(long tag) {
  return effect != nullptr && effect->beginEdit(static_cast<VstInt32>(tag));
}

bool AEffGUIEditor::endEdit(long tag) {
  return effect != nullptr && effect->endEdit(static_cast<VstInt32>(tag));
}

bool AEffGUIEditor::hostResizes(int width, int height) {
  auto* x = dynamic_cast<sablevox::AudioEffectX*>(effect);
  if (x == nullptr || !x->canHostDo("sizeWindow")) return false;
  return x->sizeWindow(width, height);
}

// A second open without close replaces the first window. The old frame's
// fallback thread stops before open() replaces the frame, since it may be
// running the editor's idle.
bool AEffGUIEditor::dispatchOpen(void* window) {
  if (frame != nullptr && frame->isOpen()) dispatchClose();
  if (frame != nullptr) frame->closeWindow();
  if (!open(window) || frame == nullptr || !frame->isOpen()) {
    if (frame != nullptr) frame->closeWindow();
    return false;
  }
  frame->startFallbackPump();
  return true;
}

void AEffGUIEditor::dispatchClose() {
  if (frame == nullptr) {
    close();
    return;
  }
  frame->asPump([this] { close(); });
  frame->closeWindow();
}

void AEffGUIEditor::detach() {
  if (frame != nullptr) frame->closeWindow();
}

void AEffGUIEditor::dispatchIdle() {
  if (frame != nullptr) {
    frame->runIdle(true);
  } else {
    idle();
  }
}

bool AEffGUIEditor::dispatchKey(VstKeyCode& key, bool down) {
  if (frame == nullptr) return down ? onKeyDown(key) : onKeyUp(key);
  return frame->asPump([&] { return down ? onKeyDown(key) : onKeyUp(key); });
}

}  // namespace VSTGUI
