// The arpeggiator's walks over its key table: where a phrase starts and how
// each note step moves on. The Gate walk plays chords and is the tick's own.
// Audio thread, inside arpTick.
#pragma once

#include "host/adelay.h"
#include "notes/arp_tables.h"

namespace sablevox {

// Sets up the walk at the first tick of a phrase; the octave column stands at
// its last, so that the first wrap brings it to 0.
void arpStartWalk(ADelay& engine, ArpWalk walk);

// Moves arpNote to the key of this note step, and the octave column on when
// the walk comes round. The caller has made sure that some key is set.
void arpMoveWalk(ADelay& engine, ArpWalk walk);

}  // namespace sablevox
