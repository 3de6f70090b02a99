#include <gtest/gtest.h>

#include <limits>

#include <korvolib/gui/event_data.h>

namespace kvTest {
namespace {

using namespace kvKorvo;
using PluginViewManager::KCEventData;

TEST(Modifiers, SetsMatchByEquality) {
    KUModifiers both(KEModifier::Shift);
    both.Set(KEModifier::Alt, true);
    EXPECT_TRUE(both.Has(KEModifier::Shift));
    EXPECT_TRUE(both.Has(KEModifier::Alt));
    EXPECT_FALSE(both == KUModifiers(KEModifier::Shift));
    both.Set(KEModifier::Alt, false);
    EXPECT_TRUE(both == KUModifiers(KEModifier::Shift));
}

TEST(Modifiers, StandInTheirOrder) {
    EXPECT_EQ(static_cast<int>(KEModifier::Primary), 0);
    EXPECT_EQ(static_cast<int>(KEModifier::Secondary), 1);
    EXPECT_EQ(static_cast<int>(KEModifier::Shift), 2);
    EXPECT_EQ(static_cast<int>(KEModifier::Alt), 3);
}

TEST(Modifiers, OneThatDoesNotExistIsNeverDown) {
    for (const uint32_t number : {4u, 7u, 31u}) {
        KUModifiers modifiers;
        modifiers.Set(static_cast<KEModifier>(number), true);
        EXPECT_TRUE(modifiers.IsEmpty()) << number;
        EXPECT_FALSE(modifiers.Has(static_cast<KEModifier>(number)));
    }
}

TEST(EventData, DistanceFromThePressHasNoSign) {
    KCEventData event;
    event.dragStart = {10.0, 20.0};
    event.position = {7.0, 24.5};
    const KUSize<double> distance = event.GetMouseDistanceFromDragStart();
    EXPECT_EQ(distance.width, 3.0);
    EXPECT_EQ(distance.height, 4.5);
}

TEST(EventData, GivesTheKeysThatAreDown) {
    KCEventData event;
    event.modifiers.Set(KEModifier::Primary, true);
    EXPECT_TRUE(event.IsModifierDown(KEModifier::Primary));
    EXPECT_FALSE(event.IsModifierDown(KEModifier::Alt));
    EXPECT_EQ(event.GetAllKeyModifiers(), KUModifiers(KEModifier::Primary));
    EXPECT_FALSE(event.IsDoubleClick());
    event.numClicks = 2;
    EXPECT_TRUE(event.IsDoubleClick());
}

TEST(EventData, OneNumberThatIsNotFiniteSpoilsTheEvent) {
    double KUPoint<double>::*const coordinates[] = {&KUPoint<double>::x, &KUPoint<double>::y};
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        for (const auto coordinate : coordinates) {
            KCEventData moved, pressed;
            moved.position.*coordinate = bad;
            pressed.dragStart.*coordinate = bad;
            EXPECT_FALSE(moved.IsFinite());
            EXPECT_FALSE(pressed.IsFinite());
        }
        KCEventData pinched, timed;
        pinched.pinchScale = bad;
        timed.timeSeconds = -bad;
        EXPECT_FALSE(pinched.IsFinite());
        EXPECT_FALSE(timed.IsFinite());
    }
    EXPECT_TRUE(KCEventData().IsFinite());
}

} // namespace
} // namespace kvTest
