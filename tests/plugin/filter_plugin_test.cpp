// The voice filter as a host hears it: every FiltType step on a sawtooth,
// with Cutoff and Reso swept block by block and key tracking, the filter
// envelope and the LFO pushing the arguments beyond 0..1, stays finite and
// bounded at every rate, also with the cutoff jumping at every tick; the
// low- and high-pass types keep and remove what their names say; "off"
// ignores every filter argument.
#include <gtest/gtest.h>

#include <span>
#include <string_view>
#include <vector>

#include "filter/filter_types.h"
#include "plugin/plugin_fixture.h"

namespace sablevox {
namespace {

using testing::noteOff;
using testing::noteOn;
using testing::PluginRig;
using testing::StereoRender;

// Volume 0.5 puts three unfiltered sawtooth keys at a peak of about 1.5 to
// 2.3. Filter coefficients jump at each control tick without a ramp, and a
// resonant section whose frequency jumps gains energy at the jump: the
// sweeps below give short excursions up to about 27 (shelves, "EQ Peak 2",
// "M-Shape") and 246 (the phaser at 96000 Hz with the arguments pushed
// down), 15 and 150 times the unfiltered level. 1000 lets those pass and
// catches a filter that keeps gaining: that one runs on to overflow.
constexpr float kQuiet = 0.5f;  // Volume
constexpr float kBound = 1000.0f;

int typeIndex(std::string_view name) {
  for (int i = 0; i < kFilterTypeCount; ++i) {
    if (name == kFilterTypes[i].name) return i;
  }
  ADD_FAILURE() << "no filter type " << name;
  return 0;
}

// A triangle over 0..1 with `period` blocks, exact 0 and 1 included.
float sweep(int64_t block, int period) {
  const int half = period / 2;
  const auto k = static_cast<int>(block % period);
  return static_cast<float>(k <= half ? k : period - k) / static_cast<float>(half);
}

constexpr int kWheelResoUp = 4;    // MWDest "Reso +"
constexpr int kWheelResoDown = 5;  // MWDest "Reso -"

// The filter envelope, an 8 Hz triangle on the cutoff, the modulation wheel
// on the resonance, all at full amount up or down, and full key tracking:
// with keys from 12 to 120 the cutoff argument reaches about 3.5 upwards
// and -2.5 downwards, the resonance argument 2 and -1.
PluginRig::Patch pushArguments(bool up) {
  return [=](PluginRig& r) {
    r.set(kVolume, kQuiet);
    r.set(kFiltKey, 1.0f);
    r.set(kEnvFilSe, up ? 1.0f : 0.0f);
    r.set(kEnvFilVe, 1.0f);
    r.set(kEnvFiltA, 0.1f);
    r.set(kEnvFiltD, 0.3f);
    r.set(kEnvFiltS, 0.5f);
    r.set(kEnvFiltR, 0.2f);
    r.choose(kLFODest, testing::kLfoToCutoff);
    r.choose(kLFOType, testing::kLfoTri);
    r.choose(kLFOSpeed, testing::kLfoFastHertz);
    r.set(kLFOSend, up ? 1.0f : 0.0f);
    r.choose(kMWDest, up ? kWheelResoUp : kWheelResoDown);
  };
}

class FilterPluginTest : public ::testing::Test {
 protected:
  PluginRig rig;
};

TEST_F(FilterPluginTest, EveryTypeStaysFiniteAndBoundedOverItsWholeRange) {
  // A type change is taken at the next 0.1 s refresh: 64 blocks leave each
  // type at least 26 blocks of its own even at 192000 Hz, more than one
  // period of both sweeps.
  constexpr int kBlocksPerType = 64;
  constexpr int64_t kFrames = kBlocksPerType * PluginRig::kBlock;
  constexpr int64_t kRetrigger = 31 * PluginRig::kBlock;
  const struct {
    double rate;
    bool up;
    float fat;  // a unison pair renders the right channel with its own filter record
  } cases[] = {{22050.0, true, 0.0f},
               {44100.0, false, 0.3f},
               {96000.0, false, 0.0f},
               {192000.0, true, 0.3f}};
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.rate << " Hz" << (c.up ? " up" : " down"));
    ASSERT_TRUE(rig.start(c.rate, [&](PluginRig& r) {
      pushArguments(c.up)(r);
      r.set(kFat, c.fat);
    }));
    rig.render({{0, host::MidiMessage::controller(0, 0, 1, 127)}}, PluginRig::kBlock);
    for (int type = 0; type < kFilterTypeCount; ++type) {
      SCOPED_TRACE(kFilterTypes[type].name);
      rig.choose(kFiltType, type);
      // New notes halfway let the filter envelope start over in the sweep.
      const std::vector<host::TimedMidi> notes = {noteOn(0, 12),           noteOn(0, 60),
                                                  noteOn(0, 120),          noteOff(kRetrigger, 12),
                                                  noteOff(kRetrigger, 60), noteOff(kRetrigger, 120),
                                                  noteOn(kRetrigger, 24),  noteOn(kRetrigger, 96)};
      const StereoRender out = rig.render(notes, kFrames, [&](int64_t start, VstInt32) {
        const int64_t block = start / PluginRig::kBlock;
        rig.set(kCutoff, sweep(block, 16));
        rig.set(kReso, sweep(block, 22));
        return true;
      });
      EXPECT_TRUE(testing::finiteAndBelow(out.left, kBound));
      EXPECT_TRUE(testing::finiteAndBelow(out.right, kBound));
      EXPECT_GT(testing::peak(out.left), 0.01f) << "silent";
      rig.render({noteOff(0, 24), noteOff(0, 96)}, PluginRig::kBlock);
    }
  }
}

