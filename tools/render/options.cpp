// Parsing of the command line; every value is checked here, so that the
// render itself starts only with sound arguments.
#include "render/options.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <functional>
#include <map>

namespace sablevox::render {
namespace {

// Lower case without blanks, dashes and underscores: "Factory A" == "factory-a".
std::string folded(const std::string& text) {
  std::string out;
  for (char c : text) {
    if (c != ' ' && c != '-' && c != '_') {
      out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
  }
  return out;
}

// The whole text as one finite number.
template <typename Number>
bool parseNumber(const std::string& text, Number& value) {
  const char* end = text.data() + text.size();
  auto [at, failure] = std::from_chars(text.data(), end, value);
  return failure == std::errc() && at == end && !text.empty() && std::isfinite(value);
}

// A setter of a number option that accepts low..high.
template <typename Number>
auto ranged(Number& target, Number low, Number high) {
  return [&target, low, high](const std::string& text) {
    Number parsed{};
    if (!parseNumber(text, parsed) || parsed < low || parsed > high) return false;
    target = parsed;
    return true;
  };
}

// A name from the list (folded) or its number 0..count-1; -1 if neither.
int choiceFromName(const std::string& text, std::span<const char* const> names) {
  int number = 0;
  if (parseNumber(text, number))
    return number >= 0 && number < static_cast<int>(names.size()) ? number : -1;
  for (size_t i = 0; i < names.size(); ++i) {
    if (folded(text) == folded(names[i])) return static_cast<int>(i);
  }
  return -1;
}

// "7,10,64-67": controller numbers and ranges, each 0..127.
bool parseControllerList(const std::string& text, std::array<bool, 128>& ignored) {
  size_t begin = 0;
  while (begin <= text.size()) {
    const size_t comma = std::min(text.find(',', begin), text.size());
    const std::string item = text.substr(begin, comma - begin);
    const size_t dash = item.find('-');
    int low = 0;
    int high = 0;
    if (dash == std::string::npos) {
      if (!parseNumber(item, low)) return false;
      high = low;
    } else if (!parseNumber(item.substr(0, dash), low) ||
               !parseNumber(item.substr(dash + 1), high)) {
      return false;
    }
    if (low < 0 || high > 127 || low > high) return false;
    for (int number = low; number <= high; ++number) ignored[static_cast<size_t>(number)] = true;
    begin = comma + 1;
  }
  return true;
}

constexpr const char* kQualityNames[] = {"ultra", "high", "medium", "low"};
constexpr const char* kIqmNames[] = {"off", "light", "heavy", "pure"};
constexpr const char* kBankNames[] = {"empty", "factory A", "factory B", "factory C", "Abstracts"};

}  // namespace

int qualityFromName(const std::string& text) {
  return choiceFromName(text, kQualityNames);
}

int iqmFromName(const std::string& text) {
  return choiceFromName(text, kIqmNames);
}

int bankFromName(const std::string& text) {
  const std::string name = folded(text);
  if (name == "a" || name == "b" || name == "c") return 1 + (name[0] - 'a');
  return choiceFromName(text, kBankNames);
}

const char* bankName(int bank) {
  return bank >= 0 && bank < 5 ? kBankNames[bank] : "?";
}

bool parseOptions(std::span<const std::string> args, Options& options, std::string& error) {
  options = Options{};
  bool demo = false;
  // Each option that takes a value: how to store it, false if malformed.
  using Setter = std::function<bool(const std::string&)>;
  auto named = [](int& target, int (*lookup)(const std::string&)) {
    return [&target, lookup](const std::string& v) { return (target = lookup(v)) >= 0; };
  };
  auto text = [](std::string& target) {
    return [&target](const std::string& v) { return !(target = v).empty(); };
  };
  const std::map<std::string, std::pair<Setter, const char*>> valued = {
      {"-o", {text(options.output), "a file name"}},
      {"--output", {text(options.output), "a file name"}},
      {"--plugin", {text(options.plugin), "a file name"}},
      {"--sample-rate", {ranged(options.sampleRate, 8000, 384000), "8000 to 384000"}},
      {"--block-size", {ranged(options.blockSize, 1, 65536), "1 to 65536"}},
      {"--tempo", {ranged(options.tempo, 1.0, 999.0), "1 to 999 BPM"}},
      {"--program", {ranged(options.program, 0, 100000), "a program number from 0"}},
      {"--bank", {named(options.bank, bankFromName), "empty, A, B, C, Abstracts or 0 to 4"}},
      {"--quality",
       {named(options.quality, qualityFromName), "ultra, high, medium, low or 0 to 3"}},
      {"--iqm", {named(options.iqm, iqmFromName), "off, light, heavy, pure or 0 to 3"}},
      {"--tail", {ranged(options.tail, 0.0, 600.0), "0 to 600 seconds"}},
      {"--gain", {ranged(options.gainDb, -96.0, 48.0), "-96 to 48 dB"}},
      {"--ignore-cc",
       {[&options](const std::string& v) {
          return parseControllerList(v, options.ignoredControllers);
        },
        "controller numbers 0 to 127, as 7,10 or 64-67"}},
      {"--set",
       {[&options](const std::string& v) {
          if (v.find('=') == std::string::npos || v.front() == '=') return false;
          options.sets.push_back(v);
          return true;
        },
        "NAME=VALUE"}},
      {"--format",
       {[&options](const std::string& v) {
          const std::string f = folded(v);
          if (f == "16")
            options.format = SampleFormat::pcm16;
          else if (f == "24")
            options.format = SampleFormat::pcm24;
          else if (f == "float" || f == "32")
            options.format = SampleFormat::float32;
          else
            return false;
          options.formatGiven = true;
          return true;
        },
        "16, 24 or float"}},
  };

  for (size_t i = 0; i < args.size(); ++i) {
    std::string arg = args[i];
    std::string value;
    bool inlineValue = false;
    if (arg.rfind("--", 0) == 0 && arg.find('=') != std::string::npos) {
      value = arg.substr(arg.find('=') + 1);
      arg = arg.substr(0, arg.find('='));
      inlineValue = true;
    }
    if (auto found = valued.find(arg); found != valued.end()) {
      if (!inlineValue) {
        if (i + 1 >= args.size()) {
          error = arg + " needs a value (" + found->second.second + ")";
          return false;
        }
        value = args[++i];
      }
      if (!found->second.first(value)) {
        error = "bad value '" + value + "' for " + arg + ": expected " + found->second.second;
        return false;
      }
    } else if (inlineValue) {
      error = "unknown option " + arg + " (see --help)";
      return false;
    } else if (arg == "--demo") {
      demo = true;
    } else if (arg == "--strict") {
      options.strict = true;
    } else if (arg == "--normalize") {
      options.normalize = true;
    } else if (arg == "--version") {
      options.command = Command::version;
      return true;
    } else if (arg == "--list-params") {
      options.command = Command::listParams;
    } else if (arg == "--list-programs") {
      options.command = Command::listPrograms;
    } else if (arg == "-h" || arg == "--help") {
      options.command = Command::help;
      return true;
    } else if (arg == "info") {  // the command word, wherever it stands
      options.command = Command::info;
    } else if (arg.size() > 1 && arg[0] == '-') {
      error = "unknown option " + arg + " (see --help)";
      return false;
    } else if (options.input.empty()) {
      options.input = arg;
    } else {
      error = "more than one input file: " + options.input + " and " + arg;
      return false;
    }
  }
  if (demo && !options.input.empty()) {
    error = "give either a MIDI file or --demo, not both";
    return false;
  }
  if (options.normalize && options.gainDb != 0.0) {
    error = "give either --gain or --normalize, not both";
    return false;
  }
  return true;
}

std::string usageText() {
  return R"(Usage: sablevox-render [MIDI-FILE | --demo] [options]
       sablevox-render info [--plugin FILE]
       sablevox-render --list-params | --list-programs [--plugin FILE] [settings]

Renders a Standard MIDI File (format 0, 1 or 2; without one, the built-in
demo phrase) through a VST 2 instrument and writes the audio. A file that
bends the format is repaired as players do, with a warning for each repair.

  -o, --output FILE     output file, .wav or .flac (default: the input's name
                        with .wav, or sablevox-demo.wav)
  --format 16|24|float  sample format (default 24-bit; float only for WAV)
  --plugin FILE         the plug-in (default: the Sablevox built beside this
                        program, then ~/.vst/Sablevox.so)
  --sample-rate HZ      default 44100
  --block-size FRAMES   default 512
  --tempo BPM           one tempo replacing the file's tempo map
  --tail SECONDS        rendered after the last MIDI event (default 2)
  --strict              refuse a MIDI file that needs repairs
  --program N           program to start with
  --set NAME=VALUE      a parameter by the name the plug-in reports; VALUE is
                        0 to 1, or for a Sablevox choice parameter the name
                        of the choice (--set FiltType="LP Moog")
  --gain DB             level change of the output, -96 to 48 dB
  --normalize           bring the peak to -1 dBFS (instead of --gain)
  --ignore-cc LIST      leave these controllers of the MIDI file out, e.g. 7
                        (volume, which sets the program's Volume) or 7,10,64-67
Sablevox settings (used for this run only; your own settings file is never
read or changed):
  --bank empty|A|B|C|Abstracts   start bank, or 0 to 4
  --quality ultra|high|medium|low, or 0 to 3
  --iqm off|light|heavy|pure, or 0 to 3
Reports:
  info                  what a host's scanner reads from the plug-in
  --list-params         parameters with their values and display texts
  --list-programs       program names
  --version             this program's version
)";
}

const char* programVersion() {
  return SABLEVOX_VERSION;
}

}  // namespace sablevox::render
