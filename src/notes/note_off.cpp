// Releasing a note, with the "2 keys" legato that slides back to the first
// key of a phrase and the release pop of EnvVolPo. Audio thread.
#include <algorithm>

#include "host/adelay.h"
#include "notes/note_fold.h"

namespace sablevox {

void ADelay::noteOff(int note) {
  note = foldNote(note);
  keyDown[note] = false;
  const bool legato = steppedIndex(params[kGlMode], 3) == 2;
  const bool anyKeyDown = std::find(keyDown, keyDown + kKeys, true) != keyDown + kKeys;
  const int count = std::clamp(activeVoices, 1, kMaxVoices);

  for (int v = 0; v < count; ++v) {
    Voice& voice = voices[v];
    if (voice.note != note) continue;
    if (legato && anyKeyDown && firstLegatoNote != note) {
      // Another key is still held: stay gated and slide back to the first
      // key of the phrase, without a new attack.
      glideFromNote = voices[0].note;
      voices[0].note = firstLegatoNote;
      glideAmount = 1.0f;
      continue;
    }
    // Release pop: the envelope's attack branch without a gate inverts the
    // sounding level and releases from there.
    if (envVolPop && voice.gate != 0) voice.ampState = kEnvAttack;
    voice.gate = 0;
  }
}

}  // namespace sablevox
