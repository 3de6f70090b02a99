#include <korvolib/utilities/threads/thread_mutex.h>

#include <pthread.h>

namespace kvKorvoV12_9_0_320::kvThread {

namespace {

// An address or a number, by system; never 0 for a running thread.
uintptr_t ThisThread() noexcept { return (uintptr_t)pthread_self(); }

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
    int expected = kFree;
    if (!m_state.compare_exchange_strong(expected, kHeld, std::memory_order_acquire, std::memory_order_relaxed))
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
    if (m_state.exchange(kFree, std::memory_order_release) == kHeldAndWaitedFor)
        m_state.notify_one();
    return true;
}

} // namespace kvKorvoV12_9_0_320::kvThread
