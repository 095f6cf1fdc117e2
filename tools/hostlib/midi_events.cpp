// Building MIDI messages and the VstEvents header that points at them.
#include "hostlib/midi_events.h"

#include <algorithm>
#include <new>

namespace sablevox::host {
namespace {

unsigned char statusByte(int kind, int channel) {
  return static_cast<unsigned char>(kind | (channel & 0x0F));
}

unsigned char dataByte(int value) {
  return static_cast<unsigned char>(value & 0x7F);
}

}  // namespace

MidiMessage MidiMessage::noteOn(VstInt32 delta, int channel, int key, int velocity) {
  return raw(delta, statusByte(0x90, channel), dataByte(key), dataByte(velocity));
}

MidiMessage MidiMessage::noteOff(VstInt32 delta, int channel, int key, int velocity) {
  return raw(delta, statusByte(0x80, channel), dataByte(key), dataByte(velocity));
}

MidiMessage MidiMessage::controller(VstInt32 delta, int channel, int number, int value) {
  return raw(delta, statusByte(0xB0, channel), dataByte(number), dataByte(value));
}

MidiMessage MidiMessage::programChange(VstInt32 delta, int channel, int program) {
  return raw(delta, statusByte(0xC0, channel), dataByte(program));
}

MidiMessage MidiMessage::pitchBend(VstInt32 delta, int channel, int value) {
  return raw(delta, statusByte(0xE0, channel), dataByte(value), dataByte(value >> 7));
}

MidiMessage MidiMessage::raw(VstInt32 delta, unsigned char status, unsigned char data1,
                             unsigned char data2, unsigned char data3) {
  MidiMessage message;
  message.deltaFrames = delta;
  message.bytes = {status, data1, data2, data3};
  return message;
}

void EventList::add(const MidiMessage& message) {
  VstMidiEvent record{};
  record.type = kVstMidiType;
  record.byteSize = sizeof(VstMidiEvent);
  record.deltaFrames = message.deltaFrames;
  for (size_t i = 0; i < message.bytes.size(); ++i) {
    record.midiData[i] = static_cast<char>(message.bytes[i]);
  }
  record.detune = message.detune;
  record.noteOffVelocity = message.noteOffVelocity;
  events_.push_back(record);
}

VstEvents* EventList::get() {
  // The header is declared with two pointers but really holds numEvents.
  const size_t needed = std::max<size_t>(events_.size(), 2);
  if (needed > headerCapacity_) {
    headerCapacity_ = std::max(needed, headerCapacity_ * 2);
    header_ = std::make_unique<unsigned char[]>(offsetof(VstEvents, events) +
                                                headerCapacity_ * sizeof(VstEvent*));
  }
  auto* events = new (header_.get()) VstEvents{};
  events->numEvents = static_cast<VstInt32>(events_.size());
  auto** slots = reinterpret_cast<VstEvent**>(header_.get() + offsetof(VstEvents, events));
  for (size_t i = 0; i < events_.size(); ++i) {
    slots[i] = reinterpret_cast<VstEvent*>(&events_[i]);
  }
  return events;
}

}  // namespace sablevox::host
