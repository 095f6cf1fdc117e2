// Parsing of Standard MIDI Files: the header and the chunk framing, and
// finding the next chunk again when a stated length is wrong.
#include "render/midi_file.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "render/midi_track.h"

namespace sablevox::render {
namespace {

using Bytes = std::span<const unsigned char>;

constexpr int kDefaultTicksPerQuarter = 480;
constexpr uint32_t kDefaultMicrosPerQuarter = 500000;  // 120 BPM

// A big-endian field; the caller has checked that it lies inside.
uint32_t fixedAt(Bytes bytes, size_t offset, int count) {
  uint32_t value = 0;
  for (int i = 0; i < count; ++i) value = (value << 8) | bytes[offset + static_cast<size_t>(i)];
  return value;
}

bool tagAt(Bytes bytes, size_t offset, const char* tag) {
  return offset <= bytes.size() && bytes.size() - offset >= 4 &&
         std::memcmp(bytes.data() + offset, tag, 4) == 0;
}

// The first offset at or after `from` where `tag` stands, or the end.
size_t find(Bytes bytes, size_t from, const char* tag) {
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const size_t at = from < text.size() ? text.find(tag, from, 4) : std::string_view::npos;
  return at == std::string_view::npos ? bytes.size() : at;
}

// Whether a chunk header (a type of four letters, digits or blanks, then a
// length) can start at `offset`.
bool chunkAt(Bytes bytes, size_t offset) {
  if (offset > bytes.size() || bytes.size() - offset < 8) return false;
  for (size_t i = 0; i < 4; ++i) {
    const unsigned char c = bytes[offset + i];
    if (std::isalnum(c) == 0 && c != ' ') return false;
  }
  return true;
}

std::string counted(uint64_t count, const char* noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// The header's fields; the position of the first chunk. False when the input
// is not a MIDI file at all, or reading strictly and the header is bent.
bool readHeader(Bytes bytes, MidiFile& file, MidiRepairs& repairs, int& declaredTracks,
                size_t& position, std::string& error) {
  const size_t start = find(bytes, 0, "MThd");
  if (start == bytes.size()) {
    error =
        bytes.empty() ? "not a MIDI file: it is empty" : "not a Standard MIDI File: no MThd header";
    return false;
  }
  if (start > 0 &&
      !repairs.note(
          -1, kPrefix,
          [] { return std::string("not a Standard MIDI File: no MThd header at its start"); },
          [&] { return "skipped " + counted(start, "byte") + " before the MThd header"; }))
    return false;
  if (bytes.size() - start < 14) {
    error = "truncated MIDI file: the header is incomplete";
    return false;
  }
  const uint64_t headerLength = fixedAt(bytes, start + 4, 4);
  file.format = static_cast<int>(fixedAt(bytes, start + 8, 2));
  declaredTracks = static_cast<int>(fixedAt(bytes, start + 10, 2));
  const uint32_t division = fixedAt(bytes, start + 12, 2);
  position = start + 14;
  if (headerLength < 6 || start + 8 + headerLength > bytes.size()) {
    if (!repairs.note(
            -1, kHeaderLength,
            [] { return std::string("truncated MIDI file: the header is incomplete"); },
            [&] {
              return "header length " + std::to_string(headerLength) + byteOffset(start + 4) +
                     " is wrong; read as 6";
            }))
      return false;
  } else {
    position = static_cast<size_t>(start + 8 + headerLength);
  }
  if (file.format > 2) {
    const std::string format = std::to_string(file.format);
    if (!repairs.note(
            -1, kUnknownFormat,
            [&] { return "MIDI file format " + format + " is not supported (only 0, 1 and 2)"; },
            [&] { return "unknown format " + format + "; played as format 1"; }))
      return false;
    file.format = 1;
  }
  if ((division & 0x8000u) != 0) {
    const int frames = 256 - static_cast<int>(division >> 8);
    file.smpteFramesPerSecond = frames == 29 ? 29.97 : frames;
    file.smpteTicksPerFrame = static_cast<int>(division & 0xFF);
  } else {
    file.ticksPerQuarter = static_cast<int>(division);
  }
  if (file.ticksPerQuarter == 0 && file.smpteTicksPerFrame == 0) {
    if (!repairs.note(
            -1, kZeroDivision, [] { return std::string("bad MIDI file: time division is zero"); },
            [&] {
              return "time division " + hexByte(division >> 8) + hexByte(division).substr(2) +
                     " is not usable; " + std::to_string(kDefaultTicksPerQuarter) +
                     " ticks per quarter note assumed";
            }))
      return false;
    file.smpteFramesPerSecond = 0.0;
    file.smpteTicksPerFrame = 0;
    file.ticksPerQuarter = kDefaultTicksPerQuarter;
  }
  return true;
}

// One MTrk chunk at `position`: its events, and where the next chunk starts.
// A stated length is trusted when it ends at the end of the file or at
// another chunk; otherwise the track is read up to the next "MTrk".
bool readTrackChunk(Bytes bytes, size_t& position, int64_t firstTick, bool strict, MidiFile& file,
                    MidiRepairs& repairs) {
  const uint64_t length = fixedAt(bytes, position + 4, 4);
  const size_t dataStart = position + 8;
  const uint64_t declaredEnd = dataStart + length;
  const int track = file.trackCount;
  const TrackLabel where{track};
  const bool fits = declaredEnd <= bytes.size();
  if (!fits && strict) {  // a refusal
    return repairs.note(
        track, kChunkPastEnd,
        [&] {
          return "truncated MIDI file: a chunk of " + counted(length, "byte") +
                 " runs past the end" + byteOffset(position);
        },
        noRefusal);
  }
  const bool trusted =
      strict || (fits && (declaredEnd == bytes.size() || chunkAt(bytes, declaredEnd)));
  const size_t regionEnd =
      trusted ? static_cast<size_t>(declaredEnd) : find(bytes, dataStart, "MTrk");
  TrackEnd end;
  if (!parseTrack(bytes.subspan(dataStart, regionEnd - dataStart), dataStart, track, firstTick,
                  file, repairs, end))
    return false;
  if (trusted) {
    const bool nextTrackThere =
        !strict && end.offset < declaredEnd && tagAt(bytes, end.offset, "MTrk");
    position = nextTrackThere ? end.offset : static_cast<size_t>(declaredEnd);
  } else {
    const bool chunkThere =
        end.endOfTrack && (end.offset == declaredEnd || chunkAt(bytes, end.offset));
    position = chunkThere ? end.offset : regionEnd;
    std::string repair;
    if (!fits) {
      repair = where() + "chunk of " + counted(length, "byte") +
               " runs past the end of the file; " +
               (regionEnd < bytes.size() ? "read up to the next track" + byteOffset(regionEnd)
                                         : "played what is there");
    } else if (end.offset != declaredEnd) {
      repair = where() + "chunk length " + std::to_string(length) + byteOffset(dataStart - 4) +
               " does not match its events; resynchronised" + byteOffset(position);
    }
    if (!repair.empty() &&
        !repairs.note(track, kTrackLength, noRefusal, [&] { return std::move(repair); }))
      return false;
  }
  if (end.cutShort && fits &&
      !repairs.note(
          track, kCutShort,
          [&] {
            return where() + "truncated, the data ends inside an event" + byteOffset(regionEnd);
          },
          [&] {
            return where() + "the event" + byteOffset(end.offset) +
                   " is cut short; the events before it are played";
          }))
    return false;
  if (fits && !end.cutShort && !end.endOfTrack &&
      !repairs.note(track, kNoEndOfTrack, noRefusal, [&] {
        return where() + "no end-of-track event; the track ends" + byteOffset(regionEnd);
      }))
    return false;
  if (trusted && end.endOfTrack && end.offset < declaredEnd &&
      !repairs.note(track, kEarlyEnd, noRefusal, [&] {
        return where() + "skipped " + counted(declaredEnd - end.offset, "byte") +
               " after the end-of-track event" + byteOffset(end.offset);
      }))
    return false;
  file.lastTick = std::max(file.lastTick, end.tick);
  ++file.trackCount;
  return true;
}

// The chunks from `position` on: tracks read, other chunks skipped, junk
// between them passed over up to the next "MTrk".
bool readChunks(Bytes bytes, size_t position, int declaredTracks, bool strict, MidiFile& file,
                MidiRepairs& repairs) {
  while (position < bytes.size() && !(strict && file.trackCount == declaredTracks)) {
    if (!chunkAt(bytes, position)) {
      // No chunk here, so no whole "MTrk" header either.
      const size_t next = find(bytes, position + 1, "MTrk");
      auto skipped = [&] { return counted(next - position, "byte"); };
      auto refusal = [&] {
        return "truncated MIDI file: " + counted(declaredTracks, "track") + " declared, " +
               std::to_string(file.trackCount) + " found" + byteOffset(position);
      };
      if (next == bytes.size()) {
        if (!repairs.note(-1, kTrailingBytes, refusal, [&] {
              return "ignored " + skipped() + " after the last chunk" + byteOffset(position);
            }))
          return false;
        break;
      }
      if (!repairs.note(-1, kGarbage, refusal, [&] {
            return "skipped " + skipped() + " of garbage" + byteOffset(position) +
                   ", up to the next track chunk";
          }))
        return false;
      position = next;
      continue;
    }
    if (tagAt(bytes, position, "MTrk")) {
      // Format 2 holds independent patterns: each starts where the one
      // before ended, at the default tempo unless it sets its own.
      int64_t firstTick = 0;
      if (file.format == 2 && file.trackCount > 0) {
        firstTick = file.lastTick;
        file.tempos.push_back({firstTick, kDefaultMicrosPerQuarter});
      }
      if (!readTrackChunk(bytes, position, firstTick, strict, file, repairs)) return false;
      continue;
    }
    const uint64_t end = uint64_t{position} + 8 + fixedAt(bytes, position + 4, 4);
    if (end <= bytes.size()) {
      position = static_cast<size_t>(end);  // an unknown chunk: skipped, as the format asks
      continue;
    }
    const size_t next = find(bytes, position + 8, "MTrk");
    if (!repairs.note(
            -1, kChunkPastEnd,
            [&] {
              return "truncated MIDI file: a chunk of " + counted(end - position - 8, "byte") +
                     " runs past the end" + byteOffset(position);
            },
            [&] {
              return "a chunk of unknown type" + byteOffset(position) +
                     " runs past the end of the file; skipped" +
                     (next < bytes.size() ? " up to the next track chunk" : "");
            }))
      return false;
    position = next;
  }
  return true;
}

}  // namespace

bool parseMidiFile(std::span<const unsigned char> bytes, MidiFile& file, std::string& error,
                   MidiReading reading) {
  file = MidiFile{};
  error.clear();
  const bool strict = reading == MidiReading::strict;
  {
    MidiRepairs repairs(reading, file.warnings, error);
    int declaredTracks = 0;
    size_t position = 0;
    if (!readHeader(bytes, file, repairs, declaredTracks, position, error)) return false;
    if (!readChunks(bytes, position, declaredTracks, strict, file, repairs)) return false;
    if (file.trackCount == 0 && declaredTracks > 0) {
      error = "not a MIDI file: " + counted(declaredTracks, "track") + " declared, none found";
      return false;
    }
    if (file.trackCount != declaredTracks &&
        !repairs.note(
            -1, kTrackCount,
            [&] {
              return "truncated MIDI file: " + counted(declaredTracks, "track") + " declared, " +
                     std::to_string(file.trackCount) + " found";
            },
            [&] {
              return counted(declaredTracks, "track") + " declared, " +
                     std::to_string(file.trackCount) + " found; all of those are played";
            }))
      return false;
    if (file.format == 0 && file.trackCount > 1 &&
        !repairs.note(-1, kFormat0Tracks, noRefusal, [&] {
          return "format 0 with " + counted(file.trackCount, "track") +
                 "; they are played together";
        }))
      return false;
  }
  std::stable_sort(file.events.begin(), file.events.end(),
                   [](const MidiFileEvent& a, const MidiFileEvent& b) {
                     return a.tick != b.tick ? a.tick < b.tick : a.track < b.track;
                   });
  std::stable_sort(file.tempos.begin(), file.tempos.end(),
                   [](const TempoChange& a, const TempoChange& b) { return a.tick < b.tick; });
  return true;
}

bool readMidiFile(const std::string& path, MidiFile& file, std::string& error,
                  MidiReading reading) {
  std::error_code failure;
  if (std::filesystem::is_directory(path, failure)) {
    error = path + ": a directory, not a MIDI file";
    return false;
  }
  std::ifstream stream(path, std::ios::binary);
  if (!stream) {
    error = "cannot read MIDI file " + path;
    return false;
  }
  const std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(stream)),
                                         std::istreambuf_iterator<char>());
  if (!parseMidiFile(bytes, file, error, reading)) {
    error = path + ": " + error;
    return false;
  }
  for (std::string& warning : file.warnings) warning = path + ": " + warning;
  return true;
}

}  // namespace sablevox::render
