// One state of a plug-in in its history: Command, and the opaque KTUndoCommandType that callers of the flat
// interface hold instead.
//
// A command is made for the state *after* a change and is named after that change; Execute brings the state back.
// The manager owns a command from InsertCommand on. Thread: [main].
#pragma once

#include <cstdint>
#include <set>

#include <korvolib/export.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/strings/fixed_string.h>

namespace kvKorvoV12_9_0_320::Undo {

struct KTUndoManagerType; // what a KCUndoManager is to the flat interface
struct KTUndoCommandType; // what a Command is to it

/// How an insertion treats a present command of the same kind. Every other value is taken like NewStep.
enum EInsertToStackType : int32_t {
    kInsertToStack_Collapse = 0, ///< the present step is continued
    kInsertToStack_NewStep = 1   ///< a step of its own
};

class KORVO_API Command {
  public:
    using EventSet = std::set<KCFixedString<63>>;

    explicit Command(const KCFixedStringBase& name, uint32_t id = 0) : m_name(name), m_id(id) {}
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    // The virtual operations, in the order that plug-ins are linked by.
    virtual ~Command();
    /// Whether both stand for the same state.
    virtual bool operator==(const Command& other) const = 0;
    /// Whether the other, which may be null, is the same kind of change, so that the two can be one step.
    virtual bool IsSameType(const Command* other) const = 0;
    /// Brings the state back. 0 or an error code; the step counts as taken either way. Whatever it calls, it cannot
    /// change the history that it is part of.
    virtual int32_t Execute() = 0;
    /// What happened since the insertion before; called once, by the manager, before anything else.
    virtual void SetEvents(const EventSet& events);
    /// `newer`, of the same kind, is about to be destroyed because this command already stands for its step: from
    /// now on this stands for the newer's state. Nothing unless overridden.
    virtual void TakeOverState(Command& newer);

    const KCFixedString<255>& getName() const { return m_name; }
    uint32_t getID() const { return m_id; }
    const EventSet& getEvents() const { return m_events; }
    /// Whether a manager owns the command.
    bool IsInHistory() const { return m_isInHistory; }

  protected:
    void SetName(const KCFixedStringBase& name) { m_name = name; }

  private:
    friend class KCUndoManager;

    KCFixedString<255> m_name;
    uint32_t m_id;
    bool m_isInHistory = false;
    EventSet m_events;
};

// A handle is the object's address under another name; null stays null.
inline KTUndoCommandType* ToHandle(Command* command) { return reinterpret_cast<KTUndoCommandType*>(command); }
inline Command* FromHandle(KTUndoCommandType* handle) { return reinterpret_cast<Command*>(handle); }

} // namespace kvKorvoV12_9_0_320::Undo
