#include <korvolib/gui/drawn_menu.h>

#include <algorithm>
#include <cmath>

#include <korvolib/graphicstream/binary_writer.h>
#include <korvolib/gui/controls/draw_shapes_internal.h>
#include <korvolib/gui/event_data.h>

namespace kvKorvoV12_9_0_320 {

namespace {

using Rect = KURect<double>;

constexpr double kEdge = 4.0;       // between the menu's frame and its rows, above and below
constexpr double kMarkWidth = 18.0; // for the mark of the present choice, left of the texts
constexpr double kTextGap = 10.0;   // right of the texts
constexpr double kMarkRadius = 2.5;
constexpr int32_t kArrowRows = 2;

// From pixel to pixel: rows that lie between pixels would mix with their neighbours each time they are drawn.
double RowHeight(const KCTheme& theme) noexcept { return std::max(12.0, std::ceil(theme.valueHeight * 1.8)); }

double WidestText(const KCControlPopupMenuHandler& choices, const KCTheme& theme) {
    double widest = 0.0;
    KCFixedString<127> text;
    for (int32_t choice = 0; choice < choices.GetNumChoices(); ++choice) {
        choices.GetChoiceText(choice, text);
        widest = std::max(widest, EstimateTextWidth({text.data(), text.size()}, theme.valueHeight, false));
    }
    return widest;
}

int32_t WholeParts(double length, double part) noexcept {
    return static_cast<int32_t>(std::clamp(std::floor(length / part), 1.0, double{KCStateMenu::kMaxChoices}));
}

KUColor Opaque(KUColor color) noexcept { return color.WithOpacity(1.0); }

} // namespace

// ---- Where it stands --------------------------------------------------------------------------------------------

void KCDrawnMenu::Open(const KCControlPopupMenuHandler& choices, const KCTheme& theme, const Rect& field,
                       KUSize<double> window) {
    *this = KCDrawnMenu();
    m_numChoices = std::clamp(choices.GetNumChoices(), 0, KCStateMenu::kMaxChoices);
    m_rowHeight = RowHeight(theme);
    const double needed = std::ceil(WidestText(choices, theme) + kMarkWidth + kTextGap);
    m_columnWidth =
        std::clamp(std::max(needed, std::floor(field.GetWidth())), 1.0, std::max(1.0, std::floor(window.width)));
    Arrange(window);
    Place(field, window);
    m_highlighted = choices.GetCurrentChoice();
    ScrollTo(m_highlighted);
}

void KCDrawnMenu::Arrange(KUSize<double> window) noexcept {
    const int32_t roomRows = WholeParts(window.height - 2 * kEdge, m_rowHeight);
    const int32_t roomColumns = WholeParts(window.width, m_columnWidth);
    const int32_t columns = std::max(1, (m_numChoices + roomRows - 1) / roomRows);
    m_isScrolling = columns > roomColumns;
    m_numColumns = m_isScrolling ? 1 : columns;
    m_numRows = m_isScrolling ? std::max(1, roomRows - kArrowRows) : (m_numChoices + columns - 1) / columns;
}

void KCDrawnMenu::Place(const Rect& field, KUSize<double> window) noexcept {
    const double width = m_columnWidth * m_numColumns;
    const double height = m_rowHeight * (m_numRows + (m_isScrolling ? kArrowRows : 0)) + 2 * kEdge;
    const double left = std::max(0.0, std::min(std::floor(field.left), std::floor(window.width) - width));
    double top = std::ceil(field.bottom);
    if (top + height > window.height && std::floor(field.top) - height >= 0.0)
        top = std::floor(field.top) - height;
    top = std::max(0.0, std::min(top, std::floor(window.height) - height));
    m_rect = Rect::FromEdges(left, top, left + width, top + height);
}

double KCDrawnMenu::GetRowsTop() const noexcept { return m_rect.top + kEdge + (m_isScrolling ? m_rowHeight : 0.0); }

Rect KCDrawnMenu::GetRowRect(int32_t choice) const noexcept {
    const int32_t place = choice - m_first;
    if (choice < 0 || choice >= m_numChoices || place < 0 || place >= GetNumSeen())
        return {};
    const int32_t column = place / m_numRows;
    const double left = m_rect.left + m_columnWidth * column;
    const double top = GetRowsTop() + m_rowHeight * (place % m_numRows);
    return Rect::FromEdges(left, top, left + m_columnWidth, top + m_rowHeight);
}

int32_t KCDrawnMenu::FindChoiceAt(Point point) const noexcept {
    if (!m_rect.Contains(point))
        return kNoChoice;
    const double row = std::floor((point.y - GetRowsTop()) / m_rowHeight);
    const double column = std::floor((point.x - m_rect.left) / m_columnWidth);
    if (row < 0.0 || row >= m_numRows || column < 0.0 || column >= m_numColumns)
        return kNoChoice;
    const int32_t choice = m_first + static_cast<int32_t>(column) * m_numRows + static_cast<int32_t>(row);
    return choice < m_numChoices ? choice : kNoChoice;
}

// ---- What it shows ----------------------------------------------------------------------------------------------

bool KCDrawnMenu::Highlight(int32_t choice) noexcept {
    const int32_t before = m_highlighted;
    m_highlighted = choice >= 0 && choice < m_numChoices ? choice : kNoChoice;
    return m_highlighted != before;
}

void KCDrawnMenu::ScrollTo(int32_t choice) noexcept {
    if (!m_isScrolling || choice < 0)
        return;
    m_first = std::clamp(m_first, choice - m_numRows + 1, choice);
    m_scrollRest = 0.0;
}

bool KCDrawnMenu::MoveHighlight(uint32_t key, int32_t current) noexcept {
    using namespace PluginViewManager;
    int32_t step = 0;
    switch (key) {
    case kKey_Up:
    case kKey_Down:
        step = 1;
        break;
    case kKey_Left:
    case kKey_Right:
        step = m_numColumns > 1 ? m_numRows : 0;
        break;
    case kKey_PageUp:
    case kKey_PageDown:
        step = m_numRows;
        break;
    case kKey_Home:
    case kKey_End:
        step = m_numChoices;
        break;
    default:
        return false;
    }
    const bool isBack = key == kKey_Up || key == kKey_Left || key == kKey_PageUp || key == kKey_Home;
    const int32_t from = m_highlighted != kNoChoice ? m_highlighted : current;
    const bool hasChanged = Highlight(std::clamp(from + (isBack ? -step : step), 0, std::max(0, m_numChoices - 1)));
    ScrollTo(m_highlighted);
    return hasChanged;
}

bool KCDrawnMenu::Scroll(double rows) noexcept {
    if (!m_isScrolling || !std::isfinite(rows))
        return false;
    const double last = m_numChoices - m_numRows;
    const double wanted = std::clamp(m_first + m_scrollRest + rows, 0.0, last);
    const int32_t before = m_first;
    m_first = static_cast<int32_t>(std::floor(wanted));
    m_scrollRest = wanted - m_first;
    return m_first != before;
}

bool KCDrawnMenu::PressArrow(Point point) noexcept {
    if (!m_rect.Contains(point))
        return false;
    if (point.y < GetRowsTop())
        return Scroll(-m_numRows);
    return point.y >= GetRowsTop() + m_rowHeight * m_numRows && Scroll(m_numRows);
}

// ---- Its picture ------------------------------------------------------------------------------------------------

void KCDrawnMenu::Draw(Writer& writer, const KCGUIControl& control,
                       const KCControlPopupMenuHandler& choices) const {
    KCShapes shapes(writer, control);
    const KCTheme& theme = shapes.Theme();
    shapes.Rounded(m_rect, 0.0, Opaque(theme.panelFrame));
    shapes.Rounded(m_rect.Inset(1.0, 1.0), 0.0, Opaque(theme.panel));
    for (int32_t column = 1; column < m_numColumns; ++column)
        shapes.LineUp(m_rect.Inset(1.0, kEdge), m_rect.left + m_columnWidth * column + 0.5, 1.0, theme.panelFrame);
    if (m_isScrolling) {
        const double x = m_rect.GetCentre().x;
        const auto arrow = [&](double y, double toward, bool canScroll) {
            const Point corners[] = {
                {x, y + toward * 2.5}, {x - 4.0, y - toward * 2.0}, {x + 4.0, y - toward * 2.0}};
            shapes.Polygon(corners, canScroll ? theme.text : theme.panelFrame);
        };
        arrow(GetRowsTop() - m_rowHeight / 2, -1.0, m_first > 0);
        arrow(GetRowsTop() + m_rowHeight * (m_numRows + 0.5), 1.0, m_first + m_numRows < m_numChoices);
    }
    const int32_t current = choices.GetCurrentChoice();
    const int32_t end = std::min(m_numChoices, m_first + GetNumSeen());
    for (int32_t choice = m_first; choice < end; ++choice) {
        const Rect row = GetRowRect(choice);
        if (choice == m_highlighted)
            shapes.Rounded(row.Inset(2.0, 0.0), 0.0, Opaque(theme.bodyLight));
        if (choice == current)
            shapes.Disc({row.left + kMarkWidth / 2 + 1.0, row.GetCentre().y}, kMarkRadius, theme.accent);
        KCFixedString<127> text;
        choices.GetChoiceText(choice, text);
        shapes.Value(text, Rect::FromEdges(row.left + kMarkWidth, row.top, row.right - 2.0, row.bottom),
                     KETextAlign::Left);
    }
}

} // namespace kvKorvoV12_9_0_320
