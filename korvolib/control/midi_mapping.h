// How one control hears its controller, where the plain way will not do: only a part of the travel, upside down,
// along a curve, and without a leap when a knob stands elsewhere than the parameter.
//
// The default mapping is the plain way, bit for bit. The range limits what the controller reaches, not what the
// parameter can be set to by other means.
//
// Thread: [any]; a take-over state belongs to one control and to the thread that drives it. Nothing allocates.
#pragma once

#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvMIDI {

/// What happens when the controller stands elsewhere than the control.
enum KEMidiTakeOver : int {
    kMidiTakeOver_Jump = 0,   ///< the control goes to the controller at once
    kMidiTakeOver_PickUp = 1, ///< the control waits until the controller reaches or passes it
};

/// Curves outside this range count as its nearest end.
inline constexpr double kSteepestCurve = 10.0, kFlattestCurve = 0.1;

/// A control's mapping. What is not a number counts as the default.
struct sMIDI_MAPPING {
    double low = 0.0;     ///< automation value (0 to 1000) at the controller's lower end; clamped
    double high = 1000.0; ///< at the upper end; below `low` turns the controller round; clamped
    /// Exponent of the way between them: 1 is straight, 2 is fine at the lower end, 0.5 at the upper.
    double curve = 1.0;
    KEMidiTakeOver takeOver = kMidiTakeOver_Jump;

    friend bool operator==(const sMIDI_MAPPING&, const sMIDI_MAPPING&) = default;
};

/// The automation value (0 to 1000) that a controller standing at `value` (0 to 1000) asks for:
/// low + (high − low) × (value / 1000)^curve, exactly low and high at the ends. `value` itself where range and
/// curve are the default; not-a-number stays what it is.
KORVO_API double ApplyMidiMapping(const sMIDI_MAPPING& mapping, double value) noexcept;

/// The state that data 2 names among `numStates`: StateAtPosition where range and curve are the default, otherwise
/// the state nearest to the mapped place. kMidiValue_None where there are no states.
KORVO_API int MappedStateAtPosition(const sMIDI_MAPPING& mapping, uint8_t data2, int numStates) noexcept;

/// What a pick-up remembers between two events. A new one has picked nothing up.
class KCMidiTakeOverState {
  public:
    /// What the control holds after an event has driven it, read back: limits and steps may have changed it. As
    /// long as the control stays exactly there, its controller keeps it.
    void NoteDriven(double controlValue) noexcept {
        m_drivenTo = controlValue;
        m_isHeld = true;
    }
    /// The controller has to pick the control up again, as after it was attached anew.
    void Reset() noexcept { *this = KCMidiTakeOverState(); }

  private:
    friend KORVO_API bool ShouldTakeOver(const sMIDI_MAPPING& mapping, KCMidiTakeOverState& state,
                                         double currentControlValue, double incomingValue) noexcept;
    double m_drivenTo = 0.0;
    double m_lastIncoming = 0.0;
    bool m_isHeld = false;
    bool m_hasLastIncoming = false;
};

/// Whether the event may drive the control. Both values on the automation scale, the incoming one mapped already.
/// Who drives tells the state afterwards (NoteDriven). Under kMidiTakeOver_PickUp an event may drive a control that
/// - still stands where the last event put it,
/// - stands within one step of a seven-bit controller (1000/127) of the incoming value, or
/// - was passed on the way from the incoming value before.
/// A control that something else has moved must be picked up again. An incoming not-a-number never drives.
KORVO_API bool ShouldTakeOver(const sMIDI_MAPPING& mapping, KCMidiTakeOverState& state, double currentControlValue,
                              double incomingValue) noexcept;

} // namespace kvKorvoV12_9_0_320::kvMIDI
