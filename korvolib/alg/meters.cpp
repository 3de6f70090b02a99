#include <korvolib/alg/meters.h>

#include <korvolib/utilities/error_codes.h>

#include <new>

namespace kvKorvoV12_9_0_320 {

int32_t KCMeters::Init(size_t count) noexcept {
    std::unique_ptr<std::atomic<float>[]> levels;
    if (count != 0) {
        if (count > SIZE_MAX / sizeof(std::atomic<float>))
            return kErr_AllocationFailed;
        levels.reset(new (std::nothrow) std::atomic<float>[count]);
        if (levels == nullptr)
            return kErr_AllocationFailed;
    }
    m_levels = std::move(levels);
    m_count = count;
    return kErr_NoErr;
}

void KCMeters::Set(size_t index, float level) noexcept {
    if (index < m_count)
        m_levels[index].store(level, std::memory_order_relaxed);
}

float KCMeters::Get(size_t index) const noexcept {
    return index < m_count ? m_levels[index].load(std::memory_order_relaxed) : 0.0f;
}

} // namespace kvKorvoV12_9_0_320
