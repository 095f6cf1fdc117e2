// Measures harmonic amplitudes of recorded or synthesised sound at one point
// in time, for the spoken waves and drum loops.
#pragma once

#include <array>
#include <vector>

namespace sablevox::voicegen {

constexpr int kHarmonics = 256;
using HarmonicFrame = std::array<double, kHarmonics>;  // amplitudes of harmonics 1..256

struct Pitch {
  double frequency = 0.0;  // Hz
  double clarity = 0.0;    // peak of the normalised autocorrelation, 0..1
};

// The strongest period between 1/maxHz and 1/minHz of the stretch around
// `center` (in samples), by normalised autocorrelation over 2.5 of the
// longest periods, refined between lags by a parabola. Of lags that
// correlate within 10 % of the best, the shortest peak wins, so a multiple of
// the period is not taken for it.
Pitch pitchAt(const std::vector<double>& x, double sampleRate, double center, double minHz,
              double maxHz);

// Voiced sound: a Hann window of two local periods around `center`, a DFT at
// each multiple of f0, then the spectral envelope so found read again at the
// multiples of fRef, so that a wave played at fRef keeps the formants even
// where the source's pitch wandered. Harmonics above the Nyquist limit are 0.
HarmonicFrame voicedHarmonics(const std::vector<double>& x, double sampleRate, double center,
                              double f0, double fRef);

// Any sound, noise included: the power within each band (k - 1/2 .. k + 1/2)
// * fRef of a Hann-windowed stretch of `length` samples around `center`,
// smoothed over neighbouring bands at high harmonics, given as the amplitude
// of the one sine that carries that power. So hiss keeps its level and
// colour when it is played back as harmonics.
HarmonicFrame bandHarmonics(const std::vector<double>& x, double sampleRate, double center,
                            double fRef, int length, bool circular);

}  // namespace sablevox::voicegen
