// Mono audio files for the spoken-wave generator, through libsndfile.
#include "audio_io.h"

#include <sndfile.h>

namespace sablevox::voicegen {

bool readAudio(const std::string& path, Audio& audio) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  if (file == nullptr) return false;
  const int channels = info.channels;
  std::vector<double> interleaved(static_cast<size_t>(info.frames) * static_cast<size_t>(channels));
  const sf_count_t read = sf_readf_double(file, interleaved.data(), info.frames);
  sf_close(file);
  if (read != info.frames || channels < 1) return false;
  audio.sampleRate = info.samplerate;
  audio.samples.assign(static_cast<size_t>(info.frames), 0.0);
  for (size_t i = 0; i < audio.samples.size(); ++i) {
    double sum = 0.0;
    for (int c = 0; c < channels; ++c)
      sum += interleaved[i * static_cast<size_t>(channels) + static_cast<size_t>(c)];
    audio.samples[i] = sum / channels;
  }
  return true;
}

bool writeAudio(const std::string& path, const Audio& audio) {
  SF_INFO info{};
  info.samplerate = static_cast<int>(audio.sampleRate);
  info.channels = 1;
  info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  if (file == nullptr) return false;
  const auto frames = static_cast<sf_count_t>(audio.samples.size());
  const bool ok = sf_writef_double(file, audio.samples.data(), frames) == frames;
  sf_close(file);
  return ok;
}

}  // namespace sablevox::voicegen
