#include <shells/plugin_runner.h>

#include <korvolib/utilities/error_codes.h>
#include <shells/flush_denormals.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <new>

namespace kvKorvoV12_9_0_320 {

namespace {

constexpr uint32_t kMaxChannels = 2;

bool IsInRange(const sPROCESS_SETUP& setup) {
    return std::isfinite(setup.sampleRateHz) && setup.sampleRateHz > 0.0 && setup.maxBlockFrames != 0 &&
           setup.numChannels >= 1 && setup.numChannels <= kMaxChannels;
}

// Infinities and what is not a number have all exponent bits set. Without a branch in the loop, so that it is done
// for many samples at once.
bool AreFinite(const float* samples, uint32_t count) {
    constexpr uint32_t kExponent = 0x7f800000;
    uint32_t numBad = 0;
    for (uint32_t i = 0; i < count; ++i)
        numBad += (std::bit_cast<uint32_t>(samples[i]) & kExponent) == kExponent ? 1u : 0u;
    return numBad == 0;
}

void Silence(const sAUDIO_BLOCK& block) {
    if (block.out == nullptr)
        return;
    for (uint32_t channel = 0; channel < block.numChannels; ++channel)
        if (block.out[channel] != nullptr)
            std::fill_n(block.out[channel], block.numFrames, 0.0f);
}

} // namespace

KCPluginRunner::KCPluginRunner(KCPlugin& plugin) noexcept : m_plugin(plugin) {}

KCPluginRunner::~KCPluginRunner() {
    if (m_isCreated)
        GetAlgorithm().SetHostCallback(nullptr, nullptr);
}

int32_t KCPluginRunner::Create() {
    if (m_isCreated)
        return m_createResult;
    m_isCreated = true;
    cALGORITHM& algorithm = GetAlgorithm();
    const KCAlgorithmLock lock(algorithm);
    m_createResult = algorithm.FinishCreate();
    if (m_createResult == kErr_NoErr)
        m_createResult = m_queue.Init(algorithm.GetProcessMemoryPool().GetSize());
    algorithm.SetHostCallback(&OnHostCallback, this);
    return m_createResult;
}

int32_t KCPluginRunner::Prepare(const sPROCESS_SETUP& setup) {
    const KCAlgorithmLock lock(GetAlgorithm());
    m_state = KEState::NotPrepared;
    if (!IsInRange(setup))
        return kErr_Generic;
    if (const int32_t result = Create(); result != kErr_NoErr)
        return result;
    try {
        m_cleaned.resize(size_t{setup.numChannels} * setup.maxBlockFrames);
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
    GetAlgorithm().SetSampleRate(setup.sampleRateHz);
    if (const int32_t result = m_plugin.Prepare(setup); result != kErr_NoErr)
        return result;
    m_setup = setup;
    SendEverything();
    m_plugin.Reset();
    m_state = KEState::Prepared;
    return kErr_NoErr;
}

void KCPluginRunner::Unprepare() noexcept {
    const KCAlgorithmLock lock(GetAlgorithm());
    m_state = KEState::NotPrepared;
}

void KCPluginRunner::SendEverything() {
    m_queue.Clear();
    m_state = KEState::Preparing;
    GetAlgorithm().InitAlg(true);
    BUFFER_HEADER* chain = GetAlgorithm().UpdateAlg();
    GetAlgorithm().ExecuteAndDisposeBuffer(chain);
}

void KCPluginRunner::Process(const sAUDIO_BLOCK& block) noexcept {
    if (!CanProcess(block)) {
        Silence(block);
        return;
    }
    const KCFlushDenormals flushDenormals;
    m_queue.Receive(m_plugin);
    for (uint32_t frame = 0; frame < block.numFrames;) {
        const uint32_t numFrames = std::min(block.numFrames - frame, m_setup.maxBlockFrames);
        ProcessPiece(block, frame, numFrames);
        frame += numFrames;
    }
}

bool KCPluginRunner::CanProcess(const sAUDIO_BLOCK& block) const noexcept {
    if (!IsPrepared() || block.numChannels != m_setup.numChannels)
        return false;
    if (block.numFrames == 0)
        return true;
    if (block.in == nullptr || block.out == nullptr)
        return false;
    for (uint32_t channel = 0; channel < block.numChannels; ++channel)
        if (block.in[channel] == nullptr || block.out[channel] == nullptr)
            return false;
    return true;
}

void KCPluginRunner::ProcessPiece(const sAUDIO_BLOCK& block, uint32_t firstFrame, uint32_t numFrames) noexcept {
    const float* in[kMaxChannels] = {};
    float* out[kMaxChannels] = {};
    for (uint32_t channel = 0; channel < block.numChannels; ++channel) {
        in[channel] = block.in[channel] + firstFrame;
        out[channel] = block.out[channel] + firstFrame;
    }
    ReplaceWhatIsNotFinite(in, numFrames);
    const sAUDIO_BLOCK piece{in, out, block.numChannels, numFrames};
    m_plugin.Process(piece);
    for (uint32_t channel = 0; channel < block.numChannels; ++channel) {
        if (AreFinite(out[channel], numFrames))
            continue;
        m_numRepaired.fetch_add(1, std::memory_order_relaxed);
        Silence(piece);
        m_plugin.Reset();
        return;
    }
}

// The host's input is not ours to change: a channel that needs repair is copied.
void KCPluginRunner::ReplaceWhatIsNotFinite(const float** in, uint32_t numFrames) noexcept {
    bool isRepaired = false;
    for (uint32_t channel = 0; channel < m_setup.numChannels; ++channel) {
        if (AreFinite(in[channel], numFrames))
            continue;
        float* const cleaned = m_cleaned.data() + size_t{channel} * m_setup.maxBlockFrames;
        std::transform(in[channel], in[channel] + numFrames, cleaned,
                       [](float sample) { return std::isfinite(sample) ? sample : 0.0f; });
        in[channel] = cleaned;
        isRepaired = true;
    }
    if (isRepaired)
        m_numRepaired.fetch_add(1, std::memory_order_relaxed);
}

void KCPluginRunner::Reset() noexcept {
    if (!IsPrepared())
        return;
    m_queue.Receive(m_plugin);
    m_plugin.Reset();
}

void KCPluginRunner::DoIdle() {
    const KCAlgorithmLock lock(GetAlgorithm());
    m_queue.SendWaiting();
    GetAlgorithm().DoIdle();
}

uint32_t KCPluginRunner::GetLatencyFrames() const noexcept {
    return IsPrepared() ? m_plugin.GetLatencyFrames() : 0;
}

bool KCPluginRunner::TakeLatencyChange(uint32_t& frames) noexcept {
    const uint32_t latency = GetLatencyFrames();
    if (latency == m_toldLatency)
        return false;
    m_toldLatency = latency;
    frames = latency;
    return true;
}

void KCPluginRunner::SetNextHostCallback(KTHostCallback callback, void* refcon) {
    const KCAlgorithmLock lock(GetAlgorithm());
    m_nextCallback = callback;
    m_nextRefcon = refcon;
}

intptr_t KCPluginRunner::OnHostCallback(int32_t selector, void* refcon, intptr_t a1, intptr_t a2, intptr_t a3,
                                        intptr_t a4) {
    auto& runner = *static_cast<KCPluginRunner*>(refcon);
    auto* chain = reinterpret_cast<BUFFER_HEADER*>(a1);
    switch (selector) {
    case kHostSelector_Execute:
    case kHostSelector_ExecuteInit:
        runner.Execute(chain);
        return 0;
    case kHostSelector_Dispose:
        KPAPI_PROCESS_MEMORY::GiveBackChain(chain);
        return 0;
    default:
        break;
    }
    return runner.m_nextCallback == nullptr ? 0
                                            : runner.m_nextCallback(selector, runner.m_nextRefcon, a1, a2, a3, a4);
}

void KCPluginRunner::Execute(const BUFFER_HEADER* chain) noexcept {
    const KEState state = m_state;
    for (const BUFFER_HEADER* block = chain; block != nullptr; block = block->next) {
        if (state == KEState::Prepared)
            m_queue.Send(*block);
        else if (state == KEState::Preparing)
            m_plugin.ReceiveBlock(block->target, block->Payload(), block->size);
    }
}

} // namespace kvKorvoV12_9_0_320
