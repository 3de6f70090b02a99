#include <korvolib/control/midi_value.h>

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include <tests/support/allocation_count.h>

using namespace kvKorvoV12_9_0_320::kvMIDI;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr int kIntMax = std::numeric_limits<int>::max(), kIntMin = std::numeric_limits<int>::min();

KorvoMidiEvent ControlChange(int controller, int value) {
    return {0xB0, static_cast<uint8_t>(controller), static_cast<uint8_t>(value)};
}

KorvoMidiEvent NoteOn(int velocity) { return {0x90, 60, static_cast<uint8_t>(velocity)}; }

// Each operation as it stands, in double and then rounded once to single: the same, by the sizes of the two
// formats.
int CalculatedByRoundingDoubles(int numStates, int value) {
    const auto single = [](double number) { return static_cast<double>(static_cast<float>(number)); };
    const double step = single(128.0 / single(numStates));
    const double quotient = step == 0.0 ? 0.0 : std::trunc(single(single(value) / step));
    return quotient > numStates ? numStates : static_cast<int>(quotient);
}

// The nearest state by counting: the one at the least distance from the place.
int NearestState(int value, int numStates) {
    int nearest = 0;
    for (int state = 1; state < numStates; ++state)
        if (std::abs((numStates - 1) * value - 127 * state) < std::abs((numStates - 1) * value - 127 * nearest))
            nearest = state;
    return nearest;
}

} // namespace

TEST(MidiValue, TheLargestBendStaysJustBelowFullTravel) {
    EXPECT_NEAR(PitchBendValue(127, 127), 999.877937, 1e-6);
    EXPECT_EQ(PitchBendValue(127, 127), 16383 * 0.061031431187061336);
    EXPECT_LT(PitchBendValue(127, 127), 1000.0);
}

TEST(MidiValue, ABendInTheMiddleIsAboutHalfway) {
    EXPECT_EQ(PitchBendValue(0, 64), 8192 * 0.061031431187061336);
    EXPECT_EQ(PitchBendValue(1, 0), 0.061031431187061336);
    EXPECT_EQ(PitchBendValue(0, 0), 0.0);
}

TEST(MidiValue, TheLargestControllerValueIsFullTravel) {
    EXPECT_EQ(SevenBitValue(127), 1000.0);
    EXPECT_EQ(SevenBitValue(0), 0.0);
    EXPECT_EQ(SevenBitValue(64), 64 * 7.874015748031496);
}

TEST(MidiValue, AnEventIsReadByItsType) {
    EXPECT_EQ(AutomationValue({0xE0, 1, 2}), 257 * 0.061031431187061336);
    EXPECT_EQ(AutomationValue({0xB0, 1, 2}), 2 * 7.874015748031496);
    EXPECT_EQ(AutomationValue({0x90, 1, 2}), 2 * 7.874015748031496);
}

TEST(MidiValue, AContinuousParameterTakesTheWholeNumber) {
    EXPECT_EQ(ContinuousValue({0xE0, 127, 127}), 999);
    EXPECT_EQ(ContinuousValue(ControlChange(7, 127)), 1000);
    EXPECT_EQ(ContinuousValue(ControlChange(7, 1)), 7);
    EXPECT_EQ(ContinuousValue(ControlChange(7, 0)), 0);
}

TEST(MidiValue, ControllersHaveSevenBitsAndABendHasNone) {
    EXPECT_EQ(ControllerNumber(ControlChange(127, 0)), 127);
    EXPECT_EQ(ControllerNumber(ControlChange(0x87, 0)), 7);
    EXPECT_EQ(ControllerNumber({0xE0, 5, 0}), 0);
    EXPECT_EQ(ControllerNumber(NoteOn(1)), 60);
}

TEST(MidiValue, OnlyNotesAndFivePedalsAreSwitches) {
    for (int controller = 0; controller < 128; ++controller)
        EXPECT_EQ(IsSwitchMessage(ControlChange(controller, 127)),
                  controller == 64 || controller == 65 || controller == 66 || controller == 67 || controller == 69);
    EXPECT_TRUE(IsSwitchMessage(NoteOn(1)));
    EXPECT_FALSE(IsSwitchMessage({0x80, 64, 127}));
    EXPECT_FALSE(IsSwitchMessage({0xE0, 64, 127}));
}

TEST(MidiValue, APedalIsDownFromSixtyFour) {
    EXPECT_FALSE(IsSwitchPressed(ControlChange(64, 63)));
    EXPECT_TRUE(IsSwitchPressed(ControlChange(64, 64)));
    EXPECT_FALSE(IsSwitchPressed(ControlChange(64, 0x80 | 63))); // the eighth bit is not part of the value
    EXPECT_FALSE(IsSwitchPressed(ControlChange(68, 127)));
}

TEST(MidiValue, AnyVelocityButZeroPresses) {
    EXPECT_TRUE(IsSwitchPressed(NoteOn(1)));
    EXPECT_FALSE(IsSwitchPressed(NoteOn(0)));
    EXPECT_FALSE(IsSwitchPressed({0x80, 60, 127}));
}

TEST(MidiValue, APressAtTheLastStateWraps) {
    EXPECT_EQ(SteppedValue(ControlChange(64, 64), 2.0, 3), 0);
    EXPECT_EQ(SteppedValue(ControlChange(64, 64), 1.0, 3), 2);
    EXPECT_EQ(SteppedValue(NoteOn(1), 2.0, 3), 0);
    EXPECT_EQ(SteppedValue(NoteOn(1), 0.0, 1), 0);
}

TEST(MidiValue, AReleaseLeavesTheControlAlone) {
    EXPECT_EQ(SteppedValue(ControlChange(64, 63), 2.0, 3), kMidiValue_None);
    EXPECT_EQ(SteppedValue(NoteOn(0), 2.0, 3), kMidiValue_None);
}

