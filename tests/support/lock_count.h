// Counts how often the calling thread takes a lock or asks the kernel to let it wait, so that a test can say
// "never".
//
//   LockCount count;
//   runner.Process(block);
//   EXPECT_EQ(count.Taken(), 0u);
//
// Counted are the mutexes and read-write locks of the C library and system calls made through it, futexes among
// them. Counts nothing in builds with a sanitizer: CanCountLocks says so.
#pragma once

#include <cstddef>

namespace kvTest {

bool CanCountLocks() noexcept;
size_t LocksOfThisThread() noexcept;

class LockCount {
  public:
    LockCount() noexcept : m_atStart(LocksOfThisThread()) {}
    size_t Taken() const noexcept { return LocksOfThisThread() - m_atStart; }

  private:
    size_t m_atStart;
};

} // namespace kvTest
