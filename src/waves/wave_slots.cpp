// Setting up the wave slots over the embedded amplitudes.
#include "waves/wave_slots.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "data/wave_sources.h"

namespace sablevox {

float pitchFactorForStep(int pitchStep) {
  constexpr float kFactors[] = {0.25f, 0.5f, 1.0f, 2.0f, 4.0f};
  return kFactors[std::clamp(pitchStep, -2, 2) + 2];
}

void setUpWaveSlots(std::span<WaveSlot, kWaveCount> slots) {
  for (int i = 0; i < kWaveCount; ++i) {
    const WaveDescriptor& row = kWaveDescriptors[i];
    WaveSlot& slot = slots[i];
    slot.pitchFactor = pitchFactorForStep(row.pitchStep);
    slot.defaultLoop = row.defaultLoop;
    slot.defaultLoopSpeed = row.defaultLoopSpeed;
    slot.level = row.level;
    std::snprintf(slot.name, kWaveNameSize, "%s", row.displayName);
    slot.frameCount = kSlotFrameCounts[i];
    slot.frames = slotAmplitudes(i);
  }
}

void copyWaveName(const WaveSlot& slot, char* destination) {
  std::memcpy(destination, slot.name, kWaveNameSize);
  destination[kWaveNameSize - 1] = '\0';
}

}  // namespace sablevox
