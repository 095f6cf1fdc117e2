// Counters behind the test binary's own malloc, operator new, pthread lock
// and wait calls, sleeps, file calls and raw syscall (realtime_hooks.cpp). The
// dlopen'd plug-in binds to these definitions, so every such call it makes is
// seen here. Counting is armed per thread: only calls made by a thread between
// arm() and disarm() count.
#pragma once

#include <string>

namespace sablevox::testing::realtime {

// False in sanitizer builds: their runtimes own malloc and the pthread calls,
// so the hooks are left out there.
bool hooksInstalled();

// Arms or disarms counting on the calling thread.
void arm();
void disarm();

// Calls counted so far, by kind, and the name of the first one seen.
struct Counts {
  long allocations = 0;  // malloc, calloc, realloc, free, operator new and delete
  long locks = 0;        // pthread mutex and rwlock locking, the guard of a static
  long waits = 0;        // condition variables, semaphores, joins, futex by syscall
  long sleeps = 0;       // nanosleep, clock_nanosleep, usleep, sleep, sched_yield
  long io = 0;           // open, read, write, close, fopen
  long syscalls = 0;     // syscall() of any other number
  std::string first;     // the first function counted
  long total() const { return allocations + locks + waits + sleeps + io + syscalls; }
};
Counts counts();
void resetCounts();

// While held, any thread other than one that called exemptFromHolding() is
// kept inside its next sleep until release(); holdingCount() tells how many
// are kept. The plug-in's worker sleeps between passes and while it waits for
// the audio thread, so this freezes it at either point.
void exemptFromHolding();
void hold();
void release();
int holdingCount();

}  // namespace sablevox::testing::realtime
