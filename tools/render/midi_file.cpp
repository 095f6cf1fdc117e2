// Parsing of Standard MIDI Files: header, track chunks, running status.
#include "render/midi_file.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace sablevox::render {
namespace {

// Reads big-endian fields and variable-length quantities from a byte range;
// every read checks the end, and the first failure sticks.
class ByteReader {
 public:
  ByteReader(std::span<const unsigned char> bytes, size_t base) : bytes_(bytes), base_(base) {}

  bool atEnd() const { return position_ >= bytes_.size(); }
  size_t offset() const { return base_ + position_; }  // in the whole file
  bool failed() const { return failed_; }

  uint32_t fixed(int count) {
    uint32_t value = 0;
    for (int i = 0; i < count; ++i) value = (value << 8) | byte();
    return value;
  }
  unsigned char byte() {
    if (position_ >= bytes_.size()) {
      failed_ = true;
      return 0;
    }
    return bytes_[position_++];
  }
  unsigned char peek() const { return position_ < bytes_.size() ? bytes_[position_] : 0; }
  // At most four bytes, as the format allows (values below 2^28).
  uint32_t variable() {
    uint32_t value = 0;
    for (int i = 0; i < 4; ++i) {
      const unsigned char next = byte();
      value = (value << 7) | (next & 0x7Fu);
      if ((next & 0x80u) == 0) return value;
    }
    failed_ = true;
    return value;
  }
  void skip(uint32_t count) {
    if (count > bytes_.size() - position_) {
      position_ = bytes_.size();
      failed_ = true;
      return;
    }
    position_ += count;
  }

 private:
  std::span<const unsigned char> bytes_;
  size_t base_;
  size_t position_ = 0;
  bool failed_ = false;
};

std::string at(size_t offset) {
  return " (byte " + std::to_string(offset) + ")";
}

int dataBytesOf(unsigned char status) {
  const int kind = status >> 4;
  return kind == 0xC || kind == 0xD ? 1 : 2;
}

// One MTrk chunk's events into the file; false with a message on failure.
bool parseTrack(ByteReader& in, int track, MidiFile& file, std::string& error) {
  int64_t tick = 0;
  unsigned char running = 0;  // 0: no running status
  const std::string where = "track " + std::to_string(track + 1);
  while (!in.atEnd()) {
    const size_t eventStart = in.offset();
    tick += in.variable();
    unsigned char status = in.peek();
    if (status >= 0x80) {
      in.byte();
    } else if (running != 0) {
      status = running;
    } else if (!in.failed()) {
      error = where + ": data byte without a status byte" + at(in.offset());
      return false;
    }
    if (in.failed()) break;
    file.lastTick = std::max(file.lastTick, tick);
    if (status == 0xFF) {
      running = 0;
      const unsigned char type = in.byte();
      const uint32_t length = in.variable();
      if (type == 0x51 && length == 3) {
        file.tempos.push_back({tick, in.fixed(3)});
      } else {
        in.skip(length);
      }
      if (type == 0x2F) break;  // end of track
    } else if (status == 0xF0 || status == 0xF7) {
      running = 0;
      in.skip(in.variable());
    } else if (status >= 0xF0) {
      error = where + ": system message " + std::to_string(status) + " is not allowed in a file" +
              at(eventStart);
      return false;
    } else {
      running = status;
      MidiFileEvent event{tick, track, {status, 0, 0}, 1 + dataBytesOf(status)};
      for (int i = 1; i < event.size; ++i) {
        event.bytes[static_cast<size_t>(i)] = in.byte();
        if (!in.failed() && event.bytes[static_cast<size_t>(i)] >= 0x80) {
          error = where + ": status byte inside a message" + at(in.offset() - 1);
          return false;
        }
      }
      if ((status >> 4) == 0x9 && event.bytes[2] == 0) event.bytes[0] = 0x80 | (status & 0x0F);
      if (!in.failed()) file.events.push_back(event);
    }
    if (in.failed()) break;
  }
  if (in.failed()) {
    error = where + ": truncated, the data ends inside an event" + at(in.offset());
    return false;
  }
  return true;  // a missing end-of-track event is forgiven
}

}  // namespace

bool parseMidiFile(std::span<const unsigned char> bytes, MidiFile& file, std::string& error) {
  file = MidiFile{};
  ByteReader in(bytes, 0);
  if (in.fixed(4) != 0x4D546864u) {  // "MThd"
    error = "not a Standard MIDI File: no MThd header";
    return false;
  }
  const uint32_t headerLength = in.fixed(4);
  file.format = static_cast<int>(in.fixed(2));
  const int declaredTracks = static_cast<int>(in.fixed(2));
  const uint32_t division = in.fixed(2);
  if (headerLength >= 6) in.skip(headerLength - 6);
  if (in.failed() || headerLength < 6) {
    error = "truncated MIDI file: the header is incomplete";
    return false;
  }
  if (file.format > 1) {
    error = "MIDI file format " + std::to_string(file.format) + " is not supported (only 0 and 1)";
    return false;
  }
  if ((division & 0x8000u) != 0) {
    const int frames = 256 - static_cast<int>(division >> 8);
    file.smpteFramesPerSecond = frames == 29 ? 29.97 : frames;
    file.smpteTicksPerFrame = static_cast<int>(division & 0xFF);
  } else {
    file.ticksPerQuarter = static_cast<int>(division);
  }
  if (division == 0 || (file.smpteFramesPerSecond > 0 && file.smpteTicksPerFrame == 0)) {
    error = "bad MIDI file: time division is zero";
    return false;
  }
  while (file.trackCount < declaredTracks) {
    const size_t chunkStart = in.offset();
    const uint32_t type = in.fixed(4);
    const uint32_t length = in.fixed(4);
    if (in.failed()) {
      error = "truncated MIDI file: " + std::to_string(declaredTracks) + " tracks declared, " +
              std::to_string(file.trackCount) + " found" + at(chunkStart);
      return false;
    }
    if (length > bytes.size() - in.offset()) {
      error = "truncated MIDI file: a chunk of " + std::to_string(length) +
              " bytes runs past the end" + at(chunkStart);
      return false;
    }
    if (type != 0x4D54726Bu) {  // not "MTrk": skip unknown chunks
      in.skip(length);
      continue;
    }
    ByteReader track(bytes.subspan(in.offset(), length), in.offset());
    if (!parseTrack(track, file.trackCount, file, error)) return false;
    in.skip(length);
    ++file.trackCount;
  }
  std::stable_sort(file.events.begin(), file.events.end(),
                   [](const MidiFileEvent& a, const MidiFileEvent& b) {
                     return a.tick != b.tick ? a.tick < b.tick : a.track < b.track;
                   });
  std::stable_sort(file.tempos.begin(), file.tempos.end(),
                   [](const TempoChange& a, const TempoChange& b) { return a.tick < b.tick; });
  return true;
}

bool readMidiFile(const std::string& path, MidiFile& file, std::string& error) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) {
    error = "cannot read MIDI file " + path;
    return false;
  }
  const std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(stream)),
                                         std::istreambuf_iterator<char>());
  if (!parseMidiFile(bytes, file, error)) {
    error = path + ": " + error;
    return false;
  }
  return true;
}

}  // namespace sablevox::render
