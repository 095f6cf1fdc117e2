// Two Sablevox measures beside the CPU tables: the longest block around a
// change of filter or effect type under 32 sounding voices (the clearing it
// asks for runs on the audio thread inside one block), and the memory an
// instance keeps resident after creation and after playing.
#pragma once

#include <string>

#include "bench/bench_options.h"

namespace sablevox::bench {

struct SwitchResult {
  bool ok = false;
  std::string error;
  double usualMs = 0.0;  // median block before the change
  double worstMs = 0.0;  // longest block from the change until 0.3 s after it
};

// 32 notes with Voices 32 and parameter `name` at choice `from`, 44100 Hz in
// blocks of 256, held for a second (long enough for an FM type to fill its
// delay lines), then `to`. Audio-thread CPU time of each block.
SwitchResult measureSwitch(const Subject& subject, const std::string& name, const std::string& from,
                           const std::string& to);

struct ResidentResult {
  bool ok = false;
  std::string error;
  double createdMb = 0.0;  // growth of the process's resident set: load, open, tables built
  double playedMb = 0.0;   // the same after two seconds of 32 notes
};

// The growth of this process's resident memory (VmRSS) from before loading
// the plug-in; meaningful for the first instance of a fresh process.
ResidentResult measureResident(const Subject& subject);

}  // namespace sablevox::bench
