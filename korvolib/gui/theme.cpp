#include <korvolib/gui/theme.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/xml/xml_element.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace kvKorvoV12_9_0_320 {

namespace {

using Problems = std::vector<sDESCRIPTION_PROBLEM>;

struct sCOLOR_FIELD {
    const char* name;
    KUColor KCTheme::*field;
};

struct sNUMBER_FIELD {
    const char* name;
    double KCTheme::*field;
    double maximum; // the minimum is 0
};

constexpr double kMaxPixels = 1.0e6;

constexpr sCOLOR_FIELD kColors[] = {
    {"window", &KCTheme::window},   {"panel", &KCTheme::panel},         {"panelFrame", &KCTheme::panelFrame},
    {"body", &KCTheme::body},       {"bodyLight", &KCTheme::bodyLight}, {"track", &KCTheme::track},
    {"accent", &KCTheme::accent},   {"accentOff", &KCTheme::accentOff}, {"text", &KCTheme::text},
    {"textDim", &KCTheme::textDim}, {"selection", &KCTheme::selection}, {"warning", &KCTheme::warning},
};

constexpr sNUMBER_FIELD kNumbers[] = {
    {"labelHeight", &KCTheme::labelHeight, kMaxPixels},   {"valueHeight", &KCTheme::valueHeight, kMaxPixels},
    {"titleHeight", &KCTheme::titleHeight, kMaxPixels},   {"strokeWidth", &KCTheme::strokeWidth, kMaxPixels},
    {"cornerRadius", &KCTheme::cornerRadius, kMaxPixels}, {"disabledOpacity", &KCTheme::disabledOpacity, 1.0},
};

constexpr const char kFontFamily[] = "fontFamily";

void Report(Problems& problems, const KCXMLElement& element, const char* what, const char* name,
            const char* value) {
    sDESCRIPTION_PROBLEM problem;
    problem.Line = element.GetLine();
    problem.Text << what << " \"" << name << "\" of the theme: \"" << value << '"';
    problems.push_back(problem);
}

bool ReadColor(const KCXMLElement& element, const sCOLOR_FIELD& entry, KCTheme& theme, Problems& problems) {
    const char* const text = element.GetAttribute(entry.name);
    if (text == nullptr || KUColor::Parse(text, theme.*entry.field) == kErr_NoErr)
        return true;
    Report(problems, element, "no colour for", entry.name, text);
    return false;
}

bool ReadNumber(const KCXMLElement& element, const sNUMBER_FIELD& entry, KCTheme& theme, Problems& problems) {
    double number = 0.0;
    const KEXMLValue read = element.ReadAttribute(entry.name, number);
    if (read == KEXMLValue::Missing)
        return true;
    if (read == KEXMLValue::Found && number >= 0.0 && number <= entry.maximum) {
        theme.*entry.field = number;
        return true;
    }
    Report(problems, element, "no size for", entry.name, element.GetAttribute(entry.name));
    return false;
}

#ifndef NDEBUG
bool IsKnown(const char* name) {
    const auto hasName = [name](const auto& entry) { return std::strcmp(entry.name, name) == 0; };
    return std::any_of(std::begin(kColors), std::end(kColors), hasName) ||
           std::any_of(std::begin(kNumbers), std::end(kNumbers), hasName) || std::strcmp(name, kFontFamily) == 0;
}
#endif

// A misspelt attribute is a nuisance to its author, not to a user: release builds take it as it stands.
void ReportUnknown([[maybe_unused]] const KCXMLElement& element, [[maybe_unused]] Problems& problems) {
#ifndef NDEBUG
    for (size_t index = 0; index < element.GetAttributeCount(); ++index)
        if (!IsKnown(element.GetAttributeName(index)))
            Report(problems, element, "nothing is called", element.GetAttributeName(index),
                   element.GetAttributeValue(index));
#endif
}

} // namespace

int32_t KCTheme::ReadFromXML(const KCXMLElement& element, Problems& problems) {
    bool isGood = true;
    for (const sCOLOR_FIELD& entry : kColors)
        isGood = ReadColor(element, entry, *this, problems) && isGood;
    for (const sNUMBER_FIELD& entry : kNumbers)
        isGood = ReadNumber(element, entry, *this, problems) && isGood;
    if (const char* const family = element.GetAttribute(kFontFamily))
        fontFamily = family;
    ReportUnknown(element, problems);
    return isGood ? kErr_NoErr : kErr_BadDescription;
}

int32_t KCTheme::WriteToXML(KCXMLElement& element) const {
    int32_t error = kErr_NoErr;
    const auto set = [&](const char* name, const KUXMLValue& value) {
        if (error == kErr_NoErr)
            error = element.SetAttribute(name, value);
    };
    for (const sCOLOR_FIELD& entry : kColors)
        if (this->*entry.field != Default().*entry.field)
            set(entry.name, (this->*entry.field).Format().c_str());
    for (const sNUMBER_FIELD& entry : kNumbers)
        if (this->*entry.field != Default().*entry.field)
            set(entry.name, this->*entry.field);
    if (fontFamily != Default().fontFamily)
        set(kFontFamily, fontFamily);
    return error;
}

const KCTheme& KCTheme::Default() noexcept {
    static const KCTheme theme;
    return theme;
}

} // namespace kvKorvoV12_9_0_320
