// The command-line host's MIDI file reader: any bytes as a file, read
// strictly and tolerantly; what it accepts is then placed on the sample clock
// as a render would.
#include <cstdlib>
#include <span>
#include <string>

#include "render/midi_file.h"
#include "render/midi_schedule.h"
#include "render/tempo_map.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using sablevox::render::MidiReading;
  sablevox::render::MidiFile file;
  sablevox::render::MidiFile strict;
  std::string error;
  const bool strictRead =
      sablevox::render::parseMidiFile(std::span(data, size), strict, error, MidiReading::strict);
  if (!strictRead && error.empty()) std::abort();  // a refusal always says why
  if (!sablevox::render::parseMidiFile(std::span(data, size), file, error)) {
    if (error.empty() || strictRead) std::abort();  // what strict reading takes, tolerance takes
    return 0;
  }
  if (file.warnings.size() > 41) std::abort();  // the warnings are capped
  // Files whose events would lie weeks into a render are not scheduled: the
  // schedule is a list of every event, and its length is not the reader's
  // concern.
  if (file.events.size() > 100000) return 0;
  const sablevox::render::TempoMap tempo(file, 0.0, 44100.0);
  const auto schedule = sablevox::render::makeSchedule(file, tempo, 0.5, 44100.0);
  for (size_t i = 1; i < schedule.events.size(); ++i) {
    if (schedule.events[i].frame < schedule.events[i - 1].frame) std::abort();  // sorted by frame
  }
  return 0;
}
