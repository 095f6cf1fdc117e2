// Harmonic spectra as the recipes build them: one double amplitude per
// harmonic, in any unit (the wave is normalised to 65535 afterwards), and
// the spectra of the classic shapes and filters the recipes draw with.
#pragma once

#include <array>
#include <span>

namespace sablevox::wavegen {

constexpr int kHarmonics = 256;
constexpr int kFrames = 256;

// Index h holds harmonic number h + 1.
using Spectrum = std::array<double, kHarmonics>;
using Frames = std::array<Spectrum, kFrames>;

// Position of a frame along the wave, 0 at frame 0 and 1 at frame 255.
inline double frameTime(int frame) {
  return frame / 255.0;
}

// Amplitudes of harmonic k (1-based) of the classic shapes, full scale 1 at
// the fundamental of the sawtooth.
double sawHarmonic(int k);
double squareHarmonic(int k);
double triangleHarmonic(int k);
double pulseHarmonic(int k, double width);  // width 0..1 of the period

// Magnitude responses at harmonic k (or at a frequency, same unit as the
// cut-off). Each is 1 in its pass band.
double lowpass(double k, double cutoff, int order);   // Butterworth
double highpass(double k, double cutoff, int order);  // Butterworth
// Four-pole ladder low-pass with feedback 0..4 (4 self-oscillates); the
// resonance peak is near the cut-off.
double ladderLowpass(double k, double cutoff, double feedback);
// A two-pole resonance of unity gain at 0 Hz and gain centre/bandwidth at
// the centre: the cascade element of a formant filter.
double formant(double frequency, double centre, double bandwidth);
// A bell-shaped bump of height 1 at the centre, in harmonic units.
double bump(double k, double centre, double width);
// Flanger comb: a signal plus a copy delayed by `delay` periods at gain g
// (negative g for feedback-like sharper peaks is not used; see combFeedback).
double combFeedForward(int k, double delay, double gain);
double combFeedback(int k, double delay, double gain);  // |g| < 1

// Harmonic magnitudes of one cycle of n samples (a power of two, n >= 1024),
// scaled so that a sine of amplitude 1 gives 1.
void harmonicsOfCycle(const double* cycle, int n, Spectrum& out);

// One straight piece of a waveform over [t0, t1) of the period 0..1, going
// from v0 to v1. Pieces need not cover the period (the rest is 0).
struct Segment {
  double t0, t1, v0, v1;
};
// Exact harmonic magnitudes of a waveform made of straight pieces: no
// sampling, so pulses and ramps have no aliasing. Same scale as above.
void harmonicsOfSegments(std::span<const Segment> pieces, Spectrum& out);

}  // namespace sablevox::wavegen