TEST(MidiValue, NextStateTakesTheWholeNumber) {
    EXPECT_EQ(NextState(1.999, 5), 2);
    EXPECT_EQ(NextState(1000.0, 3), 2);
    EXPECT_EQ(NextState(-7.0, 3), 1);
}

TEST(MidiValue, NextStateOfNothingIsNone) {
    EXPECT_EQ(NextState(1.0, 0), kMidiValue_None);
    EXPECT_EQ(NextState(1.0, -3), kMidiValue_None);
    EXPECT_EQ(NextState(kNaN, 3), kMidiValue_None);
    EXPECT_EQ(NextState(kInf, 2), kIntMax % 2);
    EXPECT_EQ(NextState(-kInf, 3), 1);
}

TEST(MidiValue, PlacesAreTheNearestStates) {
    for (int numStates = 1; numStates <= 130; ++numStates)
        for (int value = 0; value < 128; ++value)
            ASSERT_EQ(StateAtPosition(static_cast<uint8_t>(value), numStates), NearestState(value, numStates))
                << value << " of " << numStates;
}

TEST(MidiValue, PlacesReachFromTheFirstStateToTheLast) {
    EXPECT_EQ(SteppedValue(ControlChange(7, 0), 1.0, 3), 0);
    EXPECT_EQ(SteppedValue(ControlChange(7, 31), 1.0, 3), 0); // 0.488…
    EXPECT_EQ(SteppedValue(ControlChange(7, 32), 1.0, 3), 1); // 0.503…
    EXPECT_EQ(SteppedValue(ControlChange(7, 127), 1.0, 3), 2);
    EXPECT_EQ(SteppedValue({0xE0, 0, 127}, 1.0, 3), 2);
    EXPECT_EQ(StateAtPosition(127, kIntMax), kIntMax - 1);
}

TEST(MidiValue, PlacesAmongNoStatesAreNone) {
    EXPECT_EQ(StateAtPosition(127, 0), kMidiValue_None);
    EXPECT_EQ(StateAtPosition(0, 0), kMidiValue_None);
    EXPECT_EQ(StateAtPosition(1, kIntMin), kMidiValue_None);
    EXPECT_EQ(StateAtPosition(0xFF, 3), 2); // seven bits count
}

TEST(CalculateNextState, SpreadsControllerValuesOverStates) {
    EXPECT_EQ(CalculateNextState(4, 99, 0), 0);
    EXPECT_EQ(CalculateNextState(4, 99, 31), 0);
    EXPECT_EQ(CalculateNextState(4, 99, 32), 1);
    EXPECT_EQ(CalculateNextState(4, 99, 127), 3);
}

TEST(CalculateNextState, NeverGivesMoreThanTheNumberOfStates) {
    EXPECT_EQ(CalculateNextState(4, 0, 128), 4);
    EXPECT_EQ(CalculateNextState(4, 0, 1000), 4);
    EXPECT_EQ(CalculateNextState(kIntMax, 0, kIntMax), kIntMax);
}

TEST(CalculateNextState, OfNoStatesIsZero) {
    EXPECT_EQ(CalculateNextState(0, 0, 127), 0);
    EXPECT_EQ(CalculateNextState(0, 0, kIntMin), 0);
}

TEST(CalculateNextState, StaysDefinedForNegativeNumbers) {
    EXPECT_EQ(CalculateNextState(4, 0, -64), -2);
    EXPECT_EQ(CalculateNextState(-4, 0, 64), -4);
    EXPECT_EQ(CalculateNextState(kIntMin, 0, kIntMax), kIntMin);
    EXPECT_EQ(CalculateNextState(kIntMin, 0, kIntMin), kIntMin);
    EXPECT_EQ(CalculateNextState(kIntMax, 0, kIntMin), kIntMin);
}

// The step of 14 states, 128/14, is a little too large in single precision: 64 falls just short of the seventh.
TEST(CalculateNextState, DecidesBySinglePrecisionWhereDoublePrecisionDiffers) {
    EXPECT_EQ(static_cast<int>(64 / (128.0 / 14)), 7);
    EXPECT_EQ(CalculateNextState(14, 0, 64), 6);
}

TEST(CalculateNextState, AgreesWithRoundingEachOperationOnce) {
    for (int numStates = 1; numStates <= 2000; ++numStates)
        for (int value = 0; value < 128; ++value)
            ASSERT_EQ(CalculateNextState(numStates, 0, value), CalculatedByRoundingDoubles(numStates, value))
                << numStates << ", " << value;
}

TEST(MidiValue, AnyEventAndAnyStateStayInRange) {
    std::mt19937_64 engine(3);
    std::uniform_int_distribution<int> bytes(0, 255), counts(1, 40);
    std::uniform_real_distribution<double> states(-10.0, 1010.0);
    for (int i = 0; i < 50000; ++i) {
        const auto byte = [&] { return static_cast<uint8_t>(bytes(engine)); };
        const KorvoMidiEvent event(byte(), byte() & 0x7F, byte() & 0x7F);
        const int numStates = counts(engine), state = SteppedValue(event, states(engine), numStates);
        ASSERT_TRUE(state >= kMidiValue_None && state < numStates);
        ASSERT_TRUE(ContinuousValue(event) >= 0 && ContinuousValue(event) <= 1000);
    }
}

TEST(MidiValue, TakesNothingFromTheHeap) {
    const kvTest::AllocationCount count;
    const int value =
        SteppedValue(NoteOn(1), 1.0, 3) + ContinuousValue(ControlChange(7, 1)) + CalculateNextState(3, 0, 64);
    EXPECT_EQ(count.Taken(), 0u);
    EXPECT_EQ(value, 2 + 7 + 1);
}
