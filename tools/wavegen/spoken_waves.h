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
//   2 bytes  stored harmonic count H, 1..256, little-endian
//   1 byte   stride S, 1 or 2: stored harmonic j (1-based) is harmonic j * S
//            of the wave; the harmonics between are interpolated on the code
//            scale, those below S take stored harmonic 1, those above S * H
//            are 0
//   1 byte   0
//   256 * H  codes, frame by frame, stored harmonic 1 first
// A code is a logarithmic amplitude: 0 is silence, c in 1..255 stands for
// 65535 * 10^(-(255 - c) * kSpokenCodeStepDb / 20), so 255 is full scale and
// code 1 lies 95.25 dB below it, about the floor of a 16-bit amplitude.
// The phrases are stored at stride 2: measured at the harmonics of a 130.8 Hz
// voice, they are played an octave lower, so that C3 keeps the formants.
constexpr char kSpokenMagic[4] = {'S', 'V', 'S', 'K'};
constexpr int kSpokenHeaderBytes = 8;
constexpr int kSpokenFrames = 256;
constexpr int kSpokenMaxHarmonics = 256;
constexpr double kSpokenCodeStepDb = 0.375;

// The amplitude of a code, fractional codes (from interpolation) included.
inline uint16_t spokenAmplitude(double code) {
  if (!(code >= 1.0)) return 0;
  const double amplitude = 65535.0 * std::pow(10.0, -(255.0 - code) * kSpokenCodeStepDb / 20.0);
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

// Expands one stored frame (H codes at stride S) to amplitudes of harmonics
// 1..256.
inline void spokenFrame(const uint8_t* codes, int harmonics, int stride, uint16_t* amplitudes) {
  for (int k = 1; k <= kSpokenMaxHarmonics; ++k) {
    const int j = k < stride ? 1 : k / stride;  // stored harmonic at or below k
    const int rest = k < stride ? 0 : k % stride;
    double code = 0.0;
    if (j < harmonics || (j == harmonics && rest == 0)) {
      code = codes[j - 1];
      if (rest != 0) code += (codes[j] - code) * rest / stride;
    }
    amplitudes[k - 1] = spokenAmplitude(code);
  }
}

}  // namespace sablevox::wavegen
