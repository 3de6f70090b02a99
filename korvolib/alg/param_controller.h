// What a parameter knows of those who are bound to it: automation controls, MIDI controls and the registrations of
// a window implement this, so that a parameter record never sees a control.
#pragma once

#include <cstddef>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCParamController {
  public:
    virtual ~KCParamController() = default;

    /// The parameter's state or value changed. Called with the algorithm's lock held; may read the algorithm and
    /// may bind or unbind itself and others. Must not throw and should not allocate: it is part of every update.
    virtual void OnParamChanged(size_t paramIndex) noexcept = 0;

  protected:
    KCParamController() = default;
    KCParamController(const KCParamController&) = default;
    KCParamController& operator=(const KCParamController&) = default;
};

} // namespace kvKorvoV12_9_0_320
