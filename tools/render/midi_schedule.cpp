// Scheduling MIDI file events on frames and playing them block by block.
#include "render/midi_schedule.h"

#include <cmath>

namespace sablevox::render {

Schedule makeSchedule(const MidiFile& midi, const TempoMap& tempo, double tailSeconds,
                      double sampleRate, const std::array<bool, 128>& ignored) {
  Schedule schedule;
  schedule.events.reserve(midi.events.size());
  for (const MidiFileEvent& event : midi.events) {
    if ((event.bytes[0] & 0xF0) == 0xB0 && ignored[event.bytes[1] & 0x7F]) continue;
    schedule.events.push_back(
        {tempo.frameAt(event.tick),
         host::MidiMessage::raw(0, event.bytes[0], event.bytes[1], event.bytes[2])});
  }
  const int64_t end =
      schedule.events.empty() ? tempo.frameAt(midi.lastTick) : schedule.events.back().frame;
  schedule.frames = end + std::llround(tailSeconds * sampleRate);
  return schedule;
}

bool streamSchedule(host::Plugin& plugin, const Schedule& schedule, const TempoMap& tempo,
                    VstInt32 blockSize, const host::Plugin::BlockHook& hook,
                    const host::Plugin::BlockSink& sink) {
  return plugin.renderStream(
      schedule.events, schedule.frames, blockSize,
      [&](int64_t start, VstInt32 length) {
        plugin.host().setTempo(tempo.bpmAtFrame(start));
        return !hook || hook(start, length);
      },
      sink);
}

bool playSchedule(host::Plugin& plugin, const Schedule& schedule, const TempoMap& tempo,
                  VstInt32 blockSize, std::vector<float>& left, std::vector<float>& right,
                  const host::Plugin::BlockHook& hook) {
  return plugin.render(schedule.events, schedule.frames, blockSize, left, right,
                       [&](int64_t start, VstInt32 length) {
                         plugin.host().setTempo(tempo.bpmAtFrame(start));
                         return !hook || hook(start, length);
                       });
}

}  // namespace sablevox::render
