// Levels that the audio side reports and the display shows: one number per meter, the newest wins.
//
// Thread: Set is [audio] (wait-free), Get is [any]; making the meters is [main].
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCMeters {
  public:
    // Makes `count` meters, all at 0. 0 or kErr_AllocationFailed, which leaves the old ones.
    int32_t Init(size_t count) noexcept;
    size_t GetNumMeters() const noexcept { return m_count; }

    void Set(size_t index, float level) noexcept; // an unknown index is ignored
    float Get(size_t index) const noexcept;       // 0 for an unknown index

  private:
    std::unique_ptr<std::atomic<float>[]> m_levels;
    size_t m_count = 0;
};

} // namespace kvKorvoV12_9_0_320
