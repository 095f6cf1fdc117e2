// Access to the wave records that the build embeds (see tools/wavegen).
#include "data/wave_sources.h"

// Defined by the generated embedding source: the record bytes and their count.
extern "C" const unsigned char sablevox_wave_records[];

namespace sablevox {

extern const size_t kEmbeddedWaveRecordBytes;

std::span<const unsigned char> waveRecordBytes() {
  return {sablevox_wave_records, kEmbeddedWaveRecordBytes};
}

WaveSource waveSource(int index) {
  if (index < 0 || index >= kWaveCount) index = 0;
  return WaveSource(sablevox_wave_records + static_cast<size_t>(index) * kWaveSourceBytes);
}

}  // namespace sablevox
