// Arpeggiator tests on the engine: the key searches, every walk over a few
// cycles, the chord shapes, the Gate mode's new-key rule, sustain, a change
// of ArpType, and hostile clocks. The tick is driven directly with a step of
// exactly one tick (1000 samples at 32 kHz and 120 beats a minute), and what
// it played is read from the voices it started.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "host/parameters.h"
#include "notes/arp_key_search.h"
#include "notes/arp_tables.h"
#include "notes/notes_support.h"

namespace sablevox::testing {
namespace {

constexpr float kRate = 32000.0f;
constexpr double kTempo = 120.0;
constexpr int kStepSamples = 1000;  // kRate * 60 / kTempo / 16
constexpr int kEveryStep = 3;       // "||||||||||||||||": note on even steps, off on odd

using Notes = std::vector<int>;

class ArpeggiatorTest : public NotesTest {
 protected:
  void SetUp() override {
    NotesTest::SetUp();
    engine->activeVoices = kMaxVoices;
    engine->arpActive = true;
  }

  // Switches the mode and lets one tick take the change, which ends every
  // note and empties the tables: the next key starts a fresh phrase.
  void use(const char* typeName, int rhythmIndex = kEveryStep) {
    type = findChoice(kArpType, typeName);
    ASSERT_GE(type, 0) << typeName;
    rhythm = rhythmIndex;
    tick();
  }
  void press(int note, int velocity = 100) { engine->arpNoteOn(note, velocity, true); }
  void release(int note) { engine->arpNoteOff(note, true); }

  // One tick; returns the notes it started, low to high. Afterwards every
  // voice counts as seen, and released voices go free as after a short release.
  std::vector<int> tick(int samples = kStepSamples) {
    engine->arpTick(type, rhythm, true, tempo, kRate, samples);
    std::vector<int> started;
    for (Voice& voice : engine->voices) {
      if (voice.ampState == kEnvAttack && voice.tickCount == 0) started.push_back(voice.note);
      voice.tickCount = 1;
      if (voice.gate == 0) voice.ampState = kEnvIdle;
    }
    std::sort(started.begin(), started.end());
    return started;
  }

  // Ticks `count` steps; returns how many notes they started.
  int skip(int count) {
    int started = 0;
    for (int i = 0; i < count; ++i) started += static_cast<int>(tick().size());
    return started;
  }

  std::vector<int> gatedNotes() const {
    std::vector<int> notes;
    for (const Voice& voice : engine->voices) {
      if (voice.gate != 0) notes.push_back(voice.note);
    }
    std::sort(notes.begin(), notes.end());
    return notes;
  }

  // With kEveryStep: the single notes of the next `count` note steps, in
  // `columns` the octave column each was played at, and their velocities in
  // `velocities`; every off step between them must end it and start nothing.
  std::vector<int> walk(int count, std::vector<int>* columns = nullptr) {
    std::vector<int> played;
    for (int i = 0; i < count; ++i) {
      const std::vector<int> notes = tick();
      EXPECT_EQ(notes.size(), 1u) << "note step " << i;
      played.push_back(notes.empty() ? -1 : notes[0]);
      if (columns != nullptr) columns->push_back(engine->arpOctaveStep);
      for (const Voice& voice : engine->voices) {
        if (voice.gate != 0) velocities.push_back(voice.velocity);
      }
      EXPECT_TRUE(tick().empty() && gatedNotes().empty()) << "off step after " << i;
    }
    return played;
  }

