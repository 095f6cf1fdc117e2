// The effect section as a host hears it: echo times at the host's tempo,
// echo polarity and cross-feed, reverb tails as long as the sections make
// them, the stereo effects against "off", sleeping through silence and
// waking at a note, clearing at a change of EffType, and every
// configuration finite and bounded under a loud driven chord at four rates.
#include <gtest/gtest.h>

#include <cmath>
#include <span>
#include <vector>

#include "plugin/plugin_fixture.h"

namespace sablevox {
namespace {

using testing::Match;
using testing::noteOff;
using testing::noteOn;
using testing::PluginRig;
using testing::StereoRender;

constexpr double kRate = 44100.0;
constexpr int64_t kBurst = 1000;     // samples of a burst note
constexpr int64_t kTemplate = 2048;  // a burst and its release, at the start of a render
// Largest sample-to-sample step of a stretch that holds nothing: a burst
// and its echoes step by tenths, the equaliser's DC remover settling after
// them by less than 1e-4.
constexpr float kNothing = 0.001f;
constexpr float kOneBeat = 1.0f;      // "Delaytime" 1.0
constexpr float kQuarterBeat = 0.0f;  // "Delaytime" 0

// The delay's length in samples at 44100 Hz, as the delay computes it.
int64_t delayLength(double tempo, float beats = 1.0f) {
  return static_cast<int64_t>(static_cast<float>(kRate) / static_cast<float>(tempo) * 60.0f *
                              beats);
}

float peakStep(std::span<const float> x) {
  float p = 0.0f;
  for (size_t i = 1; i < x.size(); ++i) p = std::max(p, std::fabs(x[i] - x[i - 1]));
  return p;
}

std::span<const float> slice(const std::vector<float>& x, int64_t from, int64_t length) {
  return std::span<const float>(x).subspan(static_cast<size_t>(from), static_cast<size_t>(length));
}

// A noise burst through one effect: white noise has one sharp correlation
// peak, so an echo's lag is found to the sample. Volume 0.8 gives a burst
// peak of about 1.3.
PluginRig::Patch burstThrough(int step, float par1, float par2) {
  return [=](PluginRig& r) {
    r.choose(kOsc1Wave, testing::kWaveNoise);
    r.set(kVolume, 0.8f);
    r.choose(kEffType, step);
    r.set(kEffPar1, par1);
    r.set(kEffPar2, par2);
  };
}

// A static LFO on Pan at full negative send puts the voice on the right only.
void rightOnly(PluginRig& r) {
  r.choose(kLFODest, testing::kLfoToPan);
  r.choose(kLFOType, testing::kLfoStatic);
  r.set(kLFOSend, 0.0f);
}

// A held sawtooth, panned so that left and right differ (gains 0.94 and
// 0.43): no random draw, so two instances render the same.
PluginRig::Patch pannedSawThrough(int step, float par1, float par2) {
  return [=](PluginRig& r) {
    r.set(kVolume, 0.5f);
    r.choose(kLFODest, testing::kLfoToPan);
    r.choose(kLFOType, testing::kLfoStatic);
    r.set(kLFOSend, 0.9f);
    r.choose(kEffType, step);
    r.set(kEffPar1, par1);
    r.set(kEffPar2, par2);
  };
}

class EffectsPluginTest : public ::testing::Test {
 protected:
  StereoRender burst(int64_t frames, const PluginRig::Patch& patch, double tempo = 120.0,
                     bool timeAvailable = true) {
    EXPECT_TRUE(rig.start(kRate, tempo, timeAvailable, patch));
    return rig.render({noteOn(0, 60), noteOff(kBurst, 60)}, frames);
  }
  StereoRender heldSaw(const PluginRig::Patch& patch) {
    EXPECT_TRUE(rig.start(kRate, patch));
    return rig.render({noteOn(0, 48), noteOn(0, 67)}, 8192);
  }

