// Rendering one factory program through the built plug-in with the standard
// phrase, and the measurements the bank render tests make on the result.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "hostlib/plugin.h"

namespace sablevox::testing {

struct ProgramMeasure {
  std::string name;
  bool finite = true;
  double peakDb = -200.0;      // largest magnitude of either channel, dBFS
  double dc = 0.0;             // larger |mean| of the two channels, full scale 1
  double loudnessDb = -200.0;  // loudest 400 ms window, RMS of both channels, dBFS
  float volume = 0.0f;         // the program's Volume, for levelling it
};

// One plug-in instance. Several may play side by side on threads of their
// own, each waiting for its own wave worker.
class BankPlayer {
 public:
  static constexpr int kRate = 44100;
  static constexpr int kBlock = 512;

  // Loads the plug-in, which starts on the bank that the current settings
  // folder names; false with `error` set when it cannot be loaded.
  bool start(std::string& error);
  int programCount() { return plugin_->numPrograms(); }
  std::string programName(int program) { return plugin_->programNameIndexed(program); }

  // Selects the program from a clean state (effects and voices cleared),
  // plays the standard phrase and measures it. `pattern`: the keys are held
  // long enough for an arpeggio or sequence to be heard.
  ProgramMeasure play(int program, bool pattern);

 private:
  std::shared_ptr<host::Host> host_;
  std::unique_ptr<host::Plugin> plugin_;
  std::vector<float> left_;
  std::vector<float> right_;
};

// The category of a program name (its leading capitals), "" if none.
std::string categoryOf(const std::string& name);

}  // namespace sablevox::testing
