// The picture of a window: what is marked, and how it is recorded.

#include <korvolib/gui/x_cstandardgui_internal.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include <korvolib/graphicstream/struct_writers.h>
#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320 {

namespace {

constexpr double kFrameRoom = 2.0; // a drawable's frame is drawn on its edge, half of it outside

// What is left of other drawing does not reach into the picture.
void ResetSettings(kvGS::KCGraphicStreamBinaryWriter& writer) noexcept {
    writer.SetAntialias(true).SetXorMode(false).SetStrokeWidth(1).SetStrokePattern(0xFFFF).SetSegment(0);
}

kvGS::SGSRGBAColor ToStream(const KUColor& color) noexcept { return kvGS::KCRGBAColorToSGSRGBAColor(color); }

// Whole pixels round the rectangle.
kvGS::SGSFrame FrameAround(const KURect<double>& rect) noexcept {
    const KURect<double> outer = KURect<double>::FromEdges(std::floor(rect.left), std::floor(rect.top),
                                                           std::ceil(rect.right), std::ceil(rect.bottom));
    const KURect<int> whole = outer.ConvertTo<int>();
    kvGS::SGSFrame frame;
    frame.x = whole.left;
    frame.y = whole.top;
    frame.width = static_cast<int32_t>(whole.GetWidth());
    frame.height = static_cast<int32_t>(whole.GetHeight());
    return frame;
}

// A scope that shows nothing outside of the rectangle. A pixel lies in it or not: half covered pixels would mix
// with what stood there, and a part drawn again would differ from the whole.
class KCClippedFrame {
  public:
    KCClippedFrame(kvGS::KCGraphicStreamBinaryWriter& writer, const KURect<double>& rect) noexcept
        : m_frame(writer, FrameAround(rect)) {
        const bool isSmooth = writer.GetAntialias();
        writer.SetAntialias(false).ClipRect(kvGS::ToSGSRect(rect)).SetAntialias(isSmooth);
    }

  private:
    kvGS::KCStGSFrameStructWriter m_frame;
};

} // namespace

// ---- Marks
// -------------------------------------------------------------------------------------------------------

void CStandardGUI_X::AddControlToRedraw(KCGUIControl& control) noexcept {
    const auto found = m_numbers.find(&control);
    if (found == m_numbers.end())
        return;
    sPLACE& place = m_controls[found->second];
    if (place.isMarked || m_dirty.size() == m_dirty.capacity())
        return;
    place.isMarked = true;
    m_dirty.push_back(found->second);
    m_needsRedraw.store(true, std::memory_order_relaxed);
}

void CStandardGUI_X::AskForAll() noexcept {
    m_needsAll = true;
    m_needsRedraw.store(true, std::memory_order_relaxed);
}

void CStandardGUI_X::Settle() noexcept {
    for (const uint32_t number : m_dirty) {
        m_controls[number].isMarked = false;
        m_controls[number].control->UpdateRedrawControl();
    }
    m_dirty.clear();
    m_needsAll = false;
    m_isMenuMarked = false;
    m_needsRedraw.store(false, std::memory_order_relaxed);
}

bool CStandardGUI_X::HasMoved(const sPLACE& place) {
    return place.rect != DrawnRect(*place.control) || place.isTopmost != IsTopmost(*place.control);
}

bool CStandardGUI_X::IsTopmost(const KCGUIControl& control) {
    return control.GetControlFlag(kControl_DrawTopmost) || control.ShouldDrawTopmost();
}

// ---- Pictures
// ----------------------------------------------------------------------------------------------------

int32_t CStandardGUI_X::Draw(Writer& writer) {
    const sEVENT event(*this);
    return event ? DrawAll(writer) : kErr_Generic;
}

int32_t CStandardGUI_X::DrawAll(Writer& writer) {
    (void)FindDrawnMenu();
    if (std::any_of(m_controls.begin(), m_controls.end(), HasMoved))
        Arrange();
    {
        const kvGS::KCStGSStreamStructWriter stream(writer, DescribePicture(true));
        ResetSettings(writer);
        RecordAll(writer);
    }
    for (const sPLACE& place : m_controls)
        place.control->UpdateRedrawControl();
    Settle();
    return writer.GetError();
}

