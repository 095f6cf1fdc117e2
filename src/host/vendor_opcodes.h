// Our own effVendorSpecific calls, for hosts and tools that know Sablevox.
// Unknown vendor calls answer 0, as the interface asks.
#pragma once

#include "host/vst2.h"

namespace sablevox {

constexpr VstInt32 kSablevoxVendorIndex = vstFourCharacters('S', 'b', 'l', 'v');

// value: what is asked. The answer is 1 for yes, 0 for no.
enum SablevoxVendorCall : VstIntPtr {
  // Are both wave tables built from the current wave and modifier parameters,
  // with no rebuild pending? Offline renderers wait for this before the first
  // block so that a render never depends on the worker thread's timing.
  kVendorWavesReady = 1,
  // Sets both process-wide random generators (oscillator phases, noise,
  // random scan starts, random LFO values) to the 32-bit word that `ptr`
  // points at, for every instance in the process; answers 1. Measuring tools
  // use it to hear a program under several random states in one process.
  kVendorSeedRandom = 2,
};

}  // namespace sablevox
