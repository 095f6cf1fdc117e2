// One voice's audio for a stretch between two control ticks: the oscillator
// stack members into the scratch buffers, the filter, the volume ramp, the
// drive and the output gains. Audio thread; allocates nothing. Every
// decision (members, stereo, routines) is taken once per call, outside the
// sample loops.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "filter/filter_design.h"
#include "host/adelay.h"
#include "voice/output_stage.h"
#include "voice/stack_members.h"
#include "voice/voice_laws.h"

namespace sablevox {
namespace {

constexpr float kTopFrame = 254.99f;  // scanPos 1 as a render target

// Members of each fatMode, in call order, and the buffer each goes into
// (false: left, true: right).
struct MemberCall {
  int member;
  bool right;
};
constexpr MemberCall kMemberCalls[4] = {
    {kMemberA, false}, {kMemberC, true}, {kMemberB, false}, {kMemberD, true}};
constexpr int kMembersOfMode[kFatModes] = {1, 2, 4};

void ramp(float* left, float* right, int count, float& level, float step) {
  float l = level;
  if (right != nullptr) {
    for (int i = 0; i < count; ++i) {
      left[i] *= l;
      right[i] *= l;
      l += step;
    }
  } else {
    for (int i = 0; i < count; ++i) {
      left[i] *= l;
      l += step;
    }
  }
  level = l;
}

void addScaled(float* out, const float* in, int count, float gain) {
  for (int i = 0; i < count; ++i) out[i] += in[i] * gain;
}

}  // namespace

void ADelay::renderVoice(int voiceIndex, int sampleCount, float* outLeft, float* outRight,
                         int offset, int blockLength) {
  if (voiceIndex < 0 || voiceIndex >= kMaxVoices) return;
  Voice& voice = voices[voiceIndex];
  const int64_t end = static_cast<int64_t>(offset) + sampleCount;
  if (sampleCount < 1 || sampleCount > kMaxBlock || offset < 0 || end > blockLength) return;
  if (voice.ampState == kEnvIdle) return;

  for (float& p : voice.scanPos) p = unitValue(p);

  const int members = kMembersOfMode[fatMode < kFatModes ? fatMode : 0];
  const bool stereo = members > 1;
  std::fill_n(mixLeft, sampleCount, 0.0f);
  if (stereo) std::fill_n(mixRight, sampleCount, 0.0f);

  for (int osc = 0; osc < 2; ++osc) {
    const int16_t* table = waves.table(osc);
    if (!oscEnabled[osc] || table == nullptr) continue;
    const OscRender render = osc == 0 ? osc1Render : osc2Render;
    const float target = voice.scanPos[osc] * kTopFrame;
    for (int k = 0; k < members; ++k) {
      const int m = kMemberCalls[k].member;
      render(kMemberCalls[k].right ? mixRight : mixLeft, table, sampleCount, voice.oscPhase[m][osc],
             voice.oscFrame[m][osc], voice.oscIncrement[m][osc], voice.oscLevel[osc], target);
    }
  }

  // A stereo voice's two filter channels in one loop where the routine has
  // that form: their recurrences overlap.
  const StereoFilterRoutine stereoFilter = stereo ? stereoFilterRoutine(filterRoutine) : nullptr;
  if (stereoFilter != nullptr) {
    stereoFilter(mixLeft, mixRight, sampleCount, voice.filterLeft, voice.filterRight);
  } else {
    filterRoutine(mixLeft, sampleCount, voice.filterLeft);
    if (stereo) filterRoutine(mixRight, sampleCount, voice.filterRight);
  }
  // A filter that ran away is cleared and its stretch dropped: a 2.5 ms gap
  // in one voice instead of a mix poisoned for good.
  if (filterRanAway(voice.filterLeft) || filterRanAway(voice.filterRight) ||
      !(std::fabs(mixLeft[sampleCount - 1]) <= kFilterRunawayLimit)) {
    resetFilter(voice.filterLeft);
    resetFilter(voice.filterRight);
    std::fill_n(mixLeft, sampleCount, 0.0f);
    if (stereo) std::fill_n(mixRight, sampleCount, 0.0f);
  }

  ramp(mixLeft, stereo ? mixRight : nullptr, sampleCount, voice.level, voice.levelStep);

  const float drive = unitValue(params[kDrive]);
  // Both channels of a stereo voice in one pass where the stage has one: two
  // independent chains overlap their latencies.
  const StereoOutputStage stereoStage = stereo ? stereoOutputStage(outputStage) : nullptr;
  if (stereoStage != nullptr) {
    stereoStage(mixLeft, mixRight, sampleCount, driveLow, driveHigh, drive, voice.outputState[0],
                voice.outputState[1]);
  } else {
    outputStage(mixLeft, sampleCount, driveLow, driveHigh, drive, voice.outputState[0]);
    if (stereo) {
      outputStage(mixRight, sampleCount, driveLow, driveHigh, drive, voice.outputState[1]);
    }
  }

  addScaled(outLeft + offset, mixLeft, sampleCount, voice.panLeft);
  addScaled(outRight + offset, stereo ? mixRight : mixLeft, sampleCount, voice.panRight);
}

}  // namespace sablevox
