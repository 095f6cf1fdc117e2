// Tempo segments of a MIDI file, in ticks, seconds and frames.
#include "render/tempo_map.h"

#include <algorithm>
#include <cmath>

namespace sablevox::render {
namespace {

constexpr double kDefaultMicrosPerQuarter = 500000.0;  // 120 BPM

}  // namespace

TempoMap::TempoMap(const MidiFile& file, double overrideBpm, double sampleRate)
    : sampleRate_(sampleRate) {
  if (file.smpteFramesPerSecond > 0.0) {
    const double secondsPerTick = 1.0 / (file.smpteFramesPerSecond * file.smpteTicksPerFrame);
    segments_.push_back({0, 0.0, secondsPerTick, 120.0, 0});
    return;
  }
  const double ticksPerQuarter = std::max(file.ticksPerQuarter, 1);
  auto addSegment = [&](int64_t tick, double microsPerQuarter) {
    double seconds = 0.0;
    if (!segments_.empty()) {
      const Segment& last = segments_.back();
      seconds = last.seconds + static_cast<double>(tick - last.tick) * last.secondsPerTick;
      if (last.tick == tick) segments_.pop_back();  // a later change at the same tick wins
    }
    const double secondsPerTick = microsPerQuarter / 1e6 / ticksPerQuarter;
    const auto frame = static_cast<int64_t>(std::llround(seconds * sampleRate_));
    segments_.push_back({tick, seconds, secondsPerTick, 60e6 / microsPerQuarter, frame});
  };
  if (overrideBpm > 0.0) {
    addSegment(0, 60e6 / overrideBpm);
    return;
  }
  addSegment(0, kDefaultMicrosPerQuarter);
  for (const TempoChange& change : file.tempos) {
    addSegment(change.tick, std::max<double>(change.microsPerQuarter, 1.0));
  }
}

const TempoMap::Segment& TempoMap::segmentOfTick(int64_t tick) const {
  auto after = std::upper_bound(segments_.begin(), segments_.end(), tick,
                                [](int64_t t, const Segment& s) { return t < s.tick; });
  return after == segments_.begin() ? segments_.front() : *(after - 1);
}

double TempoMap::secondsAt(int64_t tick) const {
  const Segment& segment = segmentOfTick(tick);
  return segment.seconds + static_cast<double>(tick - segment.tick) * segment.secondsPerTick;
}

int64_t TempoMap::frameAt(int64_t tick) const {
  return static_cast<int64_t>(std::llround(secondsAt(tick) * sampleRate_));
}

double TempoMap::bpmAtFrame(int64_t frame) const {
  auto after = std::upper_bound(segments_.begin(), segments_.end(), frame,
                                [](int64_t f, const Segment& s) { return f < s.frame; });
  return after == segments_.begin() ? segments_.front().bpm : (after - 1)->bpm;
}

}  // namespace sablevox::render
