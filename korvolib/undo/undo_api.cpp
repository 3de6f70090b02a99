#include <korvolib/undo/undo_api.h>

#include <new>

#include <korvolib/undo/undo_commands.h>
#include <korvolib/undo/undo_manager.h>

namespace kvKorvoV12_9_0_320::Undo::API {

namespace {

// A null handle and an exception have the same answer everywhere.
template <class Operation>
int32_t With(KTUndoManagerType* manager, Operation operation) noexcept {
    if (manager == nullptr)
        return kErr_NullArgument;
    try {
        return operation(*FromHandle(manager));
    } catch (const std::bad_alloc&) {
        return kErr_AllocationFailed;
    } catch (...) {
        return kErr_Generic;
    }
}

template <class Made, class... Arguments>
int32_t MakeCommand(KTUndoCommandType*& out, const Arguments&... arguments) noexcept {
    out = nullptr;
    auto* const made = new (std::nothrow) Made(arguments...);
    if (made == nullptr)
        return kErr_AllocationFailed;
    const int32_t result = made->GetResult();
    if (result == kErr_NoErr)
        out = ToHandle(made);
    else
        delete made;
    return result;
}

} // namespace

int32_t CreateDefaultUndoManager(KTUndoManagerType*& out) noexcept {
    out = ToHandle(new (std::nothrow) KCUndoManager);
    return out != nullptr ? kErr_NoErr : kErr_AllocationFailed;
}

int32_t DisposeUndoManager(KTUndoManagerType* manager) noexcept {
    return With(manager, [](KCUndoManager& m) -> int32_t {
        if (m.IsBusy())
            return kErr_Generic;
        delete &m;
        return kErr_NoErr;
    });
}

int32_t ClearUndoManager(KTUndoManagerType* manager) noexcept {
    return With(manager, [](KCUndoManager& m) { return m.Clear(); });
}

int32_t GetUndoLevel(KTUndoManagerType* manager, unsigned short& level) noexcept {
    level = 0;
    return With(manager, [&](KCUndoManager& m) {
        level = m.getUndoLevel();
        return kErr_NoErr;
    });
}

int32_t SetUndoLevel(KTUndoManagerType* manager, unsigned short level) noexcept {
    return With(manager, [&](KCUndoManager& m) { return m.setUndoLevel(level); });
}

bool IsDirty(KTUndoManagerType* manager) noexcept { return manager != nullptr && FromHandle(manager)->IsDirty(); }

int32_t SetClean(KTUndoManagerType* manager) noexcept {
    return With(manager, [](KCUndoManager& m) { return m.SetClean(); });
}

int32_t CreateParametersCommand(cALGORITHM* algorithm, uint32_t param, KTUndoCommandType*& out) noexcept {
    return MakeCommand<KCUndoCommandParameters>(out, algorithm, param);
}

int32_t CreatePresetCommand(const CPublicAlg& algorithm, uint32_t id, const Preset::CPresetInfo* preset,
                            KTUndoCommandType*& out) noexcept {
    return MakeCommand<KCUndoCommandPreset>(out, algorithm, id, preset);
}

int32_t DisposeCommand(KTUndoCommandType* command) noexcept {
    if (command == nullptr)
        return kErr_NullArgument;
    if (FromHandle(command)->IsInHistory())
        return kErr_Generic;
    delete FromHandle(command);
    return kErr_NoErr;
}

int32_t InsertCommand(KTUndoManagerType* manager, KTUndoCommandType* command, EInsertToStackType type) noexcept {
    return With(manager, [&](KCUndoManager& m) { return m.InsertCommand(command, type); });
}

int32_t ExecuteUndo(KTUndoManagerType* manager) noexcept {
    return With(manager, [](KCUndoManager& m) { return m.Undo(); });
}

int32_t ExecuteRedo(KTUndoManagerType* manager) noexcept {
    return With(manager, [](KCUndoManager& m) { return m.Redo(); });
}

bool CanUndo(KTUndoManagerType* manager) noexcept { return manager != nullptr && FromHandle(manager)->CanUndo(); }
bool CanRedo(KTUndoManagerType* manager) noexcept { return manager != nullptr && FromHandle(manager)->CanRedo(); }

size_t GetUndoStackSize(KTUndoManagerType* manager) noexcept {
    return manager != nullptr ? FromHandle(manager)->GetUndoStackSize() : 0;
}

size_t GetRedoStackSize(KTUndoManagerType* manager) noexcept {
    return manager != nullptr ? FromHandle(manager)->GetRedoStackSize() : 0;
}

int32_t GetUndoCommandName(KTUndoManagerType* manager, size_t number, KCFixedString<255>& name) noexcept {
    name.clear();
    return With(manager, [&](KCUndoManager& m) {
        name = m.GetUndoCommandName(number);
        return kErr_NoErr;
    });
}

int32_t GetRedoCommandName(KTUndoManagerType* manager, size_t number, KCFixedString<255>& name) noexcept {
    name.clear();
    return With(manager, [&](KCUndoManager& m) {
        name = m.GetRedoCommandName(number);
        return kErr_NoErr;
    });
}

int32_t GetLastUndoCommandName(KTUndoManagerType* manager, KCFixedString<255>& name) noexcept {
    return GetUndoCommandName(manager, 0, name);
}

bool IsPresetCommand(KTUndoManagerType* manager) noexcept {
    return manager != nullptr &&
           dynamic_cast<const KCUndoCommandPreset*>(FromHandle(manager)->GetUndoCommand(0)) != nullptr;
}

int32_t AddUndoEvent(KTUndoManagerType* manager, const KCFixedString<63>& event) noexcept {
    return With(manager, [&](KCUndoManager& m) { return m.addEvent(event); });
}

int32_t ClearUndoEvents(KTUndoManagerType* manager) noexcept {
    return With(manager, [](KCUndoManager& m) {
        m.clearEvents();
        return kErr_NoErr;
    });
}

uint32_t GetNumEvents(KTUndoManagerType* manager) noexcept {
    return manager != nullptr ? FromHandle(manager)->getNumPendingEvents() : 0;
}

int32_t StartHistory(KTUndoManagerType* manager, cALGORITHM* algorithm, uint16_t level) noexcept {
    int32_t result = ClearUndoManager(manager);
    if (result == kErr_NoErr)
        result = ClearUndoEvents(manager);
    if (result == kErr_NoErr)
        result = SetUndoLevel(manager, level);
    if (result == kErr_NoErr)
        result = InsertGestureStep(manager, algorithm, kUndoAllParams);
    return result == kErr_NoErr ? SetClean(manager) : result;
}

int32_t InsertGestureStep(KTUndoManagerType* manager, cALGORITHM* algorithm, uint32_t param) noexcept {
    if (manager == nullptr)
        return kErr_NullArgument;
    KTUndoCommandType* command = nullptr;
    const int32_t result = CreateParametersCommand(algorithm, param, command);
    if (result != kErr_NoErr)
        return result;
    // The manager would put the click in the place of the present state, or of the later ones.
    const auto& state = static_cast<const KCUndoCommandParameters&>(*FromHandle(command));
    if (state.HasStateOf(FromHandle(manager)->GetPresentCommand()))
        return DisposeCommand(command);
    return InsertCommand(manager, command, kInsertToStack_NewStep);
}

} // namespace kvKorvoV12_9_0_320::Undo::API