  PluginRig rig;
};

TEST_F(EffectsPluginTest, DelayAEchoesOneBeatLaterAtTheHostsTempo) {
  const struct {
    double hostTempo;
    bool timeAvailable;
    double heard;
  } cases[] = {{120.0, true, 120.0}, {100.0, true, 100.0}, {100.0, false, 120.0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.hostTempo << (c.timeAvailable ? "" : " not told"));
    const int64_t frames = 28672;
    const StereoRender out = burst(frames, burstThrough(testing::kEffDelayA, 1.0f, kOneBeat),
                                   c.hostTempo, c.timeAvailable);
    // Searched over the whole render after the burst: the echo is a damped
    // copy, so it matches well but not perfectly.
    const Match echo =
        testing::bestMatch(out.left, slice(out.left, 0, kTemplate), kTemplate, frames - kTemplate);
    const int64_t d = delayLength(c.heard);
    EXPECT_EQ(echo.lag, d);
    EXPECT_GT(echo.correlation, 0.6);
    const Match right =
        testing::bestMatch(out.right, slice(out.right, 0, kTemplate), d - 2000, d + 2000);
    EXPECT_EQ(right.lag, d);
  }
}

TEST_F(EffectsPluginTest, DelayBEchoesAlternateInPolarity) {
  // EffPar1 is "Feedback" here: 0.5 feeds each echo back at 0.55.
  const int64_t d = delayLength(120.0, 0.25f);
  const StereoRender out = burst(5 * d, burstThrough(testing::kEffDelayB, 0.5f, kQuarterBeat));
  double previous = -1.0;  // the first echo has the burst's polarity
  for (int k = 1; k <= 4; ++k) {
    SCOPED_TRACE(::testing::Message() << "echo " << k);
    // Each pass through the line's one-pole low-pass delays the best match
    // by up to two samples.
    const Match echo =
        testing::bestMatch(out.left, slice(out.left, 0, kTemplate), k * d - 8, k * d + 8);
    EXPECT_GE(echo.lag, k * d);
    EXPECT_LE(echo.lag, k * d + 2 * k);
    EXPECT_GT(std::fabs(echo.correlation), 0.2);
    EXPECT_LT(echo.correlation * previous, 0.0) << "same polarity as the echo before";
    previous = echo.correlation;
  }
}

TEST_F(EffectsPluginTest, DelayDSendsTheRightInputToTheLeftOutput) {
  const int64_t d = delayLength(120.0, 0.25f);
  auto patch = [&](int step) {
    return [=](PluginRig& r) {
      burstThrough(step, 0.5f, kQuarterBeat)(r);
      rightOnly(r);
    };
  };
  const StereoRender cross = burst(2 * d, patch(testing::kEffDelayD));
  ASSERT_GT(testing::peak(slice(cross.right, 0, kTemplate)), 0.5f);
  ASSERT_LT(peakStep(slice(cross.left, 0, kTemplate)), kNothing) << "the source is not right only";
  // One delay later the left output carries the right input itself, at the
  // "Dry/wet" of 0.5 that no step has changed; the right output has nothing
  // to return before two delays.
  const Match echo = testing::bestMatch(cross.left, slice(cross.right, 0, kTemplate), kTemplate,
                                        2 * d - kTemplate);
  EXPECT_EQ(echo.lag, d);
  EXPECT_GT(echo.correlation, 0.999);
  EXPECT_NEAR(testing::peak(slice(cross.left, d, kTemplate)),
              0.5f * testing::peak(slice(cross.right, 0, kTemplate)), 0.01f);
  EXPECT_LT(peakStep(slice(cross.right, kTemplate, 2 * d - kTemplate)), kNothing);

  // "Delay A" keeps the sides apart: nothing ever reaches the left.
  const StereoRender apart = burst(2 * d, patch(testing::kEffDelayA));
  EXPECT_GT(testing::peak(slice(apart.right, d, kTemplate)), 0.1f);
  EXPECT_LT(peakStep(apart.left), kNothing);
}

// Seconds for a fall of 60 dB, from a straight line fitted to the level in
// windows of 1024 samples (mean removed), from 10 dB below the loudest
// window to 80 dB below it.
double decayTime(const std::vector<float>& x) {
  constexpr size_t kWindow = 1024;
  std::vector<double> level;
  for (size_t i = 0; i + kWindow <= x.size(); i += kWindow) {
    double mean = 0.0;
    for (size_t k = 0; k < kWindow; ++k) mean += x[i + k];
    mean /= kWindow;
    double e = 1e-30;
    for (size_t k = 0; k < kWindow; ++k) e += (x[i + k] - mean) * (x[i + k] - mean);
    level.push_back(testing::decibels(e / kWindow));
  }
  size_t loudest = 0;
  for (size_t i = 0; i < level.size(); ++i) {
    if (level[i] > level[loudest]) loudest = i;
  }
  double sx = 0, sy = 0, sxx = 0, sxy = 0, n = 0;
  for (size_t i = loudest; i < level.size(); ++i) {
    const double fall = level[loudest] - level[i];
    if (fall < 10.0) continue;
    if (fall > 80.0) break;
    const double t = static_cast<double>(i * kWindow) / kRate;
    sx += t, sy += level[i], sxx += t * t, sxy += t * level[i], n += 1;
  }
  const double slope = (n * sxy - sx * sy) / (n * sxx - sx * sx);  // dB per second
  return -60.0 / slope;
}

TEST_F(EffectsPluginTest, ReverbTailsAreAsLongAsTheirSectionsMakeThem) {
  // The slowest section of the left side, in both modes, has the length
  // 50 * scale, scale = ("Size"^2 + 0.1) * 300 at 44100 Hz, and the loop
  // gain 0.75: each pass takes it 2.5 dB down. The tail should fall 60 dB
  // in about ln(1000) / -ln(0.75) passes. Faster modes above the lowest
  // make the measured fall up to 20 % quicker; eight equal sections in a
  // row ("RevHiEndC") build up before they fall, up to 30 % slower.
  for (int step : {testing::kEffReverbA, testing::kEffRevHiEndC}) {
    for (float size : {0.0f, 0.3f}) {
      SCOPED_TRACE(::testing::Message() << "step " << step << " Size " << size);
      const double scale = (size * size + 0.1) * 300.0;
      const double length = std::trunc(scale * 50.0);
      const double expected = std::log(1000.0) / -std::log(0.75) * length / kRate;
      const StereoRender out = burst(65536, burstThrough(step, 1.0f, size));
      const double measured = decayTime(out.left);
      EXPECT_GT(measured, 0.8 * expected) << measured << " s against " << expected;
      EXPECT_LT(measured, 1.3 * expected) << measured << " s against " << expected;
    }
  }
}

TEST_F(EffectsPluginTest, StereoEnhanceAtMixZeroPassesTheInput) {
  const StereoRender off = heldSaw(pannedSawThrough(testing::kEffOff, 0.0f, 0.5f));
  const StereoRender passed = heldSaw(pannedSawThrough(testing::kEffStereoEnhance, 0.0f, 0.5f));
  const StereoRender wide = heldSaw(pannedSawThrough(testing::kEffStereoEnhance, 1.0f, 0.5f));
  ASSERT_GT(testing::peak(off.left), 0.1f);
  float largest = 0.0f, widened = 0.0f;
  for (size_t i = 0; i < off.left.size(); ++i) {
    largest = std::max({largest, std::fabs(passed.left[i] - off.left[i]),
                        std::fabs(passed.right[i] - off.right[i])});
    widened = std::max(
        {widened, std::fabs(wide.left[i] - off.left[i]), std::fabs(wide.right[i] - off.right[i])});
  }
  // Rebuilding l and r from sum and difference rounds by an ulp; the
  // equaliser's float recursion behind it makes that up to about 5e-5 (its
  // rounding goes its own way once the inputs differ at all), far below
  // what any mix of the all-pass would add.
  EXPECT_LT(largest, 2e-4f * testing::peak(off.left));
  EXPECT_GT(widened, 0.05f) << "at mix 1 the picture changes";
}

TEST_F(EffectsPluginTest, SurroundAtFullMixAndCentrePanGivesTheSumOnBothSides) {
  const StereoRender off = heldSaw(pannedSawThrough(testing::kEffOff, 1.0f, 0.5f));
  const StereoRender sum = heldSaw(pannedSawThrough(testing::kEffSurround, 1.0f, 0.5f));
  ASSERT_GT(testing::peak(off.left), 0.1f);
  float largest = 0.0f;
  for (size_t i = 0; i < off.left.size(); ++i) {
    const float expected = off.left[i] + off.right[i];
    largest =
        std::max({largest, std::fabs(sum.left[i] - expected), std::fabs(sum.right[i] - expected)});
  }
  // The equaliser's offset comes out once from the sum, twice from the two
  // sides added here, and its float recursion rounds its own way for a
  // different input: differences of about 1e-4 at a sum peak of about 2.3.
  float sumPeak = 0.0f;
  for (size_t i = 0; i < off.left.size(); ++i) {
    sumPeak = std::max(sumPeak, std::fabs(off.left[i] + off.right[i]));
  }
  EXPECT_LT(largest, 2e-4f * sumPeak);
}

TEST_F(EffectsPluginTest, ASecondOfSilencePutsTheEffectsToSleepAndANoteWakesThem) {
  // One beat at 40 BPM is 1.5 s: the burst's echo is due after the effects
  // have gone to sleep, so it stays in the line until a note wakes them, and
  // then comes out as late as the line stood still.
  const double tempo = 40.0;
  const int64_t d = delayLength(tempo);
  const int64_t wake = 172 * PluginRig::kBlock;  // about 2 s, at a block start
  EXPECT_TRUE(rig.start(kRate, tempo, true, burstThrough(testing::kEffDelayA, 1.0f, kOneBeat)));
  const StereoRender out =
      rig.render({noteOn(0, 60), noteOff(kBurst, 60), noteOn(wake, 60), noteOff(wake + kBurst, 60)},
                 wake + d + kTemplate);

  // The equaliser counts the samples of both channels that lie within
  // 0.0005 of its offset; the effects stop after the first block that ends
  // with more than 2 * 44100 counts, a second of silence on both sides.
  int64_t lastLoud = -1;
  for (int64_t i = 0; i < d; ++i) {
    const auto loud = [&](const std::vector<float>& x) {
      return std::fabs(x[static_cast<size_t>(i)] - 1e-05f) > 0.0005f;
    };
    if (loud(out.left) || loud(out.right)) lastLoud = i;
  }
  ASSERT_GE(lastLoud, 0);
  int64_t stop = PluginRig::kBlock;
  while (2 * (stop - 1 - lastLoud) <= 2 * static_cast<int64_t>(kRate)) stop += PluginRig::kBlock;
  ASSERT_LT(stop, d);

  EXPECT_LT(peakStep(slice(out.left, d - 512, kTemplate)), kNothing) << "echo while asleep";
  const int64_t resumed = wake + d - stop;
  const Match echo =
      testing::bestMatch(out.left, slice(out.left, 0, kTemplate), resumed - 256, resumed + 256);
  EXPECT_EQ(echo.lag, resumed);
  EXPECT_GT(echo.correlation, 0.6);
}

TEST_F(EffectsPluginTest, ChangingEffTypeClearsTheLines) {
  // A pending echo of "Delay A" and a reverb tail, with the type switched
  // away for one block and back while they wait, to a step of the same
  // effect and to one of another, against the same without a switch. The
  // reverb's loop filters are not cleared and leave a few faint clicks as
  // they run out, 20 dB and more below the tail; the tail itself is gone.
  const int64_t d = delayLength(120.0);
  const int64_t switchAt = 20 * PluginRig::kBlock;
  const struct {
    int step;
    std::vector<int> switches;
    int64_t from, length;  // where the echo or the tail would be
  } cases[] = {
      {testing::kEffDelayA, {testing::kEffDelayB, testing::kEffChorus}, d, kTemplate},
      {testing::kEffReverbA, {testing::kEffRevHiEndC, testing::kEffDelayA}, switchAt + 1024, 4096}};
  for (const auto& c : cases) {
    const float par2 = c.step == testing::kEffDelayA ? kOneBeat : 0.5f;
    auto stepEnergy = [&](int to) {
      SCOPED_TRACE(::testing::Message() << "step " << c.step << " to " << to);
      EXPECT_TRUE(rig.start(kRate, burstThrough(c.step, 1.0f, par2)));
      const StereoRender out = rig.render({noteOn(0, 60), noteOff(kBurst, 60)}, c.from + c.length,
                                          [&](int64_t start, VstInt32) {
                                            if (to >= 0 && start == switchAt)
                                              rig.choose(kEffType, to);
                                            if (start == switchAt + PluginRig::kBlock)
                                              rig.choose(kEffType, c.step);
                                            return true;
                                          });
      double e = 0.0;
      for (int64_t i = c.from + 1; i < c.from + c.length; ++i) {
        const double step = out.left[static_cast<size_t>(i)] - out.left[static_cast<size_t>(i - 1)];
        e += step * step;
      }
      return e;
    };
    const double kept = stepEnergy(-1);
    ASSERT_GT(kept, 1.0) << "nothing to clear";
    for (int to : c.switches) {
      EXPECT_LT(testing::decibels(stepEnergy(to) / kept), -30.0) << "to " << to;
    }
  }
}

// With Drive 1 a voice's output is limited to about 1.9; four keys of
// noise and sawtooth and the equaliser's low shelf give peaks of about 15
// with "off", and the loudest configurations (an echo on top of the input,
// the surround sum) about 34. 200 leaves room for them and catches a
// feedback path that runs away.
constexpr float kLoudBound = 200.0f;

TEST_F(EffectsPluginTest, EveryConfigurationStaysFiniteAndBoundedUnderALoudChord) {
  // Noise and a sawtooth at full level, Drive 1, Volume 1, full velocity;
  // EffPar1 at 1 (full mix or feedback), EffPar2 stepping through its range
  // block by block, so delay times and reverb sizes jump while lines are
  // full.
  for (double rate : {22050.0, 44100.0, 96000.0, 192000.0}) {
    SCOPED_TRACE(::testing::Message() << rate << " Hz");
    ASSERT_TRUE(rig.start(rate, [&](PluginRig& r) {
      r.choose(kOsc1Wave, testing::kWaveNoise);
      r.choose(kOsc2Wave, testing::kWaveSaw);
      r.set(kOsc2Vol, 1.0f);
      r.set(kDrive, 1.0f);
      r.set(kVolume, 1.0f);
      r.set(kEffPar1, 1.0f);
    }));
    const std::vector<host::TimedMidi> chord = {noteOn(0, 36), noteOn(0, 48), noteOn(0, 55),
                                                noteOn(0, 64)};
    // 0.3 s a step: several passes through the shortest delay lines.
    const auto frames = std::max<int64_t>(16384, static_cast<int64_t>(rate * 0.3));
    for (int step = 0; step < testing::kEffSteps; ++step) {
      SCOPED_TRACE(::testing::Message() << "step " << step);
      rig.choose(kEffType, step);
      const StereoRender out = rig.render(chord, frames, [&](int64_t start, VstInt32) {
        rig.set(kEffPar2, static_cast<float>(start / PluginRig::kBlock % 9) / 8.0f);
        return true;
      });
      EXPECT_TRUE(testing::finiteAndBelow(out.left, kLoudBound));
      EXPECT_TRUE(testing::finiteAndBelow(out.right, kLoudBound));
      rig.render({noteOff(0, 36), noteOff(0, 48), noteOff(0, 55), noteOff(0, 64)}, 512);
    }
  }
}

}  // namespace
}  // namespace sablevox
