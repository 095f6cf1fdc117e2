// The per-voice control tick: LFO, wave scan and speeds of all stack
// members, analogue drift, unison detune, envelopes, the volume ramp of the
// coming stretch, the filter design, pan and levels. Audio thread; runs for
// every voice below activeVoices, sounding or not.
#include <cstdint>

#include "filter/filter_design.h"
#include "host/adelay.h"
#include "host/numeric.h"
#include "voice/envelopes.h"
#include "voice/filter_arguments.h"
#include "voice/lfo.h"
#include "voice/stack_members.h"
#include "voice/voice_laws.h"
#include "voice/wave_scan.h"

namespace sablevox {
namespace {

// voiceLfo words.
constexpr int kLfoPhase = 0, kLfoPrevious = 1, kLfoHeld = 2;

// Analogue drift draws for the members in this order: A1, C1, A2, C2, B1, D1, B2, D2.
constexpr int kDriftOrder[8][2] = {{kMemberA, 0}, {kMemberC, 0}, {kMemberA, 1}, {kMemberC, 1},
                                   {kMemberB, 0}, {kMemberD, 0}, {kMemberB, 1}, {kMemberD, 1}};

// The fatRatio entry of each member: A 0, B 3, C 2, D 1.
constexpr int kFatRatioOf[4] = {0, 3, 2, 1};

}  // namespace

void ADelay::voiceTick(int voiceIndex) {
  if (voiceIndex < 0 || voiceIndex >= kMaxVoices) return;
  Voice& voice = voices[voiceIndex];
  const float sampleRate = getSampleRate();

  // 1. The LFO runs only while it has a destination.
  LfoModulation mod;
  const int destination = steppedIndex(params[kLFODest], kLfoDestinations);
  if (destination != kLfoDestOff) {
    float l = sharedLfoValue;
    if (lfoTypeIndex != kLfoTriFree) {
      float* lfo = voice.voiceLfo;
      lfo[kLfoPhase] =
          advanceLfoPhase(lfo[kLfoPhase], tickLength, sampleRate, tickTempo, lfoSpeedIndex);
      l = lfoOutput(lfoTypeIndex, lfo[kLfoPhase], lfo[kLfoPrevious], lfo[kLfoHeld]);
    }
    mod = lfoModulation(destination, unitValue(params[kLFOSend]), l);
  }

  // 2., 3. Position and speed of both oscillators; B and D follow A and C.
  oscillatorControl(voiceIndex, 0, params[kOsc1Wave], params[kOsc1Mod], params[kOsc1Loop],
                    params[kOsc1LSp], params[kOsc1Tune], params[kOsc1Fine]);
  oscillatorControl(voiceIndex, 1, params[kOsc2Wave], params[kOsc2Mod], params[kOsc2Loop],
                    params[kOsc2LSp], params[kOsc2Tune], params[kOsc2Fine]);
  for (int osc = 0; osc < 2; ++osc) {
    voice.oscIncrement[kMemberB][osc] = voice.oscIncrement[kMemberA][osc];
    voice.oscIncrement[kMemberD][osc] = voice.oscIncrement[kMemberC][osc];
  }
  if (voice.tickCount < INT32_MAX) ++voice.tickCount;

  // 4. Analogue drift: a fast random jitter of each copy, up to 4 %.
  const float analog = unitValue(params[kAnalog]);
  if (analog > 0.01f) {
    const float a = analog * analog * 0.04f;
    for (const auto& [member, osc] : kDriftOrder) {
      voice.oscIncrement[member][osc] *= 1.0f + randomRange(-a, a);
    }
  }

  // 5. Unison detune and LFO pitch.
  for (int member = 0; member < 4; ++member) {
    for (int osc = 0; osc < 2; ++osc) {
      float& increment = voice.oscIncrement[member][osc];
      increment = fatRatio[kFatRatioOf[member]] * mod.pitchMod[osc] * increment;
    }
  }

  // 6. Envelopes.
  const float e = stepVolumeEnvelope(unitValue(params[kEnvVolA]), unitValue(params[kEnvVolD]),
                                     unitValue(params[kEnvVolS]), unitValue(params[kEnvVolR]),
                                     voice.gate, voice.ampState, voice.ampCore, voice.ampLevel);
  const float filterEnvelope = stepFilterEnvelope(
      unitValue(params[kEnvFiltA]), unitValue(params[kEnvFiltD]), unitValue(params[kEnvFiltS]),
      unitValue(params[kEnvFiltR]), voice.gate, voice.filtState, voice.filtLevel);

  // 7. The volume ramp of the coming stretch runs from the last target to this one.
  voice.level = voice.levelStart = voice.levelTarget;
  voice.levelTarget = velocityFactor(unitValue(params[kEnvVolVe]), voice.velocity) * e;
  voice.levelTarget = voice.levelTarget * mod.ampMod;
  const int samples = tickLength > 0 ? tickLength : 1;
  voice.levelStep = (voice.levelTarget - voice.levelStart) / static_cast<float>(samples);

  // 8. Filter design, also for idle voices.
  const int code = voice.filterCode;
  const FilterKnobs knobs{unitValue(params[kCutoff]),
                          unitValue(params[kReso]),
                          unitValue(params[kFiltKey]),
                          unitValue(params[kEnvFilSe]),
                          unitValue(params[kEnvFilVe]),
                          mod.cutoff,
                          mod.reso,
                          cutoffOffset,
                          resoOffset};
  const float env = usesRawEnvelope(code) ? voice.filtLevel : filterEnvelope;
  const FilterArguments args = filterArguments(code, voice.note, voice.velocity, env, knobs);
  filterRoutine = designFilter(code, static_cast<int>(sampleRate), args.cutoff, args.resonance,
                               voice.filterLeft);
  copyFilterSettings(voice.filterLeft, voice.filterRight);

  // 9. Pan, volume and oscillator levels.
  const VoiceGains gains =
      voiceGains(mod.pan, mod.cross, unitValue(params[kVolume]), crossfadeOffset, oscGain);
  voice.panLeft = gains.panLeft;
  voice.panRight = gains.panRight;
  voice.oscLevel[0] = gains.oscLevel[0];
  voice.oscLevel[1] = gains.oscLevel[1];
}

void ADelay::oscillatorControl(int voiceIndex, int oscillator, float wave, float mod, float loop,
                               float loopSpeed, float tune, float fine) {
  Voice& voice = voices[voiceIndex];
  const int o = oscillator;
  const int w = steppedIndex(wave, kWaveCount);
  const int m = steppedIndex(mod, kModifierSteps);
  int lp = steppedIndex(loop, kLoopSteps);
  int ls = steppedIndex(loopSpeed, kLoopSpeedSteps);
  const WaveSlot& slot = waves.slot(w);
  if (lp == 0) lp = slot.defaultLoop;
  if (ls == 0) {
    ls = loopSpeedOverride(m);
    if (ls == -1) ls = slot.defaultLoopSpeed;
  }

  const float notePitch = pitchTable[static_cast<uint8_t>(voice.note)];
  const float rate = loopSpeedRate(ls, tickTempo, notePitch, getSampleRate());
  scanStep(lp - 1, rate, voice, o);
  const int32_t frame = voice.oscFrame[kMemberA][o];
  voice.oscFrame[kMemberB][o] = voice.oscFrame[kMemberC][o] = voice.oscFrame[kMemberD][o] = frame;

  // Glide runs from glideFromNote to the voice's note as glideAmount decays.
  const float glideFrom = pitchTable[static_cast<uint8_t>(glideFromNote)];
  const float tuneRatioOsc = tuneRatio(tune) * slot.pitchFactor;
  const float speed = ((1.0f - glideAmount) * notePitch + glideFrom * glideAmount) * tuneRatioOsc *
                      fineRatio(fine) * pitchBendFactor * pitchMultiplier * voice.tuneRatio;
  voice.oscIncrement[kMemberA][o] = voice.oscIncrement[kMemberC][o] = speed;
}

}  // namespace sablevox
