// The command line of sablevox-bench: the plug-ins to compare, each with its
// own patch, and how long and how often to measure.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "render/options.h"

namespace sablevox::bench {

// One plug-in under test: its file, program, --set values and settings, in
// the form sablevox-render's loader takes.
struct Subject {
  std::string label;
  render::Options options;
};

struct BenchOptions {
  std::vector<Subject> subjects;  // one or two
  int runs = 5;                   // repetitions of every measurement; medians reported
  double seconds = 2.0;           // audio measured per run
  bool growth = true;             // the block size and sample rate tables
  bool help = false;
};

// Each --plugin FILE starts a subject; the --set, --program, --quality,
// --bank and --label after it belong to it. False with a message on an
// unknown option or bad value.
bool parseBenchOptions(std::span<const std::string> args, BenchOptions& options,
                       std::string& error);

std::string benchUsage();

}  // namespace sablevox::bench
