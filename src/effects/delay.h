// Delay: a stereo echo whose time is a musical fraction of the host's beat,
// in four modes (plain, left doubled, inverted feedback, cross-feed).
#pragma once

#include <array>

#include "effects/effect_common.h"
#include "host/large_block.h"
#include "host/written_mark.h"

namespace sablevox {

class Delay {
 public:
  static constexpr int kParameterCount = 4;  // Dry/wet, Delaytime, Feedback, Damp
  // About three seconds at 44100 Hz; every index wraps, so longer delays
  // (slow tempi, high rates) read a newer sample instead of leaving the line.
  static constexpr int kLineLength = 131072;

  // Megabytes of lines, zero from the block and resident only as far as
  // they are written (written marks). User-provided, so that `new Delay()`
  // does not zero them again.
  Delay() {}
  SABLEVOX_SPARSE_BLOCK_OPERATORS
  Delay(const Delay&) = delete;
  Delay& operator=(const Delay&) = delete;

  // Empties the lines and the damping filters; parameters stay.
  void reset();
  void setSampleRate(float rate) { sampleRate_ = clampEffectRate(rate); }
  // Beats per minute; any value is accepted: a negative or non-numeric tempo
  // gives a zero delay, a zero tempo the longest (only its wrap matters).
  void setTempo(float bpm) { tempo_ = bpm; }
  // 0 "Delay A", 1 "Delay C", 2 "Delay B", 3 "Delay D"; others leave blocks as they are.
  void setMode(int mode) { mode_ = mode; }
  // value is clamped to 0..1; an index at or above kParameterCount is ignored.
  void setParameter(int index, float value) { storeParameter(parameters_, index, value); }
  void getParameterName(int index, char* text) const {
    writeParameterName(kNames, kParameterCount, index, text);
  }
  // Both buffers of count floats, in place. Audio thread only.
  void process(float* left, float* right, int count);

 private:
  static constexpr const char* kNames[kParameterCount] = {"Dry/wet", "Delaytime", "Feedback",
                                                          "Damp"};
  static constexpr int kMask = kLineLength - 1;
  using Line = std::array<float, kLineLength>;

  int delayLength() const;
  template <bool kInverted>
  void processEcho(float* left, float* right, int count, int leftDelay, int delay, float g);
  void processCross(float* left, float* right, int count, int delay, float g);

  std::array<float, kParameterCount> parameters_{0.5f, 0.5f, 0.5f, 0.3f};
  float sampleRate_ = 44100.0f;
  float tempo_ = 120.0f;
  int mode_ = 0;
  Line lineLeft_;
  Line lineRight_;
  Line lineAux1_;  // mode 3 only
  Line lineAux2_;  // mode 3 only
  int writeIndex_ = 0;
  int32_t lineWritten_ = 0;  // of lineLeft_ and lineRight_
  int32_t auxWritten_ = 0;   // of lineAux1_ and lineAux2_
  float dampLeft_ = 0.0f;
  float dampRight_ = 0.0f;
};

}  // namespace sablevox
