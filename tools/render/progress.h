// The progress bar on standard error (only when it is a terminal) and the
// one-line summary of a finished render.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "render/audio_file.h"

namespace sablevox::render {

class ProgressBar {
 public:
  // Draws nothing unless `enabled`.
  ProgressBar(std::ostream& out, bool enabled, int64_t total);
  void update(int64_t done);
  void finish();  // clears the line

 private:
  std::ostream& out_;
  bool enabled_;
  int64_t total_;
  int shownPercent_ = -1;
};

struct RenderSummary {
  std::string path;
  std::string format;   // "24-bit WAV"
  bool integerSamples;  // samples beyond full scale were clipped in the file
  int sampleRate;
  int64_t frames;
  ChannelLevels left;
  ChannelLevels right;
  int64_t beyondFullScale;  // samples of both channels above full scale
  double renderSeconds;     // wall-clock time of the blocks
};

// "out.wav: 12.00 s, 44100 Hz, 24-bit WAV; peak -3.1 / -3.4 dBFS;
//  RMS -17.9 / -18.2 dBFS (L / R); 41.3x real time", on one line, with the
// count of clipped samples after the peaks when an integer file clipped, and
// what to do about it.
std::string summaryLine(const RenderSummary& summary);

}  // namespace sablevox::render
