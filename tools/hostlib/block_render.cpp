// Rendering a stretch of samples in blocks, with MIDI messages delivered at
// the block and frame offset where they fall.
#include <algorithm>

#include "hostlib/plugin.h"

namespace sablevox::host {

bool Plugin::render(std::span<const TimedMidi> events, int64_t frames, VstInt32 blockSize,
                    std::vector<float>& left, std::vector<float>& right,
                    const BlockHook& beforeBlock) {
  frames = std::max<int64_t>(frames, 0);
  blockSize = std::max<VstInt32>(blockSize, 1);
  left.assign(static_cast<size_t>(frames), 0.0f);
  right.assign(static_cast<size_t>(frames), 0.0f);
  size_t next = 0;
  for (int64_t start = 0; start < frames; start += blockSize) {
    const auto length = static_cast<VstInt32>(std::min<int64_t>(blockSize, frames - start));
    if (beforeBlock && !beforeBlock(start, length)) return false;
    // Messages before the render's start (negative frames) go out at once.
    events_.clear();
    for (; next < events.size() && events[next].frame < start + length; ++next) {
      MidiMessage message = events[next].message;
      message.deltaFrames = static_cast<VstInt32>(std::max<int64_t>(events[next].frame - start, 0));
      events_.add(message);
    }
    if (!events_.empty()) sendEvents(events_);
    processReplacing(left.data() + start, right.data() + start, length);
  }
  return true;
}

}  // namespace sablevox::host
