// Tests of the per-user settings file: defaults, round trips between
// instances, tolerant parsing, the file's location and atomic rewrites.
#include "host/global_config.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <thread>

#include "common/isolated_settings.h"

namespace sablevox {
namespace {

namespace fs = std::filesystem;

// Restores an environment variable when the test ends.
class SavedEnv {
 public:
  explicit SavedEnv(const char* name) : name_(name) {
    if (const char* v = std::getenv(name)) value_ = v;
  }
  ~SavedEnv() {
    if (value_) {
      setenv(name_, value_->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }

 private:
  const char* name_;
  std::optional<std::string> value_;
};

class GlobalConfigTest : public ::testing::Test {
 protected:
  fs::path file() const { return root_ / "Sablevox" / "settings"; }

  void writeFile(const std::string& text) {
    fs::create_directories(file().parent_path());
    std::ofstream(file()) << text;
  }

  std::string readFile() const {
    std::ifstream in(file());
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
  }

  static void expectValues(GlobalConfig& c, int hide, int quality, int bank, int skin, int iqm) {
    EXPECT_EQ(c.get(kHideKeys), hide);
    EXPECT_EQ(c.get(kQuality), quality);
    EXPECT_EQ(c.get(kBank), bank);
    EXPECT_EQ(c.get(kSkin), skin);
    EXPECT_EQ(c.get(kIQM), iqm);
  }

  SavedEnv xdg_{"XDG_CONFIG_HOME"};
  SavedEnv home_{"HOME"};
  testing::IsolatedSettings settings_;  // made after the saved variables, gone before them
  fs::path root_{settings_.folder()};
};

TEST_F(GlobalConfigTest, FreshUserGetsDefaultsAndTheFileAppearsAtTheFirstSave) {
  EXPECT_EQ(settingsFilePath(), file().string());
  GlobalConfig config;
  config.loadAll();
  expectValues(config, 0, 0, 1, 0, 0);
  EXPECT_FALSE(fs::exists(file().parent_path()));

  config.saveAll();
  EXPECT_EQ(readFile(), "Hide Keys=0\nQuality=0\nBank=1\nSkin=0\nIQM=0\n");
}

TEST_F(GlobalConfigTest, ValuesSavedByOneInstanceAreReadByTheNext) {
  {
    GlobalConfig first;
    first.loadAll();
    first.set(kQuality, 2);
    first.set(kSkin, 10);
    first.set(kIQM, 3);
    first.set(kHideKeys, 1);
    first.set(kBank, -7);  // out of range is kept: consumers clamp
    first.saveAll();
  }
  GlobalConfig next;
  expectValues(next, 0, 0, 1, 0, 0);  // nothing is read before loadAll
  next.loadAll();
  expectValues(next, 1, 2, -7, 10, 3);

  // save(index) writes one value and keeps the file's others.
  GlobalConfig third;
  third.set(kSkin, 4);
  third.save(kSkin);
  GlobalConfig fourth;
  fourth.loadAll();
  expectValues(fourth, 1, 2, -7, 4, 3);
  fourth.set(kQuality, 9);
  fourth.load(kQuality);
  EXPECT_EQ(fourth.get(kQuality), 2);
}

TEST_F(GlobalConfigTest, IndicesOutsideTheFiveAreIgnored) {
  GlobalConfig config;
  for (signed char index : {5, 6, 127, -1, -128}) {
    config.set(index, 42);
    EXPECT_EQ(config.get(index), 0);
    config.save(index);
    config.load(index);
  }
  expectValues(config, 0, 0, 1, 0, 0);
  EXPECT_FALSE(fs::exists(file()));
}

TEST_F(GlobalConfigTest, ToleratesHandWrittenAndMalformedFiles) {
  writeFile(
      "# written by hand\n"
      "  Skin =  7  \r\n"
      "Quality\t=\t+3\n"
      "IQM=2x\n"
      "Hide Keys=99999999999\n"
      "Bank=\n"
      "Colour=blue\n"
      "garbage without equals\n"
      "quality=1\n");
  GlobalConfig config;
  config.set(kBank, 4);
  config.loadAll();
  expectValues(config, 0, 3, 1, 7, 0);

  writeFile("IQM=-2147483648\nBank=2147483647\nSkin=1\nSkin=2\nHide Keys=2147483648\n");
  config.loadAll();
  expectValues(config, 0, 0, INT32_MAX, 2, INT32_MIN);

  // Rewriting one value keeps the lines it does not own and drops repeats.
  writeFile("# keep me\nSkin = 5\nColour=blue\nQuality=x\nQuality=1\n");
  config.set(kQuality, 2);
  config.save(kQuality);
  EXPECT_EQ(readFile(), "# keep me\nSkin = 5\nColour=blue\nQuality=2\n");
}

TEST_F(GlobalConfigTest, LocationFollowsXdgThenHomeThenThePasswordDatabase) {
  setenv("HOME", (root_ / "home").c_str(), 1);
  setenv("XDG_CONFIG_HOME", "", 1);
  EXPECT_EQ(settingsFilePath(), (root_ / "home/.config/Sablevox/settings").string());
  setenv("XDG_CONFIG_HOME", "relative/dir", 1);
  EXPECT_EQ(settingsFilePath(), (root_ / "home/.config/Sablevox/settings").string());
  unsetenv("XDG_CONFIG_HOME");
  EXPECT_EQ(settingsFilePath(), (root_ / "home/.config/Sablevox/settings").string());

  GlobalConfig config;
  config.set(kSkin, 3);
  config.saveAll();
  EXPECT_TRUE(fs::exists(root_ / "home/.config/Sablevox/settings"));

  unsetenv("HOME");
  const std::string fallback = settingsFilePath();
  EXPECT_FALSE(fallback.empty());
  EXPECT_EQ(fallback.front(), '/');
  EXPECT_TRUE(fallback.ends_with("/.config/Sablevox/settings")) << fallback;
}

TEST_F(GlobalConfigTest, AnUnwritableFolderFailsSilently) {
  std::ofstream(root_ / "blocker") << "a file where the folder should be";
  setenv("XDG_CONFIG_HOME", (root_ / "blocker").c_str(), 1);
  GlobalConfig config;
  config.set(kQuality, 3);
  config.saveAll();
  config.save(kQuality);
  EXPECT_EQ(config.get(kQuality), 3);  // holds for this run
  config.loadAll();
  EXPECT_EQ(config.get(kQuality), 0);
}

// Two instances save their full sets over and over while a third loads: every
// load sees one writer's complete set, never a mix or a missing value, and
// no temporary file is left behind.
TEST_F(GlobalConfigTest, ConcurrentSavesNeverLeaveATornFile) {
  GlobalConfig a, b;
  for (signed char i = 0; i < kNumConfigValues; ++i) {
    a.set(i, 1000 + i);
    b.set(i, 2000 + i);
  }
  a.saveAll();
  std::atomic<bool> stop{false};
  auto writer = [&stop](GlobalConfig& c) {
    for (int i = 0; i < 300 && !stop.load(); ++i) c.saveAll();
  };
  std::thread first(writer, std::ref(a));
  std::thread second(writer, std::ref(b));
  GlobalConfig reader;
  int loads = 0;
  bool consistent = true;
  for (; loads < 2000 && consistent; ++loads) {
    reader.loadAll();
    const int base = reader.get(kHideKeys) - reader.get(kHideKeys) % 1000;
    consistent = base == 1000 || base == 2000;
    for (signed char i = 0; i < kNumConfigValues; ++i) consistent &= reader.get(i) == base + i;
  }
  stop = true;
  first.join();
  second.join();
  EXPECT_TRUE(consistent) << "after " << loads << " loads";
  int entries = 0;
  for (const auto& entry : fs::directory_iterator(file().parent_path())) {
    ++entries;
    EXPECT_EQ(entry.path(), file());
  }
  EXPECT_EQ(entries, 1);
}

}  // namespace
}  // namespace sablevox
