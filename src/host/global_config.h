// The five per-user settings shared by all instances (keyboard shown, render
// quality, start bank, skin, interval tuning), kept in a small text file.
// get/set may be called from any thread (the audio thread reads Quality and
// IQM); load and save do file I/O and belong to the UI/construction thread.
#pragma once

#include <cstdint>
#include <string>

#include "host/shared_word.h"

namespace sablevox {

enum ConfigIndex { kHideKeys = 0, kQuality = 1, kBank = 2, kSkin = 3, kIQM = 4 };
constexpr int kNumConfigValues = 5;

// Value names in the file, and the values that hold until something is saved.
extern const char* const kConfigNames[kNumConfigValues];
extern const int32_t kConfigDefaults[kNumConfigValues];

// $XDG_CONFIG_HOME/Sablevox/settings, else $HOME/.config/Sablevox/settings
// (HOME from the password database when unset); empty if none can be found.
std::string settingsFilePath();

// Values start at their defaults; nothing is read until loadAll or load.
// Out-of-range values are kept as they are: their consumers clamp them.
// File failures are silent, so a setting may then hold for this run only.
class GlobalConfig {
 public:
  GlobalConfig();
  virtual ~GlobalConfig() = default;
  GlobalConfig(const GlobalConfig&) = delete;
  GlobalConfig& operator=(const GlobalConfig&) = delete;

  // The value; 0 for an index outside 0..4.
  virtual int32_t get(signed char index);
  // Memory only; ignored for an index outside 0..4.
  virtual void set(signed char index, int32_t value);
  virtual void loadAll();
  virtual void saveAll();
  // Default, then the file's value if it holds a valid one.
  virtual void load(signed char index);
  // Rewrites the file with this one value replaced or added, others kept.
  virtual void save(signed char index);

 private:
  Shared<int32_t> values_[kNumConfigValues];
};

}  // namespace sablevox
