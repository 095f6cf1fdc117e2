// The wave worker's pass and the hand-over of finished tables to the audio
// thread.
#include "waves/wave_store.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <new>
#include <thread>

#include "host/parameters.h"
#include "waves/wave_modifiers.h"
#include "waves/wave_table.h"

namespace sablevox {
namespace {

// The published word: bit 0 the buffer, bits 8..15 the wave + 1 (0 for "none
// yet"), bits 16..23 the modifier step.
constexpr uint32_t packWord(int buffer, int wave, int mod) {
  return static_cast<uint32_t>(buffer) | static_cast<uint32_t>(wave + 1) << 8 |
         static_cast<uint32_t>(mod) << 16;
}
constexpr int bufferOf(uint32_t word) {
  return static_cast<int>(word & 1u);
}
constexpr int waveOf(uint32_t word) {
  return static_cast<int>((word >> 8) & 0xFFu) - 1;
}
constexpr int modOf(uint32_t word) {
  return static_cast<int>((word >> 16) & 0xFFu);
}
constexpr uint32_t kNothingBuilt = packWord(0, -1, 0);

constexpr float kTableScale = 0.01f;
// The acknowledgement normally comes within one audio block.
constexpr auto kAcknowledgeStep = std::chrono::milliseconds(1);
constexpr int kAcknowledgeSteps = 50;
// A build takes a few milliseconds.
constexpr auto kClaimStep = std::chrono::microseconds(200);

// The 85 slots are read-only and the same for every instance, so a process
// sets them up once; their amplitudes are embedded data the slots point into.
// Function-local statics are built thread-safely.
class SharedSlots {
 public:
  SharedSlots() { setUpWaveSlots(slots_); }
  SharedSlots(const SharedSlots&) = delete;
  SharedSlots& operator=(const SharedSlots&) = delete;
  const WaveSlot* get() const { return slots_.data(); }

