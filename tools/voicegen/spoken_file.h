// Writes analysed frames as a spoken-wave data file (the format is described
// in tools/wavegen/spoken_waves.h, which reads it).
#pragma once

#include <string>
#include <vector>

#include "harmonic_analysis.h"

namespace sablevox::voicegen {

struct SpokenFileStats {
  int harmonics = 0;     // harmonics stored per frame
  int silentFrames = 0;  // frames whose codes are all 0
};

// Normalises the frames so that their largest amplitude is full scale, codes
// them and writes the file; frame harmonic j becomes harmonic j * stride of
// the wave. False when it cannot be written or all is silent.
bool writeSpokenFile(const std::string& path, const std::vector<HarmonicFrame>& frames, int stride,
                     SpokenFileStats& stats);

}  // namespace sablevox::voicegen
