// A command for tests: it stands for a kind and a value, writes down what happens to it, and its births and deaths
// are counted, so that a test can say that none leaked and none died twice.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include <korvolib/undo/undo_command.h>

namespace kvTest {

using namespace kvKorvo;

// What the commands of one test share.
struct CommandLog {
    std::vector<std::string> lines;
    std::set<const void*> alive;
    size_t births = 0;
    size_t deaths = 0;      // of commands that were alive
    size_t falseDeaths = 0; // of commands that were not
    int state = 0;          // what the last Execute brought back
    std::function<void()> onExecute;
    std::function<void()> onDeath;

    std::vector<std::string> Take() { return std::exchange(lines, {}); }
};

class CountedCommand : public Undo::Command {
  public:
    // Its name is the kind and the value: "a1".
    CountedCommand(CommandLog& commandLog, char kind, int value)
        : Command(KCFixedString<31>((kind + std::to_string(value)).c_str())), m_log(commandLog), m_kind(kind),
          m_value(value) {
        ++m_log.births;
        m_log.alive.insert(this);
    }
    ~CountedCommand() override {
        ++(m_log.alive.erase(this) != 0 ? m_log.deaths : m_log.falseDeaths);
        if (m_log.onDeath)
            m_log.onDeath();
    }
    bool operator==(const Command& other) const override {
        return m_value == dynamic_cast<const CountedCommand&>(other).m_value;
    }
    bool IsSameType(const Command* other) const override {
        const auto* const that = dynamic_cast<const CountedCommand*>(other);
        return that != nullptr && that->m_kind == m_kind;
    }
    int32_t Execute() override {
        m_log.lines.push_back("execute " + Text());
        m_log.state = m_value;
        if (m_log.onExecute)
            m_log.onExecute();
        return m_result;
    }
    void SetEvents(const EventSet& events) override {
        std::string line = "events " + Text() + ":";
        for (const KCFixedString<63>& event : events)
            line += std::string(" ") + event.c_str();
        m_log.lines.push_back(line);
        Command::SetEvents(events);
    }
    void TakeOverState(Command& newer) override { m_value = dynamic_cast<CountedCommand&>(newer).m_value; }

    void SetResult(int32_t result) { m_result = result; }
    int Value() const { return m_value; }

  private:
    std::string Text() const { return m_kind + std::to_string(m_value); }

    CommandLog& m_log;
    char m_kind;
    int m_value;
    int32_t m_result = 0;
};

} // namespace kvTest
