#include <korvolib/gui/controls/label.h>

#include <korvolib/gui/controls/draw_shapes_internal.h>

namespace kvKorvoV12_9_0_320 {

std::unique_ptr<KCBaseControl> KCLabel::Clone() const { return CloneControl(*this); }

std::span<const ERegisterType> KCLabel::GetDefaultGestures() const {
    static constexpr ERegisterType kGestures[] = {kRegister_Display};
    return kGestures;
}

void KCLabel::GetDrawInstructionsControlBackground(Writer& writer) const {
    KCShapes shapes(writer, *this);
    const KCParamRegistrationData* const lead = GetParamData(0);
    KCFixedString<127> text;
    if (GetText().empty() && lead != nullptr && lead->GetRole() == "Value")
        ValueText(lead, text);
    else
        GetCaption(text);
    shapes.Label(text, GetBounds());
}

} // namespace kvKorvoV12_9_0_320
