// Octave spread and interval correction of a new note's tuneRatio.
#include "notes/interval_tuning.h"

namespace sablevox {
namespace {

// Octave spread: the ratio a new note takes given which ratios its octave
// neighbours carry. Index bit 0: some carry 1.0, bit 1: 1.003, bit 2: 0.997.
// The new note takes a ratio none of them has, preferring 0.997, then 1.003.
constexpr float kSpreadRatio[8] = {1.0f, 0.997f, 1.0f, 0.997f, 1.003f, 1.003f, 1.0f, 1.0f};

// By IQM: major third or sixth above a sounding note is flattened (0.991 is
// 15.6 cents down), a minor third or sixth sharpened.
constexpr float kMajorRatio[4] = {1.0f, 0.997f, 0.994f, 0.991f};
constexpr float kMinorRatio[4] = {1.0f, 1.003f, 1.006f, 1.008f};

int octaveSpreadMask(const Voice* voices, int count, int note) {
  int mask = 0;
  for (int v = 0; v < count; ++v) {
    const Voice& voice = voices[v];
    const int difference = note - voice.note;
    if (voice.ampState == kEnvIdle || difference == 0 || difference % 12 != 0) continue;
    // Exact comparisons: ratios are only ever these three values or others
    // left by the interval step, which count as none of them.
    if (voice.tuneRatio == 1.0f) mask |= 1;
    if (voice.tuneRatio == kOctaveRatioUp) mask |= 2;
    if (voice.tuneRatio == kOctaveRatioDown) mask |= 4;
  }
  return mask;
}

}  // namespace

float intervalTuneRatio(const Voice* voices, int count, int note, int iqm) {
  float ratio = 1.0f;
  if (iqm == 1 || iqm == 2) ratio = kSpreadRatio[octaveSpreadMask(voices, count, note)];
  if (iqm < 0 || iqm > 3) return ratio;

  bool major = false;
  bool minor = false;
  for (int v = 0; v < count; ++v) {
    const Voice& voice = voices[v];
    if (voice.ampState == kEnvIdle) continue;
    // The interval above the sounding note, within the octave (0..11): a
    // note a major third below a sounding one is a minor sixth above it.
    const int k = ((note - voice.note) % 12 + 12) % 12;
    major = major || k == 4 || k == 9;
    minor = minor || k == 3 || k == 8;
  }
  if (major) ratio = kMajorRatio[iqm];
  if (minor) ratio = kMinorRatio[iqm];  // overrides the major rule
  return ratio;
}

}  // namespace sablevox
