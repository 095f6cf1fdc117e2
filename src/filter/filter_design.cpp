// The filter's control side: code lookup, design dispatch by family, and the
// copy and clear rules that keep the two channels' running states apart.
#include "filter/filter_design.h"

#include <algorithm>

#include "filter/cutoff_law.h"
#include "filter/family_design.h"
#include "filter/filter_types.h"
#include "host/written_mark.h"

namespace sablevox {

int filterCodeForStep(int step) {
  return kFilterTypes[std::clamp(step, 0, kFilterTypeCount - 1)].code;
}

FilterRoutine designFilter(int code, int sampleRate, float cutoff, float resonance,
                           FilterState& state) {
  const float c = clamp01(cutoff);
  const float r = clamp01(resonance);
  state.code = static_cast<float>(code);
  state.sampleRate = static_cast<float>(sampleRate);
  state.cutoff = c;
  state.resonance = r;
  // A host's nonsense rate must not reach a division or the fast sine's
  // integer phase; below 1 kHz no design means anything anyway.
  const int rate = std::max(sampleRate, 1000);
  for (const auto design :
       {designBiquadPair, designStateVariable, designLadder, designModulation}) {
    if (const FilterRoutine routine = design(code, rate, c, r, state)) return routine;
  }
  return filterNone;
}

namespace {

int modeOf(const FilterState& state) {
  const float m = state.mode;
  return m >= 0.0f && m < 256.0f ? static_cast<int>(m) : -1;
}

void copyWords(const float* from, float* to, int n) {
  std::copy(from, from + n, to);
}
void clearWords(float* words, int n) {
  std::fill(words, words + n, 0.0f);
}

// All of the line zero: the cells beyond the mark are already. The first
// four are hist2, which other routines write without marking.
void clearLine(FilterState& state) {
  clearWritten(state.line, state.lineWritten, kFilterLineLength, 4);
  state.lineWritten = 0;
}

}  // namespace

void copyFilterSettings(const FilterState& left, FilterState& right) {
  right.code = left.code;
  right.sampleRate = left.sampleRate;
  right.cutoff = left.cutoff;
  right.resonance = left.resonance;
  right.mode = left.mode;
  right.gain = left.gain;
  switch (modeOf(left)) {
    case kModeBiquadSerial:
    case kModeBiquadParallel:
    case kModeBiquadPhaser:
      copyWords(left.set1, right.set1, 5);
      copyWords(left.set2, right.set2, 5);
      break;
    case kModeStateVariable:
      copyWords(left.set1, right.set1, 5);
      break;
    case kModeAm:
    case kModeResample:
      copyWords(left.set1, right.set1, 2);
      break;
    case kModeFm:
    case kModeLadder:
    case kModeLadderNoisy:
      copyWords(left.set1, right.set1, 8);
      break;
    default:
      break;
  }
}

void resetFilter(FilterState& state) {
  switch (modeOf(state)) {
    case kModeBiquadSerial:
    case kModeBiquadParallel:
    case kModeBiquadPhaser:
      clearWords(state.hist1, 4);
      clearWords(state.hist2, 4);
      break;
    case kModeStateVariable:
      clearWords(state.set2, 3);
      break;
    case kModeAm:
      state.set2[0] = 0.0f;
      break;
    case kModeResample:
      clearWords(state.set2, 3);
      break;
    case kModeFm:
      clearWords(state.set2, 5);
      clearWords(state.hist1, 4);
      clearLine(state);
      break;
    case kModeLadder:
    case kModeLadderNoisy:
      // The pink noise words survive.
      clearWords(state.set2, 5);
      clearWords(state.hist1, 4);
      break;
    default:
      break;
  }
}

void clearFilter(FilterState& state) {
  clearLine(state);
  state.code = state.sampleRate = state.cutoff = state.resonance = state.mode = state.gain = 0.0f;
  clearWords(state.set1, 8);
  clearWords(state.set2, 5);
  clearWords(state.hist1, 4);
}

}  // namespace sablevox
