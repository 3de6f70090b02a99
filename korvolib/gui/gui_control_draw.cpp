// Draw instructions: what every control shows of its description and its registrations. A concrete control adds
// its own shape in GetDrawInstructionsControlBackground or GetDrawInstructionsParamsData.
#include <korvolib/gui/gui_control.h>

#include <algorithm>
#include <cmath>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/graphicstream/converters.h>
#include <korvolib/graphicstream/struct_writers.h>
#include <korvolib/gui/theme.h>

namespace kvKorvoV12_9_0_320 {

namespace {

KURect<int> RoundedOutwards(const KURect<double>& rect) {
    return KURect<int>::FromEdges(
        KUConvertCoordinate<int>(std::floor(rect.left)), KUConvertCoordinate<int>(std::floor(rect.top)),
        KUConvertCoordinate<int>(std::ceil(rect.right)), KUConvertCoordinate<int>(std::ceil(rect.bottom)));
}

uint32_t HorizontalOf(KETextAlign align) {
    switch (align) {
    case KETextAlign::Left:
        return kvGS::kLeft;
    case KETextAlign::Right:
        return kvGS::kRight;
    case KETextAlign::Centre:
        break;
    }
    return kvGS::kHCenter;
}

// Which of the pictures stands for a state: picture k for state k where there are as many, otherwise equal parts of
// the travel.
int32_t ImageOfState(const KCParamRegistrationData& param, int32_t numImages) {
    const double last = param.GetLastState();
    if (numImages < 2 || !(last > 0.0) || !param.IsBound())
        return 0;
    const double share = std::clamp(param.GetAlgorithm()->GetParamState(param.GetParamIndex()) / last, 0.0, 1.0);
    const bool isOnePerState = param.IsActiveControllerParameterDiscrete() && param.GetNumStates() == numImages;
    const double image = isOnePerState ? std::round(share * (numImages - 1)) : std::floor(share * numImages);
    return std::min(static_cast<int32_t>(image), numImages - 1);
}

} // namespace

kvGS::SGSRGBAColor KCGUIControl::GetInk(KUColor color) const {
    if (m_disableMode == KEDisableMode::Dim && IsDisabled())
        color = color.WithOpacity(color.GetOpacity() * GetTheme().disabledOpacity);
    return kvGS::KCRGBAColorToSGSRGBAColor(color);
}

void KCGUIControl::Draw(Writer& writer) const {
    if (!IsVisible())
        return;
    kvGS::KCStGSFrameStructWriter frame(writer, RoundedOutwards(GetBounds()));
    GetDrawInstructionsBkgColor(writer);
    GetDrawInstructionsForStaticTextBackground(writer);
    GetDrawInstructionsControlBackground(writer);
    GetDrawInstructionsParamsData(writer);
    GetDrawInstructionsSelectionBitmap(writer);
    GetDrawInstructionsDefaultSelectionLevel(writer);
}

void KCGUIControl::GetDrawInstructionsBkgColor(Writer& writer) const {
    if (!m_hasColor)
        return;
    const Rect rect = m_hasColorRect ? ToWindow(m_colorRect) : GetBounds();
    if (!rect.IsEmpty())
        writer.DrawSolidRect(GetInk(m_color), rect.ConvertTo<float>());
}

void KCGUIControl::GetDrawInstructionsForStaticTextBackground(Writer&) const {}

// The control's pictures show the lead registration; a single one is a still.
void KCGUIControl::GetDrawInstructionsControlBackground(Writer& writer) const {
    const KCParamRegistrationData* const lead = GetParamData(m_leadPosition);
    DrawImageOf(writer, m_images, lead == nullptr ? 0 : ImageOfState(*lead, m_images.numImages));
}

void KCGUIControl::DrawImageOf(Writer& writer, const sBITMAP_WIN& images, int32_t image) const {
    if (images.resID == 0 || images.numImages <= 0)
        return;
    const Rect rect = images.rect.IsEmpty() ? GetBounds() : ToWindow(images.rect);
    if (!rect.IsEmpty())
        writer.DrawPNGScaled(kvGS::KCGSImage(images.resID + std::clamp(image, 0, images.numImages - 1)),
                             kvGS::ToSGSRect(rect));
}

void KCGUIControl::GetDrawInstructionsParamsData(Writer& writer) const {
    for (size_t i = 0; i < m_params.size(); ++i) {
        const KCParamRegistrationData& param = m_params[i]; // most show none of these
        if (param.GetBitmapWin().IsShown())
            GetDrawInstructionsParamBitmapWindow(writer, i);
        if (param.GetGraphWin().IsShown())
            GetDrawInstructionsParamGraphWindow(writer, i);
        if (param.GetValueWin().IsShown())
            GetDrawInstructionsParamValueWindow(writer, i);
        if (param.GetUnitsWin().IsShown())
            GetDrawInstructionsParamUnitsWindow(writer, i);
        if (param.GetLabelWin().IsShown())
            GetDrawInstructionsParamLabelWindow(writer, i);
    }
}

void KCGUIControl::GetDrawInstructionsParamBitmapWindow(Writer& writer, size_t registration) const {
    if (registration >= m_params.size() || !m_params[registration].GetBitmapWin().IsShown())
        return;
    const int32_t resID = m_params[registration].GetParamCurrentImageResID();
    if (resID != 0)
        writer.DrawPNGScaled(kvGS::KCGSImage(resID), kvGS::ToSGSRect(GetImageRect(registration)));
}

void KCGUIControl::DrawTextWin(Writer& writer, const sTEXT_WIN& win, const KCFixedStringBase& text, double height,
                               KUColor color) const {
    if (!win.IsShown() || text.empty())
        return;
    const double em = win.height > 0.0 ? win.height : height;
    writer.Font(GetTheme().fontFamily, KUConvertCoordinate<float>(em), win.isBold ? kvGS::kBold : kvGS::kPlain)
        .SetDrawColor(GetInk(win.hasColor ? win.color : color))
        .DrawTheText(text, kvGS::ToSGSRect(ToWindow(win.rect)), HorizontalOf(win.align));
}

void KCGUIControl::GetDrawInstructionsParamValueWindow(Writer& writer, size_t registration) const {
    if (registration >= m_params.size() || !m_params[registration].GetValueWin().IsShown())
        return;
    KCFixedString<255> text;
    GetValueWinText(registration, text);
    DrawTextWin(writer, m_params[registration].GetValueWin(), text, GetTheme().valueHeight, GetTheme().text);
}

void KCGUIControl::GetDrawInstructionsParamUnitsWindow(Writer& writer, size_t registration) const {
    if (registration >= m_params.size() || !m_params[registration].GetUnitsWin().IsShown())
        return;
    KCFixedString<255> text;
    m_params[registration].UpdateUnits(text);
    DrawTextWin(writer, m_params[registration].GetUnitsWin(), text, GetTheme().valueHeight, GetTheme().textDim);
}

void KCGUIControl::GetDrawInstructionsParamLabelWindow(Writer& writer, size_t registration) const {
    if (registration >= m_params.size() || !m_params[registration].GetLabelWin().IsShown())
        return;
    KCFixedString<255> text;
    m_params[registration].UpdateLabel(text);
    DrawTextWin(writer, m_params[registration].GetLabelWin(), text, GetTheme().labelHeight, GetTheme().textDim);
}

void KCGUIControl::GetDrawInstructionsParamGraphWindow(Writer& writer, size_t registration) const {
    if (registration >= m_params.size() || !m_params[registration].GetGraphWin().IsShown() ||
        m_params[registration].GetNumGraphPoints() < 2)
        return;
    const sGRAPH_WIN& win = m_params[registration].GetGraphWin();
    const Rect rect = ToWindow(win.rect);
    kvGS::KCStGSFrameStructWriter frame(writer, RoundedOutwards(rect)); // ends the clip with it
    writer.ClipRect(kvGS::ToSGSRect(rect));
    kvGS::KCGSArrays& arrays = writer.GetGSArrays();
    arrays.ClearArrays();
    KUPoint<float> point;
    const size_t numPoints = m_params[registration].GetNumGraphPoints();
    for (size_t i = 0; i < numPoints; ++i)
        if (m_params[registration].GetGraphPoint(i, rect, point))
            (void)arrays.AddPoint_2Df(point.x, point.y);
    writer.SetDrawColor(GetInk(win.hasColor ? win.color : GetTheme().accent))
        .SetStrokeWidth(KUConvertCoordinate<float>(win.strokeWidth))
        .DrawVertices(kvGS::kLineStrip, kvGS::kWire);
    arrays.ClearArrays();
}

int32_t KCGUIControl::GetGraphDataAsGraphicStream(Writer& writer, const Rect& rect) const {
    return KCBaseControl::GetGraphDataAsGraphicStream(writer, rect);
}

void KCGUIControl::GetDrawInstructionsSelectionBitmap(Writer& writer) const {
    if (GetSelection() <= 0)
        return;
    if (m_selectionImages.resID == 0 || m_selectionImages.numImages <= 0)
        return;
    const int32_t image = std::clamp(GetSelection() - 1, 0, m_selectionImages.numImages - 1);
    writer.DrawPNGScaled(kvGS::KCGSImage(m_selectionImages.resID + image),
                         kvGS::ToSGSRect(GetSelectionBitmapRect()));
}

// Where no picture shows a selection, a thin line does.
void KCGUIControl::GetDrawInstructionsDefaultSelectionLevel(Writer& writer) const {
    if (GetSelection() <= 0 || (m_selectionImages.resID != 0 && m_selectionImages.numImages > 0))
        return;
    writer.SetStrokeWidth(1.0f).DrawWireRect(GetInk(GetTheme().selection), GetBounds().ConvertTo<float>());
}

void KCGUIControl::GetDrawInstructionsDragDropImage(Writer& writer, KUPoint<double> position) const {
    constexpr double kHalfSide = 6.0;
    const size_t registration = FindRegistration(kRegister_DragAndDrop);
    if (registration == kNoParam)
        return;
    const Rect image = GetImageRect(registration);
    const int32_t resID = m_params[registration].GetParamCurrentImageResID();
    if (resID != 0 && !image.IsEmpty()) {
        const Rect moved =
            Rect::FromOrigin({position.x - image.GetWidth() / 2.0, position.y - image.GetHeight() / 2.0},
                             {image.GetWidth(), image.GetHeight()});
        writer.DrawPNGScaled(kvGS::KCGSImage(resID), kvGS::ToSGSRect(moved));
        return;
    }
    const Rect chip = Rect::FromEdges(position.x - kHalfSide, position.y - kHalfSide, position.x + kHalfSide,
                                      position.y + kHalfSide);
    writer.DrawSolidRect(GetInk(GetTheme().accent), chip.ConvertTo<float>());
}

} // namespace kvKorvoV12_9_0_320
