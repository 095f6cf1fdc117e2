// Hand-made Standard MIDI File bytes for the reader and timing tests: the
// chunk framing is computed, every event byte is written out by hand.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <vector>

namespace sablevox::testing {

using Bytes = std::vector<unsigned char>;

inline void appendChunk(Bytes& file, const char* type, const Bytes& body) {
  file.insert(file.end(), type, type + 4);
  const auto size = static_cast<uint32_t>(body.size());
  for (int shift = 24; shift >= 0; shift -= 8)
    file.push_back(static_cast<unsigned char>(size >> shift));
  file.insert(file.end(), body.begin(), body.end());
}

// Header (format, declared track count, division) and one MTrk per body.
inline Bytes midiFile(int format, int division, std::initializer_list<Bytes> tracks,
                      int declaredTracks = -1) {
  const int count = declaredTracks >= 0 ? declaredTracks : static_cast<int>(tracks.size());
  Bytes file;
  appendChunk(file, "MThd",
              {0, static_cast<unsigned char>(format), 0, static_cast<unsigned char>(count),
               static_cast<unsigned char>(division >> 8), static_cast<unsigned char>(division)});
  for (const Bytes& track : tracks) appendChunk(file, "MTrk", track);
  return file;
}

}  // namespace sablevox::testing
