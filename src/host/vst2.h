// Our own declaration of the VST 2 plug-in binary interface (2.3 subset and the
// 2.4 numbering), written from the interface's published facts: types, opcode
// numbers and structure layouts. Every layout is checked by static_asserts.
#pragma once

#include <cstddef>
#include <cstdint>

using VstInt16 = int16_t;
using VstInt32 = int32_t;
using VstIntPtr = intptr_t;

struct AEffect;

using audioMasterCallback = VstIntPtr (*)(AEffect* effect, VstInt32 opcode, VstInt32 index,
                                          VstIntPtr value, void* ptr, float opt);
using AEffectDispatcherProc = VstIntPtr (*)(AEffect* effect, VstInt32 opcode, VstInt32 index,
                                            VstIntPtr value, void* ptr, float opt);
using AEffectProcessProc = void (*)(AEffect* effect, float** inputs, float** outputs,
                                    VstInt32 sampleFrames);
using AEffectProcessDoubleProc = void (*)(AEffect* effect, double** inputs, double** outputs,
                                          VstInt32 sampleFrames);
using AEffectSetParameterProc = void (*)(AEffect* effect, VstInt32 index, float parameter);
using AEffectGetParameterProc = float (*)(AEffect* effect, VstInt32 index);

constexpr VstInt32 vstFourCharacters(char a, char b, char c, char d) {
  return static_cast<VstInt32>((static_cast<uint32_t>(static_cast<unsigned char>(a)) << 24) |
                               (static_cast<uint32_t>(static_cast<unsigned char>(b)) << 16) |
                               (static_cast<uint32_t>(static_cast<unsigned char>(c)) << 8) |
                               static_cast<uint32_t>(static_cast<unsigned char>(d)));
}

constexpr VstInt32 kEffectMagic = vstFourCharacters('V', 's', 't', 'P');
constexpr VstInt32 kVstIdentify = vstFourCharacters('N', 'v', 'E', 'f');

struct AEffect {
  VstInt32 magic;
  AEffectDispatcherProc dispatcher;
  AEffectProcessProc process;  // accumulating form
  AEffectSetParameterProc setParameter;
  AEffectGetParameterProc getParameter;
  VstInt32 numPrograms;
  VstInt32 numParams;
  VstInt32 numInputs;
  VstInt32 numOutputs;
  VstInt32 flags;
  VstIntPtr resvd1;
  VstIntPtr resvd2;
  VstInt32 initialDelay;
  VstInt32 realQualities;
  VstInt32 offQualities;
  float ioRatio;
  void* object;
  void* user;
  VstInt32 uniqueID;
  VstInt32 version;
  AEffectProcessProc processReplacing;
  AEffectProcessDoubleProc processDoubleReplacing;
  char future[56];
};

enum VstAEffectFlags : VstInt32 {
  effFlagsHasEditor = 1,
  effFlagsHasClip = 2,
  effFlagsHasVu = 4,
  effFlagsCanMono = 8,
  effFlagsCanReplacing = 16,
  effFlagsProgramChunks = 32,
  effFlagsIsSynth = 256,
  effFlagsNoSoundInStop = 512,
  effFlagsCanDoubleReplacing = 4096,
};

