// The packed wave records in the data library: 85 records back to back,
// one per wave index, each 262,148 bytes, little-endian:
//   offset 0: frameCount, signed 32-bit (256, or 1 for a single-frame wave)
//   offset 4: 65,536 entries of 4 bytes; entry f*256 + h is frame f,
//             harmonic index h (harmonic number h + 1). The first two bytes
//             are the unsigned 16-bit amplitude (65535 full scale), the
//             other two are 0.
// A single-frame record holds its frame in frame 0 and zeros after it.
// The bytes are written at build time by tools/wavegen. The plug-in itself
// reads only the slot amplitudes made from them (declared at the end), which
// live in an object of their own: the records are linked only into what
// reads them (tests, tools), not into the plug-in.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

#include "data/wave_descriptors.h"

namespace sablevox {

constexpr int kWaveSourceFrames = 256;
constexpr int kWaveSourceHarmonics = 256;
constexpr int kWaveSourceEntries = kWaveSourceFrames * kWaveSourceHarmonics;
constexpr int kWaveSourceEntryBytes = 4;
constexpr size_t kWaveSourceBytes = 4 + size_t{kWaveSourceEntries} * kWaveSourceEntryBytes;
static_assert(kWaveSourceBytes == 0x40004);

// A read-only view of one packed record.
class WaveSource {
 public:
  explicit WaveSource(const unsigned char* bytes) : bytes_(bytes) {}
  int32_t frameCount() const {
    return static_cast<int32_t>(
        static_cast<uint32_t>(bytes_[0]) | static_cast<uint32_t>(bytes_[1]) << 8 |
        static_cast<uint32_t>(bytes_[2]) << 16 | static_cast<uint32_t>(bytes_[3]) << 24);
  }
  // entry: 0 .. kWaveSourceEntries - 1.
  uint16_t amplitude(int entry) const {
    const unsigned char* e = bytes_ + 4 + static_cast<size_t>(entry) * kWaveSourceEntryBytes;
    return static_cast<uint16_t>(e[0] | e[1] << 8);
  }

 private:
  const unsigned char* bytes_;
};

// All 85 records, kWaveCount * kWaveSourceBytes bytes.
std::span<const unsigned char> waveRecordBytes();

// Record of wave index 0..84; an index out of range gives record 0.
WaveSource waveSource(int index);

}  // namespace sablevox

// Defined by the generated slot embedding: 85 slots of kWaveSourceEntries
// amplitudes (frame stride 256), little-endian, page-aligned read-only data.
extern "C" const uint16_t sablevox_wave_slots[];

namespace sablevox {

static_assert(std::endian::native == std::endian::little,
              "the embedded slot amplitudes are little-endian");

// Source frame count (256, or 1) of each slot; generated with the amplitudes.
extern const int32_t kSlotFrameCounts[kWaveCount];

// The built slot amplitudes of wave index 0..84 (out of range gives slot 0):
// single-frame records repeated over 256 frames, then boosted. Any thread.
inline const uint16_t* slotAmplitudes(int index) {
  if (index < 0 || index >= kWaveCount) index = 0;
  return sablevox_wave_slots + static_cast<size_t>(index) * kWaveSourceEntries;
}

}  // namespace sablevox
