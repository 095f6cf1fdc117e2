// Medians and the Markdown tables sablevox-bench prints.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace sablevox::bench {

// The middle value (the mean of the two middle ones for an even count); 0
// for none.
double median(std::vector<double> values);

// Median with the spread of the runs: "0.0123 (0.0119–0.0130)".
std::string withSpread(const std::vector<double>& values, int precision);

// A Markdown table: a header row and rows of cells.
void printTable(std::ostream& out, const std::vector<std::string>& header,
                const std::vector<std::vector<std::string>>& rows);

}  // namespace sablevox::bench
