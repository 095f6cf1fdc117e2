// Turns a spoken phrase into 256 frames of harmonic amplitudes, evenly over
// the sounding part of the recording.
#pragma once

#include <vector>

#include "audio_io.h"
#include "harmonic_analysis.h"

namespace sablevox::voicegen {

constexpr int kFrames = 256;

struct Span {
  double start = 0.0;  // samples
  double end = 0.0;
};

// From the first to the last 10 ms stretch whose RMS lies within
// `thresholdDb` of the loudest one.
Span soundSpan(const Audio& audio, double thresholdDb);

// The stretch a phrase's frames cover: its sound (within 40 dB of the
// loudest), from 10 ms before to 60 ms after, so that the last frame, which
// "+ stop" holds after the phrase, has died away.
Span phraseSpan(const Audio& audio);

// Time of frame i (0..255) in a span: frame 0 at its start, frame 255 at its
// end, as "+ stop" walks the frames.
double frameTime(const Span& span, int frame);

struct SpeechAnalysis {
  std::vector<HarmonicFrame> frames;  // kFrames, amplitudes at full scale 1
  Span span;
  double medianF0 = 0.0;  // Hz, of the clearly voiced stretches
  int voicedFrames = 0;
  double f0Low = 0.0, f0High = 0.0;  // Hz, 10th and 90th percentile over the voiced frames
};

// Frames whose periodicity is clear are measured pitch-synchronously (two
// local periods, harmonics by DFT, envelope re-read at fRef); the others -
// s, t, k, breath - by band power at the harmonics of fRef.
SpeechAnalysis analyseSpeech(const Audio& audio, double fRef);

}  // namespace sablevox::voicegen
