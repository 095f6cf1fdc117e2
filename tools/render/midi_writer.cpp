// Standard MIDI File bytes from note lists.
#include "render/midi_writer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace sablevox::render {
namespace {

void putFixed(std::vector<unsigned char>& out, uint32_t value, int bytes) {
  for (int i = bytes - 1; i >= 0; --i) out.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

void putVariable(std::vector<unsigned char>& out, uint32_t value) {
  unsigned char groups[4];
  int count = 0;
  do {
    groups[count++] = static_cast<unsigned char>(value & 0x7F);
    value >>= 7;
  } while (value != 0 && count < 4);
  while (count > 1) out.push_back(groups[--count] | 0x80);
  out.push_back(groups[0]);
}

struct TrackEvent {
  uint32_t tick;
  std::vector<unsigned char> bytes;
};

void putChunk(std::vector<unsigned char>& out, const char* type,
              const std::vector<unsigned char>& body) {
  out.insert(out.end(), type, type + 4);
  putFixed(out, static_cast<uint32_t>(body.size()), 4);
  out.insert(out.end(), body.begin(), body.end());
}

// Events in time order (note-offs before note-ons of the same tick, as the
// list is built), written with running status, then the end of the track.
std::vector<unsigned char> trackBody(std::vector<TrackEvent> events) {
  std::stable_sort(events.begin(), events.end(),
                   [](const TrackEvent& a, const TrackEvent& b) { return a.tick < b.tick; });
  std::vector<unsigned char> body;
  uint32_t now = 0;
  unsigned char running = 0;
  for (const TrackEvent& event : events) {
    putVariable(body, event.tick - now);
    now = event.tick;
    const bool channelMessage = event.bytes[0] < 0xF0;
    const bool skipStatus = channelMessage && event.bytes[0] == running;
    body.insert(body.end(), event.bytes.begin() + (skipStatus ? 1 : 0), event.bytes.end());
    running = channelMessage ? event.bytes[0] : 0;
  }
  const unsigned char end[] = {0x00, 0xFF, 0x2F, 0x00};
  body.insert(body.end(), std::begin(end), std::end(end));
  return body;
}

std::vector<unsigned char> nameEvent(const std::string& name) {
  std::vector<unsigned char> bytes = {0xFF, 0x03};
  putVariable(bytes, static_cast<uint32_t>(name.size()));
  bytes.insert(bytes.end(), name.begin(), name.end());
  return bytes;
}

}  // namespace

std::vector<unsigned char> buildMidiFile(const std::vector<NoteTrack>& tracks, double bpm,
                                         int ticksPerQuarter) {
  std::vector<unsigned char> file;
  std::vector<unsigned char> header;
  putFixed(header, 1, 2);
  putFixed(header, static_cast<uint32_t>(tracks.size() + 1), 2);
  putFixed(header, static_cast<uint32_t>(ticksPerQuarter), 2);
  putChunk(file, "MThd", header);

  std::vector<unsigned char> tempo = {0xFF, 0x51, 0x03};
  putFixed(tempo, static_cast<uint32_t>(std::lround(60e6 / bpm)), 3);
  const std::vector<unsigned char> meter = {0xFF, 0x58, 0x04, 4, 2, 24, 8};
  putChunk(file, "MTrk", trackBody({{0, nameEvent("Sablevox demo")}, {0, tempo}, {0, meter}}));

  auto ticks = [ticksPerQuarter](double beats) {
    return static_cast<uint32_t>(std::lround(beats * ticksPerQuarter));
  };
  for (const NoteTrack& track : tracks) {
    std::vector<TrackEvent> offs;
    std::vector<TrackEvent> ons;
    const auto channel = static_cast<unsigned char>(track.channel & 0x0F);
    for (const Note& note : track.notes) {
      const auto key = static_cast<unsigned char>(note.key & 0x7F);
      ons.push_back({ticks(note.beat),
                     {static_cast<unsigned char>(0x90 | channel), key,
                      static_cast<unsigned char>(note.velocity & 0x7F)}});
      offs.push_back(
          {ticks(note.beat + note.length), {static_cast<unsigned char>(0x80 | channel), key, 64}});
    }
    std::vector<TrackEvent> events = {{0, nameEvent(track.name)}};
    events.insert(events.end(), offs.begin(), offs.end());
    events.insert(events.end(), ons.begin(), ons.end());
    putChunk(file, "MTrk", trackBody(std::move(events)));
  }
  return file;
}

}  // namespace sablevox::render
