#include <korvolib/undo/undo_api.h>

#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include <korvolib/undo/undo_commands.h>
#include <korvolib/undo/undo_manager.h>
#include <tests/support/counted_command.h>
#include <tests/support/recording_algorithm.h>

namespace {

using namespace kvTest;
using namespace kvKorvo::Undo;

class UndoAPI : public testing::Test {
  protected:
    UndoAPI() {
        algorithm.FinishCreate();
        EXPECT_EQ(API::CreateDefaultUndoManager(manager), 0);
    }
    ~UndoAPI() override {
        EXPECT_EQ(API::DisposeUndoManager(manager), 0);
        EXPECT_EQ(log.births, log.deaths);
    }
    KTUndoCommandType* Make(char kind, int value) { return ToHandle(new CountedCommand(log, kind, value)); }
    int32_t Insert(char kind, int value) {
        return API::InsertCommand(manager, Make(kind, value), kInsertToStack_NewStep);
    }
    std::string LastUndoName() {
        KCFixedString<255> name("old");
        EXPECT_EQ(API::GetLastUndoCommandName(manager, name), 0);
        return name.c_str();
    }

    RecordingAlgorithm algorithm{{LinearParam("Gain"), LinearParam("Tilt")}};
    KTUndoManagerType* manager = nullptr;
    CommandLog log;
};

TEST_F(UndoAPI, LeadsAHistoryThroughAllItsSteps) {
    unsigned short level = 77;
    EXPECT_EQ(API::GetUndoLevel(manager, level), 0);
    EXPECT_EQ(level, 1);
    EXPECT_EQ(API::SetUndoLevel(manager, 5), 0);
    EXPECT_EQ(API::AddUndoEvent(manager, KCFixedString<63>("drag")), 0);
    EXPECT_EQ(API::GetNumEvents(manager), 1u);
    Insert('a', 1);
    EXPECT_EQ(API::GetNumEvents(manager), 0u);
    EXPECT_EQ(API::SetClean(manager), 0);
    Insert('b', 2);
    EXPECT_TRUE(API::IsDirty(manager));
    EXPECT_TRUE(API::CanUndo(manager));
    EXPECT_FALSE(API::CanRedo(manager));
    EXPECT_EQ(API::ExecuteUndo(manager), 0);
    EXPECT_FALSE(API::IsDirty(manager));
    EXPECT_EQ(API::GetUndoStackSize(manager), 0u);
    EXPECT_EQ(API::GetRedoStackSize(manager), 1u);
    EXPECT_EQ(API::ExecuteRedo(manager), 0);
    EXPECT_EQ(log.state, 2);
    EXPECT_EQ(API::ClearUndoManager(manager), 0);
    EXPECT_FALSE(API::CanUndo(manager));
}

TEST_F(UndoAPI, NamesAreSetEmptyWhereThereAreNone) {
    API::SetUndoLevel(manager, 5);
    Insert('a', 1);
    Insert('b', 2);
    KCFixedString<255> name("old");
    EXPECT_EQ(API::GetUndoCommandName(manager, 0, name), 0);
    EXPECT_EQ(name, "b2");
    EXPECT_EQ(API::GetUndoCommandName(manager, 1, name), 0);
    EXPECT_EQ(name, "");
    API::ExecuteUndo(manager);
    EXPECT_EQ(API::GetRedoCommandName(manager, 0, name), 0);
    EXPECT_EQ(name, "b2");
    EXPECT_EQ(LastUndoName(), "");
}

TEST_F(UndoAPI, NullManagerIsRefused) {
    unsigned short level = 9;
    KCFixedString<255> name("old");
    KTUndoCommandType* const command = Make('a', 1);
    EXPECT_EQ(API::DisposeUndoManager(nullptr), -4003);
    EXPECT_EQ(API::InsertCommand(nullptr, command, kInsertToStack_NewStep), -4003);
    EXPECT_EQ(log.deaths, 0u);
    EXPECT_EQ(API::DisposeCommand(command), 0);
    EXPECT_EQ(API::ExecuteUndo(nullptr), -4003);
    EXPECT_EQ(API::ExecuteRedo(nullptr), -4003);
    EXPECT_EQ(API::ClearUndoManager(nullptr), -4003);
    EXPECT_EQ(API::GetUndoLevel(nullptr, level), -4003);
    EXPECT_EQ(level, 0);
    EXPECT_EQ(API::SetUndoLevel(nullptr, 3), -4003);
    EXPECT_EQ(API::SetClean(nullptr), -4003);
    EXPECT_EQ(API::AddUndoEvent(nullptr, KCFixedString<63>("drag")), -4003);
    EXPECT_EQ(API::ClearUndoEvents(nullptr), -4003);
    EXPECT_EQ(API::GetUndoCommandName(nullptr, 0, name), -4003);
    EXPECT_EQ(name, "");
    EXPECT_EQ(API::GetRedoCommandName(nullptr, 0, name), -4003);
    EXPECT_EQ(API::GetLastUndoCommandName(nullptr, name), -4003);
    EXPECT_EQ(API::StartHistory(nullptr, &algorithm), -4003);
    EXPECT_EQ(API::InsertGestureStep(nullptr, &algorithm, 0), -4003);
}

TEST_F(UndoAPI, NullManagerAnswersNo) {
    EXPECT_FALSE(API::CanUndo(nullptr));
    EXPECT_FALSE(API::CanRedo(nullptr));
    EXPECT_FALSE(API::IsDirty(nullptr));
    EXPECT_FALSE(API::IsPresetCommand(nullptr));
    EXPECT_EQ(API::GetUndoStackSize(nullptr), 0u);
    EXPECT_EQ(API::GetRedoStackSize(nullptr), 0u);
    EXPECT_EQ(API::GetNumEvents(nullptr), 0u);
}

TEST_F(UndoAPI, NullCommandsAndAlgorithmsAreRefused) {
    API::AddUndoEvent(manager, KCFixedString<63>("drag"));
    EXPECT_EQ(API::InsertCommand(manager, nullptr, kInsertToStack_Collapse), -4003);
    EXPECT_EQ(API::GetNumEvents(manager), 1u);
    EXPECT_EQ(API::DisposeCommand(nullptr), -4003);
    KTUndoCommandType* command = Make('a', 1);
    EXPECT_EQ(API::DisposeCommand(command), 0);
    EXPECT_EQ(API::CreateParametersCommand(nullptr, 0, command), -4003);
    EXPECT_EQ(command, nullptr);
    EXPECT_EQ(API::CreatePresetCommand(CPublicAlg(&algorithm), 0, nullptr, command), -4003);
    EXPECT_EQ(command, nullptr);
    EXPECT_EQ(API::StartHistory(manager, nullptr), -4003);
    EXPECT_EQ(API::InsertGestureStep(manager, nullptr, 0), -4003);
}

TEST_F(UndoAPI, InsertedCommandCannotBeDisposed) {
    KTUndoCommandType* const command = Make('a', 1);
    API::InsertCommand(manager, command, kInsertToStack_NewStep);
    EXPECT_EQ(API::DisposeCommand(command), kErr_Generic);
    EXPECT_EQ(log.deaths, 0u);
}

TEST_F(UndoAPI, ManagerCannotBeDisposedByItsCommand) {
    API::SetUndoLevel(manager, 5);
    Insert('a', 1);
    Insert('b', 2);
    log.onExecute = [&] { EXPECT_EQ(API::DisposeUndoManager(manager), kErr_Generic); };
    EXPECT_EQ(API::ExecuteUndo(manager), 0);
    EXPECT_EQ(log.deaths, 0u);
}

TEST_F(UndoAPI, ExceptionsEndHere) {
    API::SetUndoLevel(manager, 5);
    Insert('a', 1);
    Insert('b', 2);
    log.onExecute = [] { throw std::runtime_error("hook"); };
    EXPECT_EQ(API::ExecuteUndo(manager), kErr_Generic);
    log.onExecute = [] { throw std::bad_alloc(); };
    EXPECT_EQ(API::ExecuteRedo(manager), kErr_AllocationFailed);
}

TEST_F(UndoAPI, StartedHistoryIsCleanAndLetsTheFirstGestureBeTakenBack) {
    Insert('a', 1);
    EXPECT_EQ(API::StartHistory(manager, &algorithm), 0);
    EXPECT_EQ(log.deaths, 1u);
    unsigned short level = 0;
    API::GetUndoLevel(manager, level);
    EXPECT_EQ(level, 100);
    EXPECT_FALSE(API::IsDirty(manager));
    EXPECT_FALSE(API::CanUndo(manager));
    algorithm.UpdateParamRequestState(1, 250.0);
    EXPECT_EQ(API::InsertGestureStep(manager, &algorithm, 1), 0);
    EXPECT_TRUE(API::IsDirty(manager));
    EXPECT_EQ(LastUndoName(), "Tilt");
    EXPECT_EQ(API::ExecuteUndo(manager), 0);
    EXPECT_EQ(algorithm.GetParamState(1), 0.0);
    EXPECT_FALSE(API::IsDirty(manager));
}

TEST_F(UndoAPI, HistoryStartedOverADirtyOneIsClean) {
    API::StartHistory(manager, &algorithm);
    algorithm.UpdateParamRequestState(1, 250.0);
    API::InsertGestureStep(manager, &algorithm, 1);
    EXPECT_EQ(API::StartHistory(manager, &algorithm, 3), 0);
    EXPECT_FALSE(API::IsDirty(manager));
    EXPECT_EQ(API::GetUndoStackSize(manager), 0u);
}

TEST_F(UndoAPI, GestureThatChangedNothingMakesNoStep) {
    API::StartHistory(manager, &algorithm);
    EXPECT_EQ(API::InsertGestureStep(manager, &algorithm, 1), 0);
    EXPECT_FALSE(API::CanUndo(manager));
    EXPECT_FALSE(API::IsDirty(manager));
}

TEST_F(UndoAPI, ClickAfterUndoLeavesRedoAndTheCleanState) {
    API::StartHistory(manager, &algorithm);
    algorithm.UpdateParamRequestState(1, 250.0);
    API::InsertGestureStep(manager, &algorithm, 1);
    API::ExecuteUndo(manager);
    EXPECT_EQ(API::InsertGestureStep(manager, &algorithm, 0), 0);
    EXPECT_TRUE(API::CanRedo(manager));
    EXPECT_FALSE(API::CanUndo(manager));
    EXPECT_FALSE(API::IsDirty(manager));
}

TEST_F(UndoAPI, ClickLeavesTheNameOfTheStepBefore) {
    API::StartHistory(manager, &algorithm);
    algorithm.UpdateParamRequestState(1, 250.0);
    API::InsertGestureStep(manager, &algorithm, 1);
    API::AddUndoEvent(manager, KCFixedString<63>("click"));
    EXPECT_EQ(API::InsertGestureStep(manager, &algorithm, 0), 0);
    EXPECT_EQ(LastUndoName(), "Tilt");
    EXPECT_EQ(API::GetNumEvents(manager), 1u);
}

TEST_F(UndoAPI, ClickAfterAPresetMakesNoStep) {
    API::StartHistory(manager, &algorithm);
    Preset::CPresetInfo preset;
    preset.SetName(KCFixedString<127>("Warm"));
    KTUndoCommandType* command = nullptr;
    API::CreatePresetCommand(CPublicAlg(&algorithm), 0, &preset, command);
    FromHandle(command)->Execute();
    API::InsertCommand(manager, command, kInsertToStack_NewStep);
    EXPECT_EQ(API::InsertGestureStep(manager, &algorithm, 0), 0);
    EXPECT_EQ(API::GetUndoStackSize(manager), 1u);
    EXPECT_TRUE(API::IsPresetCommand(manager));
    algorithm.UpdateParamRequestState(0, 250.0);
    API::InsertGestureStep(manager, &algorithm, 0);
    EXPECT_EQ(API::GetUndoStackSize(manager), 2u);
}

TEST_F(UndoAPI, PresetCommandIsTheOneThatUndoTakesBack) {
    API::StartHistory(manager, &algorithm);
    EXPECT_FALSE(API::IsPresetCommand(manager));
    Preset::CPresetInfo preset;
    preset.SetName(KCFixedString<127>("Warm"));
    KTUndoCommandType* command = nullptr;
    EXPECT_EQ(API::CreatePresetCommand(CPublicAlg(&algorithm), 0, &preset, command), 0);
    EXPECT_EQ(API::InsertCommand(manager, command, kInsertToStack_NewStep), 0);
    EXPECT_TRUE(API::IsPresetCommand(manager));
    EXPECT_EQ(LastUndoName(), "Warm");
    algorithm.UpdateParamRequestState(1, 250.0);
    API::InsertGestureStep(manager, &algorithm, 1);
    EXPECT_FALSE(API::IsPresetCommand(manager));
    API::ExecuteUndo(manager);
    EXPECT_TRUE(API::IsPresetCommand(manager));
    API::ExecuteUndo(manager);
    EXPECT_FALSE(API::IsPresetCommand(manager)); // nothing to take back any more
}

// A user's session: drags, undoes, redoes, branches, saves; the table of states after each.
TEST_F(UndoAPI, SessionOfDragsUndosAndABranchShowsTheExpectedTables) {
    const auto drag = [this](uint32_t index, std::initializer_list<double> way) {
        for (const double state : way)
            algorithm.UpdateParamByGesture(index, state);
        EXPECT_EQ(API::InsertGestureStep(manager, &algorithm, index), 0);
    };
    const auto table = [this] { return std::pair(algorithm.GetParamState(0), algorithm.GetParamState(1)); };
    API::StartHistory(manager, &algorithm);
    drag(0, {100.0, 200.0, 300.0});
    drag(1, {50.0, 20.0});
    API::SetClean(manager);
    drag(0, {400.0});
    EXPECT_EQ(API::GetUndoStackSize(manager), 3u);
    API::ExecuteUndo(manager);
    EXPECT_EQ(table(), std::pair(300.0, 20.0));
    EXPECT_FALSE(API::IsDirty(manager));
    API::ExecuteUndo(manager);
    EXPECT_EQ(table(), std::pair(300.0, 0.0));
    API::ExecuteUndo(manager);
    EXPECT_EQ(table(), std::pair(0.0, 0.0));
    API::ExecuteRedo(manager);
    EXPECT_EQ(table(), std::pair(300.0, 0.0));
    drag(1, {700.0}); // a branch: what was undone cannot come again, nor can the saved state
    EXPECT_FALSE(API::CanRedo(manager));
    EXPECT_EQ(table(), std::pair(300.0, 700.0));
    while (API::CanUndo(manager)) {
        API::ExecuteUndo(manager);
        EXPECT_TRUE(API::IsDirty(manager));
    }
    EXPECT_EQ(table(), std::pair(0.0, 0.0));
}

} // namespace
