// Unnormalised inverse real FFT in the half-complex layout, the synthesis
// step of the band-limited tables. Worker thread; never on the audio path.
#pragma once

namespace sablevox {

constexpr int kMaxFftSize = 1024;

// In place on buffer[0..n-1], n a power of two from 2 to 1024 (any other n
// leaves the buffer alone). On entry buffer[k] is the real part of bin k for
// k = 0..n/2 and buffer[n - k] the imaginary part of bin k for k = 1..n/2-1.
// On return
//   x[j] = b[0] + (-1)^j b[n/2] + 2 * sum_{k=1}^{n/2-1} (b[k] cos(2 pi k j / n) - b[n-k] sin(2 pi k
//   j / n)).
// Sorensen's split-radix real-valued algorithm; twiddles come from a table
// built on first use, so a call allocates nothing.
void inverseRealFft(float* buffer, int n);

}  // namespace sablevox
