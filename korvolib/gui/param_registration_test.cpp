#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <type_traits>

#include <korvolib/gui/gui_test_internal.h>
#include <korvolib/gui/param_registration.h>
#include <tests/support/allocation_count.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

using Registration = KCParamRegistrationData;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
const KCRegisterInfo kDragged(kRegister_DragVertical);

class RegistrationTest : public testing::Test {
  protected:
    RegistrationTest() : algorithm(ThreeParams()) {
        algorithm.FinishCreate();
        algorithm.TakeLog();
    }
    double Drag(Registration& record, double delta) {
        EXPECT_EQ(record.OffsetParamValue(delta, kRegister_DragVertical), nullptr); // the plug-in gives no blocks
        return record.GetValue();
    }

    RecordingAlgorithm algorithm;
    Registration gain{&algorithm, 0, kDragged};
    Registration mode{&algorithm, 1, kDragged};
    Registration angle{&algorithm, 2, kDragged};
};

static_assert(std::is_nothrow_move_constructible_v<Registration>, "a growing list would copy, and lose holds");

// What it is bound to ---------------------------------------------------------------------------------------------

TEST_F(RegistrationTest, BeginsAtTheStateOfItsParameter) {
    algorithm.UpdateParamState(0, 321.0, false);
    const Registration record(&algorithm, 0, kDragged);
    EXPECT_EQ(record.GetValue(), 321.0);
    EXPECT_EQ(record.GetParamID(), 0u);
    EXPECT_EQ(record.GetRegisteredParamName(), "Gain");
}

TEST_F(RegistrationTest, UnboundReadsAsNothingAndMovesNothing) {
    Registration nowhere;
    Registration beyond(&algorithm, 3, kDragged);
    for (Registration* record : {&nowhere, &beyond}) {
        EXPECT_FALSE(record->IsBound());
        EXPECT_TRUE(record->IsUnused());
        EXPECT_EQ(record->SetParamValue(500.0), nullptr);
        EXPECT_EQ(record->UpdateParamValue(), nullptr);
        EXPECT_EQ(record->ResetParam(), nullptr);
        EXPECT_EQ(record->OffsetParamValue(1.0, kRegister_DragVertical), nullptr);
        EXPECT_EQ(record->OffsetParamValueToNextDifferentValue(1.0, kRegister_DragVertical), nullptr);
        EXPECT_EQ(record->OffsetToNextDifferentState(1.0), 0.0);
        record->Touch();
        record->SetParamToUpdateFlag();
        EXPECT_FALSE(record->ShouldSendTouch());
        record->Release();
        EXPECT_EQ(record->GetValue(), 0.0);
        EXPECT_EQ(record->GetRegisteredParamName(), "");
        EXPECT_EQ(record->GetNumStates(), 0);
        EXPECT_EQ(record->GetLastState(), 1000.0);
        EXPECT_EQ(record->StateToRealWorld(500.0) + record->RealWorldToState(5.0), 0.0);
        EXPECT_EQ(record->UpdateMouseDeltaStep(3.0), 0.0);
        EXPECT_FALSE(record->IsParamSavableToUndo());
        EXPECT_FALSE(record->DoesNewStateChangeRealWorld(500.0));
        EXPECT_FALSE(record->IsActiveControllerParameterDiscrete());
        EXPECT_EQ(record->GetActiveControllerParameterStateStep(), 0.0);
        EXPECT_FALSE(record->IsLinkGroupEnabled(1));
    }
    EXPECT_TRUE(algorithm.TakeLog().empty());
}

TEST_F(RegistrationTest, AnsweringToAnyOfSeveralGesturesIsEnough) {
    gain.SetRegisterFlag(kRegister_Wheel, true);
    EXPECT_TRUE(gain.IsRegisteredToTypes({kRegister_Keys, kRegister_Wheel}));
    EXPECT_FALSE(gain.IsRegisteredToTypes({kRegister_Keys, kRegister_Text}));
    EXPECT_FALSE(gain.IsRegisteredToTypes({}));
    EXPECT_FALSE(gain.IsOptionReset());
    gain.SetRegisterFlag(kRegister_ResetOnPress, true);
    EXPECT_TRUE(gain.IsOptionReset());
    EXPECT_FALSE(gain.IsRegisteredToUpdateController());
}

