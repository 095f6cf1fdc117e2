// One pending MIDI event of the 256-slot queue. status 0 marks a free slot.
// Written by processEvents, read and freed by the audio thread's tick.
#pragma once

#include <cstdint>

#include "host/shared_word.h"

namespace sablevox {

constexpr int kEventSlots = 256;

struct EventSlot {
  Shared<uint8_t> status;
  Shared<int8_t> data1;
  Shared<int8_t> data2;
  Shared<int32_t> deltaFrames;
};

}  // namespace sablevox
