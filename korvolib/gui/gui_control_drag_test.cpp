#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include <korvolib/gui/gui_control_test_internal.h>

namespace kvTest {
namespace {

using namespace kvKorvo;
using namespace PluginViewManager;

constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class GUIControlDrag : public OneControl {
  protected:
    double Convert(double pixels, size_t registration = 0, int16_t range = 100) {
        return control.ConvertMouseDeltaFromPixelsToState(pixels, residue, registration, range);
    }
    double residue = 0.0;
};

// Pixels to states --------------------------------------------------------------------------------------------

TEST_F(GUIControlDrag, NinetyFivePixelsDoNotMoveADiscreteParameterAndTheNextOneDoes) {
    Add(1, kRegister_DragVertical);
    EXPECT_EQ(Convert(95.0), 0.0);
    EXPECT_EQ(residue, 95.0);
    EXPECT_EQ(Convert(1.0), alg.GetStateStep(1));
    EXPECT_EQ(residue, 0.0);
}

TEST_F(GUIControlDrag, NinetySixPixelsDownAreOneStateDown) {
    Add(1, kRegister_DragVertical);
    EXPECT_EQ(Convert(-96.0), -alg.GetStateStep(1));
    EXPECT_EQ(residue, 0.0);
}

TEST_F(GUIControlDrag, AContinuousParameterMovesByStepsUpToTwoPixelsAndByTheRangeBeyond) {
    Add(0, kRegister_DragVertical);
    const double step = alg.GetStateStep(0);
    ASSERT_GT(step, 0.0);
    EXPECT_EQ(Convert(2.0), 2.0 * step);
    EXPECT_EQ(Convert(-2.0), -2.0 * step);
    EXPECT_EQ(Convert(3.0), 3000.0 / 100.0);
    EXPECT_EQ(Convert(-3.0), -3000.0 / 100.0);
    const double justAbove = std::nextafter(2.0, 3.0);
    EXPECT_EQ(Convert(justAbove), justAbove * 1000.0 / 100.0);
    EXPECT_EQ(residue, 0.0);
}

TEST_F(GUIControlDrag, APixelRangeOfNothingCountsAsOne) {
    Add(0, kRegister_DragVertical);
    EXPECT_EQ(Convert(3.0, 0, 0), 3000.0);
}

TEST_F(GUIControlDrag, NumbersThatAreNoneAndUnknownRegistrationsMoveNothing) {
    Add(0, kRegister_DragVertical);
    Add(1, kRegister_DragVertical);
    for (const double pixels : {kNotANumber, kInfinity, -kInfinity})
        for (const size_t registration : {size_t{0}, size_t{1}, size_t{2}})
            EXPECT_EQ(Convert(pixels, registration), 0.0);
    EXPECT_EQ(Convert(10.0, 2), 0.0);
    residue = kNotANumber;
    EXPECT_EQ(Convert(96.0, 1), alg.GetStateStep(1));
    EXPECT_EQ(residue, 0.0);
}

TEST_F(GUIControlDrag, TheRestOfAnAbsurdMovementIsDropped) {
    Add(1, kRegister_DragVertical);
    EXPECT_TRUE(std::isfinite(Convert(1e300)));
    EXPECT_LT(std::fabs(residue), 96.0);
}

// The rule in words, step by step, with division and remainder of its own.
double SlowConversion(double pixels, double& rest, bool isDiscrete, double step, int range) {
    if (isDiscrete) {
        double sum = pixels + rest;
        double states = 0.0;
        for (; sum >= 96.0; sum -= 96.0)
            states += 1.0;
        for (; sum <= -96.0; sum += 96.0)
            states -= 1.0;
        rest = sum;
        return states * step;
    }
    if (pixels > 2.0 || pixels < -2.0)
        return pixels * 1000.0 / (range == 0 ? 1 : range);
    return pixels * step;
}

TEST_F(GUIControlDrag, AgreesWithTheRuleInWordsForRandomMovements) {
    Add(0, kRegister_DragVertical);
    Add(1, kRegister_DragVertical);
    std::mt19937 random(7);
    std::uniform_int_distribution<int> quarterPixels(-1200, 1200), ranges(0, 300);
    double slowResidue = 0.0;
    for (int i = 0; i < 20000; ++i) {
        const size_t registration = static_cast<size_t>(i) % 2;
        const double pixels = (i % 4 < 2 ? quarterPixels(random) : quarterPixels(random) / 100) / 4.0;
        const int range = ranges(random);
        double unused = 0.0;
        double& slow = registration == 1 ? slowResidue : unused;
        double& fast = registration == 1 ? residue : unused;
        const double expected =
            SlowConversion(pixels, slow, registration == 1, alg.GetStateStep(registration), range);
        EXPECT_DOUBLE_EQ(
            control.ConvertMouseDeltaFromPixelsToState(pixels, fast, registration, static_cast<int16_t>(range)),
            expected);
        ASSERT_DOUBLE_EQ(residue, slowResidue);
    }
}

// Drag --------------------------------------------------------------------------------------------------------

TEST_F(GUIControlDrag, ADragMovesAlongTheRegisteredDirectionOnly) {
    Add(0, kRegister_DragVertical);
    ASSERT_TRUE(Press());
    Drag(50.0, 0.0);
    EXPECT_EQ(State(0), 0.0);
    Drag(0.0, 20.0);
    EXPECT_DOUBLE_EQ(State(0), 20.0 * 1000.0 / 200.0); // the control is 200 pixels high
    Up();
}

TEST_F(GUIControlDrag, DragAddsBothDirectionsUp) {
    Add(0, kRegister_Drag);
    Press();
    Drag(20.0, 20.0);
    EXPECT_DOUBLE_EQ(State(0), 40.0 * 1000.0 / 200.0);
}

TEST_F(GUIControlDrag, APadMovesTwoParametersEachAlongItsAxisAndRange) {
    control.m_direction = KEControlDirection::Both;
    Add(0, kRegister_DragHorizontal);
    Add(2, kRegister_DragVertical);
    Press();
    Drag(10.0, 10.0);
    EXPECT_DOUBLE_EQ(State(0), 10.0 * 1000.0 / 100.0);
    EXPECT_DOUBLE_EQ(State(2), 10.0 * 1000.0 / 200.0);
}

TEST_F(GUIControlDrag, BothSensitivitiesMultiplyTheDelta) {
    Add(0, kRegister_DragVertical).SetSensitivity(0.5);
    control.SetDragSensitivity(4.0);
    Press();
    Drag(0.0, 10.0);
    EXPECT_DOUBLE_EQ(State(0), 20.0 * 1000.0 / 200.0);
}

TEST_F(GUIControlDrag, ResiduesOfTheDirectionsAreApartAndAPressClearsThem) {
    Add(1, kRegister_Drag);
    Press();
    Drag(95.0, 95.0);
    EXPECT_EQ(State(1), 0.0);
    Drag(1.0, 0.0);
    EXPECT_EQ(State(1), alg.GetStateStep(1));
    Press(); // the release was lost
    Drag(0.0, 1.0);
    EXPECT_EQ(State(1), alg.GetStateStep(1));
    Drag(0.0, 95.0);
    EXPECT_EQ(State(1), 2.0 * alg.GetStateStep(1));
}

TEST_F(GUIControlDrag, OnlyRegistrationsWithExactlyTheseModifiersMove) {
    Add(0, kRegister_DragVertical);
    Add(2, kRegister_DragVertical, KEModifier::Shift);
    Press();
    KUModifiers two(KEModifier::Shift);
    two.Set(KEModifier::Alt, true);
    Drag(0.0, 20.0, two);
    EXPECT_EQ(State(0), 0.0);
    EXPECT_EQ(State(2), 0.0);
    Drag(0.0, 20.0, KEModifier::Shift);
    EXPECT_EQ(State(0), 0.0);
    EXPECT_EQ(State(2), 100.0);
}

TEST_F(GUIControlDrag, TheModifiersOfARegistrationAreTheSameAfterADrag) {
    Add(0, kRegister_DragVertical, KEModifier::Shift);
    Press(At(60, 120, KEModifier::Shift));
    Drag(0.0, 20.0, KEModifier::Shift);
    EXPECT_TRUE(control.GetParamData(0)->GetRegisterInfo().CompareParamModifiers(KEModifier::Shift));
}

TEST_F(GUIControlDrag, AModifierThatGoesDownDuringADragNeverMakesTheValueJump) {
    Add(0, kRegister_DragVertical);
    Add(0, kRegister_DragVertical, KEModifier::Shift).SetSensitivity(0.1);
    Press();
    Drag(0.0, 100.0);
    const double before = State(0);
    EXPECT_DOUBLE_EQ(before, 500.0);
    Drag(0.0, 0.0, KEModifier::Shift);
    EXPECT_EQ(State(0), before);
    Drag(0.0, 40.0, KEModifier::Shift);
    EXPECT_DOUBLE_EQ(State(0), before + 4.0 * 1000.0 / 200.0);
    Drag(0.0, 40.0);
    EXPECT_DOUBLE_EQ(State(0), before + 44.0 * 1000.0 / 200.0);
}

TEST_F(GUIControlDrag, AFineRegistrationCoversItsShareOfTheWay) {
    Add(0, kRegister_DragVertical).SetSensitivity(0.1);
    Add(1, kRegister_DragVertical).SetSensitivity(0.5);
    Press();
    Drag(0.0, 20.0); // as pixels it would be 2, which count as two state steps
    EXPECT_DOUBLE_EQ(State(0), 20.0 * 1000.0 / 200.0 * 0.1);
    Drag(0.0, 171.0);
    EXPECT_EQ(State(1), 0.0);
    Drag(0.0, 1.0); // 192 pixels at a half are one state
    EXPECT_EQ(State(1), alg.GetStateStep(1));
}

TEST_F(GUIControlDrag, AModifierDropsTheResiduesOfADrag) {
    Add(1, kRegister_DragVertical);
    Add(1, kRegister_DragVertical, KEModifier::Shift);
    Press();
    Drag(0.0, 95.0);
    Drag(0.0, 95.0, KEModifier::Shift);
    Drag(0.0, 95.0);
    EXPECT_EQ(State(1), 0.0);
    Drag(0.0, 1.0);
    EXPECT_EQ(State(1), alg.GetStateStep(1));
}

TEST_F(GUIControlDrag, ADragWithoutAPressOrWithNoNumberMovesNothing) {
    Add(0, kRegister_DragVertical);
    Drag(0.0, 50.0);
    EXPECT_EQ(State(0), 0.0);
    Press();
    Drag(0.0, kNotANumber);
    Drag(kInfinity, 50.0);
    KCEventData lost = At(60, 120);
    lost.timeSeconds = kNotANumber;
    Execute(control.MouseDrag(lost, 0.0, 50.0, redraw));
    EXPECT_EQ(State(0), 0.0);
    EXPECT_TRUE(control.hooks.empty());
}

TEST_F(GUIControlDrag, APressOutsideOfTheDragRectangleBeginsNoDrag) {
    Add(0, kRegister_DragVertical);
    EXPECT_FALSE(Press(At(5, 5)));
    Drag(0.0, 50.0);
    EXPECT_EQ(State(0), 0.0);
}

TEST_F(GUIControlDrag, TheHooksRunAfterTheSharedWork) {
    Add(0, kRegister_DragVertical);
    Press();
    Drag(0.0, 5.0);
    Up();
    Wheel(1.0);
    Execute(control.MouseOver(At(60, 120), redraw));
    Execute(control.MouseDraw(At(60, 120), redraw));
    EXPECT_EQ(control.hooks, (std::vector<std::string>{"drag", "up", "wheel", "over", "draw"}));
}

TEST_F(GUIControlDrag, BlocksOfAllRegistrationsComeInOneChainInTheirOrder) {
    alg.givesBlocks = true;
    Add(2, kRegister_DragVertical);
    Add(0, kRegister_DragVertical);
    Press();
    cALGORITHM::BUFFER_HEADER* chain = control.MouseDrag(At(60, 120), 0.0, 10.0, redraw);
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(chain->target, 2u);
    ASSERT_NE(chain->next, nullptr);
    EXPECT_EQ(chain->next->target, 0u);
    Execute(chain);
}

} // namespace
} // namespace kvTest
