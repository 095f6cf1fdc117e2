// Spectra of the classic shapes and filter responses, and the harmonic
// analysis of a rendered cycle.
#include "harmonic_shapes.h"

#include <cmath>
#include <complex>
#include <vector>

#include "wave_math.h"

namespace sablevox::wavegen {

double sawHarmonic(int k) {
  return 1.0 / k;
}

double squareHarmonic(int k) {
  return k % 2 ? 1.0 / k : 0.0;
}

double triangleHarmonic(int k) {
  return k % 2 ? 1.0 / (static_cast<double>(k) * k) : 0.0;
}

double pulseHarmonic(int k, double width) {
  return std::fabs(detSin(kPi * k * width)) / k;
}

double lowpass(double k, double cutoff, int order) {
  const double r = detPow(k / cutoff, 2.0 * order);
  return 1.0 / std::sqrt(1.0 + r);
}

double highpass(double k, double cutoff, int order) {
  const double r = detPow(cutoff / k, 2.0 * order);
  return 1.0 / std::sqrt(1.0 + r);
}

double ladderLowpass(double k, double cutoff, double feedback) {
  // |1 / ((1 + jw)^4 + feedback)|, expanded so that no library call rounds.
  const double w = k / cutoff;
  const double w2 = w * w;
  const double re = 1.0 - 6.0 * w2 + w2 * w2 + feedback;
  const double im = 4.0 * w - 4.0 * w2 * w;
  return (1.0 + feedback) / std::sqrt(re * re + im * im);
}

double formant(double frequency, double centre, double bandwidth) {
  const double c2 = centre * centre;
  const double d = c2 - frequency * frequency;
  const double b = frequency * bandwidth;
  return c2 / std::sqrt(d * d + b * b);
}

double bump(double k, double centre, double width) {
  const double x = (k - centre) / width;
  return detExp(-0.5 * x * x);
}

double combFeedForward(int k, double delay, double gain) {
  const double c = detCos(2.0 * kPi * k * delay);
  return std::sqrt(std::fabs(1.0 + gain * gain + 2.0 * gain * c)) / (1.0 + std::fabs(gain));
}

double combFeedback(int k, double delay, double gain) {
  const double c = detCos(2.0 * kPi * k * delay);
  return (1.0 - std::fabs(gain)) / std::sqrt(std::fabs(1.0 + gain * gain - 2.0 * gain * c));
}

void harmonicsOfCycle(const double* cycle, int n, Spectrum& out) {
  // Iterative radix-2 FFT with twiddles from the deterministic sine.
  std::vector<std::complex<double>> x(static_cast<size_t>(n));
  for (int i = 0, j = 0; i < n; ++i) {
    x[static_cast<size_t>(j)] = cycle[i];
    int bit = n >> 1;
    for (; j & bit; bit >>= 1) j ^= bit;
    j |= bit;
  }
  for (int len = 2; len <= n; len <<= 1) {
    for (int i = 0; i < len / 2; ++i) {
      const double a = -2.0 * kPi * i / len;
      const std::complex<double> w(detCos(a), detSin(a));
      for (int start = 0; start < n; start += len) {
        const size_t p = static_cast<size_t>(start + i);
        const size_t q = p + static_cast<size_t>(len / 2);
        const std::complex<double> t(w.real() * x[q].real() - w.imag() * x[q].imag(),
                                     w.real() * x[q].imag() + w.imag() * x[q].real());
        x[q] = x[p] - t;
        x[p] = x[p] + t;
      }
    }
  }
  for (int h = 0; h < kHarmonics; ++h) {
    const std::complex<double> c = x[static_cast<size_t>(h + 1)];
    out[h] = 2.0 * std::sqrt(c.real() * c.real() + c.imag() * c.imag()) / n;
  }
}

void harmonicsOfSegments(std::span<const Segment> pieces, Spectrum& out) {
  using C = std::complex<double>;
  for (int k = 1; k <= kHarmonics; ++k) {
    const double w = 2.0 * kPi * k;
    C sum(0.0, 0.0);
    for (const Segment& p : pieces) {
      const double length = p.t1 - p.t0;
      if (!(length > 0.0)) continue;
      const C e0(detCos(w * p.t0), -detSin(w * p.t0));
      const C e1(detCos(w * p.t1), -detSin(w * p.t1));
      const C inverseIw(0.0, -1.0 / w);  // 1 / (i w)
      const double slope = (p.v1 - p.v0) / length;
      // Integral of (v0 + slope (t - t0)) e^{-iwt} over the piece.
      sum +=
          p.v0 * (e0 - e1) * inverseIw + slope * (-length * e1 * inverseIw - (e0 - e1) / (w * w));
    }
    out[static_cast<size_t>(k - 1)] =
        2.0 * std::sqrt(sum.real() * sum.real() + sum.imag() * sum.imag());
  }
}

}  // namespace sablevox::wavegen