// Host to plug-in.
enum AEffectOpcodes : VstInt32 {
  effOpen = 0,
  effClose = 1,
  effSetProgram = 2,
  effGetProgram = 3,
  effSetProgramName = 4,
  effGetProgramName = 5,
  effGetParamLabel = 6,
  effGetParamDisplay = 7,
  effGetParamName = 8,
  effGetVu = 9,
  effSetSampleRate = 10,
  effSetBlockSize = 11,
  effMainsChanged = 12,
  effEditGetRect = 13,
  effEditOpen = 14,
  effEditClose = 15,
  effEditDraw = 16,
  effEditMouse = 17,
  effEditKey = 18,
  effEditIdle = 19,
  effEditTop = 20,
  effEditSleep = 21,
  effIdentify = 22,
  effGetChunk = 23,
  effSetChunk = 24,
  effProcessEvents = 25,
  effCanBeAutomated = 26,
  effString2Parameter = 27,
  effGetNumProgramCategories = 28,
  effGetProgramNameIndexed = 29,
  effCopyProgram = 30,
  effConnectInput = 31,
  effConnectOutput = 32,
  effGetInputProperties = 33,
  effGetOutputProperties = 34,
  effGetPlugCategory = 35,
  effGetCurrentPosition = 36,
  effGetDestinationBuffer = 37,
  effOfflineNotify = 38,
  effOfflinePrepare = 39,
  effOfflineRun = 40,
  effProcessVarIo = 41,
  effSetSpeakerArrangement = 42,
  effSetBlockSizeAndSampleRate = 43,
  effSetBypass = 44,
  effGetEffectName = 45,
  effGetErrorText = 46,
  effGetVendorString = 47,
  effGetProductString = 48,
  effGetVendorVersion = 49,
  effVendorSpecific = 50,
  effCanDo = 51,
  effGetTailSize = 52,
  effIdle = 53,
  effGetIcon = 54,
  effSetViewPosition = 55,
  effGetParameterProperties = 56,
  effKeysRequired = 57,
  effGetVstVersion = 58,
  effEditKeyDown = 59,
  effEditKeyUp = 60,
  effSetEditKnobMode = 61,
  effGetMidiProgramName = 62,
  effGetCurrentMidiProgram = 63,
  effGetMidiProgramCategory = 64,
  effHasMidiProgramsChanged = 65,
  effGetMidiKeyName = 66,
  effBeginSetProgram = 67,
  effEndSetProgram = 68,
  effGetSpeakerArrangement = 69,
  effShellGetNextPlugin = 70,
  effStartProcess = 71,
  effStopProcess = 72,
  effSetTotalSampleToProcess = 73,
  effSetPanLaw = 74,
  effBeginLoadBank = 75,
  effBeginLoadProgram = 76,
  effSetProcessPrecision = 77,
  effGetNumMidiInputChannels = 78,
  effGetNumMidiOutputChannels = 79,
};

// Plug-in to host. Opcode 5 is unused.
enum AudioMasterOpcodes : VstInt32 {
  audioMasterAutomate = 0,
  audioMasterVersion = 1,
  audioMasterCurrentId = 2,
  audioMasterIdle = 3,
  audioMasterPinConnected = 4,
  audioMasterWantMidi = 6,
  audioMasterGetTime = 7,
  audioMasterProcessEvents = 8,
  audioMasterSetTime = 9,
  audioMasterTempoAt = 10,
  audioMasterGetNumAutomatableParameters = 11,
  audioMasterGetParameterQuantization = 12,
  audioMasterIOChanged = 13,
  audioMasterNeedIdle = 14,
  audioMasterSizeWindow = 15,
  audioMasterGetSampleRate = 16,
  audioMasterGetBlockSize = 17,
  audioMasterGetInputLatency = 18,
  audioMasterGetOutputLatency = 19,
  audioMasterGetPreviousPlug = 20,
  audioMasterGetNextPlug = 21,
  audioMasterWillReplaceOrAccumulate = 22,
  audioMasterGetCurrentProcessLevel = 23,
  audioMasterGetAutomationState = 24,
  audioMasterOfflineStart = 25,
  audioMasterOfflineRead = 26,
  audioMasterOfflineWrite = 27,
  audioMasterOfflineGetCurrentPass = 28,
  audioMasterOfflineGetCurrentMetaPass = 29,
  audioMasterSetOutputSampleRate = 30,
  audioMasterGetOutputSpeakerArrangement = 31,
  audioMasterGetVendorString = 32,
  audioMasterGetProductString = 33,
  audioMasterGetVendorVersion = 34,
  audioMasterVendorSpecific = 35,
  audioMasterSetIcon = 36,
  audioMasterCanDo = 37,
  audioMasterGetLanguage = 38,
  audioMasterOpenWindow = 39,
  audioMasterCloseWindow = 40,
  audioMasterGetDirectory = 41,
  audioMasterUpdateDisplay = 42,
  audioMasterBeginEdit = 43,
  audioMasterEndEdit = 44,
  audioMasterOpenFileSelector = 45,
  audioMasterCloseFileSelector = 46,
  audioMasterEditFile = 47,
  audioMasterGetChunkFile = 48,
  audioMasterGetInputSpeakerArrangement = 49,
};

