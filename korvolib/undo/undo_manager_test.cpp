#include <korvolib/undo/undo_manager.h>

#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include <tests/support/allocation_count.h>
#include <tests/support/counted_command.h>
#include <tests/support/virtual_slot.h>

namespace {

using namespace kvTest;
using namespace kvKorvo::Undo;
using testing::ElementsAre;
using testing::IsEmpty;

class UndoManager : public testing::Test {
  protected:
    ~UndoManager() override {
        manager.reset();
        EXPECT_EQ(log.births, log.deaths);
        EXPECT_EQ(log.falseDeaths, 0u);
    }
    CountedCommand* Make(char kind, int value) { return new CountedCommand(log, kind, value); }
    int32_t Insert(char kind, int value, int type = 1) { return Insert(Make(kind, value), type); }
    int32_t Insert(Command* command, int type = 1) {
        return manager->InsertCommand(ToHandle(command), static_cast<EInsertToStackType>(type));
    }
    // "a1 [b2] c3 d4": the undo stack from its oldest, the present state, the redo stack from its newest.
    std::string History() const {
        std::string text;
        for (size_t n = manager->GetUndoStackSize(); n > 1; --n)
            text += std::string(manager->GetUndoCommandName(n - 1).c_str()) + " ";
        text += "[" + std::string(manager->GetLastUndoCommandName().c_str()) + "]";
        for (size_t n = 0; n < manager->GetRedoStackSize(); ++n)
            text += std::string(" ") + manager->GetRedoCommandName(n).c_str();
        return text;
    }
    void UseLevel(uint16_t level) { EXPECT_EQ(manager->setUndoLevel(level), 0); }

