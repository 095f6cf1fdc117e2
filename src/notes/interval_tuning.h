// The pitch factor of a new note, bent against the notes that already sound
// (the IQM setting): octaves are spread apart a little, thirds and sixths
// move towards just intonation.
#pragma once

#include "voice/voice.h"

namespace sablevox {

// IQM values: 0 off, 1 light, 2 heavy, 3 pure. Any other value skips the
// interval step (and the octave step, which only light and heavy take).
constexpr float kOctaveRatioUp = 1.003f;
constexpr float kOctaveRatioDown = 0.997f;

// voices[0..count-1] are the active voices; idle ones (ampState 0) are not
// looked at. The voice that takes the new note may be among them: it differs
// from the note by zero and so counts for neither step.
float intervalTuneRatio(const Voice* voices, int count, int note, int iqm);

}  // namespace sablevox
