#include <korvolib/alg/process_memory.h>

#include <korvolib/utilities/error_codes.h>

#include <limits>
#include <new>

namespace kvKorvoV12_9_0_320 {

using KPAPI_PROCESS_MEMORY::BUFFER_HEADER;

namespace {

constexpr size_t kPayloadAlignment = 16;

void FreeAligned(std::byte* memory) { ::operator delete[](memory, std::align_val_t{kPayloadAlignment}); }

} // namespace

BUFFER_HEADER* KPAPI_PROCESS_MEMORY::ChainBufs(BUFFER_HEADER* first, BUFFER_HEADER* second) noexcept {
    if (first == nullptr)
        return second;
    BUFFER_HEADER* last = first;
    while (last->next != nullptr)
        last = last->next;
    last->next = second;
    return first;
}

void KPAPI_PROCESS_MEMORY::GiveBackChain(BUFFER_HEADER*& chain) noexcept {
    while (chain != nullptr) {
        BUFFER_HEADER* const block = chain;
        chain = block->next;
        block->next = nullptr;
        if (block->giveBack != nullptr)
            block->giveBack(*block);
    }
}

KCProcessMemoryPool::KCProcessMemoryPool() noexcept : m_memory(nullptr, &FreeAligned) {}
KCProcessMemoryPool::~KCProcessMemoryPool() = default;

int32_t KCProcessMemoryPool::Init(const sPROCESS_MEMORY_SIZE& size) noexcept {
    if (m_memory != nullptr && m_numFree != m_size.numBlocks)
        return kErr_Generic;
    constexpr size_t kLargest = std::numeric_limits<uint32_t>::max();
    if (size.blockBytes > kLargest || size.numBlocks > kLargest)
        return kErr_AllocationFailed;
    const size_t payload = (size.blockBytes + kPayloadAlignment - 1) / kPayloadAlignment * kPayloadAlignment;
    const size_t stride = sizeof(BUFFER_HEADER) + payload;
    if (size.numBlocks > std::numeric_limits<size_t>::max() / stride)
        return kErr_AllocationFailed;
    auto* const memory = static_cast<std::byte*>(
        ::operator new[](stride* size.numBlocks, std::align_val_t{kPayloadAlignment}, std::nothrow));
    if (memory == nullptr)
        return kErr_AllocationFailed;

    m_memory.reset(memory);
    m_size = size;
    m_stride = stride;
    m_numFree = size.numBlocks;
    m_firstFree = nullptr;
    for (size_t index = size.numBlocks; index-- > 0;) {
        BUFFER_HEADER* const block = new (memory + index * stride) BUFFER_HEADER;
        block->next = m_firstFree;
        m_firstFree = block;
    }
    return kErr_NoErr;
}

BUFFER_HEADER* KCProcessMemoryPool::Take(uint32_t target, size_t bytes) noexcept {
    if (m_firstFree == nullptr || bytes > m_size.blockBytes || target >= m_size.numTargets) {
        ++m_numRefused;
        return nullptr;
    }
    BUFFER_HEADER* const block = m_firstFree;
    m_firstFree = block->next;
    --m_numFree;
    block->next = nullptr;
    block->size = static_cast<uint32_t>(bytes);
    block->target = target;
    block->giveBack = &GiveBack;
    block->owner = this;
    return block;
}

void KCProcessMemoryPool::GiveBack(BUFFER_HEADER& header) noexcept {
    auto* const pool = static_cast<KCProcessMemoryPool*>(header.owner);
    if (pool == nullptr)
        return; // given back already: a second time must not put it into the list twice
    header.owner = nullptr;
    header.next = pool->m_firstFree;
    pool->m_firstFree = &header;
    ++pool->m_numFree;
}

} // namespace kvKorvoV12_9_0_320
