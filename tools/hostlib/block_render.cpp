// Rendering a stretch of samples in blocks, with MIDI messages delivered at
// the block and frame offset where they fall, and blocks ended where a message
// makes the plug-in reset at the head of its next block.
#include <algorithm>
#include <climits>
#include <cmath>

#include "hostlib/plugin.h"

namespace sablevox::host {
namespace {

// Sablevox takes MIDI at control ticks of 2.5 ms: a block at least that long
// holds a tick, which takes every message of the block.
constexpr double kSettleSeconds = 0.0025;

bool resetsPlugin(const MidiMessage& message) {
  const int kind = message.bytes[0] & 0xF0;
  const int controller = message.bytes[1];
  return kind == 0xC0 || (kind == 0xB0 && controller >= 120 && controller <= 127 &&
                          controller != 122);  // 122 is local control, no reset
}

// The reset message at or after `from` that is the last one of its frame
// (several at one frame are taken as one); events.size() if none.
size_t nextResetEnd(std::span<const TimedMidi> events, size_t from) {
  for (size_t i = from; i < events.size(); ++i) {
    if (!resetsPlugin(events[i].message)) continue;
    size_t last = i;
    for (size_t j = i + 1; j < events.size() && events[j].frame == events[i].frame; ++j) {
      if (resetsPlugin(events[j].message)) last = j;
    }
    return last;
  }
  return events.size();
}

}  // namespace

bool Plugin::renderStream(std::span<const TimedMidi> events, int64_t frames, VstInt32 blockSize,
                          const BlockHook& beforeBlock, const BlockSink& afterBlock) {
  frames = std::max<int64_t>(frames, 0);
  blockSize = std::max<VstInt32>(blockSize, 1);
  const auto settle =
      std::max<int64_t>(1, static_cast<int64_t>(std::ceil(host_->sampleRate() * kSettleSeconds)));
  std::vector<float> left(static_cast<size_t>(blockSize));
  std::vector<float> right(static_cast<size_t>(blockSize));
  size_t next = 0;
  // Sends events [next, last) with their offsets in the block at `start`;
  // messages due before it (negative frames, held-back ones) go out at once.
  auto send = [&](size_t last, int64_t start, VstInt32 length) {
    events_.clear();
    for (; next < last; ++next) {
      MidiMessage message = events[next].message;
      message.deltaFrames =
          static_cast<VstInt32>(std::clamp<int64_t>(events[next].frame - start, 0, length - 1));
      events_.add(message);
    }
    if (!events_.empty()) sendEvents(events_);
  };

  // Resets within the first tick are taken before frame 0, in a stretch
  // whose sound is dropped, so that the notes after them start on time.
  size_t prerollEnd = 0;
  for (size_t i = 0; i < events.size() && events[i].frame < settle; ++i) {
    if (resetsPlugin(events[i].message)) prerollEnd = i + 1;
  }
  if (prerollEnd > 0 || settleBeforeStart_) {
    const double samplePos = host_->samplePosition();
    const double ppqPos = host_->ppqPosition();
    for (int64_t done = 0; done < settle;) {
      const auto length = static_cast<VstInt32>(std::min<int64_t>(blockSize, settle - done));
      if (beforeBlock && !beforeBlock(done - settle, length)) return false;
      send(prerollEnd, 0, 1);
      processReplacing(left.data(), right.data(), length);
      done += length;
    }
    host_->setPosition(samplePos, ppqPos);
  }

  int64_t holdUntil = INT64_MIN;  // no event is sent in a block starting before this frame
  size_t reset = nextResetEnd(events, next);
  for (int64_t start = 0; start < frames;) {
    int64_t end = std::min<int64_t>(start + blockSize, frames);
    size_t last = next;
    if (start < holdUntil) {
      end = std::min(end, holdUntil);
    } else {
      if (reset < next) reset = nextResetEnd(events, next);
      bool endsAtReset = false;
      if (reset < events.size()) {
        const int64_t at = std::max(events[reset].frame, start);
        if (at < end) {
          end = at + 1;
          endsAtReset = true;
        } else if (at + 1 - end < settle && settle <= blockSize) {
          end = at + 1 - settle;  // the reset's own block is then a tick long
        }
      }
      while (last < events.size() && events[last].frame < end && (!endsAtReset || last <= reset)) {
        ++last;
      }
      // A block shorter than a tick may hold none: what follows the reset
      // waits until a tick's time has passed since the block's start.
      if (endsAtReset && end - start < settle) holdUntil = start + settle;
    }
    const auto length = static_cast<VstInt32>(end - start);
    if (beforeBlock && !beforeBlock(start, length)) return false;
    send(last, start, length);
    processReplacing(left.data(), right.data(), length);
    if (afterBlock && !afterBlock(left.data(), right.data(), length)) return false;
    start = end;
  }
  return true;
}

bool Plugin::render(std::span<const TimedMidi> events, int64_t frames, VstInt32 blockSize,
                    std::vector<float>& left, std::vector<float>& right,
                    const BlockHook& beforeBlock) {
  left.clear();
  right.clear();
  left.reserve(static_cast<size_t>(std::max<int64_t>(frames, 0)));
  right.reserve(left.capacity());
  return renderStream(events, frames, blockSize, beforeBlock,
                      [&](const float* l, const float* r, VstInt32 length) {
                        left.insert(left.end(), l, l + length);
                        right.insert(right.end(), r, r + length);
                        return true;
                      });
}

}  // namespace sablevox::host
