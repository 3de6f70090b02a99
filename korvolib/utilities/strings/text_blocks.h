// Text in blocks of 32 bytes, where the processor compares 16 at once (SSE2): for the fixed strings, whose buffers
// may be read behind the end of their text. Most names end within the first block, so that no branch has to be
// guessed.
//
// `bytes` is the size of each buffer, a multiple of the block where it says so; nothing outside is read or written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::TextBlocks {

inline constexpr size_t kSize = 32;

#if defined(__SSE2__)

inline constexpr bool kAvailable = true;

typedef char Half __attribute__((vector_size(16)));

struct Block {
    Half low;
    Half high;
};

inline Half LoadHalf(const char* from) noexcept {
    Half half;
    std::memcpy(&half, from, sizeof half);
    return half;
}
inline Block Load(const char* from) noexcept { return {LoadHalf(from), LoadHalf(from + sizeof(Half))}; }
inline void Store(char* to, Block block) noexcept {
    std::memcpy(to, &block.low, sizeof block.low);
    std::memcpy(to + sizeof(Half), &block.high, sizeof block.high);
}

/// One bit for each byte with its top bit set, the first byte's lowest.
inline uint32_t TopBits(Half low, Half high) noexcept {
    return static_cast<uint32_t>(__builtin_ia32_pmovmskb128(low)) |
           static_cast<uint32_t>(__builtin_ia32_pmovmskb128(high)) << 16;
}
inline uint32_t NulBits(Block block) noexcept {
    return TopBits(reinterpret_cast<Half>(block.low == Half{}), reinterpret_cast<Half>(block.high == Half{}));
}
inline size_t FirstBit(uint32_t bits) noexcept { return static_cast<size_t>(__builtin_ctz(bits)); }

/// All bits set in the first `count` bytes, at most 32.
inline Block FirstBytes(size_t count) noexcept {
    static constexpr struct {
        unsigned char set[kSize] = {255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255,
                                    255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255};
        unsigned char clear[kSize] = {};
    } kMask;
    return Load(reinterpret_cast<const char*>(&kMask) + kSize - count);
}

/// Copies the text at `from` with its NUL and returns its length; the bytes at `to` behind it stay as they are.
/// Both buffers are whole blocks.
inline size_t CopyText(char* to, const char* from, size_t bytes) noexcept {
    for (size_t at = 0; at < bytes; at += kSize) {
        const Block block = Load(from + at);
        if (const uint32_t nuls = NulBits(block)) {
            const size_t length = FirstBit(nuls);
            const Block own = FirstBytes(length + 1);
            const Block old = Load(to + at);
            Store(to + at,
                  {(block.low & own.low) | (old.low & ~own.low), (block.high & own.high) | (old.high & ~own.high)});
            return at + length;
        }
        Store(to + at, block);
    }
    to[bytes - 1] = '\0'; // somebody overwrote the last NUL
    return bytes - 1;
}

/// The same into a new buffer, which becomes zero behind the text.
inline size_t CopyTextAndZero(char* to, const char* from, size_t bytes) noexcept {
    size_t at = 0;
    Block block = Load(from);
    uint32_t nuls = NulBits(block);
    while (nuls == 0 && at + kSize < bytes) {
        Store(to + at, block);
        at += kSize;
        block = Load(from + at);
        nuls = NulBits(block);
    }
    const size_t length = nuls == 0 ? kSize - 1 : FirstBit(nuls);
    const Block own = FirstBytes(length);
    Store(to + at, {block.low & own.low, block.high & own.high});
    for (size_t rest = at + kSize; rest < bytes; rest += kSize)
        Store(to + rest, Block{});
    return at + length;
}

/// Moves `at`, from 0, to where the two texts differ or both end, and returns true; or over as many whole blocks of
/// both buffers as are equal and hold no NUL, and returns false.
inline bool FindDifference(const char* a, const char* b, size_t bytes, size_t& at) noexcept {
    for (; at + kSize <= bytes; at += kSize) {
        const Block own = Load(a + at);
        const Block other = Load(b + at);
        // A byte that differs from the other or is NUL becomes zero.
        const uint32_t events = NulBits({own.low & reinterpret_cast<Half>(own.low == other.low),
                                         own.high & reinterpret_cast<Half>(own.high == other.high)});
        if (events == 0)
            continue;
        at += FirstBit(events);
        return true;
    }
    return false;
}

#else

inline constexpr bool kAvailable = false;

size_t CopyText(char* to, const char* from, size_t bytes) noexcept;
size_t CopyTextAndZero(char* to, const char* from, size_t bytes) noexcept;
bool FindDifference(const char* a, const char* b, size_t bytes, size_t& at) noexcept;

#endif

} // namespace kvKorvoV12_9_0_320::TextBlocks
