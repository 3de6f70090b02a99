// What no hand can do: let go of what it does not hold, press twice.
#include <map>

#include "failure.h"
#include "session_kinds_internal.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

class KCHandOrder {
  public:
    explicit KCHandOrder(const std::string& fileName) : m_fileName(fileName) {}

    void Follow(const sSESSION_EVENT& event) {
        m_line = event.line;
        if (const auto* const mouse = std::get_if<sUSE_MOUSE>(&event.action))
            FollowMouse(mouse->what);
        else if (const auto* const touch = std::get_if<sTOUCH>(&event.action))
            FollowFinger(*touch);
        else if (std::holds_alternative<sHOVER>(event.action))
            RefuseWhileDown(m_buttonLine, "the mouse button");
    }

  private:
    using MouseWhat = sUSE_MOUSE::KEWhat;

    void FollowMouse(MouseWhat what) {
        const bool isPart = what == MouseWhat::Drag || what == MouseWhat::Release || what == MouseWhat::Lost;
        if (isPart)
            RefuseUnlessDown(m_buttonLine, "the mouse button", "press");
        else
            RefuseWhileDown(m_buttonLine, "the mouse button");
        if (what == MouseWhat::Press)
            m_buttonLine = m_line;
        else if (what != MouseWhat::Drag)
            m_buttonLine = 0;
    }

    void FollowFinger(const sTOUCH& touch) {
        int& line = m_fingerLines[touch.finger];
        const std::string subject = "finger " + std::to_string(touch.finger);
        if (touch.what != sTOUCH::KEWhat::Down)
            RefuseUnlessDown(line, subject, "down");
        else
            RefuseWhileDown(line, subject);
        if (touch.what == sTOUCH::KEWhat::Down)
            line = m_line;
        else if (touch.what == sTOUCH::KEWhat::Up)
            line = 0;
    }

    void RefuseUnlessDown(int line, const std::string& subject, const char* needed) const {
        if (line == 0)
            Fail(subject + " is not down: '" + needed + "' must stand before this");
    }
    void RefuseWhileDown(int line, const std::string& subject) const {
        if (line != 0)
            Fail(subject + " is down since line " + std::to_string(line));
    }
    [[noreturn]] void Fail(const std::string& text) const {
        throw KCHostFailure(SessionComplaint(m_fileName, m_line, text));
    }

    const std::string& m_fileName;
    int m_line = 0;
    int m_buttonLine = 0; // where it went down; 0: it is up
    std::map<int32_t, int> m_fingerLines;
};

} // namespace

void RefuseImpossibleHand(const sSESSION& session) {
    KCHandOrder order(session.fileName);
    for (const sSESSION_EVENT& event : session.events)
        order.Follow(event);
}

} // namespace kvKorvoV12_9_0_320::kvHost
