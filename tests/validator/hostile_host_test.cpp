// What a careless or hostile host sends while notes play: any parameter
// value, any MIDI bytes at any deltaFrames, malformed event records, program
// changes and whole bank writes mid-note; and what a careful host relies on,
// total recall of a program through the plain calls.
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "validator/validator_support.h"

namespace sablevox::testing {
namespace {

using host::MidiMessage;

constexpr VstInt32 kFarDeltas[] = {INT_MIN, -65536, -1, 511, 512, 513, 65536, 1 << 24, INT_MAX};

TEST(ValidatorHostile, AnyParameterValueWhileNotesPlayGivesFiniteOutputAndText) {
  std::mt19937 random(21);
  Instance instance;
  ASSERT_TRUE(instance.start(48000.0, 512));
  std::vector<float> left, right;
  for (int block = 0; block < scaled(1500); ++block) {
    if (block % 50 == 0) instance.chord({36, 48, 60, 67, 76}, true);
    if (block % 50 == 40) instance.chord({36, 48, 60, 67, 76}, false);
    for (int k = 0; k < 4; ++k) {
      const int index = static_cast<int>(random() % 56) - 3;  // a few outside 0..49
      instance.plugin->setParameter(index, anyParameterValue(random));
      // The display text of a hostile value still fits the 8 + 1 bytes the
      // host library hands over (the sanitizer run sees any overrun).
      instance.plugin->paramDisplay(index);
    }
    ASSERT_TRUE(instance.block(left, right, 512)) << "block " << block;
  }
  // Every parameter at every hostile value at once, one after the other.
  for (float value : kHostileValues) {
    for (int i = 0; i < instance.plugin->numParams(); ++i) instance.plugin->setParameter(i, value);
    instance.chord({60, 64}, true);
    for (int b = 0; b < 4; ++b) ASSERT_TRUE(instance.block(left, right, 512)) << value;
  }
}

TEST(ValidatorHostile, RandomMidiBytesAndFarDeltaFrames) {
  std::mt19937 random(5);
  PluginRig rig;
  ASSERT_TRUE(rig.start(44100.0));
  host::Plugin& plugin = rig.plugin();
  std::vector<float> left, right;
  for (int block = 0; block < scaled(800); ++block) {
    std::vector<MidiMessage> midi;
    const int count =
        block % 100 == 0 ? 1000 : static_cast<int>(random() % 12);  // a flood now and then
    for (int k = 0; k < count; ++k) {
      const VstInt32 delta = random() % 3 == 0 ? kFarDeltas[random() % std::size(kFarDeltas)]
                                               : static_cast<VstInt32>(random() % 512);
      midi.push_back(MidiMessage::raw(
          delta, static_cast<unsigned char>(random()), static_cast<unsigned char>(random()),
          static_cast<unsigned char>(random()), static_cast<unsigned char>(random())));
    }
    plugin.sendMidi(midi);
    ASSERT_TRUE(renderFinite(plugin, left, right, 512)) << "block " << block;
  }
  // Controllers wrote into the programs; with a sounding patch set again,
  // the plug-in still plays a note, though events that never come due fill
  // its queue.
  rig.plainPatch();
  plugin.sendMidi(
      std::vector{MidiMessage::pitchBend(0, 0, 8192), MidiMessage::noteOn(0, 0, 60, 127)});
  float loudest = 0.0f;
  for (int b = 0; b < 20; ++b) {
    ASSERT_TRUE(renderFinite(plugin, left, right, 512));
    loudest = std::max(loudest, peak(left));
  }
  EXPECT_GT(loudest, 0.01f);
}

TEST(ValidatorHostile, MalformedEventRecordsAreIgnored) {
  Instance instance;
  ASSERT_TRUE(instance.start(44100.0, 256));
  std::vector<float> left, right;
  host::EventList events;
  std::mt19937 random(9);
  for (int block = 0; block < scaled(200); ++block) {
    events.clear();
    for (int k = 0; k < 8; ++k) {
      VstMidiEvent record{};
      record.type = static_cast<VstInt32>(random() % 8) - 1;  // MIDI, SysEx and unknown kinds
      record.byteSize = static_cast<VstInt32>(random() % 64) - 8;
      record.deltaFrames = kFarDeltas[random() % std::size(kFarDeltas)];
      for (auto& b : record.midiData) b = static_cast<char>(random());
      events.addRecord(record);
    }
    instance.plugin->sendEvents(events);
    ASSERT_TRUE(instance.block(left, right, 256)) << "block " << block;
  }
  // An empty list and a null pointer are answered, not crashed on.
  events.clear();
  instance.plugin->sendEvents(events);
  instance.plugin->dispatch(effProcessEvents, 0, 0, nullptr);
  ASSERT_TRUE(instance.block(left, right, 256));
}

TEST(ValidatorHostile, ProgramChangesAndBankWritesMidNote) {
  std::mt19937 random(17);
  Instance instance;
  ASSERT_TRUE(instance.start(44100.0, 384));
  std::vector<float> left, right;
  for (int block = 0; block < scaled(400); ++block) {
    if (block % 8 == 0) instance.chord({40 + block % 30, 64, 71}, true);
    switch (random() % 4) {
      case 0:
        instance.plugin->setProgram(static_cast<int>(random() % 128));
        break;
      case 1: {
        const VstIntPtr outside[] = {128, 1000, -1, INT_MIN, INT_MAX};
        instance.plugin->dispatch(effSetProgram, 0, outside[random() % 5]);
        break;
      }
      case 2:
        instance.plugin->sendMidi(std::vector{MidiMessage::programChange(
            static_cast<VstInt32>(random() % 384), 0, static_cast<int>(random() % 128))});
        break;
      default:
        break;
    }
    ASSERT_TRUE(instance.block(left, right, 384)) << "block " << block;
    ASSERT_LT(instance.plugin->program(), 128);
  }

  // A host restoring a bank without chunks: for each program, select it,
  // write its 50 values and its name, while a chord renders between programs.
  std::vector<std::vector<float>> bank(128, std::vector<float>(50));
  instance.chord({48, 55, 62}, true);
  for (int p = 0; p < 128; ++p) {
    instance.plugin->setProgram(p);
    for (int i = 0; i < 50; ++i) {
      bank[p][i] = static_cast<float>(random() % 1001) / 1000.0f;
      instance.plugin->setParameter(i, bank[p][i]);
    }
    instance.plugin->dispatch(effSetProgramName, 0, 0,
                              std::string("Bank " + std::to_string(p)).data());
    if (p % 4 == 0) {
      ASSERT_TRUE(instance.block(left, right, 384)) << "program " << p;
    }
  }
  for (int p = 0; p < 128; ++p) {
    instance.plugin->setProgram(p);
    ASSERT_EQ(instance.plugin->programName(), "Bank " + std::to_string(p));
    // Words 43 and 49 are unused: a program change leaves them in the record.
    for (int i = 0; i < 50; ++i) {
      if (i == kParam43 || i == kParam49) continue;
      ASSERT_EQ(instance.plugin->getParameter(i), bank[p][i]) << p << " " << i;
    }
  }
}

// A host saves a program as its values and name and restores it by
// setProgram, setParameter for all and setProgramName: the record and the
// sound come back exactly.
TEST(ValidatorHostile, TotalRecallOfAProgram) {
  PluginRig rig;
  ASSERT_TRUE(rig.start(44100.0, [](PluginRig& r) {
    r.plugin().setProgram(5);
    r.plainPatch();
    r.set(kCutoff, 0.3f);
    r.set(kReso, 0.6f);
    r.choose(kFiltType, 3);
    r.choose(kEffType, kEffDelayB);
    char name[] = "Recall me";
    r.plugin().dispatch(effSetProgramName, 0, 0, name);
  }));
  std::vector<float> saved(50);
  for (int i = 0; i < 50; ++i) saved[i] = rig.plugin().getParameter(i);
  const std::string savedName = rig.plugin().programName();
  const auto play = [&] {
    rig.plugin().setProgram(5);  // the reset at the next block clears voices and effects
    EXPECT_TRUE(rig.waitForWaves());
    rig.render({}, 44100);  // the equaliser settles on silence
    return rig.render({noteOn(0, 60), noteOff(20000, 60)}, 44100);
  };
  const auto before = play();
  ASSERT_GT(peak(before.left), 0.01f);

  // The song's other programs, then a scrambled program 5.
  std::mt19937 random(2);
  for (int p : {5, 9, 5}) {
    rig.plugin().setProgram(p);
    for (int i = 0; i < 50; ++i) rig.set(i, anyParameterValue(random));
    char junk[] = "scrambled";
    rig.plugin().dispatch(effSetProgramName, 0, 0, junk);
  }
  rig.plugin().setProgram(5);
  for (int i = 0; i < 50; ++i) rig.set(i, saved[i]);
  rig.plugin().dispatch(effSetProgramName, 0, 0, std::string(savedName).data());
  rig.plugin().setProgram(9);
  ASSERT_EQ(rig.plugin().programNameIndexed(5), savedName);
  rig.plugin().setProgram(5);
  for (int i = 0; i < 50; ++i) ASSERT_EQ(rig.plugin().getParameter(i), saved[i]) << i;
  const auto after = play();
  EXPECT_EQ(after.left, before.left);
  EXPECT_EQ(after.right, before.right);
}

}  // namespace
}  // namespace sablevox::testing
