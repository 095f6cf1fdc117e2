// The three reports: info (what a host's scanner reads), --list-params and
// --list-programs. Each writes to `out` and returns an exit status.
#pragma once

#include <ostream>

#include "render/options.h"

namespace sablevox::render {

int reportInfo(const Options& options, std::ostream& out, std::ostream& err);
int listParameters(const Options& options, std::ostream& out, std::ostream& err);
int listPrograms(const Options& options, std::ostream& out, std::ostream& err);

}  // namespace sablevox::render
