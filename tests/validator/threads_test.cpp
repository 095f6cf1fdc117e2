// Threads as hosts use them: many instances rendering at once, each on its
// own audio thread; and one instance whose notes come from a second thread
// and whose parameters and programs come from a third while its worker
// rebuilds tables. Under the thread sanitizer both must run without a report.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "validator/validator_support.h"

namespace sablevox::testing {
namespace {

using host::MidiMessage;

TEST(ValidatorThreads, SixteenInstancesRenderAtOnce) {
  constexpr int kInstances = 16;
  constexpr double kRates[] = {44100.0, 48000.0, 96000.0, 22050.0};
  std::vector<std::unique_ptr<PluginRig>> rigs;
  for (int i = 0; i < kInstances; ++i) {
    rigs.push_back(std::make_unique<PluginRig>());
    ASSERT_TRUE(rigs.back()->start(kRates[i % 4]));
  }
  std::atomic<int> failures{0};
  std::atomic<int> sounding{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < kInstances; ++i) {
    threads.emplace_back([&, i] {
      host::Plugin& plugin = rigs[i]->plugin();
      std::mt19937 random(static_cast<unsigned>(i));
      std::vector<float> left, right;
      float loudest = 0.0f;
      for (int block = 0; block < scaled(300); ++block) {
        if (block % 40 == 0) {
          // A new wave for the worker to build, another effect, a new note.
          plugin.setParameter(kOsc1Wave, choiceValue(2 + static_cast<int>(random() % 80)));
          plugin.setParameter(kEffType, choiceValue(static_cast<int>(random() % kEffSteps)));
          plugin.sendMidi(std::vector{MidiMessage::noteOn(0, 0, 48 + i, 100)});
        }
        if (block % 40 == 30) plugin.sendMidi(std::vector{MidiMessage::noteOff(0, 0, 48 + i)});
        if (!renderFinite(plugin, left, right, 256)) failures.fetch_add(1);
        loudest = std::max(loudest, peak(left));
      }
      if (loudest > 0.01f) sounding.fetch_add(1);
    });
  }
  for (auto& t : threads) t.join();
  EXPECT_EQ(failures.load(), 0);
  EXPECT_EQ(sounding.load(), kInstances);
}

// The audio thread renders; a second thread plays notes into the event queue;
// a third moves every parameter (waves and modifiers included, so the worker
// keeps rebuilding) and changes programs.
TEST(ValidatorThreads, NotesParametersAndProgramsFromOtherThreadsWhileTablesRebuild) {
  Instance instance;
  ASSERT_TRUE(instance.start(44100.0, 128));
  std::atomic<bool> stop{false};
  std::atomic<int> blocks{0};
  std::thread notes([&] {
    std::mt19937 random(1);
    while (!stop) {
      const int key = 36 + static_cast<int>(random() % 48);
      const MidiMessage midi[] = {
          MidiMessage::noteOn(static_cast<VstInt32>(random() % 128), 0, key, 100),
          MidiMessage::noteOff(static_cast<VstInt32>(random() % 128), 0, key - 12)};
      instance.plugin->dispatch(effProcessEvents, 0, 0, nullptr);
      host::EventList list;
      for (const auto& m : midi) list.add(m);
      instance.plugin->dispatch(effProcessEvents, 0, 0, list.get());
      std::this_thread::sleep_for(std::chrono::microseconds(300));
    }
  });
  std::thread controls([&] {
    std::mt19937 random(2);
    while (!stop) {
      const int index = static_cast<int>(random() % 50);
      instance.plugin->setParameter(index, static_cast<float>(random() % 1001) / 1000.0f);
      instance.plugin->getParameter(index);
      instance.plugin->paramDisplay(index);
      if (random() % 50 == 0) instance.plugin->setProgram(static_cast<int>(random() % 128));
      if (random() % 50 == 0) instance.plugin->programName();
      std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
  });
  std::vector<float> left, right;
  bool finite = true;
  const auto until =
      std::chrono::steady_clock::now() + std::chrono::milliseconds(kSanitized ? 2500 : 1500);
  while (std::chrono::steady_clock::now() < until && finite) {
    finite = instance.block(left, right, 128);
    blocks.fetch_add(1);
  }
  stop = true;
  notes.join();
  controls.join();
  EXPECT_TRUE(finite);
  EXPECT_GT(blocks.load(), 100);
}

}  // namespace
}  // namespace sablevox::testing
