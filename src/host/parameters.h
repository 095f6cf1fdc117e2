// The 50 parameters: indices, names, kinds, defaults, value-name lists, the
// decodes shared by all consumers and the host's display texts. Values are
// stored raw (nominally 0..1) and decoded where they are used; every decode
// here accepts any float, NaN and infinities included.
#pragma once

#include <string_view>

namespace sablevox {

constexpr int kNumParams = 50;

// Eight indices a row reads better than fifty lines.
// clang-format off
enum ParamIndex : int {
  kOsc1Wave, kOsc2Wave, kOsc1Mod, kOsc2Mod, kOsc1Loop, kOsc2Loop, kOsc1LSp, kOsc2LSp,
  kOsc1Tune, kOsc2Tune, kOsc1Fine, kOsc2Fine, kOsc1Vol, kOsc2Vol, kFat, kAnalog,
  kFiltType, kCutoff, kReso, kFiltKey, kDrive, kVolume, kEnvFiltA, kEnvFiltD,
  kEnvFiltS, kEnvFiltR, kEnvFilVe, kEnvFilSe, kEnvVolA, kEnvVolD, kEnvVolS, kEnvVolR,
  kEnvVolVe, kEnvVolPo, kLFOType, kLFOSpeed, kLFODest, kLFOSend, kArpType, kArpRhyt,
  kEffType, kEffPar1, kEffPar2, kParam43, kVoices, kPWDepth, kMWDest, kGlMode,
  kGlTime, kParam49
};
// clang-format on

enum class ParamKind { continuous, stepped, ratioStep, none };
enum class DisplayForm { raw, step, cent, bipolar };

struct ParameterInfo {
  const char* name;   // at most 8 characters; "-" for the two unused ones
  const char* label;  // "cent", "Q" or ""
  ParamKind kind;
  DisplayForm display;
  int steps;                   // choices of a stepped parameter, 10 for the tunes, else 0
  float defaultValue;          // the value of the empty bank
  const char* const* choices;  // value names the editor shows, or null
  int choiceCount;             // may be below steps (EffType: 19 names for 20 steps)
};

// index 0..49; any other index gives the entry of an unused parameter.
const ParameterInfo& parameterInfo(int index);

namespace parameter_detail {
// Truncation of p limited to 0..last, for any float (NaN gives 0).
inline int truncatedIndex(float p, int last) {
  if (!(p >= 1.0f) || last <= 0) return 0;
  return p < static_cast<float>(last) ? static_cast<int>(p) : last;
}
}  // namespace parameter_detail

// Choice of a stepped parameter: truncation of value * 199.999 (a float
// product), limited to 0..steps-1. 199.999 rather than 200 so that the value
// the editor writes for choice i, (i + 1) * 0.005, decodes to i.
inline int steppedIndex(float value, int steps) {
  return parameter_detail::truncatedIndex(value * 199.99899f, steps - 1);
}

// The value the editor writes for choice i.
inline float choiceValue(int choice) {
  return (choice + 1) * 0.005f;
}

// Osc1Tune / Osc2Tune: ten frequency ratios over the whole 0..1 range.
float tuneRatio(float value);
// The editor's hint for the same step, 16 characters ("tune octave -2  ").
const char* tuneHint(float value);
// Osc1Fine / Osc2Fine: 1.0 at 0.5, two straight lines to about +-50 cents.
// Values outside 0..1 are clamped (NaN is no detune).
float fineRatio(float value);

// The frame's 8-character display of a float: integer digits, a point, then
// decimals, truncated not rounded (0.5 -> "0.500000", -0.5 -> "-0.50000").
// Above 99999999, below -9999999, NaN or infinite: text is left as it is.
// Writes at most 8 characters and the terminating zero.
void float2string(float value, char* text);

// The host's display text of parameter index for value, by its display form.
// Index outside 0..49 leaves text alone. At most 8 characters and the zero.
void parameterDisplay(int index, float value, char* text);

// Index of the parameter with that name, -1 if none ("-" is never found).
int findParameter(std::string_view name);
// Position of choiceName in the value list of parameter index, -1 if the
// name is not there or the parameter has no list.
int findChoice(int index, std::string_view choiceName);

}  // namespace sablevox
