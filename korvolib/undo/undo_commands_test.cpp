#include <korvolib/undo/undo_commands.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include <gmock/gmock.h>

#include <korvolib/presets/preset_values.h>
#include <korvolib/undo/undo_manager.h>
#include <tests/support/recording_algorithm.h>

namespace {

using namespace kvTest;
using namespace kvKorvo::Undo;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const Command& Base(const Command& command) { return command; }

struct PartlySaved : RecordingAlgorithm {
    using RecordingAlgorithm::RecordingAlgorithm;
    bool IsParamSavableToUndo(size_t index) const override { return index != 1; }
};

template <class Algorithm>
class CommandsOf : public testing::Test {
  protected:
    CommandsOf() {
        algorithm.FinishCreate();
        manager.setUndoLevel(100);
        Insert(new KCUndoCommandParameters(&algorithm, kUndoAllParams));
        manager.SetClean();
        algorithm.TakeLog();
    }
    void Insert(Command* command) { manager.InsertCommand(ToHandle(command), kInsertToStack_NewStep); }
    void Gesture(uint32_t index, double state) {
        algorithm.UpdateParamRequestState(index, state);
        Insert(new KCUndoCommandParameters(&algorithm, index));
    }
    std::vector<sPARAM_VALUES> Values() const {
        std::vector<sPARAM_VALUES> values(algorithm.GetNumParams());
        algorithm.CaptureParams(0, values.data(), values.size());
        return values;
    }

    Algorithm algorithm{{LinearParam("Gain"), LinearParam("Tilt"), ToggleParam("Mode", 4)}};
    KCUndoManager manager; // dies before the algorithm
};

using UndoCommandParameters = CommandsOf<RecordingAlgorithm>;
using UndoCommandPreset = CommandsOf<RecordingAlgorithm>;
using UndoPartlySaved = CommandsOf<PartlySaved>;

bool SameBits(const std::vector<sPARAM_VALUES>& a, const std::vector<sPARAM_VALUES>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(sPARAM_VALUES)) == 0;
}

TEST_F(UndoCommandParameters, TakesTheNameOfItsParameter) {
    EXPECT_EQ(KCUndoCommandParameters(&algorithm, 1).getName(), "Tilt");
    EXPECT_EQ(KCUndoCommandParameters(&algorithm, 1).getID(), 1u);
    EXPECT_EQ(KCUndoCommandParameters(&algorithm, kUndoAllParams).getName(), "Parameters");
    EXPECT_EQ(KCUndoCommandParameters(&algorithm, 3).getName(), "Parameters");
}

TEST_F(UndoCommandParameters, KindIsAlgorithmAndParameter) {
    RecordingAlgorithm other({LinearParam("Gain"), LinearParam("Tilt")});
    other.FinishCreate();
    const KCUndoCommandParameters tilt(&algorithm, 1), again(&algorithm, 1), gain(&algorithm, 0),
        foreign(&other, 1);
    EXPECT_TRUE(tilt.IsSameType(&again));
    EXPECT_FALSE(tilt.IsSameType(&gain));
    EXPECT_FALSE(tilt.IsSameType(&foreign));
    EXPECT_FALSE(tilt.IsSameType(nullptr));
}

TEST_F(UndoCommandParameters, EqualWhenAllValuesAndTheActiveSetupAreEqual) {
    const KCUndoCommandParameters before(&algorithm, 1), same(&algorithm, 0);
    EXPECT_TRUE(Base(before) == Base(same));
    algorithm.SetActiveSetup(kPluginSetup_B);
    EXPECT_FALSE(Base(before) == Base(KCUndoCommandParameters(&algorithm, 1)));
    algorithm.UpdateParamRequestState(2, 1.0);
    algorithm.SetActiveSetup(kPluginSetup_A);
    EXPECT_FALSE(Base(before) == Base(KCUndoCommandParameters(&algorithm, 1))); // setup B counts too
    algorithm.CopySetup(kPluginSetup_A, kPluginSetup_B);
    EXPECT_TRUE(Base(before) == Base(KCUndoCommandParameters(&algorithm, 1)));
}

