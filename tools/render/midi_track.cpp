// Reading one track chunk: delta times, running status, meta and system
// exclusive events, and the repairs of stray or broken bytes.
#include "render/midi_track.h"

#include <algorithm>
#include <cstdio>

namespace sablevox::render {
namespace {

constexpr uint32_t kDefaultMicrosPerQuarter = 500000;  // 120 BPM

// Reads from a byte range; every read checks the end, and the first failure
// sticks.
class ByteReader {
 public:
  ByteReader(std::span<const unsigned char> bytes, size_t base) : bytes_(bytes), base_(base) {}

  bool atEnd() const { return position_ >= bytes_.size(); }
  size_t offset() const { return base_ + position_; }  // in the whole file
  size_t left() const { return bytes_.size() - position_; }
  bool failed() const { return failed_; }

  unsigned char byte() {
    if (position_ >= bytes_.size()) {
      failed_ = true;
      return 0;
    }
    return bytes_[position_++];
  }
  // The next byte, or 0xFF (a status byte) at the end.
  unsigned char peek() const { return position_ < bytes_.size() ? bytes_[position_] : 0xFF; }
  // At most four bytes, as the format allows (values below 2^28); a longer
  // one sets `overlong` instead of failing.
  uint32_t variable(bool& overlong) {
    uint32_t value = 0;
    for (int i = 0; i < 4; ++i) {
      const unsigned char next = byte();
      value = (value << 7) | (next & 0x7Fu);
      if ((next & 0x80u) == 0) return value;
    }
    overlong = !failed_;
    return value;
  }
  void skip(size_t count) {
    if (count > left()) {
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

int dataBytesOf(unsigned char status) {
  const int kind = status >> 4;
  return kind == 0xC || kind == 0xD ? 1 : 2;
}

// Data bytes after a system common or real-time status byte.
int systemDataBytesOf(unsigned char status) {
  if (status == 0xF1 || status == 0xF3) return 1;
  return status == 0xF2 ? 2 : 0;
}

bool skippedSystemMessage(MidiRepairs& repairs, int track, unsigned char status, size_t offset) {
  const TrackLabel where{track};
  return repairs.note(
      track, status,
      [&] {
        return where() + "system message " + hexByte(status) + " is not allowed in a file" +
               byteOffset(offset);
      },
      [&] { return where() + "skipped system message " + hexByte(status) + byteOffset(offset); });
}

}  // namespace

std::string byteOffset(size_t offset) {
  return " at byte " + std::to_string(offset);
}

std::string hexByte(unsigned value) {
  char text[8];
  std::snprintf(text, sizeof text, "0x%02X", value & 0xFFu);
  return text;
}

MidiRepairs::~MidiRepairs() {
  for (const Line& line : lines_) {
    warnings_.push_back(line.repeats == 0 ? line.text
                                          : line.text + " (and " + std::to_string(line.repeats) +
                                                " more like it)");
  }
  if (unlisted_ > 0) warnings_.push_back(std::to_string(unlisted_) + " more repairs not listed");
}

bool parseTrack(std::span<const unsigned char> region, size_t base, int track, int64_t firstTick,
                MidiFile& file, MidiRepairs& repairs, TrackEnd& end) {
  ByteReader in(region, base);
  const TrackLabel where{track};
  int64_t tick = firstTick;
  unsigned char running = 0;        // 0: no running status
  bool interrupted = false;         // a meta or SysEx event came since `running` was set
  bool statusWithoutDelta = false;  // a message broken off by a status byte: that byte follows
  end = {false, false, base, firstTick};
  while (!in.atEnd()) {
    const size_t eventStart = in.offset();
    if (!statusWithoutDelta) {
      bool overlong = false;
      tick += in.variable(overlong);
      if (overlong) {
        return repairs.note(
            track, kLongDelta, [&] { return where() + "bad delta time" + byteOffset(eventStart); },
            [&] {
              return where() + "delta time longer than four bytes" + byteOffset(eventStart) +
                     "; the rest of the track is skipped";
            });
      }
    }
    statusWithoutDelta = false;
    const size_t statusAt = in.offset();
    unsigned char status = in.peek();
    if (in.failed() || in.atEnd()) {
      end.cutShort = true;
      return true;
    }
    if (status >= 0x80) {
      in.byte();
    } else if (running == 0) {
      const size_t stray = statusAt;
      while (!in.atEnd() && in.peek() < 0x80) in.byte();
      if (!repairs.note(
              track, kNoStatus,
              [&] { return where() + "data byte without a status byte" + byteOffset(stray); },
              [&] {
                return where() + "skipped data bytes without a status byte" + byteOffset(stray);
              }))
        return false;
      statusWithoutDelta = true;
      continue;
    } else {
      status = running;
      if (interrupted &&
          !repairs.note(
              track, kRunningAfterMeta,
              [&] { return where() + "data byte without a status byte" + byteOffset(statusAt); },
              [&] {
                return where() + "running status " + hexByte(status) +
                       " continued after a meta or system exclusive event" + byteOffset(statusAt);
              }))
        return false;
      interrupted = false;
    }
    end.tick = std::max(end.tick, tick);
    if (status == 0xFF || status == 0xF0 || status == 0xF7) {
      const unsigned char type = status == 0xFF ? in.byte() : 0;
      bool overlong = false;
      const uint32_t length = in.variable(overlong);
      if (in.failed() || overlong || length > in.left()) {
        end.cutShort = true;
        return true;
      }
      interrupted = running != 0;
      if (status == 0xFF && type == 0x51) {
        // A bad tempo event is tolerated even when reading strictly, as it
        // always was: it is set right and reported.
        if (length != 3) {
          in.skip(length);
          if (!repairs.note(track, kBadTempo, noRefusal, [&] {
                return where() + "ignored a tempo event of " + std::to_string(length) + " bytes" +
                       byteOffset(statusAt);
              }))
            return false;
        } else {
          uint32_t micros = 0;
          for (int i = 0; i < 3; ++i) micros = (micros << 8) | in.byte();
          if (micros == 0) {
            if (!repairs.note(track, kBadTempo, noRefusal, [&] {
                  return where() + "tempo of zero" + byteOffset(statusAt) +
                         "; 120 BPM used instead";
                }))
              return false;
            micros = kDefaultMicrosPerQuarter;
          }
          file.tempos.push_back({tick, micros});
        }
      } else {
        in.skip(length);
      }
      end.offset = in.offset();
      if (status == 0xFF && type == 0x2F) {
        end.endOfTrack = true;
        return true;
      }
    } else if (status >= 0xF0) {
      for (int i = systemDataBytesOf(status); i > 0 && in.peek() < 0x80; --i) in.byte();
      end.offset = in.offset();
      if (!skippedSystemMessage(repairs, track, status, statusAt)) return false;
    } else {
      running = status;
      interrupted = false;
      MidiFileEvent event{tick, track, {status, 0, 0}, 1 + dataBytesOf(status)};
      for (size_t filled = 1; filled < static_cast<size_t>(event.size);) {
        if (in.atEnd()) {
          end.cutShort = true;
          return true;
        }
        const size_t at = in.offset();
        const unsigned char next = in.peek();
        if (next < 0x80) {
          event.bytes[filled++] = in.byte();
        } else if (next >= 0xF8 && next != 0xFF) {
          // A real-time byte may fall inside a message, as on a MIDI cable.
          in.byte();
          if (!skippedSystemMessage(repairs, track, next, at)) return false;
        } else {
          statusWithoutDelta = true;
          break;
        }
      }
      if (statusWithoutDelta) {
        if (!repairs.note(
                track, kBrokenMessage,
                [&] { return where() + "status byte inside a message" + byteOffset(in.offset()); },
                [&] {
                  return where() + "dropped the incomplete message " + hexByte(status) +
                         byteOffset(statusAt);
                }))
          return false;
        continue;
      }
      if ((status >> 4) == 0x9 && event.bytes[2] == 0) event.bytes[0] = 0x80 | (status & 0x0F);
      file.events.push_back(event);
      end.offset = in.offset();
    }
  }
  return true;
}

}  // namespace sablevox::render
