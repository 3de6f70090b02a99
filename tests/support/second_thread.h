// A thread that does nothing while it lives. A host always has more than one thread, and the C library's mutexes
// are cheaper in a process that never had a second one: a benchmark that takes locks keeps one of these.
//
//   const kvTest::SecondThread g_secondThread;
#pragma once

#include <future>
#include <thread>

namespace kvTest {

class SecondThread {
  public:
    SecondThread() : m_thread([stop = m_stop.get_future()] { stop.wait(); }) {}
    ~SecondThread() {
        m_stop.set_value();
        m_thread.join();
    }
    SecondThread(const SecondThread&) = delete;
    SecondThread& operator=(const SecondThread&) = delete;

  private:
    std::promise<void> m_stop;
    std::thread m_thread;
};

} // namespace kvTest
