// Carries blocks from the parameter side to the audio side: wait-free, in order, and without losing what matters.
//
// The parameter side copies a block in and has it back at once; the audio side reads it where it lies. One thread
// at a time sends (the algorithm's lock sees to that) and one receives. When the queue is full, the newest block of
// each target waits in a slot of its own, made beforehand, and goes out with the next Send or SendWaiting that
// finds room. Per target the order is kept: while one waits, later blocks of its target replace it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include <korvolib/alg/process_memory.h>
#include <shells/plugin.h>

namespace kvKorvoV12_9_0_320 {

class KCBlockQueue {
  public:
    KCBlockQueue() noexcept;
    ~KCBlockQueue();
    KCBlockQueue(const KCBlockQueue&) = delete;
    KCBlockQueue& operator=(const KCBlockQueue&) = delete;

    /// [main] while nobody sends or receives. Room for size.numBlocks blocks and one waiting block a target.
    /// kErr_AllocationFailed leaves the queue as it was. Until the first Init every block is refused.
    [[nodiscard]] int32_t Init(const sPROCESS_MEMORY_SIZE& size) noexcept;

    /// [main] Copies one block. A block that is larger, or for another target, than Init was told is refused.
    void Send(const KPAPI_PROCESS_MEMORY::BUFFER_HEADER& block) noexcept;
    /// [main] Sends as many waiting blocks as there is room for.
    void SendWaiting() noexcept;

    size_t GetNumWaiting() const noexcept;    // [main] targets with a waiting block
    uint64_t GetNumReplaced() const noexcept; // [main] blocks that a newer one of their target made superfluous
    uint64_t GetNumRefused() const noexcept;  // [main]

    /// [audio] Hands over what has been sent before this call, oldest first.
    void Receive(KCPlugin& receiver) noexcept;

    /// [main] while nobody sends or receives. Drops all blocks.
    void Clear() noexcept;

  private:
    struct sImpl;
    std::unique_ptr<sImpl> m_impl;
};

} // namespace kvKorvoV12_9_0_320
