// The events of one MTrk chunk, read the way tolerant players read them, and
// the record of every repair the reader makes to a file that bends the rules.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "render/midi_file.h"

namespace sablevox::render {

// The warnings of one file. Repeats of one kind of repair (the same system
// message in the same track, say) make one line that counts them, and the
// number of lines is capped, so that a file of a million stray clock bytes
// cannot flood the terminal or the memory.
class MidiRepairs {
 public:
  MidiRepairs(MidiReading reading, std::vector<std::string>& warnings, std::string& error)
      : strict_(reading == MidiReading::strict), warnings_(warnings), error_(error) {}
  ~MidiRepairs();
  MidiRepairs(const MidiRepairs&) = delete;
  MidiRepairs& operator=(const MidiRepairs&) = delete;

  // Records a departure from the format. Reading strictly, a departure with
  // a refusal text stops the reading: false, and the error is that text.
  // Otherwise the warning is kept; `kind` groups repeats.
  bool note(const std::string& kind, const std::string& refusal, const std::string& warning);

 private:
  static constexpr size_t kMaxLines = 40;
  struct Line {
    std::string kind;
    std::string text;
    int64_t repeats;
  };
  bool strict_;
  std::vector<std::string>& warnings_;
  std::string& error_;
  std::vector<Line> lines_;
  int64_t unlisted_ = 0;
};

// Where a track's reading stopped.
struct TrackEnd {
  bool endOfTrack = false;  // an end-of-track event was read
  bool cutShort = false;    // the data ended inside an event
  size_t offset = 0;        // in the file: after the last whole event
  int64_t tick = 0;         // the track's last tick, end of track included
};

// Reads the events of `region` (file bytes from offset `base`) as track
// number `track` (from 0) whose tick 0 is `firstTick`, up to its end-of-track
// event. Channel events and tempo changes are appended to `file`. False only
// when reading strictly and a departure is refused.
bool parseTrack(std::span<const unsigned char> region, size_t base, int track, int64_t firstTick,
                MidiFile& file, MidiRepairs& repairs, TrackEnd& end);

std::string byteOffset(size_t offset);  // " at byte N"
std::string hexByte(unsigned value);    // "0xF4"

}  // namespace sablevox::render
