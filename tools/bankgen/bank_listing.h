// The generated listing of the factory programs (docs/programs.md): bank,
// number, name, category and the main settings of each program.
#pragma once

#include <string>
#include <vector>

#include "bank_source.h"

namespace sablevox::bankgen {

// Markdown text of the whole listing; banks in stored order.
std::string programListing(const std::vector<BankSource>& banks);

}  // namespace sablevox::bankgen
