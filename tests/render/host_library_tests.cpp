// The host library against the recording fake plug-in (amsynth, when
// installed, is rendered by the command tests): loading and its errors, the
// callback's answers and log, strings, MIDI delivery, block calls, and the
// timed render with its blocks ended at resets. A refusing plug-in is the
// validator's (interface_test).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

#include "fake_plugin.h"
#include "hostlib/plugin.h"

namespace sablevox::host {
namespace {

using testing::FakePlugin;

std::unique_ptr<Plugin> loadFake(std::shared_ptr<Host> host = nullptr) {
  std::string error;
  auto plugin = Plugin::fromEntry(&FakePlugin::entry, "fake", &error, std::move(host));
  EXPECT_NE(plugin, nullptr) << error;
  return plugin;
}

TEST(HostLibrary, LoadErrorsSayWhatWentWrong) {
  std::string error;
  EXPECT_EQ(Plugin::load("/nonexistent/plug.so", &error), nullptr);
  EXPECT_NE(error.find("not found"), std::string::npos) << error;

  const std::string text = ::testing::TempDir() + "sablevox_not_elf.so";
  std::ofstream(text) << "not a library";
  EXPECT_EQ(Plugin::load(text, &error), nullptr);
  EXPECT_NE(error.find("cannot load"), std::string::npos) << error;
  std::filesystem::remove(text);

  const char* libm = "/lib/x86_64-linux-gnu/libm.so.6";
  if (std::filesystem::exists(libm)) {
    EXPECT_EQ(Plugin::load(libm, &error), nullptr);
    EXPECT_NE(error.find("neither VSTPluginMain nor main"), std::string::npos) << error;
  }
}

TEST(HostLibrary, CallbackAnswersAndLogsFromAnyThread) {
  auto plugin = loadFake();
  Host& host = plugin->host();
  EXPECT_EQ(host.count(audioMasterWantMidi), 1);  // asked inside the entry
  AEffect* effect = plugin->effect();
  auto call = [&](VstInt32 opcode, void* ptr = nullptr) {
    return FakePlugin::state().host(effect, opcode, 0, 0, ptr, 0.0f);
  };
  plugin->setSampleRate(48000.0);
  plugin->setBlockSize(333);
  EXPECT_EQ(call(audioMasterGetSampleRate), 48000);
  EXPECT_EQ(call(audioMasterGetBlockSize), 333);
  EXPECT_EQ(call(audioMasterCanDo, const_cast<char*>("sizeWindow")), 1);
  EXPECT_EQ(call(audioMasterCanDo, const_cast<char*>("openFileSelector")), 0);
  char text[kVstMaxProductStrLen] = {};
  EXPECT_EQ(call(audioMasterGetProductString, text), 1);
  EXPECT_STREQ(text, "sablevox-render");
  EXPECT_EQ(call(audioMasterIOChanged), 0);  // not served: the interface's 0

  host.clearCalls();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 250; ++i) {
        FakePlugin::state().host(effect, audioMasterAutomate, i, 0, nullptr, 0.5f);
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(host.count(audioMasterAutomate), 1000);
  EXPECT_EQ(host.calls().size(), 1000u);
  EXPECT_EQ(host.calls().back().opt, 0.5f);
}

TEST(HostLibrary, TimeInfoFollowsTempoAndPositionOrIsAbsent) {
  auto plugin = loadFake();
  plugin->setSampleRate(48000.0);
  plugin->setBlockSize(480);
  plugin->host().setTempo(150.0);
  std::vector<float> left(480), right(480);
  plugin->processReplacing(left.data(), right.data(), 480);
  plugin->processReplacing(left.data(), right.data(), 480);
  plugin->host().setTimeAvailable(false);
  plugin->processReplacing(left.data(), right.data(), 480);

  const auto& times = FakePlugin::state().times;
  ASSERT_EQ(times.size(), 3u);
  ASSERT_TRUE(times[1].answered);
  const VstTimeInfo& info = times[1].info;
  EXPECT_EQ(info.samplePos, 480.0);
  EXPECT_EQ(info.sampleRate, 48000.0);
  EXPECT_EQ(info.tempo, 150.0);
  EXPECT_NEAR(info.ppqPos, 0.01 * 150.0 / 60.0, 1e-12);  // 10 ms at 2.5 beats a second
  EXPECT_EQ(info.flags & (kVstTempoValid | kVstPpqPosValid), kVstTempoValid | kVstPpqPosValid);
  EXPECT_FALSE(times[2].answered);
}

TEST(HostLibrary, StringsFitTheInterfaceBuffersExactly) {
  // The fake writes the longest text allowed; with strict buffers of N+1
  // bytes the sanitizer build proves the host gives no less.
  auto plugin = loadFake();
  EXPECT_EQ(plugin->effectName(), std::string(kVstMaxEffectNameLen, 'E'));
  EXPECT_EQ(plugin->productString(), std::string(kVstMaxProductStrLen, 'P'));
  EXPECT_EQ(plugin->paramName(2), std::string(kVstMaxParamStrLen, 'c'));
  bool filled = false;
  EXPECT_EQ(plugin->programNameIndexed(0, &filled), std::string(kVstMaxProgNameLen, 'N'));
  EXPECT_TRUE(filled);
  plugin->programNameIndexed(5, &filled);
  EXPECT_FALSE(filled);
  EXPECT_EQ(plugin->canDo("receiveVstMidiEvent"), 1);
  EXPECT_EQ(plugin->canDo("offline"), -1);
}

TEST(HostLibrary, LifecycleParametersMidiAndBlocks) {
  auto plugin = loadFake();
  plugin->open();
  plugin->setSampleRate(44100.0);
  plugin->setBlockSize(64);
  plugin->resume();
  plugin->setParameter(1, 0.75f);
  EXPECT_EQ(plugin->getParameter(1), 0.75f);

  const MidiMessage messages[] = {MidiMessage::noteOn(3, 2, 60, 100),
                                  MidiMessage::raw(7, 0xF5, 0xFF, 0x80, 0x12),
                                  MidiMessage::pitchBend(9, 0, 16383)};
  EXPECT_EQ(plugin->sendMidi(messages), 1);
  const auto& events = FakePlugin::state().events;
  ASSERT_EQ(events.size(), 3u);
  EXPECT_EQ(events[0].deltaFrames, 3);
  EXPECT_EQ(events[0].bytes[0], 0x92);
  EXPECT_EQ(events[1].bytes[1], 0xFF);  // raw bytes pass untouched
  EXPECT_EQ(events[1].bytes[3], 0x12);
  EXPECT_EQ(events[2].bytes[1], 0x7F);
  EXPECT_EQ(events[2].bytes[2], 0x7F);

  std::vector<float> left(64, 1.0f), right(64, 1.0f);
  plugin->processReplacing(left.data(), right.data(), 64);
  EXPECT_EQ(left[63], FakePlugin::kLeft);
  EXPECT_TRUE(plugin->process(left.data(), right.data(), 64));
  EXPECT_EQ(left[0], 2 * FakePlugin::kLeft);
  EXPECT_EQ(right[10], 2 * FakePlugin::kRight);

  plugin->suspend();
  plugin->close();
  EXPECT_EQ(plugin->effect(), nullptr);
  EXPECT_TRUE(FakePlugin::state().closed);
  const std::vector<VstInt32> expected = {effOpen,         effSetSampleRate, effSetBlockSize,
                                          effMainsChanged, effProcessEvents, effMainsChanged,
                                          effClose};
  EXPECT_EQ(FakePlugin::state().opcodes, expected);
  EXPECT_EQ(plugin->dispatch(effGetProgram), 0);  // nothing is called after close
}

TEST(HostLibrary, RenderDeliversEventsAtTheirFrameAndEndsBlocksAtResets) {
  // A reset message (program change, controllers 120, 121, 123..127) takes
  // effect at the head of the plug-in's next block: what follows it must come
  // in a later block, one that starts at least a tick (2.5 ms, 111 frames at
  // 44.1 kHz) after the reset's block started, so that Sablevox has taken the
  // reset. Resets in the first tick go out before frame 0.
  constexpr int64_t kSettle = 111;
  const std::vector<TimedMidi> events = {
      {0, MidiMessage::controller(0, 0, 121, 0)},    {0, MidiMessage::programChange(0, 1, 5)},
      {0, MidiMessage::noteOn(0, 0, 60, 1)},         {1063, MidiMessage::noteOn(0, 0, 61, 1)},
      {1064, MidiMessage::noteOn(0, 0, 62, 1)},      {3100, MidiMessage::noteOn(0, 0, 63, 1)},
      {3100, MidiMessage::programChange(0, 0, 7)},   {3100, MidiMessage::noteOn(0, 0, 64, 1)},
      {3400, MidiMessage::controller(0, 0, 123, 0)}, {3410, MidiMessage::noteOn(0, 0, 65, 1)},
      {4000, MidiMessage::controller(0, 0, 122, 0)}, {4000, MidiMessage::noteOn(0, 0, 66, 1)},
      {5000, MidiMessage::noteOn(0, 0, 67, 1)}};
  auto resets = [](const unsigned char* bytes) {
    return (bytes[0] & 0xF0) == 0xC0 || ((bytes[0] & 0xF0) == 0xB0 && bytes[1] != 122);
  };
  for (VstInt32 blockSize : {1, 16, 100, 512, 4096}) {
    auto plugin = loadFake();
    plugin->setSampleRate(44100.0);
    plugin->setBlockSize(blockSize);
    std::vector<float> left, right;
    int hooks = 0;
    EXPECT_TRUE(plugin->render(events, 5000, blockSize, left, right, [&](int64_t, VstInt32) {
      ++hooks;
      return true;
    }));
    const auto& fake = FakePlugin::state();
    EXPECT_EQ(fake.framesRendered, 5000 + kSettle) << "the tick before frame 0";
    EXPECT_EQ(hooks, static_cast<int>(fake.blockLengths.size()));
    EXPECT_LE(*std::max_element(fake.blockLengths.begin(), fake.blockLengths.end()), blockSize);
    EXPECT_EQ(left.size(), 5000u);
    EXPECT_EQ(right[4999], FakePlugin::kRight);
    ASSERT_EQ(fake.events.size(), events.size() - 1) << "the event at the end is not sent";
    for (size_t i = 0; i < fake.events.size(); ++i) {
      const testing::FakeEvent& got = fake.events[i];
      EXPECT_EQ(std::memcmp(got.bytes, events[i].message.bytes.data(), 3), 0) << i;
      const int64_t landed = got.blockStart + got.deltaFrames - kSettle;
      if (i < 2) {
        EXPECT_LT(landed, 0) << "block size " << blockSize << ", event " << i;
      } else {
        EXPECT_GE(landed, events[i].frame) << "block size " << blockSize << ", event " << i;
        EXPECT_LE(landed, events[i].frame + kSettle)
            << "block size " << blockSize << ", event " << i;
      }
      if (blockSize >= kSettle && i >= 2 && i != 7) {
        EXPECT_EQ(landed, events[i].frame) << "block size " << blockSize << ", event " << i;
      }
      if (!resets(got.bytes)) continue;
      for (size_t j = i + 1; j < fake.events.size(); ++j) {
        if (resets(fake.events[j].bytes) && events[j].frame == events[i].frame) continue;
        EXPECT_GE(fake.events[j].blockStart, got.blockStart + kSettle)
            << "block size " << blockSize << ": event " << j << " after reset " << i;
      }
    }
  }
  // A hook that answers false stops the render before that block.
  auto plugin = loadFake();
  std::vector<float> left, right;
  EXPECT_FALSE(plugin->render(events, 5000, 1000, left, right,
                              [](int64_t start, VstInt32) { return start < 2000; }));
  EXPECT_EQ(FakePlugin::state().framesRendered, kSettle + 2000);
}

}  // namespace
}  // namespace sablevox::host
