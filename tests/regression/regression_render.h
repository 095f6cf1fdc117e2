// Renders the demo phrase in-process through the built plug-in with a given
// quality and parameter settings, and reduces the float output to a checksum
// of its exact bits, so that a change of a single sample shows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace sablevox::testing {

struct RegressionCase {
  const char* name;
  int quality;  // 0 "ultra" .. 3 "low"
  // --set texts applied before the first block.
  std::vector<std::string> sets;
  // Further --set groups, one applied at the start of each following
  // segment of `segmentSeconds`: several types in one render.
  std::vector<std::vector<std::string>> segments = {};
  double segmentSeconds = 0.5;
  int blockSize = 256;
};

struct RegressionResult {
  std::string error;  // empty on success
  uint64_t checksum = 0;
  int64_t frames = 0;
  float peak = 0.0f;  // largest magnitude, to see that the render sounds
  bool finite = true;
};

// The demo phrase at 300 BPM with a short tail, 44100 Hz, in blocks of
// `blockSize`, waiting for the wave tables before every block so that the
// worker's timing never changes the result.
RegressionResult renderRegression(const RegressionCase& c);

}  // namespace sablevox::testing
