// Reading a fuzzer's bytes as a stream of small values; past the end every
// read gives zeros, so any input is a complete program of operations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace sablevox::fuzz {

class Input {
 public:
  Input(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  bool done() const { return at_ >= size_; }
  uint8_t byte() { return at_ < size_ ? data_[at_++] : 0; }
  uint16_t word() { return static_cast<uint16_t>(byte() | byte() << 8); }
  int32_t int32() {
    uint32_t v = 0;
    for (int i = 0; i < 4; ++i) v |= static_cast<uint32_t>(byte()) << (8 * i);
    return static_cast<int32_t>(v);
  }
  // Any 32-bit pattern: NaN, infinities, subnormals and huge values included.
  float anyFloat() {
    const int32_t bits = int32();
    float f;
    std::memcpy(&f, &bits, sizeof f);
    return f;
  }

 private:
  const uint8_t* data_;
  size_t size_;
  size_t at_ = 0;
};

}  // namespace sablevox::fuzz
