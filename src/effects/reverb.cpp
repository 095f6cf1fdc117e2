// Reverb: lengths, decays and LFO increments decoded once per call, then each
// section runs over the whole work buffer before the next one.
#include "effects/reverb.h"

#include <algorithm>

#include "effects/effect_common.h"
#include "host/numeric.h"

namespace sablevox {
namespace {

// Section lengths relative to the scale, and loop decays. The longest
// section has the smallest decay, so all sections die away at about the
// same rate; the two sides take interleaved entries.
constexpr float kLengths[16] = {50.0f,   47.88f,  45.85f,  43.906f, 42.045f, 40.262f,
                                38.555f, 36.921f, 35.355f, 33.856f, 32.421f, 31.046f,
                                29.73f,  28.47f,  27.263f, 26.107f};
constexpr float kDecays[16] = {0.75f,  0.759f, 0.768f, 0.777f, 0.785f, 0.793f, 0.801f, 0.809f,
                               0.816f, 0.823f, 0.83f,  0.836f, 0.843f, 0.849f, 0.855f, 0.861f};

constexpr int kRightLines = 8;

}  // namespace

int reverbSectionLength(float size, float sampleRate, float tableEntry) {
  const float scale = (size * size + 0.1f) * sampleRate / 44100.0f * 300.0f;
  float samples = scale * tableEntry;
  if (!(samples >= 0.0f)) samples = 0.0f;  // NaN or negative arguments
  const int length = static_cast<int>(std::min(samples, 1e9f)) & 0xFFFF;
  return std::max(length, 1);  // a wrapped length of 0 would stop the LFO (1/0)
}

void Reverb::reset() {
  for (int k = 0; k < kSectionCount; ++k) {
    clearWritten(lines_[k].data(), lineWritten_[k], kBlockLength);
    lineWritten_[k] = 0;
  }
  writeIndex_ = 0;
}

void Reverb::process(float* left, float* right, int count) {
  if (count <= 0 || left == nullptr || right == nullptr) return;
  if (mode_ != 5 && mode_ != 6) return;
  const bool large = mode_ == 5;
  const int perSide = large ? 8 : 4;

  // "Feedback" sets the loop's low-pass: 1 gives the dullest sound.
  const float e = parameters_[2] - 1.0f;
  const float a = (e * e * 0.9f + 0.1f) * 0.5f * 48000.0f / sampleRate_;
  const float g =
      std::min(static_cast<float>(1.0 - fastExp(static_cast<double>(a * -6.28f))), 1.0f);
  const float rate = 16000.0f / sampleRate_;

  Section sections[kSectionCount];
  for (int side = 0; side < 2; ++side) {
    for (int k = 0; k < perSide; ++k) {
      const int table = large ? 2 * k + side : 4 * k + 2 * side;
      Section& s = sections[side * perSide + k];
      s.line = side * kRightLines + k;
      s.length = reverbSectionLength(parameters_[1], sampleRate_, kLengths[table]);
      s.decay = kDecays[2 * k + side];
      // Far below one cycle per sample for any length the supported rates
      // give; the limit only protects the phase recursion.
      s.increment = std::min((1.0f / static_cast<float>(s.length)) * rate, 0.5f);
      s.modulated = large || k % 2 == 0;
    }
  }

  const float mixGain = large ? 0.5f : 2.0f;
  for (int done = 0; done < count; done += kBlockLength) {
    const int piece = std::min(count - done, kBlockLength);
    processPiece(left + done, right + done, piece, sections, perSide, g, mixGain);
  }
}

void Reverb::processPiece(float* left, float* right, int count, const Section* sections,
                          int perSide, float g, float mixGain) {
  float* bufL = bufferLeft_.data();
  float* bufR = bufferRight_.data();
  for (int i = 0; i < count; ++i) {
    bufL[i] = left[i] + kDenormalOffset;
    bufR[i] = right[i] + kDenormalOffset;
  }
  for (int k = 0; k < perSide; ++k) {
    runSections(bufL, bufR, count, sections[k], sections[perSide + k], g);
  }

  // The buffers hold input plus section returns: keep the dry part apart.
  const float wet = parameters_[0];
  const float dry = 1.0f - wet;
  for (int i = 0; i < count; ++i) {
    const float x = left[i];
    left[i] = bufL[i] * wet * mixGain + x * dry - x * wet * mixGain;
  }
  for (int i = 0; i < count; ++i) {
    const float x = right[i];
    right[i] = bufR[i] * wet * mixGain + x * dry - x * wet * mixGain;
  }
  writeIndex_ = (writeIndex_ + count) & kMask;
}

namespace {

// One section's running values, copied into locals for a block.
struct SectionRun {
  float* line;
  int length;
  float decay;
  float increment;
  float phase;
  float lowpass;
};

// One sample of a section, in place on b: a delay with a one-pole low-pass in
// its loop (loop gain -decay); 0.3 of the return joins the running signal.
// A modulated section's delay shortens by up to 0.4 % of its length, at
// 16000 / length Hz; a plain section returns a little less (0.7).
template <bool kModulated>
inline float sectionStep(SectionRun& s, float b, int w, float g, float h) {
  constexpr int kMask = Reverb::kBlockLength - 1;
  float v;
  if constexpr (kModulated) {
    s.phase = advancePhase(s.phase, s.increment);
    const float m = parabolicShape(s.phase) * static_cast<float>(s.length) * 0.004f;
    const int mi = static_cast<int>(m);
    const float e = m - static_cast<float>(mi);
    const int idx = w - s.length + mi;
    v = (s.line[(idx - 1) & kMask] * (1.0f - e) + s.line[idx & kMask] * e) * g + s.lowpass * h;
  } else {
    v = s.line[(w - s.length) & kMask] * g + s.lowpass * h;
  }
  s.lowpass = v;
  s.line[w] = b - v * s.decay;
  return kModulated ? b + v * 0.3f : b + v * 0.3f * 0.7f;
}

// The k-th section of each side over its buffer. The sides are independent,
// so running them in one loop lets their loop filters' recursions overlap.
template <bool kModulated>
void runSectionPair(float* bufL, float* bufR, int count, SectionRun& a, SectionRun& b, int w,
                    float g) {
  constexpr int kMask = Reverb::kBlockLength - 1;
  const float h = 1.0f - g;
  SectionRun l = a;
  SectionRun r = b;
  for (int i = 0; i < count; ++i) {
    bufL[i] = sectionStep<kModulated>(l, bufL[i], w, g, h);
    bufR[i] = sectionStep<kModulated>(r, bufR[i], w, g, h);
    w = (w + 1) & kMask;
  }
  a = l;
  b = r;
}

}  // namespace

void Reverb::runSections(float* bufL, float* bufR, int count, const Section& left,
                         const Section& right, float g) {
  SectionRun a{lines_[left.line].data(), left.length,          left.decay,
               left.increment,           lfoPhase_[left.line], lowpass_[left.line]};
  SectionRun b{lines_[right.line].data(), right.length,          right.decay,
               right.increment,           lfoPhase_[right.line], lowpass_[right.line]};
  for (const int line : {left.line, right.line}) {
    lineWritten_[line] = raiseWrittenMark(lineWritten_[line], writeIndex_, count, kBlockLength);
  }
  if (left.modulated) {
    runSectionPair<true>(bufL, bufR, count, a, b, writeIndex_, g);
  } else {
    runSectionPair<false>(bufL, bufR, count, a, b, writeIndex_, g);
  }
  lfoPhase_[left.line] = a.phase;
  lowpass_[left.line] = a.lowpass;
  lfoPhase_[right.line] = b.phase;
  lowpass_[right.line] = b.lowpass;
}

}  // namespace sablevox
