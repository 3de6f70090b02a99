// What the sources of CStandardGUI_X share.
#pragma once

#include <utility>

#include <korvolib/gui/x_cstandardgui.h>

namespace kvKorvoV12_9_0_320 {

/// From an event's entry to its end: holds the algorithm's lock, and turns away what a hook sends from inside.
/// False where the event must not go on: before Create, and inside another event.
class CStandardGUI_X::sEVENT {
  public:
    explicit sEVENT(CStandardGUI_X& window) : m_window(window), m_algorithm(window.m_algorithm) {
        if (m_algorithm == nullptr)
            return;
        m_algorithm->LockAlg();
        m_isEntered = !std::exchange(window.m_isInEvent, true);
    }
    ~sEVENT() {
        if (m_isEntered)
            Leave();
        if (m_algorithm != nullptr)
            m_algorithm->UnLockAlg();
    }
    sEVENT(const sEVENT&) = delete;
    sEVENT& operator=(const sEVENT&) = delete;

    explicit operator bool() const noexcept { return m_isEntered; }

  private:
    void Leave() noexcept {
        m_window.m_isInEvent = false;
        if (!std::exchange(m_window.m_isCloseWanted, false))
            return;
        try {
            m_window.Close();
        } catch (...) { // NOLINT(bugprone-empty-catch): whoever asked has been told that it closes later
        }
    }

    CStandardGUI_X& m_window;
    cALGORITHM* const m_algorithm;
    bool m_isEntered = false;
};

} // namespace kvKorvoV12_9_0_320
