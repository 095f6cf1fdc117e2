// Reverb: independent left and right chains of delay sections with a
// low-pass in each loop; mode 6 has four sections a side (two modulated),
// mode 5 eight (all modulated).
#pragma once

#include <array>

#include "effects/effect_common.h"
#include "host/large_block.h"
#include "host/written_mark.h"

namespace sablevox {

// Length of a section in samples for a "Size" value (0..1), a sample rate and
// an entry of the length table; wraps at 65536 like a 16-bit count, and is at
// least 1.
int reverbSectionLength(float size, float sampleRate, float tableEntry);

class Reverb {
 public:
  static constexpr int kParameterCount = 4;  // Dry/wet, Size, Feedback, Damp (unused)
  // Work buffers and lines; process splits longer blocks into pieces of this.
  static constexpr int kBlockLength = 32768;
  static constexpr int kSectionCount = 16;  // lines 0..7 left, 8..15 right

  // Megabytes of lines, zero from the block and resident only as far as
  // they are written (written marks). User-provided, so that `new Reverb()`
  // does not zero them again.
  Reverb() {}
  SABLEVOX_SPARSE_BLOCK_OPERATORS
  Reverb(const Reverb&) = delete;
  Reverb& operator=(const Reverb&) = delete;

  // Empties the lines; LFO phases and loop filters go on from where they are.
  void reset();
  void setSampleRate(float rate) { sampleRate_ = clampEffectRate(rate); }
  // 5 eight sections a side, 6 four; others (3 at the start) leave blocks as they are.
  void setMode(int mode) { mode_ = mode; }
  // value is clamped to 0..1; an index at or above kParameterCount is ignored.
  void setParameter(int index, float value) { storeParameter(parameters_, index, value); }
  void getParameterName(int index, char* text) const {
    writeParameterName(kNames, kParameterCount, index, text);
  }
  // Both buffers of count floats, in place, any count. Audio thread only.
  void process(float* left, float* right, int count);

 private:
  static constexpr const char* kNames[kParameterCount] = {"Dry/wet", "Size", "Feedback", "Damp"};
  static constexpr int kMask = kBlockLength - 1;

  // Per-call decode of one section.
  struct Section {
    int line;
    int length;
    float decay;
    float increment;  // of the LFO, per sample
    bool modulated;
  };

  void processPiece(float* left, float* right, int count, const Section* sections, int perSide,
                    float g, float mixGain);
  // The k-th sections of both sides (alike in being modulated or plain).
  void runSections(float* bufL, float* bufR, int count, const Section& left, const Section& right,
                   float g);

  std::array<float, kParameterCount> parameters_{0.5f, 0.5f, 0.5f, 0.0f};
  float sampleRate_ = 44100.0f;
  int mode_ = 3;
  // Work buffers, written before they are read in each piece.
  std::array<float, kBlockLength> bufferLeft_;
  std::array<float, kBlockLength> bufferRight_;
  int writeIndex_ = 0;
  std::array<float, kSectionCount> lfoPhase_{};
  std::array<std::array<float, kBlockLength>, kSectionCount> lines_;
  std::array<int32_t, kSectionCount> lineWritten_{};
  std::array<float, kSectionCount> lowpass_{};
};

}  // namespace sablevox
