// Reads the committed spoken-wave spectra (data/spoken/*.spk, written by
// tools/voicegen) for the wave record generator.
#include "spoken_waves.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "data/wave_descriptors.h"

#ifndef SABLEVOX_SPOKEN_DIR
#error "SABLEVOX_SPOKEN_DIR must name the folder of the spoken-wave data"
#endif

namespace sablevox::wavegen {
namespace {

struct SpokenData {
  int harmonics = 0;
  int stride = 1;
  std::vector<uint8_t> codes;  // kSpokenFrames * harmonics
};

// The spoken rows are the ones made from "Vo..." sources: the phrases and the
// drum loops.
bool isSpoken(int wave) {
  return wave >= 0 && wave < kWaveCount &&
         std::strncmp(kWaveDescriptors[wave].sourceName, "Vo", 2) == 0;
}

[[noreturn]] void fail(const std::string& path, const char* why) {
  std::fprintf(stderr, "wavegen: %s: %s (regenerate with scripts/make-spoken-waves.sh)\n",
               path.c_str(), why);
  std::exit(1);
}

SpokenData load(int wave) {
  std::string stem = kWaveDescriptors[wave].sourceName;
  stem = stem.substr(0, stem.rfind('.'));
  const std::string path = std::string(SABLEVOX_SPOKEN_DIR) + "/" + stem + ".spk";
  std::ifstream in(path, std::ios::binary);
  if (!in) fail(path, "cannot open");
  const std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)),
                                   std::istreambuf_iterator<char>());
  if (bytes.size() < kSpokenHeaderBytes || std::memcmp(bytes.data(), kSpokenMagic, 4) != 0) {
    fail(path, "not a spoken-wave file");
  }
  SpokenData data;
  data.harmonics = bytes[4] | bytes[5] << 8;
  data.stride = bytes[6];
  if (data.harmonics < 1 || data.harmonics > kSpokenMaxHarmonics || data.stride < 1 ||
      data.stride > 2 ||
      bytes.size() != kSpokenHeaderBytes + static_cast<size_t>(kSpokenFrames) * data.harmonics) {
    fail(path, "wrong size or layout");
  }
  data.codes.assign(bytes.begin() + kSpokenHeaderBytes, bytes.end());
  return data;
}

}  // namespace

bool spokenWaveFrame(int wave, int frame, uint16_t* amplitudes) {
  if (!isSpoken(wave)) return false;
  static std::map<int, SpokenData> cache;
  auto found = cache.find(wave);
  if (found == cache.end()) found = cache.emplace(wave, load(wave)).first;
  const SpokenData& data = found->second;
  const int f = frame < 0 ? 0 : (frame >= kSpokenFrames ? kSpokenFrames - 1 : frame);
  spokenFrame(data.codes.data() + static_cast<size_t>(f) * data.harmonics, data.harmonics,
              data.stride, amplitudes);
  return true;
}

}  // namespace sablevox::wavegen
