// Builds Standard MIDI File bytes (format 1, running status) from notes given
// in beats; the demo phrase is written with it.
#pragma once

#include <string>
#include <vector>

namespace sablevox::render {

struct Note {
  double beat;    // start, in quarter notes from the beginning
  double length;  // in quarter notes
  int key;
  int velocity;
};

struct NoteTrack {
  std::string name;
  int channel;  // 0..15
  std::vector<Note> notes;
};

// Track 0 holds the name, the tempo and 4/4; then one track per NoteTrack.
std::vector<unsigned char> buildMidiFile(const std::vector<NoteTrack>& tracks, double bpm,
                                         int ticksPerQuarter);

}  // namespace sablevox::render
