// Brings any note number into 0..127: notes above 127 drop by whole octaves
// into 116..127, keeping their pitch class; notes below 0 become 0.
#pragma once

namespace sablevox {

inline int foldNote(int note) {
  if (note > 127) return note - 12 * ((note - 128) / 12) - 12;
  return note < 0 ? 0 : note;
}

}  // namespace sablevox
