// The recording stand-in plug-in.
#include "fake_plugin.h"

#include <cstring>

namespace sablevox::testing {
namespace {

// Fills exactly `limit` characters and the zero, the most a plug-in may
// write, so that a host's buffer of the promised size is just enough.
void fillText(void* ptr, char letter, int limit) {
  char* text = static_cast<char*>(ptr);
  std::memset(text, letter, static_cast<size_t>(limit));
  text[limit] = '\0';
}

VstIntPtr dispatcher(AEffect* /*effect*/, VstInt32 opcode, VstInt32 index, VstIntPtr value,
                     void* ptr, float opt) {
  FakePlugin& fake = FakePlugin::state();
  fake.opcodes.push_back(opcode);
  switch (opcode) {
    case effClose:
      fake.closed = true;
      return 1;
    case effSetSampleRate:
      fake.sampleRate = opt;
      return 0;
    case effSetBlockSize:
      fake.blockSize = value;
      return 0;
    case effGetEffectName:
      fillText(ptr, 'E', kVstMaxEffectNameLen);
      return 1;
    case effGetProductString:
      fillText(ptr, 'P', kVstMaxProductStrLen);
      return 1;
    case effGetParamName:
      fillText(ptr, static_cast<char>('a' + (index & 3)), kVstMaxParamStrLen);
      return 0;
    case effGetProgramNameIndexed:
      if (index != 0) return 0;
      fillText(ptr, 'N', kVstMaxProgNameLen);
      return 1;
    case effProcessEvents: {
      const auto* list = static_cast<const VstEvents*>(ptr);
      auto* const* slots = reinterpret_cast<VstEvent* const*>(
          reinterpret_cast<const unsigned char*>(list) + offsetof(VstEvents, events));
      for (VstInt32 i = 0; i < list->numEvents; ++i) {
        const auto* midi = reinterpret_cast<const VstMidiEvent*>(slots[i]);
        FakeEvent event{fake.framesRendered, midi->deltaFrames, {}};
        std::memcpy(event.bytes, midi->midiData, 4);
        fake.events.push_back(event);
      }
      return 1;
    }
    case effCanDo:
      return std::strcmp(static_cast<const char*>(ptr), "receiveVstMidiEvent") == 0 ? 1 : -1;
    default:
      return 0;
  }
}

void render(AEffect* effect, float** outputs, VstInt32 frames, bool accumulate) {
  FakePlugin& fake = FakePlugin::state();
  const VstIntPtr time = fake.host(effect, audioMasterGetTime, 0, 0x600, nullptr, 0.0f);
  FakeTime seen{time != 0, {}};
  if (time != 0) seen.info = *reinterpret_cast<const VstTimeInfo*>(time);
  fake.times.push_back(seen);
  fake.blockLengths.push_back(frames);
  for (VstInt32 i = 0; i < frames; ++i) {
    outputs[0][i] = (accumulate ? outputs[0][i] : 0.0f) + FakePlugin::kLeft;
    outputs[1][i] = (accumulate ? outputs[1][i] : 0.0f) + FakePlugin::kRight;
  }
  fake.framesRendered += frames;
}

void processReplacing(AEffect* effect, float** /*inputs*/, float** outputs, VstInt32 frames) {
  render(effect, outputs, frames, false);
}

void process(AEffect* effect, float** /*inputs*/, float** outputs, VstInt32 frames) {
  render(effect, outputs, frames, true);
}

void setParameter(AEffect* /*effect*/, VstInt32 index, float value) {
  FakePlugin::state().parameters[index & 3] = value;
}

float getParameter(AEffect* /*effect*/, VstInt32 index) {
  return FakePlugin::state().parameters[index & 3];
}

}  // namespace

FakePlugin& FakePlugin::state() {
  static FakePlugin fake;
  return fake;
}

AEffect* FakePlugin::entry(audioMasterCallback host) {
  FakePlugin& fake = state();
  fake = FakePlugin{};
  fake.host = host;
  if (host(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0f) == 0) return nullptr;
  AEffect& effect = fake.effect;
  effect.magic = kEffectMagic;
  effect.dispatcher = dispatcher;
  effect.process = process;
  effect.processReplacing = processReplacing;
  effect.setParameter = setParameter;
  effect.getParameter = getParameter;
  effect.numPrograms = 1;
  effect.numParams = 4;
  effect.numOutputs = 2;
  effect.flags = effFlagsCanReplacing | effFlagsIsSynth;
  effect.uniqueID = vstFourCharacters('F', 'a', 'k', 'e');
  host(&effect, audioMasterWantMidi, 0, 1, nullptr, 0.0f);
  return &effect;
}

}  // namespace sablevox::testing
