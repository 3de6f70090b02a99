#include <tests/support/lock_count.h>

#include <tests/support/sanitized.h>

#include <dlfcn.h>
#include <pthread.h>

namespace {
thread_local size_t t_locks = 0;
} // namespace

namespace kvTest {
size_t LocksOfThisThread() noexcept { return t_locks; }
} // namespace kvTest

#if defined(KORVO_TEST_SANITIZED)

namespace kvTest {
bool CanCountLocks() noexcept { return false; }
} // namespace kvTest

#else

namespace kvTest {
bool CanCountLocks() noexcept { return true; }
} // namespace kvTest

namespace {

template <class Function>
Function Real(const char* name) {
    ++t_locks;
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    return Real<decltype(&pthread_mutex_lock)>("pthread_mutex_lock")(mutex);
}
int pthread_mutex_trylock(pthread_mutex_t* mutex) noexcept {
    return Real<decltype(&pthread_mutex_trylock)>("pthread_mutex_trylock")(mutex);
}
int pthread_rwlock_rdlock(pthread_rwlock_t* lock) noexcept {
    return Real<decltype(&pthread_rwlock_rdlock)>("pthread_rwlock_rdlock")(lock);
}
int pthread_rwlock_wrlock(pthread_rwlock_t* lock) noexcept {
    return Real<decltype(&pthread_rwlock_wrlock)>("pthread_rwlock_wrlock")(lock);
}

// As the C library's own does: all six places, whatever the call takes.
long syscall(long number, ...) noexcept {
    __builtin_va_list arguments;
    __builtin_va_start(arguments, number);
    long values[6];
    for (long& value : values)
        value = __builtin_va_arg(arguments, long);
    __builtin_va_end(arguments);
    return Real<long (*)(long, ...)>("syscall")(number, values[0], values[1], values[2], values[3], values[4],
                                                values[5]);
}
}

#endif
