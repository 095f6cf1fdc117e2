// One voice's record. All-zero means idle (ampState 0); a reset clears every
// byte. Touched by the audio thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "filter/filter_design.h"
#include "filter/filter_state.h"

namespace sablevox {

constexpr int kMaxVoices = 32;

// Volume and filter envelope states.
enum EnvelopeState : uint8_t { kEnvIdle = 0, kEnvAttack, kEnvDecay, kEnvSustain, kEnvRelease };

struct Voice {
  // Oscillator stack members A, B, C, D of oscillators 1 and 2: [member][osc].
  uint32_t oscPhase[4][2];  // 24-bit phase
  float oscIncrement[4][2];
  int32_t oscFrame[4][2];  // 16 fraction bits
  float scanPos[2], scanDir[2], scanTimer[2];
  int32_t tickCount;
  FilterState filterLeft, filterRight;
  int32_t filterCode;
  float outputState[2];
  int8_t note;
  int8_t velocity;
  uint8_t gate;
  uint8_t ampState;
  float ampLevel;
  uint8_t filtState;
  float filtLevel;
  float ampCore;
  float voiceLfo[3];
  float levelTarget, levelStart, levelStep, level;
  float oscLevel[2];
  float tuneRatio;
  float panLeft, panRight;
};

// Leaves every byte of the voice zero. The filter records' lines are
// cleared only as far as they were written: nearly all of the record's
// 260 KB is zero already and untouched, and a reset clears 32 voices on the
// audio thread.
inline void clearVoice(Voice& voice) {
  clearFilter(voice.filterLeft);
  clearFilter(voice.filterRight);
  auto* bytes = reinterpret_cast<unsigned char*>(&voice);
  constexpr size_t kFiltersStart = offsetof(Voice, filterLeft);
  constexpr size_t kFiltersEnd = offsetof(Voice, filterRight) + sizeof(FilterState);
  static_assert(offsetof(Voice, filterRight) == kFiltersStart + sizeof(FilterState));
  std::memset(bytes, 0, kFiltersStart);
  std::memset(bytes + kFiltersEnd, 0, sizeof(Voice) - kFiltersEnd);
}

}  // namespace sablevox
