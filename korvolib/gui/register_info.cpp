#include <korvolib/gui/register_info.h>

namespace kvKorvoV12_9_0_320 {
namespace {

bool IsRegisterType(ERegisterType type) noexcept { return type >= 0 && type < kNumRegisterTypes; }

} // namespace

void KCRegisterInfo::Clear() noexcept { *this = KCRegisterInfo(); }

void KCRegisterInfo::SetType(ERegisterType type) noexcept {
    m_type = IsRegisterType(type) ? type : kRegister_Highlight;
    SetFlag(m_type, true);
}

void KCRegisterInfo::SetFlag(ERegisterType type, bool isOn) noexcept {
    if (IsRegisterType(type))
        m_flags[static_cast<size_t>(type)] = isOn;
}

bool KCRegisterInfo::CompareRegisterTypes(const KCRegisterInfo& other) const noexcept {
    return m_type == other.m_type && m_flags == other.m_flags;
}

void KCRegisterInfo::GetDragDropValues(double& drag, double& drop) const noexcept {
    drag = m_drag;
    drop = m_drop;
}

// Negative, and whatever is no number, means the same: the parameter's own state.
void KCRegisterInfo::SetDragDropValues(double drag, double drop) noexcept {
    m_drag = drag >= 0.0 ? drag : kOwnState;
    m_drop = drop >= 0.0 ? drop : kOwnState;
}

} // namespace kvKorvoV12_9_0_320
