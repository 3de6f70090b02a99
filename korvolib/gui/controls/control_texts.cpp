// What a control shows of its registration, and where its label and value go.

#include <korvolib/gui/controls/draw_shapes_internal.h>

#include <algorithm>

namespace kvKorvoV12_9_0_320 {

namespace {

bool IsBound(const KCParamRegistrationData* registration) noexcept {
    return registration != nullptr && registration->IsBound();
}

// A word ("Off", "RMS 10 ms", "-Inf") says all itself.
bool IsNumber(const KCFixedStringBase& text) noexcept {
    return text.find_first_of("0123456789") != KCFixedStringBase::npos &&
           text.find_first_not_of("0123456789+-.") == KCFixedStringBase::npos;
}

bool IsLetter(char c) noexcept { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

} // namespace

double FractionOf(const KCParamRegistrationData* registration) noexcept {
    if (!IsBound(registration))
        return 0.0;
    const double last = registration->GetLastState();
    const double state = registration->GetAlgorithm()->GetParamState(registration->GetParamIndex());
    return last > 0.0 && state > 0.0 ? std::min(state / last, 1.0) : 0.0;
}

double OriginOf(const KCParamRegistrationData* registration) {
    if (!IsBound(registration))
        return 0.0;
    if (registration->GetRole() == "Bipolar")
        return 0.5;
    const cALGORITHM& algorithm = *registration->GetAlgorithm();
    const sCONTROL_PARAM* const param = algorithm.GetParam(registration->GetParamIndex());
    return param->IsSymmetricUpTo(registration->GetLastState()) ? 0.5 : 0.0;
}

void LabelText(const KCParamRegistrationData* registration, KCFixedStringBase& text) {
    text.clear();
    if (!IsBound(registration))
        return;
    registration->UpdateLabel(text);
    if (text.empty())
        text = registration->GetRegisteredParamName();
}

void ValueText(const KCParamRegistrationData* registration, KCFixedStringBase& text) {
    text.clear();
    if (!IsBound(registration))
        return;
    registration->UpdateValue(text);
    KCFixedString<31> units;
    registration->UpdateUnits(units);
    AppendUnits(text, units);
}

void AppendUnits(KCFixedStringBase& text, const KCFixedStringBase& units) {
    if (units.empty() || !IsNumber(text))
        return;
    if (IsLetter(units[0]))
        text << ' ';
    text << units;
}

sLABELLED_LAYOUT LabelledLayout(const KCGUIControl& control, double minShape) noexcept {
    const KCTheme& theme = control.GetTheme();
    const KCParamRegistrationData* const lead = control.GetParamData(0);
    const KURect<double> bounds = control.GetBounds();
    if (!IsBound(lead))
        return {{}, bounds, {}};
    const double labelLine = lead->GetLabelWin().IsShown() ? 0.0 : LineHeight(theme.labelHeight);
    const double valueLine = lead->GetValueWin().IsShown() ? 0.0 : LineHeight(theme.valueHeight);
    double top = bounds.top, bottom = bounds.bottom;
    if (valueLine > 0.0 && bottom - top >= minShape + valueLine)
        bottom -= valueLine;
    if (labelLine > 0.0 && bottom - top >= minShape + labelLine)
        top += labelLine;
    const auto part = [&](double from, double to) {
        return KURect<double>::FromEdges(bounds.left, from, bounds.right, to);
    };
    return {part(bounds.top, top), part(top, bottom), part(bottom, bounds.bottom)};
}

void DrawLabelled(KCShapes& shapes, const KCCaptionedControl& control, const sLABELLED_LAYOUT& layout) {
    const KCParamRegistrationData* const lead = control.GetParamData(0);
    KCFixedString<127> text;
    if (!layout.label.IsEmpty()) {
        control.GetCaption(text);
        shapes.Label(text, layout.label);
    }
    if (!layout.value.IsEmpty()) {
        ValueText(lead, text);
        shapes.Value(text, layout.value);
    }
}

} // namespace kvKorvoV12_9_0_320
