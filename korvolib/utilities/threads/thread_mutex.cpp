#include <korvolib/utilities/threads/thread_mutex.h>

namespace kvKorvoV12_9_0_320::kvThread {

void ThreadMutexInited::init() noexcept { m_isInited.store(true, std::memory_order_release); }

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

} // namespace kvKorvoV12_9_0_320::kvThread
