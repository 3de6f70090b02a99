// PluginViewManager::KCEventData: what a view tells a window of a pointer, a wheel, a finger or a key. A plain
// value: tests and hosts without a display fill it themselves.
//
// Lengths are pixels of the window's own drawing, from its top left corner, y downwards; only the deltas handed to
// MouseDrag and its like count upwards (the window turns the sign once, where the event enters). Thread: [main].
#pragma once

#include <cmath>
#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/utilities/geometry.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

/// The keys that change what a gesture means. Primary is Control (Command where that is the custom), Secondary the
/// right mouse button or its key.
enum class KEModifier : uint32_t { Primary = 0, Secondary = 1, Shift = 2, Alt = 3 };
inline constexpr size_t kNumModifiers = 4;

/// A set of modifiers. Sets match by equality: a registration for Shift does not answer to Shift and Alt.
class KUModifiers {
  public:
    constexpr KUModifiers() noexcept = default;
    constexpr KUModifiers(KEModifier only) noexcept : m_bits(Bit(only)) {}

    constexpr bool Has(KEModifier modifier) const noexcept { return (m_bits & Bit(modifier)) != 0; }
    constexpr void Set(KEModifier modifier, bool isDown) noexcept {
        m_bits = static_cast<uint8_t>(isDown ? m_bits | Bit(modifier) : m_bits & ~Bit(modifier));
    }
    constexpr bool IsEmpty() const noexcept { return m_bits == 0; }
    friend constexpr bool operator==(const KUModifiers&, const KUModifiers&) noexcept = default;

  private:
    static constexpr uint8_t Bit(KEModifier modifier) noexcept {
        return static_cast<uint8_t>((1u << static_cast<uint32_t>(modifier)) & 0xFu);
    }
    uint8_t m_bits = 0;
};

namespace PluginViewManager {

enum class KEEventType : uint32_t {
    None,
    MouseOver, // moved without a button; MouseOut: has left the window or the control
    MouseOut,
    MouseDown,
    MouseDrag,
    MouseUp,
    MouseCancel, // the pointer was lost: another window took it, or this one closes
    MouseWheel,
    TouchDown,
    TouchDrag,
    TouchUp,
    TouchCancel,
    TouchLongDown,
    TouchPinch,
    Key
};

/// Keys that have no character. A key with one is its Unicode code point.
enum KEKeyCode : uint32_t {
    kKey_None = 0,
    kKey_Backspace = 0x08,
    kKey_Tab = 0x09,
    kKey_Enter = 0x0D,
    kKey_Escape = 0x1B,
    kKey_Space = 0x20,
    kKey_Delete = 0x7F,
    kKey_Left = 0x110000, // beyond every code point
    kKey_Right,
    kKey_Up,
    kKey_Down,
    kKey_PageUp,
    kKey_PageDown,
    kKey_Home,
    kKey_End
};

class KCEventData {
  public:
    KEEventType type = KEEventType::None;
    KUPoint<double> position;  // now
    KUPoint<double> dragStart; // where the button or finger went down
    KUModifiers modifiers;     // down now
    int32_t numClicks = 1;     // 2 for the second press of a double click
    uint32_t key = kKey_None;  // a KEKeyCode or a code point
    int64_t touchID = 0;       // which finger
    double pinchScale = 1.0;   // distance of two fingers, as a factor of the one before
    double timeSeconds = 0.0;  // of a clock of the view's choice; hover delays count on it

    KUModifiers GetAllKeyModifiers() const noexcept { return modifiers; }
    bool IsModifierDown(KEModifier modifier) const noexcept { return modifiers.Has(modifier); }
    bool IsDoubleClick() const noexcept { return numClicks >= 2; }
    /// How far the pointer is from where it went down, by axis, without sign.
    KUSize<double> GetMouseDistanceFromDragStart() const noexcept {
        return {std::fabs(position.x - dragStart.x), std::fabs(position.y - dragStart.y)};
    }
    /// A position, delta or time that is not a number: a window ignores the event.
    bool IsFinite() const noexcept {
        return std::isfinite(position.x) && std::isfinite(position.y) && std::isfinite(dragStart.x) &&
               std::isfinite(dragStart.y) && std::isfinite(pinchScale) && std::isfinite(timeSeconds);
    }
};

} // namespace PluginViewManager
} // namespace kvKorvoV12_9_0_320
