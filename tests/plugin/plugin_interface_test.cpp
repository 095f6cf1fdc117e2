// The built plug-in as a host sees it: its exports and what a host's scanner
// reads. Blocks, hostile input and lifecycles are the validator suite's.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "common/isolated_settings.h"
#include "hostlib/plugin.h"

namespace sablevox {
namespace {

using host::Host;
using host::Plugin;

class PluginInterfaceTest : public ::testing::Test {
 protected:
  std::unique_ptr<Plugin> load(std::shared_ptr<Host> h = nullptr) {
    std::string error;
    auto plugin = Plugin::load(SABLEVOX_PLUGIN_PATH, &error, std::move(h));
    EXPECT_NE(plugin, nullptr) << error;
    return plugin;
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

}  // namespace
}  // namespace sablevox