// Answers to audioMasterGetCurrentProcessLevel.
enum VstProcessLevels : VstInt32 {
  kVstProcessLevelUnknown = 0,
  kVstProcessLevelUser = 1,
  kVstProcessLevelRealtime = 2,
  kVstProcessLevelPrefetch = 3,
  kVstProcessLevelOffline = 4,
};

enum VstStringLimits : VstInt32 {
  kVstMaxProgNameLen = 24,
  kVstMaxParamStrLen = 8,
  kVstMaxVendorStrLen = 64,
  kVstMaxProductStrLen = 64,
  kVstMaxEffectNameLen = 32,
  kVstMaxNameLen = 64,
  kVstMaxLabelLen = 64,
  kVstMaxShortLabelLen = 8,
  kVstMaxCategLabelLen = 24,
  kVstMaxFileNameLen = 100,
};

enum VstPlugCategory : VstInt32 {
  kPlugCategUnknown = 0,
  kPlugCategEffect = 1,
  kPlugCategSynth = 2,
  kPlugCategAnalysis = 3,
  kPlugCategMastering = 4,
  kPlugCategSpacializer = 5,
  kPlugCategRoomFx = 6,
  kPlugSurroundFx = 7,
  kPlugCategRestoration = 8,
  kPlugCategOfflineProcess = 9,
  kPlugCategShell = 10,
  kPlugCategGenerator = 11,
};

enum VstEventTypes : VstInt32 {
  kVstMidiType = 1,
  kVstAudioType = 2,
  kVstVideoType = 3,
  kVstParameterType = 4,
  kVstTriggerType = 5,
  kVstSysExType = 6,
};

struct VstEvent {
  VstInt32 type;
  VstInt32 byteSize;
  VstInt32 deltaFrames;
  VstInt32 flags;
  char data[16];
};

struct VstEvents {
  VstInt32 numEvents;
  VstIntPtr reserved;
  VstEvent* events[2];  // really numEvents long
};

struct VstMidiEvent {
  VstInt32 type;
  VstInt32 byteSize;
  VstInt32 deltaFrames;
  VstInt32 flags;
  VstInt32 noteLength;
  VstInt32 noteOffset;
  char midiData[4];
  char detune;
  char noteOffVelocity;
  char reserved1;
  char reserved2;
};

struct VstMidiSysexEvent {
  VstInt32 type;
  VstInt32 byteSize;
  VstInt32 deltaFrames;
  VstInt32 flags;
  VstInt32 dumpBytes;
  VstIntPtr resvd1;
  char* sysexDump;
  VstIntPtr resvd2;
};

enum VstTimeInfoFlags : VstInt32 {
  kVstTransportChanged = 1,
  kVstTransportPlaying = 1 << 1,
  kVstTransportCycleActive = 1 << 2,
  kVstTransportRecording = 1 << 3,
  kVstAutomationWriting = 1 << 6,
  kVstAutomationReading = 1 << 7,
  kVstNanosValid = 1 << 8,
  kVstPpqPosValid = 1 << 9,
  kVstTempoValid = 1 << 10,
  kVstBarsValid = 1 << 11,
  kVstCyclePosValid = 1 << 12,
  kVstTimeSigValid = 1 << 13,
  kVstSmpteValid = 1 << 14,
  kVstClockValid = 1 << 15,
};

struct VstTimeInfo {
  double samplePos;
  double sampleRate;
  double nanoSeconds;
  double ppqPos;
  double tempo;
  double barStartPos;
  double cycleStartPos;
  double cycleEndPos;
  VstInt32 timeSigNumerator;
  VstInt32 timeSigDenominator;
  VstInt32 smpteOffset;
  VstInt32 smpteFrameRate;
  VstInt32 samplesToNextClock;
  VstInt32 flags;
};

enum VstPinPropertiesFlags : VstInt32 {
  kVstPinIsActive = 1,
  kVstPinIsStereo = 2,
  kVstPinUseSpeaker = 4,
};

