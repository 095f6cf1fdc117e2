// One voice's record. All-zero means idle (ampState 0); a reset clears every
// byte. Touched by the audio thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

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
  // Set once the FM filter has written beyond the first words of a line;
  // until then both lines are known to be zero.
  uint8_t filterLinesUsed;
};

// Leaves every byte of the voice zero. Lines the FM filter never wrote are
// zero already and are skipped: they are nearly all of the record's 260 KB,
// and a reset clears 32 voices on the audio thread.
inline void clearVoice(Voice& voice) {
  auto* bytes = reinterpret_cast<unsigned char*>(&voice);
  if (voice.filterLinesUsed) {
    std::memset(bytes, 0, sizeof(Voice));
    return;
  }
  constexpr size_t kKept = 4 * sizeof(float);  // the line's first words are hist2
  const auto clearUpTo = [&](size_t& from, const float* line) {
    const auto to =
        static_cast<size_t>(reinterpret_cast<const unsigned char*>(line) - bytes) + kKept;
    std::memset(bytes + from, 0, to - from);
    from = to - kKept + sizeof(float) * kFilterLineLength;
  };
  size_t from = 0;
  clearUpTo(from, voice.filterLeft.line);
  clearUpTo(from, voice.filterRight.line);
  std::memset(bytes + from, 0, sizeof(Voice) - from);
}

}  // namespace sablevox
