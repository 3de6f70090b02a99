// KCDrawnMenu: the menu of a control as a window draws it: where its rows stand, which one the pointer is on, what
// of it is seen. All choices in one column, in several where the window is too low for that, and where even those
// would not fit, in one column that scrolls between two arrows.
//
// A plain value that knows no window; CStandardGUI_X has one. It allocates nothing, but for the growth of a stream.
// Thread: [main].
#pragma once

#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/gui/popup_menu.h>
#include <korvolib/gui/theme.h>
#include <korvolib/utilities/geometry.h>

namespace kvKorvoV12_9_0_320 {

class KCGUIControl;
namespace kvGS {
class KCGraphicStreamBinaryWriter;
}

class KORVO_API KCDrawnMenu {
  public:
    using Rect = KURect<double>;
    using Point = KUPoint<double>;
    using Writer = kvGS::KCGraphicStreamBinaryWriter;

    static constexpr int32_t kNoChoice = -1;

    /// Right below `field`, or right above it, or beside that where the window (from 0, 0) needs it. The row of the
    /// present choice is in sight and highlighted. Texts are measured here, once.
    void Open(const KCControlPopupMenuHandler& choices, const KCTheme& theme, const Rect& field,
              KUSize<double> window);

    /// Whole pixels, so that it can be drawn over itself.
    const Rect& GetRect() const noexcept { return m_rect; }
    int32_t GetNumChoices() const noexcept { return m_numChoices; }
    int32_t GetNumColumns() const noexcept { return m_numColumns; }
    bool IsScrolling() const noexcept { return m_isScrolling; }
    /// Of a choice; empty for one that is out of sight.
    Rect GetRowRect(int32_t choice) const noexcept;
    /// kNoChoice outside of the rows.
    int32_t FindChoiceAt(Point point) const noexcept;
    int32_t GetHighlighted() const noexcept { return m_highlighted; }

    // True when it looks different now.
    bool Highlight(int32_t choice) noexcept; // kNoChoice for none
    /// An arrow key, a page key, Home or End, from the highlighted row or else from `current`.
    bool MoveHighlight(uint32_t key, int32_t current) noexcept;
    bool Scroll(double rows) noexcept; // downwards; a part of a row is kept for the next time
    /// A press on an arrow scrolls by what is seen.
    bool PressArrow(Point point) noexcept;

    /// In the colours of the control's theme.
    void Draw(Writer& writer, const KCGUIControl& control, const KCControlPopupMenuHandler& choices) const;

  private:
    void Arrange(KUSize<double> window) noexcept;
    void Place(const Rect& field, KUSize<double> window) noexcept;
    void ScrollTo(int32_t choice) noexcept;
    int32_t GetNumSeen() const noexcept { return m_numRows * m_numColumns; }
    double GetRowsTop() const noexcept;

    Rect m_rect;
    double m_rowHeight = 0.0;
    double m_columnWidth = 0.0;
    int32_t m_numChoices = 0;
    int32_t m_numRows = 0; // of a column
    int32_t m_numColumns = 0;
    int32_t m_first = 0; // that is seen
    int32_t m_highlighted = kNoChoice;
    double m_scrollRest = 0.0;
    bool m_isScrolling = false;
};

} // namespace kvKorvoV12_9_0_320