TEST_F(RegistrationTest, ModifiersAreSetOneByOne) {
    gain.SetRegisterModifier(KEModifier::Shift, true);
    gain.SetRegisterModifier(KEModifier::Alt, true);
    gain.SetRegisterModifier(KEModifier::Shift, false);
    EXPECT_TRUE(gain.GetRegisterModifier(KEModifier::Alt));
    EXPECT_FALSE(gain.GetRegisterModifier(KEModifier::Shift));
    EXPECT_EQ(gain.GetRegisterInfo().GetModifiers(), KUModifiers(KEModifier::Alt));
}

TEST_F(RegistrationTest, FactorsThatAreNotFiniteAreIgnored) {
    gain.SetSensitivity(0.5);
    gain.SetHoverDelay(300.0);
    for (const double bad : {kNaN, kInfinity, -kInfinity}) {
        gain.SetSensitivity(bad);
        gain.SetHoverDelay(bad);
    }
    EXPECT_EQ(gain.GetSensitivity(), 0.5);
    EXPECT_EQ(gain.GetHoverDelay(), 300.0);
    gain.SetHoverDelay(-1.0);
    EXPECT_EQ(gain.GetHoverDelay(), 0.0);
}

// Moving ----------------------------------------------------------------------------------------------------------

TEST_F(RegistrationTest, DragOfAContinuousParameterStopsAtTheEnds) {
    EXPECT_EQ(Drag(gain, 400.0), 400.0);
    EXPECT_EQ(Drag(gain, 600.0), 1000.0);
    EXPECT_EQ(Drag(gain, 0.5), 1000.0);
    EXPECT_EQ(Drag(gain, -1000.0), 0.0);
    EXPECT_EQ(Drag(gain, -0.5), 0.0);
    EXPECT_EQ(algorithm.GetParamState(0), 0.0);
}

TEST_F(RegistrationTest, DragOfARoundParameterGoesRoundTheEnd) {
    EXPECT_EQ(Drag(angle, 900.0), 900.0);
    EXPECT_EQ(Drag(angle, 200.0), 100.0);
    EXPECT_EQ(Drag(angle, -300.0), 800.0);
    EXPECT_EQ(Drag(angle, 200.0), 1000.0); // exactly at the end: not beyond it yet
    EXPECT_EQ(Drag(angle, 1000.0), 1000.0);
    EXPECT_EQ(Drag(angle, 5000.0), 1000.0); // whole turns
    EXPECT_EQ(Drag(angle, -1000.0), 0.0);
    EXPECT_EQ(Drag(angle, -3000.0), 0.0);
    EXPECT_EQ(algorithm.GetParamState(2), 0.0);
}

TEST_F(RegistrationTest, TinyStepBelowARoundEndStaysInRange) {
    const double value = Drag(angle, -1e-300);
    EXPECT_GE(value, 0.0);
    EXPECT_LE(value, 1000.0);
}

TEST_F(RegistrationTest, SmallMovementsOfADiscreteParameterAddUp) {
    EXPECT_EQ(Drag(mode, 0.25), 0.25);
    EXPECT_EQ(algorithm.GetParamState(1), 0.0);
    EXPECT_EQ(Drag(mode, 0.25), 0.5); // halves settle upwards
    EXPECT_EQ(algorithm.GetParamState(1), 1.0);
    EXPECT_EQ(Drag(mode, 0.25), 0.75);
    EXPECT_EQ(algorithm.GetParamState(1), 1.0);
}

