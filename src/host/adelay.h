// The whole synthesizer as one object. All engine state is held here by value
// in fixed-size arrays; only the programs, the effect objects and the wave
// tables are allocated apart, all at construction. Fields are public plain
// data: the operations of the note, voice and wave subsystems work on them.
//
// Threads: the host's audio thread runs blocks and everything inside them;
// the user-interface thread calls parameter, program and name operations; the
// wave worker reads params and builds tables. Words shared between threads are
// Shared<> (relaxed atomics); everything else belongs to the audio thread.
#pragma once

#include <cstdint>
#include <thread>

#include "filter/filter_routine.h"
#include "host/audio_effect_x.h"
#include "host/global_config.h"
#include "host/large_block.h"
#include "host/parameters.h"
#include "host/program_record.h"
#include "host/shared_word.h"
#include "notes/event_slot.h"
#include "notes/ui_note_queue.h"
#include "voice/render_types.h"
#include "voice/voice.h"
#include "voice/voice_block.h"
#include "waves/wave_store.h"

namespace sablevox {

class Delay;
class Chorus;
class Reverb;
class Equaliser;
class Stereo;

constexpr int kMaxBlock = 65536;
constexpr int kKeys = 128;
constexpr int kPitchTableSize = 256;
constexpr float kMinSampleRate = 8000.0f;
constexpr float kMaxSampleRate = 384000.0f;
constexpr VstInt32 kUniqueId = vstFourCharacters('Q', 'S', 'B', 'V');
inline constexpr char kEffectName[] = "QuorlSablevox";
inline constexpr char kVendorName[] = "Quorl Audio";

class ADelay : public AudioEffectX {
 public:
  explicit ADelay(audioMasterCallback audioMaster);
  ~ADelay() override;
  // A megabyte of block buffers, touched only as far as the host's blocks
  // reach: zeroed pages of its own, out of the heap.
  SABLEVOX_LARGE_BLOCK_OPERATORS

  // Frame operations.
  void setParameter(VstInt32 index, float value) override;
  float getParameter(VstInt32 index) override;
  void process(float** inputs, float** outputs, VstInt32 sampleFrames) override;
  void processReplacing(float** inputs, float** outputs, VstInt32 sampleFrames) override;
  void setProgram(VstInt32 program) override;
  void setProgramName(char* name) override;
  void getProgramName(char* name) override;
  void getParameterLabel(VstInt32 index, char* label) override;
  void getParameterDisplay(VstInt32 index, char* text) override;
  void getParameterName(VstInt32 index, char* text) override;
  void setSampleRate(float sampleRate) override;
  void open() override;
  void suspend() override;
  void resume() override;
  VstInt32 processEvents(VstEvents* events) override;
  bool getProgramNameIndexed(VstInt32 category, VstInt32 index, char* text) override;
  bool getOutputProperties(VstInt32 index, VstPinProperties* properties) override;
  VstPlugCategory getPlugCategory() override;
  bool getEffectName(char* name) override;
  bool getVendorString(char* text) override;
  bool getProductString(char* text) override;
  VstInt32 getVendorVersion() override;
  VstInt32 canDo(char* text) override;
  VstIntPtr dispatcher(VstInt32 opcode, VstInt32 index, VstIntPtr value, void* ptr,
                       float opt) override;
  // MIDI activity and key display for the editor; nothing here.
  virtual void setKeyDisplay(int index, float value);

  // Engine operations.
  void resetEngine();
  void loadBank(int bank);
  void slowRefresh();
  void eventPass(int limit);
  void globalTick(int tickLength);
  void voiceTick(int voiceIndex);
  // Wave position and speed of one oscillator of a voice, from that
  // oscillator's parameter values (raw, as params holds them).
  void oscillatorControl(int voiceIndex, int oscillator, float wave, float mod, float loop,
                         float loopSpeed, float tune, float fine);
  void renderVoice(int voiceIndex, int sampleCount, float* outLeft, float* outRight, int offset,
                   int blockLength);
  void arpTick(int type, int rhythm, bool active, double tempo, float sampleRate, int tickLength);
  void arpNoteOn(int note, int velocity, bool active);
  void arpNoteOff(int note, bool active);
  void noteOn(int note, int velocity);
  void noteOff(int note);
  bool wavesReady() const;

  // Notes from the user-interface thread (the editor's keyboard): queued and
  // played by the audio thread at its next tick, so that voice records are
  // touched by one thread only.
  void uiNoteOn(int note, int velocity);
  void uiNoteOff(int note);
  void drainUiNotes();

