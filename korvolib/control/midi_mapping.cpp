#include <korvolib/control/midi_mapping.h>

#include <algorithm>
#include <cmath>

#include <korvolib/control/midi_value.h>

namespace kvKorvoV12_9_0_320::kvMIDI {
namespace {

constexpr double kFullTravel = 1000.0;

double Usable(double number, double least, double most, double byDefault) noexcept {
    return std::isnan(number) ? byDefault : std::clamp(number, least, most);
}

sMIDI_MAPPING Usable(const sMIDI_MAPPING& mapping) noexcept {
    const sMIDI_MAPPING byDefault;
    return {Usable(mapping.low, 0.0, kFullTravel, byDefault.low),
            Usable(mapping.high, 0.0, kFullTravel, byDefault.high),
            Usable(mapping.curve, kFlattestCurve, kSteepestCurve, byDefault.curve), mapping.takeOver};
}

bool IsPlain(const sMIDI_MAPPING& usable) noexcept {
    const sMIDI_MAPPING byDefault;
    return usable.low == byDefault.low && usable.high == byDefault.high && usable.curve == byDefault.curve;
}

double Mapped(const sMIDI_MAPPING& usable, double value) noexcept {
    const double place = std::clamp(value / kFullTravel, 0.0, 1.0);
    return std::lerp(usable.low, usable.high, usable.curve == 1.0 ? place : std::pow(place, usable.curve));
}

// Equal values count as passed.
bool LiesBetween(double value, double from, double to) noexcept {
    return std::min(from, to) <= value && value <= std::max(from, to);
}

} // namespace

double ApplyMidiMapping(const sMIDI_MAPPING& mapping, double value) noexcept {
    const sMIDI_MAPPING usable = Usable(mapping);
    return IsPlain(usable) || std::isnan(value) ? value : Mapped(usable, value);
}

int MappedStateAtPosition(const sMIDI_MAPPING& mapping, uint8_t data2, int numStates) noexcept {
    const sMIDI_MAPPING usable = Usable(mapping);
    if (numStates < 1 || IsPlain(usable))
        return StateAtPosition(data2, numStates);
    const double place = Mapped(usable, SevenBitValue(data2 & 0x7F)) / kFullTravel;
    return static_cast<int>(std::round((numStates - 1.0) * place));
}

bool ShouldTakeOver(const sMIDI_MAPPING& mapping, KCMidiTakeOverState& state, double currentControlValue,
                    double incomingValue) noexcept {
    if (std::isnan(incomingValue))
        return false;
    const bool isHeld = state.m_isHeld && currentControlValue == state.m_drivenTo;
    const bool isNear = std::fabs(incomingValue - currentControlValue) <= kAutomationPerDataStep;
    const bool isPassed =
        state.m_hasLastIncoming && LiesBetween(currentControlValue, state.m_lastIncoming, incomingValue);
    state.m_lastIncoming = incomingValue;
    state.m_hasLastIncoming = true;
    return mapping.takeOver != kMidiTakeOver_PickUp || isHeld || isNear || isPassed;
}

} // namespace kvKorvoV12_9_0_320::kvMIDI
