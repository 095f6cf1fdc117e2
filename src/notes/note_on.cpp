// Starting a note: glide set-up, the voice search and stealing rule, and the
// three depths of a start (free voice, stolen voice, the one voice of mono).
// Audio thread, inside a tick.
#include <algorithm>
#include <cstdint>

#include "filter/filter_design.h"
#include "host/adelay.h"
#include "host/numeric.h"
#include "notes/interval_tuning.h"
#include "notes/note_fold.h"

namespace sablevox {
namespace {

enum GlideMode { kGlideOff = 0, kGlideOneKey = 1, kGlideTwoKeys = 2 };

constexpr int kMemberA = 0, kMemberB = 1, kMemberC = 2, kMemberD = 3;
constexpr float kPhaseTop = 16777215.0f;  // the 24-bit phase range

// The voice a new note takes among voices[0..count-1]: the first free one;
// else the quietest one past its attack (the first among equals), which is
// then stolen; else, with every voice in attack, voice 0, not stolen.
int findVoice(const Voice* voices, int count, bool& stolen) {
  for (int v = 0; v < count; ++v) {
    if (voices[v].ampState == kEnvIdle) return v;
  }
  int chosen = 0;
  float limit = 10000.0f;
  for (int v = 0; v < count; ++v) {
    const Voice& voice = voices[v];
    const bool pastAttack = voice.ampState >= kEnvDecay && voice.ampState <= kEnvRelease;
    if (pastAttack && voice.ampLevel < limit) {
      chosen = v;
      limit = voice.ampLevel;
      stolen = true;
    }
  }
  return chosen;
}

// Everything of the sound that a free voice in polyphony starts from.
void resetVoiceSound(Voice& voice) {
  resetFilter(voice.filterLeft);
  resetFilter(voice.filterRight);
  voice.outputState[0] = voice.outputState[1] = 0.0f;
  // A and C start at phase 0, so a plain voice starts at 0; B and D start
  // apart, so that the copies of a Fat stack don't sum in phase. Drawn in
  // the order B1, B2, D1, D2.
  for (int osc = 0; osc < 2; ++osc) {
    voice.oscPhase[kMemberA][osc] = 0;
    voice.oscPhase[kMemberC][osc] = 0;
  }
  for (int member : {kMemberB, kMemberD}) {
    for (int osc = 0; osc < 2; ++osc) {
      voice.oscPhase[member][osc] = static_cast<uint32_t>(randomRange(0.0f, kPhaseTop));
    }
  }
  for (auto& frames : voice.oscFrame) frames[0] = frames[1] = 0;
  voice.panLeft = voice.panRight = 0.75f;
}

}  // namespace

void ADelay::noteOn(int note, int velocity) {
  effectsAsleep = false;
  note = foldNote(note);
  keyDown[note] = true;
  const int count = std::clamp(activeVoices, 1, kMaxVoices);

  bool freshStart = true;
  // In mono nothing of the sound state is ever reset: the one voice goes on.
  bool resetSound = count != 1;
  bool stolen = false;

  // Glide is one set for the whole synthesizer: with glide on there is one voice.
  switch (steppedIndex(params[kGlMode], 3)) {
    case kGlideOff:
      glideAmount = 0.0f;
      break;
    case kGlideOneKey:
      glideFromNote = voices[0].note;
      glideAmount = 1.0f;
      break;
    default:  // kGlideTwoKeys: legato while a key is held
      if (voices[0].gate != 0) {
        glideFromNote = voices[0].note;
        glideAmount = 1.0f;
        freshStart = false;
      } else {
        firstLegatoNote = static_cast<int8_t>(note);
        glideAmount = 0.0f;
      }
      break;
  }

  const int chosen = findVoice(voices, count, stolen);
  // A stolen voice keeps phases, filter memory and level, so it doesn't click.
  if (stolen) resetSound = false;

  Voice& voice = voices[chosen];
  voice.note = static_cast<int8_t>(note);
  voice.gate = 1;
  voice.ampCore = 1.0f;

  if (freshStart) {
    voice.ampState = kEnvAttack;
    voice.filtState = kEnvAttack;
    voice.tickCount = 0;
    if (count > 1 && !stolen) {
      voice.ampLevel = voice.filtLevel = 0.0f;
      voice.levelTarget = voice.levelStart = voice.levelStep = voice.level = 0.0f;
    }
    voice.velocity = static_cast<int8_t>(std::clamp(velocity, 0, 127));
  }

  if (resetSound) resetVoiceSound(voice);

  voice.voiceLfo[0] = voice.voiceLfo[1] = voice.voiceLfo[2] = 0.0f;
  voice.tuneRatio = intervalTuneRatio(voices, count, note, config->get(kIQM));
}

}  // namespace sablevox
