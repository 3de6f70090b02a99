// While it lives, this thread's processor takes numbers too small for full precision as 0. Filters ring down into
// such numbers after their input has stopped, and a processor is a hundred times slower with them. Written for
// x86-64 and 64-bit ARM; elsewhere it does nothing, which is slower and correct.
//
// Thread: [audio]; two register accesses.
#pragma once

#include <cstdint>

#include <korvolib/version.h>

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

namespace kvKorvoV12_9_0_320 {

class KCFlushDenormals {
  public:
    KCFlushDenormals() noexcept : m_before(Read()) { Write(m_before | kFlushBits); }
    ~KCFlushDenormals() { Write(m_before); }
    KCFlushDenormals(const KCFlushDenormals&) = delete;
    KCFlushDenormals& operator=(const KCFlushDenormals&) = delete;

  private:
#if defined(__SSE2__)
    static constexpr uint64_t kFlushBits = 0x8040; // flush results to zero, take denormal operands as zero
    static uint64_t Read() noexcept { return _mm_getcsr(); }
    static void Write(uint64_t value) noexcept { _mm_setcsr(static_cast<unsigned>(value)); }
#elif defined(__aarch64__)
    static constexpr uint64_t kFlushBits = uint64_t{1} << 24; // FPCR.FZ
    static uint64_t Read() noexcept {
        uint64_t value = 0;
        asm volatile("mrs %0, fpcr" : "=r"(value));
        return value;
    }
    static void Write(uint64_t value) noexcept { asm volatile("msr fpcr, %0" : : "r"(value)); }
#else
    static constexpr uint64_t kFlushBits = 0;
    static uint64_t Read() noexcept { return 0; }
    static void Write(uint64_t) noexcept {}
#endif

    uint64_t m_before;
};

} // namespace kvKorvoV12_9_0_320
