// Placeholder bodies of the note engine's operations so that the engine links
// while the note engine is being written; replaced file by file.
#include "host/adelay.h"

namespace sablevox {

VstInt32 ADelay::processEvents(VstEvents* /*events*/) { return 1; }
void ADelay::eventPass(int /*limit*/) {}
void ADelay::arpNoteOn(int /*note*/, int /*velocity*/, bool /*active*/) {}
void ADelay::arpNoteOff(int /*note*/, bool /*active*/) {}
void ADelay::noteOn(int /*note*/, int /*velocity*/) {}
void ADelay::noteOff(int /*note*/) {}
void ADelay::uiNoteOn(int /*note*/, int /*velocity*/) {}
void ADelay::uiNoteOff(int /*note*/) {}
void ADelay::drainUiNotes() {}
void ADelay::arpTick(int /*type*/, int /*rhythm*/, bool /*active*/, double /*tempo*/,
                     float /*sampleRate*/, int /*tickLength*/) {}

}  // namespace sablevox
