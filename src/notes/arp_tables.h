// The arpeggiator's fixed tables: what each ArpType does (walk, chord shape,
// octave row), the octave rows, the chord shapes and the 17 rhythm rows.
#pragma once

#include <array>
#include <cstdint>

namespace sablevox {

constexpr int kArpTypes = 23;    // ArpType's choices, 0 being "off"
constexpr int kArpRhythms = 17;  // ArpRhyt's choices
constexpr int kArpSteps = 32;    // steps of a rhythm row: two beats of 16
constexpr int kArpStepsPerBeat = 16;
constexpr int kArpColumns = 12;  // columns of an octave row

enum class ArpWalk : uint8_t { none, up, down, altUp, altDown, pop, pop2, gate };

struct ArpMode {
  ArpWalk walk;
  uint8_t chord;  // row of kArpChords, 0 for none
  uint8_t row;    // row of kArpOctaveRows
};

// By ArpType index.
inline constexpr ArpMode kArpModes[kArpTypes] = {
    {ArpWalk::none, 0, 0},     // off
    {ArpWalk::up, 0, 0},       // Up
    {ArpWalk::up, 0, 1},       // Up oct
    {ArpWalk::up, 0, 3},       // Up 2oct
    {ArpWalk::up, 0, 6},       // Up 3oct
    {ArpWalk::down, 0, 0},     // Down
    {ArpWalk::down, 0, 2},     // Down oct
    {ArpWalk::down, 0, 4},     // Down 2oct
    {ArpWalk::down, 0, 7},     // Down 3oct
    {ArpWalk::altUp, 0, 0},    // Altup
    {ArpWalk::altDown, 0, 0},  // Altdown
    {ArpWalk::pop, 0, 0},      // Pop
    {ArpWalk::pop2, 0, 0},     // Pop2
    {ArpWalk::gate, 0, 0},     // Gate
    {ArpWalk::altUp, 5, 0},    // 1Finger A
    {ArpWalk::gate, 1, 0},     // 1Finger Chord
    {ArpWalk::down, 6, 7},     // 1Finger C
    {ArpWalk::pop2, 1, 0},     // 1Finger D
    {ArpWalk::up, 1, 1},       // 1Finger E
    {ArpWalk::down, 1, 2},     // 1Finger F
    {ArpWalk::pop, 2, 1},      // 1Finger G
    {ArpWalk::altDown, 3, 0},  // 1Finger H
    {ArpWalk::pop2, 4, 0},     // 1Finger I
};

// Octave offsets by column; no ArpType uses row 5.
inline constexpr int8_t kArpOctaveRows[8][kArpColumns] = {
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},     {0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1},
    {1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0},     {-1, 0, 1, -1, 0, 1, -1, 0, 1, -1, 0, 1},
    {1, 0, -1, 1, 0, -1, 1, 0, -1, 1, 0, -1}, {-1, 0, 1, 0, -1, 0, 1, 0, 0, 1, 0, -1},
    {-1, 0, 1, 2, -1, 0, 1, 2, -1, 0, 1, 2},  {2, 1, 0, -1, 2, 1, 0, -1, 2, 1, 0, -1},
};

// The diatonic third of C major above each pitch class, C upward.
inline constexpr int8_t kThirdAbove[12] = {4, 3, 3, 3, 3, 4, 3, 4, 3, 3, 4, 3};

// A chord shape on the lowest key L: each note is L or its third T = L +
// kThirdAbove[L % 12], plus an interval. The transpose moves every note that
// the mode plays.
struct ArpChordNote {
  bool onThird;
  int8_t interval;
};
struct ArpChord {
  int8_t count;
  int8_t transpose;
  ArpChordNote notes[9];
};

// L(i) is the lowest key plus i semitones, T(i) its third plus i.
inline constexpr std::array<ArpChord, 7> kArpChords = [] {
  constexpr auto L = [](int i) { return ArpChordNote{false, static_cast<int8_t>(i)}; };
  constexpr auto T = [](int i) { return ArpChordNote{true, static_cast<int8_t>(i)}; };
  // clang-format off
  return std::array<ArpChord, 7>{{
      {0, 0, {}},
      {3, 0, {L(0), T(0), L(7)}},
      {4, 0, {L(0), T(0), L(7), L(12)}},
      {6, -12, {L(0), T(0), L(7), L(12), T(12), L(19)}},
      {4, 0, {L(0), L(12), T(12), L(19)}},
      {9, -12, {L(0), T(0), L(7), L(12), T(12), L(19), L(24), T(24), L(31)}},
      {8, -12, {L(0), T(0), L(7), L(12), T(12), L(19), L(24), T(24)}},
  }};
  // clang-format on
}();

// Digits by step: 1 a note step, 2 an off step (ends every note), 0 nothing.
enum ArpDigit : char { kArpRest = '0', kArpNoteStep = '1', kArpOffStep = '2' };
inline constexpr char kArpRhythmRows[kArpRhythms][kArpSteps + 1] = {
    "10002000000000001000200000000000", "10002000100020001000200010002000",
    "10201020102010201020102010201020", "12121212121212121212121212121212",
    "10002000000010002000000010002000", "10200010200010201020001020001020",
    "10002000100020001000000000002000", "10201020100000201020102010000020",
    "10000000000020001000200010002000", "10000020102010201000002010201020",
    "10200000102010200000102010200000", "10000000200000000000000000000000",
    "10000000200000000000100000002000", "10000000200010000000200000000000",
    "10201020000010201020000010201020", "10200000102000102000102012121212",
    "12121020102010200010200010200000",
};

}  // namespace sablevox
