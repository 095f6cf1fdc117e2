// The wave worker's pass and the hand-over of tables to the audio thread:
// what gets rebuilt when, silence below wave 2, waiting for the audio
// thread, and the exchange under two real threads.
#include "waves/wave_store.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

#include "host/parameters.h"
#include "waves/wave_modifiers.h"

namespace sablevox {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int kSine = 4;  // "STA Sine": 65535 at harmonic 1
constexpr int kSaw = 2;
// Level 10 of a frame, a quarter of the cycle in: -2 * 65535 * 0.01.
constexpr int kQuarter = 1024 + 256;
constexpr int kSineQuarter = -1310;

class WaveStoreTest : public ::testing::Test {
 protected:
  void SetUp() override {
    store = std::make_unique<WaveStore>();
    store->init();
    select(0, 0, 0);
    select(1, 0, 0);
  }
  void select(int osc, int wave, int mod) {
    params[kOsc1Wave + osc] = choiceValue(wave);
    params[kOsc1Mod + osc] = choiceValue(mod);
  }
  void pass() { store->workerPass(params, rebuild, stop); }
  bool silent(int osc) const {
    const int16_t* table = store->table(osc);
    for (int i = 0; i < kTableValues; ++i) {
      if (table[i] != 0) return false;
    }
    return true;
  }

  std::unique_ptr<WaveStore> store;
  Shared<float> params[kNumParams];
  Shared<bool> rebuild{true};
  Shared<bool> stop{false};
};

TEST_F(WaveStoreTest, APassBuildsBothTablesAndTheNextBlockPlaysThem) {
  store->beginBlock();
  EXPECT_EQ(store->currentWave(1), -1);  // nothing built yet: silence
  EXPECT_TRUE(silent(0));
  char name[kWaveNameSize];
  store->copyWaveName(59, name);
  EXPECT_STREQ(name, "WV Pulse 25%%");
  EXPECT_STREQ(store->slot(85).name, "off");

  select(0, kSine, 0);
  select(1, kSaw, kModMixX2);
  pass();
  EXPECT_FALSE(rebuild);
  EXPECT_EQ(store->currentWave(0), kSine);
  EXPECT_EQ(store->currentMod(1), kModMixX2);
  EXPECT_EQ(store->playingWave(0), -1);  // not before the block boundary
  EXPECT_TRUE(silent(0));

  store->beginBlock();
  EXPECT_EQ(store->playingWave(0), kSine);
  EXPECT_EQ(store->playingWave(1), kSaw);
  EXPECT_EQ(store->playingMod(1), kModMixX2);
  for (int f : {0, 100, 255}) EXPECT_EQ(store->table(0)[f * kFrameBlock + kQuarter], kSineQuarter);
  EXPECT_FALSE(silent(1));
}

TEST_F(WaveStoreTest, OnlyAChangeSeenAtAPassOrTheFlagRebuildsAndWavesBelowTwoAreSilent) {
  select(0, kSine, 0);
  select(1, kSaw, 0);
  pass();
  store->beginBlock();
  const int16_t* first[2] = {store->table(0), store->table(1)};

  pass();  // nothing changed
  store->beginBlock();
  EXPECT_EQ(store->table(0), first[0]);
  EXPECT_EQ(store->table(1), first[1]);

  select(1, 10, 3);  // changed and back between two passes
  select(1, kSaw, 0);
  pass();
  store->beginBlock();
  EXPECT_EQ(store->table(1), first[1]);

  rebuild = true;  // forces oscillator 1 only, and is cleared
  pass();
  store->beginBlock();
  EXPECT_NE(store->table(0), first[0]);
  EXPECT_EQ(store->table(1), first[1]);
  EXPECT_FALSE(rebuild);

  select(1, kSaw, kModThinSquare);  // a modifier alone is a change
  pass();
  store->beginBlock();
  EXPECT_NE(store->table(1), first[1]);
  EXPECT_EQ(store->playingMod(1), kModThinSquare);

  for (int mod : {0, 5}) {  // "STA Noise" is silent, whatever its modifier
    select(1, 1, mod);
    pass();
    store->beginBlock();
    EXPECT_EQ(store->playingMod(1), mod);
    EXPECT_TRUE(silent(1));
  }
}

TEST_F(WaveStoreTest, WaitsForTheAudioThreadBeforeReusingABuffer) {
  select(0, kSine, 0);
  pass();
  // No block has taken the new table yet, so the other buffer may still be
  // playing: the pass waits a while, then leaves the change for later.
  select(0, kSaw, 0);
  const auto start = Clock::now();
  pass();
  EXPECT_GE(Clock::now() - start, milliseconds(40));
  EXPECT_EQ(store->currentWave(0), kSine);

  stop = true;  // a stop ends the wait at once
  const auto stopped = Clock::now();
  pass();
  EXPECT_LT(Clock::now() - stopped, milliseconds(40));
  EXPECT_EQ(store->currentWave(0), kSine);

  stop = false;
  store->beginBlock();
  pass();
  EXPECT_EQ(store->currentWave(0), kSaw);
}

// The worker and the audio thread as the engine runs them: the worker polls
// every 100 ms, the audio thread starts a block every millisecond and checks
// that the table it plays always holds what playingWave says.
TEST_F(WaveStoreTest, ChangesArePlayableWithinAPollAndABuild) {
  select(0, kSine, 0);
  const auto buildStart = Clock::now();
  pass();
  const auto buildTime = Clock::now() - buildStart;
  store->beginBlock();

  std::atomic<bool> done{false};
  std::atomic<int> playing{kSine};
  std::atomic<int> mismatches{0};
  std::thread worker([&] {
    while (!stop) {
      store->workerPass(params, rebuild, stop);
      for (int i = 0; i < 10 && !stop; ++i) std::this_thread::sleep_for(milliseconds(10));
    }
  });
  std::thread audio([&] {
    while (!done) {
      store->beginBlock();
      const int wave = store->playingWave(0);
      const int16_t* table = store->table(0);
      for (int f = 0; f < kWaveFrames && (wave == kSine || wave == 0); ++f) {
        const int16_t sample = table[f * kFrameBlock + kQuarter];
        if (sample != (wave == kSine ? kSineQuarter : 0)) mismatches.fetch_add(1);
      }
      playing = wave;
      std::this_thread::sleep_for(milliseconds(1));
    }
  });

  const auto limit = milliseconds(100) + 2 * buildTime + milliseconds(150);
  for (int change = 0; change < 4; ++change) {
    const int wave = change % 2 == 0 ? 0 : kSine;
    const auto start = Clock::now();
    select(0, wave, 0);
    while (playing != wave && Clock::now() - start < 10 * limit) {
      std::this_thread::sleep_for(milliseconds(1));
    }
    EXPECT_EQ(playing, wave);
    EXPECT_LE(Clock::now() - start, limit) << "change " << change;
  }
  // Stopping while a rebuild may be under way waits for it to end.
  select(0, kSaw, kModFlange2);
  std::this_thread::sleep_for(milliseconds(120));
  stop = true;
  worker.join();
  done = true;
  audio.join();
  EXPECT_EQ(mismatches, 0);
}

}  // namespace
}  // namespace sablevox
