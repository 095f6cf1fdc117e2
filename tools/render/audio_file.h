// Writing the rendered stereo audio with libsndfile (WAV 16/24-bit PCM or
// 32-bit float, FLAC 16/24-bit), through a temporary file that is renamed
// into place only when complete, and the levels the summary reports.
#pragma once

#include <string>
#include <vector>

#include "render/options.h"

namespace sablevox::render {

// The container follows the file name: .wav or .flac (any case). False with
// a message for another name, float samples in FLAC, or a write failure; the
// output path is then left as it was.
bool writeAudioFile(const std::string& path, SampleFormat format, int sampleRate,
                    const std::vector<float>& left, const std::vector<float>& right,
                    std::string& error);

// Checks a name and format before a render starts (same rules as above).
bool checkAudioFileName(const std::string& path, SampleFormat format, std::string& error);

struct ChannelLevels {
  double peakDb;  // dBFS; -infinity for silence
  double rmsDb;
};
ChannelLevels measureLevels(const std::vector<float>& samples);

// "24-bit WAV", "32-bit float WAV", "16-bit FLAC".
std::string describeFormat(const std::string& path, SampleFormat format);

}  // namespace sablevox::render
