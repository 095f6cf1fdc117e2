// Per-user settings in a "Name=value" text file, rewritten atomically so that
// concurrent instances and crashes never leave a torn file behind.
#include "host/global_config.h"

#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>

#include <atomic>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>
#include <vector>

namespace sablevox {

const char* const kConfigNames[kNumConfigValues] = {"Hide Keys", "Quality", "Bank", "Skin", "IQM"};
const int32_t kConfigDefaults[kNumConfigValues] = {0, 0, 1, 0, 0};

namespace {

using Lines = std::vector<std::string>;

bool validIndex(signed char index) {
  return index >= 0 && index < kNumConfigValues;
}

std::string_view trim(std::string_view s) {
  constexpr std::string_view kBlanks = " \t\r\n\v\f";
  const auto first = s.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return s.substr(first, s.find_last_not_of(kBlanks) - first + 1);
}

// The setting a line names, or -1 for blank, unknown or nameless lines.
int lineIndex(std::string_view line) {
  const auto equals = line.find('=');
  if (equals == std::string_view::npos) return -1;
  const std::string_view name = trim(line.substr(0, equals));
  for (int i = 0; i < kNumConfigValues; ++i) {
    if (name == kConfigNames[i]) return i;
  }
  return -1;
}

// A decimal integer that fits in 32 bits, optionally signed; nothing else.
std::optional<int32_t> parseValue(std::string_view text) {
  text = trim(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  int32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return {};
  return value;
}

Lines readLines(const std::string& path) {
  Lines lines;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) lines.push_back(std::move(line));
  return lines;
}

// The value of the last line naming setting index, if that line is valid.
std::optional<int32_t> findValue(const Lines& lines, int index) {
  std::optional<int32_t> value;
  for (const std::string& line : lines) {
    if (lineIndex(line) == index) value = parseValue(line.substr(line.find('=') + 1));
  }
  return value;
}

// Replaces the first line of each chosen setting (dropping repeats) or adds
// one, keeping every other line as it was.
void replaceValues(Lines& lines, const bool chosen[], const Shared<int32_t> values[]) {
  bool written[kNumConfigValues] = {};
  Lines result;
  auto entry = [&](int i) {
    return std::string(kConfigNames[i]) + "=" + std::to_string(values[i].load());
  };
  for (std::string& line : lines) {
    const int i = lineIndex(line);
    if (i < 0 || !chosen[i]) {
      result.push_back(std::move(line));
    } else if (!written[i]) {
      result.push_back(entry(i));
      written[i] = true;
    }
  }
  for (int i = 0; i < kNumConfigValues; ++i) {
    if (chosen[i] && !written[i]) result.push_back(entry(i));
  }
  lines = std::move(result);
}

bool writeAll(int fd, const std::string& text) {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
    if (n < 0) return false;
    done += static_cast<std::size_t>(n);
  }
  return true;
}

// Write a temporary file beside the target, then rename it over the target:
// a reader sees the old file or the new one, never a part of either.
void writeLinesAtomically(const std::string& path, const Lines& lines) {
  static std::atomic<unsigned> counter{0};
  const std::filesystem::path target(path);
  std::error_code error;
  std::filesystem::create_directories(target.parent_path(), error);
  const std::string temporary =
      path + ".tmp." + std::to_string(::getpid()) + "." + std::to_string(counter.fetch_add(1));
  const int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  if (fd < 0) return;
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  const bool written = writeAll(fd, text);
  if (::close(fd) == 0 && written && std::rename(temporary.c_str(), path.c_str()) == 0) return;
  ::unlink(temporary.c_str());
}

Lines readSettings() {
  const std::string path = settingsFilePath();
  return path.empty() ? Lines() : readLines(path);
}

void saveChosen(const bool chosen[], const Shared<int32_t> values[]) {
  const std::string path = settingsFilePath();
  if (path.empty()) return;
  Lines lines = readLines(path);
  replaceValues(lines, chosen, values);
  writeLinesAtomically(path, lines);
}

std::string nonEmptyEnv(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

std::string homeFolder() {
  std::string home = nonEmptyEnv("HOME");
  if (!home.empty()) return home;
  long size = ::sysconf(_SC_GETPW_R_SIZE_MAX);
  std::vector<char> buffer(size > 0 ? static_cast<std::size_t>(size) : 16384);
  passwd entry{};
  passwd* found = nullptr;
  if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
      found != nullptr && found->pw_dir != nullptr) {
    home = found->pw_dir;
  }
  return home;
}

}  // namespace

std::string settingsFilePath() {
  // A relative XDG_CONFIG_HOME is invalid and ignored, as for any XDG program.
  std::string base = nonEmptyEnv("XDG_CONFIG_HOME");
  if (base.empty() || base.front() != '/') {
    const std::string home = homeFolder();
    if (home.empty()) return {};
    base = home + "/.config";
  }
  return base + "/Sablevox/settings";
}

GlobalConfig::GlobalConfig() {
  for (int i = 0; i < kNumConfigValues; ++i) values_[i].store(kConfigDefaults[i]);
}

int32_t GlobalConfig::get(signed char index) {
  return validIndex(index) ? values_[index].load() : 0;
}

void GlobalConfig::set(signed char index, int32_t value) {
  if (validIndex(index)) values_[index].store(value);
}

// One read for all five, so that a concurrent save can't mix two files.
void GlobalConfig::loadAll() {
  const Lines lines = readSettings();
  for (int i = 0; i < kNumConfigValues; ++i) {
    values_[i].store(findValue(lines, i).value_or(kConfigDefaults[i]));
  }
}

// One rewrite for all five: the file always holds one instance's full set.
void GlobalConfig::saveAll() {
  const bool all[kNumConfigValues] = {true, true, true, true, true};
  saveChosen(all, values_);
}

void GlobalConfig::load(signed char index) {
  if (!validIndex(index)) return;
  const Lines lines = readSettings();
  values_[index].store(findValue(lines, index).value_or(kConfigDefaults[index]));
}

void GlobalConfig::save(signed char index) {
  if (!validIndex(index)) return;
  bool chosen[kNumConfigValues] = {};
  chosen[index] = true;
  saveChosen(chosen, values_);
}

}  // namespace sablevox
