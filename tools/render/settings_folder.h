// A temporary per-user settings folder for one run: XDG_CONFIG_HOME points at
// it while the plug-in lives, holding only the settings given on the command
// line, so that the user's own settings file is neither read nor changed and
// a render does not depend on who runs it.
#pragma once

#include <optional>
#include <string>

namespace sablevox::render {

class SettingsFolder {
 public:
  // Values of -1 are left out of the file (the plug-in's default holds).
  // Call before the plug-in is loaded; check ok() afterwards.
  SettingsFolder(int bank, int quality, int iqm);
  // Restores XDG_CONFIG_HOME and removes the folder; destroy after the
  // plug-in, which saves its settings when it is deleted.
  ~SettingsFolder();
  SettingsFolder(const SettingsFolder&) = delete;
  SettingsFolder& operator=(const SettingsFolder&) = delete;

  bool ok() const { return error_.empty(); }
  const std::string& error() const { return error_; }

 private:
  std::string folder_;
  std::string error_;
  std::optional<std::string> previous_;  // XDG_CONFIG_HOME before
};

}  // namespace sablevox::render
