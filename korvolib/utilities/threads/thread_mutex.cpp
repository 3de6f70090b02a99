#include <korvolib/utilities/threads/thread_mutex.h>

#include <pthread.h>

#if __has_include(<sys/single_threaded.h>)
#include <sys/single_threaded.h>
#define KORVO_SINGLE_THREADED __libc_single_threaded
#else
#define KORVO_SINGLE_THREADED false
#endif

namespace kvKorvoV12_9_0_320::kvThread {

namespace {

// A number that no two running threads share, never 0. The thread pointer is pthread_self() on the systems that
// have the builtin, without the call.
uintptr_t ThisThread() noexcept {
#if __has_builtin(__builtin_thread_pointer)
    return reinterpret_cast<uintptr_t>(__builtin_thread_pointer());
#else
    return (uintptr_t)pthread_self();
#endif
}

// Both below are one atomic exchange, unless the process has no second thread (as the C library's own mutexes do):
// then there is nobody to exclude, and starting a thread publishes what was stored.
bool Claim(std::atomic<int>& state, int expected, int wanted) noexcept {
    if (!KORVO_SINGLE_THREADED)
        return state.compare_exchange_strong(expected, wanted, std::memory_order_acquire,
                                             std::memory_order_relaxed);
    if (state.load(std::memory_order_relaxed) != expected)
        return false;
    state.store(wanted, std::memory_order_relaxed);
    return true;
}

int Replace(std::atomic<int>& state, int wanted) noexcept {
    if (!KORVO_SINGLE_THREADED)
        return state.exchange(wanted, std::memory_order_release);
    const int before = state.load(std::memory_order_relaxed);
    state.store(wanted, std::memory_order_relaxed);
    return before;
}

} // namespace

void ThreadMutexInited::init() noexcept {
    int expected = kNotInited;
    m_state.compare_exchange_strong(expected, kFree, std::memory_order_acq_rel, std::memory_order_relaxed);
}

bool ThreadMutexInited::IsInited() const noexcept { return m_state.load(std::memory_order_acquire) != kNotInited; }

// Compared without ordering: only the calling thread itself stores its own number, so a stale answer can never be
// "mine" by mistake.
bool ThreadMutexInited::IsHeldByThisThread() const noexcept {
    return m_owner.load(std::memory_order_relaxed) == ThisThread();
}

bool ThreadMutexInited::TakeIfFree(uintptr_t self) noexcept {
    if (!Claim(m_state, kFree, kHeld))
        return false;
    m_owner.store(self, std::memory_order_relaxed);
    m_depth = 1;
    return true;
}

KELockResult ThreadMutexInited::Lock() noexcept {
    const uintptr_t self = ThisThread();
    if (m_owner.load(std::memory_order_relaxed) == self) {
        ++m_depth;
        return KELockResult::Taken;
    }
    return TakeIfFree(self) ? KELockResult::Taken : LockWaiting(self);
}

// Whoever had to wait cannot know whether others still do, so it takes the mutex as waited for: at worst one
// needless wake-up, never a sleeper forgotten.
KELockResult ThreadMutexInited::LockWaiting(uintptr_t self) noexcept {
    if (!IsInited())
        return KELockResult::NothingToLock;
    while (m_state.exchange(kHeldAndWaitedFor, std::memory_order_acquire) != kFree)
        m_state.wait(kHeldAndWaitedFor, std::memory_order_relaxed);
    m_owner.store(self, std::memory_order_relaxed);
    m_depth = 1;
    return KELockResult::Taken;
}

KELockResult ThreadMutexInited::TryLock() noexcept {
    const uintptr_t self = ThisThread();
    if (m_owner.load(std::memory_order_relaxed) == self) {
        ++m_depth;
        return KELockResult::Taken;
    }
    if (TakeIfFree(self))
        return KELockResult::Taken;
    return IsInited() ? KELockResult::Busy : KELockResult::NothingToLock;
}

bool ThreadMutexInited::Unlock() noexcept {
    if (!IsHeldByThisThread())
        return false;
    if (--m_depth > 0)
        return true;
    m_owner.store(0, std::memory_order_relaxed);
    if (Replace(m_state, kFree) == kHeldAndWaitedFor)
        m_state.notify_one();
    return true;
}

} // namespace kvKorvoV12_9_0_320::kvThread
