#include <korvolib/gui/drawn_menu.h>

#include <random>
#include <string>

#include <gtest/gtest.h>

#include <korvolib/gui/event_data.h>

namespace {

using namespace kvKorvo;
using namespace PluginViewManager;
using Rect = KURect<double>;

class Choices : public KCControlPopupMenuHandler {
  public:
    explicit Choices(int32_t count, int32_t current = 0) : m_count(count), m_current(current) {}
    int32_t GetNumChoices() const override { return m_count; }
    void GetChoiceText(int32_t choice, KCFixedStringBase& text) const override {
        text = std::to_string(choice).c_str();
    }
    int32_t GetCurrentChoice() const override { return m_current; }

  private:
    int32_t m_count, m_current;
};

const Rect kField = Rect::FromEdges(20.5, 40, 100, 60.25);
constexpr KUSize<double> kWindow{400, 300};

KCDrawnMenu Opened(int32_t count, int32_t current = 0, const Rect& field = kField,
                   KUSize<double> window = kWindow) {
    KCDrawnMenu menu;
    menu.Open(Choices(count, current), KCTheme::Default(), field, window);
    return menu;
}

TEST(DrawnMenu, StandsBelowItsFieldFromPixelToPixel) {
    const KCDrawnMenu menu = Opened(4);
    EXPECT_EQ(menu.GetRect().left, 20.0);
    EXPECT_EQ(menu.GetRect().top, 61.0);
    EXPECT_GE(menu.GetRect().GetWidth(), 79.0);
    EXPECT_EQ(menu.GetNumColumns(), 1);
    EXPECT_FALSE(menu.IsScrolling());
}

TEST(DrawnMenu, StandsAboveAFieldAtTheBottom) {
    const KCDrawnMenu menu = Opened(4, 0, Rect::FromEdges(20, 270.5, 100, 290));
    EXPECT_EQ(menu.GetRect().bottom, 270.0);
}

TEST(DrawnMenu, StaysInsideTheWindowWhereverItsFieldIs) {
    std::mt19937 random(3);
    const auto upTo = [&random](int count) { return static_cast<double>(random() % static_cast<unsigned>(count)); };
    for (int i = 0; i < 2000; ++i) {
        const double left = upTo(800) - 200, top = upTo(800) - 200;
        const KCDrawnMenu menu = Opened(1 + static_cast<int32_t>(upTo(1200)), 0,
                                        Rect::FromEdges(left, top, left + upTo(500), top + upTo(100)));
        EXPECT_TRUE(Rect::FromEdges(0, 0, 400, 300).Contains(menu.GetRect())) << i;
    }
}

TEST(DrawnMenu, FindsEachChoiceOnItsRowAndNothingBesideThem) {
    for (const int32_t count : {1, 4, 15, 16, 40}) {
        const KCDrawnMenu menu = Opened(count);
        for (int32_t choice = 0; choice < count; ++choice) {
            const Rect row = menu.GetRowRect(choice);
            EXPECT_TRUE(menu.GetRect().Contains(row)) << choice;
            EXPECT_EQ(menu.FindChoiceAt({row.left, row.top}), choice);
            EXPECT_EQ(menu.FindChoiceAt({row.right - 0.5, row.bottom - 0.5}), choice);
        }
        const Rect& rect = menu.GetRect();
        for (const KUPoint<double> beside : {KUPoint<double>{rect.left - 1, rect.top + 10},
                                             {rect.left + 5, rect.top},
                                             {rect.left + 5, rect.bottom}})
            EXPECT_EQ(menu.FindChoiceAt(beside), KCDrawnMenu::kNoChoice);
        EXPECT_TRUE(menu.GetRowRect(-1).IsEmpty());
        EXPECT_TRUE(menu.GetRowRect(count).IsEmpty());
    }
}

// 300 pixels are 16 rows of 18 and two edges of 4.
TEST(DrawnMenu, GetsColumnsWhenTheWindowIsTooLow) {
    EXPECT_EQ(Opened(16).GetNumColumns(), 1);
    const KCDrawnMenu menu = Opened(17);
    EXPECT_EQ(menu.GetNumColumns(), 2);
    EXPECT_FALSE(menu.IsScrolling());
    EXPECT_EQ(menu.GetRowRect(9).top, menu.GetRowRect(0).top);
    EXPECT_EQ(menu.GetRowRect(9).left, menu.GetRowRect(0).right);
}

TEST(DrawnMenu, ScrollsWhenColumnsDoNotFitEither) {
    KCDrawnMenu menu = Opened(100, 50);
    EXPECT_TRUE(menu.IsScrolling());
    EXPECT_FALSE(menu.GetRowRect(50).IsEmpty()); // the present choice is in sight
    EXPECT_TRUE(menu.GetRowRect(0).IsEmpty());
    EXPECT_TRUE(menu.Scroll(-1000));
    EXPECT_FALSE(menu.Scroll(-1));
    EXPECT_FALSE(menu.GetRowRect(0).IsEmpty());
    EXPECT_TRUE(menu.GetRowRect(14).IsEmpty());
    EXPECT_TRUE(menu.Scroll(1000));
    EXPECT_FALSE(menu.GetRowRect(99).IsEmpty());
    EXPECT_FALSE(menu.Scroll(std::numeric_limits<double>::quiet_NaN()));
}

TEST(DrawnMenu, KeepsPartsOfARowUntilTheyAreWhole) {
    KCDrawnMenu menu = Opened(100);
    EXPECT_FALSE(menu.Scroll(0.75));
    EXPECT_TRUE(menu.Scroll(0.75));
    EXPECT_TRUE(menu.GetRowRect(0).IsEmpty());
    EXPECT_FALSE(menu.GetRowRect(1).IsEmpty());
}

TEST(DrawnMenu, ArrowsScrollByWhatIsSeen) {
    KCDrawnMenu menu = Opened(100);
    const Rect& rect = menu.GetRect();
    EXPECT_FALSE(menu.PressArrow({rect.left + 5, rect.top + 5}));
    EXPECT_TRUE(menu.PressArrow({rect.left + 5, rect.bottom - 5}));
    EXPECT_EQ(menu.FindChoiceAt({rect.left + 5, rect.top + 30}), 14);
    EXPECT_TRUE(menu.PressArrow({rect.left + 5, rect.top + 5}));
    EXPECT_EQ(menu.FindChoiceAt({rect.left + 5, rect.top + 30}), 0);
    EXPECT_FALSE(menu.PressArrow({rect.left - 5, rect.bottom - 5}));
}

TEST(DrawnMenu, KeysMoveTheHighlightAndBringItIntoSight) {
    KCDrawnMenu menu = Opened(100, 3);
    EXPECT_EQ(menu.GetHighlighted(), 3);
    EXPECT_TRUE(menu.MoveHighlight(kKey_Down, 3));
    EXPECT_TRUE(menu.MoveHighlight(kKey_PageDown, 3));
    EXPECT_EQ(menu.GetHighlighted(), 18);
    EXPECT_FALSE(menu.GetRowRect(18).IsEmpty());
    EXPECT_TRUE(menu.MoveHighlight(kKey_End, 3));
    EXPECT_FALSE(menu.MoveHighlight(kKey_Down, 3)); // no further
    EXPECT_EQ(menu.GetHighlighted(), 99);
    EXPECT_TRUE(menu.MoveHighlight(kKey_Home, 3));
    EXPECT_EQ(menu.GetHighlighted(), 0);
    EXPECT_FALSE(menu.MoveHighlight(kKey_Left, 3)); // there is one column
    EXPECT_FALSE(menu.MoveHighlight('x', 3));
}

TEST(DrawnMenu, KeysGoOnFromTheChoiceWhenNothingIsHighlighted) {
    KCDrawnMenu menu = Opened(4, 2);
    EXPECT_TRUE(menu.Highlight(KCDrawnMenu::kNoChoice));
    EXPECT_TRUE(menu.MoveHighlight(kKey_Up, 2));
    EXPECT_EQ(menu.GetHighlighted(), 1);
}

TEST(DrawnMenu, TinyWindowsAndNoChoicesAreHarmless) {
    for (const KUSize<double> window : {KUSize<double>{1, 1}, {3, 200}, {200, 3}})
        for (const int32_t count : {0, 1, 5, 1000}) {
            KCDrawnMenu menu = Opened(count, -1, kField, window);
            menu.MoveHighlight(kKey_End, -1);
            menu.Scroll(3);
            EXPECT_GE(menu.GetRect().left, 0.0);
            EXPECT_GE(menu.GetRect().top, 0.0);
            EXPECT_LT(menu.FindChoiceAt({0.5, 0.5}), std::max(1, count));
        }
    EXPECT_EQ(KCDrawnMenu().FindChoiceAt({0, 0}), KCDrawnMenu::kNoChoice);
}

} // namespace
