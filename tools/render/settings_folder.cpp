// Writing the run's settings file and pointing the plug-in at it.
#include "render/settings_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "host/global_config.h"

namespace sablevox::render {

SettingsFolder::SettingsFolder(int bank, int quality, int iqm) {
  const char* previous = std::getenv("XDG_CONFIG_HOME");
  if (previous != nullptr) previous_ = previous;
  std::error_code failure;
  std::string pattern = (std::filesystem::temp_directory_path(failure) / "sablevox-render-XXXXXX");
  if (failure || mkdtemp(pattern.data()) == nullptr) {
    error_ = "cannot make a temporary settings folder";
    return;
  }
  folder_ = pattern;
  const std::filesystem::path own = std::filesystem::path(folder_) / "Sablevox";
  std::filesystem::create_directories(own, failure);
  std::ofstream file(own / "settings");
  const std::pair<ConfigIndex, int> values[] = {{kBank, bank}, {kQuality, quality}, {kIQM, iqm}};
  for (const auto& [index, value] : values) {
    if (value >= 0) file << kConfigNames[index] << '=' << value << '\n';
  }
  file.close();
  if (failure || !file) {
    error_ = "cannot write the temporary settings file in " + folder_;
    return;
  }
  setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
}

SettingsFolder::~SettingsFolder() {
  if (folder_.empty()) return;
  if (previous_) {
    setenv("XDG_CONFIG_HOME", previous_->c_str(), 1);
  } else {
    unsetenv("XDG_CONFIG_HOME");
  }
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

}  // namespace sablevox::render
