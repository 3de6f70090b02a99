#include <korvolib/undo/undo_manager.h>

#include <cstdlib>
#include <iterator>
#include <new>

namespace kvKorvoV12_9_0_320::Undo {

// Commands are foreign code: whatever they call meanwhile finds the history closed.
class KCUndoManager::sBusy {
  public:
    explicit sBusy(KCUndoManager& manager) : m_manager(manager) { m_manager.m_isBusy = true; }
    ~sBusy() { m_manager.m_isBusy = false; }
    sBusy(const sBusy&) = delete;
    sBusy& operator=(const sBusy&) = delete;

  private:
    KCUndoManager& m_manager;
};

KCUndoManagerAbs::~KCUndoManagerAbs() = default;

KCUndoManager::~KCUndoManager() {
    m_isBusy = true; // for good: there is nothing left to come back to
    ClearUndoList();
    ClearRedoList();
    ClearCommandList(m_current);
}

int32_t KCUndoManager::InsertCommand(KTUndoCommandType* command, EInsertToStackType type) {
    if (command == nullptr)
        return kErr_NullArgument;
    if (FromHandle(command)->IsInHistory())
        return kErr_Generic;
    std::unique_ptr<Command> owned(FromHandle(command));
    if (m_isBusy)
        return kErr_Generic;
    const sBusy busy(*this);
    CommandList inserted;
    Command::EventSet events;
    try {
        inserted.push_back(std::move(owned));
        inserted.front()->m_isInHistory = true;
        events.swap(m_pendingEvents);
        inserted.front()->SetEvents(events);
    } catch (const std::bad_alloc&) {
        owned.reset();
        ClearCommandList(inserted);
        m_pendingEvents.merge(events); // for the next one
        return kErr_AllocationFailed;
    }
    Insert(inserted, type);
    return kErr_NoErr;
}

void KCUndoManager::Insert(CommandList& inserted, EInsertToStackType type) {
    if (!m_current.empty()) {
        Command& newer = *inserted.front();
        Command& present = *m_current.front();
        if (type == kInsertToStack_Collapse && newer.IsSameType(&present)) {
            present.TakeOverState(newer);
            ClearCommandList(inserted);
            return;
        }
        if (m_redoStack.empty() && newer == present)
            ClearCommandList(m_current);
    }
    if (!m_current.empty())
        AddUndo(m_current);
    m_current.splice(m_current.end(), inserted);
    ClearRedoList();
}

void KCUndoManager::AddUndo(CommandList& present) {
    MoveToUndoStack(present);
    // With later states still there, the clean one may be among them: no number of undos shall seem to reach it.
    // The same without a stack: what could lead back to the clean state is not kept.
    if (!m_redoStack.empty())
        m_cleanCount = static_cast<int64_t>(m_redoStack.size() + 1 + m_undoStack.size());
    else
        ++m_cleanCount;
}

void KCUndoManager::MoveToUndoStack(CommandList& present) {
    if (m_undoLevel == 0) {
        ClearCommandList(present);
        return;
    }
    if (present.empty())
        return;
    TrimUndoStack(m_undoLevel - size_t{1});
    m_undoStack.splice(m_undoStack.end(), present);
}

void KCUndoManager::AddRedo(CommandList& present) { m_redoStack.splice(m_redoStack.end(), present); }

void KCUndoManager::TrimUndoStack(size_t size) {
    CommandList tooMany;
    while (m_undoStack.size() > size)
        tooMany.splice(tooMany.end(), m_undoStack, m_undoStack.begin());
    ClearCommandList(tooMany);
}

// A destructor that looks at the history finds the list empty, not half destroyed.
void KCUndoManager::ClearCommandList(CommandList& list) {
    CommandList doomed;
    doomed.swap(list);
}

int32_t KCUndoManager::Undo() {
    if (m_isBusy)
        return kErr_Generic;
    if (!CanUndo())
        return kErr_NoErr;
    --m_cleanCount;
    return Step(m_undoStack, [this] { AddRedo(m_current); });
}

int32_t KCUndoManager::Redo() {
    if (m_isBusy)
        return kErr_Generic;
    if (!CanRedo())
        return kErr_NoErr;
    ++m_cleanCount;
    return Step(m_redoStack, [this] { MoveToUndoStack(m_current); });
}

// Takes the newest command off `from`, executes it and makes it the present one.
template <class KeepPresent>
int32_t KCUndoManager::Step(CommandList& from, KeepPresent keepPresent) {
    const sBusy busy(*this);
    CommandList taken;
    taken.splice(taken.end(), from, std::prev(from.end()));
    const auto makePresent = [&] {
        keepPresent();
        m_current.splice(m_current.end(), taken);
    };
    int32_t result = kErr_NoErr;
    try {
        result = taken.front()->Execute();
    } catch (...) {
        makePresent();
        throw;
    }
    makePresent();
    return result;
}

int32_t KCUndoManager::Clear() {
    if (m_isBusy)
        return kErr_Generic;
    const sBusy busy(*this);
    ClearUndoList();
    ClearRedoList();
    ClearCommandList(m_current);
    // The clean state of a negative count was a redo away. From here on steps only count up and back again, so that
    // a positive count never comes to 0.
    m_cleanCount = std::abs(m_cleanCount);
    return kErr_NoErr;
}

int32_t KCUndoManager::SetClean() {
    if (m_isBusy)
        return kErr_Generic;
    m_cleanCount = 0;
    return kErr_NoErr;
}

int32_t KCUndoManager::setUndoLevel(uint16_t level) {
    if (m_isBusy)
        return kErr_Generic;
    const sBusy busy(*this);
    m_undoLevel = level;
    TrimUndoStack(level);
    return kErr_NoErr;
}

const Command* KCUndoManager::GetUndoCommand(size_t number) const {
    if (number >= m_undoStack.size())
        return nullptr;
    if (number == 0)
        return GetPresentCommand();
    return std::next(m_undoStack.rbegin(), static_cast<ptrdiff_t>(number) - 1)->get();
}

const Command* KCUndoManager::GetRedoCommand(size_t number) const {
    if (number >= m_redoStack.size())
        return nullptr;
    return std::next(m_redoStack.rbegin(), static_cast<ptrdiff_t>(number))->get();
}

KCFixedString<255> KCUndoManager::GetUndoCommandName(size_t number) const {
    const Command* const command = GetUndoCommand(number);
    return command != nullptr ? command->getName() : KCFixedString<255>();
}

KCFixedString<255> KCUndoManager::GetRedoCommandName(size_t number) const {
    const Command* const command = GetRedoCommand(number);
    return command != nullptr ? command->getName() : KCFixedString<255>();
}

int32_t KCUndoManager::addEvent(const KCFixedStringBase& event) {
    try {
        m_pendingEvents.emplace(event);
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    }
    return kErr_NoErr;
}

int32_t KCUndoManager::addEvent(const char* event) {
    return event != nullptr ? addEvent(KCFixedString<63>(event)) : kErr_NullArgument;
}

} // namespace kvKorvoV12_9_0_320::Undo
