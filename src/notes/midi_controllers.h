// What a MIDI controller and the pitch wheel do to the engine. Audio thread,
// inside a tick (called by eventPass).
#pragma once

namespace sablevox {

class ADelay;

// Controller number and value as the event carries them (signed bytes, so
// -128..127); a value is taken as it comes, a number outside the map is ignored.
void applyController(ADelay& engine, int controller, int value);

// The wheel's high 7 bits (the event's third byte).
void applyPitchWheel(ADelay& engine, int data2);

}  // namespace sablevox
