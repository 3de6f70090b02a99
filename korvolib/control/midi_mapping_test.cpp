#include <korvolib/control/midi_mapping.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <optional>
#include <random>

#include <gtest/gtest.h>

#include <korvolib/control/midi_value.h>
#include <tests/support/allocation_count.h>

using namespace kvKorvoV12_9_0_320::kvMIDI;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

sMIDI_MAPPING Range(double low, double high, double curve = 1.0) { return {low, high, curve, kMidiTakeOver_Jump}; }

sMIDI_MAPPING PickUp() { return {.takeOver = kMidiTakeOver_PickUp}; }

uint64_t Bits(double value) { return std::bit_cast<uint64_t>(value); }

// One knob on one control, as a manager drives it.
struct sKnob {
    double control;
    sMIDI_MAPPING mapping = PickUp();
    KCMidiTakeOverState state{};

    bool Turn(double incoming) {
        if (!ShouldTakeOver(mapping, state, control, incoming))
            return false;
        control = std::floor(incoming); // what the control makes of it
        state.NoteDriven(control);
        return true;
    }
};

// The rule of pick-up told as a story: everything that has happened is kept and looked at.
class PickUpModel {
  public:
    bool MayDrive(double control, double incoming) {
        const bool isUntouched = m_left.has_value() && *m_left == control;
        const bool isClose = std::max(control, incoming) - std::min(control, incoming) <= 7.874015748031496;
        bool isPassed = false;
        if (m_before.has_value())
            isPassed =
                (*m_before <= control && control <= incoming) || (*m_before >= control && control >= incoming);
        m_before = incoming;
        return isUntouched || isClose || isPassed;
    }
    void Left(double control) { m_left = control; }

  private:
    std::optional<double> m_left, m_before;
};

} // namespace

TEST(MidiMapping, TheDefaultIsTheValueBitForBit) {
    std::mt19937_64 engine(5);
    for (int i = 0; i < 10000; ++i) {
        const double value = std::bit_cast<double>(engine());
        ASSERT_EQ(Bits(ApplyMidiMapping({}, value)), Bits(value));
    }
    for (int data2 = 0; data2 < 256; ++data2)
        for (int numStates = -1; numStates < 20; ++numStates)
            ASSERT_EQ(MappedStateAtPosition({}, static_cast<uint8_t>(data2), numStates),
                      StateAtPosition(static_cast<uint8_t>(data2), numStates));
}

TEST(MidiMapping, ARangeIsReachedExactlyAtItsEnds) {
    EXPECT_EQ(ApplyMidiMapping(Range(100.1, 899.9), 0.0), 100.1);
    EXPECT_EQ(ApplyMidiMapping(Range(100.1, 899.9), 1000.0), 899.9);
    EXPECT_DOUBLE_EQ(ApplyMidiMapping(Range(200.0, 600.0), 500.0), 400.0);
}

TEST(MidiMapping, LowAboveHighTurnsTheControllerRound) {
    EXPECT_EQ(ApplyMidiMapping(Range(1000.0, 0.0), 0.0), 1000.0);
    EXPECT_EQ(ApplyMidiMapping(Range(1000.0, 0.0), 1000.0), 0.0);
    EXPECT_DOUBLE_EQ(ApplyMidiMapping(Range(900.0, 100.0), 250.0), 700.0);
}

TEST(MidiMapping, ARangeOfOnePointStaysThere) {
    EXPECT_EQ(ApplyMidiMapping(Range(300.0, 300.0), 0.0), 300.0);
    EXPECT_EQ(ApplyMidiMapping(Range(300.0, 300.0), 777.0), 300.0);
}

