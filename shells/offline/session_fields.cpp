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
    AddFieldsOf(node);
}

void KCEventFields::AddFieldsOf(const YAML::Node& map) {
    for (const auto& entry : map) {
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

KUPoint<double> KCEventFields::Pair(std::string_view key, double furthest) const {
    const auto read = [&](const YAML::Node& part, double& number) {
        return part.IsScalar() && ReadNumber(part.Scalar(), number) && std::abs(number) <= furthest;
    };
    KUPoint<double> pair{};
    const sFIELD* const field = Find(key);
    if (field == nullptr || !field->value.IsSequence() || field->value.size() != 2 ||
        !read(field->value[0], pair.x) || !read(field->value[1], pair.y))
        Fail(key, InApostrophes(key) + " must be two numbers from " + NumberText(-furthest) + " to " +
                      NumberText(furthest) + (furthest > 1.0 ? ", such as [0, -40]" : ", such as [0.5, 1]"));
    return pair;
}

bool KCEventFields::IsList(std::string_view key) const {
    const sFIELD* const field = Find(key);
    return field != nullptr && field->value.IsSequence();
}

bool KCEventFields::IsMap(std::string_view key) const {
    const sFIELD* const field = Find(key);
    return field != nullptr && field->value.IsMap();
}

std::vector<std::string> KCEventFields::Texts(std::string_view key, const std::string& expected) const {
    if (!IsList(key))
        return {Scalar(key, expected)};
    std::vector<std::string> texts;
    for (const YAML::Node& part : Find(key)->value) {
        if (!part.IsScalar())
            Fail(key, InApostrophes(key) + " must be " + expected);
        texts.push_back(part.Scalar());
    }
    return texts;
}

void KCEventFields::Nothing(std::string_view key) const {
    const sFIELD* const field = Find(key);
    if (field != nullptr && !field->value.IsNull())
        Fail(key, InApostrophes(key) + " takes nothing");
}

KCEventFields KCEventFields::Part(std::string_view key, const std::string& expected) const {
    const sFIELD* const field = Find(key);
    const bool isWord = field != nullptr && field->value.IsScalar();
    if (field == nullptr || !(isWord || field->value.IsMap()))
        Fail(key, InApostrophes(key) + " must be " + expected);
    KCEventFields part(m_fileName, field->line);
    if (isWord)
        part.m_fields.push_back({field->value.Scalar(), YAML::Node(), field->line});
    else
        part.AddFieldsOf(field->value);
    return part;
}

bool KCEventFields::Flag(std::string_view key) const { return Has(key) && Choice(key, {"true", "false"}) == 0; }

} // namespace kvKorvoV12_9_0_320::kvHost
