// The drive and output stage of a voice: a soft saturator s*(f+1)/(|s|*f+1)
// whose strength follows Drive, plain or oversampled behind a one-pole
// low-pass. Chosen by the quality setting at refresh time.
#pragma once

namespace sablevox {

void drivePlain(float* buffer, int count, float driveLow, float driveHigh, float drive,
                float& state);
void driveOversampled2(float* buffer, int count, float driveLow, float driveHigh, float drive,
                       float& state);
void driveOversampled8(float* buffer, int count, float driveLow, float driveHigh, float drive,
                       float& state);

}  // namespace sablevox
