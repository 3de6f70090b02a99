// The history of a plug-in's states: KCUndoManager, and the abstract KCUndoManagerAbs that windows and shells know.
//
//   undo stack (earlier states, oldest first) · the present state · redo stack (later states, newest undo last)
//
//   1. A gesture ends: InsertCommand with a command for the state it left. The one before goes to the undo stack,
//      the redo stack is given up.
//   2. Undo: the newest earlier state is executed and is the present one; the one before goes to the redo stack.
//   3. Redo: the same the other way.
//   4. Saved: SetClean. The clean counter then tells the distance from the saved state; on a branch from which the
//      saved state cannot be reached any more it never comes back to 0.
//
// While a command runs (Execute, SetEvents, a comparison, its destructor), the history refuses every change with
// kErr_Generic and stays as it is. If Execute throws, the step counts as taken, and the exception passes on.
//
// Price: one list node per command, taken at insertion; undo and redo allocate nothing. Thread: [main], no lock.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>

#include <korvolib/export.h>
#include <korvolib/undo/undo_command.h>

namespace kvKorvoV12_9_0_320::Undo {

class KORVO_API KCUndoManagerAbs {
  public:
    KCUndoManagerAbs() = default;
    KCUndoManagerAbs(const KCUndoManagerAbs&) = delete;
    KCUndoManagerAbs& operator=(const KCUndoManagerAbs&) = delete;

    // The virtual operations, in the order that plug-ins are linked by.
    virtual ~KCUndoManagerAbs();
    /// Takes the command over, whatever the result. 0; kErr_NullArgument; kErr_Generic while a command runs;
    /// kErr_AllocationFailed: in each of these cases the history stays as it is. A command that a manager owns
    /// already is refused with kErr_Generic and stays where it is.
    virtual int32_t InsertCommand(KTUndoCommandType* command, EInsertToStackType type) = 0;
    /// The code of the command that was executed; 0 when there was nothing to do; kErr_Generic while one runs.
    virtual int32_t Undo() = 0;
    virtual int32_t Redo() = 0;
    virtual bool CanUndo() const = 0;
    virtual bool CanRedo() const = 0;
    /// Destroys every command, the present one too. A dirty state stays dirty until SetClean. 0 or kErr_Generic.
    virtual int32_t Clear() = 0;
    /// The change that the next undo takes back: GetUndoCommandName(0).
    virtual KCFixedString<255> GetLastUndoCommandName() const = 0;
    /// The name of the change that the undo after `number` others takes back; empty when there are not so many.
    virtual KCFixedString<255> GetUndoCommandName(size_t number) const = 0;
    /// The name of the change that the redo after `number` others brings again; empty when there are not so many.
    virtual KCFixedString<255> GetRedoCommandName(size_t number) const = 0;
    /// Adds a name, cut at 63 characters, to what the next insertion hands to its command; one that is there
    /// already is not added again. 0, kErr_AllocationFailed; kErr_NullArgument for null, which adds nothing.
    virtual int32_t addEvent(const KCFixedStringBase& event) = 0;
    virtual int32_t addEvent(const char* event) = 0;
    virtual void clearEvents() = 0;
    virtual uint32_t getNumPendingEvents() const = 0;
    virtual uint16_t getUndoLevel() const = 0;
    /// The most entries of the undo stack; the oldest that are too many go at once. 0 or kErr_Generic.
    virtual int32_t setUndoLevel(uint16_t level) = 0;
};

class KORVO_API KCUndoManager : public KCUndoManagerAbs {
  public:
    KCUndoManager() = default; // level 1, clean, no present state
    ~KCUndoManager() override;

    int32_t InsertCommand(KTUndoCommandType* command, EInsertToStackType type) override;
    int32_t Undo() override;
    int32_t Redo() override;
    bool CanUndo() const override { return !m_undoStack.empty(); }
    bool CanRedo() const override { return !m_redoStack.empty(); }
    int32_t Clear() override;
    KCFixedString<255> GetLastUndoCommandName() const override { return GetUndoCommandName(0); }
    KCFixedString<255> GetUndoCommandName(size_t number) const override;
    KCFixedString<255> GetRedoCommandName(size_t number) const override;
    int32_t addEvent(const KCFixedStringBase& event) override;
    int32_t addEvent(const char* event) override;
    void clearEvents() override { m_pendingEvents.clear(); }
    uint32_t getNumPendingEvents() const override { return static_cast<uint32_t>(m_pendingEvents.size()); }
    uint16_t getUndoLevel() const override { return m_undoLevel; }
    int32_t setUndoLevel(uint16_t level) override;

    bool IsDirty() const { return m_cleanCount != 0; }
    /// The present state is the saved one. 0, or kErr_Generic while a command runs.
    int32_t SetClean();
    /// Steps from the clean state, negative towards undo; 0 means clean.
    int64_t GetCleanCount() const { return m_cleanCount; }
    size_t GetUndoStackSize() const { return m_undoStack.size(); }
    size_t GetRedoStackSize() const { return m_redoStack.size(); }

    /// The commands behind GetUndoCommandName and GetRedoCommandName; null when there are not so many.
    const Command* GetUndoCommand(size_t number) const;
    const Command* GetRedoCommand(size_t number) const;
    /// The present state; null before the first insertion.
    const Command* GetPresentCommand() const { return m_current.empty() ? nullptr : m_current.front().get(); }
    /// Whether a command is running, so that nothing can be changed, nor the manager destroyed.
    bool IsBusy() const { return m_isBusy; }

  protected:
    /// A node moves from list to list with its command, so that a step needs no memory.
    using CommandList = std::list<std::unique_ptr<Command>>;

    /// Moves what `present` holds, one command or none, to the end of the undo stack, whose oldest entries give
    /// way; counts the step.
    void AddUndo(CommandList& present);
    /// Moves what `present` holds to the end of the redo stack.
    void AddRedo(CommandList& present);
    void ClearUndoList() { ClearCommandList(m_undoStack); }
    void ClearRedoList() { ClearCommandList(m_redoStack); }
    static void ClearCommandList(CommandList& list);

  private:
    class sBusy;

    void Insert(CommandList& inserted, EInsertToStackType type);
    void MoveToUndoStack(CommandList& present);
    void TrimUndoStack(size_t size);
    template <class KeepPresent>
    int32_t Step(CommandList& from, KeepPresent keepPresent);

    CommandList m_undoStack;
    CommandList m_redoStack;
    CommandList m_current; // one or none
    int64_t m_cleanCount = 0;
    Command::EventSet m_pendingEvents;
    uint16_t m_undoLevel = 1;
    bool m_isBusy = false;
};

inline KTUndoManagerType* ToHandle(KCUndoManager* manager) { return reinterpret_cast<KTUndoManagerType*>(manager); }
inline KCUndoManager* FromHandle(KTUndoManagerType* handle) { return reinterpret_cast<KCUndoManager*>(handle); }

} // namespace kvKorvoV12_9_0_320::Undo
