// The engine as a host drives it, in process: the input is a program of host
// calls (parameter values of any bit pattern, event lists of any bytes and
// deltaFrames, blocks of both forms and any length up to 2048, programs, sample
// rates, tempos, suspend and resume). Every output sample must be finite.
#include <cmath>
#include <cstdlib>
#include <memory>
#include <vector>

#include "fuzz_input.h"
#include "host/adelay.h"
#include "host/vst2.h"

namespace {

using sablevox::fuzz::Input;

VstTimeInfo timeInfo{};
bool timeAnswered = true;

VstIntPtr fuzzHost(AEffect*, VstInt32 opcode, VstInt32, VstIntPtr, void*, float) {
  if (opcode == audioMasterVersion) return 2400;
  if (opcode == audioMasterGetTime && timeAnswered) return reinterpret_cast<VstIntPtr>(&timeInfo);
  return 0;
}

constexpr int kMaxFrames = 2048;
constexpr int kMaxEvents = 64;

struct Engine {
  std::unique_ptr<sablevox::ADelayEdit> effect;
  std::vector<float> left = std::vector<float>(kMaxFrames);
  std::vector<float> right = std::vector<float>(kMaxFrames);
  float program0[sablevox::kNumParams] = {};
};

// One engine for the whole run (a new one per input would cost a worker
// thread and megabytes of tables each time); every input starts with the
// values of program 0 at load, at 44100 Hz and 120 BPM. Voices, effect
// state and program records carry over from earlier inputs, which is more
// state to explore; a reset per input (clearing the effects' megabytes)
// would cost most of the run.
Engine& engine() {
  static Engine* e = [] {
    setenv("XDG_CONFIG_HOME", "/tmp/sablevox-fuzz-settings", 1);
    auto* made = new Engine;
    made->effect = std::make_unique<sablevox::ADelayEdit>(fuzzHost);
    made->effect->open();
    for (int i = 0; i < sablevox::kNumParams; ++i)
      made->program0[i] = made->effect->getParameter(i);
    return made;
  }();
  return *e;
}

void checkFinite(const float* x, int count) {
  for (int i = 0; i < count; ++i) {
    if (!std::isfinite(x[i])) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Engine& e = engine();
  sablevox::ADelay& fx = *e.effect;
  timeInfo = VstTimeInfo{};
  timeInfo.tempo = 120.0;
  timeInfo.sampleRate = 44100.0;
  timeAnswered = true;
  for (int i = 0; i < sablevox::kNumParams; ++i) fx.setParameter(i, e.program0[i]);
  fx.setSampleRate(44100.0f);

  Input in(data, size);
  VstMidiEvent records[kMaxEvents];
  struct {
    VstInt32 numEvents;
    VstIntPtr reserved;
    VstEvent* events[kMaxEvents];
  } list{};
  for (int step = 0; step < 128 && !in.done(); ++step) {
    switch (in.byte() % 9) {
      case 0:
      case 1:
        fx.setParameter(static_cast<int8_t>(in.byte()), in.anyFloat());
        break;
      case 2: {
        list.numEvents = in.byte() % (kMaxEvents + 1);
        for (int k = 0; k < list.numEvents; ++k) {
          VstMidiEvent& r = records[k];
          r = VstMidiEvent{};
          r.type = in.byte() < 240 ? kVstMidiType : in.byte();
          r.byteSize = sizeof(VstMidiEvent);
          r.deltaFrames = in.byte() < 200 ? in.word() % 2048 : in.int32();
          for (int b = 0; b < 4; ++b) r.midiData[b] = static_cast<char>(in.byte());
          list.events[k] = reinterpret_cast<VstEvent*>(&r);
        }
        fx.processEvents(reinterpret_cast<VstEvents*>(&list));
        break;
      }
      case 3:
      case 4: {
        const int frames = in.word() % (kMaxFrames + 1);
        float* out[2] = {e.left.data(), e.right.data()};
        if (in.byte() % 4 == 0) {
          std::fill(e.left.begin(), e.left.begin() + frames, 0.25f);
          std::fill(e.right.begin(), e.right.begin() + frames, -0.25f);
          fx.process(nullptr, out, frames);
        } else {
          fx.processReplacing(nullptr, out, frames);
        }
        checkFinite(e.left.data(), frames);
        checkFinite(e.right.data(), frames);
        break;
      }
      case 5:
        fx.setProgram(in.byte() % 128);
        break;
      case 6: {
        // A host's rate: the usual ones, or any value from 1 Hz to 1 MHz.
        static constexpr float kRates[] = {8000,  11025, 22050,  44100, 48000,
                                           88200, 96000, 192000, 384000};
        const uint8_t pick = in.byte();
        const float rate =
            pick < 200 ? kRates[pick % 9] : 1.0f + static_cast<float>(in.int32() & 0xFFFFF);
        fx.setSampleRate(rate);
        timeInfo.sampleRate = rate;
        break;
      }
      case 7: {
        const uint8_t pick = in.byte();
        timeAnswered = pick != 0;
        timeInfo.tempo = pick < 128 ? 20.0 + pick * 3.0 : static_cast<double>(in.anyFloat());
        break;
      }
      default:
        if (in.byte() % 2 == 0) {
          fx.suspend();
        } else {
          fx.resume();
        }
        break;
    }
  }
  return 0;
}