TEST_F(RegistrationTest, DragOfADiscreteParameterStopsAtItsLastState) {
    EXPECT_EQ(Drag(mode, 7.0), 4.0);
    EXPECT_EQ(algorithm.GetParamState(1), 4.0);
    EXPECT_EQ(Drag(mode, 1.0), 4.0); // no going round, though stepping would
    EXPECT_EQ(Drag(mode, -9.0), 0.0);
}

TEST_F(RegistrationTest, SteppingADiscreteParameterGoesRound) {
    bool hasChanged = false;
    mode.OffsetParamValueToNextDifferentValue(-1.0, kRegister_DragVertical, &hasChanged);
    EXPECT_TRUE(hasChanged);
    EXPECT_EQ(mode.GetValue(), 4.0);
    mode.OffsetParamValueToNextDifferentValue(1.0, kRegister_DragVertical, &hasChanged);
    EXPECT_EQ(mode.GetValue(), 0.0);
}

TEST_F(RegistrationTest, SteppingStartsFromTheParametersOwnState) {
    Drag(mode, 1.4);
    mode.OffsetParamValueToNextDifferentValue(1.0, kRegister_DragVertical);
    EXPECT_EQ(mode.GetValue(), 2.0);
}

TEST_F(RegistrationTest, SteppingInNoDirectionDoesNothing) {
    bool hasChanged = true;
    for (const double direction : {0.0, kNaN}) {
        EXPECT_EQ(gain.OffsetParamValueToNextDifferentValue(direction, kRegister_DragVertical, &hasChanged),
                  nullptr);
        EXPECT_FALSE(hasChanged);
    }
    EXPECT_TRUE(algorithm.TakeLog().empty());
}

TEST_F(RegistrationTest, OffsetToldByAnotherGestureIsIgnored) {
    bool hasChanged = true;
    EXPECT_EQ(gain.OffsetParamValue(10.0, kRegister_Wheel, &hasChanged), nullptr);
    EXPECT_FALSE(hasChanged);
    hasChanged = true;
    EXPECT_EQ(gain.OffsetParamValueToNextDifferentValue(1.0, kRegister_Wheel, &hasChanged), nullptr);
    EXPECT_FALSE(hasChanged);
    EXPECT_TRUE(algorithm.TakeLog().empty());
}

TEST_F(RegistrationTest, DeltaThatIsNoNumberChangesNothing) {
    Drag(gain, 400.0);
    algorithm.TakeLog();
    for (const double bad : {kNaN, kInfinity, -kInfinity})
        EXPECT_EQ(Drag(gain, bad), 400.0);
    EXPECT_TRUE(algorithm.TakeLog().empty());
    EXPECT_EQ(Drag(gain, std::numeric_limits<double>::max()), 1000.0);
    const double value = Drag(angle, -std::numeric_limits<double>::max());
    EXPECT_GE(value, 0.0);
    EXPECT_LE(value, 1000.0);
}

TEST_F(RegistrationTest, SaysWhetherTheStoredValueMoved) {
    bool hasChanged = false;
    mode.OffsetParamValue(0.25, kRegister_DragVertical, &hasChanged);
    EXPECT_TRUE(hasChanged); // the parameter did not
    gain.OffsetParamValue(-5.0, kRegister_DragVertical, &hasChanged);
    EXPECT_FALSE(hasChanged);
}

TEST_F(RegistrationTest, GivesTheChainOfItsChange) {
    algorithm.givesBlocks = true;
    cALGORITHM::BUFFER_HEADER* chain = gain.OffsetParamValue(400.0, kRegister_DragVertical);
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(*static_cast<double*>(chain->Payload()), algorithm.GetParamRealWorld(0));
    algorithm.ExecuteAndDisposeBuffer(chain);
    EXPECT_EQ(gain.OffsetParamValue(0.0, kRegister_DragVertical), nullptr);
}

TEST_F(RegistrationTest, MovesAsAGestureThatIsNotified) {
    gain.SetParamValue(400.0);
    EXPECT_EQ(algorithm.TakeLog(), (std::vector<std::string>{"apply 0", "modified A", "notify 0"}));
}

