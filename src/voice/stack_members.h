// The unison stack of an oscillator: members A, B, C, D index the first
// dimension of a voice's oscPhase, oscIncrement and oscFrame.
#pragma once

namespace sablevox {

enum StackMember : int { kMemberA = 0, kMemberB = 1, kMemberC = 2, kMemberD = 3 };

// fatMode: 0 one player per oscillator (A), 1 two (A left, C right),
// 2 four (A and B left, C and D right).
constexpr int kFatModes = 3;

}  // namespace sablevox
