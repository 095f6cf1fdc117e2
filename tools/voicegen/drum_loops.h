// The four drum loops: one bar of our own synthesised kick, snare, hats and
// tom, analysed into 256 frames that "++++" at "BPM /4" replays in time.
#pragma once

#include <vector>

#include "audio_io.h"
#include "harmonic_analysis.h"

namespace sablevox::voicegen {

constexpr int kDrumPatterns = 4;
constexpr double kDrumSampleRate = 44100.0;
constexpr double kDrumTempo = 120.0;  // one bar of 4/4 lasts 2 s

// One bar of pattern 1..4, made periodic: the tails of the last hits ring on
// into the start of the bar, as they do when the loop repeats.
Audio drumLoop(int pattern);

// Frame i of 256 at i/255 of the bar (frame 255 meets frame 0 of the next
// pass), band power at the multiples of fRef in a 23 ms window that starts
// shortly before it, read around the loop's end.
std::vector<HarmonicFrame> analyseDrumLoop(const Audio& bar, double fRef);

}  // namespace sablevox::voicegen
