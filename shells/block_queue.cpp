#include <shells/block_queue.h>

#include <korvolib/utilities/error_codes.h>

#include <boost/lockfree/spsc_queue.hpp>

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

namespace kvKorvoV12_9_0_320 {

using KPAPI_PROCESS_MEMORY::BUFFER_HEADER;

namespace {

constexpr size_t kPayloadAlignment = 16; // as in the blocks themselves

struct alignas(kPayloadAlignment) sUNIT {
    std::byte bytes[kPayloadAlignment];
};

// A row of equally large payloads.
class KCPayloads {
  public:
    KCPayloads(size_t count, size_t bytes)
        : m_stride((bytes + kPayloadAlignment - 1) / kPayloadAlignment), m_units(count * m_stride) {}

    void* At(size_t index) noexcept { return m_units.data() + index * m_stride; }

  private:
    size_t m_stride; // units
    std::vector<sUNIT> m_units;
};

struct sENTRY {
    size_t slot;
    uint32_t target;
    uint32_t bytes;
};

struct sWAITING {
    bool isWaiting = false;
    uint32_t bytes = 0;
};

void Copy(void* to, const void* from, uint32_t bytes) {
    if (bytes != 0)
        std::memcpy(to, from, bytes);
}

} // namespace

struct KCBlockQueue::sImpl {
    explicit sImpl(const sPROCESS_MEMORY_SIZE& itsSize)
        : size(itsSize), capacity(std::max<size_t>(itsSize.numBlocks, 1)), entries(capacity),
          payloads(capacity, itsSize.blockBytes), waiting(itsSize.numTargets),
          waitingPayloads(itsSize.numTargets, itsSize.blockBytes) {}

    bool Push(uint32_t target, const void* payload, uint32_t bytes) noexcept {
        // With room for one more, the entry that had this slot a whole round ago has been received.
        if (entries.write_available() == 0)
            return false;
        Copy(payloads.At(nextSlot), payload, bytes);
        entries.push({nextSlot, target, bytes});
        nextSlot = (nextSlot + 1) % capacity;
        return true;
    }

    void Wait(uint32_t target, const void* payload, uint32_t bytes) noexcept {
        if (waiting[target].isWaiting)
            ++numReplaced;
        else
            ++numWaiting;
        waiting[target] = {true, bytes};
        Copy(waitingPayloads.At(target), payload, bytes);
    }

    const sPROCESS_MEMORY_SIZE size;
    const size_t capacity;
    boost::lockfree::spsc_queue<sENTRY> entries;
    KCPayloads payloads; // those of the entries
    size_t nextSlot = 0;
    std::vector<sWAITING> waiting; // by target
    KCPayloads waitingPayloads;
    size_t numWaiting = 0;
    uint64_t numReplaced = 0;
    uint64_t numRefused = 0;
};

KCBlockQueue::KCBlockQueue() noexcept = default;
KCBlockQueue::~KCBlockQueue() = default;

int32_t KCBlockQueue::Init(const sPROCESS_MEMORY_SIZE& size) noexcept {
    constexpr size_t kLargest = std::numeric_limits<uint32_t>::max(); // their product must not wrap around
    if (size.numBlocks > kLargest || size.blockBytes > kLargest)
        return kErr_AllocationFailed;
    try {
        m_impl = std::make_unique<sImpl>(size);
    } catch (...) { // no memory, or more than a vector can hold
        return kErr_AllocationFailed;
    }
    return kErr_NoErr;
}

void KCBlockQueue::Send(const BUFFER_HEADER& block) noexcept {
    if (m_impl == nullptr)
        return;
    if (block.target >= m_impl->size.numTargets || block.size > m_impl->size.blockBytes) {
        ++m_impl->numRefused;
        return;
    }
    SendWaiting();
    if (m_impl->waiting[block.target].isWaiting || !m_impl->Push(block.target, block.Payload(), block.size))
        m_impl->Wait(block.target, block.Payload(), block.size);
}

void KCBlockQueue::SendWaiting() noexcept {
    if (m_impl == nullptr)
        return;
    for (uint32_t target = 0; m_impl->numWaiting != 0 && target < m_impl->size.numTargets; ++target) {
        sWAITING& waiting = m_impl->waiting[target];
        if (!waiting.isWaiting)
            continue;
        if (!m_impl->Push(target, m_impl->waitingPayloads.At(target), waiting.bytes))
            return;
        waiting.isWaiting = false;
        --m_impl->numWaiting;
    }
}

size_t KCBlockQueue::GetNumWaiting() const noexcept { return m_impl == nullptr ? 0 : m_impl->numWaiting; }
uint64_t KCBlockQueue::GetNumReplaced() const noexcept { return m_impl == nullptr ? 0 : m_impl->numReplaced; }
uint64_t KCBlockQueue::GetNumRefused() const noexcept { return m_impl == nullptr ? 0 : m_impl->numRefused; }

void KCBlockQueue::Receive(KCPlugin& receiver) noexcept {
    if (m_impl == nullptr)
        return;
    // Counted first: a parameter side that sends without pause must not keep the audio side here.
    for (size_t left = m_impl->entries.read_available(); left != 0; --left)
        m_impl->entries.consume_one([&](const sENTRY& entry) {
            receiver.ReceiveBlock(entry.target, m_impl->payloads.At(entry.slot), entry.bytes);
        });
}

void KCBlockQueue::Clear() noexcept {
    if (m_impl == nullptr)
        return;
    m_impl->entries.consume_all([](const sENTRY&) {});
    for (sWAITING& waiting : m_impl->waiting)
        waiting.isWaiting = false;
    m_impl->numWaiting = 0;
}

} // namespace kvKorvoV12_9_0_320
