// One loaded VST 2 plug-in instance, driven the way a host drives it: dlopen,
// the entry (VSTPluginMain, else main), dispatcher calls, parameters, MIDI,
// and audio blocks over a stereo buffer. Not thread-safe as a whole: call the
// lifecycle operations from one thread; setParameter/getParameter/dispatch may
// run on another thread at the same time as the block calls, as in a host.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/vst2.h"
#include "hostlib/host.h"
#include "hostlib/midi_events.h"

namespace sablevox::host {

// A message due at an absolute frame of a render (its deltaFrames is ignored).
struct TimedMidi {
  int64_t frame;
  MidiMessage message;
};

class Plugin {
 public:
  // Loads the file and calls its entry with Host::callback. On failure returns
  // null and, if `error` is given, says why (missing file, not loadable, no
  // entry, entry returned null, not a VST 2 effect). `host` answers the
  // plug-in's calls (a fresh one if null); keep a copy to read its log even
  // when loading fails.
  static std::unique_ptr<Plugin> load(const std::string& path, std::string* error = nullptr,
                                      std::shared_ptr<Host> host = nullptr);
  // The same, with an entry function of this process instead of a file (for
  // tests with a fake plug-in); `name` stands for the path in messages.
  using Entry = AEffect* (*)(audioMasterCallback);
  static std::unique_ptr<Plugin> fromEntry(Entry entry, const std::string& name,
                                           std::string* error = nullptr,
                                           std::shared_ptr<Host> host = nullptr);
  // Suspends if resumed, closes if not closed, then unloads the library
  // unless keepLoaded() was asked.
  ~Plugin();
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;

  AEffect* effect() const { return effect_; }  // null after close()
  Host& host() { return *host_; }
  const std::string& path() const { return path_; }

  VstIntPtr dispatch(VstInt32 opcode, VstInt32 index = 0, VstIntPtr value = 0, void* ptr = nullptr,
                     float opt = 0.0f);

  // Lifecycle, in a host's order: open, setSampleRate, setBlockSize, resume,
  // blocks..., suspend, close. setBlockSize also sizes the scratch buffers.
  void open();
  void setSampleRate(double rate);
  void setBlockSize(VstInt32 frames);
  void resume();   // effMainsChanged 1
  void suspend();  // effMainsChanged 0
  void close();    // effClose; the AEffect is gone afterwards

  // Fields of the AEffect (0 after close).
  VstInt32 numPrograms() const;
  VstInt32 numParams() const;
  VstInt32 numInputs() const;
  VstInt32 numOutputs() const;
  VstInt32 flags() const;
  VstInt32 uniqueId() const;
  VstInt32 version() const;

  // Strings. Strict (the default): each asked with a buffer of exactly the
  // interface's N+1 bytes, so a sanitizer sees a plug-in that writes beyond
  // it. Lenient: a 256-byte buffer, as common hosts give, for plug-ins that
  // write more (amsynth writes 32 bytes for an 8-character name).
  void setStrictStrings(bool strict) { strictStrings_ = strict; }
  // Leaves the library loaded at destruction, for plug-ins whose leaks a
  // sanitizer can attribute (and suppress) only while their code is mapped.
  void keepLoaded() { keepLoaded_ = true; }
  std::string effectName();     // effGetEffectName, 32+1
  std::string vendorString();   // effGetVendorString, 64+1
  std::string productString();  // effGetProductString, 64+1
  std::string programName();    // effGetProgramName, 24+1
  // effGetProgramNameIndexed, 24+1; *filled tells whether the plug-in answered.
  std::string programNameIndexed(int index, bool* filled = nullptr);
  std::string paramName(int index);          // effGetParamName, 8+1
  std::string paramLabel(int index);         // effGetParamLabel, 8+1
  std::string paramDisplay(int index);       // effGetParamDisplay, 8+1
  VstIntPtr canDo(const std::string& text);  // effCanDo: 1, -1 or 0
  VstIntPtr vendorVersion() { return dispatch(effGetVendorVersion); }
  VstIntPtr vstVersion() { return dispatch(effGetVstVersion); }
  VstIntPtr category() { return dispatch(effGetPlugCategory); }

