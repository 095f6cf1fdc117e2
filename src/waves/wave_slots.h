// The 85 read-only waves: each slot holds 256 frames of 256 unsigned 16-bit
// harmonic amplitudes and the settings that travel with the wave. The
// amplitudes are made at build time and embedded read-only (see
// waves/slot_amplitudes.h), so a slot only points at them; set up once,
// before the worker starts, never changed afterwards, so the worker (their
// only reader then) needs no lock.
#pragma once

#include <cstdint>
#include <span>

#include "data/wave_descriptors.h"
#include "waves/wave_format.h"

namespace sablevox {

constexpr int kWaveNameSize = 32;

struct WaveSlot {
  int32_t frameCount = 0;            // of the source record: 256, or 1
  char name[kWaveNameSize] = {};     // display name, zero-terminated
  uint8_t defaultLoop = 0;           // what Osc?Loop "auto" stands for
  uint8_t defaultLoopSpeed = 0;      // what Osc?LSp "auto" stands for
  float level = 0.0f;                // multiplies Osc?Vol
  float pitchFactor = 1.0f;          // multiplies the oscillator's speed: 0.25 .. 4
  const uint16_t* frames = nullptr;  // kWaveValues amplitudes, frame stride 256, boosted

  WaveSlot() = default;
  WaveSlot(const WaveSlot&) = delete;
  WaveSlot& operator=(const WaveSlot&) = delete;
};

// pitchStep -2..2 -> 0.25, 0.5, 1, 2, 4; steps beyond are limited to that range.
float pitchFactorForStep(int pitchStep);

// Sets up all 85 slots from the descriptor table, each pointing at its
// embedded amplitudes (single-frame waves already repeated, boost applied).
// Copies nothing large; the data pages map in as they are first read.
void setUpWaveSlots(std::span<WaveSlot, kWaveCount> slots);

// Copies the slot's zero-terminated name; destination holds kWaveNameSize.
void copyWaveName(const WaveSlot& slot, char* destination);

}  // namespace sablevox
