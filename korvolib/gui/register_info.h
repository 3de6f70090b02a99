// KCRegisterInfo: on which gesture and with which modifier keys a registration fires, and what it carries when it
// is dragged onto another control. A plain value.
#pragma once

#include <bitset>
#include <cstddef>

#include <korvolib/export.h>
#include <korvolib/gui/event_data.h>
#include <korvolib/gui/register_type.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCRegisterInfo {
  public:
    /// Highlights only: the one flag of type 0.
    KCRegisterInfo() noexcept { SetType(kRegister_Highlight); }
    explicit KCRegisterInfo(ERegisterType type) noexcept { SetType(type); }
    KCRegisterInfo(ERegisterType type, KUModifiers modifiers) noexcept : m_modifiers(modifiers) { SetType(type); }

    /// Back to a highlight-only registration without modifiers and values.
    void Clear() noexcept;

    ERegisterType GetType() const noexcept { return m_type; }
    /// Also sets the flag of that type; out of range counts as kRegister_Highlight.
    void SetType(ERegisterType type) noexcept;
    /// Out of range: false, and nothing set.
    bool GetFlag(ERegisterType type) const noexcept {
        return type >= 0 && type < kNumRegisterTypes && m_flags[static_cast<size_t>(type)];
    }
    void SetFlag(ERegisterType type, bool isOn) noexcept;

    KUModifiers GetModifiers() const noexcept { return m_modifiers; }
    void SetModifiers(KUModifiers modifiers) noexcept { m_modifiers = modifiers; }

    /// The same gestures: the type and every flag.
    bool CompareRegisterTypes(const KCRegisterInfo& other) const noexcept;
    /// The same modifier set, by equality.
    bool CompareParamModifiers(const KCRegisterInfo& other) const noexcept {
        return m_modifiers == other.m_modifiers;
    }
    bool CompareParamModifiers(KUModifiers modifiers) const noexcept { return m_modifiers == modifiers; }

    /// States that a drag carries away and that a drop brings; negative and not-a-number: the parameter's own
    /// state.
    void GetDragDropValues(double& drag, double& drop) const noexcept;
    void SetDragDropValues(double drag, double drop) noexcept;

    friend bool operator==(const KCRegisterInfo&, const KCRegisterInfo&) noexcept = default;

  private:
    static constexpr double kOwnState = -1.0;
    ERegisterType m_type = kRegister_Highlight;
    std::bitset<kNumRegisterTypes> m_flags;
    KUModifiers m_modifiers;
    double m_drag = kOwnState;
    double m_drop = kOwnState;
};

} // namespace kvKorvoV12_9_0_320
