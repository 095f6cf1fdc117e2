// One run of sablevox-render: dispatches to the reports or renders the MIDI
// input through the plug-in into the output file.
#pragma once

#include <ostream>

#include "render/options.h"

namespace sablevox::render {

// Results go to `out` (the summary, the reports), messages and the progress
// bar to `err`; `progress` enables the bar. Returns the exit status.
int runCommand(const Options& options, std::ostream& out, std::ostream& err, bool progress);

}  // namespace sablevox::render
