#include <korvolib/gui/controls/button.h>

#include <korvolib/gui/controls/draw_shapes_internal.h>

#include <cmath>

namespace kvKorvoV12_9_0_320 {

std::unique_ptr<KCBaseControl> KCButton::Clone() const { return CloneControl(*this); }

std::span<const ERegisterType> KCButton::GetDefaultGestures() const {
    static constexpr ERegisterType kGestures[] = {kRegister_NextOnPress, kRegister_Wheel, kRegister_Keys};
    return kGestures;
}

bool KCButton::IsLit() const {
    const KCParamRegistrationData* const lead = GetParamData(0);
    if (lead == nullptr || !lead->IsBound())
        return false;
    const double state = lead->GetAlgorithm()->GetParamState(lead->GetParamIndex());
    if (!lead->IsRegisteredToType(kRegister_SetOnPress))
        return state > 0.0;
    // The states of a discrete parameter are multiples of a step that need not be exact.
    return std::fabs(state - lead->GetFixedState()) < 0.5;
}

void KCButton::GetDrawInstructionsControlBackground(Writer& writer) const {
    KCShapes shapes(writer, *this);
    const KCTheme& theme = shapes.Theme();
    const bool isLit = IsLit();
    if (!shapes.Picture(m_images, isLit ? m_images.numImages - 1 : 0)) {
        const Rect face = GetBounds();
        shapes.Rounded(face, theme.cornerRadius, isLit ? theme.accent : shapes.Body());
        shapes.RoundedFrame(face, theme.cornerRadius, 1.0, isLit ? theme.accent : theme.bodyLight);
    }
    if (GetParamData(0) != nullptr && GetParamData(0)->GetLabelWin().IsShown())
        return;
    KCFixedString<127> text;
    GetCaption(text);
    shapes.Text(text, GetBounds().Inset(4.0, 1.0), theme.labelHeight, isLit ? theme.track : theme.text,
                KETextAlign::Centre, isLit);
}

} // namespace kvKorvoV12_9_0_320
