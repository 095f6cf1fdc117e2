// Mono audio files for the spoken-wave generator, through libsndfile.
#pragma once

#include <string>
#include <vector>

namespace sablevox::voicegen {

struct Audio {
  std::vector<double> samples;  // mono, full scale +-1
  double sampleRate = 0.0;
};

// Reads any file libsndfile knows; channels are averaged. False on failure.
bool readAudio(const std::string& path, Audio& audio);

// Writes a 16-bit WAV file. False on failure.
bool writeAudio(const std::string& path, const Audio& audio);

}  // namespace sablevox::voicegen
