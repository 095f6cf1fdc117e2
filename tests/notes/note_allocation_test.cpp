// Note start and release on the voice records: folding, the free voice's
// fresh start, voice 0 when every voice is in its attack, and "2 keys"
// legato. Stealing the quietest voice (which keeps its sound), the mono
// voice and its glide, and the release pop are pinned by the regression
// renders (a fault in any of them changes several checksums).
#include <cstring>
#include <memory>

#include "filter/filter_design.h"
#include "host/numeric.h"
#include "notes_support.h"

namespace sablevox {
namespace {

using testing::NotesTest;

class NoteAllocationTest : public NotesTest {
 protected:
  // A voice that has been sounding for a while: every field a start may or
  // may not reset holds something recognisable.
  void makeSounding(int v, int note, uint8_t state, float level) {
    Voice& voice = engine->voices[v];
    voice.note = static_cast<int8_t>(note);
    voice.gate = 1;
    voice.velocity = 33;
    voice.ampState = state;
    voice.filtState = state;
    voice.ampLevel = voice.filtLevel = voice.level = voice.levelTarget = level;
    voice.levelStart = voice.levelStep = level;
    voice.tickCount = 500;
    for (int m = 0; m < 4; ++m) {
      for (int o = 0; o < 2; ++o) {
        voice.oscPhase[m][o] = 1000u + static_cast<uint32_t>(v * 8 + m * 2 + o);
        voice.oscFrame[m][o] = 77 + m;
      }
    }
    voice.filterLeft.mode = voice.filterRight.mode = 1.0f;
    for (float& h : voice.filterLeft.hist1) h = 0.25f;
    for (float& h : voice.filterRight.hist2) h = -0.5f;
    voice.outputState[0] = voice.outputState[1] = 0.125f;
    voice.panLeft = voice.panRight = 0.3f;
    voice.voiceLfo[0] = voice.voiceLfo[1] = voice.voiceLfo[2] = 0.7f;
    voice.tuneRatio = 1.003f;
  }

