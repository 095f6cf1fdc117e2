// The IQM tuning of a new note against the sounding ones: the octave spread
// table, the interval correction and its order, and noteOn's use of it.
#include "notes/interval_tuning.h"

#include <initializer_list>
#include <memory>
#include <utility>

#include "notes_support.h"

namespace sablevox {
namespace {

enum Iqm { kOff = 0, kLight = 1, kHeavy = 2, kPure = 3 };

// A few sounding voices; Voice records are large, so they live on the heap.
class Sounding {
 public:
  explicit Sounding(std::initializer_list<std::pair<int, float>> notes)
      : voices_(std::make_unique<Voice[]>(notes.size() + 1)),
        count_(static_cast<int>(notes.size())) {
    int v = 0;
    for (const auto& [note, ratio] : notes) {
      voices_[v].note = static_cast<int8_t>(note);
      voices_[v].tuneRatio = ratio;
      voices_[v].ampState = kEnvSustain;
      ++v;
    }
  }
  float ratioFor(int note, int iqm) const {
    return intervalTuneRatio(voices_.get(), count_, note, iqm);
  }
  Voice& operator[](int v) { return voices_[v]; }

 private:
  std::unique_ptr<Voice[]> voices_;
  int count_;
};

TEST(IntervalTuningTest, OctaveSpreadTakesARatioNoOctaveNeighbourCarries) {
  struct Row {
    std::initializer_list<float> found;
    float expected;
  };
  const Row table[] = {{{}, 1.0f},
                       {{1.0f}, 0.997f},
                       {{1.003f}, 1.0f},
                       {{0.997f}, 1.003f},
                       {{1.0f, 1.003f}, 0.997f},
                       {{1.0f, 0.997f}, 1.003f},
                       {{1.003f, 0.997f}, 1.0f},
                       {{1.0f, 1.003f, 0.997f}, 1.0f}};
  for (const Row& row : table) {
    // The neighbours sit one, two and three octaves away, above and below.
    const int offsets[] = {-12, 24, -36};
    std::initializer_list<float>::iterator ratio = row.found.begin();
    Sounding voices({{48 + offsets[0], row.found.size() > 0 ? ratio[0] : 1.0f},
                     {48 + offsets[1], row.found.size() > 1 ? ratio[1] : 1.0f},
                     {48 + offsets[2], row.found.size() > 2 ? ratio[2] : 1.0f}});
    for (size_t v = row.found.size(); v < 3; ++v) voices[static_cast<int>(v)].ampState = kEnvIdle;
    EXPECT_EQ(voices.ratioFor(48, kLight), row.expected) << row.found.size();
    EXPECT_EQ(voices.ratioFor(48, kHeavy), row.expected) << row.found.size();
    EXPECT_EQ(voices.ratioFor(48, kOff), 1.0f);
    EXPECT_EQ(voices.ratioFor(48, kPure), 1.0f);
  }

  // Not neighbours: the same note, other intervals, idle voices, ratios
  // that are none of the three.
  Sounding others({{48, 1.0f}, {55, 1.0f}, {72, 0.994f}, {36, 1.0f}});
  others[3].ampState = kEnvIdle;
  EXPECT_EQ(others.ratioFor(48, kLight), 1.0f);
}

TEST(IntervalTuningTest, ThirdsAndSixthsMoveTowardsJustIntonation) {
  Sounding c({{60, 1.0f}});
  // Major third and major sixth above: flattened by IQM degree.
  const float major[] = {1.0f, 0.997f, 0.994f, 0.991f};
  const float minor[] = {1.0f, 1.003f, 1.006f, 1.008f};
  for (int iqm = kOff; iqm <= kPure; ++iqm) {
    EXPECT_EQ(c.ratioFor(64, iqm), major[iqm]);
    EXPECT_EQ(c.ratioFor(69 + 12, iqm), major[iqm]);
    EXPECT_EQ(c.ratioFor(63, iqm), minor[iqm]);
    EXPECT_EQ(c.ratioFor(68, iqm), minor[iqm]);
    // Below the sounding note the interval is taken upward within the
    // octave: a major third below is a minor sixth above.
    EXPECT_EQ(c.ratioFor(56, iqm), minor[iqm]);
    EXPECT_EQ(c.ratioFor(67, iqm), 1.0f);  // a fifth is left alone
  }
  EXPECT_EQ(c.ratioFor(64, 4), 1.0f);  // an unknown setting skips the step
  EXPECT_EQ(c.ratioFor(64, -1), 1.0f);

  // The minor rule overrides the major one, and both the octave spread.
  Sounding chord({{60, 1.0f}, {61, 1.0f}});
  EXPECT_EQ(chord.ratioFor(64, kPure), 1.008f);
  Sounding octave({{52, 1.0f}, {60, 1.0f}});
  EXPECT_EQ(octave.ratioFor(64, kHeavy), 0.994f);
}

using NoteTuningTest = testing::NotesTest;

TEST_F(NoteTuningTest, NoteOnTunesByTheSettingAtEachNote) {
  engine->config->set(kIQM, kPure);
  engine->noteOn(60, 100);
  engine->noteOn(64, 100);  // a major third above a sounding note
  EXPECT_EQ(playing(64).tuneRatio, 0.991f);
  EXPECT_EQ(playing(60).tuneRatio, 1.0f);  // tuned once, at its start

  engine->config->set(kIQM, kOff);
  engine->noteOn(67, 100);
  engine->noteOn(63, 100);
  EXPECT_EQ(playing(63).tuneRatio, 1.0f);

  for (Voice& voice : engine->voices) voice.ampState = kEnvIdle;
  engine->config->set(kIQM, kLight);
  engine->noteOn(60, 100);
  engine->noteOn(72, 100);  // an octave above a note at 1.0
  EXPECT_EQ(playing(72).tuneRatio, 0.997f);
  engine->noteOn(84, 100);  // octaves of notes at 1.0 and 0.997
  EXPECT_EQ(playing(84).tuneRatio, 1.003f);
}

}  // namespace
}  // namespace sablevox
