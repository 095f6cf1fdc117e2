// The 85 read-only waves: each slot holds 256 frames of 256 unsigned 16-bit
// harmonic amplitudes and the settings that travel with the wave. Built once
// at construction, before the worker starts; never changed afterwards, so
// the worker (their only reader then) needs no lock.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "data/wave_descriptors.h"
#include "waves/wave_format.h"

namespace sablevox {

constexpr int kWaveNameSize = 32;

struct WaveSlot {
  int32_t frameCount = 0;              // of the source record: 256, or 1
  char name[kWaveNameSize] = {};       // display name, zero-terminated
  uint8_t defaultLoop = 0;             // what Osc?Loop "auto" stands for
  uint8_t defaultLoopSpeed = 0;        // what Osc?LSp "auto" stands for
  float level = 0.0f;                  // multiplies Osc?Vol
  float pitchFactor = 1.0f;            // multiplies the oscillator's speed: 0.25 .. 4
  std::unique_ptr<uint16_t[]> frames;  // kWaveValues amplitudes, frame stride 256

  WaveSlot() = default;
  WaveSlot(const WaveSlot&) = delete;
  WaveSlot& operator=(const WaveSlot&) = delete;
};

// pitchStep -2..2 -> 0.25, 0.5, 1, 2, 4; steps beyond are limited to that range.
float pitchFactorForStep(int pitchStep);

// Fills all 85 slots from the embedded records and the descriptor table
// (allocating each slot's frames once), then boosts them. A single-frame
// record's frame is repeated over all 256 frames before the boost.
void buildWaveSlots(std::span<WaveSlot, kWaveCount> slots);

// Adds multiples of each harmonic to the first frameCount frames in integer
// arithmetic: mode 0 nothing, 1 the multiples 2..8, 2 the multiples 2, 4, 8;
// amount 0..1 in steps of 1/256 (truncated). A harmonic that overflows is
// clipped to 65535 alone.
void boostSlot(WaveSlot& slot, int mode, float amount);

// Copies the slot's zero-terminated name; destination holds kWaveNameSize.
void copyWaveName(const WaveSlot& slot, char* destination);

}  // namespace sablevox