  void setGlide(int mode) { engine->setParameter(kGlMode, mode == 0 ? 0.0f : choiceValue(mode)); }
};

TEST_F(NoteAllocationTest, NotesFoldIntoTheKeyboardKeepingTheirPitchClass) {
  const int cases[][2] = {{128, 116}, {139, 127}, {140, 116}, {151, 127}, {300, 120},
                          {-5, 0},    {-1000, 0}, {0, 0},     {127, 127}};
  for (const auto& c : cases) {
    engine->noteOn(c[0], 100);
    const int v = voiceOf(c[1]);
    ASSERT_GE(v, 0) << c[0];
    EXPECT_TRUE(engine->keyDown[c[1]]) << c[0];
    engine->noteOff(c[0]);
    EXPECT_FALSE(engine->keyDown[c[1]]) << c[0];
    EXPECT_EQ(engine->voices[v].gate, 0) << c[0];
    engine->voices[v].ampState = kEnvIdle;
  }
}

TEST_F(NoteAllocationTest, AFreeVoiceInPolyphonyStartsFromScratch) {
  engine->activeVoices = 8;
  makeSounding(0, 50, kEnvIdle, 0.4f);  // free, yet full of an old note's state
  auto expectedLeft = std::make_unique<FilterState>(engine->voices[0].filterLeft);
  auto expectedRight = std::make_unique<FilterState>(engine->voices[0].filterRight);
  resetFilter(*expectedLeft);
  resetFilter(*expectedRight);
  engine->effectsAsleep = true;
  const uint32_t seed = randomState;

  engine->noteOn(62, 90);

  const Voice& voice = engine->voices[0];
  EXPECT_FALSE(engine->effectsAsleep);
  EXPECT_EQ(voice.note, 62);
  EXPECT_EQ(voice.velocity, 90);
  EXPECT_EQ(voice.gate, 1);
  EXPECT_EQ(voice.ampState, kEnvAttack);
  EXPECT_EQ(voice.filtState, kEnvAttack);
  EXPECT_EQ(voice.tickCount, 0);
  EXPECT_EQ(voice.ampCore, 1.0f);
  for (float f : {voice.ampLevel, voice.filtLevel, voice.levelTarget, voice.levelStart,
                  voice.levelStep, voice.level, voice.outputState[0], voice.outputState[1],
                  voice.voiceLfo[0], voice.voiceLfo[1], voice.voiceLfo[2]}) {
    EXPECT_EQ(f, 0.0f);
  }
  EXPECT_EQ(std::memcmp(&voice.filterLeft, expectedLeft.get(), sizeof(FilterState)), 0);
  EXPECT_EQ(std::memcmp(&voice.filterRight, expectedRight.get(), sizeof(FilterState)), 0);
  EXPECT_EQ(voice.panLeft, 0.75f);
  EXPECT_EQ(voice.panRight, 0.75f);
  EXPECT_EQ(voice.tuneRatio, 1.0f);
  // A and C at 0; B and D apart, drawn B1, B2, D1, D2.
  randomState = seed;
  const int members[4][2] = {{1, 0}, {1, 1}, {3, 0}, {3, 1}};
  for (const auto& m : members) {
    EXPECT_EQ(voice.oscPhase[m[0]][m[1]], static_cast<uint32_t>(randomRange(0.0f, 16777215.0f)));
    EXPECT_EQ(voice.oscPhase[m[0] - 1][m[1]], 0u);
  }
  for (const auto& frames : voice.oscFrame) EXPECT_EQ(frames[0] | frames[1], 0);

  // The next note takes the next free voice.
  engine->noteOn(65, 80);
  EXPECT_EQ(engine->voices[1].note, 65);
}

TEST_F(NoteAllocationTest, WithEveryVoiceInAttackVoiceZeroRestartsFromSilence) {
  engine->activeVoices = 4;
  for (int v = 0; v < 4; ++v) makeSounding(v, 60 + v, kEnvAttack, 0.6f);
  engine->noteOn(70, 100);
  const Voice& voice = engine->voices[0];
  EXPECT_EQ(voice.note, 70);
  EXPECT_EQ(voice.ampLevel, 0.0f);
  EXPECT_EQ(voice.level, 0.0f);
  EXPECT_EQ(voice.oscPhase[0][0], 0u);
  EXPECT_EQ(voice.oscPhase[2][1], 0u);
  EXPECT_EQ(voice.outputState[0], 0.0f);
  EXPECT_EQ(voice.panLeft, 0.75f);
  EXPECT_EQ(engine->voices[1].note, 61);
}

TEST_F(NoteAllocationTest, TwoKeysLegatoSlidesBackToTheFirstKey) {
  engine->activeVoices = 1;
  setGlide(2);
  const int a = 60, b = 67;

  engine->noteOn(a, 100);
  EXPECT_EQ(engine->firstLegatoNote, a);
  EXPECT_EQ(engine->glideAmount, 0.0f);
  engine->voices[0].ampState = kEnvSustain;  // as the envelope would have it by now
  engine->voices[0].tickCount = 40;

  engine->noteOn(b, 90);  // legato: a new note, the envelopes go on
  const Voice& voice = engine->voices[0];
  EXPECT_EQ(voice.note, b);
  EXPECT_EQ(engine->glideFromNote, a);
  EXPECT_EQ(engine->glideAmount, 1.0f);
  EXPECT_EQ(voice.ampState, kEnvSustain);
  EXPECT_EQ(voice.tickCount, 40);
  EXPECT_EQ(voice.velocity, 100);

  engine->glideAmount = 0.0f;
  engine->noteOff(b);  // back to A, still gated, no attack
  EXPECT_EQ(voice.note, a);
  EXPECT_EQ(engine->glideFromNote, b);
  EXPECT_EQ(engine->glideAmount, 1.0f);
  EXPECT_EQ(voice.gate, 1);
  EXPECT_EQ(voice.ampState, kEnvSustain);

  engine->noteOff(a);  // the last key: release
  EXPECT_EQ(voice.gate, 0);
}

TEST_F(NoteAllocationTest, TwoKeysLegatoReleasingTheFirstKeyKeepsTheSecond) {
  engine->activeVoices = 1;
  setGlide(2);
  engine->noteOn(60, 100);
  engine->voices[0].ampState = kEnvSustain;
  engine->noteOn(64, 100);
  engine->noteOff(60);  // no voice plays A any more
  const Voice& voice = engine->voices[0];
  EXPECT_EQ(voice.note, 64);
  EXPECT_EQ(voice.gate, 1);
  engine->noteOff(64);
  EXPECT_EQ(voice.gate, 0);
  EXPECT_EQ(voice.ampState, kEnvSustain);  // the envelope takes it to release
}

}  // namespace
}  // namespace sablevox
