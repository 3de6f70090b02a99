// Where an algorithm reports what it is doing while it lives ("alg state" = "created"). The library brings no
// reporter of its own; a shell that has one hands it over before FinishCreate.
#pragma once

#include <cstdint>

#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

// Thread: [main]. Nothing here may throw.
class KCRuntimeReporter {
  public:
    virtual ~KCRuntimeReporter() = default;
    virtual void Start() noexcept = 0;          // called once, first thing in FinishCreate
    virtual bool IsActive() const noexcept = 0; // details are reported only while it is
    virtual void ReportRuntimeDetail(const char* key, const char* value) noexcept = 0;
};

} // namespace kvKorvoV12_9_0_320
