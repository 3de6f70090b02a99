// The blocks that the registrations of a control make during one event. A hook may throw between two of them: those
// made so far go back to their pool then, and a whole update is asked for in their place.
#pragma once

#include <utility>

#include <korvolib/alg/algorithm.h>

namespace kvKorvoV12_9_0_320 {

class KCEventChain {
  public:
    using BUFFER_HEADER = cALGORITHM::BUFFER_HEADER;

    /// The algorithm may be null where nothing is registered.
    explicit KCEventChain(cALGORITHM* algorithm) noexcept : m_algorithm(algorithm) {}
    ~KCEventChain() {
        if (m_first == nullptr)
            return;
        KPAPI_PROCESS_MEMORY::GiveBackChain(m_first);
        if (m_algorithm != nullptr)
            m_algorithm->SetUpdateAlgRequired();
    }
    KCEventChain(const KCEventChain&) = delete;
    KCEventChain& operator=(const KCEventChain&) = delete;

    void Append(BUFFER_HEADER* blocks) noexcept { m_first = KPAPI_PROCESS_MEMORY::ChainBufs(m_first, blocks); }
    BUFFER_HEADER* Take() noexcept { return std::exchange(m_first, nullptr); }

  private:
    cALGORITHM* m_algorithm;
    BUFFER_HEADER* m_first = nullptr;
};

} // namespace kvKorvoV12_9_0_320