TEST(MidiMapping, ACurveBendsTheWayButNotItsEnds) {
    EXPECT_DOUBLE_EQ(ApplyMidiMapping(Range(0.0, 1000.0, 2.0), 500.0), 250.0);
    EXPECT_DOUBLE_EQ(ApplyMidiMapping(Range(0.0, 1000.0, 0.5), 250.0), 500.0);
    EXPECT_EQ(ApplyMidiMapping(Range(0.0, 1000.0, 2.0), 0.0), 0.0);
    EXPECT_EQ(ApplyMidiMapping(Range(0.0, 1000.0, 2.0), 1000.0), 1000.0);
}

TEST(MidiMapping, WhatIsOutOfRangeCountsAsTheNearestEnd) {
    EXPECT_EQ(ApplyMidiMapping(Range(-5.0, 2000.0), 400.0), 400.0);
    EXPECT_EQ(ApplyMidiMapping(Range(-kInf, 500.0), 0.0), 0.0);
    EXPECT_EQ(ApplyMidiMapping(Range(100.0, 200.0), 1001.0), 200.0);
    EXPECT_EQ(ApplyMidiMapping(Range(100.0, 200.0), -1.0), 100.0);
    EXPECT_EQ(ApplyMidiMapping(Range(0.0, 500.0, 1e9), 900.0), ApplyMidiMapping(Range(0.0, 500.0, 10.0), 900.0));
    EXPECT_EQ(ApplyMidiMapping(Range(0.0, 500.0, -3.0), 900.0), ApplyMidiMapping(Range(0.0, 500.0, 0.1), 900.0));
}

TEST(MidiMapping, NotANumberCountsAsTheDefault) {
    EXPECT_EQ(ApplyMidiMapping(Range(kNaN, kNaN, kNaN), 123.4), 123.4);
    EXPECT_DOUBLE_EQ(ApplyMidiMapping(Range(kNaN, 500.0), 500.0), 250.0);
    EXPECT_TRUE(std::isnan(ApplyMidiMapping(Range(100.0, 200.0), kNaN)));
}

TEST(MidiMapping, AnyMappingStaysBetweenItsEndsAndKeepsTheOrder) {
    std::mt19937_64 engine(6);
    std::uniform_real_distribution<double> values(0.0, 1000.0), curves(0.1, 10.0);
    for (int i = 0; i < 20000; ++i) {
        const sMIDI_MAPPING mapping = Range(values(engine), values(engine), curves(engine));
        const double lower = values(engine), upper = std::min(1000.0, lower + values(engine));
        const double atLower = ApplyMidiMapping(mapping, lower), atUpper = ApplyMidiMapping(mapping, upper);
        ASSERT_EQ(std::clamp(atLower, std::min(mapping.low, mapping.high), std::max(mapping.low, mapping.high)),
                  atLower);
        ASSERT_TRUE(mapping.low <= mapping.high ? atLower <= atUpper : atLower >= atUpper);
        const double plain =
            mapping.low + (mapping.high - mapping.low) * std::exp(std::log(lower / 1000.0) * mapping.curve);
        ASSERT_NEAR(atLower, plain, 1e-9);
    }
}

TEST(MidiMapping, StatesFollowTheRange) {
    EXPECT_EQ(MappedStateAtPosition(Range(1000.0, 0.0), 0, 5), 4);
    EXPECT_EQ(MappedStateAtPosition(Range(1000.0, 0.0), 127, 5), 0);
    EXPECT_EQ(MappedStateAtPosition(Range(250.0, 500.0), 0, 5), 1);
    EXPECT_EQ(MappedStateAtPosition(Range(250.0, 500.0), 127, 5), 2);
    EXPECT_EQ(MappedStateAtPosition(Range(250.0, 500.0), 0x80, 5), 1); // seven bits count
    EXPECT_EQ(MappedStateAtPosition(Range(250.0, 500.0), 127, 0), kMidiValue_None);
}

TEST(MidiTakeOver, AJumpDrivesAtOnce) {
    sKnob knob{500.0, {}};
    EXPECT_TRUE(knob.Turn(0.0));
    knob.control = 900.0;
    EXPECT_TRUE(knob.Turn(1.0));
}

