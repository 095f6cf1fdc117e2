// sablevox-levels: plays every factory program on triads at C2 to C5 and
// single notes C1 to C7, at velocity 100 and 127, under several random
// states, and reports each program's worst peak, worst DC and loudest
// loudness (one line each, the input of tools/bankgen/level_banks.py) and
// whether the banks meet their level bars. A case whose first two runs are
// identical to the bit does not draw on the random state, and is not played
// again (--all-runs plays it anyway).
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "levels/program_player.h"
#include "render/settings_folder.h"

namespace {

using namespace sablevox::levels;

struct Options {
  int runs = 8;
  std::vector<int> banks{1, 2, 3, 4};
  std::string report;
  std::ofstream cases;  // one line per case and run, if asked
  std::string plugin = SABLEVOX_PLUGIN_PATH;
  bool allRuns = false;
};

struct ProgramResult {
  int bank = 0;
  int program = 0;
  std::string name;
  std::string category;
  bool finite = true;
  double peakDb = -200.0;
  std::string peakCase;
  double dc = 0.0;
  double loudnessDb = -200.0;
  std::string loudCase;
  double runSpreadDb = 0.0;  // the largest change of one case's loudness between runs
  float volume = 0.0f;
};

ProgramResult measureProgram(ProgramPlayer& player, int bank, int program, Options& options) {
  ProgramResult r;
  r.program = program;
  r.name = player.programName(program);
  r.category = categoryOf(r.name);
  if (!player.select(program)) {
    r.finite = false;
    return r;
  }
  r.volume = player.volume();
  const std::vector<KeyCase> cases = allKeyCases();
  for (size_t c = 0; c < cases.size(); ++c) {
    double quietest = 1e9, loudest = -1e9;
    uint64_t firstDigest = 0;
    for (int run = 0; run < options.runs; ++run) {
      const CaseMeasure m = player.play(cases[c], isPattern(r.category), caseSeed(run, c));
      r.finite = r.finite && m.finite;
      if (options.cases.is_open()) {
        options.cases << bank << '\t' << program << '\t' << r.name << '\t' << cases[c].label()
                      << '\t' << run << '\t' << m.peakDb << '\t' << m.loudnessDb << '\t' << m.dc
                      << '\n';
      }
      if (m.peakDb > r.peakDb) {
        r.peakDb = m.peakDb;
        r.peakCase = cases[c].label();
      }
      r.dc = std::max(r.dc, m.dc);
      if (m.loudnessDb > r.loudnessDb) {
        r.loudnessDb = m.loudnessDb;
        r.loudCase = cases[c].label();
      }
      quietest = std::min(quietest, m.loudnessDb);
      loudest = std::max(loudest, m.loudnessDb);
      if (run == 0) firstDigest = m.digest;
      if (run == 1 && m.digest == firstDigest && !options.allRuns) break;
    }
    r.runSpreadDb = std::max(r.runSpreadDb, loudest - quietest);
  }
  return r;
}

bool parse(int argc, char** argv, Options& options) {
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    const bool hasValue = i + 1 < argc;
    if (arg == "--runs" && hasValue) {
      options.runs = std::max(1, std::atoi(argv[++i]));
    } else if (arg == "--banks" && hasValue) {
      options.banks.clear();
      for (const char* p = argv[++i]; *p != '\0'; ++p) {
        if (*p >= '1' && *p <= '4') options.banks.push_back(*p - '0');
      }
    } else if (arg == "--report" && hasValue) {
      options.report = argv[++i];
    } else if (arg == "--case-report" && hasValue) {
      options.cases.open(argv[++i]);
    } else if (arg == "--plugin" && hasValue) {
      options.plugin = argv[++i];
    } else if (arg == "--all-runs") {
      options.allRuns = true;
    } else {
      return false;
    }
  }
  return !options.banks.empty();
}

