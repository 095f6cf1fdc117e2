// Every named factory program, played through the built plug-in with the
// standard phrase, is audible and clean: peak between -30 and -1 dBFS, every
// sample finite, DC below 1 % of full scale, and its loudness within 6 dB of
// the house level, so that the programs of a category (and of all of them)
// lie within 12 dB of each other. Each bank is played in two halves so that ctest can run the
// pieces side by side.
//
// SABLEVOX_BANK_REPORT=<file> appends one line of measurements per program
// (bank, program, name, peak dB, loudness dB, DC, Volume), the input of
// tools/bankgen/level_banks.py.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "program_render.h"
#include "render/settings_folder.h"

namespace sablevox::testing {
namespace {

constexpr double kPeakLowDb = -30.0;
constexpr double kPeakHighDb = -1.0;
constexpr double kMaxDc = 0.01;
// Every program is voiced to one house level (loudest 400 ms, dBFS) and may
// lie 6 dB either side of it.
constexpr double kLevelDb = -20.0;
constexpr double kLoudnessSpreadDb = 6.0;

bool isPattern(const std::string& category) {
  return category == "ARP" || category == "SEQ";
}

class BankRenderTest : public ::testing::TestWithParam<std::tuple<int, int>> {};

TEST_P(BankRenderTest, ProgramsAreAudibleCleanAndLevelled) {
  const auto [bank, half] = GetParam();
  // One settings folder, made before any instance loads, names the bank for all.
  render::SettingsFolder settings(bank, -1, -1);
  ASSERT_TRUE(settings.ok()) << settings.error();
  // Most of a program's time goes to waiting for its wave tables, so a few
  // instances play side by side.
  constexpr int kPlayers = 3;
  BankPlayer players[kPlayers];
  for (BankPlayer& player : players) {
    std::string error;
    ASSERT_TRUE(player.start(error)) << error;
  }

  std::vector<int> programs;  // "factory C" leaves most places empty
  std::vector<std::string> names;
  for (int program = 0; program < players[0].programCount(); ++program) {
    const std::string name = players[0].programName(program);
    if (!name.empty()) {
      programs.push_back(program);
      names.push_back(name);
    }
  }
  const size_t first = half * programs.size() / 2;
  const size_t last = (half + 1) * programs.size() / 2;
  std::vector<ProgramMeasure> measures(programs.size());
  std::vector<std::thread> threads;
  for (int t = 0; t < kPlayers; ++t) {
    threads.emplace_back([&, t] {
      for (size_t k = first + t; k < last; k += kPlayers) {
        measures[k] = players[t].play(programs[k], isPattern(categoryOf(names[k])));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();

  std::ofstream report;
  if (const char* path = std::getenv("SABLEVOX_BANK_REPORT")) report.open(path, std::ios::app);
  for (size_t k = first; k < last; ++k) {
    const ProgramMeasure& m = measures[k];
    if (report.is_open()) {
      report << bank << '\t' << programs[k] << '\t' << m.name << '\t' << m.peakDb << '\t'
             << m.loudnessDb << '\t' << m.dc << '\t' << m.volume << '\n';
    }
    const std::string where = "bank " + std::to_string(bank) + " program " +
                              std::to_string(programs[k]) + " \"" + names[k] + "\"";
    EXPECT_EQ(m.name, names[k]) << where;
    ASSERT_TRUE(m.finite) << where << ": a non-finite sample, or the waves were not built";
    EXPECT_GE(m.peakDb, kPeakLowDb) << where;
    EXPECT_LE(m.peakDb, kPeakHighDb) << where;
    EXPECT_LT(m.dc, kMaxDc) << where;
    EXPECT_NEAR(m.loudnessDb, kLevelDb, kLoudnessSpreadDb) << where;
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
