// The manager beside a slow and obvious model: plain lists of kinds and values, and the rules in a few lines each.
#include <korvolib/undo/undo_manager.h>

#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <tests/support/counted_command.h>

namespace {

using namespace kvTest;
using namespace kvKorvo::Undo;

struct Entry {
    char kind = 0;
    int value = 0;
    std::string name; // that of its birth: taking over a state leaves it
};

struct Model {
    std::vector<Entry> undo, redo, present;
    size_t level = 1;
    int64_t clean = 0;
    int state = 0;

    void Push(const Entry& entry) {
        if (level == 0)
            return;
        if (undo.size() >= level)
            undo.erase(undo.begin());
        undo.push_back(entry);
    }
    void Insert(const Entry& entry, int type) {
        if (type == 0 && !present.empty() && present[0].kind == entry.kind) {
            present[0].value = entry.value;
            return;
        }
        if (!present.empty() && present[0].value == entry.value && redo.empty())
            present.clear();
        if (!present.empty()) {
            Push(present[0]);
            if (redo.empty())
                clean += 1;
            else
                clean = static_cast<int64_t>(redo.size() + 1 + undo.size());
        }
        present = {entry};
        redo.clear();
    }
    void Undo() {
        if (undo.empty())
            return;
        clean -= 1;
        redo.push_back(present[0]);
        present[0] = undo.back();
        undo.pop_back();
        state = present[0].value;
    }
    void Redo() {
        if (redo.empty())
            return;
        clean += 1;
        Push(present[0]);
        present[0] = redo.back();
        redo.pop_back();
        state = present[0].value;
    }
    void SetLevel(size_t newLevel) {
        level = newLevel;
        while (undo.size() > level)
            undo.erase(undo.begin());
    }
    void Clear() {
        undo.clear();
        redo.clear();
        present.clear();
        if (clean < 0)
            clean = -clean;
    }
};

class UndoModel : public testing::Test {
  protected:
    void RunOneOperation() {
        const auto what = random() % 100;
        if (what < 50)
            InsertSomething();
        else if (what < 70)
            model.Undo(), manager.Undo();
        else if (what < 88)
            model.Redo(), manager.Redo();
        else if (what < 95)
            ChangeLevel();
        else if (what < 99)
            model.clean = 0, manager.SetClean();
        else
            model.Clear(), manager.Clear();
    }
    void InsertSomething() {
        const char kind = static_cast<char>('a' + random() % 3);
        const int value = static_cast<int>(random() % 4);
        const int type = static_cast<int>(random() % 3);
        model.Insert({kind, value, kind + std::to_string(value)}, type);
        auto* const command = new CountedCommand(log, kind, value);
        EXPECT_EQ(manager.InsertCommand(ToHandle(command), static_cast<EInsertToStackType>(type)), 0);
    }
    void ChangeLevel() {
        const size_t level = random() % 9;
        model.SetLevel(level);
        manager.setUndoLevel(static_cast<uint16_t>(level));
    }
    // Names and values of everything that the manager shows, the present state by what it brought back.
    void Compare() {
        ASSERT_EQ(manager.GetUndoStackSize(), model.undo.size());
        ASSERT_EQ(manager.GetRedoStackSize(), model.redo.size());
        ASSERT_EQ(manager.CanUndo(), !model.undo.empty());
        ASSERT_EQ(manager.CanRedo(), !model.redo.empty());
        ASSERT_EQ(manager.GetCleanCount(), model.clean);
        ASSERT_EQ(manager.IsDirty(), model.clean != 0);
        ASSERT_EQ(log.alive.size(), model.undo.size() + model.redo.size() + model.present.size());
        ASSERT_EQ(log.state, model.state);
        for (size_t n = 0; n <= model.undo.size(); ++n)
            ExpectCommand(manager.GetUndoCommand(n), UndoEntry(n), manager.GetUndoCommandName(n));
        for (size_t n = 0; n <= model.redo.size(); ++n)
            ExpectCommand(manager.GetRedoCommand(n), RedoEntry(n), manager.GetRedoCommandName(n));
    }
    const Entry* UndoEntry(size_t n) const {
        if (n >= model.undo.size())
            return nullptr;
        return n == 0 ? &model.present[0] : &model.undo[model.undo.size() - n];
    }
    const Entry* RedoEntry(size_t n) const {
        return n < model.redo.size() ? &model.redo[model.redo.size() - 1 - n] : nullptr;
    }
    static void ExpectCommand(const Command* command, const Entry* entry, const KCFixedString<255>& name) {
        ASSERT_EQ(command == nullptr, entry == nullptr);
        ASSERT_STREQ(name.c_str(), entry != nullptr ? entry->name.c_str() : "");
        if (entry != nullptr) {
            ASSERT_EQ(dynamic_cast<const CountedCommand&>(*command).Value(), entry->value);
        }
    }

    CommandLog log;
    KCUndoManager manager;
    Model model;
    std::mt19937 random{20240607};
};

TEST_F(UndoModel, AgreesOverManyRandomOperations) {
    for (int i = 0; i < 150000; ++i) {
        RunOneOperation();
        Compare();
        if (HasFatalFailure())
            FAIL() << "at operation " << i;
        if (i % 1000 == 0)
            log.lines.clear();
    }
    model.Clear();
    manager.Clear();
    EXPECT_EQ(log.births, log.deaths);
    EXPECT_EQ(log.falseDeaths, 0u);
}

// Without continued steps, every one a state of its own: trimmed, on another branch or cleared away, the saved
// state is never taken for another.
TEST_F(UndoModel, OnlyTheSavedStateIsClean) {
    int next = 1, saved = 0, timesClean = 0;
    for (int i = 0; i < 50000; ++i) {
        const auto what = random() % 100;
        if (what < 40)
            manager.InsertCommand(ToHandle(new CountedCommand(log, 'a', next++)), kInsertToStack_NewStep);
        else if (what < 65)
            manager.Undo();
        else if (what < 90)
            manager.Redo();
        else if (what < 95)
            manager.setUndoLevel(static_cast<uint16_t>(random() % 9));
        else if (const auto* present = dynamic_cast<const CountedCommand*>(manager.GetPresentCommand());
                 present != nullptr && what < 99)
            saved = present->Value(), manager.SetClean();
        else if (manager.IsDirty())
            manager.Clear();
        const auto* const present = dynamic_cast<const CountedCommand*>(manager.GetPresentCommand());
        if (saved == 0 || manager.IsDirty() || present == nullptr)
            continue;
        ASSERT_EQ(present->Value(), saved) << "at operation " << i;
        ++timesClean;
    }
    EXPECT_GT(timesClean, 1000);
}

// Whatever Execute tries, the histories stay the same as without.
TEST_F(UndoModel, AgreesWhenExecuteMisbehaves) {
    log.onExecute = [this] {
        switch (random() % 5) {
        case 0:
            manager.Undo();
            break;
        case 1:
            manager.Redo();
            break;
        case 2:
            manager.Clear();
            break;
        case 3:
            manager.InsertCommand(ToHandle(new CountedCommand(log, 'z', 0)), kInsertToStack_NewStep);
            break;
        default:
            manager.setUndoLevel(0);
        }
    };
    for (int i = 0; i < 20000; ++i) {
        RunOneOperation();
        Compare();
        if (HasFatalFailure())
            FAIL() << "at operation " << i;
        if (i % 1000 == 0)
            log.lines.clear();
    }
    manager.Clear();
    EXPECT_EQ(log.births, log.deaths);
    EXPECT_EQ(log.falseDeaths, 0u);
}

} // namespace
