// A word that more than one thread reads or writes: one relaxed atomic load or
// store, no ordering. The engine's cross-thread data are single words whose
// readers tolerate seeing the old or the new value; this keeps that design
// free of data races in the C++ memory model.
#pragma once

#include <atomic>

namespace sablevox {

template <typename T>
class Shared {
 public:
  static_assert(std::atomic<T>::is_always_lock_free, "shared words must be lock-free");

  constexpr Shared() noexcept : value_(T{}) {}
  constexpr Shared(T v) noexcept : value_(v) {}  // NOLINT: implicit by design
  Shared(const Shared& other) noexcept : value_(other.load()) {}
  Shared& operator=(const Shared& other) noexcept {
    store(other.load());
    return *this;
  }
  Shared& operator=(T v) noexcept {
    store(v);
    return *this;
  }

  T load() const noexcept { return value_.load(std::memory_order_relaxed); }
  void store(T v) noexcept { value_.store(v, std::memory_order_relaxed); }
  operator T() const noexcept { return load(); }  // NOLINT: implicit by design

 private:
  std::atomic<T> value_;
};

static_assert(sizeof(Shared<float>) == 4);
static_assert(sizeof(Shared<bool>) == 1);

}  // namespace sablevox
