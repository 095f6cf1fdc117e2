// Sizes shared by the wave store and the voices that play its tables: the
// spectral frames of a wave, the frame blocks of a playable table and the
// positions of its ten band-limited levels.
#pragma once

namespace sablevox {

// A wave: 256 frames of 256 harmonic amplitudes; harmonic index h holds
// harmonic number h + 1.
constexpr int kWaveFrames = 256;
constexpr int kWaveHarmonics = 256;
constexpr int kWaveValues = kWaveFrames * kWaveHarmonics;

// A table: one block of 2048 signed 16-bit samples per frame. Level L
// (1..10) is one cycle of 2^L samples that starts at offset 2^L of the block,
// so a level's offset equals its length; offsets 0 and 1 hold 0.
constexpr int kFrameBlock = 2048;
constexpr int kTableValues = kWaveFrames * kFrameBlock;
constexpr int kTableLevels = 10;
constexpr int levelLength(int level) {
  return 1 << level;
}
constexpr int levelOffset(int level) {
  return 1 << level;
}

// Waves 0 ("off") and 1 ("STA Noise") are never played from a table.
constexpr int kFirstTableWave = 2;

// Modifier steps, "off" included.
constexpr int kModifierSteps = 25;

}  // namespace sablevox
