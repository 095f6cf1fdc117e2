// The arpeggiator as a host hears it: note onsets of "Up" over the rhythm
// "||||||||||||||||" (a note every second step, 16 steps a beat) fall on the
// step times quantised to the control tick, at the host's tempo or at 120
// without time information, through a change of tempo, and with the pedal.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "common/isolated_settings.h"
#include "host/parameters.h"
#include "host/vendor_opcodes.h"
#include "hostlib/plugin.h"

namespace sablevox {
namespace {

using host::Host;
using host::MidiMessage;
using host::Plugin;
using host::TimedMidi;

constexpr double kRate = 44100.0;
constexpr int kTick = 110;  // samples of a control tick at 44100 Hz
constexpr int kBlock = 512;
constexpr int kArpUp = 1;      // ArpType "Up"
constexpr int kEveryStep = 3;  // ArpRhyt "||||||||||||||||"
constexpr int kSineWave = 4;   // Osc1Wave: a plain sine
constexpr int kEightVoices = 4;
constexpr int kQuietRun = 441;  // 10 ms below the threshold before an onset counts

class ArpeggiatorPluginTest : public ::testing::Test {
 protected:
  // A patch whose notes are bursts with silence around them: one sine, no
  // filter, LFO or effects, an instant attack and release.
  void start(double tempo, bool timeAvailable = true) {
    plugin.reset();
    host = std::make_shared<Host>();
    host->setTempo(tempo);
    host->setTimeAvailable(timeAvailable);
    std::string error;
    plugin = Plugin::load(SABLEVOX_PLUGIN_PATH, &error, host);
    ASSERT_NE(plugin, nullptr) << error;
    plugin->open();
    plugin->setSampleRate(kRate);
    plugin->setBlockSize(kBlock);
    plugin->resume();
    const struct {
      int index;
      float value;
    } patch[] = {{kOsc1Wave, choiceValue(kSineWave)},
                 {kOsc2Wave, 0.0f},
                 {kOsc1Mod, 0.0f},
                 {kOsc1Tune, 0.45f},
                 {kOsc1Fine, 0.5f},
                 {kOsc1Vol, 1.0f},
                 {kFat, 0.0f},
                 {kAnalog, 0.0f},
                 {kFiltType, 0.0f},
                 {kDrive, 0.0f},
                 {kVolume, 1.0f},
                 {kEnvVolA, 0.0f},
                 {kEnvVolS, 1.0f},
                 {kEnvVolR, 0.0f},
                 {kEnvVolPo, 0.0f},
                 {kLFODest, 0.0f},
                 {kEffType, 0.0f},
                 {kVoices, choiceValue(kEightVoices)},
                 {kGlMode, 0.0f},
                 {kArpType, 0.0f},
                 {kArpRhyt, choiceValue(kEveryStep)}};
    for (const auto& p : patch) plugin->setParameter(p.index, p.value);

    // The first block takes the construction's reset, which asks for new
    // tables; blocks of whole ticks then keep the ticks on block starts, so
    // that a render's frame 0 is a tick.
    std::vector<float> left(kTick), right(kTick);
    for (int i = 0; i < 1000 && !wavesReady(); ++i) {
      plugin->processReplacing(left.data(), right.data(), kTick);
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    ASSERT_TRUE(wavesReady());

    // A plain note first: the delay from the tick that starts a note to its
    // first loud sample is the engine's, not the arpeggiator's.
    const std::vector<TimedMidi> plain = {{0, MidiMessage::noteOn(0, 0, 60, 100)},
                                          {2200, MidiMessage::noteOff(0, 0, 60)}};
    const std::vector<float> sound = play(plain, 40 * kTick);
    float peak = 0.0f;
    for (float x : sound) peak = std::max(peak, std::fabs(x));
    ASSERT_GT(peak, 0.01f) << "the patch is silent";
    threshold = peak * 0.05f;
    const std::vector<int64_t> found = onsets(sound, threshold);
    ASSERT_EQ(found.size(), 1u);
    latency = found[0];
    // Then "Up"; the mode change is taken at the next tick.
    plugin->setParameter(kArpType, choiceValue(kArpUp));
    plugin->processReplacing(left.data(), right.data(), kTick);
  }

  bool wavesReady() {
    return plugin->dispatch(effVendorSpecific, kSablevoxVendorIndex, kVendorWavesReady) == 1;
  }

  std::vector<float> play(const std::vector<TimedMidi>& events, int64_t frames,
                          const Plugin::BlockHook& beforeBlock = {}) {
    std::vector<float> left, right;
    EXPECT_TRUE(plugin->render(events, frames, kBlock, left, right, beforeBlock));
    return left;
  }

  // Frames where a note starts: the first sample above the threshold after
  // 10 ms below it.
  static std::vector<int64_t> onsets(const std::vector<float>& x, float threshold) {
    std::vector<int64_t> found;
    int quiet = kQuietRun;
    for (size_t i = 0; i < x.size(); ++i) {
      if (std::fabs(x[i]) <= threshold) {
        ++quiet;
        continue;
      }
      if (quiet >= kQuietRun) found.push_back(static_cast<int64_t>(i));
      quiet = 0;
    }
    return found;
  }
  std::vector<int64_t> onsets(const std::vector<TimedMidi>& events, int64_t frames,
                              const Plugin::BlockHook& beforeBlock = {}) {
    return onsets(play(events, frames, beforeBlock), threshold);
  }

  // The ticks that play note steps 2n, 2n + 2... of a phrase started at
  // frame 0, up to `end`: each the first tick at or after its step's time.
  static std::vector<int64_t> stepTicks(double tempo, int n, int64_t end) {
    const double stepSamples = kRate * 60.0 / (16.0 * tempo);
    std::vector<int64_t> ticks;
    for (;; ++n) {
      const auto tick = static_cast<int64_t>(std::ceil(2 * n * stepSamples / kTick)) * kTick;
      if (tick >= end) return ticks;
      ticks.push_back(tick);
    }
  }

  // Each onset must come the engine's latency after its tick; the two keys'
  // sines cross the threshold a few samples apart, ticks are 110 apart.
  void expectOnTicks(const std::vector<int64_t>& found, const std::vector<int64_t>& ticks) const {
    ASSERT_EQ(found.size(), ticks.size());
    for (size_t i = 0; i < found.size(); ++i) {
      EXPECT_NEAR(found[i], ticks[i] + latency, 20) << "onset " << i;
    }
  }

  static std::vector<TimedMidi> chord(std::initializer_list<int> keys) {
    std::vector<TimedMidi> events;
    for (int k : keys) events.push_back({0, MidiMessage::noteOn(0, 0, k, 100)});
    return events;
  }

  testing::IsolatedSettings settings;
  std::shared_ptr<Host> host;
  std::unique_ptr<Plugin> plugin;
  float threshold = 0.0f;
  int64_t latency = 0;
};

TEST_F(ArpeggiatorPluginTest, OnsetsFallOnTheStepsAtTheHostTempo) {
  const struct {
    double hostTempo;
    bool timeAvailable;
    double heard;
  } cases[] = {{120.0, true, 120.0}, {90.0, true, 90.0}, {90.0, false, 120.0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.hostTempo << (c.timeAvailable ? "" : " not told"));
    start(c.hostTempo, c.timeAvailable);
    // 1.5 s: 24 notes at 120, 18 at 90.
    const int64_t frames = 66150;
    expectOnTicks(onsets(chord({60, 64}), frames), stepTicks(c.heard, 0, frames));
  }
}

TEST_F(ArpeggiatorPluginTest, ATempoChangeBendsTheRhythmWithoutARestart) {
  start(120.0);
  // At frame 24576 the phrase stands at step 17 at 120 and falls back to step
  // 13 at 90; both are off steps. The steps after it count from the phrase's
  // start at the new tempo: a restart would play at once.
  const int64_t change = 48 * kBlock;
  const int64_t frames = 66150;
  std::vector<int64_t> expected = stepTicks(120.0, 0, change);
  for (int64_t tick : stepTicks(90.0, 7, frames)) expected.push_back(tick);
  const auto found = onsets(chord({60, 64}), frames, [&](int64_t blockStart, VstInt32) {
    if (blockStart >= change) host->setTempo(90.0);
    return true;
  });
  expectOnTicks(found, expected);
}

TEST_F(ArpeggiatorPluginTest, TheSustainPedalKeepsTheArpeggioAfterTheKeysAreUp) {
  start(120.0);
  const int64_t frames = 401 * kTick;  // the next note step falls on the next render's start
  const int64_t keysUp = 4410;
  std::vector<TimedMidi> events = chord({60, 64});
  events.push_back({100, MidiMessage::controller(0, 0, 64, 127)});
  events.push_back({keysUp, MidiMessage::noteOff(0, 0, 60)});
  events.push_back({keysUp, MidiMessage::noteOff(0, 0, 64)});
  expectOnTicks(onsets(events, frames), stepTicks(120.0, 0, frames));

  // Pedal up: the deferred key-ups empty the table before that step.
  EXPECT_TRUE(onsets({{0, MidiMessage::controller(0, 0, 64, 0)}}, frames).empty());
}

}  // namespace
}  // namespace sablevox
