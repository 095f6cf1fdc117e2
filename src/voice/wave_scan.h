// The walk of an oscillator along the 256 frames of its wave: the 17 loop
// modes (Osc?Loop step less one), the 34 loop speed steps and the speeds that
// a wave modifier imposes for "auto". Audio thread only.
#pragma once

#include <cstdint>

#include "voice/voice.h"

namespace sablevox {

constexpr int kLoopSteps = 18;       // Osc?Loop, "auto" included
constexpr int kLoopSpeedSteps = 34;  // Osc?LSp, "auto" included
constexpr int kScanModeStatic = 16;  // "static": the rate is a position

// Highest render position: frame 255, fraction 0.
constexpr int32_t kLastFramePosition = 0xFF0000;

// The Osc?LSp step that Osc?Mod step modStep imposes for "auto", or -1.
int loopSpeedOverride(int modStep);

// Rate per tick of loop speed step (1..33; 0 and others give 0). notePitch
// is pitchTable[note] and sampleRate the rate in Hz, both for the "key" steps;
// tempo in beats a minute for the "BPM" steps.
float loopSpeedRate(int step, double tempo, float notePitch, float sampleRate);

// The render position that a jump to scan position p (0..1) sets at once.
int32_t jumpPosition(float p);

// One tick of scan mode (0..16) at rate for oscillator osc of voice: moves
// scanPos, scanDir, scanTimer and, for a jump, oscFrame of member A. The first
// tick of a note (tickCount 0) places the start. Random starts and jumps draw
// from lfoRandom.
void scanStep(int mode, float rate, Voice& voice, int osc);

}  // namespace sablevox
