// Sorensen's split-radix inverse real FFT (Sorensen, Jones, Heideman and
// Burrus, 1987): L-shaped butterflies from the largest stage down, then the
// length-2 butterflies, then the bit-reversal permutation.
#include "waves/inverse_fft.h"

#include <cmath>
#include <cstdint>
#include <utility>

namespace sablevox {
namespace {

constexpr int kMaxLog = 10;
static_assert(kMaxFftSize == 1 << kMaxLog);

struct Twiddle {
  float cc1, ss1, cc3, ss3;
};

// Twiddles depend on the stage size only, so one table serves every
// transform size. The angle is formed in float, as a multiple of 2 pi / n2,
// and its sines and cosines are taken in double and rounded once.
struct FftTables {
  Twiddle twiddles[kMaxLog + 1][kMaxFftSize / 8 + 1];
  uint16_t reversed[kMaxFftSize];  // 10-bit reversal of the index

  FftTables() {
    for (int log = 4; log <= kMaxLog; ++log) {
      const int n2 = 1 << log;
      const float e = 6.2831855f / static_cast<float>(n2);
      for (int j = 2; j <= n2 / 8; ++j) {
        const float a = static_cast<float>(j - 1) * e;
        const float a3 = 3.0f * a;
        twiddles[log][j] = {static_cast<float>(std::cos(static_cast<double>(a))),
                            static_cast<float>(std::sin(static_cast<double>(a))),
                            static_cast<float>(std::cos(static_cast<double>(a3))),
                            static_cast<float>(std::sin(static_cast<double>(a3)))};
      }
    }
    for (int i = 0; i < kMaxFftSize; ++i) {
      int r = 0;
      for (int b = 0; b < kMaxLog; ++b) r |= ((i >> b) & 1) << (kMaxLog - 1 - b);
      reversed[i] = static_cast<uint16_t>(r);
    }
  }
};

const FftTables& tables() {
  static const FftTables instance;  // built once, on the worker's first transform
  return instance;
}

int log2Of(int n) {
  int log = 0;
  while ((1 << log) < n) ++log;
  return log;
}

// One stage of size n2: the twiddle-free and the 1/sqrt(2) butterflies.
void plainButterflies(float* x, int n, int n2) {
  const int n4 = n2 / 4;
  const int n8 = n4 / 2;
  int is = 0;
  int id = 2 * n2;
  do {
    for (int i = is; i < n; i += id) {
      int i1 = i;
      int i2 = i1 + n4;
      int i3 = i2 + n4;
      int i4 = i3 + n4;
      float t1 = x[i1] - x[i3];
      x[i1] = x[i1] + x[i3];
      x[i2] = 2.0f * x[i2];
      x[i3] = t1 - 2.0f * x[i4];
      x[i4] = t1 + 2.0f * x[i4];
      if (n4 == 1) continue;
      i1 += n8;
      i2 += n8;
      i3 += n8;
      i4 += n8;
      t1 = (x[i2] - x[i1]) * 0.70710677f;
      const float t2 = (x[i4] + x[i3]) * 0.70710677f;
      x[i1] = x[i1] + x[i2];
      x[i2] = x[i4] - x[i3];
      x[i3] = 2.0f * (-t2 - t1);
      x[i4] = 2.0f * (-t2 + t1);
    }
    is = 2 * id - n2;
    id = 4 * id;
  } while (is < n - 1);
}

// The same stage's general butterflies, twiddle j = 2 .. n2/8.
void twiddleButterflies(float* x, int n, int n2, const Twiddle* twiddles) {
  const int n4 = n2 / 4;
  const int n8 = n4 / 2;
  for (int j = 2; j <= n8; ++j) {
    const Twiddle w = twiddles[j];
    int is = 0;
    int id = 2 * n2;
    do {
      for (int i = is; i < n; i += id) {
        const int i1 = i + j - 1;
        const int i2 = i1 + n4;
        const int i3 = i2 + n4;
        const int i4 = i3 + n4;
        const int i5 = i + n4 - j + 1;
        const int i6 = i5 + n4;
        const int i7 = i6 + n4;
        const int i8 = i7 + n4;
        float t1 = x[i1] - x[i6];
        x[i1] = x[i1] + x[i6];
        float t2 = x[i5] - x[i2];
        x[i5] = x[i5] + x[i2];
        const float t3 = x[i8] + x[i3];
        x[i6] = x[i8] - x[i3];
        float t4 = x[i4] + x[i7];
        x[i2] = x[i4] - x[i7];
        const float t5 = t1 - t4;
        t1 = t1 + t4;
        t4 = t2 - t3;
        t2 = t2 + t3;
        x[i3] = t5 * w.cc1 + t4 * w.ss1;
        x[i7] = -t4 * w.cc1 + t5 * w.ss1;
        x[i4] = t1 * w.cc3 - t2 * w.ss3;
        x[i8] = t2 * w.cc3 + t1 * w.ss3;
      }
      is = 2 * id - n2;
      id = 4 * id;
    } while (is < n - 1);
  }
}

void lengthTwoButterflies(float* x, int n) {
  int is = 0;
  int id = 4;
  do {
    for (int i = is; i < n; i += id) {
      const float t = x[i];
      x[i] = t + x[i + 1];
      x[i + 1] = t - x[i + 1];
    }
    is = 2 * id - 2;
    id = 4 * id;
  } while (is < n - 1);
}

}  // namespace

void inverseRealFft(float* buffer, int n) {
  if (n < 2 || n > kMaxFftSize || (n & (n - 1)) != 0) return;
  const FftTables& t = tables();
  const int log = log2Of(n);
  for (int stage = log; stage >= 2; --stage) {
    const int n2 = 1 << stage;
    plainButterflies(buffer, n, n2);
    if (stage >= 4) twiddleButterflies(buffer, n, n2, t.twiddles[stage]);
  }
  lengthTwoButterflies(buffer, n);
  const int shift = kMaxLog - log;
  for (int i = 1; i < n - 1; ++i) {
    const int r = t.reversed[i] >> shift;
    if (i < r) std::swap(buffer[i], buffer[r]);
  }
}

}  // namespace sablevox
