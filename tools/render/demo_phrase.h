// The built-in demo: five bars of chords, bass line and melody, rendered when
// no MIDI file is given.
#pragma once

#include <vector>

namespace sablevox::render {

// The phrase as Standard MIDI File bytes.
std::vector<unsigned char> demoPhraseFile();

}  // namespace sablevox::render
