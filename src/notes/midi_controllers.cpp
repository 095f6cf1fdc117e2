// The controller map, the sustain pedal, the reset controllers and the pitch
// wheel.
#include "notes/midi_controllers.h"

#include <cmath>
#include <cstring>

#include "host/adelay.h"

namespace sablevox {
namespace {

constexpr float kControllerScale = 0.0078125f;  // 1/128: 127 gives 0.9921875, never 1.0

enum ControllerAction : int8_t {
  kNone = -1,
  kModWheel = -2,
  kSustain = -3,
  kReset = -4,
};

// Controller number -> parameter index (0..49) or one of the actions above.
constexpr auto kControllerMap = [] {
  struct Map {
    int8_t action[128];
  } map{};
  for (int8_t& a : map.action) a = kNone;
  map.action[1] = map.action[20] = kModWheel;
  map.action[2] = kAnalog;
  map.action[7] = kVolume;
  map.action[21] = kOsc1Tune;
  map.action[22] = kOsc2Tune;
  map.action[23] = kOsc1Fine;
  map.action[24] = kOsc2Fine;
  map.action[25] = kOsc1Vol;
  map.action[26] = kOsc2Vol;
  map.action[28] = kFiltKey;  // 27 is a gap
  map.action[64] = kSustain;
  map.action[71] = map.action[72] = kReso;
  map.action[74] = kCutoff;
  map.action[91] = kEffPar1;
  map.action[92] = kEffPar2;
  map.action[93] = kFat;
  // 102..115: the two envelopes, the LFO depth and the drive, in table order.
  constexpr int8_t kRun[] = {kEnvFiltA, kEnvFiltD, kEnvFiltS, kEnvFiltR, kEnvFilVe,
                             kEnvFilSe, kEnvVolA,  kEnvVolD,  kEnvVolS,  kEnvVolR,
                             kEnvVolVe, kEnvVolPo, kLFOSend,  kDrive};
  for (int i = 0; i < static_cast<int>(sizeof kRun); ++i) map.action[102 + i] = kRun[i];
  for (int c : {120, 123, 124, 125, 126, 127}) map.action[c] = kReset;
  return map;
}();

void sustain(ADelay& engine, int value) {
  if (value >= 64) {
    engine.sustainOn = true;
    return;
  }
  engine.sustainOn = false;
  for (int k = 0; k < kKeys; ++k) {
    if (engine.sustainedKeys[k]) engine.arpNoteOff(k, engine.arpActive);
  }
  std::memset(engine.sustainedKeys, 0, sizeof engine.sustainedKeys);
}

}  // namespace

void applyController(ADelay& engine, int controller, int value) {
  if (controller < 0 || controller > 127) return;
  const int action = kControllerMap.action[controller];
  switch (action) {
    case kNone:
      return;
    case kModWheel:
      engine.setKeyDisplay(0, 1.0f);
      engine.modWheelRaw = static_cast<float>(value) * kControllerScale;
      return;
    case kSustain:
      sustain(engine, value);
      return;
    case kReset:
      // The next block ends every voice; the key-ups keep the arpeggiator's
      // and the pedal's tables consistent with that.
      engine.resetRequested = true;
      for (int k = 0; k < kKeys; ++k) engine.arpNoteOff(k, engine.arpActive);
      return;
    default:
      // Virtual, so that the editor follows the knob.
      engine.setParameter(action, static_cast<float>(value) * kControllerScale);
      return;
  }
}

void applyPitchWheel(ADelay& engine, int data2) {
  static constexpr int kSemitones[5] = {1, 2, 7, 12, 24};
  engine.setKeyDisplay(0, 1.0f);
  float b = static_cast<float>(data2 - 64) * 0.015625f;
  // The upper half is stretched so that 127 reaches a full bend like 0 does.
  if (b > 0.0f) b = b * 1.015873f;
  // Depth is read when the wheel moves, not later.
  const float d = static_cast<float>(kSemitones[steppedIndex(engine.params[kPWDepth], 5)]);
  // 0.059, not ln(2)/12: a full bend slightly overshoots the interval.
  const float exponent = d * b * 0.059f;
  engine.pitchBendFactor = static_cast<float>(std::exp(static_cast<double>(exponent)));
}

}  // namespace sablevox