  // Members, in the order of the design.
  std::thread workerThread;
  GlobalConfig* config = nullptr;
  Shared<bool> rebuildWaves{false};
  OscRender osc1Render = nullptr;
  OscRender osc2Render = nullptr;
  OutputStage outputStage = nullptr;
  ProgramRecord* programs = nullptr;
  Shared<float> params[kNumParams];
  EventSlot eventQueue[kEventSlots];
  FilterRoutine filterRoutine = filterNone;
  float outputHistoryLeft = 0.0f;
  float outputHistoryRight = 0.0f;
  Delay* delay = nullptr;
  Chorus* chorus = nullptr;
  Reverb* reverb = nullptr;
  Equaliser* equaliser = nullptr;
  Stereo* stereo = nullptr;
  int lastEffType = 0;
  Shared<bool> effectsAsleep{false};
  // The records live in small pages of their own (voice_block.h).
  VoiceBlock voiceBlock;
  VoiceBlock::Voices& voices = voiceBlock.voices();
  // Phase increment per note at the current rate; written by setSampleRate.
  Shared<float> pitchTable[kPitchTableSize];
  float pitchBendFactor = 1.0f;
  float modWheelRaw = 0.0f;
  float modWheelSmoothed = 0.0f;
  bool sustainOn = false;
  int activeVoices = 1;
  bool envVolPop = false;
  // The wave slots, both wave tables, currentWave and currentMod.
  WaveStore waves;
  float oscGain[2] = {0.0f, 0.0f};
  float mixLeft[kMaxBlock];
  float mixRight[kMaxBlock];
  float dryLeft[kMaxBlock];
  float dryRight[kMaxBlock];
  uint8_t fatMode = 0;
  float fatRatio[4] = {1.0f, 1.0f, 1.0f, 1.0f};
  bool oscEnabled[2] = {false, false};
  float driveLow = 0.0f;
  float driveHigh = 0.0f;
  int refreshCountdown = 0;
  int tickLength = 0;
  float samplesToTick = 0.0f;
  // How far the audio rendered has run ahead of the wall clock, in seconds,
  // and the steady clock at the last block (audio thread): the sign of an
  // export for hosts that don't tell their process level.
  double renderLead = 0.0;
  int64_t lastBlockNanos = 0;
  double lastBlockSeconds = 0.0;

  // Arpeggiator.
  bool arpActive = false;
  bool arpKeys[kKeys] = {};
  bool arpKeysPrevious[kKeys] = {};
  bool arpHeldKeys[kKeys] = {};
  int arpPosition = 0;
  int arpLastStep = -1;
  int arpNote = 0;
  int arpSavedNote = 0;
  int arpDirection = 0;
  uint8_t arpOctaveStep = 0;
  uint8_t arpVelocity = 0;
  bool arpChordMode = false;
  int arpLastType = 0;
  bool arpGateOpen = false;

  // Key state.
  bool keyDown[kKeys] = {};
  bool sustainedKeys[kKeys] = {};

  // Global LFO, mod wheel and decoded LFO indices.
  int lfoSpeedIndex = 0;
  int lfoTypeIndex = 0;
  float pitchMultiplier = 1.0f;
  float cutoffOffset = 0.0f;
  float resoOffset = 0.0f;
  float crossfadeOffset = 0.0f;
  float vibratoPhase = 0.0f;
  float sharedLfoPhase = 0.0f;
  float sharedLfoPrevious = 0.0f;
  float sharedLfoHeld = 0.0f;
  float sharedLfoValue = 0.0f;
  // The host's tempo as globalTick read it, for the voices of the same tick.
  double tickTempo = 120.0;

  // Glide.
  int8_t glideFromNote = 0;
  float glideAmount = 0.0f;
  int8_t firstLegatoNote = 0;

  Shared<bool> workerStop{false};
  Shared<bool> resetRequested{false};
  // Keys of the editor's keyboard on their way to the audio thread.
  UiNoteQueue uiNotes;
  // Links of the registry of instances a host holds (live_instances.h).
  ADelay* nextLive = nullptr;
  ADelay* previousLive = nullptr;

 private:
  void makeProgramCurrent(int program);
  void renderBlock(float** outputs, int count);
  void runEffects(float* left, float* right, int count);
  void workerLoop();
  // Builds the first tables on the calling thread and starts the worker.
  void startPlaying();
  void trackRenderLead(int count);
  bool hostRendersOffline();
  void buildDueTablesIfOffline();
  void startWorker();
  void stopWorker();
};

// ADelay with its editor: the class the entry creates.
class ADelayEdit : public ADelay {
 public:
  explicit ADelayEdit(audioMasterCallback audioMaster);
  ~ADelayEdit() override;

  void setParameter(VstInt32 index, float value) override;
  bool getEffectName(char* name) override;
  bool getProductString(char* text) override;
  void setKeyDisplay(int index, float value) override;
};

}  // namespace sablevox