TEST_F(RegistrationTest, StoringAloneMovesNothing) {
    gain.SetValue(400.0);
    EXPECT_EQ(algorithm.GetParamState(0), 0.0);
    gain.UpdateParamValue();
    EXPECT_EQ(algorithm.GetParamState(0), 400.0);
    gain.SetValue(kNaN);
    EXPECT_EQ(gain.GetValue(), 400.0);
    gain.SetValue(1e300);
    EXPECT_EQ(gain.GetValue(), 1000.0);
    gain.SetValue(-kInfinity);
    EXPECT_EQ(gain.GetValue(), 0.0);
}

TEST_F(RegistrationTest, SettingIsLimitedToTheTravelOfTheParameter) {
    gain.SetParamValue(1200.0);
    EXPECT_EQ(algorithm.GetParamState(0), 1000.0);
    mode.SetParamValue(1000.0); // five states
    EXPECT_EQ(algorithm.GetParamState(1), 4.0);
    EXPECT_EQ(mode.GetValue(), 4.0);
    mode.SetParamValue(kNaN);
    EXPECT_EQ(mode.GetValue(), 4.0);
}

TEST_F(RegistrationTest, ResetGoesToTheResetState) {
    algorithm.SetParamResetState(0, 250.0);
    gain.ResetParam();
    EXPECT_EQ(gain.GetValue(), 250.0);
    EXPECT_EQ(algorithm.GetParamState(0), 250.0);
}

TEST_F(RegistrationTest, MovingTakesNothingFromTheHeap) {
    algorithm.log.reserve(64);
    Drag(gain, 1.0);
    algorithm.log.clear();
    const AllocationCount count;
    gain.OffsetParamValue(3.0, kRegister_DragVertical);
    mode.OffsetParamValueToNextDifferentValue(1.0, kRegister_DragVertical);
    gain.FollowParam();
    EXPECT_EQ(count.Taken(), 0u);
}

// Following -------------------------------------------------------------------------------------------------------

TEST_F(RegistrationTest, KeepsWhatTheStateOfTheParameterWasMadeOf) {
    mode.SetValue(2.4);
    algorithm.UpdateParamState(1, 2.0, false);
    mode.FollowParam();
    EXPECT_EQ(mode.GetValue(), 2.4);
}

TEST_F(RegistrationTest, FollowsAParameterThatWentElsewhere) {
    mode.SetValue(2.4);
    algorithm.UpdateParamState(1, 3.0, false);
    mode.FollowParam();
    EXPECT_EQ(mode.GetValue(), 3.0);
}

TEST_F(RegistrationTest, FollowsTheActiveSetup) {
    gain.SetParamValue(400.0);
    algorithm.SetActiveSetup(kPluginSetup_B);
    gain.FollowParam();
    EXPECT_EQ(gain.GetValue(), 0.0);
}

TEST_F(RegistrationTest, StateThatIsNoNumberIsNotFollowed) {
    gain.SetValue(400.0);
    algorithm.GetParam(0)->SetState(kPluginSetup_A, kNaN);
    gain.FollowParam();
    EXPECT_EQ(gain.GetValue(), 400.0);
    algorithm.GetParam(0)->SetState(kPluginSetup_A, 1e9);
    gain.FollowParam();
    EXPECT_EQ(gain.GetValue(), 1000.0);
}

// Gestures --------------------------------------------------------------------------------------------------------

TEST_F(RegistrationTest, TouchesAndReleasesOnce) {
    EXPECT_TRUE(gain.ShouldSendTouch());
    gain.Touch();
    gain.Touch();
    EXPECT_FALSE(gain.ShouldSendTouch());
    gain.Release();
    gain.Release();
    EXPECT_EQ(algorithm.TakeLog(), (std::vector<std::string>{"touch 0", "release 0"}));
}

