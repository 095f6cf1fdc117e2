// Playing one factory program through the built plug-in on a chosen chord or
// note, velocity and random state, and the level measurements made on it:
// shared by sablevox-levels (the exhaustive measure) and the bank render test.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hostlib/plugin.h"

namespace sablevox::levels {

// The bars every factory program holds in every case and random state.
inline constexpr double kPeakCeilingDb = -1.0;
inline constexpr double kPeakFloorDb = -30.0;  // audible at all
inline constexpr double kMaxDc = 0.005;
// Loudness (the loudest case) of every program, and how far it may lie from it.
inline constexpr double kLevelDb = -20.0;
inline constexpr double kLevelToleranceDb = 6.0;
inline constexpr double kCategorySpreadDb = 10.0;  // loudest less quietest of a category

// What is played: one key or a major triad on it, held and released.
struct KeyCase {
  int key;  // MIDI key, 60 = C4
  bool triad;
  int velocity;
  std::string label() const;  // "C3 triad v100", "C7 v127"
};

// Major triads on C2, C3, C4 and C5 and single notes C1 to C7, each at
// velocity 100 and 127: the registers a musician plays a program in.
std::vector<KeyCase> allKeyCases();
// The random state of run `run` of case `index` of allKeyCases().
uint32_t caseSeed(int run, size_t index);

struct CaseMeasure {
  bool finite = true;
  double peakDb = -200.0;      // largest magnitude of either channel, dBFS
  double dc = 0.0;             // larger |mean| of the two channels, full scale 1
  double loudnessDb = -200.0;  // loudest 400 ms window, RMS of both channels, dBFS
  uint64_t digest = 0;         // of the samples' bits: equal renders, equal digests
};

// One plug-in instance. Several may play side by side on threads of their
// own, each waiting for its own wave worker; the random state is the whole
// process's, so seeded plays must not overlap (select() draws nothing).
class ProgramPlayer {
 public:
  static constexpr int kRate = 44100;
  static constexpr int kBlock = 512;

  // Loads the plug-in, which starts on the bank that the current settings
  // folder names; false with `error` set when it cannot be loaded.
  bool start(const std::string& pluginPath, std::string& error);
  int programCount() { return plugin_->numPrograms(); }
  std::string programName(int program) { return plugin_->programNameIndexed(program); }

  // Selects the program and waits for its wave tables; false if they never came.
  bool select(int program);
  float volume();
  // Plays the case from a clean state (voices and effects' tails cleared),
  // after setting the process's random state to `seed` if given. `pattern`:
  // the keys are held long enough for an arpeggio or sequence to be heard.
  CaseMeasure play(const KeyCase& keys, bool pattern, std::optional<uint32_t> seed = {});

 private:
  std::shared_ptr<host::Host> host_;
  std::unique_ptr<host::Plugin> plugin_;
  std::vector<float> left_;
  std::vector<float> right_;
};

// The category of a program name (its leading capitals), "" if none.
std::string categoryOf(const std::string& name);
// Arpeggio and sequence programs, whose keys are held longer.
bool isPattern(const std::string& category);

}  // namespace sablevox::levels
