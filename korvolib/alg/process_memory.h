// Blocks of processing memory: how a changed parameter reaches the audio side.
//
// The plug-in's hook takes a block from the algorithm's pool, fills it with what its processing needs (filter
// coefficients, a gain) and returns it; update operations join blocks into chains; the host callback executes a
// chain and gives it back. The pool is made once, in FinishCreate, so that no parameter change allocates.
//
// Thread: [main], which is whoever holds the algorithm's lock.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

namespace KPAPI_PROCESS_MEMORY {

// Stands before the payload, which begins right behind it, aligned to 16 bytes.
struct BUFFER_HEADER {
    BUFFER_HEADER* next = nullptr;                   // the block after this one in its chain, or null
    uint32_t size = 0;                               // payload bytes
    uint32_t target = 0;                             // which part of the plug-in's processing it is for
    void (*giveBack)(BUFFER_HEADER& self) = nullptr; // returns this one block to where it came from
    void* owner = nullptr;                           // for giveBack alone

    void* Payload() noexcept { return this + 1; }
    const void* Payload() const noexcept { return this + 1; }
};
static_assert(sizeof(BUFFER_HEADER) == 32);

// Joins two chains, `first` before `second`; either may be null. Walks `first` to its end.
KORVO_API BUFFER_HEADER* ChainBufs(BUFFER_HEADER* first, BUFFER_HEADER* second) noexcept;

// Gives every block of a chain back and sets the pointer to null.
KORVO_API void GiveBackChain(BUFFER_HEADER*& chain) noexcept;

} // namespace KPAPI_PROCESS_MEMORY

// How much processing memory an algorithm asks for (cALGORITHM::GetProcessMemorySize).
struct sPROCESS_MEMORY_SIZE {
    size_t numBlocks = 0;    // blocks that may be under way at once
    size_t blockBytes = 256; // payload of one block, at most
    uint32_t numTargets = 1; // targets are 0 … numTargets − 1
};

// A fixed number of blocks of a fixed size. An exhausted pool hands out null and counts it: see
// cALGORITHM::TakeBuffer for what follows.
class KORVO_API KCProcessMemoryPool {
  public:
    KCProcessMemoryPool() noexcept;
    ~KCProcessMemoryPool();
    KCProcessMemoryPool(const KCProcessMemoryPool&) = delete;
    KCProcessMemoryPool& operator=(const KCProcessMemoryPool&) = delete;

    // Makes the blocks; blocks of an earlier call must all have been given back (kErr_Generic otherwise, and
    // nothing changes). kErr_AllocationFailed leaves the pool as it was.
    [[nodiscard]] int32_t Init(const sPROCESS_MEMORY_SIZE& size) noexcept;

    // A block with room for `bytes`, or null: none is left, `bytes` is more than a block holds, or the target is
    // unknown. The payload holds whatever was there.
    KPAPI_PROCESS_MEMORY::BUFFER_HEADER* Take(uint32_t target, size_t bytes) noexcept;

    const sPROCESS_MEMORY_SIZE& GetSize() const noexcept { return m_size; }
    size_t GetNumFree() const noexcept { return m_numFree; }
    uint64_t GetNumRefused() const noexcept { return m_numRefused; } // how often Take returned null

  private:
    static void GiveBack(KPAPI_PROCESS_MEMORY::BUFFER_HEADER& header) noexcept;

    sPROCESS_MEMORY_SIZE m_size;
    size_t m_stride = 0;
    size_t m_numFree = 0;
    uint64_t m_numRefused = 0;
    KPAPI_PROCESS_MEMORY::BUFFER_HEADER* m_firstFree = nullptr;
    std::unique_ptr<std::byte[], void (*)(std::byte*)> m_memory;
};

} // namespace kvKorvoV12_9_0_320
