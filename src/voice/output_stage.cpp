// Drive variants. Each does nothing at all below a drive of 0.0001, so that
// Drive 0 passes the voice bit-exactly.
#include "voice/output_stage.h"

#include <cmath>

namespace sablevox {
namespace {

constexpr float kDenormalOffset = 1e-06f;

bool driveActive(float drive, float driveLow) {
  return drive > 0.0001f && driveLow > 0.0001f;
}

// The division runs in double from float operands, as the shaper always has.
inline float shape(float s, float f) {
  return static_cast<float>(static_cast<double>(s * (f + 1.0f)) /
                            static_cast<double>(std::fabs(s) * f + 1.0f));
}

}  // namespace

void drivePlain(float* buffer, int count, float driveLow, float driveHigh, float drive,
                float& /*state*/) {
  if (!driveActive(drive, driveLow)) return;
  const float f = drive * drive * drive * 50.0f;
  for (int i = 0; i < count; ++i) buffer[i] = shape(buffer[i] * driveLow, f) * driveHigh;
}

void driveOversampled2(float* buffer, int count, float driveLow, float driveHigh, float drive,
                       float& state) {
  if (!driveActive(drive, driveLow)) return;
  const float f = drive * drive * drive * 50.0f;
  const float a = 1.0f - drive * 0.9f;
  const float b = 1.0f - a;
  const float outGain = driveHigh * 0.5f;
  float s = state;
  for (int i = 0; i < count; ++i) {
    const float u = (buffer[i] * driveLow + kDenormalOffset) * a;
    s = s * b + u;
    const float s1 = s;
    s = s * b + u;
    buffer[i] = (shape(s, f) + shape(s1, f)) * outGain;
  }
  state = s;
}

void driveOversampled8(float* buffer, int count, float driveLow, float driveHigh, float drive,
                       float& state) {
  if (!driveActive(drive, driveLow)) return;
  const float f = drive * drive * drive * 50.0f;
  const float a = (1.0f - drive * 0.9f) * 0.25f;
  const float b = 1.0f - a;
  const float outGain = driveHigh * 0.125f;
  float s = state;
  for (int i = 0; i < count; ++i) {
    const float u = (buffer[i] * driveLow + kDenormalOffset) * a;
    float steps[8];
    for (float& step : steps) {
      s = s * b + u;
      step = s;
    }
    // Summed from the first sub-step on: the order fixes the float rounding.
    float sum = shape(steps[0], f);
    for (int k = 1; k < 8; ++k) sum += shape(steps[k], f);
    buffer[i] = sum * outGain;
  }
  state = s;
}

}  // namespace sablevox