struct VstPinProperties {
  char label[kVstMaxLabelLen];
  VstInt32 flags;
  VstInt32 arrangementType;
  char shortLabel[kVstMaxShortLabelLen];
  char future[48];
};

struct ERect {
  VstInt16 top;
  VstInt16 left;
  VstInt16 bottom;
  VstInt16 right;
};

struct VstKeyCode {
  VstInt32 character;
  unsigned char virt;
  unsigned char modifier;
};

enum VstModifierKeys : unsigned char {
  MODIFIER_SHIFT = 1,
  MODIFIER_ALTERNATE = 2,
  MODIFIER_COMMAND = 4,
  MODIFIER_CONTROL = 8,
};

enum VstVirtualKey : unsigned char {
  VKEY_BACK = 1,
  VKEY_TAB,
  VKEY_CLEAR,
  VKEY_RETURN,
  VKEY_PAUSE,
  VKEY_ESCAPE,
  VKEY_SPACE,
  VKEY_NEXT,
  VKEY_END,
  VKEY_HOME,
  VKEY_LEFT,
  VKEY_UP,
  VKEY_RIGHT,
  VKEY_DOWN,
  VKEY_PAGEUP,
  VKEY_PAGEDOWN,
  VKEY_SELECT,
  VKEY_PRINT,
  VKEY_ENTER,
  VKEY_SNAPSHOT,
  VKEY_INSERT,
  VKEY_DELETE,
  VKEY_HELP,
  VKEY_NUMPAD0,
  VKEY_NUMPAD1,
  VKEY_NUMPAD2,
  VKEY_NUMPAD3,
  VKEY_NUMPAD4,
  VKEY_NUMPAD5,
  VKEY_NUMPAD6,
  VKEY_NUMPAD7,
  VKEY_NUMPAD8,
  VKEY_NUMPAD9,
  VKEY_MULTIPLY,
  VKEY_ADD,
  VKEY_SEPARATOR,
  VKEY_SUBTRACT,
  VKEY_DECIMAL,
  VKEY_DIVIDE,
  VKEY_F1,
  VKEY_F2,
  VKEY_F3,
  VKEY_F4,
  VKEY_F5,
  VKEY_F6,
  VKEY_F7,
  VKEY_F8,
  VKEY_F9,
  VKEY_F10,
  VKEY_F11,
  VKEY_F12,
  VKEY_NUMLOCK,
  VKEY_SCROLL,
  VKEY_SHIFT,
  VKEY_CONTROL,
  VKEY_ALT,
  VKEY_EQUALS,
};

#if defined(__x86_64__) || defined(_M_X64) || defined(__aarch64__)
static_assert(sizeof(AEffect) == 192);
static_assert(offsetof(AEffect, dispatcher) == 8);
static_assert(offsetof(AEffect, numPrograms) == 40);
static_assert(offsetof(AEffect, flags) == 56);
static_assert(offsetof(AEffect, resvd1) == 64);
static_assert(offsetof(AEffect, initialDelay) == 80);
static_assert(offsetof(AEffect, ioRatio) == 92);
static_assert(offsetof(AEffect, object) == 96);
static_assert(offsetof(AEffect, uniqueID) == 112);
static_assert(offsetof(AEffect, processReplacing) == 120);
static_assert(offsetof(AEffect, future) == 136);
static_assert(offsetof(VstEvents, events) == 16);
static_assert(offsetof(VstMidiSysexEvent, sysexDump) == 32);
static_assert(sizeof(VstMidiSysexEvent) == 48);
#endif
static_assert(sizeof(VstEvent) == 32);
static_assert(sizeof(VstMidiEvent) == 32);
static_assert(offsetof(VstMidiEvent, midiData) == 24);
static_assert(sizeof(VstTimeInfo) == 88);
static_assert(offsetof(VstTimeInfo, flags) == 84);
static_assert(sizeof(VstPinProperties) == 128);
static_assert(offsetof(VstPinProperties, shortLabel) == 72);
static_assert(sizeof(ERect) == 8);
static_assert(sizeof(VstKeyCode) == 8);