// Prints the bank's worst cases and the programs that miss a bar; true if none does.
bool summarise(int bank, const std::vector<ProgramResult>& results) {
  const ProgramResult* peak = nullptr;
  const ProgramResult* dc = nullptr;
  std::map<std::string, std::pair<double, double>> categories;  // quietest, loudest
  bool ok = true;
  for (const ProgramResult& r : results) {
    if (peak == nullptr || r.peakDb > peak->peakDb) peak = &r;
    if (dc == nullptr || r.dc > dc->dc) dc = &r;
    auto [it, fresh] = categories.try_emplace(r.category, r.loudnessDb, r.loudnessDb);
    it->second = {std::min(it->second.first, r.loudnessDb),
                  std::max(it->second.second, r.loudnessDb)};
    const bool levelled = std::abs(r.loudnessDb - kLevelDb) <= kLevelToleranceDb;
    if (!r.finite || r.peakDb > kPeakCeilingDb || r.peakDb < kPeakFloorDb || r.dc >= kMaxDc ||
        !levelled) {
      ok = false;
      std::printf("  outside: %-24s peak %6.2f dB (%s)  DC %.4f  loudness %6.2f dB (%s)%s\n",
                  r.name.c_str(), r.peakDb, r.peakCase.c_str(), r.dc, r.loudnessDb,
                  r.loudCase.c_str(), r.finite ? "" : "  NOT FINITE");
    }
  }
  if (peak == nullptr) return ok;
  std::printf("bank %d: %zu programs; worst peak %.2f dBFS (%s, %s); worst DC %.4f (%s)\n", bank,
              results.size(), peak->peakDb, peak->name.c_str(), peak->peakCase.c_str(), dc->dc,
              dc->name.c_str());
  double widest = 0.0;
  std::string widestName;
  for (const auto& [category, range] : categories) {
    const double spread = range.second - range.first;
    if (spread > kCategorySpreadDb) ok = false;
    if (spread >= widest) {
      widest = spread;
      widestName = category;
    }
  }
  std::printf("  widest category spread %.2f dB (%s)\n", widest, widestName.c_str());
  return ok;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (!parse(argc, argv, options)) {
    std::cerr << "usage: sablevox-levels [--runs 8] [--banks 1234] [--report FILE] "
                 "[--case-report FILE] [--plugin PATH] [--all-runs]\n";
    return 2;
  }
  const auto begin = std::chrono::steady_clock::now();
  std::ofstream report;
  if (!options.report.empty()) report.open(options.report);
  bool ok = true;
  std::vector<ProgramResult> all;
  for (int bank : options.banks) {
    std::vector<ProgramResult> results;
    {
      // One settings folder names the bank the instance starts on.
      sablevox::render::SettingsFolder settings(bank, -1, -1);
      ProgramPlayer player;
      std::string error;
      if (!settings.ok() || !player.start(options.plugin, error)) {
        std::cerr << "sablevox-levels: " << (settings.ok() ? error : settings.error()) << '\n';
        return 1;
      }
      for (int program = 0; program < player.programCount(); ++program) {
        if (player.programName(program).empty()) continue;  // factory C leaves places empty
        results.push_back(measureProgram(player, bank, program, options));
        results.back().bank = bank;
      }
    }
    for (const ProgramResult& r : results) {
      if (report.is_open()) {
        report << bank << '\t' << r.program << '\t' << r.name << '\t' << r.peakDb << '\t'
               << r.loudnessDb << '\t' << r.dc << '\t' << r.volume << '\t' << r.peakCase << '\t'
               << r.loudCase << '\t' << r.runSpreadDb << '\n';
      }
    }
    ok = summarise(bank, results) && ok;
    std::fflush(stdout);  // a bank's results as soon as they are known
    report.flush();
    all.insert(all.end(), results.begin(), results.end());
  }
  std::map<std::string, std::pair<double, double>> categories;
  double runSpread = 0.0;
  std::string runSpreadName;
  for (const ProgramResult& r : all) {
    auto [it, fresh] = categories.try_emplace(r.category, r.loudnessDb, r.loudnessDb);
    it->second = {std::min(it->second.first, r.loudnessDb),
                  std::max(it->second.second, r.loudnessDb)};
    if (r.runSpreadDb > runSpread) {
      runSpread = r.runSpreadDb;
      runSpreadName = r.name;
    }
  }
  std::printf("categories over the banks measured (loudness spread, dB):");
  for (const auto& [category, range] : categories) {
    const double spread = range.second - range.first;
    if (spread > kCategorySpreadDb) ok = false;
    std::printf(" %s %.1f;", category.c_str(), spread);
  }
  const double elapsed =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  std::printf("\nlargest run-to-run change of a case's loudness: %.2f dB (%s)\n", runSpread,
              runSpreadName.c_str());
  std::printf("%d runs, %.0f s; %s\n", options.runs, elapsed,
              ok ? "every bar holds" : "some bars are missed");
  return ok ? 0 : 1;
}