    CommandLog log;
    std::unique_ptr<KCUndoManager> manager = std::make_unique<KCUndoManager>();
};

TEST(UndoSlots, CommandOperationsStandInTheirOrder) {
    EXPECT_EQ(VirtualSlot(static_cast<bool (Command::*)(const Command&) const>(&Command::operator==)), 2);
    EXPECT_EQ(VirtualSlot(&Command::IsSameType), 3);
    EXPECT_EQ(VirtualSlot(&Command::Execute), 4);
    EXPECT_EQ(VirtualSlot(&Command::SetEvents), 5);
    EXPECT_EQ(VirtualSlot(&Command::TakeOverState), 6);
}

TEST(UndoSlots, ManagerOperationsStandInTheirOrder) {
    EXPECT_EQ(VirtualSlot(&KCUndoManagerAbs::InsertCommand), 2);
    EXPECT_EQ(VirtualSlot(&KCUndoManagerAbs::Undo), 3);
    EXPECT_EQ(VirtualSlot(&KCUndoManagerAbs::Redo), 4);
    EXPECT_EQ(VirtualSlot(&KCUndoManagerAbs::CanUndo), 5);
    EXPECT_EQ(VirtualSlot(&KCUndoManagerAbs::CanRedo), 6);
}

TEST_F(UndoManager, BeginsEmptyCleanAndWithLevelOne) {
    EXPECT_EQ(manager->getUndoLevel(), 1);
    EXPECT_EQ(manager->GetCleanCount(), 0);
    EXPECT_FALSE(manager->IsDirty());
    EXPECT_FALSE(manager->CanUndo());
    EXPECT_FALSE(manager->CanRedo());
    EXPECT_EQ(manager->getNumPendingEvents(), 0u);
    EXPECT_EQ(manager->Undo(), 0);
    EXPECT_EQ(manager->Redo(), 0);
    EXPECT_EQ(manager->GetCleanCount(), 0);
}

TEST_F(UndoManager, LevelOneKeepsOnlyTheSecondOfThree) {
    Insert('a', 1);
    Insert('b', 2);
    Insert('c', 3);
    EXPECT_EQ(manager->GetUndoStackSize(), 1u);
    manager->Undo();
    EXPECT_THAT(log.Take(), ElementsAre("events a1:", "events b2:", "events c3:", "execute b2"));
    EXPECT_FALSE(manager->CanUndo());
    EXPECT_EQ(log.deaths, 1u);
}

TEST_F(UndoManager, SameKindWithTypeZeroCollapses) {
    UseLevel(5);
    Insert('a', 1);
    Insert('b', 2, 0);
    EXPECT_EQ(manager->GetUndoStackSize(), 1u);
    Insert('b', 3, 0);
    EXPECT_EQ(manager->GetUndoStackSize(), 1u);
    EXPECT_EQ(manager->GetCleanCount(), 1);
    EXPECT_EQ(log.deaths, 1u);
}

TEST_F(UndoManager, OtherTypesNeverCollapse) {
    UseLevel(9);
    Insert('a', 0);
    for (const int type : {1, 2, -1, INT32_MAX})
        Insert('a', type, type);
    EXPECT_EQ(manager->GetUndoStackSize(), 4u);
}

TEST_F(UndoManager, RedoAfterACollapseBringsBackWhatWasSeenLast) {
    UseLevel(5);
    Insert('a', 1);
    Insert('b', 2, 0);
    Insert('b', 3, 0);
    manager->Undo();
    EXPECT_EQ(log.state, 1);
    manager->Redo();
    EXPECT_EQ(log.state, 3);
}

TEST_F(UndoManager, CollapseLeavesTheRedoStack) {
    UseLevel(5);
    Insert('a', 1);
    Insert('a', 2);
    manager->Undo();
    Insert('a', 3, 0);
    EXPECT_EQ(manager->GetRedoStackSize(), 1u);
    EXPECT_EQ(manager->GetCleanCount(), 0);
}

TEST_F(UndoManager, EqualStateMakesNoStep) {
    UseLevel(5);
    Insert('a', 1);
    Insert('b', 1);
    EXPECT_EQ(manager->GetUndoStackSize(), 0u);
    EXPECT_FALSE(manager->IsDirty());
    EXPECT_EQ(log.deaths, 1u);
    Insert('c', 2);
    EXPECT_EQ(manager->GetLastUndoCommandName(), "c2");
    manager->Undo();
    EXPECT_THAT(log.lines.back(), "execute b1"); // the new one took the old one's place
}

TEST_F(UndoManager, EqualStateWithSomethingToRedoIsAStep) {
    UseLevel(5);
    Insert('a', 1);
    Insert('b', 2);
    manager->Undo();
    Insert('c', 1);
    EXPECT_EQ(manager->GetUndoStackSize(), 1u);
    EXPECT_FALSE(manager->CanRedo());
}

TEST_F(UndoManager, BranchCanNeverBeClean) {
    UseLevel(5);
    Insert('a', 1);
    Insert('b', 2);
    Insert('c', 3);
    manager->Undo();
    Insert('d', 4);
    EXPECT_FALSE(manager->CanRedo());
    EXPECT_EQ(manager->GetCleanCount(), 1 + 1 + 2); // redo + 1 + undo after the append
    while (manager->CanUndo()) {
        manager->Undo();
        EXPECT_GT(manager->GetCleanCount(), 0);
    }
}

TEST_F(UndoManager, DirtyFollowsTheDistanceFromTheCleanState) {
    UseLevel(5);
    Insert('a', 1);
    manager->SetClean();
    EXPECT_FALSE(manager->IsDirty());
    Insert('b', 2);
    EXPECT_TRUE(manager->IsDirty());
    manager->Undo();
    EXPECT_FALSE(manager->IsDirty());
    manager->Redo();
    manager->SetClean();
    manager->Undo();
    EXPECT_EQ(manager->GetCleanCount(), -1);
    manager->Redo();
    EXPECT_EQ(manager->GetCleanCount(), 0);
}

TEST_F(UndoManager, RedoKeepsTheLevel) {
    UseLevel(2);
    for (int value = 0; value < 3; ++value)
        Insert('a', value);
    manager->Undo();
    manager->Undo();
    UseLevel(1);
    manager->Redo();
    manager->Redo();
    EXPECT_EQ(manager->GetUndoStackSize(), 1u);
    EXPECT_EQ(log.deaths, 1u);
    EXPECT_EQ(log.state, 2);
}

TEST_F(UndoManager, SmallerLevelDestroysTheOldestAtOnce) {
    UseLevel(5);
    for (int value = 0; value < 5; ++value)
        Insert('a', value);
    UseLevel(2);
    EXPECT_EQ(manager->GetUndoStackSize(), 2u);
    EXPECT_EQ(log.deaths, 2u);
    EXPECT_EQ(History(), "a3 [a4]"); // state a2 is the oldest that can be brought back
}

TEST_F(UndoManager, LevelZeroStoresNothingAndIsDirty) {
    UseLevel(0);
    Insert('a', 1);
    EXPECT_FALSE(manager->IsDirty());
    Insert('a', 2);
    EXPECT_FALSE(manager->CanUndo());
    EXPECT_TRUE(manager->IsDirty());
    EXPECT_EQ(log.deaths, 1u);
    UseLevel(3);
    Insert('a', 3);
    manager->Undo();
    EXPECT_TRUE(manager->IsDirty());
}

TEST_F(UndoManager, LevelZeroAlsoHoldsForRedo) {
    UseLevel(3);
    Insert('a', 1);
    Insert('a', 2);
    manager->Undo();
    UseLevel(0);
    manager->Redo();
    EXPECT_EQ(manager->GetCleanCount(), 1);
    EXPECT_EQ(manager->GetUndoStackSize(), 0u);
    EXPECT_EQ(log.deaths, 1u);
}

TEST_F(UndoManager, ClearDestroysAllAndKeepsPendingEvents) {
    UseLevel(5);
    for (int value = 0; value < 4; ++value)
        Insert('a', value);
    manager->Undo();
    manager->addEvent("drag");
    EXPECT_EQ(manager->Clear(), 0);
    EXPECT_EQ(log.deaths, 4u);
    EXPECT_EQ(History(), "[]");
    EXPECT_EQ(manager->getNumPendingEvents(), 1u);
    EXPECT_EQ(manager->getUndoLevel(), 5);
}

TEST_F(UndoManager, DirtyStateStaysDirtyAfterClear) {
    UseLevel(5);
    for (int value = 0; value < 4; ++value)
        Insert('a', value);
    manager->SetClean();
    manager->Undo();
    manager->Undo();
    EXPECT_EQ(manager->GetCleanCount(), -2);
    manager->Clear();
    for (int value = 0; value < 6; ++value) {
        Insert('a', value);
        EXPECT_TRUE(manager->IsDirty()) << value;
    }
    manager->SetClean();
    EXPECT_FALSE(manager->IsDirty());
}

TEST_F(UndoManager, CleanStateStaysCleanAfterClear) {
    Insert('a', 1);
    manager->Clear();
    EXPECT_FALSE(manager->IsDirty());
}

TEST_F(UndoManager, NamesAreThoseOfTheChangesInBothDirections) {
    UseLevel(5);
    for (int value = 0; value < 5; ++value)
        Insert('a', value);
    manager->Undo();
    manager->Undo();
    EXPECT_EQ(manager->GetLastUndoCommandName(), "a2");
    EXPECT_EQ(manager->GetUndoCommandName(0), "a2");
    EXPECT_EQ(manager->GetUndoCommandName(1), "a1");
    EXPECT_EQ(manager->GetUndoCommandName(2), ""); // nothing comes before a0
    EXPECT_EQ(manager->GetRedoCommandName(0), "a3");
    EXPECT_EQ(manager->GetRedoCommandName(1), "a4");
    EXPECT_EQ(manager->GetRedoCommandName(2), "");
    EXPECT_EQ(manager->GetUndoCommandName(SIZE_MAX), "");
    EXPECT_EQ(manager->GetRedoCommandName(SIZE_MAX), "");
}

TEST_F(UndoManager, FirstStateAloneHasNoChangeToName) {
    Insert('a', 1);
    EXPECT_EQ(manager->GetLastUndoCommandName(), "");
}

TEST_F(UndoManager, NullCommandChangesNothing) {
    manager->addEvent("drag");
    EXPECT_EQ(manager->InsertCommand(nullptr, kInsertToStack_Collapse), kErr_NullArgument);
    EXPECT_EQ(manager->getNumPendingEvents(), 1u);
}

TEST_F(UndoManager, EventsAreCutAndCollapse) {
    manager->addEvent(std::string(70, 'x').c_str());
    manager->addEvent(KCFixedString<127>(std::string(63, 'x').c_str()));
    EXPECT_EQ(manager->getNumPendingEvents(), 1u);
    EXPECT_EQ(manager->addEvent(static_cast<const char*>(nullptr)), kErr_NullArgument);
    EXPECT_EQ(manager->getNumPendingEvents(), 1u);
    manager->addEvent(std::string(62, 'x').c_str());
    EXPECT_EQ(manager->getNumPendingEvents(), 2u);
    manager->clearEvents();
    EXPECT_EQ(manager->getNumPendingEvents(), 0u);
}

TEST_F(UndoManager, EventsGoToTheNextInsertionOnly) {
    UseLevel(5);
    manager->addEvent("wheel");
    manager->addEvent("drag");
    Insert('a', 1);
    Insert('a', 2, 0); // collapses, yet is told first, with an empty set
    EXPECT_THAT(log.Take(), ElementsAre("events a1: drag wheel", "events a2:"));
    Insert('b', 3);
    EXPECT_THAT(manager->GetUndoCommand(0)->getEvents(), IsEmpty());
}

TEST_F(UndoManager, EventsThatDoNotFitInMemoryWaitForTheNextInsertion) {
    struct Forgetful : CountedCommand {
        using CountedCommand::CountedCommand;
        void SetEvents(const EventSet&) override { throw std::bad_alloc(); }
    };
    Insert('a', 1);
    manager->addEvent("drag");
    log.Take();
    EXPECT_EQ(Insert(new Forgetful(log, 'b', 2)), kErr_AllocationFailed);
    EXPECT_EQ(log.deaths, 1u);
    EXPECT_FALSE(manager->CanUndo());
    Insert('c', 3);
    EXPECT_THAT(log.Take(), ElementsAre("events c3: drag"));
}

// Foreign code that fails where it is asked: the command dies once, the history stands.
TEST_F(UndoManager, ExceptionsOfAnInsertionLeaveTheStacks) {
    struct Thrower : CountedCommand {
        using CountedCommand::CountedCommand;
        bool operator==(const Command&) const override { throw std::runtime_error("equal"); }
        bool IsSameType(const Command*) const override { throw std::runtime_error("kind"); }
    };
    UseLevel(5);
    Insert('a', 1);
    Insert('b', 2);
    EXPECT_THROW(Insert(new Thrower(log, 'c', 3), 0), std::runtime_error);
    EXPECT_THROW(Insert(new Thrower(log, 'c', 3), 1), std::runtime_error);
    EXPECT_EQ(log.deaths, 2u);
    EXPECT_EQ(History(), "[b2]");
    EXPECT_EQ(manager->GetCleanCount(), 1);
    EXPECT_EQ(manager->Undo(), 0); // open again
    EXPECT_EQ(log.state, 1);
}

TEST_F(UndoManager, CodeOfExecuteIsPassedOnAndTheStepIsTaken) {
    UseLevel(5);
    CountedCommand* const failing = Make('a', 1);
    failing->SetResult(-77);
    Insert(failing);
    Insert('b', 2);
    EXPECT_EQ(manager->Undo(), -77);
    EXPECT_TRUE(manager->CanRedo());
    EXPECT_EQ(manager->Redo(), 0);
}

TEST_F(UndoManager, ExceptionOfExecutePassesWithTheStepTaken) {
    UseLevel(5);
    Insert('a', 1);
    Insert('b', 2);
    log.onExecute = [] { throw std::runtime_error("hook"); };
    EXPECT_THROW(manager->Undo(), std::runtime_error);
    EXPECT_FALSE(manager->CanUndo());
    EXPECT_TRUE(manager->CanRedo());
    EXPECT_EQ(manager->GetCleanCount(), 0);
    log.onExecute = nullptr;
    EXPECT_EQ(manager->Redo(), 0); // open again
    EXPECT_EQ(log.state, 2);
}

TEST_F(UndoManager, ExecuteCannotChangeTheHistory) {
    UseLevel(5);
    for (int value = 0; value < 4; ++value)
        Insert('a', value);
    manager->Undo();
    manager->addEvent("drag");
    log.onExecute = [&] {
        EXPECT_EQ(Insert('z', 99), kErr_Generic);
        EXPECT_EQ(manager->Undo(), kErr_Generic);
        EXPECT_EQ(manager->Redo(), kErr_Generic);
        EXPECT_EQ(manager->Clear(), kErr_Generic);
        EXPECT_EQ(manager->SetClean(), kErr_Generic);
        EXPECT_EQ(manager->setUndoLevel(0), kErr_Generic);
    };
    EXPECT_EQ(manager->Undo(), 0);
    EXPECT_EQ(log.state, 1);
    EXPECT_EQ(History(), "[a1] a2 a3");
    EXPECT_EQ(manager->GetCleanCount(), 1);
    EXPECT_EQ(manager->getUndoLevel(), 5);
    EXPECT_EQ(manager->getNumPendingEvents(), 1u);
    EXPECT_EQ(log.deaths, 1u); // the one handed over
    EXPECT_EQ(manager->Redo(), 0);
    EXPECT_EQ(log.deaths, 2u);
}

TEST_F(UndoManager, CommandOfTheHistoryCannotBeInsertedAgain) {
    UseLevel(5);
    CountedCommand* const first = Make('a', 1);
    Insert(first);
    Insert('b', 2);
    EXPECT_EQ(Insert(first), kErr_Generic);
    log.onExecute = [&] { EXPECT_EQ(Insert(first), kErr_Generic); }; // which is the one that runs
    manager->Undo();
    EXPECT_EQ(log.deaths, 0u);
    EXPECT_EQ(History(), "[] b2");
}

TEST_F(UndoManager, DyingCommandFindsTheHistoryClosed) {
    UseLevel(2);
    log.onDeath = [&] {
        if (manager == nullptr)
            return;
        EXPECT_EQ(manager->Undo(), kErr_Generic);
        EXPECT_EQ(manager->Clear(), kErr_Generic);
        EXPECT_LE(manager->GetRedoStackSize(), 2u);
    };
    for (int value = 0; value < 5; ++value)
        Insert('a', value);
    manager->Undo();
    Insert('b', 9);
    Insert('b', 10, 0);
    UseLevel(1);
    EXPECT_EQ(manager->Clear(), 0);
    EXPECT_EQ(log.births, log.deaths);
}

TEST_F(UndoManager, UndoAndRedoAllocateNothing) {
    UseLevel(5);
    Insert('a', 1);
    Insert('b', 2);
    log.lines.reserve(100);
    AllocationCount count;
    const size_t before = count.Taken();
    manager->Undo();
    manager->Redo();
    log.lines.clear();
    EXPECT_EQ(count.Taken() - before, 0u); // "execute a1" fits into a short string
}

} // namespace
