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
  const int major = container == Container::flac ? SF_FORMAT_FLAC : SF_FORMAT_WAV;
  switch (format) {
    case SampleFormat::pcm16:
      return major | SF_FORMAT_PCM_16;
    case SampleFormat::pcm24:
      return major | SF_FORMAT_PCM_24;
    case SampleFormat::float32:
      return major | SF_FORMAT_FLOAT;
  }
  return 0;
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

bool writeAudioFile(const std::string& path, SampleFormat format, int sampleRate,
                    const std::vector<float>& left, const std::vector<float>& right,
                    std::string& error) {
  if (!checkAudioFileName(path, format, error)) return false;
  // The temporary file sits in the output's folder, so rename() is atomic.
  const std::string temporary = path + ".part" + std::to_string(getpid());
  SF_INFO info{};
  info.samplerate = sampleRate;
  info.channels = 2;
  info.format = sndfileFormat(containerOf(path), format);
  SNDFILE* file = sf_open(temporary.c_str(), SFM_WRITE, &info);
  if (file == nullptr) {
    error = "cannot write " + path + ": " + sf_strerror(nullptr);
    return false;
  }
  // Samples beyond full scale are clipped rather than wrapped around; no PEAK
  // chunk, whose time stamp would make two renders of one input differ.
  sf_command(file, SFC_SET_CLIPPING, nullptr, SF_TRUE);
  sf_command(file, SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);
  const size_t frames = std::min(left.size(), right.size());
  std::vector<float> interleaved(frames * 2);
  for (size_t i = 0; i < frames; ++i) {
    interleaved[2 * i] = left[i];
    interleaved[2 * i + 1] = right[i];
  }
  const sf_count_t written =
      sf_writef_float(file, interleaved.data(), static_cast<sf_count_t>(frames));
  const std::string why = sf_strerror(file);
  const bool closed = sf_close(file) == 0;
  if (written != static_cast<sf_count_t>(frames) || !closed) {
    std::remove(temporary.c_str());
    error = "cannot write " + path + ": " + why;
    return false;
  }
  if (std::rename(temporary.c_str(), path.c_str()) != 0) {
    std::remove(temporary.c_str());
    error = "cannot move the finished audio to " + path;
    return false;
  }
  return true;
}

ChannelLevels measureLevels(const std::vector<float>& samples) {
  double peak = 0.0;
  double sum = 0.0;
  for (float sample : samples) {
    peak = std::max(peak, static_cast<double>(std::fabs(sample)));
    sum += static_cast<double>(sample) * sample;
  }
  const double rms = samples.empty() ? 0.0 : std::sqrt(sum / static_cast<double>(samples.size()));
  return {decibels(peak), decibels(rms)};
}

std::string describeFormat(const std::string& path, SampleFormat format) {
  const char* container = containerOf(path) == Container::flac ? "FLAC" : "WAV";
  const char* samples = format == SampleFormat::pcm16   ? "16-bit"
                        : format == SampleFormat::pcm24 ? "24-bit"
                                                        : "32-bit float";
  return std::string(samples) + " " + container;
}

}  // namespace sablevox::render
