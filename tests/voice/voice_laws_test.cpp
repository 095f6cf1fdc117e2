// The control laws of the voice tick where they carry a design decision: the
// cubic LFO send and its neutral centre, the pan ends,
// and the filter's key tracking and pitch-like AM and FM arguments.
#include "voice/voice_laws.h"

#include <gtest/gtest.h>

#include "voice/filter_arguments.h"

namespace sablevox {
namespace {

TEST(VoiceLaws, LfoSendIsCubicAndNeutralAtItsCentre) {
  EXPECT_FLOAT_EQ(lfoModulation(kLfoDestCutoff, 0.75f, 0.8f).cutoff, 0.125f * 0.8f);
  // "Osc octave" at full send and l = 1: doubles upward, halves downward.
  EXPECT_FLOAT_EQ(lfoModulation(kLfoDestOctave, 1.0f, 1.0f).pitchMod[1], 2.0f);
  EXPECT_FLOAT_EQ(lfoModulation(kLfoDestOctave, 0.0f, 1.0f).pitchMod[0], 0.5f);
  for (int d = 0; d < kLfoDestinations; ++d) {
    const LfoModulation m = lfoModulation(d, 0.5f, 0.7f);
    EXPECT_EQ(m.ampMod * m.pitchMod[0] * m.pitchMod[1], 1.0f) << d;
    EXPECT_EQ(m.cutoff + m.reso + m.pan + m.cross, 0.0f) << d;
  }
}

TEST(VoiceLaws, PanEnds) {
  const float gains[2] = {2.0f, 4.0f};
  const VoiceGains side = voiceGains(0.5f, 0.5f, 1.0f, 0.0f, gains);
  EXPECT_FLOAT_EQ(side.panLeft, 0.01f);  // Volume 1 is the factor 0.01
  EXPECT_EQ(side.panRight + side.oscLevel[1], 0.0f);
  EXPECT_FLOAT_EQ(side.oscLevel[0], 2.0f);
}

TEST(VoiceLaws, FilterArguments) {
  // Cutoff, Reso, FiltKey, EnvFilSe, EnvFilVe, LFO offsets, wheel offsets.
  const FilterKnobs k{0.4f, 0.3f, 1.0f, 1.0f, 0.5f, 0.01f, 0.02f, 0.03f, 0.04f};
  // An octave up with full key tracking adds 0.117; EnvFilSe 1 adds env.
  EXPECT_NEAR(filterArguments(0, 76, 100, 0.5f, k).cutoff, 0.117f + 0.44f + 0.5f, 1e-6f);
  // AM: the cutoff follows the key in semitones; FM: the resonance does,
  // plus the ratio that Reso picks (trunc(0.3 * 5.99) = 1).
  EXPECT_NEAR(filterArguments(35, 76, 100, 0.0f, k).cutoff,
              12 * 0.009628432f + 0.2f + 0.50015f + 0.005f + 0.015f, 1e-6f);
  EXPECT_NEAR(filterArguments(36, 52, 100, 0.0f, k).resonance, -12 * 0.009628432f + 0.2016f + 0.06f,
              1e-6f);
  EXPECT_EQ(velocityFactor(0.5f, 17), 1.0f);
  EXPECT_FLOAT_EQ(velocityFactor(0.0f, 80), 0.5f);
}

}  // namespace
}  // namespace sablevox
