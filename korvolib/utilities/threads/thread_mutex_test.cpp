#include <korvolib/utilities/threads/thread_mutex.h>

#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/allocation_count.h>

namespace {

using kvKorvo::kvThread::KELockResult;
using kvKorvo::kvThread::ThreadMutexGuard;
using kvKorvo::kvThread::ThreadMutexInited;

// What another thread gets from TryLock; it gives back what it took.
KELockResult TryFromElsewhere(ThreadMutexInited& mutex) {
    KELockResult result{};
    std::thread([&] {
        result = mutex.TryLock();
        if (result == KELockResult::Taken)
            mutex.Unlock();
    }).join();
    return result;
}

TEST(ThreadMutexInited, LocksNothingBeforeInitAndSaysSo) {
    ThreadMutexInited mutex;
    EXPECT_FALSE(mutex.IsInited());
    EXPECT_EQ(mutex.Lock(), KELockResult::NothingToLock);
    EXPECT_EQ(mutex.TryLock(), KELockResult::NothingToLock);
    EXPECT_FALSE(mutex.IsHeldByThisThread());
    EXPECT_FALSE(mutex.Unlock());
}

TEST(ThreadMutexInited, KeepsOthersOutWhileHeld) {
    ThreadMutexInited mutex;
    mutex.init();
    ASSERT_TRUE(mutex.IsInited());
    ASSERT_EQ(mutex.Lock(), KELockResult::Taken);
    EXPECT_EQ(TryFromElsewhere(mutex), KELockResult::Busy);
    EXPECT_TRUE(mutex.Unlock());
    EXPECT_EQ(TryFromElsewhere(mutex), KELockResult::Taken);
}

TEST(ThreadMutexInited, InitAgainDoesNotFreeAHeldMutex) {
    ThreadMutexInited mutex;
    mutex.init();
    mutex.Lock();
    mutex.init();
    EXPECT_EQ(TryFromElsewhere(mutex), KELockResult::Busy);
    EXPECT_TRUE(mutex.Unlock());
}

TEST(ThreadMutexInited, HolderTakesItAgainAndOwesAsManyUnlocks) {
    ThreadMutexInited mutex;
    mutex.init();
    EXPECT_EQ(mutex.Lock(), KELockResult::Taken);
    EXPECT_EQ(mutex.TryLock(), KELockResult::Taken);
    EXPECT_EQ(mutex.Lock(), KELockResult::Taken);
    EXPECT_TRUE(mutex.Unlock());
    EXPECT_TRUE(mutex.Unlock());
    EXPECT_EQ(TryFromElsewhere(mutex), KELockResult::Busy);
    EXPECT_TRUE(mutex.Unlock());
    EXPECT_EQ(TryFromElsewhere(mutex), KELockResult::Taken);
}

TEST(ThreadMutexInited, UnlockByAThreadThatDoesNotHoldItIsRefused) {
    ThreadMutexInited mutex;
    mutex.init();
    EXPECT_FALSE(mutex.Unlock());
    mutex.Lock();
    bool given = true;
    std::thread([&] { given = mutex.Unlock(); }).join();
    EXPECT_FALSE(given);
    EXPECT_EQ(TryFromElsewhere(mutex), KELockResult::Busy);
    EXPECT_TRUE(mutex.Unlock());
    EXPECT_FALSE(mutex.Unlock());
}

TEST(ThreadMutexInited, ManyThreadsCountWithoutLosingOne) {
    ThreadMutexInited mutex;
    mutex.init();
    constexpr int kThreads = 4;
    constexpr int kRounds = 20000;
    int counter = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                const ThreadMutexGuard outer(mutex);
                const ThreadMutexGuard inner(mutex);
                ++counter;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter, kThreads * kRounds);
}

TEST(ThreadMutexInited, AWaitingThreadIsWokenByTheUnlock) {
    ThreadMutexInited mutex;
    mutex.init();
    bool entered = false;
    mutex.Lock();
    std::thread waiting([&] {
        const ThreadMutexGuard guard(mutex);
        entered = true;
    });
    // Until the other thread has a chance to sleep, or not: it must get in either way.
    for (int i = 0; i < 1000; ++i)
        std::this_thread::yield();
    EXPECT_FALSE(entered);
    mutex.Unlock();
    waiting.join();
    EXPECT_TRUE(entered);
}

TEST(ThreadMutexInited, AlternatesBetweenHoldersThatTryAndHoldersThatWait) {
    ThreadMutexInited mutex;
    mutex.init();
    int counter = 0;
    auto trying = [&] {
        for (int done = 0; done < 5000;) {
            if (mutex.TryLock() != KELockResult::Taken)
                continue;
            ++counter;
            ++done;
            mutex.Unlock();
        }
    };
    std::thread other(trying);
    for (int i = 0; i < 5000; ++i) {
        const ThreadMutexGuard guard(mutex);
        ++counter;
    }
    other.join();
    EXPECT_EQ(counter, 10000);
}

TEST(ThreadMutexInited, TakesNothingFromTheHeap) {
    const kvTest::AllocationCount count;
    ThreadMutexInited mutex;
    mutex.init();
    { const ThreadMutexGuard guard(mutex); }
    EXPECT_EQ(count.Taken(), 0u);
}

TEST(ThreadMutexGuard, GivesBackAtTheEndOfTheScope) {
    ThreadMutexInited mutex;
    mutex.init();
    {
        const ThreadMutexGuard guard(mutex);
        EXPECT_TRUE(guard.IsHeld());
        EXPECT_EQ(TryFromElsewhere(mutex), KELockResult::Busy);
    }
    EXPECT_EQ(TryFromElsewhere(mutex), KELockResult::Taken);
}

TEST(ThreadMutexGuard, GivesBackWhenTheScopeThrows) {
    ThreadMutexInited mutex;
    mutex.init();
    auto throwing = [&] {
        const ThreadMutexGuard guard(mutex);
        throw std::runtime_error("from within");
    };
    EXPECT_THROW(throwing(), std::runtime_error);
    EXPECT_FALSE(mutex.IsHeldByThisThread());
    EXPECT_EQ(TryFromElsewhere(mutex), KELockResult::Taken);
}

TEST(ThreadMutexGuard, ReleaseGivesBackOnceOnly) {
    ThreadMutexInited mutex;
    mutex.init();
    mutex.Lock();
    {
        ThreadMutexGuard guard(mutex);
        guard.Release();
        guard.Release();
        EXPECT_FALSE(guard.IsHeld());
    }
    EXPECT_TRUE(mutex.IsHeldByThisThread());
    EXPECT_TRUE(mutex.Unlock());
}

TEST(ThreadMutexGuard, LeavesAMutexAloneThatCameIntoExistenceMeanwhile) {
    ThreadMutexInited mutex;
    {
        const ThreadMutexGuard guard(mutex);
        EXPECT_FALSE(guard.IsHeld());
        mutex.init();
        mutex.Lock();
    }
    EXPECT_TRUE(mutex.IsHeldByThisThread());
    EXPECT_TRUE(mutex.Unlock());
}

} // namespace