TEST_F(UndoCommandParameters, ExecuteIsHeardByPluginDisplayAndHost) {
    Gesture(1, 500.0);
    algorithm.TakeLog();
    for (size_t index = 0; index < 3; ++index)
        algorithm.GetParam(index)->SetRefreshMark(0);
    EXPECT_EQ(manager.Undo(), 0);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 1", "modified A", "notify 1"));
    EXPECT_EQ(algorithm.GetParam(1)->GetRefreshMark(), kRefreshMark);
    EXPECT_EQ(algorithm.GetParam(0)->GetRefreshMark(), 0); // nothing to draw
}

TEST_F(UndoCommandParameters, ExecuteSendsTheBuffersAndTakesThemBack) {
    static std::vector<int32_t> selectors;
    selectors.clear();
    algorithm.SetHostCallback(
        [](int32_t selector, void*, intptr_t chain, intptr_t, intptr_t, intptr_t) -> intptr_t {
            selectors.push_back(selector);
            auto* blocks = reinterpret_cast<KPAPI_PROCESS_MEMORY::BUFFER_HEADER*>(chain);
            if (selector == kHostSelector_Dispose)
                KPAPI_PROCESS_MEMORY::GiveBackChain(blocks);
            return 0;
        },
        nullptr);
    Gesture(1, 500.0);
    algorithm.givesBlocks = true;
    const size_t free = algorithm.GetProcessMemoryPool().GetNumFree();
    manager.Undo();
    EXPECT_THAT(selectors, ElementsAre(kHostSelector_Execute, kHostSelector_Dispose));
    EXPECT_EQ(algorithm.GetProcessMemoryPool().GetNumFree(), free);
}

TEST_F(UndoCommandParameters, ActiveSetupComesBack) {
    algorithm.SetActiveSetup(kPluginSetup_B);
    Gesture(0, 300.0);
    manager.Undo();
    EXPECT_EQ(algorithm.GetActiveSetup(), kPluginSetup_A);
    EXPECT_THAT(algorithm.log, Contains("active A"));
    manager.Redo();
    EXPECT_EQ(algorithm.GetActiveSetup(), kPluginSetup_B);
    EXPECT_EQ(algorithm.GetParamState(0), 300.0);
}

TEST_F(UndoCommandParameters, UndoThenRedoIsTheIdentityBitForBit) {
    std::mt19937 random(7);
    std::vector<std::vector<sPARAM_VALUES>> seen = {Values()};
    for (int i = 0; i < 60; ++i) {
        algorithm.SetActiveSetup(random() % 2 != 0 ? kPluginSetup_A : kPluginSetup_B);
        const auto index = static_cast<uint32_t>(random() % 3);
        algorithm.UpdateParamRealWorld(random() % 2,
                                       std::nextafter(0.1 * static_cast<double>(random() % 99), -1.0));
        Gesture(index, std::uniform_real_distribution<>(0.0, index == 2 ? 3.0 : 1000.0)(random));
        seen.resize(manager.GetUndoStackSize() + 1);
        seen.back() = Values();
    }
    for (size_t i = seen.size() - 1; i-- > 0;) {
        manager.Undo();
        ASSERT_TRUE(SameBits(Values(), seen[i])) << i;
    }
    for (size_t i = 1; i < seen.size(); ++i) {
        manager.Redo();
        ASSERT_TRUE(SameBits(Values(), seen[i])) << i;
    }
}

TEST_F(UndoCommandParameters, NegativeZeroComesBackToo) {
    algorithm.UpdateParamRealWorld(0, 0.5);
    algorithm.GetParam(0)->SetRealWorld(kPluginSetup_B, -0.0);
    Insert(new KCUndoCommandParameters(&algorithm, 0));
    manager.Undo();
    manager.Redo();
    EXPECT_TRUE(std::signbit(algorithm.GetParam(0)->GetRealWorld(kPluginSetup_B)));
}

TEST_F(UndoCommandParameters, RestoringNeverMakesAStep) {
    Gesture(1, 500.0);
    Gesture(0, 500.0);
    algorithm.onApply = [this](size_t index) { // a plug-in that takes every change for a gesture
        Insert(new KCUndoCommandParameters(&algorithm, static_cast<uint32_t>(index)));
    };
    manager.Undo();
    EXPECT_EQ(manager.GetUndoStackSize(), 1u);
    EXPECT_EQ(manager.GetRedoStackSize(), 1u);
}

