// Loop modes and loop speeds of the wave scan.
#include "voice/wave_scan.h"

#include <cmath>

#include "voice/lfo.h"

namespace sablevox {
namespace {

enum Member { kA = 0 };

constexpr float kHertz[16] = {0.0f, 0.125f, 0.185f, 0.25f, 0.375f, 0.5f, 0.75f, 1.0f,
                              1.5f, 2.0f,   3.0f,   4.0f,  6.0f,   8.0f, 12.0f, 16.0f};
constexpr float kPerBeat[9] = {0.125f, 0.25f, 0.5f, 1.0f, 2.0f, 3.0f, 4.0f, 6.0f, 8.0f};
constexpr float kPerKey[8] = {0.25f, 0.5f, 1.0f, 2.0f, 4.0f, 8.0f, 16.0f, 32.0f};
constexpr int kFirstHertzStep = 1, kFirstBeatStep = 17, kFirstKeyStep = 26;

constexpr int8_t kOverride[25] = {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 10, 7,
                                  7,  5,  10, 8,  -1, -1, 18, 19, 5,  18, 5,  -1};

// Random start position, 0 up to about 1.00075.
float randomPosition() {
  return (lfoRandom() + 1.0f) * 0.5f;
}

void jump(Voice& voice, int osc, float p) {
  voice.oscFrame[kA][osc] = jumpPosition(p);
}

void placeStart(int mode, float r, Voice& voice, int osc, float& p, float& dir) {
  switch (mode) {
    case 0:
    case 5:
    case 7:
    case 8:
    case 9:
      p = 0.0f;
      voice.oscFrame[kA][osc] = 0;
      dir = 1.0f;
      break;
    case 1:
    case 6:
      p = 1.0f;
      voice.oscFrame[kA][osc] = kLastFramePosition;
      dir = -1.0f;
      break;
    case 2:
    case 12:
    case 13:
      p = randomPosition();
      jump(voice, osc, p);
      dir = lfoRandom() > 0.0f ? 1.0f : -1.0f;
      break;
    case 3:
    case 10:
      p = 0.0f;
      voice.oscFrame[kA][osc] = 0;
      break;
    case 4:
    case 11:
      p = 1.0f;
      voice.oscFrame[kA][osc] = kLastFramePosition;
      break;
    case 14:
      p = randomPosition();
      jump(voice, osc, p);
      voice.scanTimer[osc] = 0.0f;
      break;
    case 15:
      p = randomPosition();
      jump(voice, osc, p);
      break;
    case kScanModeStatic:
      p = r;
      jump(voice, osc, r);
      break;
    default:
      break;
  }
}

// Up through the whole wave, then ping-pong between 1 and low.
void reflectAbove(float low, float& p, float& dir) {
  if (p > 1.0f) {
    p = 2.0f - p;
    dir = -dir;
  }
  if (p < low && dir < 0.0f) {
    p = 2.0f * low - p;
    dir = -dir;
  }
}

void move(int mode, float r, Voice& voice, int osc, float& p, float& dir) {
  switch (mode) {
    case 0:
    case 1:
    case 2:  // ping-pong over the whole wave
      p = p + dir * r;
      if (p < 0.0f) {
        p = -p;
        dir = -dir;
      }
      if (p > 1.0f) {
        p = 2.0f - p;
        dir = -dir;
      }
      break;
    case 3:
      p = p + r;
      if (p > 1.0f) p = 1.0f;
      break;
    case 4:
      p = p - r;
      if (p < 0.0f) p = 0.0f;
      break;
    case 5:  // up, back down, stop at the start
      p = p + dir * r;
      if (p < 0.0f) {
        p = 0.0f;
        dir = 0.0f;
      }
      if (p > 1.0f) {
        p = 2.0f - p;
        dir = -dir;
      }
      break;
    case 6:  // down, back up, stop at the end
      p = p + dir * r;
      if (p < 0.0f) {
        p = -p;
        dir = -dir;
      }
      if (p > 1.0f) {
        p = 1.0f;
        dir = 0.0f;
      }
      break;
    case 7:
      p = p + dir * r;
      reflectAbove(0.5f, p, dir);
      break;
    case 8:
      p = p + dir * r;
      reflectAbove(0.75f, p, dir);
      break;
    case 9:
      p = p + dir * r;
      reflectAbove(0.25f, p, dir);
      break;
    case 10:
    case 12:
      p = p + r;
      if (p > 1.0f) {
        p = p - 1.0f;
        jump(voice, osc, p);
      }
      break;
    case 11:
    case 13:
      p = p - r;
      if (p < 0.0f) {
        p = p + 1.0f;
        jump(voice, osc, p);
      }
      break;
    case 14: {
      float& timer = voice.scanTimer[osc];
      timer = timer + r;
      if (timer > 1.0f) {
        p = randomPosition();
        jump(voice, osc, p);
        timer -= std::trunc(timer);
      }
      break;
    }
    case kScanModeStatic:
      p = r;
      break;
    default:  // 15, "?": the start position stays for the note
      break;
  }
}

}  // namespace

int loopSpeedOverride(int modStep) {
  return modStep >= 0 && modStep < 25 ? kOverride[modStep] : -1;
}

float loopSpeedRate(int step, double tempo, float notePitch, float sampleRate) {
  if (step >= kFirstHertzStep && step < kFirstBeatStep) {
    return kHertz[step - kFirstHertzStep] * 0.0025f;
  }
  if (step >= kFirstBeatStep && step < kFirstKeyStep) {
    const float m = kPerBeat[step - kFirstBeatStep] * 0.0025f;
    return static_cast<float>(m * tempo * static_cast<double>(0.016666668f));
  }
  if (step >= kFirstKeyStep && step < kLoopSpeedSteps) {
    return kPerKey[step - kFirstKeyStep] * 0.0025f * notePitch * sampleRate * 2.2675737e-05f *
           64.0f;
  }
  return 0.0f;
}

int32_t jumpPosition(float p) {
  // Random positions reach 1.00075; the limits only keep hostile rates
  // (NaN, huge) away from the conversion.
  constexpr float kHighest = 1.001f;
  const float x = p > 0.0f ? (p < kHighest ? p : kHighest) : 0.0f;
  return static_cast<int32_t>(x * 65536.0f * 255.0f);
}

void scanStep(int mode, float rate, Voice& voice, int osc) {
  float p = voice.scanPos[osc];
  float dir = voice.scanDir[osc];
  if (voice.tickCount == 0) {
    placeStart(mode, rate, voice, osc, p, dir);
  } else {
    move(mode, rate, voice, osc, p, dir);
  }
  voice.scanPos[osc] = p;
  voice.scanDir[osc] = dir;
}

}  // namespace sablevox
