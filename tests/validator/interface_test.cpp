// The built plug-in as a host's scanner and dispatcher see it: its exports,
// the AEffect, every answer and string of the dispatcher (asked with buffers
// of exactly the interface's sizes, so the sanitizer builds see an overrun),
// what it asks of the host, and every opcode with null and odd arguments.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "validator/validator_support.h"

namespace sablevox::testing {
namespace {

TEST(ValidatorInterface, ExportsBothEntryNamesAndNothingElseOfOurs) {
  void* library = dlopen(SABLEVOX_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  EXPECT_NE(dlsym(library, "VSTPluginMain"), nullptr);
  EXPECT_NE(dlsym(library, "main"), nullptr);
  // Hidden visibility: the engine's own names stay inside the library.
  EXPECT_EQ(dlsym(library, "_ZN8sablevox6ADelay16processReplacingEPPfS2_i"), nullptr);
  dlclose(library);
}

TEST(ValidatorInterface, AHostOfVersionZeroGetsNoPlugIn) {
  IsolatedSettings settings;
  auto refusing = std::make_shared<host::Host>();
  refusing->setVersion(0);
  std::string error;
  EXPECT_EQ(host::Plugin::load(SABLEVOX_PLUGIN_PATH, &error, refusing), nullptr);
  EXPECT_NE(error.find("refused"), std::string::npos) << error;
  const auto calls = refusing->calls();
  ASSERT_EQ(calls.size(), 1u);  // asked inside the entry, before the AEffect exists
  EXPECT_EQ(calls[0].opcode, audioMasterVersion);
  EXPECT_TRUE(calls[0].effectWasNull);
}

TEST(ValidatorInterface, WhatAHostScannerReads) {
  Instance instance;
  ASSERT_TRUE(instance.start(44100.0, 512));
  host::Plugin& plugin = *instance.plugin;
  const AEffect* e = plugin.effect();
  EXPECT_EQ(e->magic, kEffectMagic);
  EXPECT_EQ(plugin.numPrograms(), 128);
  EXPECT_EQ(plugin.numParams(), 50);
  EXPECT_EQ(plugin.numInputs(), 0);
  EXPECT_EQ(plugin.numOutputs(), 2);
  // Clip, replacing and synth; no editor yet, no chunks, no VU.
  EXPECT_EQ(plugin.flags(), effFlagsHasClip | effFlagsCanReplacing | effFlagsIsSynth);
  EXPECT_EQ(e->ioRatio, 1.0f);
  EXPECT_EQ(plugin.uniqueId(), vstFourCharacters('Q', 'S', 'B', 'V'));
  EXPECT_EQ(plugin.version(), 1);
  EXPECT_NE(e->processReplacing, nullptr);
  EXPECT_NE(e->process, nullptr);
  EXPECT_EQ(e->processDoubleReplacing, nullptr);

  EXPECT_EQ(plugin.dispatch(effIdentify), kVstIdentify);
  EXPECT_EQ(plugin.vendorVersion(), 1000);
  EXPECT_EQ(plugin.vstVersion(), 2300);
  EXPECT_EQ(plugin.category(), kPlugCategEffect);
  EXPECT_EQ(plugin.dispatch(effGetNumProgramCategories), 1);
  EXPECT_EQ(plugin.dispatch(effKeysRequired), 1);
  EXPECT_EQ(plugin.dispatch(effGetVu), 0);
  void* chunk = nullptr;
  EXPECT_EQ(plugin.dispatch(effGetChunk, 0, 0, &chunk), 0);
  for (VstInt32 p = 0; p < 60; ++p) EXPECT_EQ(plugin.dispatch(effCanBeAutomated, p), 1);

  EXPECT_EQ(plugin.effectName(), "QuorlSablevox");
  EXPECT_EQ(plugin.productString(), "QuorlSablevox");
  EXPECT_FALSE(plugin.vendorString().empty());
  for (const char* yes :
       {"receiveVstEvents", "receiveVstMidiEvent", "midiProgramNames", "receiveVstTimeInfo"}) {
    EXPECT_EQ(plugin.canDo(yes), 1) << yes;
  }
  for (const char* no : {"sendVstEvents", "", "ReceiveVstEvents"}) {
    EXPECT_EQ(plugin.canDo(no), -1) << no;
  }

  // The texts themselves are the parameter table's (base/parameters_test).
  EXPECT_EQ(plugin.paramName(kOsc1Tune), "Osc1Tune");
  EXPECT_EQ(plugin.paramLabel(kReso), "Q");
  plugin.setParameter(kOsc1Fine, 1.0f);
  EXPECT_EQ(plugin.paramDisplay(kOsc1Fine), "100.0000");
  for (int i = 0; i < 50; ++i) {
    EXPECT_FALSE(plugin.paramName(i).empty());
    plugin.paramDisplay(i);
    plugin.paramLabel(i);
  }
  EXPECT_EQ(plugin.paramName(50), "");  // left alone
  for (int p = 0; p < 128; ++p) {
    bool filled = false;
    plugin.programNameIndexed(p, &filled);
    EXPECT_TRUE(filled);
  }
  bool filled = true;
  plugin.programNameIndexed(128, &filled);
  EXPECT_FALSE(filled);
}

TEST(ValidatorInterface, OutputPinsProgramBoundsAndWhatResumeAsks) {
  Instance instance;
  ASSERT_TRUE(instance.start(44100.0, 512));
  host::Plugin& plugin = *instance.plugin;
  for (VstInt32 pin = 0; pin < 2; ++pin) {
    VstPinProperties properties{};
    EXPECT_EQ(plugin.dispatch(effGetOutputProperties, pin, 0, &properties), 1);
    EXPECT_STREQ(properties.label, "Sablevox");
    EXPECT_STREQ(properties.shortLabel, "Sable");
    EXPECT_EQ(properties.flags, kVstPinIsActive | kVstPinIsStereo);
  }
  VstPinProperties untouched;
  std::memset(&untouched, 0x5A, sizeof untouched);
  EXPECT_EQ(plugin.dispatch(effGetOutputProperties, 2, 0, &untouched), 0);
  EXPECT_EQ(static_cast<unsigned char>(untouched.label[0]), 0x5A);

  plugin.setProgram(5);
  EXPECT_EQ(plugin.program(), 5);
  for (VstIntPtr bad : {VstIntPtr{128}, VstIntPtr{1000}, VstIntPtr{-1}}) {
    plugin.dispatch(effSetProgram, 0, bad);
    EXPECT_EQ(plugin.program(), 5);
  }

  // Each resume asks for MIDI and for idle calls; a suspend asks nothing.
  host::Host& host = *instance.host;
  plugin.suspend();
  host.clearCalls();
  plugin.resume();
  ASSERT_EQ(host.count(audioMasterWantMidi), 1);
  EXPECT_EQ(host.calls()[0].value, 1);
  EXPECT_EQ(host.count(audioMasterNeedIdle), 1);
  plugin.suspend();
  EXPECT_EQ(host.count(audioMasterWantMidi), 1);
}

// Nothing may crash or misbehave (the sanitizer builds turn undefined
// behaviour into failures), and the instance still plays afterwards.
TEST(ValidatorInterface, EveryOpcodeSurvivesNullAndOddArguments) {
  PluginRig rig;
  ASSERT_TRUE(rig.start(44100.0));
  const VstIntPtr values[] = {0, 1, -1, 127, 128, 1 << 30};
  const float opts[] = {0.0f, -1.0f, 1e30f, std::numeric_limits<float>::quiet_NaN()};
  for (VstInt32 opcode = 0; opcode < 90; ++opcode) {
    if (opcode == effClose) continue;
    for (VstIntPtr value : values) {
      for (float opt : opts) {
        rig.plugin().dispatch(opcode, static_cast<VstInt32>(value), value, nullptr, opt);
      }
    }
  }
  EXPECT_EQ(rig.plugin().dispatch(effVendorSpecific), 0);
  rig.plugin().setSampleRate(44100.0);
  rig.plugin().resume();
  rig.plainPatch();
  ASSERT_TRUE(rig.waitForWaves());
  const StereoRender out = rig.render({noteOn(0, 60)}, 8192);
  EXPECT_TRUE(allFinite(out.left) && allFinite(out.right));
  EXPECT_GT(peak(out.left), 0.01f);
}

}  // namespace
}  // namespace sablevox::testing
