#include <korvolib/utilities/threads/thread_mutex.h>

#include <pthread.h>

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

} // namespace

void ThreadMutexInited::init() noexcept { m_isInited.store(true, std::memory_order_release); }

bool ThreadMutexInited::IsInited() const noexcept { return m_isInited.load(std::memory_order_acquire); }

// Compared without ordering: only the calling thread itself stores its own number, so a stale answer can never be
// "mine" by mistake.
bool ThreadMutexInited::IsHeldByThisThread() const noexcept {
    return m_owner.load(std::memory_order_relaxed) == ThisThread();
}

KELockResult ThreadMutexInited::Claim(uintptr_t self) noexcept {
    m_owner.store(self, std::memory_order_relaxed);
    m_depth = 1;
    return KELockResult::Taken;
}

KELockResult ThreadMutexInited::Lock() noexcept {
    const uintptr_t self = ThisThread();
    if (m_owner.load(std::memory_order_relaxed) == self) {
        ++m_depth;
        return KELockResult::Taken;
    }
    if (!IsInited())
        return KELockResult::NothingToLock;
    m_mutex.lock();
    return Claim(self);
}

KELockResult ThreadMutexInited::TryLock() noexcept {
    const uintptr_t self = ThisThread();
    if (m_owner.load(std::memory_order_relaxed) == self) {
        ++m_depth;
        return KELockResult::Taken;
    }
    if (!IsInited())
        return KELockResult::NothingToLock;
    return m_mutex.try_lock() ? Claim(self) : KELockResult::Busy;
}

bool ThreadMutexInited::Unlock() noexcept {
    if (!IsHeldByThisThread())
        return false;
    if (--m_depth > 0)
        return true;
    m_owner.store(0, std::memory_order_relaxed);
    m_mutex.unlock();
    return true;
}

} // namespace kvKorvoV12_9_0_320::kvThread
