// The modifier families behind applyWaveModifier, one frame or one buffer at
// a time. Internal to the wave store.
#pragma once

namespace sablevox::modifier_detail {

// Steps 1..10 on one frame of 256 amplitudes; the same for every frame.
void reshapeFrame(int step, float* frame);
// Steps 11..16 (the comb part) on frame f.
void combFrame(int step, int f, float* frame);
// Steps 17, 18 and 24 on frame f.
void sweepFrame(int step, int f, float* frame);
// Steps 19..23 on a buffer of 256 frames.
void timeShift(int step, float* buffer);

}  // namespace sablevox::modifier_detail
