#include "AudioThreadGuard.h"

#include <dlfcn.h>
#include <stdarg.h>
#include <stddef.h>
#include <string.h>

// No header may be included here that declares one of the calls below.

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define QM_GUARDING 0
#else
#define QM_GUARDING 1
#endif

namespace {

thread_local bool t_promised = false;

#if QM_GUARDING

template <class Function>
Function Real(const char* name) {
  // Condition variables have an older form under the same name, which a plain search may find.
  void* found = strncmp(name, "pthread_cond_", 13) == 0 ? dlvsym(RTLD_NEXT, name, "GLIBC_2.3.2") : nullptr;
  return reinterpret_cast<Function>(found ? found : dlsym(RTLD_NEXT, name));
}

extern "C" long __write(int, const void*, size_t);
extern "C" [[noreturn]] void abort() noexcept;

void Forbid(const char* name) {
  if (!t_promised) return;
  t_promised = false;
  const char* const parts[] = {"the audio thread called ", name, "\n"};
  for (const char* part : parts) __write(2, part, strlen(part));
  abort();
}

#endif

}  // namespace

namespace qm::test {

AudioThreadGuard::AudioThreadGuard() {
  t_promised = true;
}
AudioThreadGuard::~AudioThreadGuard() {
  t_promised = false;
}
bool AudioThreadGuard::Works() {
  return QM_GUARDING;
}

}  // namespace qm::test

#if QM_GUARDING

extern "C" {

void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);
void __libc_free(void*);

// What the search for the others may itself need.
#define QM_FORBIDDEN_MEMORY(result, name, parameters, ...) \
  result name parameters {                                 \
    Forbid(#name);                                         \
    __VA_ARGS__;                                           \
  }

QM_FORBIDDEN_MEMORY(void*, malloc, (size_t size), return __libc_malloc(size))
QM_FORBIDDEN_MEMORY(void*, calloc, (size_t count, size_t size), return __libc_calloc(count, size))
QM_FORBIDDEN_MEMORY(void*, realloc, (void* block, size_t size), return __libc_realloc(block, size))
QM_FORBIDDEN_MEMORY(void*, memalign, (size_t to, size_t size), return __libc_memalign(to, size))
QM_FORBIDDEN_MEMORY(void*, aligned_alloc, (size_t to, size_t size), return __libc_memalign(to, size))
QM_FORBIDDEN_MEMORY(int, posix_memalign, (void** block, size_t to, size_t size),
                    return (*block = __libc_memalign(to, size)) ? 0 : 12)
QM_FORBIDDEN_MEMORY(void, free, (void* block), __libc_free(block))

#define QM_FORBIDDEN(result, name, parameters, arguments)       \
  result name parameters {                                      \
    Forbid(#name);                                              \
    static const auto real = Real<result(*) parameters>(#name); \
    return real arguments;                                      \
  }

QM_FORBIDDEN(int, pthread_mutex_lock, (void* mutex), (mutex))
QM_FORBIDDEN(int, pthread_mutex_trylock, (void* mutex), (mutex))
QM_FORBIDDEN(int, pthread_mutex_timedlock, (void* mutex, const void* until), (mutex, until))
QM_FORBIDDEN(int, pthread_mutex_unlock, (void* mutex), (mutex))
QM_FORBIDDEN(int, pthread_rwlock_rdlock, (void* lock), (lock))
QM_FORBIDDEN(int, pthread_rwlock_wrlock, (void* lock), (lock))
QM_FORBIDDEN(int, pthread_cond_signal, (void* condition), (condition))
QM_FORBIDDEN(int, pthread_cond_broadcast, (void* condition), (condition))
QM_FORBIDDEN(int, pthread_cond_wait, (void* condition, void* mutex), (condition, mutex))
QM_FORBIDDEN(int, pthread_cond_timedwait, (void* condition, void* mutex, const void* until),
             (condition, mutex, until))
QM_FORBIDDEN(int, sem_wait, (void* semaphore), (semaphore))
QM_FORBIDDEN(int, sem_post, (void* semaphore), (semaphore))
QM_FORBIDDEN(long, read, (int file, void* bytes, size_t count), (file, bytes, count))
QM_FORBIDDEN(long, write, (int file, const void* bytes, size_t count), (file, bytes, count))
QM_FORBIDDEN(int, close, (int file), (file))
QM_FORBIDDEN(int, poll, (void* entries, unsigned long count, int timeout), (entries, count, timeout))
QM_FORBIDDEN(int, nanosleep, (const void* time, void* left), (time, left))
QM_FORBIDDEN(int, clock_nanosleep, (int clock, int flags, const void* time, void* left),
             (clock, flags, time, left))
QM_FORBIDDEN(int, usleep, (unsigned time), (time))
QM_FORBIDDEN(int, sched_yield, (), ())
QM_FORBIDDEN(int, clock_gettime, (int clock, void* time), (clock, time))
QM_FORBIDDEN(int, munmap, (void* block, size_t size), (block, size))
QM_FORBIDDEN(void*, mmap, (void* at, size_t size, int protection, int flags, int file, long offset),
             (at, size, protection, flags, file, offset))

// Futexes, which waiting on an atomic comes down to, are entered through this one.
long syscall(long number, ...) {
  Forbid("syscall");
  static const auto real = Real<long (*)(long, ...)>("syscall");
  long given[6];
  va_list arguments;
  va_start(arguments, number);
  for (long& argument : given) argument = va_arg(arguments, long);
  va_end(arguments);
  return real(number, given[0], given[1], given[2], given[3], given[4], given[5]);
}

}  // extern "C"

#endif