int32_t CStandardGUI_X::DrawDirty(Writer& writer) {
    const sEVENT event(*this);
    if (!event)
        return kErr_Generic;
    if (!NeedsRedraw())
        return kErr_NoErr;
    (void)FindDrawnMenu();
    const bool hasMoved = std::any_of(m_dirty.begin(), m_dirty.end(),
                                      [this](uint32_t number) { return HasMoved(m_controls[number]); });
    if (m_needsAll || hasMoved)
        return DrawAll(writer);
    {
        const kvGS::KCStGSStreamStructWriter stream(writer, DescribePicture(false));
        ResetSettings(writer);
        for (const uint32_t number : m_dirty)
            RecordAround(writer, m_controls[number]);
        if (IsMenuTouched())
            RecordMenu(writer);
    }
    Settle();
    return writer.GetError();
}

kvGS::SGSStream CStandardGUI_X::DescribePicture(bool isWhole) noexcept {
    kvGS::SGSStream stream;
    std::memcpy(stream.name, "window", sizeof "window");
    stream.sequence = m_numPictures++;
    stream.logicalSize = {static_cast<float>(m_size.width), static_cast<float>(m_size.height)};
    stream.color = isWhole ? ToStream(m_theme.window) : kvGS::SGSRGBAColor{0, 0, 0, 0};
    return stream;
}

void CStandardGUI_X::RecordAll(Writer& writer) const {
    for (const std::unique_ptr<CDrawable>& drawable : m_drawables)
        RecordDrawable(writer, *drawable);
    for (const uint32_t number : m_order)
        RecordControl(writer, m_controls[number]);
    RecordCarried(writer);
    if (IsMenuDrawn())
        RecordMenu(writer);
}

// The place of a control, from the window's ground up.
void CStandardGUI_X::RecordAround(Writer& writer, const sPLACE& place) const {
    const KCClippedFrame frame(writer, place.rect);
    writer.DrawSolidRect(ToStream(m_theme.window), place.rect.Inset(-1.0, -1.0).ConvertTo<float>());
    if (place.overlapsMany) {
        RecordAll(writer);
        return;
    }
    for (const uint32_t number : place.drawables)
        RecordDrawable(writer, *m_drawables[number]);
    for (const uint32_t number : place.overlaps)
        if (&m_controls[number] == &place) // the clip is its own
            place.control->Draw(writer);
        else
            RecordControl(writer, m_controls[number]);
}

void CStandardGUI_X::RecordDrawable(Writer& writer, const CDrawable& drawable) const {
    const KCClippedFrame frame(writer, DrawnRect(drawable));
    drawable.GetDrawInstructions(writer, m_theme);
}

void CStandardGUI_X::RecordControl(Writer& writer, const sPLACE& place) const {
    if (!place.control->IsVisible())
        return;
    const KCClippedFrame frame(writer, place.rect);
    place.control->Draw(writer);
}

// What a drag-and-drop carries, over everything.
void CStandardGUI_X::RecordCarried(Writer& writer) const {
    if (m_mouse.isCarrying)
        m_mouse.control->GetDrawInstructionsDragDropImage(writer, m_mouse.last);
}

// By its own mark, by that of its control, whose value it shows, or by what has been drawn over it.
bool CStandardGUI_X::IsMenuTouched() const {
    return IsMenuDrawn() && (m_isMenuMarked || std::any_of(m_dirty.begin(), m_dirty.end(), [this](uint32_t number) {
                                 const sPLACE& place = m_controls[number];
                                 return place.control.get() == m_openMenu ||
                                        m_menu.GetRect().Intersects(place.rect.Inset(-1.0, -1.0));
                             }));
}

void CStandardGUI_X::RecordMenu(Writer& writer) const {
    const KCControlPopupMenuHandler* const choices = m_openMenu->GetControlPopupMenuHandler();
    if (choices == nullptr)
        return;
    const KCClippedFrame frame(writer, m_menu.GetRect());
    m_menu.Draw(writer, *m_openMenu, *choices);
}

KURect<double> CStandardGUI_X::DrawnRect(const KCGUIControl& control) {
    return control.GetBounds().Union(control.GetSelectionBitmapRect());
}

KURect<double> CStandardGUI_X::DrawnRect(const CDrawable& drawable) noexcept {
    return drawable.GetRect().Inset(-kFrameRoom, -kFrameRoom);
}

} // namespace kvKorvoV12_9_0_320
