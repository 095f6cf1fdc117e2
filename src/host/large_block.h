// Zeroed memory for the large objects of an instance, in two kinds: blocks
// backed by huge pages where the system offers them, for memory that is
// touched whole (first touching 10 MB of small pages costs tens of
// milliseconds of page faults, far more under virtualisation; 2 MB pages
// cost a handful), and sparse blocks in small pages for lines that are used
// only later or never (voice records, effect lines), whose untouched pages
// stay out of the resident set. Constructor, destructor and worker threads
// only: these map and unmap memory. Header-only, so that any library may use
// it without a link dependency.
#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstdint>
#include <new>

// The leak checker scans the heap and globals, not mapped blocks: pointers
// held in a block must be shown to it, or what they lead to counts as lost.
#if defined(__SANITIZE_ADDRESS__)
#define SABLEVOX_LEAK_CHECKED_BLOCKS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SABLEVOX_LEAK_CHECKED_BLOCKS 1
#endif
#endif
#if defined(SABLEVOX_LEAK_CHECKED_BLOCKS)
#include <sanitizer/lsan_interface.h>
#endif

namespace sablevox {

inline constexpr size_t kSmallPageBytes = 4096;
inline constexpr size_t kHugePageBytes = size_t{2} << 20;

inline size_t roundUpTo(size_t value, size_t step) {
  return (value + step - 1) / step * step;
}

// `bytes` of zeroed memory at an address aligned to 2 MB; the whole 2 MB
// stretches are advised as huge pages, the rest stays in small pages so that
// no memory is wasted. Throws std::bad_alloc on failure.
inline void* allocateLargeBlock(size_t bytes) {
  const size_t length = roundUpTo(bytes == 0 ? 1 : bytes, kSmallPageBytes);
  // One huge page more than needed, ends cut off: the block starts on a
  // huge-page boundary.
  void* mapped = mmap(nullptr, length + kHugePageBytes, PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) throw std::bad_alloc();
  const auto start = reinterpret_cast<uintptr_t>(mapped);
  const uintptr_t aligned = roundUpTo(start, kHugePageBytes);
  const uintptr_t end = start + length + kHugePageBytes;
  if (aligned > start) munmap(mapped, aligned - start);
  if (end > aligned + length) {
    munmap(reinterpret_cast<void*>(aligned + length), end - aligned - length);
  }
  // Advice only: without huge pages the block still works, in small pages.
  const size_t hugePart = length / kHugePageBytes * kHugePageBytes;
  if (hugePart > 0) madvise(reinterpret_cast<void*>(aligned), hugePart, MADV_HUGEPAGE);
#if defined(SABLEVOX_LEAK_CHECKED_BLOCKS)
  __lsan_register_root_region(reinterpret_cast<void*>(aligned), length);
#endif
  return reinterpret_cast<void*>(aligned);
}

// `bytes` of zeroed memory in small pages, for records of which a few words
// are in use and the rest only later or never: pages never touched never
// become resident, where one touch of a huge page makes 2 MB resident.
// Throws std::bad_alloc on failure.
inline void* allocateSparseBlock(size_t bytes) {
  const size_t length = roundUpTo(bytes == 0 ? 1 : bytes, kSmallPageBytes);
  void* block = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (block == MAP_FAILED) throw std::bad_alloc();
  // Advice only, for systems that give huge pages unasked.
  madvise(block, length, MADV_NOHUGEPAGE);
#if defined(SABLEVOX_LEAK_CHECKED_BLOCKS)
  __lsan_register_root_region(block, length);
#endif
  return block;
}

// Releases a block of allocateLargeBlock or allocateSparseBlock with the
// same `bytes`.
inline void freeLargeBlock(void* block, size_t bytes) noexcept {
  if (block == nullptr) return;
  const size_t length = roundUpTo(bytes == 0 ? 1 : bytes, kSmallPageBytes);
#if defined(SABLEVOX_LEAK_CHECKED_BLOCKS)
  __lsan_unregister_root_region(block, length);
#endif
  munmap(block, length);
}

// Class-level operators for a type whose instances should live in such
// blocks, inside the class body: `SABLEVOX_LARGE_BLOCK_OPERATORS` for huge
// pages; `SABLEVOX_SPARSE_BLOCK_OPERATORS` for types of which most is lines
// used later or never, in small pages, so that a line's pages become
// resident as it is written (such a type's constructor must be
// user-provided, so that `new T()` does not zero what the block gives
// zeroed).
#define SABLEVOX_BLOCK_OPERATORS(allocate)                          \
  static void* operator new(size_t bytes) {                         \
    return ::sablevox::allocate(bytes);                             \
  }                                                                 \
  static void operator delete(void* block, size_t bytes) noexcept { \
    ::sablevox::freeLargeBlock(block, bytes);                       \
  }
#define SABLEVOX_LARGE_BLOCK_OPERATORS SABLEVOX_BLOCK_OPERATORS(allocateLargeBlock)
#define SABLEVOX_SPARSE_BLOCK_OPERATORS SABLEVOX_BLOCK_OPERATORS(allocateSparseBlock)

}  // namespace sablevox