TEST_F(RegistrationTest, EndOfADragReleasesAndForgetsResidues) {
    gain.Touch();
    gain.GetDragResidue(0) = 17.0;
    gain.GetDragResidue(1) = 18.0;
    gain.FinishDragParam();
    EXPECT_EQ(gain.GetDragResidue(0) + gain.GetDragResidue(1), 0.0);
    EXPECT_EQ(algorithm.TakeLog(), (std::vector<std::string>{"touch 0", "release 0"}));
}

TEST_F(RegistrationTest, AnotherParameterReleasesTheOneBefore) {
    gain.Touch();
    gain.SetRegisteredParam(&algorithm, 2);
    EXPECT_EQ(algorithm.TakeLog(), (std::vector<std::string>{"touch 0", "release 0"}));
    EXPECT_TRUE(gain.ShouldSendTouch());
}

TEST_F(RegistrationTest, EndOfTheRecordReleases) {
    {
        Registration record(&algorithm, 0, kDragged);
        record.Touch();
        const Registration copy = record; // holds nothing
    }
    EXPECT_EQ(algorithm.TakeLog(), (std::vector<std::string>{"touch 0", "release 0"}));
    gain.Touch();
    gain.Reset();
    EXPECT_EQ(algorithm.TakeLog(), (std::vector<std::string>{"touch 0", "release 0"}));
    EXPECT_FALSE(gain.IsBound());
}

TEST_F(RegistrationTest, HoldMovesWithItsRecord) {
    gain.Touch();
    Registration moved = std::move(gain);
    EXPECT_FALSE(moved.ShouldSendTouch());
    mode = mode; // NOLINT(clang-diagnostic-self-assign-overloaded): a hold survives it
    moved.Release();
    EXPECT_EQ(algorithm.TakeLog(), (std::vector<std::string>{"touch 0", "release 0"}));
}

TEST_F(RegistrationTest, AssigningOverATouchedRecordReleasesIt) {
    gain.Touch();
    gain = mode;
    EXPECT_EQ(algorithm.TakeLog(), (std::vector<std::string>{"touch 0", "release 0"}));
    EXPECT_EQ(gain.GetParamIndex(), 1u);
}

// Questions -------------------------------------------------------------------------------------------------------

TEST_F(RegistrationTest, LastStateIsOfTheScale) {
    EXPECT_EQ(gain.GetLastState(), 1000.0);
    EXPECT_EQ(mode.GetLastState(), 4.0);
    sCONTROL_PARAM& param = *algorithm.GetParam(1);
    param.SetStateStep(300.0);
    EXPECT_EQ(mode.GetLastState(), 1000.0);
    param.SetStateStep(kNaN);
    EXPECT_EQ(mode.GetLastState(), 1000.0);
    param.SetStateStep(1.0);
    param.SetNumStates(0);
    EXPECT_EQ(mode.GetLastState(), 1000.0);
}

TEST_F(RegistrationTest, TypedTextBecomesAState) {
    double state = -1.0;
    EXPECT_TRUE(gain.TranslateValue(KCFixedString<31>("5"), state));
    EXPECT_EQ(state, 500.0);
    EXPECT_TRUE(mode.TranslateValue(KCFixedString<31>("90"), state));
    EXPECT_LE(state, 4.0);
    state = -1.0;
    EXPECT_FALSE(gain.TranslateValue(KCFixedString<31>("loud"), state));
    EXPECT_FALSE(gain.TranslateValue(KCFixedString<31>(""), state));
    EXPECT_EQ(state, -1.0);
}

TEST_F(RegistrationTest, NewStateChangesTheValueOnlyWhenItSettlesElsewhere) {
    EXPECT_FALSE(mode.DoesNewStateChangeRealWorld(0.4));
    EXPECT_TRUE(mode.DoesNewStateChangeRealWorld(0.5));
    EXPECT_FALSE(mode.DoesNewStateChangeRealWorld(kNaN));
    EXPECT_TRUE(gain.DoesNewStateChangeRealWorld(1e300));
    EXPECT_FALSE(gain.DoesNewStateChangeRealWorld(-1e300));
}

