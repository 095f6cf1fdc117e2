// One measurement of one plug-in: a fresh instance at a sample rate and block
// size, its wave worker given time to finish, N held notes, then the CPU
// time of a stretch of audio.
#pragma once

#include "bench/bench_options.h"

namespace sablevox::bench {

struct RunShape {
  int notes = 0;
  int blockSize = 256;
  int sampleRate = 44100;
  double seconds = 2.0;
};

struct RunResult {
  bool ok = false;
  std::string error;
  double audioCpu = 0.0;    // audio-thread CPU seconds per second of audio
  double processCpu = 0.0;  // whole-process CPU seconds (workers included) per second of audio
  float peak = 0.0f;        // largest output magnitude, to see that the notes sound
};

RunResult measureRun(const Subject& subject, const RunShape& shape);

// Wall milliseconds of loading, opening, configuring and resuming one
// instance (another instance of the same file may already be loaded).
double measureCreate(const Subject& subject, std::string& error);

}  // namespace sablevox::bench
