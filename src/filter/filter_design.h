// The filter's control side: turning a FiltType step into a code, designing
// coefficients once per control tick, and the copy and clear rules that keep
// the two channels' running states apart.
#pragma once

#include "filter/filter_routine.h"
#include "filter/filter_state.h"

namespace sablevox {

// The internal code of a FiltType step (0..38); kFilterCodeNone for "off".
int filterCodeForStep(int step);

// Clamps cutoff and resonance to 0..1, stores code, sample rate, cutoff and
// resonance in state, writes the coefficients and returns the routine for the
// code. A code outside the table writes only those four fields and returns
// filterNone.
FilterRoutine designFilter(int code, int sampleRate, float cutoff, float resonance,
                           FilterState& state);

// Copies the header and, by mode, the coefficients of left into right; never
// history, phases or delay lines.
void copyFilterSettings(const FilterState& left, FilterState& right);

// Clears the running state that mode covers, at a note start that resets the sound.
void resetFilter(FilterState& state);

// Leaves every word of the record zero, as a change of filter type asks;
// of the line it writes only the cells written since its last clear.
void clearFilter(FilterState& state);

// Far above any healthy running value: a full oscillator stack through the
// most resonant type stays two orders of magnitude below it.
constexpr float kFilterRunawayLimit = 1.0e6f;

// True when the running state has left every healthy range (or is not a
// number). Resonant stages whose coefficients jump at every tick, as a noise
// LFO on the cutoff makes them, can gain energy without bound; nothing in
// their formulas pulls them back, so the voice clears them.
inline bool filterRanAway(const FilterState& state) {
  bool away = false;
  for (float v : state.set2) away |= !(v <= kFilterRunawayLimit && v >= -kFilterRunawayLimit);
  for (float v : state.hist1) away |= !(v <= kFilterRunawayLimit && v >= -kFilterRunawayLimit);
  for (float v : state.hist2) away |= !(v <= kFilterRunawayLimit && v >= -kFilterRunawayLimit);
  return away;
}

}  // namespace sablevox
