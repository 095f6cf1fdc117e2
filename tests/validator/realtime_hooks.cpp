// The test binary's own definitions of the allocator, lock, wait, sleep, file
// and syscall functions. Symbols of an executable come first in the dynamic
// lookup, so the plug-in loaded by dlopen (and the C++ runtime under it)
// calls these; each counts when its thread is armed and then passes the call
// on to the C library. Left out under the sanitizers, whose runtimes
// interpose the same functions.
#include "validator/realtime_hooks.h"

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sched.h>
#include <semaphore.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <new>

extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void __libc_free(void*);
void* __libc_memalign(size_t, size_t);
}

namespace sablevox::testing::realtime {
namespace {

enum Kind { kAllocation, kLock, kWait, kSleep, kIo, kSyscall, kKinds };

thread_local bool armed = false;
thread_local bool exempt = false;
std::atomic<long> counted[kKinds];
std::atomic<const char*> firstName{nullptr};
std::atomic<bool> holding{false};
std::atomic<int> held{0};

inline void note(Kind kind, const char* name) {
  if (!armed) return;
  counted[kind].fetch_add(1, std::memory_order_relaxed);
  const char* none = nullptr;
  firstName.compare_exchange_strong(none, name);
}

// The C library's function by name, looked up once; the version pins the
// condition-variable calls to their current form.
template <typename F>
F next(std::atomic<void*>& cache, const char* name, const char* version = nullptr) {
  void* f = cache.load(std::memory_order_acquire);
  if (f == nullptr) {
    f = version != nullptr ? dlvsym(RTLD_NEXT, name, version) : dlsym(RTLD_NEXT, name);
    if (f == nullptr) std::abort();
    cache.store(f, std::memory_order_release);
  }
  return reinterpret_cast<F>(f);
}
#define SABLEVOX_NEXT(type, name, ...)     \
  static std::atomic<void*> name##Cache{}; \
  const auto real = next<type>(name##Cache, #name __VA_OPT__(, ) __VA_ARGS__)

using NanosleepFn = int (*)(const timespec*, timespec*);
using ClockNanosleepFn = int (*)(clockid_t, int, const timespec*, timespec*);

// A thread that sleeps while holding is on is kept here, in short real
// sleeps, until release().
void keepWhileHolding() {
  if (exempt || !holding.load()) return;
  static std::atomic<void*> cache{};
  const auto sleep = next<NanosleepFn>(cache, "nanosleep");
  held.fetch_add(1);
  const timespec step{0, 1000000};
  while (holding.load()) sleep(&step, nullptr);
  held.fetch_sub(1);
}

}  // namespace

bool hooksInstalled() {
  return true;
}
void arm() {
  armed = true;
}
void disarm() {
  armed = false;
}
Counts counts() {
  Counts c;
  c.allocations = counted[kAllocation].load();
  c.locks = counted[kLock].load();
  c.waits = counted[kWait].load();
  c.sleeps = counted[kSleep].load();
  c.io = counted[kIo].load();
  c.syscalls = counted[kSyscall].load();
  const char* name = firstName.load();
  c.first = name != nullptr ? name : "";
  return c;
}
void resetCounts() {
  for (auto& c : counted) c.store(0);
  firstName.store(nullptr);
}
void exemptFromHolding() {
  exempt = true;
}
void hold() {
  holding.store(true);
}
void release() {
  holding.store(false);
}
int holdingCount() {
  return held.load();
}

}  // namespace sablevox::testing::realtime

using namespace sablevox::testing::realtime;  // NOLINT: the hooks are C functions
using sablevox::testing::realtime::note;

#define SABLEVOX_EXPORT extern "C" __attribute__((visibility("default")))

// ---- The allocator ----

SABLEVOX_EXPORT void* malloc(size_t size) noexcept {
  note(kAllocation, "malloc");
  return __libc_malloc(size);
}
SABLEVOX_EXPORT void* calloc(size_t count, size_t size) noexcept {
  note(kAllocation, "calloc");
  return __libc_calloc(count, size);
}
SABLEVOX_EXPORT void* realloc(void* p, size_t size) noexcept {
  note(kAllocation, "realloc");
  return __libc_realloc(p, size);
}
SABLEVOX_EXPORT void free(void* p) noexcept {
  if (p != nullptr) note(kAllocation, "free");
  __libc_free(p);
}
SABLEVOX_EXPORT void* aligned_alloc(size_t alignment, size_t size) noexcept {
  note(kAllocation, "aligned_alloc");
  return __libc_memalign(alignment, size);
}
SABLEVOX_EXPORT int posix_memalign(void** out, size_t alignment, size_t size) noexcept {
  note(kAllocation, "posix_memalign");
  *out = __libc_memalign(alignment, size);
  return *out != nullptr ? 0 : 12;  // ENOMEM
}

namespace {
void* allocate(size_t size, const char* name) {
  note(kAllocation, name);
  void* p = __libc_malloc(size == 0 ? 1 : size);
  if (p == nullptr) throw std::bad_alloc();
  return p;
}
void release(void* p, const char* name) {
  if (p != nullptr) note(kAllocation, name);
  __libc_free(p);
}
}  // namespace

void* operator new(size_t size) {
  return allocate(size, "operator new");
}
void* operator new[](size_t size) {
  return allocate(size, "operator new[]");
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  note(kAllocation, "operator new");
  return __libc_malloc(size == 0 ? 1 : size);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
  note(kAllocation, "operator new[]");
  return __libc_malloc(size == 0 ? 1 : size);
}
void operator delete(void* p) noexcept {
  release(p, "operator delete");
}
void operator delete[](void* p) noexcept {
  release(p, "operator delete[]");
}
void operator delete(void* p, size_t) noexcept {
  release(p, "operator delete");
}
void operator delete[](void* p, size_t) noexcept {
  release(p, "operator delete[]");
}

// ---- Locks and waits ----

SABLEVOX_EXPORT int pthread_mutex_lock(pthread_mutex_t* m) noexcept {
  note(kLock, "pthread_mutex_lock");
  SABLEVOX_NEXT(int (*)(pthread_mutex_t*), pthread_mutex_lock);
  return real(m);
}
SABLEVOX_EXPORT int pthread_mutex_trylock(pthread_mutex_t* m) noexcept {
  note(kLock, "pthread_mutex_trylock");
  SABLEVOX_NEXT(int (*)(pthread_mutex_t*), pthread_mutex_trylock);
  return real(m);
}
SABLEVOX_EXPORT int pthread_rwlock_rdlock(pthread_rwlock_t* l) noexcept {
  note(kLock, "pthread_rwlock_rdlock");
  SABLEVOX_NEXT(int (*)(pthread_rwlock_t*), pthread_rwlock_rdlock);
  return real(l);
}
SABLEVOX_EXPORT int pthread_rwlock_wrlock(pthread_rwlock_t* l) noexcept {
  note(kLock, "pthread_rwlock_wrlock");
  SABLEVOX_NEXT(int (*)(pthread_rwlock_t*), pthread_rwlock_wrlock);
  return real(l);
}
SABLEVOX_EXPORT int pthread_spin_lock(pthread_spinlock_t* l) noexcept {
  note(kLock, "pthread_spin_lock");
  SABLEVOX_NEXT(int (*)(pthread_spinlock_t*), pthread_spin_lock);
  return real(l);
}
// The first use of a function-local static takes its guard.
extern "C" __attribute__((visibility("default"))) int __cxa_guard_acquire(long long* guard) {
  note(kLock, "__cxa_guard_acquire");
  SABLEVOX_NEXT(int (*)(long long*), __cxa_guard_acquire);
  return real(guard);
}
SABLEVOX_EXPORT int pthread_cond_wait(pthread_cond_t* c, pthread_mutex_t* m) {
  note(kWait, "pthread_cond_wait");
  SABLEVOX_NEXT(int (*)(pthread_cond_t*, pthread_mutex_t*), pthread_cond_wait, "GLIBC_2.3.2");
  return real(c, m);
}
SABLEVOX_EXPORT int pthread_cond_timedwait(pthread_cond_t* c, pthread_mutex_t* m,
                                           const timespec* t) {
  note(kWait, "pthread_cond_timedwait");
  SABLEVOX_NEXT(int (*)(pthread_cond_t*, pthread_mutex_t*, const timespec*), pthread_cond_timedwait,
                "GLIBC_2.3.2");
  return real(c, m, t);
}
SABLEVOX_EXPORT int pthread_cond_clockwait(pthread_cond_t* c, pthread_mutex_t* m, clockid_t clock,
                                           const timespec* t) {
  note(kWait, "pthread_cond_clockwait");
  SABLEVOX_NEXT(int (*)(pthread_cond_t*, pthread_mutex_t*, clockid_t, const timespec*),
                pthread_cond_clockwait);
  return real(c, m, clock, t);
}
SABLEVOX_EXPORT int sem_wait(sem_t* s) {
  note(kWait, "sem_wait");
  SABLEVOX_NEXT(int (*)(sem_t*), sem_wait);
  return real(s);
}
SABLEVOX_EXPORT int sem_timedwait(sem_t* s, const timespec* t) {
  note(kWait, "sem_timedwait");
  SABLEVOX_NEXT(int (*)(sem_t*, const timespec*), sem_timedwait);
  return real(s, t);
}
SABLEVOX_EXPORT int pthread_join(pthread_t thread, void** result) {
  note(kWait, "pthread_join");
  SABLEVOX_NEXT(int (*)(pthread_t, void**), pthread_join);
  return real(thread, result);
}

// ---- Sleeps ----

SABLEVOX_EXPORT int nanosleep(const timespec* request, timespec* remaining) {
  note(kSleep, "nanosleep");
  keepWhileHolding();
  SABLEVOX_NEXT(NanosleepFn, nanosleep);
  return real(request, remaining);
}
SABLEVOX_EXPORT int clock_nanosleep(clockid_t clock, int flags, const timespec* request,
                                    timespec* remaining) {
  note(kSleep, "clock_nanosleep");
  keepWhileHolding();
  SABLEVOX_NEXT(ClockNanosleepFn, clock_nanosleep);
  return real(clock, flags, request, remaining);
}
SABLEVOX_EXPORT int usleep(useconds_t microseconds) {
  note(kSleep, "usleep");
  keepWhileHolding();
  SABLEVOX_NEXT(int (*)(useconds_t), usleep);
  return real(microseconds);
}
SABLEVOX_EXPORT unsigned sleep(unsigned seconds) {
  note(kSleep, "sleep");
  keepWhileHolding();
  SABLEVOX_NEXT(unsigned (*)(unsigned), sleep);
  return real(seconds);
}
SABLEVOX_EXPORT int sched_yield() noexcept {
  note(kSleep, "sched_yield");
  SABLEVOX_NEXT(int (*)(), sched_yield);
  return real();
}

// ---- Files ----

SABLEVOX_EXPORT int open(const char* path, int flags, ...) {
  note(kIo, "open");
  va_list args;
  va_start(args, flags);
  const auto mode = static_cast<mode_t>(va_arg(args, int));
  va_end(args);
  SABLEVOX_NEXT(int (*)(const char*, int, ...), open);
  return real(path, flags, mode);
}
SABLEVOX_EXPORT int openat(int dir, const char* path, int flags, ...) {
  note(kIo, "openat");
  va_list args;
  va_start(args, flags);
  const auto mode = static_cast<mode_t>(va_arg(args, int));
  va_end(args);
  SABLEVOX_NEXT(int (*)(int, const char*, int, ...), openat);
  return real(dir, path, flags, mode);
}
SABLEVOX_EXPORT FILE* fopen(const char* path, const char* mode) {
  note(kIo, "fopen");
  SABLEVOX_NEXT(FILE * (*)(const char*, const char*), fopen);
  return real(path, mode);
}
SABLEVOX_EXPORT ssize_t read(int fd, void* buffer, size_t count) {
  note(kIo, "read");
  SABLEVOX_NEXT(ssize_t(*)(int, void*, size_t), read);
  return real(fd, buffer, count);
}
SABLEVOX_EXPORT ssize_t write(int fd, const void* buffer, size_t count) {
  note(kIo, "write");
  SABLEVOX_NEXT(ssize_t(*)(int, const void*, size_t), write);
  return real(fd, buffer, count);
}
SABLEVOX_EXPORT int close(int fd) {
  note(kIo, "close");
  SABLEVOX_NEXT(int (*)(int), close);
  return real(fd);
}

// ---- Raw system calls: futex is a wait, anything else a syscall ----

SABLEVOX_EXPORT long syscall(long number, ...) noexcept {
  note(number == SYS_futex ? kWait : kSyscall, number == SYS_futex ? "futex" : "syscall");
  va_list args;
  va_start(args, number);
  long a[6];
  for (long& x : a) x = va_arg(args, long);
  va_end(args);
  SABLEVOX_NEXT(long (*)(long, ...), syscall);
  return real(number, a[0], a[1], a[2], a[3], a[4], a[5]);
}

#else  // sanitizer builds

namespace sablevox::testing::realtime {
bool hooksInstalled() {
  return false;
}
void arm() {}
void disarm() {}
Counts counts() {
  return {};
}
void resetCounts() {}
void exemptFromHolding() {}
void hold() {}
void release() {}
int holdingCount() {
  return 0;
}
}  // namespace sablevox::testing::realtime

#endif
