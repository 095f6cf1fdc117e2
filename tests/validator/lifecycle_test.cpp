// What a plug-in validator drives first: loading and closing over and over,
// every sample rate a host may run, every block size up to the largest, both
// process forms, and suspend/resume with keys down.
#include <gtest/gtest.h>

#include <vector>

#include "validator/validator_support.h"

namespace sablevox::testing {
namespace {

using host::TimedMidi;

constexpr double kRates[] = {8000,  11025, 12000, 16000,  22050,  32000,  44100, 47999,
                             48000, 88200, 96000, 176400, 192000, 352800, 384000};

// Renders `frames` of a held chord from a fresh plain-patch instance, in
// blocks whose lengths `nextBlock` chooses; the host is told each length.
template <typename NextBlock>
StereoRender renderInBlocks(PluginRig& rig, int64_t frames, NextBlock nextBlock) {
  const std::vector<TimedMidi> chord = {noteOn(0, 48), noteOn(0, 55), noteOn(0, 64)};
  StereoRender out;
  out.left.resize(static_cast<size_t>(frames));
  out.right.resize(static_cast<size_t>(frames));
  int64_t done = 0;
  bool sent = false;
  while (done < frames) {
    const auto length = static_cast<VstInt32>(std::min<int64_t>(nextBlock(), frames - done));
    rig.plugin().setBlockSize(length);
    if (!sent) {
      std::vector<host::MidiMessage> midi;
      for (const auto& e : chord) midi.push_back(e.message);
      rig.plugin().sendMidi(midi);
      sent = true;
    }
    rig.plugin().processReplacing(&out.left[static_cast<size_t>(done)],
                                  &out.right[static_cast<size_t>(done)], length);
    done += length;
  }
  return out;
}

TEST(ValidatorLifecycle, OpensAndClosesAHundredTimesWithSoundEachTime) {
  IsolatedSettings settings;
  std::vector<float> left, right;
  // 100 in Release; a sanitizer build's load costs a quarter second of CPU.
  for (int i = 0; i < scaled(100); ++i) {
    Instance instance;
    ASSERT_TRUE(instance.start(44100.0, 256));
    instance.chord({60}, true);
    ASSERT_TRUE(instance.block(left, right, 256)) << "round " << i;
    instance.plugin->suspend();
    instance.plugin->close();
  }
  // Loaded and dropped without ever being opened or resumed, as scanners do.
  for (int i = 0; i < scaled(10); ++i) {
    Instance instance;
    std::string error;
    instance.plugin = host::Plugin::load(SABLEVOX_PLUGIN_PATH, &error, instance.host);
    ASSERT_NE(instance.plugin, nullptr) << error;
  }
}

TEST(ValidatorLifecycle, EverySampleRateSoundsAndStaysFinite) {
  for (double rate : kRates) {
    PluginRig rig;
    ASSERT_TRUE(rig.start(rate));
    const auto out = rig.render({noteOn(0, 57), noteOn(0, 69)}, static_cast<int64_t>(rate / 5));
    ASSERT_TRUE(allFinite(out.left) && allFinite(out.right)) << rate;
    EXPECT_GT(peak(out.left), 0.01f) << "silent at " << rate << " Hz";
    EXPECT_LT(peak(out.left), 1000.0f) << rate;
  }
}

TEST(ValidatorLifecycle, SampleRateChangesBetweenBlocksWithoutASuspend) {
  PluginRig rig;
  ASSERT_TRUE(rig.start(44100.0, [](PluginRig& r) { r.choose(kEffType, kEffDelRevA); }));
  std::vector<host::MidiMessage> chord = {host::MidiMessage::noteOn(0, 0, 48, 100),
                                          host::MidiMessage::noteOn(0, 0, 67, 100)};
  rig.plugin().sendMidi(chord);
  std::vector<float> left(4096), right(4096);
  for (int round = 0; round < scaled(6); ++round) {
    for (double rate : kRates) {
      rig.host().setSampleRate(rate);
      rig.plugin().setSampleRate(rate);
      const auto frames = static_cast<VstInt32>(rate / 100);
      rig.plugin().processReplacing(left.data(), right.data(), frames);
      const std::span<const float> l(left.data(), static_cast<size_t>(frames));
      ASSERT_TRUE(allFinite(l)) << rate;
      ASSERT_LT(peak(l), 1000.0f) << rate;
    }
  }
}

// The control ticks do not depend on how the host cuts the stream: a plain
// patch sounds the same, sample for sample, in any block sizes, fixed or
// changing from block to block.
TEST(ValidatorLifecycle, BlockSizesFromOneToTheLargestGiveTheSameSound) {
  const int64_t frames = kSanitized ? 70000 : 140000;
  PluginRig reference;
  ASSERT_TRUE(reference.start(44100.0));
  const auto expected = renderInBlocks(reference, frames, [] { return 512; });
  ASSERT_GT(peak(expected.left), 0.01f);
  for (int size : {1, 7, 109, 110, 111, 1024, 4097, 32768, 65536}) {
    if (kSanitized && size == 1) continue;  // 140000 calls: too slow there
    PluginRig rig;
    ASSERT_TRUE(rig.start(44100.0));
    const auto out = renderInBlocks(rig, frames, [size] { return size; });
    ASSERT_EQ(out.left, expected.left) << "block size " << size;
    ASSERT_EQ(out.right, expected.right) << "block size " << size;
  }
  std::mt19937 random(11);
  PluginRig changing;
  ASSERT_TRUE(changing.start(44100.0));
  const auto out = renderInBlocks(changing, frames, [&] {
    const int choice = static_cast<int>(random() % 4);
    return choice == 0 ? 1 + static_cast<int>(random() % 16)
                       : 1 + static_cast<int>(random() % 8192);
  });
  EXPECT_EQ(out.left, expected.left);
  EXPECT_EQ(out.right, expected.right);
}

// Blocks longer than the reverb's work buffers, with every effect, are
// served whole and stay finite.
TEST(ValidatorLifecycle, TheLargestBlocksWithEveryEffect) {
  PluginRig rig;
  ASSERT_TRUE(rig.start(48000.0));
  std::vector<float> left(65536), right(65536);
  for (int type = kEffOff; type < kEffSteps; type += kSanitized ? 3 : 1) {
    rig.choose(kEffType, type);
    rig.plugin().sendMidi(std::vector{host::MidiMessage::noteOn(0, 0, 60 + type, 110)});
    for (int frames : {65536, 32769, 1}) {
      rig.plugin().processReplacing(left.data(), right.data(), frames);
      ASSERT_TRUE(allFinite({left.data(), static_cast<size_t>(frames)})) << type << " " << frames;
    }
  }
}

TEST(ValidatorLifecycle, AccumulatingProcessAddsExactlyTheReplacingBlock) {
  PluginRig replacing, accumulating;
  const auto patch = [](PluginRig& r) { r.choose(kEffType, kEffChorus); };
  ASSERT_TRUE(replacing.start(44100.0, patch));
  ASSERT_TRUE(accumulating.start(44100.0, patch));
  const std::vector<host::MidiMessage> chord = {host::MidiMessage::noteOn(5, 0, 52, 90),
                                                host::MidiMessage::noteOn(300, 0, 59, 90)};
  replacing.plugin().sendMidi(chord);
  accumulating.plugin().sendMidi(chord);
  std::mt19937 random(3);
  std::vector<float> l(1000), r(1000), dryL(1000), dryR(1000);
  for (int block = 0; block < 40; ++block) {
    const auto frames = static_cast<VstInt32>(1 + random() % 1000);
    for (VstInt32 i = 0; i < frames; ++i) {
      dryL[i] = l[i] = static_cast<float>(random() % 2001) / 1000.0f - 1.0f;
      dryR[i] = r[i] = static_cast<float>(random() % 2001) / 1000.0f - 1.0f;
    }
    ASSERT_TRUE(accumulating.plugin().process(l.data(), r.data(), frames));
    std::vector<float> wetL(1000), wetR(1000);
    replacing.plugin().processReplacing(wetL.data(), wetR.data(), frames);
    for (VstInt32 i = 0; i < frames; ++i) {
      ASSERT_EQ(l[i], dryL[i] + wetL[i]) << "block " << block << " sample " << i;
      ASSERT_EQ(r[i], dryR[i] + wetR[i]) << "block " << block << " sample " << i;
    }
  }
}

TEST(ValidatorLifecycle, SuspendEndsHeldNotesAndResumeTakesNewOnes) {
  PluginRig rig;
  ASSERT_TRUE(rig.start(44100.0, [](PluginRig& r) { r.choose(kEffType, kEffReverbA); }));
  std::vector<float> left(2048), right(2048);
  for (int round = 0; round < 5; ++round) {
    rig.plugin().sendMidi(std::vector{host::MidiMessage::noteOn(0, 0, 60, 100),
                                      host::MidiMessage::noteOn(0, 0, 64, 100)});
    rig.plugin().processReplacing(left.data(), right.data(), 2048);
    const float sounding = peak(left);
    ASSERT_GT(sounding, 0.01f) << "round " << round;
    rig.plugin().suspend();
    rig.plugin().resume();
    // Keys still down at the host, but the voices and the reverb tail are
    // gone; only the equaliser, which a suspend leaves alone, rings out.
    for (int i = 0; i < 3; ++i) rig.plugin().processReplacing(left.data(), right.data(), 2048);
    ASSERT_LT(peak(left), sounding * 1e-4f) << "round " << round;
    ASSERT_TRUE(allFinite(left) && allFinite(right));
    // The host's note-offs for keys the plug-in already dropped change nothing.
    rig.plugin().sendMidi(
        std::vector{host::MidiMessage::noteOff(0, 0, 60), host::MidiMessage::noteOff(0, 0, 64)});
    rig.plugin().processReplacing(left.data(), right.data(), 2048);
    ASSERT_LT(peak(left), sounding * 1e-4f);
  }
}

}  // namespace
}  // namespace sablevox::testing
