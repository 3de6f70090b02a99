// Counts what the calling thread takes from the heap, so that a test can say "nothing".
//
//   AllocationCount count;
//   algorithm.UpdateParamRequestState(0, 500.0);
//   EXPECT_EQ(count.Taken(), 0u);
//
// Counted are operator new in every build and malloc, calloc and realloc in builds without a sanitizer (a
// sanitizer brings its own). The program that uses this replaces these functions for all its libraries.
#pragma once

#include <cstddef>

namespace kvTest {

size_t AllocationsOfThisThread() noexcept;

class AllocationCount {
  public:
    AllocationCount() noexcept : m_atStart(AllocationsOfThisThread()) {}
    size_t Taken() const noexcept { return AllocationsOfThisThread() - m_atStart; }

  private:
    size_t m_atStart;
};

/// While it lives: after `numGiven` more, whatever this thread asks of operator new throws std::bad_alloc. One at a
/// time.
class AllocationFailure {
  public:
    explicit AllocationFailure(size_t numGiven) noexcept;
    ~AllocationFailure();
    AllocationFailure(const AllocationFailure&) = delete;
    AllocationFailure& operator=(const AllocationFailure&) = delete;
};

} // namespace kvTest
