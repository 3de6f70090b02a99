// The undo history of a hosted plug-in: what a window would keep, for a session that undoes and redoes.
//
// Thread: [main], with the algorithm's lock held.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <korvolib/undo/undo_api.h>

namespace kvKorvoV12_9_0_320::kvHost {

class KCHistory {
  public:
    /// Begins with the algorithm's present state, clean; at most `level` steps can be taken back. The algorithm
    /// (FinishCreate done) outlives this. Throws KCHostFailure without memory.
    KCHistory(cALGORITHM& algorithm, uint16_t level);
    ~KCHistory();
    KCHistory(const KCHistory&) = delete;
    KCHistory& operator=(const KCHistory&) = delete;

    /// One step: the state that a gesture on the parameter has left. The next do what they say; each tells
    /// what came of it in a few words: "step Gain", "took back Gain", "brought back Gain", "nothing to undo". They
    /// throw KCHostFailure where the library reports an error.
    std::string InsertStep(size_t param);
    /// What InsertStep tells, of the step that a window has inserted last.
    std::string DescribeLastStep() const;
    std::string Undo();
    std::string Redo();

    void MarkClean();
    /// "clean" in the state that was marked last, "dirty" in all others.
    const char* GetStateText() const;

    /// The level, whether the state is clean, and the names of all steps, next first.
    std::string ToText() const;

    /// For a window, which inserts the steps of its own gestures; owned by this.
    Undo::KTUndoManagerType* GetManager() const { return m_manager; }

  private:
    cALGORITHM& m_algorithm;
    uint16_t m_level;
    Undo::KTUndoManagerType* m_manager = nullptr;
};

} // namespace kvKorvoV12_9_0_320::kvHost
