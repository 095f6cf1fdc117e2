// Notes from the user-interface thread: queued there, played by the audio
// thread at the start of its next tick, before the MIDI events of that tick.
#include "host/adelay.h"

namespace sablevox {

void ADelay::uiNoteOn(int note, int velocity) {
  // A full queue drops the note (see UiNoteQueue::push).
  uiNotes.push(UiNote{true, note, velocity});
}

void ADelay::uiNoteOff(int note) {
  uiNotes.push(UiNote{false, note, 0});
}

void ADelay::drainUiNotes() {
  // At most one queue's worth per tick, so that a producer that never stops
  // can't hold the tick.
  UiNote entry{};
  for (uint32_t i = 0; i < UiNoteQueue::kCapacity && uiNotes.pop(entry); ++i) {
    if (entry.on) {
      arpNoteOn(entry.note, entry.velocity, arpActive);
    } else {
      arpNoteOff(entry.note, arpActive);
    }
  }
}

}  // namespace sablevox
