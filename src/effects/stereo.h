// Stereo: reworks the stereo picture without a delay line. Mode 0 widens
// through a mid/side matrix with first-order all-pass sections, mode 1 sums
// to mono and sends the sum back with a polarity that "Pan" sets.
#pragma once

#include <array>

#include "effects/effect_common.h"

namespace sablevox {

class Stereo {
 public:
  static constexpr int kParameterCount = 2;  // Dry/wet, Pan

  Stereo() = default;
  Stereo(const Stereo&) = delete;
  Stereo& operator=(const Stereo&) = delete;

  // Nothing to empty: the all-pass history is not cleared.
  void reset() {}
  void setSampleRate(float rate) { sampleRate_ = clampEffectRate(rate); }
  // 0 enhance, 1 surround; others leave blocks as they are.
  void setMode(int mode) { mode_ = mode; }
  // value is clamped to 0..1; an index at or above kParameterCount is ignored.
  void setParameter(int index, float value) { storeParameter(parameters_, index, value); }
  void getParameterName(int index, char* text) const {
    writeParameterName(kNames, kParameterCount, index, text);
  }
  // Both buffers of count floats, in place. Audio thread only.
  void process(float* left, float* right, int count);

 private:
  static constexpr const char* kNames[kParameterCount] = {"Dry/wet", "Pan"};
  void processEnhance(float* left, float* right, int count);
  void processSurround(float* left, float* right, int count);

  std::array<float, kParameterCount> parameters_{0.5f, 0.5f};
  float sampleRate_ = 44100.0f;
  int mode_ = 0;
  float midOut_ = 0.0f;
  float midIn_ = 0.0f;
  float sideOut_ = 0.0f;
  float sideIn_ = 0.0f;
};

}  // namespace sablevox