// Energies of a held note's last 8192 samples at 44100 Hz in three bands,
// and those of the same note with "off".
struct Bands {
  double low;   // below 1 kHz
  double high;  // above 2 kHz
  double top;   // above 8 kHz
};

TEST_F(FilterPluginTest, LowAndHighPassesKeepTheirSideOfTheCutoff) {
  constexpr int64_t kFrames = 16384;
  constexpr size_t kWindow = 8192;
  ASSERT_TRUE(rig.start(44100.0, [](PluginRig& r) { r.set(kVolume, kQuiet); }));
  // One key at 131 Hz, so the sawtooth has harmonics in every band.
  auto measure = [&](int type, float cutoff) {
    rig.choose(kFiltType, type);
    rig.set(kCutoff, cutoff);
    const StereoRender out = rig.render({noteOn(0, 48)}, kFrames);
    rig.render({noteOff(0, 48)}, 2048);
    const std::span<const float> tail(out.left.data() + kFrames - kWindow, kWindow);
    return Bands{testing::bandEnergy(tail, 44100.0, 20.0, 1000.0),
                 testing::bandEnergy(tail, 44100.0, 2000.0, 22050.0),
                 testing::bandEnergy(tail, 44100.0, 8000.0, 22050.0)};
  };
  const Bands open = measure(0, 0.5f);

  // Cutoff 0.3 is about 300 Hz: everything above 2 kHz lies more than 2.7
  // octaves up, at least 32 dB down even for a 12 dB slope.
  for (const char* name : {"LP 30dB", "LP 12dB", "LP oct", "LP Moog Noisy", "LP Analog", "LP Moog",
                           "LP Elliptic", "LP Syncie"}) {
    SCOPED_TRACE(name);
    const Bands b = measure(typeIndex(name), 0.3f);
    EXPECT_LT(testing::decibels(b.high / open.high), -35.0);
    EXPECT_GT(testing::decibels(b.low / open.low), -10.0);
  }
  // Cutoff 0.8 is about 6 kHz: below 1 kHz is 2.6 octaves and more down.
  // "HP Analog" at Reso 0 passes its top band about 10 dB down.
  for (const char* name : {"HP 24dB", "HP 12dB", "HP Elliptic", "HP Analog"}) {
    SCOPED_TRACE(name);
    const Bands b = measure(typeIndex(name), 0.8f);
    EXPECT_LT(testing::decibels(b.low / open.low), -25.0);
    EXPECT_GT(testing::decibels(b.top / open.top), -12.0);
  }
}

TEST_F(FilterPluginTest, OffIgnoresEveryFilterArgument) {
  // Two fresh instances, one with every filter argument at one extreme and
  // moving, one at the other: with "off" the outputs are the same bits.
  const std::vector<host::TimedMidi> notes = {noteOn(0, 36), noteOn(0, 100), noteOff(12000, 36),
                                              noteOn(14000, 72)};
  ASSERT_TRUE(rig.start(44100.0, [](PluginRig& r) {
    pushArguments(true)(r);
    r.set(kCutoff, 0.0f);
    r.set(kReso, 1.0f);
  }));
  std::vector<host::TimedMidi> wheel = {{0, host::MidiMessage::controller(0, 0, 1, 127)}};
  wheel.insert(wheel.end(), notes.begin(), notes.end());
  const StereoRender pushed = rig.render(wheel, 20000);

  ASSERT_TRUE(rig.start(44100.0, [](PluginRig& r) {
    r.set(kVolume, kQuiet);
    r.set(kCutoff, 1.0f);
    r.set(kReso, 0.0f);
    r.set(kFiltKey, 0.0f);
    r.set(kEnvFilSe, 0.0f);
  }));
  const StereoRender plain = rig.render(notes, 20000);

  EXPECT_GT(testing::peak(plain.left), 0.1f);
  EXPECT_EQ(pushed.left, plain.left);
  EXPECT_EQ(pushed.right, plain.right);
}

TEST_F(FilterPluginTest, CutoffJumpingAtEveryTickAtFullResonanceStaysBounded) {
  // The "Noise" LFO draws a new value at every control tick: at full send
  // the cutoff argument jumps anywhere in 0..1 every 2.5 ms, with Reso at
  // its top. The biquads change their coefficients without a ramp, and a
  // high-Q section whose frequency keeps jumping gains energy at the jumps.
  auto patch = [](PluginRig& r) {
    r.set(kVolume, kQuiet);
    r.set(kCutoff, 0.0f);
    r.set(kReso, 1.0f);
    r.choose(kLFODest, testing::kLfoToCutoff);
    r.choose(kLFOType, testing::kLfoNoise);
    r.set(kLFOSend, 1.0f);
  };
  // One instance for as long as it stays sound: a runaway leaves numbers in
  // the equaliser and the effect lines that later types would inherit.
  bool sound = false;
  for (int type = 0; type < kFilterTypeCount; ++type) {
    SCOPED_TRACE(kFilterTypes[type].name);
    if (!sound) {
      ASSERT_TRUE(rig.start(44100.0, patch));
    }
    rig.choose(kFiltType, type);
    rig.render({}, 4608);  // past the refresh that takes the new type
    const StereoRender out = rig.render({noteOn(0, 60), noteOff(22050, 60)}, 22528);
    const ::testing::AssertionResult bounded = testing::finiteAndBelow(out.left, kBound);
    EXPECT_TRUE(bounded);
    sound = bounded;
  }
}

}  // namespace
}  // namespace sablevox
