// How closely a rendered wave follows its source: spectral envelopes over
// time, compared cell by cell.
#pragma once

#include <vector>

#include "audio_io.h"
#include "speech_analysis.h"

namespace sablevox::voicegen {

constexpr int kCompareBands = 20;

// Log energies (dB) of kCompareBands triangular mel bands from 100 Hz to
// 8 kHz, in a 25 ms Hann window at each of the kFrames frame times of the
// span; frame-major. Cells more than 60 dB under the loudest are raised to
// that floor, so that silence and rounding noise do not count.
std::vector<double> melEnvelope(const Audio& audio, const Span& span);

// Pearson correlation over all cells of two envelopes of the same shape.
double pearson(const std::vector<double>& a, const std::vector<double>& b);

// The same envelope with its frames in reverse order: the correlation with it
// is a baseline that shares the average spectrum but not its movement.
std::vector<double> reversedInTime(const std::vector<double>& envelope);

}  // namespace sablevox::voicegen
