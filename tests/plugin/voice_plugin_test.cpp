// A note as a host hears it from the built plug-in: its pitch by the tune
// laws and the wave's pitch factor, the moment it starts sounding, and the
// volume's silence threshold.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include "common/isolated_settings.h"
#include "common/pitch_measure.h"
#include "host/parameters.h"
#include "host/vendor_opcodes.h"
#include "hostlib/plugin.h"

namespace sablevox {
namespace {

using host::MidiMessage;
using host::Plugin;

constexpr double kRate = 44100.0;
constexpr int kStaSine = 4;  // pitch factor 4.0

class VoicePluginTest : public ::testing::Test {
 protected:
  // One sine oscillator, no filter, LFO or effects, instant attack, full
  // sustain; oscillator tune `tune` (raw value) and fine `fine`.
  void start(float tune, float fine, float volume = 1.0f) {
    std::string error;
    plugin = Plugin::load(SABLEVOX_PLUGIN_PATH, &error);
    ASSERT_NE(plugin, nullptr) << error;
    plugin->open();
    plugin->setSampleRate(kRate);
    plugin->setBlockSize(512);
    plugin->resume();
    const struct {
      int index;
      float value;
    } patch[] = {{kOsc1Wave, choiceValue(kStaSine)},
                 {kOsc2Wave, 0.0f},
                 {kOsc1Tune, tune},
                 {kOsc1Fine, fine},
                 {kOsc1Vol, 1.0f},
                 {kFat, 0.0f},
                 {kAnalog, 0.0f},
                 {kFiltType, 0.0f},
                 {kDrive, 0.0f},
                 {kVolume, volume},
                 {kEnvVolA, 0.0f},
                 {kEnvVolS, 1.0f},
                 {kLFODest, 0.0f},
                 {kArpType, 0.0f},
                 {kEffType, 0.0f},
                 {kGlMode, 0.0f}};
    for (const auto& p : patch) plugin->setParameter(p.index, p.value);
    std::vector<float> l(110), r(110);
    for (int i = 0; i < 2000 && plugin->dispatch(effVendorSpecific, kSablevoxVendorIndex,
                                                 kVendorWavesReady) != 1;
         ++i) {
      plugin->processReplacing(l.data(), r.data(), 0);
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    ASSERT_EQ(plugin->dispatch(effVendorSpecific, kSablevoxVendorIndex, kVendorWavesReady), 1);
    // Whole ticks, so that the next block starts on a tick.
    plugin->processReplacing(l.data(), r.data(), 110);
  }

  std::vector<float> render(int frames) {
    std::vector<float> l(static_cast<size_t>(frames)), r(static_cast<size_t>(frames));
    plugin->processReplacing(l.data(), r.data(), frames);
    return l;
  }

  double playNote69() {
    const MidiMessage on[] = {MidiMessage::noteOn(0, 0, 69, 100)};
    plugin->sendMidi(on);
    render(13230);  // attack and settling
    return testing::zeroCrossingFrequency(render(22050), kRate);
  }

  testing::IsolatedSettings settings;
  std::unique_ptr<Plugin> plugin;
};

TEST_F(VoicePluginTest, PitchFollowsTuneFineAndThePitchFactor) {
  start(0.45f, 0.5f);  // "tune octave +1  "
  const struct {
    float fine;
    double ratio;
  } cases[] = {{0.5f, 1.0}, {1.0f, 1.02973}, {0.0f, 0.9719}};  // fine's ends: about 50 cents
  for (const auto& c : cases) {
    plugin->setParameter(kOsc1Fine, c.fine);
    EXPECT_NEAR(playNote69(), 220.0 * 2.0 * 4.0 * c.ratio, 1760.0 * 0.001) << c.fine;
    const MidiMessage off[] = {MidiMessage::noteOff(0, 0, 69)};
    plugin->sendMidi(off);
    render(44100);
  }
}

// A note-on takes effect at the tick whose window holds it: at 44100 Hz a
// tick is 110 samples, so deltaFrames 120 sounds from sample 110 and 220 from
// sample 220. The sine starts at phase 0, and the output's two-point average
// lets its first sample show half-way: the samples before the tick are
// exactly those of silence, the one after it is not.
TEST_F(VoicePluginTest, NotesStartAtTheirTick) {
  for (int delta : {120, 220}) {
    start(0.45f, 0.5f);
    std::unique_ptr<Plugin> played = std::move(plugin);
    start(0.45f, 0.5f);  // the same, without the note
    const MidiMessage on[] = {MidiMessage::noteOn(delta, 0, 69, 100)};
    played->sendMidi(on);
    std::vector<float> out(512), outRight(512);
    played->processReplacing(out.data(), outRight.data(), 512);
    const std::vector<float> silence = render(512);
    const size_t start = delta == 120 ? 110 : 220;
    for (size_t i = 0; i < start; ++i) ASSERT_EQ(out[i], silence[i]) << delta << " " << i;
    EXPECT_GT(std::fabs(out[start + 1] - silence[start + 1]), 1e-3f) << delta;
  }
}

// Volume below 0.01 is silence: the note's render equals a render without it.
TEST_F(VoicePluginTest, VolumeBelowOnePercentIsSilence) {
  start(0.45f, 0.5f, 0.0099f);
  std::unique_ptr<Plugin> played = std::move(plugin);
  start(0.45f, 0.5f, 0.0099f);
  const MidiMessage on[] = {MidiMessage::noteOn(0, 0, 69, 127)};
  played->sendMidi(on);
  for (int block = 0; block < 10; ++block) {
    std::vector<float> a(882), ar(882), b(882), br(882);
    played->processReplacing(a.data(), ar.data(), 882);
    plugin->processReplacing(b.data(), br.data(), 882);
    ASSERT_EQ(a, b);
    ASSERT_EQ(ar, br);
  }
}

}  // namespace
}  // namespace sablevox
