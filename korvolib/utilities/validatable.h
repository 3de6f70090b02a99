// The base of objects that hold a resource which may not have been there: a file that did not open, a path that
// could not be made. Such an object is constructed nevertheless, and says that it is not valid. No thread of its
// own.
#pragma once

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KUValidatable {
  public:
    virtual ~KUValidatable() = default;

    /// True while the object holds what it was made for.
    bool IsValid() const noexcept { return IsValidSelf(); }
    explicit operator bool() const noexcept { return IsValidSelf(); }

  protected:
    KUValidatable() noexcept = default;
    KUValidatable(const KUValidatable&) noexcept = default;
    KUValidatable& operator=(const KUValidatable&) noexcept = default;

    /// The derived class's answer to IsValid.
    virtual bool IsValidSelf() const noexcept = 0;
};

} // namespace kvKorvoV12_9_0_320
