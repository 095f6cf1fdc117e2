// The doors of a key into the engine: with the arpeggiator on, keys go into
// its tables and its tick plays them; with it off, straight to the voices.
// The sustain pedal holds key-ups on either road. Audio thread (MIDI, and the
// editor's keyboard through the user-interface queue).
#include <algorithm>
#include <cstring>

#include "host/adelay.h"
#include "notes/note_fold.h"

namespace sablevox {

void ADelay::arpNoteOn(int note, int velocity, bool active) {
  // Folded here already, so that the key tables are indexed in range;
  // noteOn's own fold then changes nothing.
  note = foldNote(note);
  if (!active) {
    noteOn(note, velocity);
    return;
  }
  if (std::find(arpKeys, arpKeys + kKeys, true) == arpKeys + kKeys) {
    // First key of a phrase: step 0 plays at the next tick.
    arpPosition = 0;
    arpLastStep = -1;
    arpVelocity = static_cast<uint8_t>(std::clamp(velocity, 0, 127));
  }
  // Chord modes: the key sounds alone until the next tick expands it.
  if (arpChordMode) std::memset(arpKeys, 0, sizeof arpKeys);
  arpKeys[note] = true;
  arpHeldKeys[note] = true;
}

void ADelay::arpNoteOff(int note, bool active) {
  note = foldNote(note);
  if (sustainOn) {
    sustainedKeys[note] = true;
    return;
  }
  if (!active) {
    noteOff(note);
    return;
  }
  if (!arpChordMode) {
    arpKeys[note] = false;
    return;
  }
  arpHeldKeys[note] = false;
  if (std::find(arpHeldKeys, arpHeldKeys + kKeys, true) == arpHeldKeys + kKeys) {
    std::memset(arpKeys, 0, sizeof arpKeys);
  }
}

}  // namespace sablevox
