// The built plug-in as a host sees it: loaded from its file through dlopen and
// its exported entry, driven only through the binary interface.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "common/isolated_settings.h"
#include "hostlib/plugin.h"

namespace sablevox {
namespace {

using host::Host;
using host::MidiMessage;
using host::Plugin;

class PluginInterfaceTest : public ::testing::Test {
 protected:
  std::unique_ptr<Plugin> load(std::shared_ptr<Host> h = nullptr) {
    std::string error;
    auto plugin = Plugin::load(SABLEVOX_PLUGIN_PATH, &error, std::move(h));
    EXPECT_NE(plugin, nullptr) << error;
    return plugin;
  }
  static bool allFinite(const std::vector<float>& v) {
    for (float x : v) {
      if (!std::isfinite(x)) return false;
    }
    return true;
  }
  testing::IsolatedSettings settings;
};

TEST_F(PluginInterfaceTest, ExportsBothEntryNamesAndNothingElseOfOurs) {
  void* library = dlopen(SABLEVOX_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  void* entry = dlsym(library, "VSTPluginMain");
  EXPECT_NE(entry, nullptr);
  EXPECT_NE(dlsym(library, "main"), nullptr);
  // Hidden visibility: the engine's own names stay inside the library.
  EXPECT_EQ(dlsym(library, "_ZN8sablevox6ADelay16processReplacingEPPfS2_i"), nullptr);
  dlclose(library);
}

TEST_F(PluginInterfaceTest, AHostOfVersionZeroGetsNoPlugIn) {
  auto refusing = std::make_shared<Host>();
  refusing->setVersion(0);
  std::string error;
  EXPECT_EQ(Plugin::load(SABLEVOX_PLUGIN_PATH, &error, refusing), nullptr);
  EXPECT_FALSE(error.empty());
  EXPECT_EQ(refusing->count(audioMasterVersion), 1);
}

TEST_F(PluginInterfaceTest, WhatAHostScannerReads) {
  auto plugin = load();
  ASSERT_NE(plugin, nullptr);
  EXPECT_EQ(plugin->effect()->magic, kEffectMagic);
  EXPECT_EQ(plugin->numPrograms(), 128);
  EXPECT_EQ(plugin->numParams(), 50);
  EXPECT_EQ(plugin->numInputs(), 0);
  EXPECT_EQ(plugin->numOutputs(), 2);
  EXPECT_EQ(plugin->flags(), 0x112);
  EXPECT_EQ(plugin->uniqueId(), vstFourCharacters('Q', 'S', 'B', 'V'));
  EXPECT_EQ(plugin->version(), 1);
  EXPECT_EQ(plugin->effectName(), "QuorlSablevox");
  EXPECT_EQ(plugin->productString(), "QuorlSablevox");
  EXPECT_FALSE(plugin->vendorString().empty());
  EXPECT_EQ(plugin->vendorVersion(), 1000);
  EXPECT_EQ(plugin->vstVersion(), 2300);
  EXPECT_EQ(plugin->category(), kPlugCategEffect);
  EXPECT_EQ(plugin->canDo("receiveVstMidiEvent"), 1);
  EXPECT_EQ(plugin->canDo("sendVstEvents"), -1);
  EXPECT_EQ(plugin->paramName(8), "Osc1Tune");
  EXPECT_EQ(plugin->paramLabel(18), "Q");
  // Every string fits the interface's buffers: the host library asks with
  // buffers of exactly N + 1 bytes, and the sanitizer build would see more.
  for (int i = 0; i < 50; ++i) {
    EXPECT_FALSE(plugin->paramName(i).empty());
    plugin->paramDisplay(i);
    plugin->paramLabel(i);
  }
  for (int p = 0; p < 128; ++p) {
    bool filled = false;
    plugin->programNameIndexed(p, &filled);
    EXPECT_TRUE(filled);
  }
  bool filled = true;
  plugin->programNameIndexed(128, &filled);
  EXPECT_FALSE(filled);
}

TEST_F(PluginInterfaceTest, BlocksOfEveryLengthAreFiniteAndSilenceIsTheOffset) {
  auto plugin = load();
  ASSERT_NE(plugin, nullptr);
  plugin->open();
  plugin->setSampleRate(44100.0);
  plugin->setBlockSize(100000);
  plugin->resume();
  std::vector<float> left(100000), right(100000);
  for (int count : {0, 1, 64, 110, 111, 4096, 65536, 100000}) {
    plugin->processReplacing(left.data(), right.data(), count);
    for (int i = 0; i < count; ++i) {
      ASSERT_TRUE(std::isfinite(left[i]) && std::isfinite(right[i])) << count << " " << i;
    }
  }
  EXPECT_NEAR(left[99999], 1e-05f, 2e-06f);
  std::fill(left.begin(), left.end(), 1.0f);
  std::fill(right.begin(), right.end(), 1.0f);
  ASSERT_TRUE(plugin->process(left.data(), right.data(), 512));
  EXPECT_NEAR(left[511], 1.0f + 1e-05f, 2e-06f);
}

TEST_F(PluginInterfaceTest, HostileParametersAndMidiNeverMakeNonFiniteOutput) {
  auto plugin = load();
  ASSERT_NE(plugin, nullptr);
  plugin->open();
  plugin->setSampleRate(48000.0);
  plugin->setBlockSize(512);
  plugin->resume();
  std::mt19937 random(7);
  const float hostile[] = {std::numeric_limits<float>::quiet_NaN(),
                           std::numeric_limits<float>::infinity(),
                           -std::numeric_limits<float>::infinity(),
                           -1e30f,
                           1e30f,
                           -1.0f,
                           2.0f};
  std::vector<float> left(512), right(512);
  for (int block = 0; block < 200; ++block) {
    for (int k = 0; k < 5; ++k) {
      const int index = static_cast<int>(random() % 60) - 5;
      const float value =
          random() % 3 == 0 ? hostile[random() % 7] : static_cast<float>(random() % 1001) / 1000.0f;
      plugin->setParameter(index, value);
    }
    std::vector<MidiMessage> midi;
    for (int k = 0; k < 4; ++k) {
      midi.push_back(MidiMessage::raw(
          static_cast<VstInt32>(random() % 2000) - 500, static_cast<unsigned char>(random()),
          static_cast<unsigned char>(random()), static_cast<unsigned char>(random())));
    }
    plugin->sendMidi(midi);
    plugin->processReplacing(left.data(), right.data(), 512);
    ASSERT_TRUE(allFinite(left) && allFinite(right)) << "block " << block;
  }
}

TEST_F(PluginInterfaceTest, OpenAndCloseManyTimes) {
  for (int i = 0; i < 20; ++i) {
    auto plugin = load();
    ASSERT_NE(plugin, nullptr);
    plugin->open();
    plugin->setSampleRate(44100.0);
    plugin->resume();
    std::vector<float> left(256), right(256);
    plugin->processReplacing(left.data(), right.data(), 256);
  }
}

}  // namespace
}  // namespace sablevox