  void setProgram(int program) { dispatch(effSetProgram, 0, program); }
  int program() { return static_cast<int>(dispatch(effGetProgram)); }
  void setParameter(int index, float value);
  float getParameter(int index);

  // effProcessEvents with one VstEvents of these messages; the records stay
  // valid until the next send. Returns the plug-in's answer.
  VstIntPtr sendMidi(std::span<const MidiMessage> messages);
  VstIntPtr sendEvents(EventList& events);

  // One block into left/right (output 0 and 1; a mono plug-in's output is
  // copied to both; further outputs are discarded). Inputs are silence. The
  // host's transport advances by `frames` afterwards.
  void processReplacing(float* left, float* right, VstInt32 frames);
  // The accumulating form: adds to left/right. False if the plug-in has no
  // process function.
  bool process(float* left, float* right, VstInt32 frames);

  // Sablevox builds its wave tables on a worker thread. Waits until both
  // tables match the current parameters (our vendor call), running blocks of
  // no samples meanwhile: the plug-in takes up finished tables at the head of
  // a block, and the worker may need that before it can build the next one.
  // Such a block renders nothing and moves no clock. False after `limit`.
  bool waitForSablevoxWaves(std::chrono::milliseconds limit = std::chrono::seconds(60));
  // Sets Sablevox's process-wide random generators (our vendor call); false
  // if the plug-in does not know the call.
  bool seedSablevoxRandom(uint32_t seed);

  // Renders `frames` samples in blocks of at most blockSize, sending each
  // message in the block that holds its frame with deltaFrames = frame -
  // block start. `events` must be sorted by frame; those at or after `frames`
  // are not sent. beforeBlock(start, length), if given, runs ahead of each
  // block (to change the tempo, show progress, wait for the plug-in), and
  // afterBlock gets the block's samples; when either answers false the
  // render stops there and returns false.
  //
  // A program change or a reset controller (120, 123 to 127) makes Sablevox
  // reset at the head of its next block, so a block ends right after one
  // (after the last of its frame; 121, reset all controllers, is taken as
  // one too, for other instruments), and what follows reaches the
  // plug-in only in a later block. Sablevox takes MIDI at 2.5 ms ticks: a
  // block that short may take none, so the block before a reset is cut to
  // leave the reset's block a tick long; where the block size does not allow
  // it, the messages after the reset wait until a tick has passed. Resets in
  // the first tick are sent in a stretch before frame 0 whose sound is
  // dropped (beforeBlock sees negative starts there); so is a tick with no
  // message at all when settleBeforeStart(true) was asked for.
  using BlockHook = std::function<bool(int64_t start, VstInt32 length)>;
  using BlockSink = std::function<bool(const float* left, const float* right, VstInt32 length)>;
  bool renderStream(std::span<const TimedMidi> events, int64_t frames, VstInt32 blockSize,
                    const BlockHook& beforeBlock, const BlockSink& afterBlock);
  // The same into left/right (resized to the frames rendered).
  bool render(std::span<const TimedMidi> events, int64_t frames, VstInt32 blockSize,
              std::vector<float>& left, std::vector<float>& right,
              const BlockHook& beforeBlock = {});
  // Renders start with one dropped tick even without a reset in it.
  void settleBeforeStart(bool on) { settleBeforeStart_ = on; }

 private:
  static std::unique_ptr<Plugin> start(Entry entry, void* library, const std::string& path,
                                       std::string* error, std::shared_ptr<Host> host);
  Plugin(std::string path, void* library, AEffect* effect, std::shared_ptr<Host> host);
  std::string askString(VstInt32 opcode, VstInt32 index, size_t limit, VstIntPtr value = 0,
                        VstIntPtr* answer = nullptr);
  void prepareBuffers(VstInt32 frames);

  std::string path_;
  void* library_;  // null for an entry of this process
  AEffect* effect_;
  std::shared_ptr<Host> host_;
  bool resumed_ = false;
  bool strictStrings_ = true;
  bool keepLoaded_ = false;
  bool settleBeforeStart_ = false;
  EventList events_;
  std::vector<std::vector<float>> scratch_;  // silent inputs and the unused outputs
  std::vector<float*> inputs_;
  std::vector<float*> outputs_;
  VstInt32 scratchFrames_ = 0;
};

}  // namespace sablevox::host
