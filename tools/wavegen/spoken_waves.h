// The spoken waves and drum loops: spectra analysed once by tools/voicegen and
// committed under data/spoken/, read here when the wave records are generated.
#pragma once

#include <cmath>
#include <cstdint>

namespace sablevox::wavegen {

// Fills amplitudes[0..255] (harmonic numbers 1..256) of frame 0..255 of a
// spoken or drum-loop wave and returns true; returns false, touching nothing,
// when `wave` is not one of them. A missing or damaged data file ends the
// generator with a message, as the records would be wrong without it.
bool spokenWaveFrame(int wave, int frame, uint16_t* amplitudes);

// The data file of one wave, "<source name without .mf>.spk":
//   4 bytes  "SVSK"
//   2 bytes  harmonic count H, 1..256, little-endian (harmonics above H are 0)
//   256 * H  codes, frame by frame, harmonic 1 first
// A code is a logarithmic amplitude: 0 is silence, c in 1..255 stands for
// 65535 * 10^(-(255 - c) * kSpokenCodeStepDb / 20), so 255 is full scale and
// code 1 lies 95.25 dB below it, about the floor of a 16-bit amplitude.
constexpr char kSpokenMagic[4] = {'S', 'V', 'S', 'K'};
constexpr int kSpokenFrames = 256;
constexpr int kSpokenMaxHarmonics = 256;
constexpr double kSpokenCodeStepDb = 0.375;

inline uint16_t spokenAmplitude(uint8_t code) {
  if (code == 0) return 0;
  const double amplitude = 65535.0 * std::pow(10.0, -(255 - code) * kSpokenCodeStepDb / 20.0);
  return static_cast<uint16_t>(std::lround(amplitude));
}

// The code nearest in decibels to an amplitude relative to full scale
// (1.0 = 65535); 0 below the range.
inline uint8_t spokenCode(double relative) {
  if (!(relative > 0.0)) return 0;
  const double steps = -20.0 * std::log10(relative) / kSpokenCodeStepDb;
  if (steps > 254.5) return 0;
  if (steps < 0.0) return 255;
  return static_cast<uint8_t>(255 - static_cast<int>(std::lround(steps)));
}

}  // namespace sablevox::wavegen
