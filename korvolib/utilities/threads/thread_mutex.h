// A mutex that its holder may take again, and that exists only once init() was called: an object that most plug-ins
// never share between threads carries one and pays nothing until someone asks for safety.
//
// Before init() every operation succeeds without locking anything, and says so (KELockResult::NothingToLock).
// A std::mutex with its holder and a depth beside it: taking it again touches no atomic exchange, and an Unlock by
// somebody who does not hold it is refused instead of undefined. Callable from any thread, never from the audio
// thread: it can wait.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

#include <pthread.h>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvThread {

enum class KELockResult : int32_t {
    Taken,         ///< Held by the calling thread once more: one Unlock is owed.
    NothingToLock, ///< init() has not been called: nothing is held, and no Unlock is owed.
    Busy,          ///< Another thread holds it (TryLock only).
};

class KORVO_API ThreadMutexInited {
  public:
    ThreadMutexInited() noexcept = default;
    ThreadMutexInited(const ThreadMutexInited&) = delete;
    ThreadMutexInited& operator=(const ThreadMutexInited&) = delete;

    /// Makes the mutex exist, from now on and for good; again does nothing.
    void init() noexcept;
    bool IsInited() const noexcept;

    /// Waits until no other thread holds it. Taken or NothingToLock.
    KELockResult Lock() noexcept;
    /// Never waits.
    [[nodiscard]] KELockResult TryLock() noexcept;
    /// Gives back one Lock. False, and nothing changes, when the calling thread does not hold it.
    bool Unlock() noexcept;

    /// Whether the calling thread holds it.
    bool IsHeldByThisThread() const noexcept;

  private:
    static uintptr_t ThisThread() noexcept;
    KELockResult Claim(uintptr_t self) noexcept;

    std::mutex m_mutex;
    std::atomic<uintptr_t> m_owner{0}; // the holder's thread, 0 for none
    uint32_t m_depth = 0;              // read and written by the holder only
    std::atomic<bool> m_isInited{false};
};

// Inline: every parameter update takes the lock once.

// A number that no two running threads share, never 0. The thread pointer is pthread_self() on the systems that
// have the builtin, without the call.
inline uintptr_t ThreadMutexInited::ThisThread() noexcept {
#if __has_builtin(__builtin_thread_pointer)
    return reinterpret_cast<uintptr_t>(__builtin_thread_pointer());
#else
    return (uintptr_t)pthread_self();
#endif
}

inline bool ThreadMutexInited::IsInited() const noexcept { return m_isInited.load(std::memory_order_acquire); }

// Compared without ordering: only the calling thread itself stores its own number, so a stale answer can never be
// "mine" by mistake.
inline bool ThreadMutexInited::IsHeldByThisThread() const noexcept {
    return m_owner.load(std::memory_order_relaxed) == ThisThread();
}

inline KELockResult ThreadMutexInited::Claim(uintptr_t self) noexcept {
    m_owner.store(self, std::memory_order_relaxed);
    m_depth = 1;
    return KELockResult::Taken;
}

inline KELockResult ThreadMutexInited::Lock() noexcept {
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

inline bool ThreadMutexInited::Unlock() noexcept {
    if (!IsHeldByThisThread())
        return false;
    if (--m_depth > 0)
        return true;
    m_owner.store(0, std::memory_order_relaxed);
    m_mutex.unlock();
    return true;
}

/// Holds a mutex for a scope, left by return or by exception. Gives back exactly what it took: a mutex that came
/// into existence meanwhile stays as it is.
class KORVO_API ThreadMutexGuard {
  public:
    explicit ThreadMutexGuard(ThreadMutexInited& mutex) noexcept
        : m_mutex(mutex), m_isHeld(mutex.Lock() == KELockResult::Taken) {}
    ~ThreadMutexGuard() { Release(); }
    ThreadMutexGuard(const ThreadMutexGuard&) = delete;
    ThreadMutexGuard& operator=(const ThreadMutexGuard&) = delete;

    /// False when there was nothing to lock, or after Release.
    bool IsHeld() const noexcept { return m_isHeld; }
    /// Gives the mutex back before the scope ends; again does nothing.
    void Release() noexcept {
        if (m_isHeld)
            m_mutex.Unlock();
        m_isHeld = false;
    }

  private:
    ThreadMutexInited& m_mutex;
    bool m_isHeld;
};

} // namespace kvKorvoV12_9_0_320::kvThread
