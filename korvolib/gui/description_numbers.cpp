#include <korvolib/gui/description_numbers_internal.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string_view>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/number_text.h>

namespace kvKorvoV12_9_0_320::GUIDescription {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// The next word of the text, which goes on behind it; empty at its end.
std::string_view NextWord(std::string_view& text) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
    text.remove_prefix(word.size());
    return word;
}

bool IsWithin(double value, double lowest, double highest) noexcept { return value >= lowest && value <= highest; }

bool ParseNumbers(std::string_view text, std::span<double> values) noexcept {
    for (double& value : values) {
        const std::string_view word = NextWord(text);
        if (!ParseDecimal(word.data(), word.size(), value) || !IsWithin(value, -kFarthest, kFarthest))
            return false;
    }
    return NextWord(text).empty();
}

// What every reader does with a value: there and good, there and reported, or not there.
bool Report(const KCXMLElement& element, const char* name, const char* expected, Problems& problems) {
    KCFixedString<127> text(name);
    text << " is " << expected << ", not";
    AddProblem(element, text.c_str(), element.GetAttribute(name, ""), problems);
    return false;
}

void AppendNumber(KCFixedStringBase& text, double value) noexcept {
    char digits[kDecimalTextSize];
    FormatDecimal(value, digits, sizeof digits);
    text << (text.empty() ? "" : " ") << digits;
}

// A limit of this file's callers, in full: "1000000" is read faster than "1e+06".
void AppendLimit(KCFixedStringBase& text, double limit) noexcept {
    text << ' ';
    if (std::trunc(limit) == limit && std::abs(limit) < 1e15) {
        text << static_cast<long long>(limit);
        return;
    }
    char digits[kDecimalTextSize];
    FormatDecimal(limit, digits, sizeof digits);
    text << digits;
}

KCFixedString<63> RangeText(const char* what, double lowest, double highest) noexcept {
    KCFixedString<63> text(what);
    text << " from";
    AppendLimit(text, lowest);
    text << " to";
    AppendLimit(text, highest);
    return text;
}

// "Left, Centre or Right"
KCFixedString<127> ListText(std::span<const char* const> words) noexcept {
    KCFixedString<127> text;
    for (size_t i = 0; i < words.size(); ++i)
        text << (i == 0 ? "" : i + 1 == words.size() ? " or " : ", ") << words[i];
    return text;
}

} // namespace

void AddProblem(const KCXMLElement& element, const char* text, const char* quoted, Problems& problems) {
    sDESCRIPTION_PROBLEM problem;
    problem.Line = element.GetLine();
    problem.Text << text;
    if (quoted != nullptr)
        problem.Text << " \"" << quoted << '"';
    problems.push_back(problem);
}

bool ReadNumber(const KCXMLElement& element, const char* name, double lowest, double highest, double& value,
                Problems& problems) {
    double number = 0.0;
    const KEXMLValue result = element.ReadAttribute(name, number);
    if (result == KEXMLValue::Missing)
        return false;
    if (result != KEXMLValue::Found || !IsWithin(number, lowest, highest))
        return Report(element, name, RangeText("a number", lowest, highest).c_str(), problems);
    value = number;
    return true;
}

bool ReadWhole(const KCXMLElement& element, const char* name, int32_t lowest, int32_t highest, int32_t& value,
               Problems& problems) {
    int32_t number = 0;
    const KEXMLValue result = element.ReadAttribute(name, number);
    if (result == KEXMLValue::Missing)
        return false;
    if (result != KEXMLValue::Found || number < lowest || number > highest)
        return Report(element, name, RangeText("a whole number", lowest, highest).c_str(), problems);
    value = number;
    return true;
}

bool ReadFlag(const KCXMLElement& element, const char* name, bool& value, Problems& problems) {
    const KEXMLValue result = element.ReadAttribute(name, value);
    return result == KEXMLValue::Malformed ? Report(element, name, "true or false", problems)
                                           : result == KEXMLValue::Found;
}

bool ReadColor(const KCXMLElement& element, const char* name, KUColor& value, Problems& problems) {
    const char* const text = element.GetAttribute(name);
    if (text == nullptr)
        return false;
    return KUColor::Parse(text, value) == kErr_NoErr ||
           Report(element, name, "a colour (#RRGGBB or #RRGGBBAA)", problems);
}

bool ReadNumbers(const KCXMLElement& element, const char* name, std::span<double> values, Problems& problems) {
    const char* const text = element.GetAttribute(name);
    double numbers[8] = {};
    if (text == nullptr || values.size() > std::size(numbers))
        return false;
    const std::span<double> read = std::span<double>(numbers).first(values.size());
    if (!ParseNumbers(text, read)) {
        KCFixedString<63> expected;
        expected << values.size() << " numbers with blanks between them";
        return Report(element, name, expected.c_str(), problems);
    }
    std::ranges::copy(read, values.begin());
    return true;
}

bool ReadRect(const KCXMLElement& element, const char* name, KURect<double>& value, Problems& problems) {
    double edges[4] = {};
    if (!ReadNumbers(element, name, edges, problems))
        return false;
    if (edges[2] < 0.0 || edges[3] < 0.0)
        return Report(element, name, "x, y, width and height", problems);
    value = KURect<double>::FromOrigin({edges[0], edges[1]}, {edges[2], edges[3]});
    return true;
}

bool ReadWord(const KCXMLElement& element, const char* name, std::span<const char* const> words, size_t& index,
              Problems& problems) {
    const char* const text = element.GetAttribute(name);
    if (text == nullptr)
        return false;
    const auto found = std::ranges::find(words, std::string_view(text));
    if (found == words.end())
        return Report(element, name, ListText(words).c_str(), problems);
    index = static_cast<size_t>(found - words.begin());
    return true;
}

KCFixedString<127> NumbersText(std::span<const double> values) {
    KCFixedString<127> text;
    for (const double value : values)
        AppendNumber(text, value);
    return text;
}

KCFixedString<127> RectText(const KURect<double>& rect) {
    const double values[] = {rect.left, rect.top, rect.GetWidth(), rect.GetHeight()};
    return NumbersText(values);
}

} // namespace kvKorvoV12_9_0_320::GUIDescription
