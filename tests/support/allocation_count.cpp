#include <tests/support/allocation_count.h>

#include <tests/support/sanitized.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {
thread_local size_t t_allocations = 0;
thread_local size_t t_limit = SIZE_MAX; // of t_allocations, beyond which there is no memory

bool IsOutOfMemory() noexcept { return t_allocations > t_limit; }
} // namespace

namespace kvTest {
size_t AllocationsOfThisThread() noexcept { return t_allocations; }
AllocationFailure::AllocationFailure(size_t numGiven) noexcept { t_limit = t_allocations + numGiven; }
AllocationFailure::~AllocationFailure() { t_limit = SIZE_MAX; }
} // namespace kvTest

#if !defined(KORVO_TEST_SANITIZED)

extern "C" {
void* __libc_malloc(size_t size) noexcept;
void* __libc_calloc(size_t count, size_t size) noexcept;
void* __libc_realloc(void* block, size_t size) noexcept;

void* malloc(size_t size) noexcept {
    ++t_allocations;
    return IsOutOfMemory() ? nullptr : __libc_malloc(size);
}
void* calloc(size_t count, size_t size) noexcept {
    ++t_allocations;
    return __libc_calloc(count, size);
}
void* realloc(void* block, size_t size) noexcept {
    ++t_allocations;
    return __libc_realloc(block, size);
}
}

#else

namespace {
void* CountedMalloc(size_t size) noexcept {
    ++t_allocations;
    return IsOutOfMemory() ? nullptr : std::malloc(size == 0 ? 1 : size);
}
void* CountedNew(size_t size) {
    if (void* block = CountedMalloc(size))
        return block;
    throw std::bad_alloc();
}
} // namespace

void* operator new(size_t size) { return CountedNew(size); }
void* operator new[](size_t size) { return CountedNew(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept { return CountedMalloc(size); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept { return CountedMalloc(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }
void operator delete[](void* block, size_t) noexcept { std::free(block); }

#endif
