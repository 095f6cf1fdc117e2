// Turns a spoken phrase into 256 frames of harmonic amplitudes, evenly over
// the sounding part of the recording.
#include "speech_analysis.h"

#include <algorithm>
#include <cmath>

namespace sablevox::voicegen {
namespace {

// A frame counts as voiced when its normalised autocorrelation peaks above
// this within the pitch range of the phrase; fricatives stay well below.
constexpr double kVoicedClarity = 0.6;
// Stretches quieter than this (dB under the loudest) are measured as noise,
// as their pitch is not worth trusting.
constexpr double kVoicedFloorDb = -35.0;

double rmsAround(const std::vector<double>& x, double center, int length) {
  double sum = 0.0;
  const long start = static_cast<long>(center) - length / 2;
  for (long i = std::max(0L, start); i < std::min(static_cast<long>(x.size()), start + length);
       ++i) {
    sum += x[static_cast<size_t>(i)] * x[static_cast<size_t>(i)];
  }
  return std::sqrt(sum / length);
}

}  // namespace

Span soundSpan(const Audio& audio, double thresholdDb) {
  const int hop = std::max(1, static_cast<int>(audio.sampleRate * 0.01));
  std::vector<double> rms;
  for (size_t i = 0; i < audio.samples.size(); i += static_cast<size_t>(hop)) {
    rms.push_back(rmsAround(audio.samples, static_cast<double>(i) + hop / 2, hop));
  }
  const double loudest = rms.empty() ? 0.0 : *std::max_element(rms.begin(), rms.end());
  const double limit = loudest * std::pow(10.0, thresholdDb / 20.0);
  Span span;
  bool found = false;
  for (size_t i = 0; i < rms.size(); ++i) {
    if (loudest > 0.0 && rms[i] >= limit) {
      if (!found) span.start = static_cast<double>(i * static_cast<size_t>(hop));
      span.end = std::min(static_cast<double>(audio.samples.size()),
                          static_cast<double>((i + 1) * static_cast<size_t>(hop)));
      found = true;
    }
  }
  return span;
}

Span phraseSpan(const Audio& audio) {
  Span span = soundSpan(audio, -40.0);
  span.start = std::max(0.0, span.start - 0.01 * audio.sampleRate);
  span.end += 0.06 * audio.sampleRate;
  return span;
}

double frameTime(const Span& span, int frame) {
  return span.start + (span.end - span.start) * frame / (kFrames - 1);
}

SpeechAnalysis analyseSpeech(const Audio& audio, double fRef) {
  SpeechAnalysis result;
  result.span = phraseSpan(audio);
  const std::vector<double>& x = audio.samples;
  const double sr = audio.sampleRate;
  // The pitch of the phrase first, over its clearly periodic stretches; each
  // frame then searches only near it, which rules out octave errors.
  std::vector<double> clear;
  for (double t = result.span.start; t < result.span.end; t += 0.01 * sr) {
    const Pitch p = pitchAt(x, sr, t, 60.0, 400.0);
    if (p.clarity > 0.8) clear.push_back(p.frequency);
  }
  std::sort(clear.begin(), clear.end());
  result.medianF0 = clear.empty() ? fRef : clear[clear.size() / 2];
  const int peakWindow = static_cast<int>(0.02 * sr);
  double loudest = 0.0;
  for (int f = 0; f < kFrames; ++f) {
    loudest = std::max(loudest, rmsAround(x, frameTime(result.span, f), peakWindow));
  }
  const double floor = loudest * std::pow(10.0, kVoicedFloorDb / 20.0);
  const int noiseWindow = static_cast<int>(0.02 * sr);
  std::vector<double> voicedF0;
  for (int f = 0; f < kFrames; ++f) {
    const double t = frameTime(result.span, f);
    const Pitch p = pitchAt(x, sr, t, result.medianF0 * 0.75, result.medianF0 * 1.33);
    if (p.clarity > kVoicedClarity && rmsAround(x, t, peakWindow) > floor) {
      result.frames.push_back(voicedHarmonics(x, sr, t, p.frequency, fRef));
      voicedF0.push_back(p.frequency);
    } else {
      result.frames.push_back(bandHarmonics(x, sr, t, fRef, noiseWindow, false));
    }
  }
  result.voicedFrames = static_cast<int>(voicedF0.size());
  std::sort(voicedF0.begin(), voicedF0.end());
  if (!voicedF0.empty()) {
    result.f0Low = voicedF0[voicedF0.size() / 10];
    result.f0High = voicedF0[voicedF0.size() * 9 / 10];
  }
  return result;
}

}  // namespace sablevox::voicegen
