// The arpeggiator's walks: Up and Down, the alternating walks that turn at
// either end, and the Pop walks that come back to the lowest key at every
// second note. Audio thread, inside arpTick.
#include "notes/arp_walk.h"

#include "notes/arp_key_search.h"

namespace sablevox {
namespace {

void wrapOctave(ADelay& e) {
  e.arpOctaveStep = static_cast<uint8_t>((e.arpOctaveStep + 1) % kArpColumns);
}

// Up and Down: on to the next key, or round to the other end and the next
// column.
void moveOrWrap(ADelay& e, int next, int otherEnd) {
  if (next >= 0) {
    e.arpNote = next;
  } else {
    e.arpNote = otherEnd;
    wrapOctave(e);
  }
}

// Altup and Altdown: up while arpDirection is 1, else down; the column moves
// on at the bottom turn (Altup) or at the top turn (Altdown).
void moveAlternating(ADelay& e, bool wrapAtTop) {
  const ArpKeyTable& keys = e.arpKeys;
  int n;
  if (e.arpDirection == 1) {
    n = arpAbove(keys, e.arpNote);
    if (n < 0) {
      n = arpBelow(keys, e.arpNote);
      if (n < 0) n = arpHighest(keys);
      e.arpDirection = -1;
      if (wrapAtTop) wrapOctave(e);
    }
  } else {
    n = arpBelow(keys, e.arpNote);
    if (n < 0) {
      n = arpAbove(keys, e.arpNote);
      if (n < 0) n = arpLowest(keys);
      e.arpDirection = 1;
      if (!wrapAtTop) wrapOctave(e);
    }
  }
  e.arpNote = n;
}

// Pop and Pop2: phase 1 plays the lowest key and keeps the running key in
// arpSavedNote; phase 0 moves the running key on, up (Pop) or down (Pop2).
void movePop(ADelay& e, bool falling) {
  const ArpKeyTable& keys = e.arpKeys;
  if (e.arpDirection == 0) {
    int n;
    if (falling) {
      n = arpBelow(keys, e.arpSavedNote);
      if (n < 0 || n == arpLowest(keys)) {
        n = arpHighest(keys);
        wrapOctave(e);
      }
    } else {
      n = arpAbove(keys, e.arpSavedNote);
      if (n < 0) {
        n = arpAbove(keys, arpLowest(keys));
        if (n < 0) n = arpLowest(keys);
        wrapOctave(e);
      }
    }
    e.arpNote = n;
    e.arpDirection = 1;
  } else if (e.arpDirection == 1) {
    e.arpSavedNote = e.arpNote;
    e.arpNote = arpLowest(keys);
    e.arpDirection = 0;
  }
}

}  // namespace

void arpStartWalk(ADelay& e, ArpWalk walk) {
  const ArpKeyTable& keys = e.arpKeys;
  e.arpOctaveStep = kArpColumns - 1;
  switch (walk) {
    case ArpWalk::up:
      e.arpNote = arpHighest(keys);
      break;
    case ArpWalk::down:
      e.arpNote = arpLowest(keys);
      break;
    case ArpWalk::altUp: {
      const int lowest = arpLowest(keys);
      const int n = arpAbove(keys, lowest);
      e.arpNote = n >= 0 ? n : lowest;
      e.arpDirection = -1;
      break;
    }
    case ArpWalk::altDown: {
      const int highest = arpHighest(keys);
      const int n = arpBelow(keys, highest);
      e.arpNote = n >= 0 ? n : highest;
      e.arpDirection = 1;
      break;
    }
    case ArpWalk::pop:
      e.arpNote = arpHighest(keys);
      e.arpDirection = 1;
      break;
    case ArpWalk::pop2:
      e.arpSavedNote = arpLowest(keys);
      e.arpNote = arpAbove(keys, e.arpSavedNote);
      e.arpDirection = 0;
      break;
    case ArpWalk::gate:
      e.arpGateOpen = false;
      break;
    case ArpWalk::none:
      break;
  }
}

void arpMoveWalk(ADelay& e, ArpWalk walk) {
  const ArpKeyTable& keys = e.arpKeys;
  switch (walk) {
    case ArpWalk::up:
      moveOrWrap(e, arpAbove(keys, e.arpNote), arpLowest(keys));
      break;
    case ArpWalk::down:
      moveOrWrap(e, arpBelow(keys, e.arpNote), arpHighest(keys));
      break;
    case ArpWalk::altUp:
      moveAlternating(e, false);
      break;
    case ArpWalk::altDown:
      moveAlternating(e, true);
      break;
    case ArpWalk::pop:
      movePop(e, false);
      break;
    case ArpWalk::pop2:
      movePop(e, true);
      break;
    case ArpWalk::gate:
    case ArpWalk::none:
      break;
  }
}

}  // namespace sablevox