 private:
  std::array<WaveSlot, kWaveCount> slots_;
};

const WaveSlot* sharedWaveSlots() {
  static const SharedSlots slots;
  return slots.get();
}

}  // namespace

void WaveStore::init() {
  slots_ = sharedWaveSlots();
  for (Exchange& exchange : exchange_) {
    for (auto& buffer : exchange.buffers) {
      if (buffer) {
        std::fill_n(buffer.get(), kTableValues, int16_t{0});
      } else {
        // calloc: fresh zero pages cost nothing until a build writes them.
        buffer.reset(static_cast<int16_t*>(std::calloc(kTableValues, sizeof(int16_t))));
        if (!buffer) throw std::bad_alloc();
      }
    }
    exchange.published.store(kNothingBuilt, std::memory_order_relaxed);
    exchange.acknowledged.store(kNothingBuilt, std::memory_order_relaxed);
  }
  for (int osc = 0; osc < 2; ++osc) {
    playingWord_[osc] = kNothingBuilt;
    playingTable_[osc] = exchange_[osc].buffers[bufferOf(kNothingBuilt)].get();
  }
  if (!spectrum_) spectrum_ = std::make_unique_for_overwrite<float[]>(kWaveValues);
  if (!scratch_)
    scratch_ = std::make_unique_for_overwrite<float[]>(buildScratchFloats(kWaveFrames));
}

void WaveStore::workerPass(const Shared<float>* params, Shared<bool>& rebuildWaves,
                           const Shared<bool>& workerStop) {
  // All four values are read at the start of the pass; a torn pair is
  // corrected at the next one.
  const int waves[2] = {steppedIndex(params[kOsc1Wave], kWaveCount),
                        steppedIndex(params[kOsc2Wave], kWaveCount)};
  const int mods[2] = {steppedIndex(params[kOsc1Mod], kModifierSteps),
                       steppedIndex(params[kOsc2Mod], kModifierSteps)};
  for (int osc = 0; osc < 2; ++osc) {
    if (workerStop) return;
    if (currentWave(osc) == waves[osc] && currentMod(osc) == mods[osc] && !rebuildWaves) continue;
    if (rebuild(osc, waves[osc], mods[osc], workerStop)) rebuildWaves = false;
  }
}

bool WaveStore::rebuild(int osc, int wave, int mod, const Shared<bool>& workerStop) {
  Exchange& exchange = exchange_[osc];
  const uint32_t published = exchange.published.load(std::memory_order_relaxed);
  if (!waitForAcknowledgement(exchange, published, workerStop)) return false;
  if (!tryClaim()) return false;
  // Offline, or the audio thread built (and took up) a table meanwhile: the
  // spare buffer is the audio thread's business now.
  if (workerStandsDown_ || exchange.published.load(std::memory_order_relaxed) != published) {
    releaseClaim();
    return false;
  }
  const int spare = 1 - bufferOf(published);
  buildInto(exchange.buffers[spare].get(), wave, mod);
  // Release: the table's samples are visible to whoever acquires this word.
  exchange.published.store(packWord(spare, wave, mod), std::memory_order_release);
  releaseClaim();
  return true;
}

void WaveStore::buildInto(int16_t* table, int wave, int mod) {
  if (wave < kFirstTableWave) {
    std::fill_n(table, kTableValues, int16_t{0});
    return;
  }
  const uint16_t* frames = slots_[wave].frames;
  float* spectrum = spectrum_.get();
  for (int e = 0; e < kWaveValues; ++e) spectrum[e] = static_cast<float>(frames[e]);
  applyWaveModifier(spectrum, mod, kWaveFrames);
  buildWaveTable(table, spectrum, kWaveFrames, kTableScale, scratch_.get());
}

// The spare buffer may be written once the audio thread has acknowledged the
// word now published: it then plays the published buffer, and (acquire) all
// its earlier reads of the spare one are finished.
bool WaveStore::waitForAcknowledgement(const Exchange& exchange, uint32_t published,
                                       const Shared<bool>& workerStop) const {
  for (int step = 0;; ++step) {
    if (exchange.acknowledged.load(std::memory_order_acquire) == published) return true;
    if (workerStop || step == kAcknowledgeSteps) return false;
    std::this_thread::sleep_for(kAcknowledgeStep);
  }
}

void WaveStore::beginBlock() {
  for (int osc = 0; osc < 2; ++osc) {
    Exchange& exchange = exchange_[osc];
    const uint32_t word = exchange.published.load(std::memory_order_acquire);
    if (word == playingWord_[osc]) continue;
    playingWord_[osc] = word;
    playingTable_[osc] = exchange.buffers[bufferOf(word)].get();
    // Release: this block and all before it are done with the other buffer.
    exchange.acknowledged.store(word, std::memory_order_release);
  }
}

namespace {

struct Wanted {
  int waves[2];
  int mods[2];
};

Wanted wantedTables(const Shared<float>* params) {
  return {
      {steppedIndex(params[kOsc1Wave], kWaveCount), steppedIndex(params[kOsc2Wave], kWaveCount)},
      {steppedIndex(params[kOsc1Mod], kModifierSteps),
       steppedIndex(params[kOsc2Mod], kModifierSteps)}};
}

}  // namespace

bool WaveStore::buildDue(const Shared<float>* params, bool rebuildWaves) const {
  if (rebuildWaves) return true;
  const Wanted wanted = wantedTables(params);
  for (int osc = 0; osc < 2; ++osc) {
    if (playingWave(osc) != wanted.waves[osc] || playingMod(osc) != wanted.mods[osc]) return true;
  }
  return false;
}

void WaveStore::buildNow(const Shared<float>* params, Shared<bool>& rebuildWaves) {
  // The worker holds the claim only while it builds (never while it waits
  // for the audio thread), so this wait ends with that one build.
  while (!tryClaim()) std::this_thread::sleep_for(kClaimStep);
  const Wanted wanted = wantedTables(params);
  beginBlock();
  for (int osc = 0; osc < 2; ++osc) {
    if (playingWave(osc) == wanted.waves[osc] && playingMod(osc) == wanted.mods[osc]) continue;
    // No block runs meanwhile, and the worker writes nothing without the
    // claim: the buffer not played is free.
    Exchange& exchange = exchange_[osc];
    const int spare = 1 - bufferOf(playingWord_[osc]);
    buildInto(exchange.buffers[spare].get(), wanted.waves[osc], wanted.mods[osc]);
    const uint32_t word = packWord(spare, wanted.waves[osc], wanted.mods[osc]);
    exchange.published.store(word, std::memory_order_release);
    playingWord_[osc] = word;
    playingTable_[osc] = exchange.buffers[spare].get();
    exchange.acknowledged.store(word, std::memory_order_release);
  }
  rebuildWaves = false;
  releaseClaim();
}

int WaveStore::playingWave(int osc) const {
  return waveOf(playingWord_[osc & 1]);
}
int WaveStore::playingMod(int osc) const {
  return modOf(playingWord_[osc & 1]);
}

int WaveStore::currentWave(int osc) const {
  return waveOf(exchange_[osc & 1].published.load(std::memory_order_relaxed));
}
int WaveStore::currentMod(int osc) const {
  return modOf(exchange_[osc & 1].published.load(std::memory_order_relaxed));
}

const WaveSlot& WaveStore::slot(int wave) const {
  return slots_[wave >= 0 && wave < kWaveCount ? wave : 0];
}

void WaveStore::copyWaveName(int wave, char* destination) const {
  sablevox::copyWaveName(slot(wave), destination);
}

}  // namespace sablevox
