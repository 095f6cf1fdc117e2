// The parameter table, its value-name lists and the display texts.
#include "host/parameters.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

namespace sablevox {
namespace {

using D = DisplayForm;

// Value names exactly as the editor shows them.
constexpr const char* kOscMod[] = {
    "off",           "Mix: X2",       "Mix: X4",       "Mix: Layer",     "Thin: Square",
    "Thin: Bell",    "Thin: Warm",    "Mod: shrink",   "Mod: spread",    "Mod: up",
    "Mod: down",     "Multi: 1",      "Multi: 2",      "Multi: Flange1", "Multi: Flange2",
    "Multi: Hyper1", "Multi: Hyper2", "Filt: LP down", "Filt:LP up",     "Time: +16",
    "Time: +32",     "Time: +37",     "Time: +64",     "Time: +107",     "Sync"};
constexpr const char* kOscLoop[] = {"auto",     "+-+-+-",  "-+-+-+",  "?+-+-+-",  "+ stop",
                                    "- stop",   "+- stop", "-+ stop", "+50%-+-+", "+25%-+-+",
                                    "+75%-+-+", "++++",    "----",    "?++++",    "?----",
                                    "?????",    "?",       "static"};
constexpr const char* kOscLoopSpeed[] = {
    "auto",    "0 Hz",   "0,125 Hz", "0,185 Hz", "0,25 Hz", "0,375 Hz", "0,5 Hz",
    "0,75 Hz", "1 Hz",   "1,5 Hz",   "2 Hz",     "3 Hz",    "4 Hz",     "6 Hz",
    "8 Hz",    "12 Hz",  "16 Hz",    "BPM /8",   "BPM /4",  "BPM /2",   "BPM",
    "BPM *2",  "BPM *3", "BPM *4",   "BPM *6",   "BPM *8",  "key 1",    "key 2",
    "key 3",   "key 4",  "key 5",    "key 6",    "key 7",   "key 8"};
constexpr const char* kLfoType[] = {
    "static",   "Tri",      "Tri 90\xC2\xB0", "Saw Up",    "Saw Down",   "Sin",      "Cos",
    "Square",   "Random",   "Rand Sine",      "Impulse",   "Noise",      "-_-_-___", "-_-_---_",
    "-___-_-_", "-__-__-_", "--_--_-_",       "\\___stop", "/\\___stop", "Tri free"};
constexpr const char* kLfoSpeed[] = {
    "auto",    "0 Hz",    "0,125 Hz", "0,185 Hz", "0,25 Hz", "0,375 Hz",  "0,5 Hz", "0,75 Hz",
    "1 Hz",    "1,5 Hz",  "2 Hz",     "3 Hz",     "4 Hz",    "6 Hz",      "8 Hz",   "12 Hz",
    "16 Hz",   "BPM /16", "BPM /8",   "BPM /4",   "BPM /2",  "BPM * 3/4", "BPM",    "BPM * 3/2",
    "BPM * 2", "BPM * 3", "BPM * 4",  "BPM * 6",  "BPM * 8", "BPM * 16"};
constexpr const char* kLfoDest[] = {"off",       "Cutoff",     "Reso", "Volume",   "Osc octave",
                                    "Osc pitch", "Osc detune", "Pan",  "Osc cross"};
constexpr const char* kArpType[] = {
    "off",       "Up",        "Up oct",    "Up 2oct",       "Up 3oct",   "Down",
    "Down oct",  "Down 2oct", "Down 3oct", "Altup",         "Altdown",   "Pop",
    "Pop2",      "Gate",      "1Finger A", "1Finger Chord", "1Finger C", "1Finger D",
    "1Finger E", "1Finger F", "1Finger G", "1Finger H",     "1Finger I"};
constexpr const char* kArpRhythm[] = {"|.......|.......", "|...|...|...|...", "|.|.|.|.|.|.|.|.",
                                      "||||||||||||||||", "|.....|.....|...", "|..|..|.|..|..|.",
                                      "|...|...|.......", "|.|.|...|.|.|...", "|.......|...|...",
                                      "|...|.|.|...|.|.", "|...|.|...|.|...", "|...............",
                                      "|.........|.....", "|.....|.........", "|.|...|.|...|.|.",
                                      "|...|..|..|.||||", "|||.|.|..|..|..."};
// 19 names for 20 steps: the last step has neither a name nor an effect.
constexpr const char* kEffType[] = {
    "off",      "Reverb A",       "Reverb B",  "Delay A",   "Delay B",   "Delay C",   "Delay D",
    "Chorus",   "Ensemble",       "Flanger",   "Rotary",    "Del+Rev A", "Del+Rev B", "Ens+Rev",
    "Surround", "Stereo enhance", "RevHiEndA", "RevHiEndB", "RevHiEndC"};
constexpr const char* kVoicesList[] = {"1", "2", "3", "4", "8", "12", "16", "32"};
constexpr const char* kPwDepth[] = {"+-1", "+-2", "+-7", "+-12", "+-24"};
constexpr const char* kMwDest[] = {"Vibrato fast", "Vibrato slow", "Cutoff +",         "Cutoff -",
                                   "Reso +",       "Reso -",       "OSC 1/2 crossfade"};
constexpr const char* kGlMode[] = {"off", "1 key", "2 keys"};
constexpr const char* kGlTime[] = {"BPM / 8", "BPM / 4", "BPM / 2",  "BPM",     "BPM * 2",
                                   "BPM * 4", "BPM * 8", "BPM * 16", "BPM * 32"};

constexpr ParameterInfo continuous(const char* name, float def, D display = D::raw,
                                   const char* label = "") {
  return {name, label, ParamKind::continuous, display, 0, def, nullptr, 0};
}

// A stepped parameter whose value names live elsewhere (waves, filter types).
constexpr ParameterInfo stepped(const char* name, int steps, float def, D display) {
  return {name, "", ParamKind::stepped, display, steps, def, nullptr, 0};
}

template <int N>
constexpr ParameterInfo stepped(const char* name, int steps, float def, D display,
                                const char* const (&list)[N]) {
  return {name, "", ParamKind::stepped, display, steps, def, list, N};
}

constexpr ParameterInfo tune(const char* name, float def) {
  return {name, "", ParamKind::ratioStep, D::raw, 10, def, nullptr, 0};
}

constexpr ParameterInfo unused(float def) {
  return {"-", "", ParamKind::none, D::raw, 0, def, nullptr, 0};
}

constexpr ParameterInfo kParameters[kNumParams] = {
    stepped("Osc1Wave", 85, 0.013f, D::step),
    stepped("Osc2Wave", 85, 0.005f, D::step),
    stepped("Osc1Mod", 25, 0.005f, D::step, kOscMod),
    stepped("Osc2Mod", 25, 0.005f, D::step, kOscMod),
    stepped("Osc1Loop", 18, 0.005f, D::step, kOscLoop),
    stepped("Osc2Loop", 18, 0.005f, D::step, kOscLoop),
    stepped("Osc1LSp", 34, 0.005f, D::step, kOscLoopSpeed),
    stepped("Osc2LSp", 34, 0.005f, D::step, kOscLoopSpeed),
    tune("Osc1Tune", 0.2525874f),
    tune("Osc2Tune", 0.2554166f),
    continuous("Osc1Fine", 0.5f, D::cent, "cent"),
    continuous("Osc2Fine", 0.5f, D::cent, "cent"),
    continuous("Osc1Vol", 0.5f),
    continuous("Osc2Vol", 0.5f),
    continuous("Fat", 0.0f),
    continuous("Analog", 0.0f),
    stepped("FiltType", 39, 0.005f, D::step),
    continuous("Cutoff", 0.3021223f),
    continuous("Reso", 0.0f, D::raw, "Q"),
    continuous("FiltKey", 0.679135f, D::bipolar),
    continuous("Drive", 0.0f),
    continuous("Volume", 0.5f),
    continuous("EnvFiltA", 0.2458171f),
    continuous("EnvFiltD", 0.4984045f),
    continuous("EnvFiltS", 0.510428f),
    continuous("EnvFiltR", 0.5034785f),
    continuous("EnvFilVe", 0.5f, D::bipolar),
    continuous("EnvFilSe", 0.7554166f, D::bipolar),
    continuous("EnvVolA", 0.2515659f),
    continuous("EnvVolD", 0.5018779f),
    continuous("EnvVolS", 0.7523204f),
    continuous("EnvVolR", 0.4987874f),
    continuous("EnvVolVe", 0.5f, D::bipolar),
    continuous("EnvVolPo", 0.0f),
    stepped("LFOType", 20, 0.01f, D::step, kLfoType),
    stepped("LFOSpeed", 30, 0.11f, D::step, kLfoSpeed),
    stepped("LFODest", 9, 0.005f, D::step, kLfoDest),
    continuous("LFOSend", 0.5f, D::bipolar),
    stepped("ArpType", 23, 0.0f, D::step, kArpType),
    stepped("ArpRhyt", 17, 0.0f, D::step, kArpRhythm),
    stepped("EffType", 20, 0.005f, D::step, kEffType),
    continuous("EffPar1", 0.5038579f),
    continuous("EffPar2", 0.4979398f),
    unused(0.01f),
    stepped("Voices", 8, 0.03f, D::raw, kVoicesList),
    stepped("PWDepth", 5, 0.01f, D::raw, kPwDepth),
    stepped("MWDest", 7, 0.0f, D::raw, kMwDest),
    stepped("GlMode", 3, 0.0f, D::raw, kGlMode),
    stepped("GlTime", 9, 0.0f, D::raw, kGlTime),
    unused(0.0f),
};

constexpr ParameterInfo kOutOfRange = unused(0.0f);

constexpr float kTuneRatios[10] = {0.25f, 0.5f, 1.0f, 1.5f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f, 8.0f};
constexpr const char* kTuneHints[10] = {"tune octave -2  ", "tune octave -1  ", "tune octave 0   ",
                                        "tune octave +0.5", "tune octave +1  ", "tune octave +1.5",
                                        "tune octave +2  ", "tune octave +2.3", "tune octave +2.5",
                                        "tune octave +3  "};

int tuneStep(float value) {
  return parameter_detail::truncatedIndex(value * 9.99f, 9);
}

// Whether a number prints in 8 characters by the display rules; NaN never does.
bool fitsDisplay(double v) {
  return v <= 99999999.0 && v >= -9999999.0;
}

}  // namespace

const ParameterInfo& parameterInfo(int index) {
  return index >= 0 && index < kNumParams ? kParameters[index] : kOutOfRange;
}

float tuneRatio(float value) {
  return kTuneRatios[tuneStep(value)];
}

const char* tuneHint(float value) {
  return kTuneHints[tuneStep(value)];
}

float fineRatio(float value) {
  if (value == 0.5f || value != value) return 1.0f;
  if (value > 0.5f) return 1.0f + ((value < 1.0f ? value : 1.0f) - 0.5f) * 0.05946f;
  return 1.0f - (0.5f - (value > 0.0f ? value : 0.0f)) * 0.0562f;
}

void float2string(float value, char* text) {
  if (text == nullptr || !fitsDisplay(value)) return;
  constexpr int kWidth = 8;
  char out[kWidth + 1];
  int length = 0;
  double v = value;
  if (v < 0.0) {
    out[length++] = '-';
    v = -v;
  }
  // At most 8 integer digits here, so the integer part fits exactly.
  const double whole = std::floor(v);
  char digits[kWidth];
  int count = 0;
  for (auto w = static_cast<uint32_t>(whole); count == 0 || w > 0; w /= 10) {
    digits[count++] = static_cast<char>('0' + w % 10);
  }
  while (count > 0 && length < kWidth) out[length++] = digits[--count];
  if (length < kWidth) {
    out[length++] = '.';
    // A float's fraction times at most 10^6 is exact in double, so floor
    // truncates the true decimal expansion.
    const int decimals = kWidth - length;
    const double scaled = (v - whole) * std::pow(10.0, decimals);
    auto fraction = static_cast<uint32_t>(std::floor(scaled));
    for (int i = decimals - 1; i >= 0; --i, fraction /= 10) {
      out[length + i] = static_cast<char>('0' + fraction % 10);
    }
    length += decimals;
  }
  out[length] = '\0';
  for (int i = 0; i <= length; ++i) text[i] = out[i];
}

void parameterDisplay(int index, float value, char* text) {
  if (index < 0 || index >= kNumParams || text == nullptr) return;
  switch (kParameters[index].display) {
    case D::raw:
      float2string(value, text);
      break;
    case D::step: {
      // A stored choice i reads as i + 1, a raw 0.0 as 0.
      const float p = value * 100.99f * 2.0f;
      if (fitsDisplay(p)) std::snprintf(text, 9, "%d", static_cast<int>(p));
      break;
    }
    case D::cent:
      float2string(value * 200.0f - 100.0f, text);
      break;
    case D::bipolar:
      float2string(value * 2.0f - 1.0f, text);
      break;
  }
}

int findParameter(std::string_view name) {
  if (name == "-") return -1;
  for (int i = 0; i < kNumParams; ++i) {
    if (name == kParameters[i].name) return i;
  }
  return -1;
}

int findChoice(int index, std::string_view choiceName) {
  const ParameterInfo& info = parameterInfo(index);
  for (int i = 0; i < info.choiceCount; ++i) {
    if (choiceName == info.choices[i]) return i;
  }
  return -1;
}

}  // namespace sablevox
