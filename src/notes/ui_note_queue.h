// Hands notes from the user-interface thread (the editor's keyboard) to the
// audio thread, which plays them at its next tick: voice records and key
// tables are then touched by the audio thread only. Lock-free, fixed
// capacity, no allocation; neither side ever waits.
//
// One producer thread (push) and one consumer thread (pop) at a time.
#pragma once

#include <atomic>
#include <cstdint>

namespace sablevox {

struct UiNote {
  bool on;  // true: key down, false: key up
  int note;
  int velocity;
};

class UiNoteQueue {
 public:
  // Enough for a whole keyboard's worth of key-ups between two ticks.
  static constexpr uint32_t kCapacity = 256;

  UiNoteQueue() = default;
  UiNoteQueue(const UiNoteQueue&) = delete;
  UiNoteQueue& operator=(const UiNoteQueue&) = delete;

  // Producer side. False when the queue is full: the note is then dropped,
  // since waiting for the audio thread is not allowed and 256 pending keys
  // mean the audio thread has stopped ticking anyway.
  bool push(const UiNote& entry) {
    const uint32_t tail = tail_.load(std::memory_order_relaxed);
    if (tail - head_.load(std::memory_order_acquire) >= kCapacity) return false;
    entries_[tail % kCapacity] = entry;
    tail_.store(tail + 1, std::memory_order_release);
    return true;
  }

  // Entries waiting; any thread may ask. Head is read first: the tail read
  // after it can only be further on.
  uint32_t pending() const {
    const uint32_t head = head_.load(std::memory_order_acquire);
    return tail_.load(std::memory_order_acquire) - head;
  }

  // Consumer side. False when nothing is pending.
  bool pop(UiNote& entry) {
    const uint32_t head = head_.load(std::memory_order_relaxed);
    if (head == tail_.load(std::memory_order_acquire)) return false;
    entry = entries_[head % kCapacity];
    head_.store(head + 1, std::memory_order_release);
    return true;
  }

 private:
  static_assert((kCapacity & (kCapacity - 1)) == 0, "indices wrap through 2^32");
  // Free-running counters; their difference is the fill.
  std::atomic<uint32_t> head_{0};
  std::atomic<uint32_t> tail_{0};
  UiNote entries_[kCapacity] = {};
};

}  // namespace sablevox
