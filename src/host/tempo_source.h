// The single road to the host's clock: whoever needs the tempo (arpeggiator,
// LFO, delay) asks through this, so that units need not know the frame.
#pragma once

namespace sablevox {

class TempoSource {
 public:
  // Beats per minute; 120.0 when the host gives no time information.
  virtual double getTempo() = 0;

 protected:
  ~TempoSource() = default;
};

}  // namespace sablevox
