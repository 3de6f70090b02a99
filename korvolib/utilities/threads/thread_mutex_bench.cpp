#include <korvolib/utilities/threads/thread_mutex.h>

#include <mutex>

#include <benchmark/benchmark.h>

#include <tests/support/second_thread.h>

namespace {

const kvTest::SecondThread g_secondThread;

void ThreadMutex_KorvoLib(benchmark::State& state) {
    kvKorvo::kvThread::ThreadMutexInited mutex;
    mutex.init();
    for (auto _ : state) {
        mutex.Lock();
        benchmark::ClobberMemory();
        mutex.Unlock();
    }
}
BENCHMARK(ThreadMutex_KorvoLib)->Name("ThreadMutex/KorvoLib");

void ThreadMutex_RecursiveMutex(benchmark::State& state) {
    std::recursive_mutex mutex;
    for (auto _ : state) {
        mutex.lock();
        benchmark::ClobberMemory();
        mutex.unlock();
    }
}
BENCHMARK(ThreadMutex_RecursiveMutex)->Name("ThreadMutex/recursive_mutex");

} // namespace
