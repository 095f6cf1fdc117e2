// Turns MIDI ticks into seconds and sample frames through the tempo changes
// of a file (or one fixed tempo that replaces them), and tells the tempo at a
// frame for the host's time information.
#pragma once

#include <cstdint>
#include <vector>

#include "render/midi_file.h"

namespace sablevox::render {

class TempoMap {
 public:
  // overrideBpm > 0 replaces every tempo change of the file by that tempo.
  // Before the first change the tempo is 120 BPM, as the format says.
  TempoMap(const MidiFile& file, double overrideBpm, double sampleRate);

  double secondsAt(int64_t tick) const;
  // The frame at which an event of that tick sounds: the nearest one.
  int64_t frameAt(int64_t tick) const;
  // The tempo in force at a frame, in BPM (120 for SMPTE-timed files, which
  // have no tempo).
  double bpmAtFrame(int64_t frame) const;

 private:
  struct Segment {
    int64_t tick;    // first tick of the segment
    double seconds;  // time at that tick
    double secondsPerTick;
    double bpm;
    int64_t frame;  // frameAt(tick)
  };
  const Segment& segmentOfTick(int64_t tick) const;

  std::vector<Segment> segments_;  // at least one, sorted by tick
  double sampleRate_;
};

}  // namespace sablevox::render
