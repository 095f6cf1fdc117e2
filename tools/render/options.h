// The command line of sablevox-render: what to do, from which MIDI input,
// through which plug-in, with which settings, into which file.
#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

namespace sablevox::render {

enum class Command { render, info, listParams, listPrograms, help, version };
enum class SampleFormat { pcm16, pcm24, float32 };

struct Options {
  Command command = Command::render;
  std::string input;   // MIDI file; empty: the built-in demo phrase
  std::string output;  // empty: derived from the input (.wav)
  std::string plugin;  // empty: the one built beside the program, then ~/.vst
  int sampleRate = 44100;
  int blockSize = 512;
  double tempo = 0.0;  // BPM replacing the file's tempo map; 0 keeps the map
  int program = -1;    // -1: the plug-in's own start program
  // Per-user settings of Sablevox, -1 when not given.
  int bank = -1;
  int quality = -1;
  int iqm = -1;
  std::vector<std::string> sets;  // NAME=VALUE, in the order given
  double tail = 2.0;              // seconds rendered after the last MIDI event
  SampleFormat format = SampleFormat::pcm24;
  bool formatGiven = false;
  bool strict = false;     // refuse a MIDI file that needs repairs instead of warning
  double gainDb = 0.0;     // applied to the plug-in's output before it is written
  bool normalize = false;  // the peak brought to kNormalizedPeakDb instead
  std::array<bool, 128> ignoredControllers{};  // controller numbers left out of the MIDI input
};

constexpr double kNormalizedPeakDb = -1.0;

// Reads the arguments (without the program name). False with a message for an
// unknown option, a missing or malformed value, or a value out of range.
bool parseOptions(std::span<const std::string> args, Options& options, std::string& error);

// The text of --help, and the program's version.
std::string usageText();
const char* programVersion();

// Names of the setting values, also accepted as numbers: a value or -1.
int qualityFromName(const std::string& text);
int iqmFromName(const std::string& text);
int bankFromName(const std::string& text);
const char* bankName(int bank);

}  // namespace sablevox::render