TEST_F(RegistrationTest, PixelsGoThroughTheParametersOwnFunction) {
    EXPECT_EQ(gain.UpdateMouseDeltaStep(3.0), 3.0);
    algorithm.GetParam(0)->SetMouseDeltaFunc([](double delta, double) { return delta / 0.0; });
    EXPECT_EQ(gain.UpdateMouseDeltaStep(3.0), 0.0);
    EXPECT_EQ(mode.UpdateMouseDeltaStep(kNaN), 0.0);
}

TEST_F(RegistrationTest, AsksTheParameter) {
    EXPECT_TRUE(mode.IsActiveControllerParameterDiscrete());
    EXPECT_EQ(mode.GetActiveControllerParameterStateStep(), 1.0);
    EXPECT_EQ(mode.GetNumStates(), 5);
    EXPECT_EQ(gain.GetScaleInfo().b, 10.0 / 1000.0);
    EXPECT_TRUE(gain.IsParamSavableToUndo());
    EXPECT_FALSE(gain.IsUnused());
    gain.SetParamToUpdateFlag();
    EXPECT_EQ(algorithm.GetParam(0)->GetRefreshMark(), kRefreshMark);
    algorithm.GetParam(0)->SetFlags(kParamFlag_Unused);
    EXPECT_TRUE(gain.IsUnused());
}

TEST_F(RegistrationTest, LinkGroupIsNamedOnce) {
    gain.AddParamLinkGroup(7);
    gain.AddParamLinkGroup(3);
    gain.AddParamLinkGroup(7);
    EXPECT_EQ(gain.GetParamLinkGroups(), (std::vector<int>{7, 3}));
    EXPECT_FALSE(gain.IsLinkGroupEnabled(7)); // nobody has made it
}

// A slow and obvious model over many random movements
// ----------------------------------------------------------------

// The travel as whole eighths of a state, which are exact in binary, walked one by one: at an end it stops, or
// comes in at the other.
int64_t WalkedBy(int64_t at, int64_t delta, int64_t last, bool isRound) {
    for (; delta > 0; --delta)
        at = at < last ? at + 1 : (isRound ? 1 : last);
    for (; delta < 0; ++delta)
        at = at > 0 ? at - 1 : (isRound ? last - 1 : 0);
    return at;
}

int64_t Eighths(double state) { return std::llround(state * 8.0); }

void WalkTogether(RecordingAlgorithm& algorithm, Registration& record, bool isRound, unsigned seed, int numSteps) {
    std::mt19937 random(seed);
    const int64_t last = Eighths(record.GetLastState());
    int64_t model = Eighths(record.GetValue());
    std::uniform_int_distribution<int64_t> eighths(-last * 5 / 4, last * 5 / 4);
    for (int step = 0; step < numSteps; ++step) {
        const double delta = static_cast<double>(eighths(random)) / 8.0;
        record.OffsetParamValue(delta, kRegister_DragVertical);
        algorithm.log.clear();
        model = WalkedBy(model, Eighths(delta), last, isRound);
        ASSERT_EQ(Eighths(record.GetValue()), model) << "step " << step << " by " << delta;
        const double state = algorithm.GetParamState(record.GetParamIndex());
        const double settled =
            record.IsActiveControllerParameterDiscrete() ? std::floor(record.GetValue() + 0.5) : record.GetValue();
        ASSERT_EQ(state, settled) << "step " << step;
    }
}

TEST_F(RegistrationTest, WalksAsAModelThatStops) { WalkTogether(algorithm, gain, false, 1, 3000); }
TEST_F(RegistrationTest, WalksAsAModelThatGoesRound) { WalkTogether(algorithm, angle, true, 2, 3000); }
TEST_F(RegistrationTest, WalksAsAModelOfStates) { WalkTogether(algorithm, mode, false, 3, 20000); }

} // namespace
} // namespace kvTest
