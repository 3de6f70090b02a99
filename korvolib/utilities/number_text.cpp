#include <korvolib/utilities/number_text.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace kvKorvoV12_9_0_320 {

namespace {

bool IsDigit(char character) { return character >= '0' && character <= '9'; }
bool IsBlank(char character) { return character == ' ' || (character >= '\t' && character <= '\r'); }

// Where the parts of a number stand in its text; all positions count from the text's first character.
struct NumberShape {
    size_t mantissa = 0;    // first digit or separator, behind blanks and sign
    size_t separator = 0;   // of the decimal separator; `mantissaEnd` if there is none
    size_t mantissaEnd = 0; // behind the last digit or the point
    size_t end = 0;         // behind the exponent
    int64_t exponent = 0;   // limited to what can still matter
    bool isNegative = false;
    bool hasComma = false;
};

class Scanner {
  public:
    Scanner(const char* text, size_t size) : m_text(text), m_size(size) {}

    bool Scan(NumberShape& shape, bool allowComma) const {
        size_t at = SkipBlanks(0);
        shape.isNegative = At(at) == '-';
        if (At(at) == '+' || At(at) == '-')
            ++at;
        shape.mantissa = at;
        at = SkipDigits(at);
        size_t digits = at - shape.mantissa;
        shape.separator = at;
        shape.hasComma = allowComma && At(at) == ',' && IsDigit(At(at + 1));
        if (At(at) == '.' || shape.hasComma) {
            const size_t fraction = at + 1;
            at = SkipDigits(fraction);
            digits += at - fraction;
        }
        shape.mantissaEnd = at;
        shape.end = at;
        if (digits > 0)
            ScanExponent(shape);
        return digits > 0;
    }

    size_t SkipBlanks(size_t at) const {
        while (IsBlank(At(at)))
            ++at;
        return at;
    }

  private:
    // No character of value 0 belongs to a number, so it can stand for the end.
    char At(size_t at) const { return at < m_size ? m_text[at] : '\0'; }

    size_t SkipDigits(size_t at) const {
        while (IsDigit(At(at)))
            ++at;
        return at;
    }

    void ScanExponent(NumberShape& shape) const {
        size_t at = shape.mantissaEnd;
        if (At(at) != 'e' && At(at) != 'E')
            return;
        ++at;
        const bool isNegative = At(at) == '-';
        if (At(at) == '+' || At(at) == '-')
            ++at;
        if (!IsDigit(At(at)))
            return;
        // Larger than any text is long, so a limited exponent still outweighs all the digits.
        constexpr int64_t kLimit = std::numeric_limits<int64_t>::max() / 20;
        for (; IsDigit(At(at)); ++at)
            shape.exponent = std::min(kLimit, shape.exponent * 10 + (At(at) - '0'));
        if (isNegative)
            shape.exponent = -shape.exponent;
        shape.end = at;
    }

    const char* m_text;
    size_t m_size;
};

// The significant digits as a whole number with a power of ten: what a number means without its separator. A double
// lies exactly half way between two neighbours only with up to 767 digits; what follows those can merely break a
// tie, for which one more digit "1" serves as well.
class PlainNumber {
  public:
    PlainNumber(const char* text, const NumberShape& shape) : m_exponent(shape.exponent) {
        for (size_t at = shape.mantissa; at < shape.mantissaEnd; ++at) {
            if (at != shape.separator)
                AddDigit(text[at], at > shape.separator);
        }
        if (m_isRestNotZero) {
            m_digits[m_count++] = '1';
            --m_exponent;
        }
    }

    double Value() const {
        if (m_count == 0)
            return 0.0;
        // Far enough beyond the range of a double (about 1e-324 to 1e308) that no digit can bring it back.
        const int64_t magnitude = m_exponent + static_cast<int64_t>(m_count);
        if (magnitude > 400)
            return std::numeric_limits<double>::infinity();
        return magnitude < -400 ? 0.0 : Convert(magnitude);
    }

