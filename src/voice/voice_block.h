// The 32 voice records, in memory of their own. A record is 260 KB, nearly
// all of it the FM filter's two delay lines, which nothing touches until that
// filter plays; in small pages those stay out of the resident set, where in
// the engine record's huge pages the few words every voice uses would make
// all 8.4 MB resident. The memory comes zeroed: every voice idle, every line
// clear, as the lines' written marks say.
#pragma once

#include "host/large_block.h"
#include "voice/voice.h"

namespace sablevox {

class VoiceBlock {
 public:
  using Voices = Voice[kMaxVoices];

  VoiceBlock() : voices_(static_cast<Voices*>(allocateSparseBlock(sizeof(Voices)))) {}
  ~VoiceBlock() { freeLargeBlock(voices_, sizeof(Voices)); }
  VoiceBlock(const VoiceBlock&) = delete;
  VoiceBlock& operator=(const VoiceBlock&) = delete;

  Voices& voices() { return *voices_; }

 private:
  Voices* voices_;
};

}  // namespace sablevox
