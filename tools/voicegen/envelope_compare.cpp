// How closely a rendered wave follows its source: spectral envelopes over
// time, compared cell by cell.
#include "envelope_compare.h"

#include <algorithm>
#include <cmath>

#include "fft.h"

namespace sablevox::voicegen {
namespace {

double mel(double hz) {
  return 2595.0 * std::log10(1.0 + hz / 700.0);
}
double hzFromMel(double m) {
  return 700.0 * (std::pow(10.0, m / 2595.0) - 1.0);
}

}  // namespace

std::vector<double> melEnvelope(const Audio& audio, const Span& span) {
  const int length = static_cast<int>(0.025 * audio.sampleRate);
  int size = 1;
  while (size < 2 * length) size <<= 1;
  double edges[kCompareBands + 2];
  for (int b = 0; b < kCompareBands + 2; ++b) {
    edges[b] = hzFromMel(mel(100.0) + (mel(8000.0) - mel(100.0)) * b / (kCompareBands + 1));
  }
  std::vector<double> cells;
  for (int f = 0; f < kFrames; ++f) {
    double windowEnergy = 0.0;
    const std::vector<double> power =
        hannPowerSpectrum(audio.samples, static_cast<long>(frameTime(span, f)) - length / 2, length,
                          size, false, windowEnergy);
    for (int b = 0; b < kCompareBands; ++b) {
      double energy = 1e-30;
      for (size_t m = 0; m < power.size(); ++m) {
        const double hz = static_cast<double>(m) * audio.sampleRate / size;
        double weight = 0.0;
        if (hz > edges[b] && hz <= edges[b + 1])
          weight = (hz - edges[b]) / (edges[b + 1] - edges[b]);
        if (hz > edges[b + 1] && hz < edges[b + 2]) {
          weight = (edges[b + 2] - hz) / (edges[b + 2] - edges[b + 1]);
        }
        energy += weight * power[m];
      }
      cells.push_back(10.0 * std::log10(energy / windowEnergy));
    }
  }
  const double loudest = *std::max_element(cells.begin(), cells.end());
  for (double& c : cells) c = std::max(c, loudest - 60.0);
  return cells;
}

double pearson(const std::vector<double>& a, const std::vector<double>& b) {
  const size_t n = std::min(a.size(), b.size());
  double ma = 0.0, mb = 0.0;
  for (size_t i = 0; i < n; ++i) ma += a[i], mb += b[i];
  ma /= static_cast<double>(n), mb /= static_cast<double>(n);
  double ab = 0.0, aa = 0.0, bb = 0.0;
  for (size_t i = 0; i < n; ++i) {
    ab += (a[i] - ma) * (b[i] - mb), aa += (a[i] - ma) * (a[i] - ma),
        bb += (b[i] - mb) * (b[i] - mb);
  }
  return aa > 0.0 && bb > 0.0 ? ab / std::sqrt(aa * bb) : 0.0;
}

std::vector<double> reversedInTime(const std::vector<double>& envelope) {
  std::vector<double> out(envelope.size());
  const size_t frames = envelope.size() / kCompareBands;
  for (size_t f = 0; f < frames; ++f) {
    std::copy_n(envelope.begin() + static_cast<long>(f * kCompareBands), kCompareBands,
                out.begin() + static_cast<long>((frames - 1 - f) * kCompareBands));
  }
  return out;
}

}  // namespace sablevox::voicegen