TEST(MidiTakeOver, APickUpWaitsUntilTheControlIsReached) {
    sKnob knob{500.0};
    EXPECT_FALSE(knob.Turn(100.0));
    EXPECT_FALSE(knob.Turn(490.0));
    EXPECT_TRUE(knob.Turn(496.0));
    EXPECT_TRUE(knob.Turn(700.0));
}

TEST(MidiTakeOver, AFastTurnPicksUpWhatItPasses) {
    sKnob knob{500.0};
    EXPECT_FALSE(knob.Turn(100.0));
    EXPECT_TRUE(knob.Turn(900.0));
    EXPECT_EQ(knob.control, 900.0);
}

TEST(MidiTakeOver, PassesDownwardToo) {
    sKnob knob{500.0};
    EXPECT_FALSE(knob.Turn(900.0));
    EXPECT_TRUE(knob.Turn(100.0));
}

TEST(MidiTakeOver, OneControllerStepIsNearEnough) {
    EXPECT_TRUE(sKnob{500.0}.Turn(500.0 + 1000.0 / 127.0 - 1e-6));
    EXPECT_FALSE(sKnob{500.0}.Turn(500.0 + 1000.0 / 127.0 + 1e-6));
    EXPECT_TRUE(sKnob{500.0}.Turn(500.0 - 1000.0 / 127.0 + 1e-6));
}

TEST(MidiTakeOver, AControlThatMovedElsewhereMustBePickedUpAgain) {
    sKnob knob{500.0};
    EXPECT_TRUE(knob.Turn(500.5));
    EXPECT_TRUE(knob.Turn(800.5)); // held: leaps are the player's
    knob.control = 200.0;          // the hand in the window
    EXPECT_FALSE(knob.Turn(700.0));
    EXPECT_EQ(knob.control, 200.0);
    EXPECT_TRUE(knob.Turn(150.0));
}

TEST(MidiTakeOver, AResetLetsGo) {
    sKnob knob{500.0};
    EXPECT_TRUE(knob.Turn(500.5));
    knob.state.Reset();
    EXPECT_FALSE(knob.Turn(900.0));
}

TEST(MidiTakeOver, NotANumberNeverDrivesAndIsForgotten) {
    sKnob knob{500.0};
    EXPECT_FALSE(knob.Turn(100.0));
    EXPECT_FALSE(knob.Turn(kNaN));
    EXPECT_TRUE(knob.Turn(900.0));
    EXPECT_FALSE((sKnob{500.0, {}}.Turn(kNaN)));
    EXPECT_FALSE(sKnob{kNaN}.Turn(500.0));
}

TEST(MidiTakeOver, AgreesWithAPlainModelOverRandomHands) {
    std::mt19937_64 engine(9);
    std::uniform_real_distribution<double> values(0.0, 1000.0), near(-40.0, 40.0);
    std::uniform_int_distribution<int> coins(0, 3);
    int numDriven = 0;
    for (int run = 0; run < 500; ++run) {
        sKnob knob{values(engine)};
        PickUpModel model;
        for (int i = 0; i < 40; ++i) {
            if (coins(engine) == 0)
                knob.control = values(engine);
            const double incoming = coins(engine) != 0 ? knob.control + near(engine) : values(engine);
            const bool mayDrive = model.MayDrive(knob.control, incoming);
            ASSERT_EQ(knob.Turn(incoming), mayDrive);
            if (mayDrive)
                model.Left(knob.control);
            numDriven += mayDrive;
        }
    }
    EXPECT_GT(numDriven, 1000);
    EXPECT_LT(numDriven, 19000);
}

TEST(MidiMapping, TakesNothingFromTheHeap) {
    sKnob knob{500.0};
    const kvTest::AllocationCount count;
    const bool isDriven = knob.Turn(ApplyMidiMapping(Range(400.0, 600.0, 2.0), 700.0));
    EXPECT_EQ(count.Taken(), 0u);
    EXPECT_TRUE(isDriven);
}
