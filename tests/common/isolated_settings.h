// Points XDG_CONFIG_HOME at a fresh folder for the lifetime of the object, so
// that tests never read or write the user's own settings file.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace sablevox::testing {

class IsolatedSettings {
 public:
  IsolatedSettings() {
    char pattern[] = "/tmp/sablevox-test-XXXXXX";
    const char* made = mkdtemp(pattern);
    if (made == nullptr) std::abort();  // never fall back to a shared folder
    folder_ = made;
    setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
  }
  ~IsolatedSettings() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  IsolatedSettings(const IsolatedSettings&) = delete;
  IsolatedSettings& operator=(const IsolatedSettings&) = delete;
  const std::string& folder() const { return folder_; }
  std::string settingsFile() const { return folder_ + "/Sablevox/settings"; }

 private:
  std::string folder_;
};

}  // namespace sablevox::testing
