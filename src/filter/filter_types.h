// The FiltType steps: the name a user sees and the internal filter code.
// Stored programs keep the step, never the code.
#pragma once

namespace sablevox {

constexpr int kFilterTypeCount = 39;
constexpr int kFilterCodeNone = 255;

struct FilterType {
  const char* name;
  int code;
};

inline constexpr FilterType kFilterTypes[kFilterTypeCount] = {
    {"off", 255},          {"LP 30dB", 0},      {"LP 12dB", 28},   {"LP oct", 10},
    {"LP Moog Noisy", 63}, {"HP 24dB", 1},      {"HP 12dB", 29},   {"BP 18dB", 2},
    {"BP 9dB", 30},        {"BP Para", 15},     {"Notch", 3},      {"Lo shelf", 6},
    {"Hi shelf", 7},       {"Phaser", 23},      {"Vocals", 17},    {"M-Shape", 11},
    {"Resample", 41},      {"AM", 35},          {"FM Sine", 36},   {"FM Tri", 37},
    {"FM Saw", 38},        {"FM Square", 40},   {"LP Analog", 80}, {"LP Moog", 42},
    {"LP Elliptic", 26},   {"HP Elliptic", 27}, {"HP Analog", 81}, {"BP Analog", 82},
    {"BR Analog", 83},     {"EQ Peak 1", 4},    {"EQ Peak 2", 12}, {"EQ Block", 66},
    {"Vocals2", 70},       {"VOC A", 18},       {"VOC U", 19},     {"VOC E", 20},
    {"VOC I", 21},         {"VOC O", 22},       {"LP Syncie", 88},
};

}  // namespace sablevox
