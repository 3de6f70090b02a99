#include "history.h"

#include <algorithm>

#include "failure.h"
#include "text_table.h"

namespace kvKorvoV12_9_0_320::kvHost {

namespace API = Undo::API;

namespace {

void Check(int32_t result, const char* what) {
    if (result != kErr_NoErr)
        throw KCHostFailure(std::string(what) + " failed: error " + std::to_string(result));
}

// Empty beyond the last step.
std::string UndoName(Undo::KTUndoManagerType* manager, size_t number) {
    KCFixedString<255> name;
    return API::GetUndoCommandName(manager, number, name) == kErr_NoErr ? name.c_str() : "";
}

std::string RedoName(Undo::KTUndoManagerType* manager, size_t number) {
    KCFixedString<255> name;
    return API::GetRedoCommandName(manager, number, name) == kErr_NoErr ? name.c_str() : "";
}

} // namespace

KCHistory::KCHistory(cALGORITHM& algorithm, uint16_t level) : m_algorithm(algorithm), m_level(level) {
    Check(API::CreateDefaultUndoManager(m_manager), "an undo history");
    if (const int32_t result = API::StartHistory(m_manager, &algorithm, level); result != kErr_NoErr) {
        API::DisposeUndoManager(m_manager);
        Check(result, "an undo history");
    }
}

KCHistory::~KCHistory() { API::DisposeUndoManager(m_manager); }

std::string KCHistory::InsertStep(size_t param) {
    Check(API::InsertGestureStep(m_manager, &m_algorithm, static_cast<uint32_t>(param)), "a step of undo");
    return DescribeLastStep();
}

std::string KCHistory::DescribeLastStep() const {
    return API::CanUndo(m_manager) ? "step " + UndoName(m_manager, 0) : "no step";
}

std::string KCHistory::Undo() {
    if (!API::CanUndo(m_manager))
        return "nothing to undo";
    const std::string name = UndoName(m_manager, 0);
    Check(API::ExecuteUndo(m_manager), "undo");
    return "took back " + name;
}

std::string KCHistory::Redo() {
    if (!API::CanRedo(m_manager))
        return "nothing to redo";
    const std::string name = RedoName(m_manager, 0);
    Check(API::ExecuteRedo(m_manager), "redo");
    return "brought back " + name;
}

void KCHistory::MarkClean() { Check(API::SetClean(m_manager), "marking the state as clean"); }

const char* KCHistory::GetStateText() const { return API::IsDirty(m_manager) ? "dirty" : "clean"; }

std::string KCHistory::ToText() const {
    const size_t numUndo = API::GetUndoStackSize(m_manager);
    const size_t numRedo = API::GetRedoStackSize(m_manager);
    std::string text = "History, at most " + std::to_string(m_level) + " steps: " + GetStateText();
    if (numUndo + numRedo == 0)
        return text + ", no steps\n";
    KCTextTable table({{"next", true}, {"undo"}, {"redo"}});
    for (size_t number = 0; number < std::max(numUndo, numRedo); ++number)
        table.AddRow({std::to_string(number + 1), UndoName(m_manager, number), RedoName(m_manager, number)});
    return text + "\n\n" + table.ToText();
}

} // namespace kvKorvoV12_9_0_320::kvHost
