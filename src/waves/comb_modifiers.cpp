// The Multi family: combs over harmonics whose teeth move with the frame, so
// that scanning the frames sweeps them through the spectrum; and the time
// scramble of the two Hyper steps.
#include <cmath>
#include <cstdint>

#include "waves/modifier_families.h"
#include "waves/wave_format.h"
#include "waves/wave_modifiers.h"

namespace sablevox {
namespace {

constexpr float kC1 = 0.00074183976f;  // 0x3A427806
constexpr float kC2 = 0.0028735632f;   // 0x3B3C5264

double power(float base, double exponent) {
  return std::pow(static_cast<double>(base), exponent);
}

}  // namespace

float foldedTriangle(float x) {
  return 2.0f * (std::fabs(2.0f * (x - std::trunc(x) - 0.5f)) - 0.5f);
}

namespace modifier_detail {

void combFrame(int step, int f, float* frame) {
  // The frame's constants, each rounded to float before k multiplies it.
  const float c1Frame = static_cast<float>(f + 40) * kC1;
  const float c2Frame = static_cast<float>(f + 40) * kC2;
  const int q = f + 13;
  const float c1Low = static_cast<float>(q + 27) * kC1;
  const float c1Mid = static_cast<float>(q) * kC1 * 3.0f;
  const float c1High = static_cast<float>(q + 67) * kC1 * 5.0f;
  for (int i = 0; i < kWaveHarmonics; ++i) {
    const int k = i + 1;
    const float kf = static_cast<float>(k);
    float factor = 1.0f;
    switch (step) {
      case kModMulti1:
        factor = 1.5f * foldedTriangle(kf * c1Frame);
        break;
      case kModMulti2: {
        const float product =
            foldedTriangle(kf * c1Low) * foldedTriangle(kf * c1Mid) * foldedTriangle(kf * c1High);
        factor = static_cast<float>(3.0 * std::sqrt(static_cast<double>(std::fabs(product))));
        break;
      }
      case kModFlange1:
        factor = static_cast<float>(2.0 * power(foldedTriangle(kf * c1Frame), 4.0));
        break;
      case kModFlange2: {
        const auto x = static_cast<float>(std::sqrt(static_cast<double>(kf)) * c2Frame);
        factor = static_cast<float>(3.0 * power(foldedTriangle(x), 6.0));
        break;
      }
      case kModHyper1:
        factor = 2.0f * foldedTriangle(kf * c1Frame);
        break;
      case kModHyper2:
        factor = 2.0f * foldedTriangle(kf * c2Frame);
        break;
      default:
        return;
    }
    frame[i] = frame[i] * factor;
  }
}

}  // namespace modifier_detail

void timeScramble(float* buffer, float gain) {
  uint32_t r = 0;  // private and restarted, so that every call gives the same result
  float column[kWaveFrames];
  for (int i = 0; i < kWaveHarmonics; ++i) {
    r = r * 0x0BB38435u + 0x3619636Bu;
    const int v = static_cast<int>(static_cast<float>(r) * 2.3283064e-10f * static_cast<float>(i));
    const uint32_t s = static_cast<uint32_t>((v - (i >> 1)) * i) >> 8;
    const uint32_t shift = s * static_cast<uint32_t>(i);
    for (int f = 0; f < kWaveFrames; ++f) column[f] = buffer[f * kWaveHarmonics + i];
    for (int f = 0; f < kWaveFrames; ++f) {
      buffer[f * kWaveHarmonics + i] = gain * column[(static_cast<uint32_t>(f) - shift) & 255u];
    }
  }
}

}  // namespace sablevox
