// The settings file reader: any bytes as the file, then every value read,
// and one saved, which rewrites the file keeping what it could not parse.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "host/global_config.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string folder = [] {
    const std::string f = "/tmp/sablevox-fuzz-config-" + std::to_string(getpid());
    setenv("XDG_CONFIG_HOME", f.c_str(), 1);
    std::filesystem::create_directories(f + "/Sablevox");
    return f;
  }();
  const std::string path = sablevox::settingsFilePath();
  FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) std::abort();
  std::fwrite(data, 1, size, file);
  std::fclose(file);

  sablevox::GlobalConfig config;
  config.loadAll();
  uint32_t mix = 0;  // wraps instead of overflowing
  for (signed char i = -1; i <= sablevox::kNumConfigValues; ++i)
    mix += static_cast<uint32_t>(config.get(i));
  const auto sum = static_cast<int32_t>(mix);
  config.set(static_cast<signed char>(size % 5), sum);
  config.save(static_cast<signed char>(size % 5));
  sablevox::GlobalConfig again;
  again.loadAll();
  // What was saved reads back.
  if (again.get(static_cast<signed char>(size % 5)) != sum) std::abort();
  return 0;
}
