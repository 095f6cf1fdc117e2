// The MIDI file's events placed on the sample clock, and the block loop that
// plays them while telling the host the tempo in force at each block.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "hostlib/plugin.h"
#include "render/midi_file.h"
#include "render/tempo_map.h"

namespace sablevox::render {

struct Schedule {
  std::vector<host::TimedMidi> events;  // sorted by frame
  int64_t frames;                       // the length of the render
};

// Every channel event at the frame the tempo map gives its tick, but the
// controllers marked in `ignored`; the render lasts until the last event
// (the file's end if it has none) plus the tail.
Schedule makeSchedule(const MidiFile& midi, const TempoMap& tempo, double tailSeconds,
                      double sampleRate, const std::array<bool, 128>& ignored = {});

// Plays the schedule in blocks of at most blockSize (Plugin::renderStream);
// before each block the host's tempo becomes the map's tempo at the block's
// first frame, then `hook` (if any) runs and may stop the render by
// answering false; `sink` gets the samples of each block.
bool streamSchedule(host::Plugin& plugin, const Schedule& schedule, const TempoMap& tempo,
                    VstInt32 blockSize, const host::Plugin::BlockHook& hook,
                    const host::Plugin::BlockSink& sink);
// The same into left/right.
bool playSchedule(host::Plugin& plugin, const Schedule& schedule, const TempoMap& tempo,
                  VstInt32 blockSize, std::vector<float>& left, std::vector<float>& right,
                  const host::Plugin::BlockHook& hook = {});

}  // namespace sablevox::render
