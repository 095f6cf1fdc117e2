// Equaliser: the fixed last stage of the signal path. A low and a high shelf
// per channel, a DC remover, and a silence count that lets the effect
// section sleep. Its settings are design constants.
#pragma once

#include <array>

#include "effects/effect_common.h"

namespace sablevox {

// One biquad; b1 and b2 are subtracted.
struct EqualiserSection {
  float a0 = 0.0f, a1 = 0.0f, a2 = 0.0f, b1 = 0.0f, b2 = 0.0f;
  float x1 = 0.0f, x2 = 0.0f, y1 = 0.0f, y2 = 0.0f;
};

class Equaliser {
 public:
  static constexpr int kParameterCount = 5;  // names of the design constants
  // Sections by index: low left, high left, low right, high right.
  static constexpr int kSectionCount = 4;

  Equaliser() = default;
  Equaliser(const Equaliser&) = delete;
  Equaliser& operator=(const Equaliser&) = delete;

  // Zeroes coefficients, history, DC estimates and the silence count. A new
  // object is already in this state; setSampleRate fills the coefficients.
  void reset();
  // Stores the rate (clamped to the supported range) and designs the four
  // sections anew; cheap enough for every block.
  void setSampleRate(float rate);
  void setGain(float gain) { outputGain_ = gain; }
  void getParameterName(int index, char* text) const {
    writeParameterName(kNames, kParameterCount, index, text);
  }
  // Left block, then right block, in place. Audio thread only.
  void process(float* left, float* right, int count);

  // Samples of both channels in a row at or below the silence threshold,
  // counted per sample and channel (saturates instead of wrapping).
  int silenceCount() const { return silenceCount_; }
  const EqualiserSection& section(int index) const { return sections_[index]; }

 private:
  static constexpr const char* kNames[kParameterCount] = {"Low cutoff", "Low Q", "Low gain",
                                                          "High cutoff", "High gain"};
  void design(int index, double frequency, double gain, double q);
  void processChannel(float* samples, int count, EqualiserSection& low, EqualiserSection& high,
                      float& dc, long long& silence) const;

  float lowCutoff_ = 130.0f;  // Hz
  float lowQ_ = 0.5f;
  float lowGain_ = 7.0f;         // dB
  float highCutoff_ = 10000.0f;  // Hz
  float highGain_ = 3.0f;        // dB
  float dcCutoff_ = 0.6f;
  float outputGain_ = 1.0f;
  float sampleRate_ = 44100.0f;
  float dcCoefficient_ = 0.6f * 100.0f / 44100.0f;
  std::array<EqualiserSection, kSectionCount> sections_{};
  float dcLeft_ = 0.0f;
  float dcRight_ = 0.0f;
  int silenceCount_ = 0;
  float silenceThreshold_ = 0.0005f;
};

}  // namespace sablevox
