// Placeholder bodies of the voice generator's operations so that the engine
// links while the voice generator is being written; replaced file by file.
#include "host/adelay.h"

namespace sablevox {

void ADelay::slowRefresh() {
  static constexpr int kVoiceCounts[8] = {1, 2, 3, 4, 8, 12, 16, 32};
  activeVoices = kVoiceCounts[steppedIndex(params[kVoices], 8)];
  if (steppedIndex(params[kGlMode], 3) > 0) activeVoices = 1;
}

void ADelay::globalTick(int /*tickLength*/) {}
void ADelay::voiceTick(int /*voiceIndex*/) {}

void ADelay::renderVoice(int voiceIndex, int sampleCount, float* /*outLeft*/, float* /*outRight*/,
                         int offset, int blockLength) {
  const Voice& voice = voices[voiceIndex];
  if (voice.ampState == kEnvIdle) return;
  if (sampleCount < 1 || offset + sampleCount > blockLength) return;
}

}  // namespace sablevox
