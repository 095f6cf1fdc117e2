// Writes analysed frames as a spoken-wave data file (the format is described
// in tools/wavegen/spoken_waves.h, which reads it).
#include "spoken_file.h"

#include <algorithm>
#include <cstdint>
#include <fstream>

#include "wavegen/spoken_waves.h"

namespace sablevox::voicegen {

bool writeSpokenFile(const std::string& path, const std::vector<HarmonicFrame>& frames, int stride,
                     SpokenFileStats& stats) {
  using namespace sablevox::wavegen;
  if (frames.size() != static_cast<size_t>(kSpokenFrames)) return false;
  double peak = 0.0;
  for (const HarmonicFrame& frame : frames) {
    for (double a : frame) peak = std::max(peak, a);
  }
  if (!(peak > 0.0)) return false;
  std::vector<uint8_t> codes;
  stats = {};
  for (const HarmonicFrame& frame : frames) {
    bool silent = true;
    for (int h = 0; h < kSpokenMaxHarmonics; ++h) {
      const uint8_t code = spokenCode(frame[static_cast<size_t>(h)] / peak);
      codes.push_back(code);
      if (code != 0) stats.harmonics = std::max(stats.harmonics, h + 1), silent = false;
    }
    stats.silentFrames += silent;
  }
  std::ofstream out(path, std::ios::binary);
  out.write(kSpokenMagic, 4);
  const char header[4] = {static_cast<char>(stats.harmonics & 0xff),
                          static_cast<char>(stats.harmonics >> 8), static_cast<char>(stride), 0};
  out.write(header, 4);
  for (int f = 0; f < kSpokenFrames; ++f) {
    out.write(
        reinterpret_cast<const char*>(codes.data()) + static_cast<size_t>(f) * kSpokenMaxHarmonics,
        stats.harmonics);
  }
  return static_cast<bool>(out);
}

}  // namespace sablevox::voicegen
