// The control laws of the voice tick: LFO destinations, velocity, pan and
// volume, oscillator balance, and the filter's arguments.
#include "voice/voice_laws.h"

#include <gtest/gtest.h>

#include <cmath>

#include "host/numeric.h"
#include "voice/filter_arguments.h"

namespace sablevox {
namespace {

TEST(VoiceLaws, LfoDestinationsUseACubicSend) {
  // LFOSend 1: c = 1; LFOSend 0: c = -1; 0.75: c = 0.125.
  EXPECT_FLOAT_EQ(lfoModulation(kLfoDestCutoff, 0.75f, 0.8f).cutoff, 0.1f);
  EXPECT_FLOAT_EQ(lfoModulation(kLfoDestReso, 0.0f, 0.5f).reso, -0.5f);
  EXPECT_FLOAT_EQ(lfoModulation(kLfoDestVolume, 1.0f, 1.0f).ampMod, 2.0f);
  EXPECT_FLOAT_EQ(lfoModulation(kLfoDestVolume, 1.0f, 0.0f).ampMod, 0.0f);
  // "Osc octave": doubles at send 1, halves at send 0.
  EXPECT_FLOAT_EQ(lfoModulation(kLfoDestOctave, 1.0f, 1.0f).pitchMod[1], 2.0f);
  EXPECT_FLOAT_EQ(lfoModulation(kLfoDestOctave, 0.0f, 1.0f).pitchMod[0], 0.5f);
  EXPECT_FLOAT_EQ(lfoModulation(kLfoDestPitch, 1.0f, 1.0f).pitchMod[0], 1.05f);
  const LfoModulation detune = lfoModulation(kLfoDestDetune, 1.0f, 0.5f);
  EXPECT_FLOAT_EQ(detune.pitchMod[0], 0.95f);
  EXPECT_FLOAT_EQ(detune.pitchMod[1], 1.05f);
  EXPECT_FLOAT_EQ(lfoModulation(kLfoDestPan, 1.0f, 1.0f).pan, 0.5f);
  EXPECT_FLOAT_EQ(lfoModulation(kLfoDestCross, 0.0f, 1.0f).cross, -0.5f);
  // Send 0.5 is neutral everywhere, offsets of "Volume" and "Pan" included.
  for (int d = 0; d < kLfoDestinations; ++d) {
    const LfoModulation m = lfoModulation(d, 0.5f, 0.7f);
    EXPECT_EQ(m.ampMod, 1.0f);
    EXPECT_EQ(m.pitchMod[0] * m.pitchMod[1], 1.0f);
    EXPECT_EQ(m.cutoff + m.reso + m.pan + m.cross, 0.0f);
  }
}

TEST(VoiceLaws, VelocityScalesAroundTheCentre) {
  EXPECT_EQ(velocityFactor(0.5f, 0), 1.0f);
  EXPECT_EQ(velocityFactor(0.5f, 127), 1.0f);
  // Full amount: velocity / 48 upward, (128 - velocity) / 48 downward.
  EXPECT_FLOAT_EQ(velocityFactor(1.0f, 48), 0.5f);
  EXPECT_FLOAT_EQ(velocityFactor(1.0f, 0), 0.0f);
  EXPECT_FLOAT_EQ(velocityFactor(0.0f, 80), 0.5f);
  EXPECT_FLOAT_EQ(velocityFactor(0.75f, 96), 0.5f + 96 * 0.020833334f * 0.25f);
}

TEST(VoiceLaws, PanVolumeAndOscillatorBalance) {
  const float gains[2] = {2.0f, 4.0f};
  const VoiceGains centre = voiceGains(0.0f, 0.0f, 1.0f, 0.0f, gains);
  EXPECT_FLOAT_EQ(centre.panLeft, 0.75f * 0.01f);
  EXPECT_FLOAT_EQ(centre.panRight, 0.75f * 0.01f);
  EXPECT_FLOAT_EQ(centre.oscLevel[0], 1.0f);
  EXPECT_FLOAT_EQ(centre.oscLevel[1], 2.0f);
  const VoiceGains side = voiceGains(0.5f, 0.5f, 1.0f, 0.0f, gains);
  EXPECT_FLOAT_EQ(side.panLeft, 0.01f);
  EXPECT_EQ(side.panRight, 0.0f);
  EXPECT_FLOAT_EQ(side.oscLevel[0], 2.0f);
  EXPECT_EQ(side.oscLevel[1], 0.0f);
  // The mod wheel's crossfade at its end gives oscillator 1 twice its half.
  const VoiceGains wheel = voiceGains(0.0f, 0.0f, 1.0f, 1.0f, gains);
  EXPECT_FLOAT_EQ(wheel.oscLevel[0], 2.0f);
  EXPECT_EQ(wheel.oscLevel[1], 0.0f);
  // Volume: silence below 0.01, a steep exponential above.
  EXPECT_EQ(voiceGains(0.0f, 0.0f, 0.0099f, 0.0f, gains).panLeft, 0.0f);
  const float low = voiceGains(0.0f, 0.0f, 0.01f, 0.0f, gains).panLeft;
  EXPECT_FLOAT_EQ(low, 0.75f * static_cast<float>(fastExp(0.99f * -6.0f) * 0.01f));
}

FilterKnobs knobs() {
  // Cutoff, Reso, FiltKey, EnvFilSe, EnvFilVe, LFO and wheel offsets.
  return {0.4f, 0.3f, 1.0f, 1.0f, 0.5f, 0.01f, 0.02f, 0.03f, 0.04f};
}

TEST(FilterArgumentsTest, KeyTrackingEnvelopeAndOffsets) {
  // Key 76 with FiltKey 1 adds 12 * 0.5 * 0.0195; EnvFilSe 1 adds env.
  const FilterArguments a = filterArguments(0, 76, 100, 0.5f, knobs());
  EXPECT_NEAR(a.cutoff, 0.117f + 0.4f + 0.01f + 0.03f + 0.5f, 1e-6f);
  EXPECT_FLOAT_EQ(a.resonance, 0.3f + 0.02f + 0.04f);
  FilterKnobs k = knobs();
  k.keyTrack = 0.5f;
  k.envAmount = 0.5f;
  k.envVelocity = 1.0f;  // no envelope, whatever the velocity
  EXPECT_FLOAT_EQ(filterArguments(0, 100, 127, 1.0f, k).cutoff, 0.4f + 0.01f + 0.03f);
  k.envAmount = 0.0f;  // inverted envelope scaled by velocity
  EXPECT_NEAR(filterArguments(0, 64, 48, 1.0f, k).cutoff, 0.44f - 0.5f, 1e-6f);
}

TEST(FilterArgumentsTest, AmAndFmArgumentsArePitches) {
  const FilterKnobs k = knobs();
  const FilterArguments am = filterArguments(35, 76, 100, 0.0f, k);
  EXPECT_NEAR(am.cutoff, 12 * 0.009628432f + 0.2f + 0.50015f + 0.005f + 0.015f, 1e-6f);
  EXPECT_NEAR(am.resonance, 0.02f + 0.02f + 0.15f + 0.5f, 1e-6f);
  // Reso 0.3 picks ratio 1 of six (trunc(0.3 * 5.99)); FiltKey plays no part.
  const FilterArguments fm = filterArguments(36, 52, 100, 0.0f, k);
  EXPECT_NEAR(fm.resonance, -12 * 0.009628432f + 0.2016f + 0.02f + 0.04f, 1e-6f);
  EXPECT_NEAR(fm.cutoff, 0.4f + 0.01f + 0.03f, 1e-6f);
  FilterKnobs top = k;
  top.reso = 1.0f;
  EXPECT_NEAR(filterArguments(40, 64, 0, 0.0f, top).resonance, 0.5481f + 0.06f, 1e-6f);
  EXPECT_TRUE(usesRawEnvelope(35) && usesRawEnvelope(40));
  EXPECT_FALSE(usesRawEnvelope(34) || usesRawEnvelope(41));
}

}  // namespace
}  // namespace sablevox
