// The unit suites' engine object on the host library's Host: one
// process-wide Host answers every engine made here (version, time) and logs
// what they call; plus an isolated settings folder so tests never touch the
// user's own file.
#pragma once

#include <memory>
#include <vector>

#include "common/isolated_settings.h"
#include "host/adelay.h"
#include "hostlib/host.h"
#include "hostlib/host_registry.h"

namespace sablevox::testing {

// One Host for the process; tests reset it in their set-up.
inline host::Host& testHost() {
  static host::Host instance;
  return instance;
}

// Version 2400, no time information, an empty log.
inline void resetTestHost() {
  host::Host& h = testHost();
  h.setVersion(2400);
  h.setTimeAvailable(false);
  h.setTempo(120.0);
  h.clearCalls();
}

// An engine (ADelayEdit or a test's subclass) whose calls the test host answers.
template <typename Engine = ADelayEdit>
std::unique_ptr<Engine> makeEngine(float sampleRate = 44100.0f) {
  std::unique_ptr<Engine> engine;
  {
    host::LoadingScope loading(&testHost());
    engine = std::make_unique<Engine>(&host::Host::callback);
  }
  host::registerEffect(engine->getAeffect(), &testHost());
  // Opened, as a host does: the tables of program 0 are built and the worker runs.
  engine->open();
  engine->setSampleRate(sampleRate);
  return engine;
}

// Renders `count` samples in one block into the two vectors.
inline void renderBlock(ADelay& engine, std::vector<float>& left, std::vector<float>& right,
                        int count) {
  left.assign(static_cast<size_t>(count), 0.0f);
  right.assign(static_cast<size_t>(count), 0.0f);
  float* outputs[2] = {left.data(), right.data()};
  engine.processReplacing(nullptr, outputs, count);
}

}  // namespace sablevox::testing
