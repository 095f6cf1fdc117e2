// Every named factory program, played through the built plug-in in the
// registers where programs are loudest, is audible and clean and keeps the
// level bars of tools/levels: peak between -30 and -1 dBFS, every sample
// finite, DC below 0.5 % of full scale, loudness (its loudest case) within
// 6 dB of the house level, and the programs of a category within 10 dB of
// each other. sablevox-levels measures the same bars over every register,
// both velocities and eight random states. Each bank is played in two halves
// so that ctest can run the pieces side by side.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "levels/program_player.h"
#include "render/settings_folder.h"

namespace sablevox::testing {
namespace {

using namespace levels;

// Of allKeyCases(), at full velocity, the triads on C2 and C4 and single
// notes C1 and C7, under the random state of the full measure's first run:
// for every program one of these is its loudest case there or within about
// 3 dB of it. Arpeggios and sequences, which spread the keys over octaves
// themselves, play the triads only.
constexpr size_t kCases[] = {11, 13, 15, 21};

struct Measured {
  std::string name;
  CaseMeasure worst;  // the highest peak, DC and loudness of the cases
};

class BankRenderTest : public ::testing::TestWithParam<std::tuple<int, int>> {};

TEST_P(BankRenderTest, ProgramsAreAudibleCleanAndLevelled) {
  const auto [bank, half] = GetParam();
  // One settings folder, made before any instance loads, names the bank for all.
  render::SettingsFolder settings(bank, -1, -1);
  ASSERT_TRUE(settings.ok()) << settings.error();
  // Most of a program's time goes to waiting for its wave tables, so a few
  // instances wait side by side; they play one at a time, since the random
  // state each sets is the whole process's.
  constexpr int kPlayers = 3;
  ProgramPlayer players[kPlayers];
  for (ProgramPlayer& player : players) {
    std::string error;
    ASSERT_TRUE(player.start(SABLEVOX_PLUGIN_PATH, error)) << error;
  }
  std::vector<int> programs;  // "factory C" leaves most places empty
  for (int program = 0; program < players[0].programCount(); ++program) {
    if (!players[0].programName(program).empty()) programs.push_back(program);
  }
  const size_t first = half * programs.size() / 2;
  const size_t last = (half + 1) * programs.size() / 2;
  const std::vector<KeyCase> cases = allKeyCases();
  std::vector<Measured> measures(programs.size());
  std::mutex playing;
  std::vector<std::thread> threads;
  for (int t = 0; t < kPlayers; ++t) {
    threads.emplace_back([&, t] {
      for (size_t k = first + t; k < last; k += kPlayers) {
        Measured& m = measures[k];
        m.name = players[t].programName(programs[k]);
        m.worst.finite = players[t].select(programs[k]);
        const bool pattern = isPattern(categoryOf(m.name));
        std::lock_guard<std::mutex> lock(playing);
        for (size_t index : kCases) {
          if (!m.worst.finite || (pattern && !cases[index].triad)) continue;
          const CaseMeasure c = players[t].play(cases[index], pattern, caseSeed(0, index));
          m.worst = {c.finite, std::max(m.worst.peakDb, c.peakDb), std::max(m.worst.dc, c.dc),
                     std::max(m.worst.loudnessDb, c.loudnessDb)};
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();

  std::map<std::string, std::pair<double, double>> categories;  // quietest, loudest
  for (size_t k = first; k < last; ++k) {
    const CaseMeasure& m = measures[k].worst;
    const std::string where = "bank " + std::to_string(bank) + " program " +
                              std::to_string(programs[k]) + " \"" + measures[k].name + "\"";
    ASSERT_TRUE(m.finite) << where << ": a non-finite sample, or the waves were not built";
    EXPECT_GE(m.peakDb, kPeakFloorDb) << where;
    EXPECT_LE(m.peakDb, kPeakCeilingDb) << where;
    EXPECT_LT(m.dc, kMaxDc) << where;
    EXPECT_NEAR(m.loudnessDb, kLevelDb, kLevelToleranceDb) << where;
    auto [range, fresh] =
        categories.try_emplace(categoryOf(measures[k].name), m.loudnessDb, m.loudnessDb);
    range->second = {std::min(range->second.first, m.loudnessDb),
                     std::max(range->second.second, m.loudnessDb)};
  }
  for (const auto& [category, range] : categories) {
    EXPECT_LE(range.second - range.first, kCategorySpreadDb) << "bank " << bank << " " << category;
  }
  EXPECT_GT(last, first);
}

INSTANTIATE_TEST_SUITE_P(Banks, BankRenderTest,
                         ::testing::Combine(::testing::Values(1, 2, 3, 4), ::testing::Values(0, 1)),
                         [](const auto& info) {
                           return "Bank" + std::to_string(std::get<0>(info.param)) + "Half" +
                                  std::to_string(std::get<1>(info.param));
                         });

}  // namespace
}  // namespace sablevox::testing
