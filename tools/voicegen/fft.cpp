// A plain radix-2 complex FFT for the offline analyses of tools/voicegen.
#include "fft.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace sablevox::voicegen {

void fft(std::vector<std::complex<double>>& data) {
  const size_t n = data.size();
  for (size_t i = 1, j = 0; i < n; ++i) {
    size_t bit = n >> 1;
    for (; j & bit; bit >>= 1) j ^= bit;
    j ^= bit;
    if (i < j) std::swap(data[i], data[j]);
  }
  for (size_t len = 2; len <= n; len <<= 1) {
    // Twiddles of this stage once, in double precision, shared by its blocks.
    std::vector<std::complex<double>> twiddle(len / 2);
    const double angle = -2.0 * std::numbers::pi / static_cast<double>(len);
    for (size_t k = 0; k < len / 2; ++k)
      twiddle[k] = std::polar(1.0, angle * static_cast<double>(k));
    for (size_t i = 0; i < n; i += len) {
      for (size_t k = 0; k < len / 2; ++k) {
        const std::complex<double> a = data[i + k];
        const std::complex<double> b = data[i + k + len / 2] * twiddle[k];
        data[i + k] = a + b;
        data[i + k + len / 2] = a - b;
      }
    }
  }
}

double hann(int n, int length) {
  return 0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * (n + 0.5) / length);
}

std::vector<double> hannPowerSpectrum(const std::vector<double>& signal, long start, int length,
                                      int size, bool circular, double& windowEnergy) {
  std::vector<std::complex<double>> buffer(static_cast<size_t>(size));
  const long count = static_cast<long>(signal.size());
  windowEnergy = 0.0;
  for (int n = 0; n < length && n < size; ++n) {
    const double w = hann(n, length);
    windowEnergy += w * w;
    long at = start + n;
    if (circular && count > 0) at = ((at % count) + count) % count;
    const double x = at >= 0 && at < count ? signal[static_cast<size_t>(at)] : 0.0;
    buffer[static_cast<size_t>(n)] = x * w;
  }
  fft(buffer);
  std::vector<double> power(static_cast<size_t>(size / 2 + 1));
  for (size_t m = 0; m < power.size(); ++m) power[m] = std::norm(buffer[m]);
  return power;
}

}  // namespace sablevox::voicegen
