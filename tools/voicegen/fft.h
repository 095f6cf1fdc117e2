// A plain radix-2 complex FFT for the offline analyses of tools/voicegen.
#pragma once

#include <complex>
#include <vector>

namespace sablevox::voicegen {

// In place, forward (e^-i), unnormalised; the size must be a power of two.
void fft(std::vector<std::complex<double>>& data);

// Sample n (0 .. length - 1) of a Hann window of `length` samples, taken at
// the sample centres so that it is symmetric.
double hann(int n, int length);

// Power spectrum |X[m]|^2, m = 0 .. size/2, of `length` samples of `signal`
// starting at `start` (indices outside the signal read as 0, or wrap when
// `circular`), multiplied by a Hann window of that length and zero-padded to
// `size`. Also returns the window's sum of squares, for normalisation.
std::vector<double> hannPowerSpectrum(const std::vector<double>& signal, long start, int length,
                                      int size, bool circular, double& windowEnergy);

}  // namespace sablevox::voicegen