TEST(UndoLinked, RestoringNeverLinks) {
    RecordingAlgorithm algorithm({LinearParam("Left"), LinearParam("Right")});
    algorithm.FinishCreate();
    KCLinkGroups& groups = *algorithm.GetLinkGroups();
    groups.SetGroupInfo(1, 0, 0.0, KCLinkGroups::LawName("Relative"), true, false);
    groups.AddMember(1, 0);
    groups.AddMember(1, 1);
    KCUndoCommandParameters start(&algorithm, 0);
    algorithm.UpdateParamByGesture(0, 300.0);
    ASSERT_EQ(algorithm.GetParamState(1), 300.0); // linked
    algorithm.UpdateParamRequestState(1, 800.0);  // and apart
    KCUndoCommandParameters apart(&algorithm, 0);
    EXPECT_EQ(start.Execute(), 0);
    EXPECT_EQ(apart.Execute(), 0);
    EXPECT_EQ(algorithm.GetParamState(0), 300.0);
    EXPECT_EQ(algorithm.GetParamState(1), 800.0);
}

TEST_F(UndoCommandParameters, ValueAtTheInfiniteEndOfAScaleComesBack) {
    sCONTROL_PARAM decibels = LinearParam("Level");
    decibels.SetScaleGeneric(
        kParamType_Continuous, KCFixedString<127>("decibels"), {},
        [](double state, sSCALE_INFO*) { return 20.0 * std::log10(state / 1000.0); },
        [](double realWorld, sSCALE_INFO*) { return 1000.0 * std::pow(10.0, realWorld / 20.0); });
    RecordingAlgorithm mixer({decibels});
    mixer.FinishCreate();
    KCUndoCommandParameters silent(&mixer, 0);
    mixer.UpdateParamRequestState(0, 1000.0);
    EXPECT_EQ(silent.Execute(), 0);
    EXPECT_EQ(mixer.GetParamRealWorld(0), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(mixer.GetParamState(0), 0.0);
}

TEST_F(UndoCommandParameters, SetupTitlesComeBack) {
    algorithm.SetSetupTitle(kPluginSetup_A, KCFixedString<127>("Warm"));
    Gesture(0, 100.0);
    algorithm.SetSetupTitle(kPluginSetup_A, KCFixedString<127>("Cold"));
    Gesture(0, 200.0);
    manager.Undo();
    EXPECT_EQ(algorithm.GetSetupTitle(kPluginSetup_A), "Warm");
    manager.Undo();
    EXPECT_EQ(algorithm.GetSetupTitle(kPluginSetup_A), "");
    manager.Redo();
    EXPECT_EQ(algorithm.GetSetupTitle(kPluginSetup_A), "Warm");
}

TEST_F(UndoCommandParameters, RenamedSetupIsAStep) {
    algorithm.SetSetupTitle(kPluginSetup_B, KCFixedString<127>("Warm"));
    Insert(new KCUndoCommandParameters(&algorithm, kUndoAllParams));
    EXPECT_TRUE(manager.IsDirty());
    manager.Undo();
    EXPECT_EQ(algorithm.GetSetupTitle(kPluginSetup_B), "");
    manager.Redo();
    EXPECT_EQ(algorithm.GetSetupTitle(kPluginSetup_B), "Warm");
}

TEST_F(UndoCommandParameters, CollapsedGestureComesBackAsItWasSeenLast) {
    Gesture(1, 100.0);
    for (const double state : {200.0, 300.0}) {
        algorithm.UpdateParamRequestState(1, state);
        manager.InsertCommand(ToHandle(new KCUndoCommandParameters(&algorithm, 1)), kInsertToStack_Collapse);
    }
    EXPECT_EQ(manager.GetUndoStackSize(), 1u);
    manager.Undo();
    EXPECT_EQ(algorithm.GetParamState(1), 0.0);
    manager.Redo();
    EXPECT_EQ(algorithm.GetParamState(1), 300.0);
}

TEST(UndoCommandWithoutAlgorithm, HoldsNothingAndSaysSo) {
    KCUndoCommandParameters command(nullptr, 0);
    EXPECT_EQ(command.GetResult(), kErr_NullArgument);
    EXPECT_EQ(command.Execute(), kErr_NullArgument);
    const Preset::CPresetInfo preset;
    KCUndoCommandPreset presetCommand(CPublicAlg(), 0, &preset);
    EXPECT_EQ(presetCommand.Execute(), kErr_NullArgument);
}

TEST(UndoCommandWithoutParameters, IsAStateLikeAnyOther) {
    RecordingAlgorithm algorithm;
    algorithm.FinishCreate();
    KCUndoCommandParameters command(&algorithm, kUndoAllParams);
    EXPECT_EQ(command.Execute(), 0);
    EXPECT_TRUE(Base(command) == Base(KCUndoCommandParameters(&algorithm, 0)));
}

TEST_F(UndoPartlySaved, ParameterThatSaysNoStaysWhereItIs) {
    Gesture(0, 500.0);
    algorithm.UpdateParamRequestState(1, 700.0);
    algorithm.TakeLog();
    manager.Undo();
    EXPECT_EQ(algorithm.GetParamState(0), 0.0);
    EXPECT_EQ(algorithm.GetParamState(1), 700.0);
    EXPECT_THAT(algorithm.log, Not(Contains("apply 1")));
}

TEST_F(UndoPartlySaved, ParameterThatSaysNoMakesNoStep) {
    Gesture(1, 500.0);
    EXPECT_FALSE(manager.CanUndo());
    EXPECT_FALSE(manager.IsDirty());
}

TEST_F(UndoPartlySaved, SwitchOfSetupsIsShownByAParameterThatSaysNo) {
    algorithm.UpdateParamRequestState(1, 100.0);
    algorithm.SetActiveSetup(kPluginSetup_B);
    algorithm.UpdateParamRequestState(1, 900.0);
    Insert(new KCUndoCommandParameters(&algorithm, kUndoAllParams));
    KCFixedString<127> text;
    algorithm.GetParamValueString(1, text);
    algorithm.GetParam(1)->SetRefreshMark(0);
    manager.Undo();
    EXPECT_EQ(algorithm.GetParamState(1), 100.0);
    EXPECT_EQ(algorithm.GetParam(1)->GetRefreshMark(), kRefreshMark);
    algorithm.GetParamValueString(1, text);
    EXPECT_EQ(text, "1.00");
}

TEST_F(UndoPartlySaved, PresetLeavesItAloneToo) {
    Preset::CPresetInfo preset;
    Preset::CapturePreset(CPublicAlg(&algorithm), KCFixedString<127>("Init"), preset);
    algorithm.UpdateParamRequestState(0, 700.0);
    algorithm.UpdateParamRequestState(1, 700.0);
    EXPECT_EQ(KCUndoCommandPreset(CPublicAlg(&algorithm), 0, &preset).Execute(), 0);
    EXPECT_EQ(algorithm.GetParamState(0), 0.0);
    EXPECT_EQ(algorithm.GetParamState(1), 700.0);
}

// ---- Presets
// -----------------------------------------------------------------------------------------------------

Preset::CPresetInfo PresetWith(const char* name, const char* param, double state) {
    Preset::CPresetInfo preset;
    preset.SetName(KCFixedString<127>(name));
    EXPECT_EQ(preset.AddParam({KCFixedString<127>(param), {state, state / 2}, {state / 100, state / 200}}), 0);
    return preset;
}

TEST_F(UndoCommandPreset, BringsBackValuesNameAndTheNews) {
    const Preset::CPresetInfo warm = PresetWith("Warm", "Gain", 400.0);
    KCUndoCommandPreset command(CPublicAlg(&algorithm), 0, &warm);
    EXPECT_EQ(command.getName(), "Warm");
    EXPECT_EQ(command.Execute(), 0);
    EXPECT_THAT(algorithm.log, ElementsAre("title A", "title B", "apply 0", "modified A", "notify 0", "loaded A"));
    EXPECT_EQ(algorithm.GetParam(0)->GetState(kPluginSetup_B), 200.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetRealWorld(kPluginSetup_A), 4.0);
    EXPECT_EQ(algorithm.GetSetupTitle(kPluginSetup_A), "Warm");
}

TEST_F(UndoCommandPreset, NameComesBackThroughGesturesAndOtherPresets) {
    for (const char* const name : {"Warm", "Cold"}) {
        const Preset::CPresetInfo preset = PresetWith(name, "Gain", name[0] == 'W' ? 400.0 : 500.0);
        auto* const command = new KCUndoCommandPreset(CPublicAlg(&algorithm), 0, &preset);
        command->Execute();
        Insert(command);
        Gesture(1, name[0] == 'W' ? 100.0 : 200.0);
    }
    const char* const expected[] = {"Cold", "Warm", "Warm", ""};
    for (const char* const name : expected) {
        manager.Undo();
        EXPECT_EQ(algorithm.GetSetupTitle(kPluginSetup_A), name);
    }
}

TEST_F(UndoCommandPreset, ParametersItDoesNotNameArePartOfTheStep) {
    const Preset::CPresetInfo warm = PresetWith("Warm", "Gain", 400.0);
    algorithm.UpdateParamRequestState(1, 100.0);
    auto* const command = new KCUndoCommandPreset(CPublicAlg(&algorithm), 0, &warm);
    command->Execute();
    Insert(command);
    Gesture(1, 900.0);
    manager.Undo();
    EXPECT_EQ(algorithm.GetParamState(1), 100.0);
}

TEST_F(UndoCommandPreset, UnknownParametersAndHostileNumbersAreStruckOver) {
    Preset::CPresetInfo preset = PresetWith("Odd", "Gone", 400.0);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(preset.AddParam({KCFixedString<127>("Gain"), {nan, 0.0}, {0.0, 1e300}}), 0);
    algorithm.UpdateParamRequestState(0, 123.0);
    EXPECT_EQ(KCUndoCommandPreset(CPublicAlg(&algorithm), 0, &preset).Execute(), 0);
    EXPECT_EQ(algorithm.GetParamState(0), 123.0);
}

TEST_F(UndoCommandPreset, EventsTellWhatWasLoaded) {
    const Preset::CPresetInfo warm = PresetWith("Warm", "Gain", 400.0);
    manager.addEvent("browser");
    auto* const command = new KCUndoCommandPreset(CPublicAlg(&algorithm), 0, &warm);
    Insert(command);
    EXPECT_THAT(command->getEvents(), ElementsAre("Warm", "browser"));
}

TEST_F(UndoCommandPreset, KindAndEqualityAreNotThoseOfParameters) {
    const Preset::CPresetInfo init = PresetWith("Init", "Gain", 0.0), other = PresetWith("Other", "Gain", 0.0);
    const CPublicAlg face(&algorithm);
    const KCUndoCommandPreset a(face, 0, &init), again(face, 0, &init), renamed(face, 0, &other),
        slot(face, 1, &init);
    const KCUndoCommandParameters parameters(&algorithm, 0);
    EXPECT_TRUE(Base(a) == Base(again));
    EXPECT_FALSE(Base(a) == Base(renamed));
    EXPECT_FALSE(Base(a) == Base(parameters) || Base(parameters) == Base(a));
    EXPECT_TRUE(a.IsSameType(&renamed));
    EXPECT_FALSE(a.IsSameType(&slot) || a.IsSameType(&parameters) || parameters.IsSameType(&a));
    EXPECT_FALSE(a.IsSameType(nullptr));
}

TEST_F(UndoCommandPreset, BrowsingWithTypeZeroKeepsTheLastName) {
    for (const char* const name : {"Warm", "Cold"}) {
        const Preset::CPresetInfo preset = PresetWith(name, "Gain", name[0] == 'W' ? 400.0 : 500.0);
        auto* const command = new KCUndoCommandPreset(CPublicAlg(&algorithm), 0, &preset);
        command->Execute();
        manager.InsertCommand(ToHandle(command), kInsertToStack_Collapse);
    }
    EXPECT_EQ(manager.GetLastUndoCommandName(), "Cold");
    manager.Undo();
    manager.Redo();
    EXPECT_EQ(algorithm.GetParamState(0), 500.0);
    EXPECT_EQ(algorithm.GetSetupTitle(kPluginSetup_B), "Cold");
}

TEST(UndoHistorySize, ThousandStepsOverAThousandParametersStayUnder64MiB) {
    std::vector<sCONTROL_PARAM> params(1000, LinearParam("P"));
    RecordingAlgorithm algorithm(params);
    algorithm.FinishCreate();
    const KCUndoCommandParameters command(&algorithm, 0);
    sALGORITHM_STATE state;
    ASSERT_EQ(CPublicAlg(&algorithm).CaptureState(state), 0);
    const size_t perBlock = 64; // what the heap and the list add, generously
    const size_t perStep = sizeof command + state.values.size() * sizeof(sPARAM_VALUES) + 3 * perBlock;
    EXPECT_LT(1000 * perStep, size_t{64} << 20);
}

} // namespace