  private:
    static constexpr size_t kMaxDigits = 800;

    void AddDigit(char digit, bool isFraction) {
        const bool isLeadingZero = m_count == 0 && digit == '0';
        const bool isKept = m_count < kMaxDigits && !isLeadingZero;
        if (isKept)
            m_digits[m_count++] = digit;
        else if (!isLeadingZero)
            m_isRestNotZero |= digit != '0';
        // Each digit behind the separator is worth a tenth; each dropped one before it leaves a factor of ten.
        m_exponent += (isFraction ? -1 : 0) + (isKept || isLeadingZero ? 0 : 1);
    }

    double Convert(int64_t magnitude) const {
        char plain[kMaxDigits + 32];
        std::memcpy(plain, m_digits, m_count);
        plain[m_count] = 'e';
        const auto behind = std::to_chars(plain + m_count + 1, plain + sizeof plain, m_exponent);
        double value = 0.0;
        if (std::from_chars(plain, behind.ptr, value).ec == std::errc::result_out_of_range)
            return magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
        return value;
    }

    char m_digits[kMaxDigits + 1];
    size_t m_count = 0;
    int64_t m_exponent;
    bool m_isRestNotZero = false;
};

double Magnitude(const char* text, const NumberShape& shape) {
    double value = 0.0;
    if (!shape.hasComma) {
        const auto result = std::from_chars(text + shape.mantissa, text + shape.end, value);
        if (result.ec == std::errc())
            return value;
    }
    return PlainNumber(text, shape).Value();
}

bool ReadNumber(const char* text, size_t size, bool allowComma, double& value, size_t& length) {
    NumberShape shape;
    if (text == nullptr || !Scanner(text, size).Scan(shape, allowComma))
        return false;
    const double magnitude = Magnitude(text, shape);
    value = shape.isNegative ? -magnitude : magnitude;
    length = shape.end;
    return true;
}

} // namespace

bool KUStod(const char* text, double& value, size_t* length) noexcept {
    // The 0 at its end stops every scan: no need to look for it first, which would cost the length of the whole
    // text.
    return KUStod(text, std::numeric_limits<size_t>::max(), value, length);
}

bool KUStod(const char* text, size_t size, double& value, size_t* length) noexcept {
    size_t end = 0;
    if (!ReadNumber(text, size, true, value, end))
        return false;
    if (length != nullptr)
        *length = end;
    return true;
}

bool ParseDecimal(const char* text, size_t size, double& value) noexcept {
    double read = 0.0;
    size_t end = 0;
    if (!ReadNumber(text, size, false, read, end) || !std::isfinite(read))
        return false;
    while (end < size && IsBlank(text[end]))
        ++end;
    if (end != size)
        return false;
    value = read;
    return true;
}

size_t FormatDecimal(double value, char* to, size_t capacity) noexcept {
    if (to == nullptr || capacity == 0)
        return 0;
    char text[kDecimalTextSize];
    // Its sign bit differs between machines, and nobody means anything by it.
    const double written = std::isnan(value) ? std::numeric_limits<double>::quiet_NaN() : value;
    const auto behind = std::to_chars(text, text + sizeof text, written);
    const auto length = static_cast<size_t>(behind.ptr - text);
    const bool fits = behind.ec == std::errc() && length < capacity;
    if (fits)
        std::memcpy(to, text, length);
    to[fits ? length : 0] = '\0';
    return fits ? length : 0;
}

size_t KUSafeStrcpy(char* to, const char* from, size_t capacity) noexcept {
    if (to == nullptr || capacity == 0)
        return 0;
    size_t length = 0;
    if (from != nullptr)
        length = strnlen(from, capacity - 1);
    if (length > 0)
        std::memmove(to, from, length);
    to[length] = '\0';
    return length;
}

} // namespace kvKorvoV12_9_0_320
