// The drive and output stage of a voice: a soft saturator s*(f+1)/(|s|*f+1)
// whose strength follows Drive, plain or oversampled behind a one-pole
// low-pass. Chosen by the quality setting at refresh time.
#pragma once

#include "voice/render_types.h"

namespace sablevox {

void drivePlain(float* buffer, int count, float driveLow, float driveHigh, float drive,
                float& state);
void driveOversampled2(float* buffer, int count, float driveLow, float driveHigh, float drive,
                       float& state);
void driveOversampled8(float* buffer, int count, float driveLow, float driveHigh, float drive,
                       float& state);

// A stage on both channels of a stereo voice in one pass, each channel with
// exactly the arithmetic of the one-channel stage.
using StereoOutputStage = void (*)(float* left, float* right, int count, float driveLow,
                                   float driveHigh, float drive, float& stateLeft,
                                   float& stateRight);
// The two-channel form of an oversampled stage, null for any other (the
// plain stage has no chain to overlap). Decided once per voice render.
StereoOutputStage stereoOutputStage(OutputStage stage);

}  // namespace sablevox
