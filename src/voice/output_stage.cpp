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

// The oversampled stage on kChannels independent channels at once. The
// one-pole low-pass is a serial chain of kSteps multiply-adds per sample, so
// one channel waits on its own latency; a second channel's chain fills the
// gaps. Each channel's operations and their order are those of the
// one-channel form.
template <int kSteps, int kChannels>
void driveOversampled(float* const* buffers, int count, float driveLow, float driveHigh,
                      float drive, float* const* states) {
  if (!driveActive(drive, driveLow)) return;
  const float f = drive * drive * drive * 50.0f;
  const float a = kSteps == 8 ? (1.0f - drive * 0.9f) * 0.25f : 1.0f - drive * 0.9f;
  const float b = 1.0f - a;
  const float outGain = driveHigh * (1.0f / static_cast<float>(kSteps));
  float s[kChannels];
  float* out[kChannels];
  for (int c = 0; c < kChannels; ++c) {
    s[c] = *states[c];
    out[c] = buffers[c];
  }
  for (int i = 0; i < count; ++i) {
    float steps[kChannels][kSteps];
    float u[kChannels];
    for (int c = 0; c < kChannels; ++c) u[c] = (out[c][i] * driveLow + kDenormalOffset) * a;
    for (int k = 0; k < kSteps; ++k) {
      for (int c = 0; c < kChannels; ++c) {
        s[c] = s[c] * b + u[c];
        steps[c][k] = s[c];
      }
    }
    for (int c = 0; c < kChannels; ++c) {
      if constexpr (kSteps == 2) {
        out[c][i] = (shape(steps[c][1], f) + shape(steps[c][0], f)) * outGain;
      } else {
        // Summed from the first sub-step on: the order fixes the float rounding.
        float sum = shape(steps[c][0], f);
        for (int k = 1; k < kSteps; ++k) sum += shape(steps[c][k], f);
        out[c][i] = sum * outGain;
      }
    }
  }
  for (int c = 0; c < kChannels; ++c) *states[c] = s[c];
}

template <int kSteps>
void oneChannel(float* buffer, int count, float driveLow, float driveHigh, float drive,
                float& state) {
  float* buffers[1] = {buffer};
  float* states[1] = {&state};
  driveOversampled<kSteps, 1>(buffers, count, driveLow, driveHigh, drive, states);
}

template <int kSteps>
void twoChannels(float* left, float* right, int count, float driveLow, float driveHigh, float drive,
                 float& stateLeft, float& stateRight) {
  float* buffers[2] = {left, right};
  float* states[2] = {&stateLeft, &stateRight};
  driveOversampled<kSteps, 2>(buffers, count, driveLow, driveHigh, drive, states);
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
  oneChannel<2>(buffer, count, driveLow, driveHigh, drive, state);
}

void driveOversampled8(float* buffer, int count, float driveLow, float driveHigh, float drive,
                       float& state) {
  oneChannel<8>(buffer, count, driveLow, driveHigh, drive, state);
}

StereoOutputStage stereoOutputStage(OutputStage stage) {
  if (stage == driveOversampled8) return twoChannels<8>;
  if (stage == driveOversampled2) return twoChannels<2>;
  return nullptr;
}

}  // namespace sablevox
