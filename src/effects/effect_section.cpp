// The effect section's table of configurations: each step's settings in
// their fixed order, then the units' process calls.
#include "effects/effect_section.h"

#include <initializer_list>

#include "effects/chorus.h"
#include "effects/delay.h"
#include "effects/reverb.h"
#include "effects/stereo.h"

namespace sablevox {
namespace {

void runReverb(Reverb& reverb, float* left, float* right, int count, float sampleRate, int mode,
               float wet, float size, float feedback) {
  reverb.setSampleRate(sampleRate);
  reverb.setParameter(0, wet);
  reverb.setParameter(1, size);
  reverb.setMode(mode);
  reverb.setParameter(2, feedback);
  reverb.process(left, right, count);
}

// The reverb behind the two-effect chains.
void runChainReverb(Reverb& reverb, float* left, float* right, int count, float sampleRate,
                    float par1, float par2) {
  runReverb(reverb, left, right, count, sampleRate, 6, par1 * 0.4f, par2 * 0.5f + 0.25f, 0.3f);
}

// Delay steps: mode, then the parameters in the step's order.
struct DelaySetting {
  int index;
  float value;
};

void runDelay(Delay& delay, float* left, float* right, int count, float sampleRate,
              TempoSource& tempo, int mode, std::initializer_list<DelaySetting> settings) {
  delay.setSampleRate(sampleRate);
  delay.setTempo(static_cast<float>(tempo.getTempo()));
  delay.setMode(mode);
  for (const DelaySetting& s : settings) delay.setParameter(s.index, s.value);
  delay.process(left, right, count);
}

void runChorus(Chorus& chorus, float* left, float* right, int count, float sampleRate, int mode,
               int depthIndex, float speed, float depth, float wet) {
  chorus.setSampleRate(sampleRate);
  chorus.setMode(mode);
  chorus.setParameter(1, speed);
  chorus.setParameter(depthIndex, depth);
  chorus.setParameter(0, wet);
  chorus.process(left, right, count);
}

void runStereo(Stereo& stereo, float* left, float* right, int count, float sampleRate, int mode,
               float par1, float par2) {
  stereo.setSampleRate(sampleRate);
  stereo.setMode(mode);
  stereo.setParameter(0, par1);
  stereo.setParameter(1, par2);
  stereo.process(left, right, count);
}

}  // namespace

void runEffect(int type, EffectUnits& fx, float* left, float* right, int count, float sampleRate,
               float p1, float p2, TempoSource& tempo) {
  switch (type) {
    case 1:  // Reverb A
      runReverb(*fx.reverb, left, right, count, sampleRate, 6, p1 * 0.5f, p2, 0.5f);
      break;
    case 2:  // Reverb B
      runReverb(*fx.reverb, left, right, count, sampleRate, 6, p1 * 0.5f, p2, 0.0f);
      break;
    case 3:  // Delay A
      runDelay(*fx.delay, left, right, count, sampleRate, tempo, 0, {{1, p2}, {0, p1}});
      break;
    case 4:  // Delay B
      runDelay(*fx.delay, left, right, count, sampleRate, tempo, 2, {{1, p2}, {2, p1}});
      break;
    case 5:  // Delay C
      runDelay(*fx.delay, left, right, count, sampleRate, tempo, 1, {{1, p2}, {0, p1}});
      break;
    case 6:  // Delay D
      runDelay(*fx.delay, left, right, count, sampleRate, tempo, 3, {{1, p2}, {2, p1}});
      break;
    case 7:  // Chorus
      runChorus(*fx.chorus, left, right, count, sampleRate, 0, 2, p1, p2, 0.5f);
      break;
    case 8:  // Ensemble
      runChorus(*fx.chorus, left, right, count, sampleRate, 1, 2, p1, p2, 0.5f);
      break;
    case 9:  // Flanger
      runChorus(*fx.chorus, left, right, count, sampleRate, 2, 2, p1, p2, 1.0f);
      break;
    case 10:  // Rotary: EffPar2 is the tremolo depth; "Depth" stays as left
      runChorus(*fx.chorus, left, right, count, sampleRate, 3, 4, p1, p2, 1.0f);
      break;
    case 11:  // Del+Rev A
      runDelay(*fx.delay, left, right, count, sampleRate, tempo, 2,
               {{0, p1}, {1, p2}, {2, 0.5f}, {3, 0.3f}});
      runChainReverb(*fx.reverb, left, right, count, sampleRate, p1, p2);
      break;
    case 12:  // Del+Rev B
      runDelay(*fx.delay, left, right, count, sampleRate, tempo, 3,
               {{0, p1}, {1, p2}, {2, 0.3f}, {3, 0.3f}});
      runChainReverb(*fx.reverb, left, right, count, sampleRate, p1, p2);
      break;
    case 13:  // Ens+Rev
      runChorus(*fx.chorus, left, right, count, sampleRate, 1, 2, 0.5f, 0.5f, 0.5f);
      runChainReverb(*fx.reverb, left, right, count, sampleRate, p1, p2);
      break;
    case 14:  // Surround
      runStereo(*fx.stereo, left, right, count, sampleRate, 1, p1, p2);
      break;
    case 15:  // Stereo enhance
      runStereo(*fx.stereo, left, right, count, sampleRate, 0, p1, p2);
      break;
    case 16:  // RevHiEndA
      runReverb(*fx.reverb, left, right, count, sampleRate, 5, p1, p2, 0.0f);
      break;
    case 17:  // RevHiEndB
      runReverb(*fx.reverb, left, right, count, sampleRate, 5, p1, p2, 0.5f);
      break;
    case 18:  // RevHiEndC
      runReverb(*fx.reverb, left, right, count, sampleRate, 5, p1, p2, 0.9f);
      break;
    default:  // 0 "off", 19 and anything else
      break;
  }
}

}  // namespace sablevox
