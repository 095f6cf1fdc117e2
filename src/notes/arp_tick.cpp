// The arpeggiator's tick: a change of ArpType, the chord expansion, the step
// of the rhythm from the phrase's running sample count and the host's tempo,
// and the notes that the step starts or ends. Audio thread, first in each
// global tick, also while the arpeggiator is off.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

#include "host/adelay.h"
#include "notes/arp_key_search.h"
#include "notes/arp_tables.h"
#include "notes/arp_walk.h"

namespace sablevox {
namespace {

bool anySet(const ArpKeyTable& keys) {
  return std::find(keys, keys + kKeys, true) != keys + kKeys;
}

// The step of the rhythm row, 0..31, at `position` samples into the phrase,
// at 16 steps a beat. Tempo and rate are floats by design, the product is
// taken in double. A host's tempo is held to what a float carries before the
// rounding; a count that can't be a step (rate 0, NaN, negative) is step 0.
int rhythmStep(int position, float sampleRate, double tempo) {
  const float beatsPerMinute = static_cast<float>(std::clamp(tempo, -1.0e30, 1.0e30));
  const double steps = static_cast<double>(position) / static_cast<double>(sampleRate) *
                       static_cast<double>(beatsPerMinute) / 60.0 * kArpStepsPerBeat;
  if (!(steps >= 0.0) || !std::isfinite(steps)) return 0;
  // Truncation, then modulo 32, without a conversion of a huge count.
  return static_cast<int>(std::fmod(steps, static_cast<double>(kArpSteps)));
}

// Rebuilds the key table as the chord on its lowest key; keys above 127
// are left out. Nothing happens without a lowest key.
void expandChord(ArpKeyTable& keys, const ArpChord& chord) {
  const int lowest = arpLowest(keys);
  if (lowest < 0) return;
  const int third = lowest + kThirdAbove[lowest % 12];
  std::memset(keys, 0, sizeof(ArpKeyTable));
  for (int i = 0; i < chord.count; ++i) {
    const int key = (chord.notes[i].onThird ? third : lowest) + chord.notes[i].interval;
    if (key < kKeys) keys[key] = true;
  }
}

}  // namespace

void ADelay::arpTick(int type, int rhythm, bool active, double tempo, float sampleRate,
                     int tickSamples) {
  type = std::clamp(type, 0, kArpTypes - 1);
  rhythm = std::clamp(rhythm, 0, kArpRhythms - 1);

  // A new mode ends every note and forgets every key.
  if (type != arpLastType) {
    for (int k = 0; k < kKeys; ++k) noteOff(k);
    std::memset(arpKeys, 0, sizeof arpKeys);
    std::memset(arpHeldKeys, 0, sizeof arpHeldKeys);
    arpLastType = type;
  }
  // Off: the phrase's clock stands still.
  if (!active) return;

  const ArpMode& mode = kArpModes[type];
  const ArpChord& chord = kArpChords[mode.chord];
  const bool anyKey = anySet(arpKeys);
  // Rebuilt at every tick, so the chord follows the lowest key alone.
  if (mode.chord != 0) expandChord(arpKeys, chord);
  arpChordMode = mode.chord != 0;

  if (arpPosition == 0) arpStartWalk(*this, mode.walk);

  const int step = rhythmStep(arpPosition, sampleRate, tempo);
  bool newKey = false;
  if (mode.walk == ArpWalk::gate) {
    for (int k = 0; k < kKeys && !newKey; ++k) newKey = arpKeys[k] && !arpKeysPrevious[k];
    if (step != 0) arpGateOpen = true;
  }

  // Each step acts once, however short the ticks; in Gate a new key acts at once.
  if (step != arpLastStep || newKey) {
    const char digit = kArpRhythmRows[rhythm][step];
    if (digit == kArpOffStep) {
      for (int k = 0; k < kKeys; ++k) noteOff(k);
    } else if (digit == kArpNoteStep && anyKey) {
      if (mode.walk == ArpWalk::gate) {
        // The phrase's first step plays only the keys that are new; later
        // note steps chop the whole chord. No octave row here.
        for (int k = 0; k < kKeys; ++k) {
          if (arpKeys[k] && (arpGateOpen || !arpKeysPrevious[k])) {
            noteOn(k + chord.transpose, arpVelocity);
          }
        }
      } else if (mode.walk != ArpWalk::none) {
        arpMoveWalk(*this, mode.walk);
        const int octave = kArpOctaveRows[mode.row][arpOctaveStep % kArpColumns];
        noteOn(arpNote + octave * 12 + chord.transpose, arpVelocity);
      }
    }
  }

  // Counts on until the next first key; a count that would overflow (after
  // about 13 hours at 44.1 kHz) starts again one tick into the phrase.
  const int advance = std::clamp(tickSamples, 0, kMaxBlock);
  arpPosition = arpPosition <= INT_MAX - advance ? arpPosition + advance : advance;
  arpLastStep = step;
  std::memcpy(arpKeysPrevious, arpKeys, sizeof arpKeysPrevious);
}

}  // namespace sablevox
