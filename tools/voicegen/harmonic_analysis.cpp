// Measures harmonic amplitudes of recorded or synthesised sound at one point
// in time, for the spoken waves and drum loops.
#include "harmonic_analysis.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "fft.h"

namespace sablevox::voicegen {
namespace {

double sampleAt(const std::vector<double>& x, long i) {
  return i >= 0 && i < static_cast<long>(x.size()) ? x[static_cast<size_t>(i)] : 0.0;
}

}  // namespace

Pitch pitchAt(const std::vector<double>& x, double sampleRate, double center, double minHz,
              double maxHz) {
  const int minLag = std::max(2, static_cast<int>(sampleRate / maxHz));
  const int maxLag = static_cast<int>(sampleRate / minHz) + 1;
  const int window = static_cast<int>(2.5 * maxLag);
  const long start = static_cast<long>(center) - window / 2;
  std::vector<double> s(static_cast<size_t>(window));
  for (int n = 0; n < window; ++n) s[static_cast<size_t>(n)] = sampleAt(x, start + n);
  std::vector<double> r(static_cast<size_t>(maxLag + 2), 0.0);
  for (int lag = minLag - 1; lag <= maxLag + 1; ++lag) {
    double cross = 0.0, head = 0.0, tail = 0.0;
    for (int n = 0; n + lag < window; ++n) {
      cross += s[static_cast<size_t>(n)] * s[static_cast<size_t>(n + lag)];
      head += s[static_cast<size_t>(n)] * s[static_cast<size_t>(n)];
      tail += s[static_cast<size_t>(n + lag)] * s[static_cast<size_t>(n + lag)];
    }
    r[static_cast<size_t>(lag)] = head > 0.0 && tail > 0.0 ? cross / std::sqrt(head * tail) : 0.0;
  }
  int best = minLag;
  for (int lag = minLag; lag <= maxLag; ++lag) {
    if (r[static_cast<size_t>(lag)] > r[static_cast<size_t>(best)]) best = lag;
  }
  // Two or three periods correlate about as well as one: take the shortest
  // peak that comes close to the best.
  for (int lag = minLag; lag < best; ++lag) {
    const double v = r[static_cast<size_t>(lag)];
    if (v >= 0.9 * r[static_cast<size_t>(best)] && v >= r[static_cast<size_t>(lag - 1)] &&
        v >= r[static_cast<size_t>(lag + 1)]) {
      best = lag;
      break;
    }
  }
  const double a = r[static_cast<size_t>(best - 1)], b = r[static_cast<size_t>(best)],
               c = r[static_cast<size_t>(best + 1)];
  const double bend = a - 2.0 * b + c;
  const double shift = bend < 0.0 ? std::clamp(0.5 * (a - c) / bend, -0.5, 0.5) : 0.0;
  return {sampleRate / (best + shift), std::max(0.0, b)};
}

HarmonicFrame voicedHarmonics(const std::vector<double>& x, double sampleRate, double center,
                              double f0, double fRef) {
  const int length = std::max(4, static_cast<int>(std::lround(2.0 * sampleRate / f0)));
  const long start = static_cast<long>(std::lround(center)) - length / 2;
  double windowSum = 0.0;
  std::vector<double> windowed(static_cast<size_t>(length));
  for (int n = 0; n < length; ++n) {
    windowSum += hann(n, length);
    windowed[static_cast<size_t>(n)] = sampleAt(x, start + n) * hann(n, length);
  }
  // Envelope points: (frequency, amplitude) at 0 Hz and each local harmonic.
  std::vector<double> freq{0.0}, amp{0.0};
  for (int k = 1; k * f0 < 0.5 * sampleRate; ++k) {
    const double w = 2.0 * std::numbers::pi * k * f0 / sampleRate;
    std::complex<double> sum = 0.0;
    for (int n = 0; n < length; ++n)
      sum += windowed[static_cast<size_t>(n)] * std::polar(1.0, -w * n);
    freq.push_back(k * f0);
    amp.push_back(2.0 * std::abs(sum) / windowSum);
  }
  if (amp.size() > 1) amp[0] = amp[1];  // flat below the fundamental
  HarmonicFrame out{};
  for (int k = 1; k <= kHarmonics; ++k) {
    const double f = k * fRef;
    if (f >= 0.5 * sampleRate || f > freq.back()) break;
    const auto above = std::upper_bound(freq.begin(), freq.end(), f);
    const size_t i = static_cast<size_t>(above - freq.begin());
    const double t = (f - freq[i - 1]) / (freq[i] - freq[i - 1]);
    out[static_cast<size_t>(k - 1)] = amp[i - 1] + t * (amp[i] - amp[i - 1]);
  }
  return out;
}

HarmonicFrame bandHarmonics(const std::vector<double>& x, double sampleRate, double center,
                            double fRef, int length, bool circular) {
  int size = 1;
  while (size < 4 * length) size <<= 1;
  double windowEnergy = 0.0;
  const std::vector<double> power = hannPowerSpectrum(
      x, static_cast<long>(std::lround(center)) - length / 2, length, size, circular, windowEnergy);
  // One-sided power per band, scaled so that a sine of amplitude A gives A*A/2.
  std::array<double, kHarmonics> band{};
  const double binHz = sampleRate / size;
  for (size_t m = 1; m + 1 < power.size(); ++m) {
    const int k = static_cast<int>(std::lround(m * binHz / fRef));
    if (k >= 1 && k <= kHarmonics) band[static_cast<size_t>(k - 1)] += power[m];
  }
  const double scale = 2.0 / (static_cast<double>(size) * windowEnergy);
  HarmonicFrame out{};
  for (int k = 1; k <= kHarmonics && k * fRef < 0.5 * sampleRate; ++k) {
    // Noise measured in one short window scatters by several dB from band to
    // band; above harmonic 10 average over about a fifth of the harmonic
    // number, which a noise envelope never needs finer.
    const int reach = k / 10;
    double sum = 0.0;
    int count = 0;
    for (int j = std::max(1, k - reach); j <= std::min(kHarmonics, k + reach); ++j) {
      if (j * fRef >= 0.5 * sampleRate) break;
      sum += band[static_cast<size_t>(j - 1)];
      ++count;
    }
    out[static_cast<size_t>(k - 1)] = std::sqrt(2.0 * scale * sum / count);
  }
  return out;
}

}  // namespace sablevox::voicegen
