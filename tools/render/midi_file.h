// Standard MIDI File reader (formats 0 and 1): the channel messages of all
// tracks merged in time order, and the tempo changes, in ticks.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace sablevox::render {

struct MidiFileEvent {
  int64_t tick;
  int track;
  std::array<unsigned char, 3> bytes;  // status, data1, data2 (0 when unused)
  int size;                            // 2 or 3
};

struct TempoChange {
  int64_t tick;
  uint32_t microsPerQuarter;
};

struct MidiFile {
  int format = 0;
  int trackCount = 0;
  // Ticks per quarter note; for SMPTE time, ticks per second is
  // framesPerSecond * ticksPerFrame and tempo changes do not apply.
  int ticksPerQuarter = 0;
  double smpteFramesPerSecond = 0.0;  // 0 for ticks per quarter
  int smpteTicksPerFrame = 0;
  std::vector<MidiFileEvent> events;  // sorted by tick, then track, then file order
  std::vector<TempoChange> tempos;    // sorted by tick; later wins at equal ticks
  int64_t lastTick = 0;               // the latest event of any kind, end of track included
};

// Parses a whole file. Note-on with velocity 0 becomes note-off (velocity 0),
// so that every note ends with an 8n message. System exclusive and meta
// events other than tempo are skipped. Returns false with a message naming
// the problem and its byte offset for a file that is not a Standard MIDI
// File, is of format 2, or ends or breaks inside a chunk or an event.
bool parseMidiFile(std::span<const unsigned char> bytes, MidiFile& file, std::string& error);
bool readMidiFile(const std::string& path, MidiFile& file, std::string& error);

}  // namespace sablevox::render
