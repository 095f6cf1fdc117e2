// The 256-slot event queue: processEvents files a host's batch into free
// slots, eventPass applies at each tick the events that have come due.
//
// processEvents may run on another thread than the audio thread, but never at
// the same moment as a block (the host interface's rule); the slot fields are
// shared words all the same, so that no ordering is assumed between the two.
#include <algorithm>

#include "host/adelay.h"
#include "notes/midi_controllers.h"

namespace sablevox {

VstInt32 ADelay::processEvents(VstEvents* events) {
  if (events == nullptr) return 1;
  // The list is numEvents long, though the interface declares two: index it
  // through a pointer, not the declared array.
  VstEvent* const* list = events->events;
  for (VstInt32 i = 0; i < events->numEvents; ++i) {
    const VstEvent* event = list[i];
    if (event == nullptr || event->type != kVstMidiType) continue;
    const auto* midi = reinterpret_cast<const VstMidiEvent*>(event);
    // The first free slot; with none free, slot 0 loses its event. There is
    // no head or tail: the free mark is the only bookkeeping.
    int slot = 0;
    while (slot < kEventSlots && eventQueue[slot].status != 0) ++slot;
    if (slot == kEventSlots) slot = 0;
    EventSlot& target = eventQueue[slot];
    target.data1 = static_cast<int8_t>(midi->midiData[1]);
    target.data2 = static_cast<int8_t>(midi->midiData[2]);
    target.deltaFrames = midi->deltaFrames;
    target.status = static_cast<uint8_t>(midi->midiData[0]);
  }
  return 1;
}

void ADelay::eventPass(int limit) {
  // Slot order, not deltaFrames, decides among the events of one pass; and
  // deltaFrames is never adjusted: an event left from an earlier block is due
  // at the first pass whose limit lies above it.
  for (EventSlot& slot : eventQueue) {
    const uint8_t status = slot.status;
    if (status == 0 || slot.deltaFrames >= limit) continue;
    const int data1 = slot.data1;
    const int data2 = slot.data2;
    switch (status & 0xF0) {
      case 0x90:
        // A note-on of velocity 0 is a note-off; so is a (malformed)
        // negative velocity, which no voice could use.
        if (data2 > 0) {
          arpNoteOn(data1, data2, arpActive);
          setKeyDisplay(0, 1.0f);
          break;
        }
        [[fallthrough]];
      case 0x80:
        arpNoteOff(data1, arpActive);
        break;
      case 0xB0:
        applyController(*this, data1, data2);
        break;
      case 0xC0:
        setProgram(std::clamp(data1, 0, kNumPrograms - 1));
        updateDisplay();
        break;
      case 0xE0:
        applyPitchWheel(*this, data2);
        break;
      default:
        // Key and channel pressure, system messages and stray data bytes.
        break;
    }
    slot.status = 0;
  }
}

}  // namespace sablevox
