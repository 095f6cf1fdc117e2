// libsndfile output and level measurement.
#include "render/audio_file.h"

#include <sndfile.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>

namespace sablevox::render {
namespace {

enum class Container { wav, flac, unknown };

Container containerOf(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (extension == ".wav") return Container::wav;
  if (extension == ".flac") return Container::flac;
  return Container::unknown;
}

int sndfileFormat(Container container, SampleFormat format) {
  // Float WAV files carry the extensible header that some readers expect.
  switch (format) {
    case SampleFormat::pcm16:
      return (container == Container::flac ? SF_FORMAT_FLAC : SF_FORMAT_WAV) | SF_FORMAT_PCM_16;
    case SampleFormat::pcm24:
      return (container == Container::flac ? SF_FORMAT_FLAC : SF_FORMAT_WAV) | SF_FORMAT_PCM_24;
    case SampleFormat::float32:
      return SF_FORMAT_WAVEX | SF_FORMAT_FLOAT;
  }
  return 0;
}

int bytesPerSample(SampleFormat format) {
  return format == SampleFormat::pcm16 ? 2 : format == SampleFormat::pcm24 ? 3 : 4;
}

double decibels(double amplitude) {
  return amplitude > 0.0 ? 20.0 * std::log10(amplitude) : -std::numeric_limits<double>::infinity();
}

}  // namespace

bool checkAudioFileName(const std::string& path, SampleFormat format, std::string& error) {
  const Container container = containerOf(path);
  if (container == Container::unknown) {
    error = "output " + path + ": the name must end in .wav or .flac";
    return false;
  }
  if (container == Container::flac && format == SampleFormat::float32) {
    error = "FLAC holds 16- or 24-bit samples, not float: use --format 16 or 24, or a .wav name";
    return false;
  }
  return true;
}

int64_t maxAudioFileFrames(const std::string& path, SampleFormat format) {
  if (containerOf(path) != Container::wav) return std::numeric_limits<int64_t>::max();
  constexpr int64_t kHeaderRoom = 4096;
  return (int64_t{0xFFFFFFFF} - kHeaderRoom) / (2 * bytesPerSample(format));
}

AudioFileWriter::~AudioFileWriter() {
  discard();
}

void AudioFileWriter::discard() {
  if (file_ != nullptr) sf_close(file_);
  file_ = nullptr;
  if (!temporary_.empty()) std::remove(temporary_.c_str());
  temporary_.clear();
}

bool AudioFileWriter::open(const std::string& path, SampleFormat format, int sampleRate,
                           std::string& error) {
  discard();
  if (!checkAudioFileName(path, format, error)) return false;
  path_ = path;
  // The temporary file sits in the output's folder, so rename() is atomic.
  const std::string temporary = path + ".part" + std::to_string(getpid());
  SF_INFO info{};
  info.samplerate = sampleRate;
  info.channels = 2;
  info.format = sndfileFormat(containerOf(path), format);
  file_ = sf_open(temporary.c_str(), SFM_WRITE, &info);
  if (file_ == nullptr) {
    error = "cannot write " + path + ": " + sf_strerror(nullptr);
    return false;
  }
  temporary_ = temporary;
  // Samples beyond full scale are clipped rather than wrapped around; no PEAK
  // chunk, whose time stamp would make two renders of one input differ.
  sf_command(file_, SFC_SET_CLIPPING, nullptr, SF_TRUE);
  sf_command(file_, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
  return true;
}

bool AudioFileWriter::write(const float* left, const float* right, int64_t frames,
                            std::string& error) {
  if (file_ == nullptr) {
    error = "cannot write " + path_ + ": the file is not open";
    return false;
  }
  interleaved_.resize(static_cast<size_t>(frames) * 2);
  for (int64_t i = 0; i < frames; ++i) {
    interleaved_[static_cast<size_t>(2 * i)] = left[i];
    interleaved_[static_cast<size_t>(2 * i + 1)] = right[i];
  }
  if (sf_writef_float(file_, interleaved_.data(), frames) != frames) {
    error = "cannot write " + path_ + ": " + sf_strerror(file_);
    discard();
    return false;
  }
  return true;
}

bool AudioFileWriter::commit(std::string& error) {
  if (file_ == nullptr) {
    error = "cannot write " + path_ + ": the file is not open";
    return false;
  }
  const std::string why = sf_strerror(file_);
  const bool closed = sf_close(file_) == 0;
  file_ = nullptr;
  if (!closed) {
    error = "cannot write " + path_ + ": " + why;
    discard();
    return false;
  }
  if (std::rename(temporary_.c_str(), path_.c_str()) != 0) {
    error = "cannot move the finished audio to " + path_;
    discard();
    return false;
  }
  temporary_.clear();
  return true;
}

void LevelMeter::add(const float* samples, int64_t count) {
  for (int64_t i = 0; i < count; ++i) {
    const double magnitude = std::fabs(static_cast<double>(samples[i]));
    peak_ = std::max(peak_, magnitude);
    sum_ += magnitude * magnitude;
    beyond_ += magnitude > 1.0 ? 1 : 0;
  }
  count_ += count;
}

ChannelLevels LevelMeter::levels() const {
  const double rms = count_ == 0 ? 0.0 : std::sqrt(sum_ / static_cast<double>(count_));
  return {decibels(peak_), decibels(rms)};
}

std::string describeFormat(const std::string& path, SampleFormat format) {
  const char* container = containerOf(path) == Container::flac ? "FLAC" : "WAV";
  const char* samples = format == SampleFormat::pcm16   ? "16-bit"
                        : format == SampleFormat::pcm24 ? "24-bit"
                                                        : "32-bit float";
  return std::string(samples) + " " + container;
}

}  // namespace sablevox::render
