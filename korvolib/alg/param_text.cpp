#include <korvolib/alg/param_text.h>

#include <cmath>
#include <cstring>
#include <string_view>

#include <korvolib/alg/param_base.h>
#include <korvolib/utilities/number_text.h>

namespace kvKorvoV12_9_0_320 {
namespace {

constexpr int kMostDecimals = 12;
constexpr int kUsualDecimals = 6;
constexpr double kPlainBelow = 1e15; // from here on a double has no decimals worth showing

constexpr double kPowersOfTen[kMostDecimals + 1] = {1e0, 1e1, 1e2, 1e3,  1e4,  1e5, 1e6,
                                                    1e7, 1e8, 1e9, 1e10, 1e11, 1e12};

// Whole but for what rounding a decimal fraction to a double leaves.
bool IsWhole(double v) noexcept { return v >= 0.5 && std::fabs(v - std::round(v)) <= 1e-14 * v; }

void StripZeros(KCFixedStringBase& text) noexcept {
    if (text.find('.') == KCFixedStringBase::npos)
        return;
    size_t size = text.size();
    while (text[size - 1] == '0')
        --size;
    text.resize(text[size - 1] == '.' ? size - 1 : size);
}

void DropSignOfZero(KCFixedStringBase& text) noexcept {
    if (text.begins_with("-") && text.find_first_of("123456789", 0) == KCFixedStringBase::npos)
        text.erase(0, 1);
}

// Characters are looked at as bytes: no locale has a say.

bool IsSpace(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string_view View(const KCFixedStringBase& text) noexcept { return {text.c_str(), std::strlen(text.c_str())}; }

std::string_view Trimmed(std::string_view text) noexcept {
    while (!text.empty() && IsSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

// A number at the start of the text, which is then cut off it. Also behind the typographic minus sign, U+2212.
bool TakeNumber(std::string_view& text, std::string_view& number, double& value) noexcept {
    constexpr std::string_view kMinusSign = "\xE2\x88\x92";
    const bool isMinus = text.starts_with(kMinusSign);
    if (isMinus)
        text.remove_prefix(kMinusSign.size());
    size_t length = 0;
    if ((isMinus && text.find_first_of("+- ") == 0) || !KUStod(text.data(), text.size(), value, &length))
        return false;
    value = isMinus ? -value : value;
    number = text.substr(0, length);
    text.remove_prefix(length);
    return true;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) noexcept {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (lower(a[i]) != lower(b[i]))
            return false;
    return true;
}

// Power of ten that the text behind a number stands for: 3 for a k, 6 for an M, otherwise 0.
int PowerOfSuffix(std::string_view suffix, std::string_view units) noexcept {
    if (suffix.empty() || EqualsIgnoringCase(suffix, units))
        return 0;
    const char prefix = suffix.front();
    const int power = prefix == 'k' || prefix == 'K' ? 3 : (prefix == 'M' ? 6 : 0);
    const std::string_view tail = Trimmed(suffix.substr(1));
    if (tail.empty())
        return units.starts_with(prefix) ? 0 : power; // "1k" of something counted in kHz
    return EqualsIgnoringCase(tail, units) || EqualsIgnoringCase(tail, "Hz") ? power : 0;
}

// value · 10^power, rounded once where the number stands in plain digits: 1.1k is 1100, not 1100.0000000000002.
double TimesPowerOfTen(std::string_view number, double value, int power) noexcept {
    KCFixedString<63> text(number.data(), number.size());
    if (number.size() > 60 || number.find_first_of("eE") != std::string_view::npos)
        return value * (power == 3 ? 1e3 : 1e6);
    text << 'e' << power;
    double magnitude = 0.0;
    return KUStod(text.c_str(), magnitude) ? std::copysign(magnitude, value) : value;
}

void SnapToPointShownAlike(const sSCALE_INFO& scale, double& realWorld) {
    const int decimals = DecimalsOfResolution(scale.Quantize);
    const double halfDigit = 0.5 / kPowersOfTen[decimals < 0 ? kUsualDecimals : decimals];
    for (const double point : scale.RealWorldPoints)
        if (std::fabs(point - realWorld) <= halfDigit * (1.0 + 1e-9)) {
            realWorld = point;
            return;
        }
}

} // namespace

int DecimalsOfResolution(double quantize) noexcept {
    if (!(quantize > 0.0))
        return -1;
    for (int decimals = 0; decimals <= kMostDecimals; ++decimals)
        if (IsWhole(quantize * kPowersOfTen[decimals]))
            return decimals;
    const double digits = 3.0 - std::floor(std::log10(quantize));
    return static_cast<int>(std::fmin(std::fmax(digits, kUsualDecimals), kMostDecimals));
}

void FormatRealWorld(double value, double quantize, KCFixedStringBase& out) noexcept {
    out.clear();
    if (!(std::fabs(value) < kPlainBelow)) {
        char shortest[kDecimalTextSize];
        FormatDecimal(value, shortest, sizeof shortest);
        out = shortest;
        return;
    }
    const int decimals = DecimalsOfResolution(quantize);
    out.append_double_with_precision(value, decimals < 0 ? kUsualDecimals : decimals);
    if (decimals < 0)
        StripZeros(out);
    DropSignOfZero(out);
}

void FormatValueText(const KCParam_Base& param, double realWorld, KCFixedStringBase& out) {
    if (!param.GetDisplayFunc().Show(param, realWorld, out))
        FormatRealWorld(realWorld, param.GetScale().Quantize, out);
}

KEValueText ParseValueText(const KCParam_Base& param, const KCFixedStringBase& text, double& value) {
    if (text == "-Inf" || text == "-inf") {
        value = param.StateToRealWorld(0.0);
        return KEValueText::BottomOfScale;
    }
    double number = 0.0;
    if (!param.GetDisplayFunc().Read(param, text, number)) {
        std::string_view rest = Trimmed(View(text)), digits;
        if (!TakeNumber(rest, digits, number))
            return KEValueText::NoNumber;
        if (const int power = PowerOfSuffix(Trimmed(rest), View(param.GetUnitsString())); power != 0)
            number = TimesPowerOfTen(digits, number, power);
    }
    value = param.HasFlag(kParamFlag_NegativeTextOnly) ? -std::fabs(number) : number;
    return KEValueText::Number;
}

void LimitTypedRealWorld(const KCParam_Base& param, double& realWorld) {
    const sSCALE_INFO& scale = param.GetScale();
    double typed = realWorld;
    if (param.GetInverseScaleFunction() == InverseToggleMapScale)
        SnapToPointShownAlike(scale, typed);
    const double roundingError = 1e-14 * (std::fabs(typed) + std::fabs(scale.a));
    double nearest = typed;
    param.LimitRealWorld(nearest);
    for (const double neighbour : {typed - roundingError, typed + roundingError}) {
        double candidate = neighbour;
        param.LimitRealWorld(candidate);
        if (std::fabs(candidate - typed) < std::fabs(nearest - typed))
            nearest = candidate;
    }
    realWorld = nearest;
}

} // namespace kvKorvoV12_9_0_320
