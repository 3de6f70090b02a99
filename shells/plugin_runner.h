// What every host puts between itself and a plug-in: carries parameter changes to the audio side, and keeps the
// promises that plugin.h makes to the plug-in whatever the host does.
//
//   1. Create completes the algorithm; parameters can be read and moved from then on.
//   2. Prepare makes processing possible; it may be repeated with another setup while nothing processes.
//   3. Beside each other: parameters are moved under the algorithm's lock, one thread calls Process, someone calls
//      DoIdle now and then (an offline host before each block).
//
// Process takes no lock, allocates nothing and makes no system call of its own.
#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

#include <korvolib/alg/algorithm.h>
#include <shells/block_queue.h>
#include <shells/plugin.h>

namespace kvKorvoV12_9_0_320 {

class KCPluginRunner {
  public:
    /// The plug-in is not owned and outlives the runner. One runner a plug-in: it is the algorithm's host callback.
    explicit KCPluginRunner(KCPlugin& plugin) noexcept;
    ~KCPluginRunner();
    KCPluginRunner(const KCPluginRunner&) = delete;
    KCPluginRunner& operator=(const KCPluginRunner&) = delete;

    /// [main] Completes the algorithm (FinishCreate) and makes the queue. 0 or the first error; later calls do
    /// nothing and give the same result.
    [[nodiscard]] int32_t Create();

    /// [main] while nothing processes. Creates first where that has not been done. The plug-in is prepared, has
    /// received everything as the parameters stand, and is reset. 0 or an error (kErr_Generic for a setup that is
    /// out of range), after which the runner is not prepared.
    [[nodiscard]] int32_t Prepare(const sPROCESS_SETUP& setup);

    /// [main] while nothing processes. Process gives silence from here on.
    void Unprepare() noexcept;
    bool IsPrepared() const noexcept {
        return m_state.load(std::memory_order_acquire) == KEState::Prepared;
    } // [any]

    /// [audio] The blocks that have been sent, then the audio; more frames than were prepared are processed in
    /// pieces. Silence for a runner that is not prepared, a number of channels that was not prepared, and null
    /// buffers. A sample that is not finite goes in as 0; a piece that does not come out finite is silenced and
    /// the plug-in reset.
    void Process(const sAUDIO_BLOCK& block) noexcept;

    /// [audio], or [main] while nothing processes: at a jump of the transport.
    void Reset() noexcept;

    /// [main] Sends what waits for room in the queue and does the algorithm's idle work.
    void DoIdle();

    /// [any] 0 while not prepared.
    uint32_t GetLatencyFrames() const noexcept;
    /// [main] True, with the new latency in `frames`, when it is not what was told last (0 at first). A host asks
    /// after Prepare and in its idle time.
    bool TakeLatencyChange(uint32_t& frames) noexcept;

    /// [main] Who hears of the selectors that are not about blocks; null for nobody.
    void SetNextHostCallback(KTHostCallback callback, void* refcon);

    KCPlugin& GetPlugin() const noexcept { return m_plugin; }
    cALGORITHM& GetAlgorithm() const noexcept { return m_plugin.GetAlgorithm(); }
    const sPROCESS_SETUP& GetSetup() const noexcept { return m_setup; }
    const KCBlockQueue& GetQueue() const noexcept { return m_queue; }
    /// [any] Pieces of audio that went in or came out with samples that were not finite.
    uint64_t GetNumRepairedPieces() const noexcept { return m_numRepaired.load(std::memory_order_relaxed); }

  private:
    enum class KEState {
        NotPrepared, // blocks are dropped: Prepare sends everything anew
        Preparing,   // nothing processes: blocks go straight to the plug-in
        Prepared     // blocks go through the queue
    };
    using BUFFER_HEADER = KPAPI_PROCESS_MEMORY::BUFFER_HEADER;

    static intptr_t OnHostCallback(int32_t selector, void* refcon, intptr_t a1, intptr_t a2, intptr_t a3,
                                   intptr_t a4);
    void Execute(const BUFFER_HEADER* chain) noexcept;
    bool CanProcess(const sAUDIO_BLOCK& block) const noexcept;
    void ProcessPiece(const sAUDIO_BLOCK& block, uint32_t firstFrame, uint32_t numFrames) noexcept;
    void ReplaceWhatIsNotFinite(const float** in, uint32_t numFrames) noexcept;
    void SendEverything();

    KCPlugin& m_plugin;
    KCBlockQueue m_queue;
    sPROCESS_SETUP m_setup;
    std::atomic<KEState> m_state{KEState::NotPrepared};
    bool m_isCreated = false;
    int32_t m_createResult = 0;
    uint32_t m_toldLatency = 0;
    std::vector<float> m_cleaned; // input of one piece, all channels, where it had to be repaired
    std::atomic<uint64_t> m_numRepaired{0};
    KTHostCallback m_nextCallback = nullptr;
    void* m_nextRefcon = nullptr;
};

} // namespace kvKorvoV12_9_0_320
