// Birth and death of the engine object, and what suspend, resume and a change
// of sample rate reset.
#include "host/adelay.h"

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <new>

#include "effects/chorus.h"
#include "effects/delay.h"
#include "effects/equaliser.h"
#include "effects/reverb.h"
#include "effects/stereo.h"
#include "host/live_instances.h"
#include "voice/oscillator_render.h"
#include "voice/output_stage.h"

namespace sablevox {

ADelay::ADelay(audioMasterCallback audioMaster)
    : AudioEffectX(audioMaster, kNumPrograms, kNumParams) {
  config = new GlobalConfig();
  config->loadAll();

  programs = new ProgramRecord[kNumPrograms];
  loadBank(config->get(kBank));

  std::memset(keyDown, 0, sizeof keyDown);
  std::memset(sustainedKeys, 0, sizeof sustainedKeys);

  makeProgramCurrent(0);

  // Arpeggiator keys, voices, counters, LFO indices, averaging history and
  // the effects' sleep: what a reset clears, and a little more. The voices
  // come zeroed from their block; the reset touches only the words in use.
  resetEngine();
  std::memset(arpKeysPrevious, 0, sizeof arpKeysPrevious);
  rebuildWaves = true;
  pitchMultiplier = 1.0f;
  cutoffOffset = 0.0f;
  resoOffset = 0.0f;
  crossfadeOffset = 0.0f;
  pitchBendFactor = 1.0f;
  modWheelRaw = 0.0f;
  modWheelSmoothed = 0.0f;
  sustainOn = false;

  // Wave slots, table buffers, level table; currentWave -1 so that the
  // worker's first pass builds both tables.
  waves.init();

  filterRoutine = filterNone;
  osc1Render = renderNoise;
  osc2Render = renderNoise;
  outputStage = drivePlain;

  delay = new Delay();
  chorus = new Chorus();
  reverb = new Reverb();
  equaliser = new Equaliser();
  stereo = new Stereo();

  if (audioMaster != nullptr) {
    setNumInputs(0);
    setNumOutputs(2);
    isSynth(true);
    hasVu(false);
    hasClip(true);
    canProcessReplacing(true);
    setUniqueID(kUniqueId);
  }

  // The worker starts at open or at the first resume: a host that only
  // scans the plug-in costs no thread.
  ADelay::suspend();
}

ADelay::~ADelay() {
  removeLiveInstance(this);
  stopWorker();
  if (config != nullptr) config->saveAll();
  delete[] programs;
  delete delay;
  delete chorus;
  delete reverb;
  delete equaliser;
  delete stereo;
  delete config;
}

void ADelay::makeProgramCurrent(int program) {
  curProgram = program;
  for (int i = 0; i < kNumParams; ++i) ADelay::setParameter(i, programs[program].values[i]);
  resetRequested = true;
}

// Before the host's first block, so that an instance never plays before its
// tables exist; an offline host's export then starts the same every time.
void ADelay::startPlaying() {
  waves.buildNow(params, rebuildWaves);
  startWorker();
}

void ADelay::startWorker() {
  if (workerThread.joinable()) return;
  workerStop = false;
  try {
    workerThread = std::thread([this] { workerLoop(); });
  } catch (...) {
    // No thread to be had: tables then change only while a host renders
    // offline, but nothing escapes into the host.
  }
}

void ADelay::stopWorker() {
  workerStop = true;
  if (workerThread.joinable()) workerThread.join();
}

void ADelay::workerLoop() {
  // The lowest priority a normal thread may take: the worker must never take
  // time from the audio thread, yet must not starve while a host renders
  // offline on every core.
  setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), 19);
  constexpr auto kSleepStep = std::chrono::milliseconds(10);
  while (!workerStop) {
    waves.workerPass(params, rebuildWaves, workerStop);
    // 100 ms between passes, in steps, so that a stop is seen quickly.
    for (int i = 0; i < 10 && !workerStop; ++i) std::this_thread::sleep_for(kSleepStep);
  }
}

bool ADelay::wavesReady() const {
  if (rebuildWaves) return false;
  for (int osc = 0; osc < 2; ++osc) {
    const int wave = steppedIndex(params[kOsc1Wave + osc], 85);
    const int mod = steppedIndex(params[kOsc1Mod + osc], 25);
    if (waves.currentWave(osc) != wave || waves.currentMod(osc) != mod) return false;
  }
  return true;
}

void ADelay::resetEngine() {
  std::memset(arpKeys, 0, sizeof arpKeys);
  std::memset(arpHeldKeys, 0, sizeof arpHeldKeys);
  refreshCountdown = 0;
  samplesToTick = 0.0f;
  for (Voice& voice : voices) clearVoice(voice);
  lfoTypeIndex = 0;
  lfoSpeedIndex = 0;
  effectsAsleep = false;
  outputHistoryLeft = 0.0f;
  outputHistoryRight = 0.0f;
}

void ADelay::suspend() {
  resetEngine();
  delay->reset();
  chorus->reset();
  reverb->reset();
  resetRequested = false;
  for (Voice& voice : voices) clearVoice(voice);
  refreshCountdown = 0;
  oscGain[0] = 0.0f;
  oscGain[1] = 0.0f;
}

void ADelay::open() {
  startPlaying();
}

void ADelay::resume() {
  // A host that never sent effOpen.
  if (!workerThread.joinable()) startPlaying();
  effectsAsleep = false;
  wantEvents(1);
  needIdle();
}

void ADelay::setSampleRate(float rate) {
  // Every rate-derived length divides by or multiplies with this number: a
  // hostile value is held to the range the engine is made for.
  if (!(rate >= kMinSampleRate)) rate = rate > 0.0f ? kMinSampleRate : 44100.0f;
  if (rate > kMaxSampleRate) rate = kMaxSampleRate;
  AudioEffectX::setSampleRate(rate);
  // Entry n: float(f(n)) * 0.0078125 * (1/rate), f(0) = 523.25 Hz, twelve to
  // the octave; entry 0 stands for 4.088 Hz and entry 69 for 220 Hz.
  const float r = static_cast<float>(1.0 / static_cast<double>(rate));
  double f = 523.2511306007598;
  for (int n = 0; n < kPitchTableSize; ++n) {
    pitchTable[n] = static_cast<float>(f) * 0.0078125f * r;
    f *= 1.059463094359;
  }
}

void ADelay::setKeyDisplay(int /*index*/, float /*value*/) {}

ADelayEdit::ADelayEdit(audioMasterCallback audioMaster) : ADelay(audioMaster) {}

ADelayEdit::~ADelayEdit() = default;

void ADelayEdit::setParameter(VstInt32 index, float value) {
  // The two unused words stay in the records only.
  if (index < 0 || index > 48 || index == kParam43) return;
  ADelay::setParameter(index, value);
}

bool ADelayEdit::getEffectName(char* name) {
  return ADelay::getEffectName(name);
}

bool ADelayEdit::getProductString(char* text) {
  return ADelay::getProductString(text);
}

void ADelayEdit::setKeyDisplay(int index, float value) {
  ADelay::setKeyDisplay(index, value);
}

}  // namespace sablevox