  std::vector<int> velocities;  // of the notes walk() played
  int type = 0;
  int rhythm = kEveryStep;
  double tempo = kTempo;
};

TEST(ArpKeySearch, EdgesOfTheFourSearches) {
  bool keys[kKeys] = {};
  EXPECT_EQ(arpHighest(keys), -1);
  EXPECT_EQ(arpAbove(keys, -1), -1);
  keys[0] = true;  // seen by highest and above, never by lowest and below
  EXPECT_EQ(arpHighest(keys), 0);
  EXPECT_EQ(arpLowest(keys), -1);
  EXPECT_EQ(arpAbove(keys, -1), 0);
  EXPECT_EQ(arpBelow(keys, 5), -1);

  keys[5] = keys[64] = keys[127] = true;
  EXPECT_EQ(arpHighest(keys), 127);
  EXPECT_EQ(arpLowest(keys), 5);
  EXPECT_EQ(arpAbove(keys, 63), 64);
  EXPECT_EQ(arpAbove(keys, 127), -1);
  EXPECT_EQ(arpBelow(keys, 64), 5);
  // Out-of-range starting points are searched from the table's ends.
  EXPECT_EQ(arpAbove(keys, INT_MIN), 0);
  EXPECT_EQ(arpBelow(keys, INT_MAX), 127);
  EXPECT_EQ(arpAbove(keys, INT_MAX), -1);
  EXPECT_EQ(arpBelow(keys, INT_MIN), -1);
}

// The rhythm rows and the ArpRhyt names the editor shows were typed apart:
// each name character stands for two steps and is "|" for a note step.
TEST(ArpTables, RhythmRowsMatchTheirNames) {
  for (int r = 0; r < kArpRhythms; ++r) {
    const std::string name = parameterInfo(kArpRhyt).choices[r];
    ASSERT_EQ(name.size(), 16u);
    for (int i = 0; i < 16; ++i) {
      EXPECT_EQ(name[i] == '|', kArpRhythmRows[r][2 * i] == kArpNoteStep) << r << " " << i;
      EXPECT_NE(kArpRhythmRows[r][2 * i + 1], kArpNoteStep) << r << " " << i;
    }
    EXPECT_EQ(kArpRhythmRows[r][0], kArpNoteStep) << "a phrase starts with a note: " << r;
  }
}

// Every walk over a few cycles from a fresh phrase: the keys in the order
// pressed, the notes played and, where given, the octave column of each.
TEST_F(ArpeggiatorTest, WalksTurnWrapAndAdvanceTheOctaveColumn) {
  const struct {
    const char* type;
    Notes keys;
    Notes notes;
    Notes columns;  // empty: not checked
  } walks[] = {
      // The lowest key comes after the highest; every note takes the first
      // key's velocity (checked below).
      {"Up", {64, 60}, {60, 64, 60, 64, 60}, {0, 0, 1, 1, 2}},
      {"Up oct", {60, 64}, {60, 64, 72, 76, 60, 64}, {}},
      {"Up 3oct", {60}, {48, 60, 72, 84, 48}, {}},                            // row -1 0 1 2
      {"Down 3oct", {60, 64}, {88, 84, 76, 72, 64, 60, 52, 48, 88, 84}, {}},  // row 2 1 0 -1
      // Altup wraps at the bottom turn, Altdown at the top; one key turns on the spot.
      {"Altup", {67, 60, 64}, {60, 64, 67, 64, 60, 64, 67, 64, 60}, {11, 0, 0, 0, 0, 1, 1, 1, 1}},
      {"Altdown", {67, 60, 64}, {67, 64, 60, 64, 67, 64, 60, 64, 67}, {11, 0, 0, 0, 0, 1, 1, 1, 1}},
      {"Altup", {60}, {60, 60, 60}, {}},
      // Pop comes back to the lowest key between climbing others (its first
      // note still at column 11); Pop2's others fall.
      {"Pop", {60, 64, 67}, {60, 64, 60, 67, 60, 64, 60, 67, 60}, {11, 0, 0, 0, 0, 1, 1, 1, 1}},
      {"Pop2", {60, 64, 67}, {67, 60, 64, 60, 67, 60, 64, 60, 67}, {0, 0, 0, 0, 1, 1, 1, 1, 2}},
  };
  for (const auto& w : walks) {
    use(w.type);
    int velocity = 100;
    for (int key : w.keys) press(key, velocity), velocity = 30;
    Notes columns;
    EXPECT_EQ(walk(static_cast<int>(w.notes.size()), &columns), w.notes) << w.type;
    EXPECT_EQ(columns, w.columns.empty() ? columns : w.columns) << w.type;
    EXPECT_EQ(velocities, std::vector<int>(w.notes.size(), 100)) << w.type;
    velocities.clear();
  }
}

TEST_F(ArpeggiatorTest, ChordShapesFollowTheLowestKey) {
  use("1Finger Chord", 1);  // Gate over L, T, L+7; "|...|...|...|..."
  press(60);
  EXPECT_EQ(tick(), (Notes{60, 64, 67}));
  EXPECT_EQ(skip(3), 0);
  EXPECT_EQ(gatedNotes(), (Notes{60, 64, 67}));
  EXPECT_TRUE(tick().empty());  // step 4, an off step
  EXPECT_TRUE(gatedNotes().empty());
  EXPECT_EQ(skip(3), 0);
  EXPECT_EQ(tick(), (Notes{60, 64, 67}));  // step 8: chopped again while the key is held

  // A new key replaces the chord at once; D takes a minor third.
  press(62);
  EXPECT_FALSE(engine->arpKeys[60]);
  EXPECT_EQ(skip(7), 0);
  EXPECT_EQ(tick(), (Notes{62, 65, 69}));
  // Releasing it leaves its chord while another key is held; the last
  // key up empties the table.
  release(62);
  EXPECT_EQ(skip(7), 0);
  EXPECT_EQ(tick(), (Notes{62, 65, 69}));
  release(60);
  EXPECT_EQ(skip(32), 0);

  use("1Finger A");  // Altup over nine notes, an octave down
  press(60);
  EXPECT_EQ(walk(10), (Notes{48, 52, 55, 60, 64, 67, 72, 76, 79, 76}));

  use("1Finger E");  // keys above 127 are left out of the chord
  press(122);
  tick();
  std::vector<int> keys;
  for (int k = 0; k < kKeys; ++k) {
    if (engine->arpKeys[k]) keys.push_back(k);
  }
  EXPECT_EQ(keys, (Notes{122, 125}));
}

TEST_F(ArpeggiatorTest, GatePlaysNewKeysAtTheFirstStepAndChopsAllLater) {
  use("Gate");  // note steps 0, 2, 4..., off steps between
  press(60);
  EXPECT_EQ(tick(250), (Notes{60}));
  EXPECT_TRUE(tick(250).empty());  // step 0 acts once
  press(64);
  EXPECT_EQ(tick(250), (Notes{64}));      // still step 0: only the new key
  for (int i = 0; i < 5; ++i) tick(250);  // the rest of step 0, then step 1: off
  EXPECT_TRUE(gatedNotes().empty());
  EXPECT_EQ(tick(250), (Notes{60, 64}));  // step 2: the whole chord
  press(67);
  EXPECT_EQ(tick(250), (Notes{60, 64, 67}));  // a new key retriggers all once the gate is open
  EXPECT_TRUE(tick(250).empty());
}

TEST_F(ArpeggiatorTest, EachStepActsOnceAndTheClockStandsStillWhileOff) {
  use("Up");
  press(60);
  // Ten ticks a step: one note per note step, no more.
  int notes = 0;
  for (int i = 0; i < 80; ++i) notes += static_cast<int>(tick(100).size());
  EXPECT_EQ(notes, 4);

  const int position = engine->arpPosition;
  engine->arpTick(type, rhythm, false, kTempo, kRate, 100);
  EXPECT_EQ(engine->arpPosition, position);
}

TEST_F(ArpeggiatorTest, AChangeOfArpTypeEndsAllNotesAndForgetsTheKeys) {
  use("Up", 11);  // "|...............": a note held for 8 steps
  press(60);
  press(64);
  EXPECT_EQ(tick(), (Notes{60}));
  EXPECT_EQ(gatedNotes(), (Notes{60}));

  type = findChoice(kArpType, "Down");
  EXPECT_TRUE(tick().empty());
  EXPECT_TRUE(gatedNotes().empty());
  EXPECT_EQ(std::count(engine->keyDown, engine->keyDown + kKeys, true), 0);
  EXPECT_EQ(std::count(engine->arpKeys, engine->arpKeys + kKeys, true), 0);
  EXPECT_EQ(std::count(engine->arpHeldKeys, engine->arpHeldKeys + kKeys, true), 0);

  // Switching the arpeggiator off ends the notes as well.
  press(67);
  EXPECT_EQ(tick(), (Notes{67}));
  engine->arpTick(0, rhythm, false, kTempo, kRate, kStepSamples);
  EXPECT_TRUE(gatedNotes().empty());
  EXPECT_EQ(engine->arpLastType, 0);
}

TEST_F(ArpeggiatorTest, HostileClocksStayOnStepZeroAndNeverOverflow) {
  use("Up");
  press(60);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  const float fnan = std::numeric_limits<float>::quiet_NaN();
  const struct {
    double tempo;
    float rate;
  } clocks[] = {{nan, kRate},  {inf, kRate},   {-inf, kRate}, {-120.0, kRate},
                {120.0, 0.0f}, {120.0, -1.0f}, {120.0, fnan}, {0.0, kRate}};
  for (const auto& clock : clocks) {
    for (int i = 0; i < 3; ++i) {
      engine->arpTick(type, rhythm, true, clock.tempo, clock.rate, kStepSamples);
      EXPECT_EQ(engine->arpLastStep, 0) << clock.tempo << " " << clock.rate;
    }
  }
  engine->arpTick(type, rhythm, true, 1e300, kRate, kStepSamples);  // beyond a float
  EXPECT_GE(engine->arpLastStep, 0);
  EXPECT_LT(engine->arpLastStep, kArpSteps);
  engine->arpTick(type, rhythm, true, kTempo, kRate, -5000);  // a negative tick doesn't count back
  EXPECT_GE(engine->arpPosition, 0);
  engine->arpTick(1000, 1000, true, kTempo, kRate, kStepSamples);  // indices are clamped
  engine->arpTick(-5, -5, true, kTempo, kRate, kStepSamples);
  engine->arpPosition = INT_MAX - 10;
  engine->arpTick(type, rhythm, true, kTempo, kRate, kStepSamples);
  EXPECT_EQ(engine->arpPosition, kStepSamples);
}

}  // namespace
}  // namespace sablevox::testing
