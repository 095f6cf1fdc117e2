// The audio block driver: the only place where time passes. It resets the
// engine when asked, cuts each block at the 2.5 ms control ticks, renders the
// voices between ticks, smooths the mix and runs the effects and equaliser.
#include <algorithm>
#include <chrono>
#include <cstring>

#include "effects/chorus.h"
#include "effects/delay.h"
#include "effects/effect_section.h"
#include "effects/equaliser.h"
#include "effects/reverb.h"
#include "host/adelay.h"

namespace sablevox {
namespace {

constexpr float kAverageOffset = 1e-05f;  // keeps silence away from denormals
// Audio this far ahead of the wall clock is no real-time stream: a host's
// buffering stays below it (a device period of 8192 frames cut into small
// blocks runs at most 0.19 s ahead), an export at 1.4 times real time passes
// it within a second (Ardour runs a second of pre-roll before the exported
// range). An export at about real-time speed can't be told from a live
// stream this way.
constexpr double kOfflineLeadSeconds = 0.25;

// Two-point moving average in place: a gentle low-pass with a zero at half
// the sample rate. Silence in gives 0.00001 out.
void averagePass(float* buffer, int count, float& history) {
  float previous = history;
  for (int i = 0; i < count; ++i) {
    const float a = buffer[i] + kAverageOffset;
    buffer[i] = (previous + a) * 0.5f;
    previous = a;
  }
  history = previous;
}

// Blocks longer than the scratch buffers are served in pieces; a count of 0
// (or a hostile negative one) still runs one empty piece for the bookkeeping.
template <typename Piece>
void forEachPiece(float** outputs, VstInt32 sampleFrames, Piece piece) {
  if (outputs == nullptr || outputs[0] == nullptr || outputs[1] == nullptr) return;
  const int count = sampleFrames > 0 ? sampleFrames : 0;
  int done = 0;
  do {
    const int length = std::min(count - done, kMaxBlock);
    float* out[2] = {outputs[0] + done, outputs[1] + done};
    piece(out, length);
    done += length;
  } while (done < count);
}

}  // namespace

void ADelay::processReplacing(float** /*inputs*/, float** outputs, VstInt32 sampleFrames) {
  forEachPiece(outputs, sampleFrames,
               [this](float** out, int length) { renderBlock(out, length); });
}

// The accumulating form: the same block added to what the buffers hold.
void ADelay::process(float** /*inputs*/, float** outputs, VstInt32 sampleFrames) {
  forEachPiece(outputs, sampleFrames, [this](float** out, int length) {
    std::memcpy(dryLeft, out[0], sizeof(float) * static_cast<size_t>(length));
    std::memcpy(dryRight, out[1], sizeof(float) * static_cast<size_t>(length));
    renderBlock(out, length);
    for (int i = 0; i < length; ++i) {
      out[0][i] += dryLeft[i];
      out[1][i] += dryRight[i];
    }
  });
}

void ADelay::renderBlock(float** outputs, int count) {
  trackRenderLead(count);
  waves.beginBlock();
  if (resetRequested) {
    resetEngine();
    rebuildWaves = true;
    delay->reset();
    chorus->reset();
    reverb->reset();
    resetRequested = false;
    oscGain[0] = 0.0f;
    oscGain[1] = 0.0f;
    refreshCountdown = 0;
  }
  buildDueTablesIfOffline();
  arpActive = steppedIndex(params[kArpType], 23) > 0;

  float* left = outputs[0];
  float* right = outputs[1];
  std::fill_n(left, count, 0.0f);
  std::fill_n(right, count, 0.0f);

  const double sampleRate = getSampleRate();
  tickLength = static_cast<int>(sampleRate * static_cast<double>(0.0025f));
  if (refreshCountdown < 1) {
    slowRefresh();
    refreshCountdown = static_cast<int>(sampleRate * static_cast<double>(0.1f));
  }
  refreshCountdown -= count;

  int remaining = count;
  int position = 0;
  while (remaining > 0) {
    const int n = static_cast<int>(samplesToTick);
    if (n > remaining) {
      samplesToTick -= static_cast<float>(remaining);
      for (int v = 0; v < activeVoices; ++v) {
        renderVoice(v, remaining, left, right, position, count);
      }
      break;
    }
    remaining -= n;
    if (n != 0) {
      for (int v = 0; v < activeVoices; ++v) renderVoice(v, n, left, right, position, count);
      position += n;
    }
    samplesToTick = samplesToTick - static_cast<float>(n) + static_cast<float>(tickLength);
    drainUiNotes();
    eventPass(position + tickLength);
    globalTick(tickLength);
    for (int v = 0; v < activeVoices; ++v) voiceTick(v);
  }

  averagePass(left, count, outputHistoryLeft);
  averagePass(right, count, outputHistoryRight);

  runEffects(left, right, count);
}

// The lead grows by each block's length and shrinks by the wall time between
// block heads, never below zero: a stream paced by the clock keeps it near
// zero at a block's head. One read of the steady clock (no system call) a
// block.
void ADelay::trackRenderLead(int count) {
  const int64_t now = std::chrono::duration_cast<std::chrono::nanoseconds>(
                          std::chrono::steady_clock::now().time_since_epoch())
                          .count();
  if (lastBlockNanos != 0) {
    renderLead += lastBlockSeconds - static_cast<double>(now - lastBlockNanos) * 1e-9;
    if (renderLead < 0.0) renderLead = 0.0;
  }
  lastBlockNanos = now;
  lastBlockSeconds = static_cast<double>(count) / getSampleRate();
}

// Offline when the host says so; a host that can't tell (Ardour 7 answers 0
// even while it exports) counts as offline while the audio runs well ahead
// of the clock. A host that says real time is taken at its word.
bool ADelay::hostRendersOffline() {
  const VstIntPtr level = callHost(audioMasterGetCurrentProcessLevel);
  if (level == kVstProcessLevelOffline) return true;
  return level == kVstProcessLevelUnknown && renderLead > kOfflineLeadSeconds;
}

// The host is asked only when a build has come due, at most once a block. In
// real time the worker builds and this thread never waits; offline (an
// export, faster than real time, where the worker may starve) the build is
// done here, so that a change lands at the same sample in every export.
void ADelay::buildDueTablesIfOffline() {
  if (!waves.buildDue(params, rebuildWaves)) return;
  const bool offline = hostRendersOffline();
  waves.setWorkerStandsDown(offline);
  if (offline) waves.buildNow(params, rebuildWaves);
}

void ADelay::runEffects(float* left, float* right, int count) {
  const float sampleRate = getSampleRate();
  const int type = steppedIndex(params[kEffType], 20);
  if (type != lastEffType) {
    delay->reset();
    chorus->reset();
    reverb->reset();
    effectsAsleep = false;
  }
  if (!effectsAsleep) {
    EffectUnits units{delay, chorus, reverb, equaliser, stereo};
    runEffect(type, units, left, right, count, sampleRate, params[kEffPar1], params[kEffPar2],
              *this);
  }
  lastEffType = type;

  // The equaliser always runs, also while the effects sleep.
  equaliser->setSampleRate(sampleRate);
  equaliser->setGain(1.0f);
  equaliser->process(left, right, count);
  effectsAsleep = static_cast<float>(equaliser->silenceCount()) > sampleRate * 2.0f;
}

}  // namespace sablevox
