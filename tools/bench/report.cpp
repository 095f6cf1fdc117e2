// Medians and tables of sablevox-bench.
#include "bench/report.h"

#include <algorithm>
#include <cstdio>

namespace sablevox::bench {

double median(std::vector<double> values) {
  if (values.empty()) return 0.0;
  std::sort(values.begin(), values.end());
  const size_t half = values.size() / 2;
  return values.size() % 2 == 1 ? values[half] : 0.5 * (values[half - 1] + values[half]);
}

std::string withSpread(const std::vector<double>& values, int precision) {
  if (values.empty()) return "-";
  const auto [low, high] = std::minmax_element(values.begin(), values.end());
  char text[96];
  std::snprintf(text, sizeof text, "%.*f (%.*f–%.*f)", precision, median(values), precision, *low,
                precision, *high);
  return text;
}

void printTable(std::ostream& out, const std::vector<std::string>& header,
                const std::vector<std::vector<std::string>>& rows) {
  auto line = [&out](const std::vector<std::string>& cells) {
    out << '|';
    for (const auto& cell : cells) out << ' ' << cell << " |";
    out << '\n';
  };
  line(header);
  out << '|';
  for (size_t i = 0; i < header.size(); ++i) out << " --- |";
  out << '\n';
  for (const auto& row : rows) line(row);
  out << '\n';
}

}  // namespace sablevox::bench
