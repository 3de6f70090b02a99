#include "session_fields_internal.h"

#include <cmath>

#include "failure.h"
#include "session.h"
#include "text.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

constexpr size_t kLongestText = 127;

int LineOf(const YAML::Node& node) { return node.Mark().line + 1; }

} // namespace

KCEventFields::KCEventFields(const YAML::Node& node, const std::string& fileName)
    : m_fileName(fileName), m_line(LineOf(node)) {
    if (!node.IsMap())
        Fail("", "an event is a mapping, such as {at: 1.5, set: NAME, value: 3}");
    for (const auto& entry : node) {
        if (!entry.first.IsScalar())
            throw KCHostFailure(SessionComplaint(m_fileName, LineOf(entry.first), "a key is one word"));
        const std::string& key = entry.first.Scalar();
        const int line = LineOf(entry.first);
        if (Has(key))
            throw KCHostFailure(
                SessionComplaint(m_fileName, line, "the key " + Quoted(key) + " stands here twice"));
        m_fields.push_back({key, entry.second, line});
    }
}

std::vector<std::string> KCEventFields::GetKeys() const {
    std::vector<std::string> keys;
    for (const sFIELD& field : m_fields)
        keys.push_back(field.key);
    return keys;
}

const KCEventFields::sFIELD* KCEventFields::Find(std::string_view key) const {
    for (const sFIELD& field : m_fields)
        if (field.key == key)
            return &field;
    return nullptr;
}

void KCEventFields::Fail(std::string_view key, const std::string& text) const {
    const sFIELD* const field = Find(key);
    throw KCHostFailure(SessionComplaint(m_fileName, field != nullptr ? field->line : m_line, text));
}

const std::string& KCEventFields::Scalar(std::string_view key, const std::string& expected) const {
    const sFIELD* const field = Find(key);
    if (field == nullptr)
        Fail(key, "the event needs " + InApostrophes(key) + ", " + expected);
    if (!field->value.IsScalar())
        Fail(key, InApostrophes(key) + " must be " + expected);
    return field->value.Scalar();
}

std::string KCEventFields::Text(std::string_view key) const {
    const std::string expected = "a text of 1 to " + std::to_string(kLongestText) + " bytes";
    const std::string& text = Scalar(key, expected);
    if (text.empty() || text.size() > kLongestText || text.find('\0') != std::string::npos)
        Fail(key, InApostrophes(key) + " must be " + expected);
    return text;
}

double KCEventFields::Number(std::string_view key, double lowest, double highest) const {
    const std::string expected = "a number from " + NumberText(lowest) + " to " + NumberText(highest);
    const std::string& text = Scalar(key, expected);
    double number = 0.0;
    if (!ReadNumber(text, number) || number < lowest || number > highest)
        Fail(key, InApostrophes(key) + " must be " + expected + ", not " + Quoted(text));
    return number;
}

double KCEventFields::Number(std::string_view key) const {
    const std::string& text = Scalar(key, "a number");
    double number = 0.0;
    if (!ReadNumber(text, number))
        Fail(key, InApostrophes(key) + " must be a number, not " + Quoted(text));
    return number;
}

int32_t KCEventFields::WholeNumber(std::string_view key, int32_t lowest, int32_t highest) const {
    const double number = Number(key, lowest, highest);
    if (number != std::floor(number))
        Fail(key, InApostrophes(key) + " must be a whole number, not " + NumberText(number));
    return static_cast<int32_t>(number);
}

size_t KCEventFields::Choice(std::string_view key, const std::vector<std::string>& choices) const {
    const std::string expected = JoinedText(choices, " or ");
    const std::string& text = Scalar(key, expected);
    for (size_t i = 0; i < choices.size(); ++i)
        if (choices[i] == text)
            return i;
    Fail(key, InApostrophes(key) + " must be " + expected + ", not " + Quoted(text));
}

bool KCEventFields::Flag(std::string_view key) const { return Has(key) && Choice(key, {"true", "false"}) == 0; }

} // namespace kvKorvoV12_9_0_320::kvHost
