// The amplitudes each wave slot holds, made from the packed records: pure
// functions of the records and the descriptor table. The wave record
// generator runs them at build time and embeds the result, so the plug-in
// itself never copies or boosts a wave.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "data/wave_sources.h"
#include "waves/wave_format.h"

namespace sablevox {

constexpr size_t kSlotAmplitudeCount = size_t{kWaveCount} * kWaveValues;

// Copies a record's amplitudes into frames (kWaveValues values, frame stride
// 256); a single-frame record's frame is repeated over all 256 frames.
void fillSlotAmplitudes(WaveSource source, uint16_t* frames);

// Adds multiples of each harmonic to the first frameCount frames in integer
// arithmetic: mode 0 nothing, 1 the multiples 2..8, 2 the multiples 2, 4, 8;
// amount 0..1 in steps of 1/256 (truncated). A harmonic that overflows is
// clipped to 65535 alone.
void boostSlotAmplitudes(uint16_t* frames, int frameCount, int mode, float amount);

// All 85 slots: records holds kWaveCount * kWaveSourceBytes bytes, out
// receives kSlotAmplitudeCount values, each slot filled and then boosted as
// its descriptor row says. Returns false (out untouched) on wrong sizes.
bool buildSlotAmplitudes(std::span<const unsigned char> records, std::span<uint16_t> out);

}  // namespace sablevox
