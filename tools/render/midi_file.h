// Standard MIDI File reader (formats 0, 1 and 2): the channel messages of all
// tracks merged in time order (format 2: the tracks one after the other), and
// the tempo changes, in ticks.
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

// Tolerant reading repairs what real-world files bend (stray system bytes,
// running status across meta events, wrong chunk lengths, truncation, junk
// between chunks) and reports each repair; strict reading refuses them.
enum class MidiReading { tolerant, strict };

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
  // One line per repair made (or kind of repair, counted), each naming the
  // byte offset in the file and what was done.
  std::vector<std::string> warnings;
};

// Parses a whole file. Note-on with velocity 0 becomes note-off (velocity 0),
// so that every note ends with an 8n message. System exclusive, unknown
// chunks and meta events other than tempo are skipped. Returns false with a
// message naming the problem (and its byte offset) for input that is not a
// MIDI file at all: no "MThd", a header cut short, no track chunk; reading
// strictly, also for any departure that tolerant reading would repair.
bool parseMidiFile(std::span<const unsigned char> bytes, MidiFile& file, std::string& error,
                   MidiReading reading = MidiReading::tolerant);
// The same for a file; the warnings and the error then begin with its path.
bool readMidiFile(const std::string& path, MidiFile& file, std::string& error,
                  MidiReading reading = MidiReading::tolerant);

}  // namespace sablevox::render
