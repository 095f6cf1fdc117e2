// Hosts as they differ in the field: one that exports offline, faster than
// real time, and must get the same file every time however starved the wave
// worker is; and one that unloads the library without closing its instances,
// as plug-in scanners do.
#include <dirent.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "validator/realtime_hooks.h"
#include "validator/validator_support.h"

namespace sablevox::testing {
namespace {

using host::MidiMessage;
using host::TimedMidi;

constexpr double kRate = 44100.0;
constexpr VstInt32 kBlock = 512;
constexpr int64_t kSecond = 44100;

// A busy thread per core for the lifetime of the object: the worker, at the
// lowest priority, gets next to nothing.
class BusyCores {
 public:
  BusyCores() {
    const unsigned cores = std::max(1u, std::thread::hardware_concurrency());
    for (unsigned i = 0; i < cores; ++i) {
      threads_.emplace_back([this] {
        while (!stop_.load(std::memory_order_relaxed)) {
        }
      });
    }
  }
  ~BusyCores() {
    stop_ = true;
    for (auto& t : threads_) t.join();
  }

 private:
  std::atomic<bool> stop_{false};
  std::vector<std::thread> threads_;
};

// Notes from the first sample, a program change by MIDI with new notes after
// one second, and waves and modifiers moved by the host after two: every
// table the render plays is built after the first block. The host answers
// `level` to the process-level question and renders flat out.
StereoRender exportOffline(VstInt32 level) {
  Instance instance;
  instance.host->setProcessLevel(level);
  // Where the hooks are in place the worker is also frozen in its sleep, so
  // that every table must come from the rendering thread. It thaws before
  // the instance closes, which joins it.
  realtime::exemptFromHolding();
  realtime::hold();
  struct Thaw {
    ~Thaw() { realtime::release(); }
  } thaw;
  EXPECT_TRUE(instance.start(kRate, kBlock));
  const std::vector<TimedMidi> events = {
      noteOn(0, 48, 100),
      noteOn(0, 55, 100),
      noteOn(0, 64, 100),
      {kSecond, MidiMessage::raw(0, 0xC0, 17, 0)},
      // After the block that takes up the new program (and ends all voices).
      noteOn(kSecond + 2 * kBlock, 52, 110),
      noteOn(kSecond + 2 * kBlock, 59, 110),
      noteOff(kSecond * 3 - 5000, 52),
  };
  const int64_t changeBlock = 2 * kSecond / kBlock * kBlock;
  StereoRender out;
  instance.plugin->render(
      events, kSecond * 3, kBlock, out.left, out.right, [&](int64_t start, VstInt32) {
        if (start == changeBlock) {
          instance.plugin->setParameter(kOsc1Wave, choiceValue(33));
          instance.plugin->setParameter(kOsc2Wave, choiceValue(61));
          instance.plugin->setParameter(kOsc1Mod, 0.6f);
        }
        // The new tables played from the block of the change on.
        if (start == changeBlock + kBlock) {
          EXPECT_EQ(
              instance.plugin->dispatch(effVendorSpecific, kSablevoxVendorIndex, kVendorWavesReady),
              1);
        }
        return true;
      });
  return out;
}

// A host that says it renders offline, and one that can't tell (as Ardour 7
// during its exports) but renders far faster than real time: the same file.
TEST(ValidatorHostKinds, OfflineExportsAreIdenticalWithTheWorkerStarved) {
  BusyCores busy;
  const StereoRender first = exportOffline(kVstProcessLevelOffline);
  ASSERT_TRUE(allFinite(first.left) && allFinite(first.right));
  // Sound from the first block: the tables existed before it.
  EXPECT_GT(peak(std::span(first.left).first(kBlock)), 0.01f);
  EXPECT_GT(peak(std::span(first.left).subspan(2 * kSecond + kBlock, kSecond / 2)), 0.01f);
  // A sanitizer build renders too slowly to count as running ahead.
  const VstInt32 levels[] = {kVstProcessLevelOffline, kVstProcessLevelUnknown};
  for (int run = 1; run < (kSanitized ? 2 : 5); ++run) {
    const VstInt32 level = levels[kSanitized ? 0 : run % 2];
    const StereoRender again = exportOffline(level);
    ASSERT_EQ(again.left, first.left) << "export " << run << ", level " << level;
    ASSERT_EQ(again.right, first.right) << "export " << run << ", level " << level;
  }
}

// A host that can't tell its process level but plays in real time: the
// audio thread leaves every build to the (here frozen) worker.
TEST(ValidatorHostKinds, ARealTimeStreamOfAnUnknownHostBuildsNothingOnTheAudioThread) {
  if (!realtime::hooksInstalled()) GTEST_SKIP() << "the worker can't be frozen in this build";
  Instance instance;
  realtime::exemptFromHolding();
  realtime::hold();
  struct Thaw {
    ~Thaw() { realtime::release(); }
  } thaw;
  ASSERT_TRUE(instance.start(kRate, kBlock));
  std::vector<float> left, right;
  for (int i = 0; i < 2000 && realtime::holdingCount() == 0; ++i) {
    ASSERT_TRUE(instance.block(left, right, 64));
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ASSERT_GE(realtime::holdingCount(), 1) << "the worker never slept";
  instance.chord({48, 60}, true);
  instance.plugin->setParameter(kOsc1Wave, choiceValue(40));
  const auto blockTime = std::chrono::microseconds(kBlock * 1000000LL / 44100);
  auto next = std::chrono::steady_clock::now();
  for (int b = 0; b < 100; ++b) {  // 1.2 s
    ASSERT_TRUE(instance.block(left, right, kBlock));
    next += blockTime;
    std::this_thread::sleep_until(next);
  }
  EXPECT_EQ(instance.plugin->dispatch(effVendorSpecific, kSablevoxVendorIndex, kVendorWavesReady),
            0);
  EXPECT_GT(instance.host->count(audioMasterGetCurrentProcessLevel), 0);
}

VstIntPtr plainHost(AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void*, float) {
  return opcode == audioMasterVersion ? 2400 : 0;
}

int threadsOfThisProcess() {
  int count = 0;
  if (DIR* tasks = opendir("/proc/self/task")) {
    while (const dirent* entry = readdir(tasks)) count += entry->d_name[0] != '.' ? 1 : 0;
    closedir(tasks);
  }
  return count;
}

// Instances merely created, opened, and opened, resumed and rendering, then
// the library unloaded under them: their workers must be gone with it, and
// nothing may run on in unmapped code.
TEST(ValidatorHostKinds, UnloadingWithoutClosingEndsEveryInstance) {
  IsolatedSettings settings;
  // ThreadSanitizer starts a thread of its own at the first thread a process
  // makes: let that happen before the count that the rounds must return to.
  std::thread([] {}).join();
  const int threadsBefore = threadsOfThisProcess();
  for (int round = 0; round < scaled(8); ++round) {
    void* library = dlopen(SABLEVOX_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    auto entry =
        reinterpret_cast<AEffect* (*)(audioMasterCallback)>(dlsym(library, "VSTPluginMain"));
    ASSERT_NE(entry, nullptr);
    std::vector<float> left(kBlock), right(kBlock);
    float* outputs[2] = {left.data(), right.data()};
    for (int kind = 0; kind < 3; ++kind) {
      AEffect* effect = entry(plainHost);
      ASSERT_NE(effect, nullptr);
      if (kind >= 1) effect->dispatcher(effect, effOpen, 0, 0, nullptr, 0.0f);
      if (kind == 2) {
        effect->dispatcher(effect, effMainsChanged, 0, 1, nullptr, 0.0f);
        // A new wave keeps the worker busy while the library goes.
        effect->setParameter(effect, kOsc1Wave, choiceValue(10 + round));
        for (int b = 0; b < 20; ++b) effect->processReplacing(effect, nullptr, outputs, kBlock);
      }
    }
    ASSERT_GT(threadsOfThisProcess(), threadsBefore) << "no worker ran";
    ASSERT_EQ(dlclose(library), 0);
    EXPECT_EQ(threadsOfThisProcess(), threadsBefore) << "round " << round;
  }
}

}  // namespace
}  // namespace sablevox::testing
