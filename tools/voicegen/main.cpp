// sablevox_voicegen: makes the spoken-wave data files and measures how well a
// rendered wave keeps its source. Run by scripts/make-spoken-waves.sh and
// scripts/measure-spoken-waves.sh; see docs/spoken-waves.md.
//
//   sablevox_voicegen speech SOURCE.wav OUT.spk [F0]   a phrase, read at F0 Hz
//   sablevox_voicegen drums N OUT.spk [BAR.wav]        drum loop N = 1..4
//   sablevox_voicegen midi OUT.mid NOTE SECONDS        one held note
//   sablevox_voicegen compare SOURCE.wav RENDER.wav SECONDS
//   sablevox_voicegen resynth DATA.spk OUT.wav SECONDS [F0]   plain additive check
//                                                      (F0 default 65.4 Hz, as C3 plays)
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <numbers>
#include <string>
#include <vector>

#include "audio_io.h"
#include "drum_loops.h"
#include "envelope_compare.h"
#include "speech_analysis.h"
#include "spoken_file.h"
#include "wavegen/spoken_waves.h"

namespace sablevox::voicegen {
namespace {

// A note C3 (MIDI 60, 130.8 Hz here) plays these waves an octave down, at
// 65.4 Hz. The drum loops are read at that pitch; the phrases at the pitch of
// the voice, twice that, and stored at stride 2, so C3 keeps their formants.
constexpr double kSpeechF0 = 130.8128;
constexpr double kDrumF0 = 65.4064;

int usage() {
  std::fprintf(stderr,
               "usage: sablevox_voicegen speech SOURCE.wav OUT.spk [F0]\n"
               "       sablevox_voicegen drums N OUT.spk [BAR.wav]\n"
               "       sablevox_voicegen midi OUT.mid NOTE SECONDS\n"
               "       sablevox_voicegen compare SOURCE.wav RENDER.wav SECONDS\n");
  return 2;
}

int write(const std::string& path, const std::vector<HarmonicFrame>& frames, int stride) {
  SpokenFileStats stats;
  if (!writeSpokenFile(path, frames, stride, stats)) {
    std::fprintf(stderr, "voicegen: cannot write %s\n", path.c_str());
    return 1;
  }
  std::printf(" harmonics %d, silent frames %d\n", stats.harmonics, stats.silentFrames);
  return 0;
}

int speech(const std::string& source, const std::string& out, double f0) {
  Audio audio;
  if (!readAudio(source, audio)) {
    std::fprintf(stderr, "voicegen: cannot read %s\n", source.c_str());
    return 1;
  }
  const SpeechAnalysis a = analyseSpeech(audio, f0);
  std::printf(
      "%s: %.3f s of sound, median f0 %.1f Hz (voiced frames %.1f-%.1f), %d of %d frames voiced,",
      out.c_str(), (a.span.end - a.span.start) / audio.sampleRate, a.medianF0, a.f0Low, a.f0High,
      a.voicedFrames, kFrames);
  return write(out, a.frames, 2);
}

int drums(int pattern, const std::string& out, const char* wav) {
  const Audio bar = drumLoop(pattern);
  if (wav != nullptr && !writeAudio(wav, bar)) {
    std::fprintf(stderr, "voicegen: cannot write %s\n", wav);
    return 1;
  }
  std::printf("%s: drum loop %d,", out.c_str(), pattern);
  return write(out, analyseDrumLoop(bar, kDrumF0), 1);
}

void putVariable(std::vector<unsigned char>& bytes, unsigned value) {
  unsigned char groups[5];
  int n = 0;
  do groups[n++] = static_cast<unsigned char>(value & 0x7f), value >>= 7;
  while (value != 0);
  while (n > 1) bytes.push_back(groups[--n] | 0x80);
  bytes.push_back(groups[0]);
}

// A format-0 file at 120 BPM, 480 ticks a beat: the note from 0 to SECONDS.
int midi(const std::string& out, int note, double seconds) {
  std::vector<unsigned char> track = {
      0x00, 0xff, 0x51, 0x03, 0x07, 0xa1, 0x20, 0x00, 0x90, static_cast<unsigned char>(note & 0x7f),
      100};
  putVariable(track, static_cast<unsigned>(seconds * 960.0 + 0.5));
  const unsigned char tail[] = {0x80, static_cast<unsigned char>(note & 0x7f), 0, 0x00, 0xff, 0x2f,
                                0x00};
  track.insert(track.end(), std::begin(tail), std::end(tail));
  std::vector<unsigned char> file = {'M', 'T', 'h', 'd',  0,    0,   0,   6,   0,
                                     0,   0,   1,   0x01, 0xe0, 'M', 'T', 'r', 'k'};
  for (int shift = 24; shift >= 0; shift -= 8)
    file.push_back(static_cast<unsigned char>(track.size() >> shift));
  file.insert(file.end(), track.begin(), track.end());
  std::ofstream stream(out, std::ios::binary);
  stream.write(reinterpret_cast<const char*>(file.data()),
               static_cast<std::streamsize>(file.size()));
  return stream ? 0 : 1;
}

// Source frames over its sounding span, render frames over the first SECONDS
// of the render (the time "+ stop" takes to walk the 256 frames).
int compare(const std::string& sourcePath, const std::string& renderPath, double seconds) {
  Audio source, render;
  if (!readAudio(sourcePath, source) || !readAudio(renderPath, render)) {
    std::fprintf(stderr, "voicegen: cannot read %s or %s\n", sourcePath.c_str(),
                 renderPath.c_str());
    return 1;
  }
  const std::vector<double> a = melEnvelope(source, phraseSpan(source));
  const std::vector<double> b = melEnvelope(render, Span{0.0, seconds * render.sampleRate});
  std::printf("correlation %.3f reversed %.3f\n", pearson(a, b), pearson(a, reversedInTime(b)));
  return 0;
}

// Sines at the multiples of f0 whose amplitudes glide from frame to frame
// over SECONDS: what the data holds, without the synthesizer's tables.
int resynth(const std::string& dataPath, const std::string& out, double seconds, double f0) {
  std::ifstream in(dataPath, std::ios::binary);
  const std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(in)),
                                         std::istreambuf_iterator<char>());
  if (bytes.size() < wavegen::kSpokenHeaderBytes) return 1;
  const int harmonics = bytes[4] | bytes[5] << 8;
  if (bytes.size() != wavegen::kSpokenHeaderBytes + static_cast<size_t>(kFrames * harmonics)) {
    return 1;
  }
  std::vector<std::array<uint16_t, kHarmonics>> frames(kFrames);
  for (int f = 0; f < kFrames; ++f) {
    wavegen::spokenFrame(bytes.data() + wavegen::kSpokenHeaderBytes + f * harmonics, harmonics,
                         bytes[6], frames[static_cast<size_t>(f)].data());
  }
  Audio audio;
  audio.sampleRate = 44100.0;
  const size_t length = static_cast<size_t>(seconds * audio.sampleRate);
  audio.samples.assign(length, 0.0);
  for (int k = 1; k <= kHarmonics && k * f0 < 0.5 * audio.sampleRate; ++k) {
    const double step = 2.0 * std::numbers::pi * k * f0 / audio.sampleRate;
    for (size_t n = 0; n < length; ++n) {
      const double position = static_cast<double>(n) / static_cast<double>(length) * (kFrames - 1);
      const int f = std::min(kFrames - 2, static_cast<int>(position));
      const double t = position - f, a = frames[static_cast<size_t>(f)][static_cast<size_t>(k - 1)],
                   b = frames[static_cast<size_t>(f + 1)][static_cast<size_t>(k - 1)];
      audio.samples[n] +=
          ((1.0 - t) * a + t * b) / 65535.0 * 0.05 * std::sin(step * static_cast<double>(n));
    }
  }
  return writeAudio(out, audio) ? 0 : 1;
}

}  // namespace
}  // namespace sablevox::voicegen

int main(int argc, char** argv) {
  using namespace sablevox::voicegen;
  const std::vector<std::string> args(argv + 1, argv + argc);
  if (args.size() >= 3 && args[0] == "speech") {
    return speech(args[1], args[2], args.size() > 3 ? std::atof(args[3].c_str()) : kSpeechF0);
  }
  if (args.size() >= 3 && args[0] == "drums") {
    const int pattern = std::atoi(args[1].c_str());
    if (pattern < 1 || pattern > kDrumPatterns) return usage();
    return drums(pattern, args[2], args.size() > 3 ? argv[4] : nullptr);
  }
  if (args.size() == 4 && args[0] == "midi") {
    return midi(args[1], std::atoi(args[2].c_str()), std::atof(args[3].c_str()));
  }
  if (args.size() == 4 && args[0] == "compare") {
    return compare(args[1], args[2], std::atof(args[3].c_str()));
  }
  if (args.size() >= 4 && args[0] == "resynth") {
    return resynth(args[1], args[2], std::atof(args[3].c_str()),
                   args.size() > 4 ? std::atof(args[4].c_str()) : kDrumF0);
  }
  return usage();
}
