// sablevox_voicegen: makes the spoken-wave data files and measures how well a
// rendered wave keeps its source. Run by scripts/make-spoken-waves.sh and
// scripts/measure-spoken-waves.sh; see docs/spoken-waves.md.
//
//   sablevox_voicegen speech SOURCE.wav OUT.spk [F0]   a phrase, read at F0 Hz
//   sablevox_voicegen drums N OUT.spk [BAR.wav]        drum loop N = 1..4
//   sablevox_voicegen midi OUT.mid NOTE SECONDS        one held note
//   sablevox_voicegen compare SOURCE.wav RENDER.wav SECONDS
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "audio_io.h"
#include "drum_loops.h"
#include "envelope_compare.h"
#include "speech_analysis.h"
#include "spoken_file.h"

namespace sablevox::voicegen {
namespace {

// The phrases are read at C3 (played as C4 an octave down, as their rows
// say), the drum loops an octave lower, so that harmonic 256 still lies near
// 17 kHz in a loop played at C3.
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

int write(const std::string& path, const std::vector<HarmonicFrame>& frames) {
  SpokenFileStats stats;
  if (!writeSpokenFile(path, frames, stats)) {
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
  return write(out, a.frames);
}

int drums(int pattern, const std::string& out, const char* wav) {
  const Audio bar = drumLoop(pattern);
  if (wav != nullptr && !writeAudio(wav, bar)) {
    std::fprintf(stderr, "voicegen: cannot write %s\n", wav);
    return 1;
  }
  std::printf("%s: drum loop %d,", out.c_str(), pattern);
  return write(out, analyseDrumLoop(bar, kDrumF0));
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
  const std::vector<double> a = melEnvelope(source, soundSpan(source, -40.0));
  const std::vector<double> b = melEnvelope(render, Span{0.0, seconds * render.sampleRate});
  std::printf("correlation %.3f reversed %.3f\n", pearson(a, b), pearson(a, reversedInTime(b)));
  return 0;
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
  return usage();
}
