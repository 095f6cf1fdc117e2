// The demo phrase, note by note: A minor, F, C, G and back to A minor at
// 100 BPM. Pads, basses and leads of the factory banks all have a part to
// play: held three-note chords, a moving bass line an octave and more below,
// and a melody above.
#include "render/demo_phrase.h"

#include "render/midi_writer.h"

namespace sablevox::render {
namespace {

// MIDI keys by name, octave 4 holding middle C (60).
enum Key : int {
  A1 = 33,
  F2 = 41,
  G2 = 43,
  A2 = 45,
  C3 = 48,
  F3 = 53,
  G3 = 55,
  A3 = 57,
  B3 = 59,
  C4 = 60,
  D4 = 62,
  E4 = 64,
  C5 = 72,
  D5 = 74,
  E5 = 76,
  F5 = 77,
  G5 = 79,
  A5 = 81,
  B5 = 83,
  C6 = 84
};

// One chord per bar, held almost to the bar line.
std::vector<Note> chords() {
  const int bars[5][3] = {{A3, C4, E4}, {F3, A3, C4}, {G3, C4, E4}, {G3, B3, D4}, {A3, C4, E4}};
  std::vector<Note> notes;
  for (int bar = 0; bar < 5; ++bar) {
    const double length = bar == 4 ? 4.0 : 3.9;
    for (int key : bars[bar]) notes.push_back({bar * 4.0, length, key, 76});
  }
  return notes;
}

// Root, root again off the beat, octave, fifth: the same figure in each bar.
std::vector<Note> bass() {
  const int roots[4] = {A2, F2, C3, G2};
  std::vector<Note> notes;
  for (int bar = 0; bar < 4; ++bar) {
    const double at = bar * 4.0;
    const int root = roots[bar];
    notes.push_back({at + 0.0, 1.0, root, 100});
    notes.push_back({at + 1.5, 0.5, root, 84});
    notes.push_back({at + 2.0, 0.9, root + 12, 96});
    notes.push_back({at + 3.0, 0.9, root + 7, 90});
  }
  notes.push_back({16.0, 4.0, A1, 100});
  return notes;
}

std::vector<Note> melody() {
  return {
      {0.0, 1.0, E5, 96},  {1.0, 0.5, D5, 84},  {1.5, 0.5, C5, 84},   {2.0, 1.0, E5, 92},
      {3.0, 1.0, A5, 100}, {4.0, 1.5, G5, 96},  {5.5, 0.5, F5, 84},   {6.0, 1.0, E5, 90},
      {7.0, 1.0, C5, 86},  {8.0, 0.5, E5, 90},  {8.5, 0.5, G5, 92},   {9.0, 1.5, C6, 104},
      {10.5, 0.5, B5, 88}, {11.0, 1.0, G5, 92}, {12.0, 1.0, D5, 90},  {13.0, 1.0, G5, 94},
      {14.0, 1.0, B5, 98}, {15.0, 1.0, D5, 88}, {16.0, 4.0, A5, 100},
  };
}

}  // namespace

std::vector<unsigned char> demoPhraseFile() {
  return buildMidiFile({{"Chords", 0, chords()}, {"Bass", 1, bass()}, {"Melody", 2, melody()}},
                       100.0, 480);
}

}  // namespace sablevox::render
