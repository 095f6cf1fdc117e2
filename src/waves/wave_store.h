// The wave store of one engine: the 85 wave slots, and for each of the two
// oscillators the playable table built from its wave and modifier parameters.
//
// Threads. init() runs in the engine's constructor, before the worker starts.
// workerPass() runs on the worker thread only; beginBlock(), buildDue(),
// table() and playingWave()/playingMod() on the audio thread only; buildNow()
// on the audio thread or while no block runs. currentWave(), currentMod(),
// slot() and copyWaveName() may be called from any thread.
//
// Hand-over. Each oscillator has two table buffers. The worker builds into the
// one the audio thread is not playing and publishes it with one atomic store
// of a word that names the buffer, the wave and the modifier together. The
// audio thread takes the published word at the head of each block and
// acknowledges it; the worker writes a buffer again only after the
// acknowledgement shows the audio thread has moved off it. The audio thread
// never waits, and never reads a buffer that is being written.
//
// Builds on the calling thread. A host that renders offline runs faster than
// real time and would starve the worker; there the audio thread builds what
// has come due itself, at the head of the block, so that a change lands at
// the same sample in every export. One build at a time uses the work buffers:
// the builder claims them with one atomic word, and while the host is offline
// the worker stands down, so that the audio thread waits at most once, for a
// build the worker had already begun.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "host/shared_word.h"
#include "waves/wave_format.h"
#include "waves/wave_slots.h"

namespace sablevox {

class WaveStore {
 public:
  WaveStore() = default;
  WaveStore(const WaveStore&) = delete;
  WaveStore& operator=(const WaveStore&) = delete;

  // Sets up the shared slots (once per process) and allocates every buffer the store
  // will ever use; both oscillators start with silent tables and wave -1.
  // Call once, before the worker thread starts.
  void init();

  // One poll of the worker: decodes Osc1Wave, Osc1Mod, Osc2Wave, Osc2Mod from
  // params (the engine's 50 words) and rebuilds each oscillator whose wave or
  // modifier differs from what it was last built with, or oscillator 1 when
  // rebuildWaves is set (the first rebuild of a pass clears it). Never
  // sleeps, except while waiting up to about 50 ms for the audio thread to
  // leave the buffer it needs; without that acknowledgement (no blocks are
  // running) it leaves the oscillator for a later pass, as it does while it
  // stands down or another thread builds. Returns early when workerStop is
  // set. Worker thread only.
  void workerPass(const Shared<float>* params, Shared<bool>& rebuildWaves,
                  const Shared<bool>& workerStop);

  // Takes up newly published tables. Audio thread, once at the head of each
  // block, before any table() call. Wait-free, no allocation.
  void beginBlock();

  // Whether the tables played differ from what the parameters ask for, or
  // rebuildWaves asks for a build. Audio thread, after beginBlock().
  bool buildDue(const Shared<float>* params, bool rebuildWaves) const;

  // Builds every table that differs from what the parameters ask for on the
  // calling thread, plays the result from now on and clears rebuildWaves (a
  // forced build of the wave and modifier already played would give the same
  // samples). Never while another thread runs a block: at open, at the first
  // resume, or on the audio thread at the head of a block. Allocates nothing;
  // waits only while the worker finishes a build it had begun.
  void buildNow(const Shared<float>* params, Shared<bool>& rebuildWaves);

  // true while the host renders offline: the worker builds nothing then.
  void setWorkerStandsDown(bool standDown) { workerStandsDown_.store(standDown); }

  // The table oscillator osc (0, 1) plays in this block: kWaveFrames blocks
  // of kFrameBlock samples. Audio thread.
  const int16_t* table(int osc) const { return playingTable_[osc & 1]; }
  // What that table holds: wave index (-1 before the first build) and step.
  int playingWave(int osc) const;
  int playingMod(int osc) const;

  // What the latest finished build of osc holds; the audio thread plays it
  // from its next block on. -1 before the first build. Any thread.
  int currentWave(int osc) const;
  int currentMod(int osc) const;

  // Read-only slot 0..84 (an index out of range gives slot 0). Any thread
  // after init().
  const WaveSlot& slot(int wave) const;
  // The slot's name into destination (kWaveNameSize characters).
  void copyWaveName(int wave, char* destination) const;

 private:
  struct FreeDeleter {
    void operator()(void* p) const { std::free(p); }
  };
  struct Exchange {
    std::unique_ptr<int16_t[], FreeDeleter> buffers[2];
    std::atomic<uint32_t> published{0};     // written by the worker
    std::atomic<uint32_t> acknowledged{0};  // written by the audio thread
  };

  bool rebuild(int osc, int wave, int mod, const Shared<bool>& workerStop);
  bool waitForAcknowledgement(const Exchange& exchange, uint32_t published,
                              const Shared<bool>& workerStop) const;
  // The work buffers and the spare tables, one builder at a time.
  bool tryClaim() { return !building_.test_and_set(std::memory_order_acquire); }
  void releaseClaim() { building_.clear(std::memory_order_release); }
  void buildInto(int16_t* table, int wave, int mod);

  const WaveSlot* slots_ = nullptr;  // shared by every instance of the process
  Exchange exchange_[2];
  const int16_t* playingTable_[2] = {nullptr, nullptr};  // audio thread
  uint32_t playingWord_[2] = {0, 0};                     // audio thread
  std::unique_ptr<float[]> spectrum_;                    // builder: kWaveValues
  std::unique_ptr<float[]> scratch_;                     // builder: kTableValues
  std::atomic_flag building_ = ATOMIC_FLAG_INIT;         // held by whoever builds
  Shared<bool> workerStandsDown_{false};
};

}  // namespace sablevox
