// MIDI messages as a host sends them: VstMidiEvent records behind one
// VstEvents header, kept alive until the next block has been processed.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/vst2.h"

namespace sablevox::host {

// One short MIDI message. The bytes go out exactly as given, so tests can
// send malformed ones (bad status, data bytes above 127, a fourth byte).
struct MidiMessage {
  VstInt32 deltaFrames = 0;  // frame offset in the coming block
  std::array<unsigned char, 4> bytes{};
  char detune = 0;
  char noteOffVelocity = 0;

  // channel 0..15; values are masked to 7 bits (pitch bend: 0..16383).
  static MidiMessage noteOn(VstInt32 delta, int channel, int key, int velocity);
  static MidiMessage noteOff(VstInt32 delta, int channel, int key, int velocity = 0);
  static MidiMessage controller(VstInt32 delta, int channel, int number, int value);
  static MidiMessage programChange(VstInt32 delta, int channel, int program);
  static MidiMessage pitchBend(VstInt32 delta, int channel, int value);
  static MidiMessage raw(VstInt32 delta, unsigned char status, unsigned char data1 = 0,
                         unsigned char data2 = 0, unsigned char data3 = 0);
};

// The events of one block. get() stays valid until the next clear() or add().
class EventList {
 public:
  void clear() { events_.clear(); }
  void add(const MidiMessage& message);
  // A record exactly as given (type and byteSize included).
  void addRecord(const VstMidiEvent& record) { events_.push_back(record); }
  size_t size() const { return events_.size(); }
  bool empty() const { return events_.empty(); }
  VstEvents* get();

 private:
  std::vector<VstMidiEvent> events_;
  std::unique_ptr<unsigned char[]> header_;  // VstEvents with room for the pointers
  size_t headerCapacity_ = 0;                // pointers the header can hold
};

}  // namespace sablevox::host
