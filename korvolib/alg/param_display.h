// How a plug-in shows a parameter's value in words of its own, and reads those words back. Two plain functions and
// a reference value, copied with the record: no allocation, nothing owned.
#pragma once

#include <korvolib/export.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KCParam_Base;

class DisplayFunctionProxy {
  public:
    /// Writes the text of `realWorld` to `out`, which comes empty.
    using DisplayFunction = void (*)(const KCParam_Base& param, double realWorld, KCFixedStringBase& out,
                                     void* refcon);
    /// Reads a text of its own: true and the value, or false for a text it does not know (the value stays), which
    /// is then read as a number. A display function that writes words brings one.
    using InverseDisplayFunction = bool (*)(const KCParam_Base& param, const KCFixedStringBase& text,
                                            double& realWorld, void* refcon);

    constexpr DisplayFunctionProxy() noexcept = default;
    constexpr DisplayFunctionProxy(DisplayFunction display, InverseDisplayFunction inverse = nullptr,
                                   void* refcon = nullptr) noexcept
        : m_display(display), m_inverse(inverse), m_refcon(refcon) {}

    constexpr bool HasDisplay() const noexcept { return m_display != nullptr; }
    constexpr bool HasInverse() const noexcept { return m_inverse != nullptr; }

    /// Asks the display function. False without one; `out` is then left alone.
    bool Show(const KCParam_Base& param, double realWorld, KCFixedStringBase& out) const {
        if (m_display == nullptr)
            return false;
        out.clear();
        m_display(param, realWorld, out, m_refcon);
        return true;
    }

    /// Asks the inverse. False without one, or for a text it does not know.
    bool Read(const KCParam_Base& param, const KCFixedStringBase& text, double& realWorld) const {
        return m_inverse != nullptr && m_inverse(param, text, realWorld, m_refcon);
    }

  private:
    DisplayFunction m_display = nullptr;
    InverseDisplayFunction m_inverse = nullptr;
    void* m_refcon = nullptr;
};

} // namespace kvKorvoV12_9_0_320
