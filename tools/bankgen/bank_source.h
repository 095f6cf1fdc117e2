// The readable source of a factory bank and its compiler into records.
//
// A bank file is a list of programs, each a name and the parameters that
// differ from the default record:
//
//   bank "factory A"
//   template warm-saw                 # a starting point, not stored
//     Osc1Wave = "STA Saw"
//     Cutoff   = 0.42
//   program "BAS Round" like warm-saw # starts from the template
//     FiltType = "LP Moog"
//     Osc1Tune = "-1"
//
// Continuous parameters take a number 0..1; stepped ones the name of a
// choice exactly as the editor shows it (wave names, filter types, value
// lists); Osc1Tune/Osc2Tune the octave text of their hint ("-2" .. "+3").
// `like` names a template or an earlier program of the same file. Several
// settings may share a line, split by `;`. A `#` outside quotes starts a
// comment.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "host/parameters.h"

namespace sablevox::bankgen {

struct SourceProgram {
  std::string name;  // at most 23 characters
  std::array<float, kNumParams> values{};
  int line = 0;  // where the program starts in its file
};

struct BankSource {
  std::string bankName;  // as written in the header line
  std::vector<SourceProgram> programs;
};

// Parses one bank file. Every fault found is added to `errors` as
// "file:line: message"; the result is usable only when none was added.
BankSource parseBank(std::string_view text, const std::string& fileName,
                     std::vector<std::string>& errors);

// The value a choice name stands for in parameter `index`, or -1.0f if the
// name is not one of its choices (or the parameter has none).
float choiceByName(int index, std::string_view choiceName);

// The display name of choice `choice` of stepped parameter `index` (waves
// with a single percent sign), or "?" for none.
std::string choiceName(int index, int choice);

// The category of a program name: its leading 2-4 capitals before a blank,
// else "".
std::string categoryOf(std::string_view name);

}  // namespace sablevox::bankgen
