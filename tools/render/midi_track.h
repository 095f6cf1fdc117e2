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

// What a repair is about: with the track, the key that groups repeats. A
// system message's code is its status byte.
enum RepairCode : unsigned {
  kLongDelta = 0x100,
  kNoStatus,
  kRunningAfterMeta,
  kBadTempo,
  kBrokenMessage,
  kTrackLength,
  kCutShort,
  kNoEndOfTrack,
  kEarlyEnd,
  kPrefix,
  kHeaderLength,
  kUnknownFormat,
  kZeroDivision,
  kTrailingBytes,
  kGarbage,
  kChunkPastEnd,
  kTrackCount,
  kFormat0Tracks,
};

// The warnings of one file. Repeats of one kind of repair (the same system
// message in the same track, say) make one line that counts them, and the
// number of lines is capped, so that a file of a million stray clock bytes
// cannot flood the terminal or the memory. The texts are made only when
// used: fuzzed input repairs something at almost every byte.
class MidiRepairs {
 public:
  MidiRepairs(MidiReading reading, std::vector<std::string>& warnings, std::string& error)
      : strict_(reading == MidiReading::strict), warnings_(warnings), error_(error) {}
  ~MidiRepairs();  // hands the lines over to `warnings`
  MidiRepairs(const MidiRepairs&) = delete;
  MidiRepairs& operator=(const MidiRepairs&) = delete;

  // Records a departure from the format in `track` (-1: the file's framing).
  // Reading strictly, a departure whose `refusal()` text is not empty stops
  // the reading: false, and the error is that text. Otherwise `warning()`
  // makes the line, unless one of the same code and track is there.
  template <typename Refusal, typename Warning>
  bool note(int track, unsigned code, const Refusal& refusal, const Warning& warning) {
    if (strict_) {
      std::string text = refusal();
      if (!text.empty()) {
        error_ = std::move(text);
        return false;
      }
    }
    const uint64_t kind = (static_cast<uint64_t>(track + 1) << 16) | code;
    for (Line& line : lines_) {
      if (line.kind == kind) {
        ++line.repeats;
        return true;
      }
    }
    if (lines_.size() < kMaxLines) {
      lines_.push_back({kind, warning(), 0});
    } else {
      ++unlisted_;
    }
    return true;
  }

 private:
  static constexpr size_t kMaxLines = 40;
  struct Line {
    uint64_t kind;
    std::string text;
    int64_t repeats;
  };
  bool strict_;
  std::vector<std::string>& warnings_;
  std::string& error_;
  std::vector<Line> lines_;
  int64_t unlisted_ = 0;
};

// "track N: ", made only when a message needs it.
struct TrackLabel {
  int track;  // from 0
  std::string operator()() const { return "track " + std::to_string(track + 1) + ": "; }
};

// For a repair that strict reading makes too (and reports).
inline std::string noRefusal() {
  return {};
}

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
