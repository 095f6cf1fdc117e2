// LFO shapes, their history rules and the rate rules in Hz and in beats.
#include "voice/lfo.h"

#include <bit>
#include <cmath>

#include "host/numeric.h"

namespace sablevox {

Shared<uint32_t> lfoRandomState{22222u};

namespace {

constexpr float kHertz[kLfoFirstBeatSpeed] = {0.0f,  0.125f, 0.185f, 0.25f, 0.375f, 0.5f,
                                              0.75f, 1.0f,   1.5f,   2.0f,  3.0f,   4.0f,
                                              6.0f,  8.0f,   12.0f,  16.0f};
constexpr float kPerBeat[kLfoSpeedCount - kLfoFirstBeatSpeed] = {
    0.0625f, 0.125f, 0.25f, 0.5f, 0.75f, 1.0f, 1.5f, 2.0f, 3.0f, 4.0f, 6.0f, 8.0f, 16.0f};

constexpr uint8_t kPatterns[5][8] = {{1, 0, 1, 0, 1, 0, 0, 0},
                                     {1, 0, 1, 0, 1, 1, 1, 0},
                                     {1, 0, 0, 0, 1, 0, 1, 0},
                                     {1, 0, 0, 1, 0, 0, 1, 0},
                                     {1, 1, 0, 1, 1, 0, 1, 0}};

constexpr float kTwoPi = 6.2831802f;
constexpr float kThreeQuarterTurn = 4.7123852f;  // starts the sine at its bottom

float triangle(float p) {
  return p <= 0.5f ? 2.0f * p : 2.0f - 2.0f * p;
}

// (sin + 1) / 2 of the library's double-precision sine.
float raisedSine(float argument) {
  return static_cast<float>((std::sin(static_cast<double>(argument)) + 1.0) * 0.5);
}

// A new held value in 0 up to about 1.00075.
float randomUnit() {
  return (lfoRandom() + 1.0f) * 0.5f;
}

}  // namespace

int autoLfoSpeed(int type, int destination) {
  constexpr int kHalfHertz = 6, kSixHertz = 13, kBeat = 22, kTwiceABeat = 24, kStill = 0;
  if (type >= kLfoPattern1 && type <= kLfoPattern5) return kBeat;
  if (type == kLfoTriFree) return kStill;
  switch (destination) {
    case 0:
    case 1:
    case 2:  // off, Cutoff, Reso
      return kHalfHertz;
    case 3:
    case 4:
    case 7:  // Volume, Osc octave, Pan
      return kTwiceABeat;
    case 5:
    case 6:  // Osc pitch, Osc detune
      return kSixHertz;
    default:
      return kStill;
  }
}

float lfoRandom() {
  const uint32_t state = lfoRandomState.load() * 0x0BB38435u + 0x3619636Bu;
  lfoRandomState.store(state);
  constexpr float kScale = std::bit_cast<float>(0x300017D6u);  // 4.66e-10
  return static_cast<float>(static_cast<double>(state) * kScale - 1.0);
}

float advanceLfoPhase(float phase, int tickSamples, float sampleRate, double tempo,
                      int speedIndex) {
  float increment = 0.0f;
  if (speedIndex >= 0 && speedIndex < kLfoFirstBeatSpeed) {
    increment = (static_cast<float>(tickSamples) / sampleRate) * kHertz[speedIndex];
  } else if (speedIndex >= kLfoFirstBeatSpeed && speedIndex < kLfoSpeedCount) {
    increment = static_cast<float>(((tempo * static_cast<double>(0.016666668f)) / sampleRate) *
                                   tickSamples * kPerBeat[speedIndex - kLfoFirstBeatSpeed]);
  }
  float p = phase + increment;
  p -= std::trunc(p);
  // A hostile rate or phase (NaN, infinite, negative) must not stick.
  return p >= 0.0f && p < 1.0f ? p : 0.0f;
}

float lfoOutput(int type, float phase, float& previous, float& held) {
  const float p = phase;
  const bool wrapped = previous > p;
  previous = p;
  switch (type) {
    case kLfoStatic:
      return 1.0f;
    case kLfoTri:
    case kLfoTriFree:
      return triangle(p);
    case kLfoTri90: {
      float q = p + 0.25f;
      if (q > 1.0f) q -= 1.0f;
      return triangle(q);
    }
    case kLfoSawUp:
      return p;
    case kLfoSawDown:
      return 1.0f - p;
    case kLfoSin:
      return raisedSine(p * kTwoPi + kThreeQuarterTurn);
    case kLfoCos:
      return static_cast<float>(
          (std::cos(static_cast<double>(p * kTwoPi + kThreeQuarterTurn)) + 1.0) * 0.5);
    case kLfoSquare:
      return p < 0.5f ? 1.0f : 0.0f;
    case kLfoRandom:
      if (held == 0.0f) held = randomUnit();
      if (wrapped) held = randomUnit();
      return held;
    case kLfoRandSine: {
      if (held == 0.0f) held = randomUnit();
      if (wrapped) held = lfoRandom();  // not rescaled here
      const float h = held * 0.5f + 0.5f;
      // 1 to 16 sine cycles in one LFO cycle; the limits only guard the conversion.
      float cycles = h * h * 15.0f + 1.0f;
      cycles = cycles >= 1.0f ? cycles : 1.0f;
      cycles = cycles <= 16.0f ? cycles : 16.0f;
      const float n = static_cast<float>(static_cast<int>(cycles));
      return raisedSine(n * p * kTwoPi + kThreeQuarterTurn);
    }
    case kLfoImpulse:
      return wrapped ? 1.0f : 0.0f;
    case kLfoNoise:
      return randomRange(0.0f, 1.0f);
    case kLfoSawStop:
    case kLfoTriStop:
      if (wrapped) {
        held = 1.0f;
        return 0.0f;
      }
      if (held != 0.0f) return 0.0f;
      return type == kLfoSawStop ? 1.0f - p : triangle(p);
    default:
      if (type >= kLfoPattern1 && type <= kLfoPattern5) {
        const float q = p >= 0.0f && p < 1.0f ? p : 0.0f;  // guards the conversion
        const int step = static_cast<int>(q * 7.99999f);
        return kPatterns[type - kLfoPattern1][step];
      }
      return 0.0f;
  }
}

}  // namespace sablevox
