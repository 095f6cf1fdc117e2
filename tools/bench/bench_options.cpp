// Parsing of sablevox-bench's command line.
#include "bench/bench_options.h"

#include <charconv>
#include <filesystem>

namespace sablevox::bench {
namespace {

bool toNumber(const std::string& text, double low, double high, double& value) {
  const char* end = text.data() + text.size();
  const auto [next, fault] = std::from_chars(text.data(), end, value);
  return fault == std::errc() && next == end && value >= low && value <= high;
}

}  // namespace

std::string benchUsage() {
  return "Usage: sablevox-bench [--plugin FILE [subject options]]... [options]\n"
         "\n"
         "Measures VST 2 instruments side by side: audio-thread CPU time per second\n"
         "of audio with 0, 1, 8 and 32 held notes (44100 Hz, blocks of 256), the\n"
         "cost per voice-sample (slope from 8 to 32 notes), the whole process's CPU\n"
         "time, the wall time of create+open+resume, and the growth of 32 notes\n"
         "over block sizes and sample rates. Runs of the plug-ins are interleaved;\n"
         "every figure is the median of the repeated runs.\n"
         "\n"
         "  --plugin FILE      a plug-in to measure (default: the Sablevox built beside\n"
         "                     this program); up to two\n"
         "  subject options, for the --plugin before them:\n"
         "    --label TEXT     name in the tables\n"
         "    --set NAME=VALUE a parameter, as in sablevox-render\n"
         "    --program N      program to start with\n"
         "    --quality ultra|high|medium|low   Sablevox setting\n"
         "    --bank empty|A|B|C|Abstracts      Sablevox setting\n"
         "  --runs N           repetitions (default 5)\n"
         "  --seconds S        audio per run (default 2)\n"
         "  --no-growth        leave out the block size and sample rate tables\n";
}

bool parseBenchOptions(std::span<const std::string> args, BenchOptions& options,
                       std::string& error) {
  auto current = [&options]() -> Subject& {
    if (options.subjects.empty()) options.subjects.push_back({"Sablevox", {}});
    return options.subjects.back();
  };
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    if (arg == "--help" || arg == "-h") {
      options.help = true;
      continue;
    }
    if (arg == "--no-growth") {
      options.growth = false;
      continue;
    }
    if (i + 1 >= args.size()) {
      error = "unknown option or missing value: " + arg;
      return false;
    }
    const std::string& value = args[++i];
    double number = 0.0;
    if (arg == "--plugin") {
      if (options.subjects.size() == 2) {
        error = "at most two plug-ins";
        return false;
      }
      Subject subject{std::filesystem::path(value).stem().string(), {}};
      subject.options.plugin = value;
      options.subjects.push_back(subject);
    } else if (arg == "--label") {
      current().label = value;
    } else if (arg == "--set") {
      current().options.sets.push_back(value);
    } else if (arg == "--program" && toNumber(value, 0, 1e6, number)) {
      current().options.program = static_cast<int>(number);
    } else if (arg == "--quality" && render::qualityFromName(value) >= 0) {
      current().options.quality = render::qualityFromName(value);
    } else if (arg == "--bank" && render::bankFromName(value) >= 0) {
      current().options.bank = render::bankFromName(value);
    } else if (arg == "--runs" && toNumber(value, 1, 1000, number)) {
      options.runs = static_cast<int>(number);
    } else if (arg == "--seconds" && toNumber(value, 0.05, 600, number)) {
      options.seconds = number;
    } else {
      error = "unknown option or bad value: " + arg + " " + value;
      return false;
    }
  }
  current();  // the default subject when no --plugin was given
  return true;
}

}  // namespace sablevox::bench
