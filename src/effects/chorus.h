// Chorus: the four modulated short-delay effects (chorus, ensemble, flanger,
// two-band rotary speaker) sharing four lines and two LFO phases.
#pragma once

#include <array>

#include "effects/effect_common.h"
#include "host/large_block.h"
#include "host/written_mark.h"

namespace sablevox {

class Chorus {
 public:
  // Dry/wet, Speed, Depth, Feedback, and the rotary's tremolo depth (no name).
  static constexpr int kParameterCount = 5;
  // Holds the deepest sweep at the highest supported rate; indices wrap.
  static constexpr int kLineLength = 32768;

  // Megabytes of lines, zero from the block and resident only as far as
  // they are written (written marks). User-provided, so that `new Chorus()`
  // does not zero them again.
  Chorus() {}
  SABLEVOX_SPARSE_BLOCK_OPERATORS
  Chorus(const Chorus&) = delete;
  Chorus& operator=(const Chorus&) = delete;

  // Empties the lines, restarts both LFOs and clears the rotary's crossover.
  void reset();
  void setSampleRate(float rate) { sampleRate_ = clampEffectRate(rate); }
  // 0 chorus, 1 ensemble, 2 flanger, 3 rotary; others leave blocks as they are.
  void setMode(int mode) { mode_ = mode; }
  // value is clamped to 0..1; an index at or above kParameterCount is ignored.
  void setParameter(int index, float value) { storeParameter(parameters_, index, value); }
  void getParameterName(int index, char* text) const {
    writeParameterName(kNames, kParameterCount, index, text);
  }
  // Both buffers of count floats, in place. Audio thread only.
  void process(float* left, float* right, int count);

 private:
  static constexpr const char* kNames[kParameterCount] = {"Dry/wet", "Speed", "Depth", "Feedback",
                                                          ""};
  static constexpr int kMask = kLineLength - 1;
  using Line = std::array<float, kLineLength>;

  void processChorus(float* left, float* right, int count);
  void processEnsemble(float* left, float* right, int count);
  void processFlanger(float* left, float* right, int count);
  void processRotary(float* left, float* right, int count);

  std::array<float, kParameterCount> parameters_{0.5f, 0.5f, 0.5f, 0.5f, 0.5f};
  float sampleRate_ = 44100.0f;
  int mode_ = 0;
  Line lineLeft_;
  Line lineRight_;
  Line lineHighLeft_;   // rotary only
  Line lineHighRight_;  // rotary only
  int writeIndex_ = 0;
  int32_t lineWritten_ = 0;  // of lineLeft_ and lineRight_
  int32_t highWritten_ = 0;  // of lineHighLeft_ and lineHighRight_
  float phase1_ = 0.0f;
  float phase2_ = 0.0f;
  float lowLeft_ = 0.0f;  // rotary crossover
  float lowRight_ = 0.0f;
};

}  // namespace sablevox
