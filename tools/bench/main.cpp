// sablevox-bench: loads one or two VST 2 instruments and measures them side
// by side, interleaving their runs so that machine noise hits both alike.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>

#include "bench/bench_options.h"
#include "bench/instance_probes.h"
#include "bench/measure.h"
#include "bench/report.h"
#include "render/plugin_session.h"

namespace sablevox::bench {
namespace {

// Plug-ins may write files of their own under the home folder (amsynth
// makes ~/.local/share/amsynth): the run gets a fresh home, removed at the
// end, so that the user's own files are neither read nor changed.
std::string isolatedHome() {
  char pattern[] = "/tmp/sablevox-bench-XXXXXX";
  const char* made = mkdtemp(pattern);
  if (made == nullptr) return {};
  setenv("HOME", made, 1);
  return made;
}

using Samples = std::vector<double>;

struct Collected {
  Samples audio, process;
};

// Runs every shape for every subject `runs` times, subject by subject
// within each round; results by [subject][shape].
bool collect(const BenchOptions& o, const std::vector<RunShape>& shapes,
             std::vector<std::vector<Collected>>& out) {
  out.assign(o.subjects.size(), std::vector<Collected>(shapes.size()));
  for (int run = 0; run < o.runs; ++run) {
    for (size_t k = 0; k < shapes.size(); ++k) {
      for (size_t s = 0; s < o.subjects.size(); ++s) {
        const RunResult r = measureRun(o.subjects[s], shapes[k]);
        if (!r.ok) {
          std::cerr << "sablevox-bench: " << o.subjects[s].label << ": " << r.error << '\n';
          return false;
        }
        if (shapes[k].notes > 0 && r.peak <= 0.0f) {
          std::cerr << "sablevox-bench: warning: " << o.subjects[s].label << " is silent with "
                    << shapes[k].notes << " notes\n";
        }
        out[s][k].audio.push_back(r.audioCpu);
        out[s][k].process.push_back(r.processCpu);
      }
    }
  }
  return true;
}

std::string fixed(double value, int precision) {
  char text[48];
  std::snprintf(text, sizeof text, "%.*f", precision, value);
  return text;
}

// Filter and effect type changes under 32 voices (Sablevox only) and
// resident memory.
void printProbes(const BenchOptions& o, const std::vector<ResidentResult>& resident) {
  std::cout
      << "## Type changes with 32 sounding voices, resident memory\n\n"
      << "Audio-thread CPU ms of the longest block from a change of FiltType or EffType until "
         "0.3 s after it, "
         "beside a usual block (medians of "
      << o.runs << " runs); resident MB the process grew by with its first instance.\n\n";
  std::vector<std::string> header = {"measure"};
  for (const auto& s : o.subjects) header.push_back(s.label);
  std::vector<std::vector<std::string>> rows;
  const struct {
    const char *name, *from, *to;
  } changes[] = {{"FiltType", "LP Moog", "LP 12dB"},
                 {"FiltType", "LP Moog", "FM Saw"},
                 {"FiltType", "FM Saw", "LP Moog"},
                 {"EffType", "off", "Del+Rev A"},
                 {"EffType", "Del+Rev A", "Chorus"}};
  std::vector<std::string> usualRow = {"usual block, ms"};
  std::vector<Samples> usual(o.subjects.size());
  for (const auto& [name, from, to] : changes) {
    std::vector<std::string> row = {std::string(name) + " " + from + " -> " + to +
                                    ", worst block, ms"};
    for (size_t s = 0; s < o.subjects.size(); ++s) {
      Samples worst;
      std::string error;
      for (int run = 0; run < o.runs; ++run) {
        const SwitchResult r = measureSwitch(o.subjects[s], name, from, to);
        if (!r.ok) {
          error = r.error;
          break;
        }
        worst.push_back(r.worstMs);
        usual[s].push_back(r.usualMs);
      }
      row.push_back(error.empty() ? withSpread(worst, 2) : "-");
    }
    rows.push_back(row);
  }
  for (const Samples& u : usual) usualRow.push_back(u.empty() ? "-" : withSpread(u, 2));
  rows.push_back(usualRow);
  std::vector<std::string> created = {"resident after creation, MB"};
  std::vector<std::string> played = {"resident after 2 s of 32 notes, MB"};
  for (const ResidentResult& r : resident) {
    created.push_back(r.ok ? fixed(r.createdMb, 1) : "-");
    played.push_back(r.ok ? fixed(r.playedMb, 1) : "-");
  }
  rows.push_back(created);
  rows.push_back(played);
  printTable(std::cout, header, rows);
}

int run(const BenchOptions& o) {
  const std::vector<int> noteCounts = {0, 1, 8, 32};
  std::vector<RunShape> shapes;
  for (int n : noteCounts) shapes.push_back({n, 256, 44100, o.seconds});

  // Before any other instance, so that the process grows by this one alone.
  std::vector<ResidentResult> resident;
  for (const Subject& subject : o.subjects) resident.push_back(measureResident(subject));

  // Keep one instance of each plug-in for the whole run, so that loading
  // costs are those of a further instance; the first one is timed apart.
  std::vector<render::PluginSession> keepers(o.subjects.size());
  std::vector<std::string> firstCreate;
  for (size_t s = 0; s < o.subjects.size(); ++s) {
    std::string error;
    const auto start = std::chrono::steady_clock::now();
    if (!render::openPlugin(o.subjects[s].options, true, keepers[s], error)) {
      std::cerr << "sablevox-bench: " << o.subjects[s].label << ": " << error << '\n';
      return 3;
    }
    keepers[s].plugin->resume();
    firstCreate.push_back(fixed(
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count(),
        1));
  }

  // A second instance beside the first, before any instance was freed, as
  // when a host adds a track: no memory of an earlier one to reuse.
  std::vector<std::string> secondCreate;
  for (const Subject& subject : o.subjects) {
    std::string error;
    secondCreate.push_back(fixed(measureCreate(subject, error), 1));
  }

  std::vector<std::vector<Collected>> main;
  if (!collect(o, shapes, main)) return 4;
  std::vector<Samples> creates(o.subjects.size());
  for (int run = 0; run < o.runs; ++run) {
    for (size_t s = 0; s < o.subjects.size(); ++s) {
      std::string error;
      creates[s].push_back(measureCreate(o.subjects[s], error));
    }
  }

  std::cout << "## Cost at 44100 Hz, blocks of 256 (medians of " << o.runs << " runs, range)\n\n"
            << "Audio-thread CPU seconds per second of audio; per voice-sample: the slope from 8 "
               "to 32 notes.\n\n";
  std::vector<std::string> header = {"measure"};
  for (const auto& s : o.subjects) header.push_back(s.label);
  std::vector<std::vector<std::string>> rows;
  for (size_t k = 0; k < shapes.size(); ++k) {
    std::vector<std::string> audio = {std::to_string(shapes[k].notes) + " notes, audio thread"};
    std::vector<std::string> process = {std::to_string(shapes[k].notes) + " notes, process"};
    for (size_t s = 0; s < o.subjects.size(); ++s) {
      audio.push_back(withSpread(main[s][k].audio, 5));
      process.push_back(withSpread(main[s][k].process, 5));
    }
    rows.push_back(audio);
    rows.push_back(process);
  }
  std::vector<std::string> slope = {"ns per voice-sample"};
  std::vector<std::string> created = {"create+open+resume, ms (later instances)"};
  std::vector<std::string> first = {"first instance, ms"};
  std::vector<std::string> second = {"second instance, ms"};
  for (size_t s = 0; s < o.subjects.size(); ++s) {
    Samples perRun;
    for (int run = 0; run < o.runs; ++run) {
      perRun.push_back((main[s][3].audio[run] - main[s][2].audio[run]) / (24.0 * 44100.0) * 1e9);
    }
    slope.push_back(withSpread(perRun, 2));
    created.push_back(withSpread(creates[s], 1));
    first.push_back(firstCreate[s]);
    second.push_back(secondCreate[s]);
  }
  rows.push_back(slope);
  rows.push_back(created);
  rows.push_back(first);
  rows.push_back(second);
  printTable(std::cout, header, rows);

  printProbes(o, resident);
  if (!o.growth) return 0;
  std::vector<RunShape> growth;
  for (int block = 32; block <= 4096; block *= 2) growth.push_back({32, block, 44100, o.seconds});
  for (int rate : {96000, 192000}) growth.push_back({32, 256, rate, o.seconds});
  std::vector<std::vector<Collected>> grown;
  if (!collect(o, growth, grown)) return 4;
  std::cout << "## Growth with 32 notes (audio-thread CPU seconds per second of audio)\n\n";
  rows.clear();
  for (size_t k = 0; k < growth.size(); ++k) {
    std::vector<std::string> row = {std::to_string(growth[k].sampleRate) + " Hz, block " +
                                    std::to_string(growth[k].blockSize)};
    for (size_t s = 0; s < o.subjects.size(); ++s) row.push_back(withSpread(grown[s][k].audio, 5));
    rows.push_back(row);
  }
  printTable(std::cout, header, rows);
  return 0;
}

}  // namespace
}  // namespace sablevox::bench

int main(int argc, char** argv) {
  using namespace sablevox::bench;
  const std::vector<std::string> args(argv + 1, argv + argc);
  BenchOptions options;
  std::string error;
  if (!parseBenchOptions(args, options, error)) {
    std::cerr << "sablevox-bench: " << error << '\n' << benchUsage();
    return 1;
  }
  if (options.help) {
    std::cout << benchUsage();
    return 0;
  }
  const std::string home = isolatedHome();
  if (home.empty()) {
    std::cerr << "sablevox-bench: cannot make a temporary home folder\n";
    return 1;
  }
  const int status = run(options);
  std::error_code ignored;
  std::filesystem::remove_all(home, ignored);
  return status;
}
