// Writing the rendered stereo audio with libsndfile (WAV 16/24-bit PCM or
// 32-bit float, FLAC 16/24-bit) block by block, through a temporary file that
// is renamed into place only when complete, and the levels the summary
// reports, measured on the way.
#pragma once

#include <sndfile.h>

#include <cstdint>
#include <string>
#include <vector>

#include "render/options.h"

namespace sablevox::render {

// Checks a name and format before a render starts: the container follows the
// file name, .wav or .flac (any case); FLAC holds no float samples.
bool checkAudioFileName(const std::string& path, SampleFormat format, std::string& error);

// The most frames a file of this name and format can hold (a WAV file's data
// is limited to 4 GiB).
int64_t maxAudioFileFrames(const std::string& path, SampleFormat format);

class AudioFileWriter {
 public:
  AudioFileWriter() = default;
  // Removes the temporary file unless commit() succeeded.
  ~AudioFileWriter();
  AudioFileWriter(const AudioFileWriter&) = delete;
  AudioFileWriter& operator=(const AudioFileWriter&) = delete;

  // Opens `path`.partPID beside the output. False with a message on failure.
  bool open(const std::string& path, SampleFormat format, int sampleRate, std::string& error);
  // Samples beyond full scale are clipped in integer files.
  bool write(const float* left, const float* right, int64_t frames, std::string& error);
  // Closes the file and renames it into place.
  bool commit(std::string& error);

 private:
  void discard();

  std::string path_;
  std::string temporary_;
  SNDFILE* file_ = nullptr;
  std::vector<float> interleaved_;
};

struct ChannelLevels {
  double peakDb;  // dBFS; -infinity for silence
  double rmsDb;
};

// Peak, power and clipping of one channel, fed block by block.
class LevelMeter {
 public:
  void add(const float* samples, int64_t count);
  ChannelLevels levels() const;
  double peak() const { return peak_; }
  int64_t beyondFullScale() const { return beyond_; }  // samples above 1.0 in magnitude

 private:
  double peak_ = 0.0;
  double sum_ = 0.0;
  int64_t count_ = 0;
  int64_t beyond_ = 0;
};

// "24-bit WAV", "32-bit float WAV", "16-bit FLAC".
std::string describeFormat(const std::string& path, SampleFormat format);

}  // namespace sablevox::render
