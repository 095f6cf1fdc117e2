// A note as a host hears it from the built plug-in: its pitch by the tune
// laws and the wave's pitch factor, the moment it starts sounding, and the
// volume's silence threshold.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "common/pitch_measure.h"
#include "plugin/plugin_fixture.h"

namespace sablevox {
namespace {

using host::MidiMessage;
using testing::PluginRig;

constexpr double kRate = 44100.0;
constexpr int kStaSine = 4;            // pitch factor 4.0
constexpr float kTunePlusOne = 0.45f;  // "tune octave +1  "

// The rig's plain patch with one sine at the given fine tune and volume.
::testing::AssertionResult startSine(PluginRig& rig, float fine = 0.5f, float volume = 1.0f) {
  return rig.start(kRate, [&](PluginRig& r) {
    r.choose(kOsc1Wave, kStaSine);
    r.set(kOsc1Tune, kTunePlusOne);
    r.set(kOsc1Fine, fine);
    r.set(kVolume, volume);
  });
}

std::vector<float> renderLeft(PluginRig& rig, int frames) {
  std::vector<float> l(static_cast<size_t>(frames)), r(static_cast<size_t>(frames));
  rig.plugin().processReplacing(l.data(), r.data(), frames);
  return l;
}

TEST(VoicePluginTest, PitchFollowsTuneFineAndThePitchFactor) {
  PluginRig rig;
  ASSERT_TRUE(startSine(rig));
  const struct {
    float fine;
    double ratio;
  } cases[] = {{0.5f, 1.0}, {1.0f, 1.02973}, {0.0f, 0.9719}};  // fine's ends: about 50 cents
  for (const auto& c : cases) {
    rig.set(kOsc1Fine, c.fine);
    const MidiMessage on[] = {MidiMessage::noteOn(0, 0, 69, 100)};
    rig.plugin().sendMidi(on);
    renderLeft(rig, 13230);  // attack and settling
    const double hz = testing::zeroCrossingFrequency(renderLeft(rig, 22050), kRate);
    EXPECT_NEAR(hz, 220.0 * 2.0 * 4.0 * c.ratio, 1760.0 * 0.001) << c.fine;
    const MidiMessage off[] = {MidiMessage::noteOff(0, 0, 69)};
    rig.plugin().sendMidi(off);
    renderLeft(rig, 44100);
  }
}

// A note-on takes effect at the tick whose window holds it: at 44100 Hz a
// tick is 110 samples, so deltaFrames 120 sounds from sample 110 and 220 from
// sample 220. The sine starts at phase 0, and the output's two-point average
// lets its first sample show half-way: the samples before the tick are
// exactly those of a render without the note, the one after it is not.
TEST(VoicePluginTest, NotesStartAtTheirTick) {
  for (int delta : {120, 220}) {
    PluginRig played, silent;
    ASSERT_TRUE(startSine(played));
    ASSERT_TRUE(startSine(silent));
    const MidiMessage on[] = {MidiMessage::noteOn(delta, 0, 69, 100)};
    played.plugin().sendMidi(on);
    const std::vector<float> out = renderLeft(played, 512);
    const std::vector<float> silence = renderLeft(silent, 512);
    const size_t start = delta == 120 ? 110 : 220;
    for (size_t i = 0; i < start; ++i) ASSERT_EQ(out[i], silence[i]) << delta << " " << i;
    EXPECT_GT(std::fabs(out[start + 1] - silence[start + 1]), 1e-3f) << delta;
  }
}

// Volume below 0.01 is silence: the note's render equals a render without it.
TEST(VoicePluginTest, VolumeBelowOnePercentIsSilence) {
  PluginRig played, silent;
  ASSERT_TRUE(startSine(played, 0.5f, 0.0099f));
  ASSERT_TRUE(startSine(silent, 0.5f, 0.0099f));
  const MidiMessage on[] = {MidiMessage::noteOn(0, 0, 69, 127)};
  played.plugin().sendMidi(on);
  for (int block = 0; block < 10; ++block) {
    std::vector<float> a(882), ar(882), b(882), br(882);
    played.plugin().processReplacing(a.data(), ar.data(), 882);
    silent.plugin().processReplacing(b.data(), br.data(), 882);
    ASSERT_EQ(a, b);
    ASSERT_EQ(ar, br);
  }
}

}  // namespace
}  // namespace sablevox
