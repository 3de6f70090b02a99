// Text of at most N bytes that lives inside its object: KCFixedString<N>, and KCFixedStringBase, which does all the
// work for every capacity and is what interfaces take.
//
//   KCFixedString<31> label("Gain");
//   label << ' ' << -3 << " dB";     // "Gain -3 dB"
//
// Nothing here fails or throws: every write that would pass the capacity is cut without a report, and the text
// stays NUL-terminated. Nothing takes memory from the heap, but for replacing a character by a part of the string
// itself. The price: an object is as large as its capacity, and moving copies. Bytes are bytes (UTF-8 passes
// through); letters without regard to case are those of ASCII, and numbers read and write as in the "C" locale,
// whatever setlocale says. Plain values without locking: any thread, one at a time.
//
// What holds for every operation:
// - A null text is the empty text, except in comparisons, where it differs from every text and is the smallest.
// - A NUL ends every text that is read, also one inside the length given. Only resize, replace, append_uint in a
//   base above 201 and writing through pointers leave a NUL inside a string; copying or comparing it ends there.
// - The text handed over may be (a part of) the string itself: what counts is how it read at the call.
// - A range whose end lies before its begin is empty.
// - Bytes after the end are not part of the value. They are zero, or what an earlier, longer text left there.
#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iosfwd>
#include <string_view>
#include <type_traits>

#include <korvolib/export.h>
#include <korvolib/utilities/strings/decimal_digits.h>
#include <korvolib/utilities/strings/text_blocks.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320 {

class KORVO_API KCFixedStringBase {
  public:
    /// What every search returns for "not found".
    static constexpr size_t npos = ~size_t{0};

    KCFixedStringBase(const KCFixedStringBase&) = delete;

    // Assignment empties the string, then appends.

    KCFixedStringBase& operator=(const KCFixedStringBase& other) noexcept;
    KCFixedStringBase& operator=(const char* text) noexcept { return assign(text); }
    KCFixedStringBase& operator=(char c) noexcept;
    KCFixedStringBase& assign(const char* text) noexcept;
    /// At most `count` characters of `text`.
    KCFixedStringBase& assign(const char* text, size_t count) noexcept;
    template <std::integral Count> // a literal 0 would otherwise also be a null pointer
    KCFixedStringBase& assign(const char* text, Count count) noexcept {
        return assign(text, static_cast<size_t>(count));
    }
    KCFixedStringBase& assign(const char* first, const char* last) noexcept;

    // Appending.

    KCFixedStringBase& append(const char* text) noexcept;
    /// At most `count` characters of `text`.
    KCFixedStringBase& append(const char* text, size_t count) noexcept;
    template <std::integral Count>
    KCFixedStringBase& append(const char* text, Count count) noexcept {
        return append(text, static_cast<size_t>(count));
    }
    KCFixedStringBase& append(const char* first, const char* last) noexcept;
    /// `count` copies of `c`; a NUL adds nothing.
    KCFixedStringBase& append(char c, size_t count) noexcept;
    /// Digits in `base`, those above 9 as 'A' onwards. A number that does not fit leaves its lowest digits. A base
    /// below 2 appends nothing.
    KCFixedStringBase& append_uint(uint64_t value, int base) noexcept;
    /// As printf writes "%.*f" with `precision`, or "%.20g" when it is −1 (any other negative one counts as 6), cut
    /// to 31 characters: correct to the last digit, ties to even.
    KCFixedStringBase& append_double_with_precision(double value, int precision) noexcept;
    /// Two upper-case hexadecimal digits per byte, from the last byte to the first: a little-endian integer reads
    /// as people write it.
    KCFixedStringBase& append_hex_binary(const unsigned char* bytes, size_t count) noexcept;
    /// `count` digits and letters chosen with the C library's rand(), whose state the process shares; not seeded
    /// here.
    KCFixedStringBase& append_random_chars(size_t count) noexcept;

    // Insertion appends and returns the string. Whole numbers stand in base 10, float with 5 decimals, double with
    // 10, bool as "true" or "false".

    KCFixedStringBase& operator<<(const KCFixedStringBase& text) noexcept;
    KCFixedStringBase& operator<<(const char* text) noexcept { return append(text); }
    KCFixedStringBase& operator<<(std::nullptr_t) noexcept { return *this; }
    KCFixedStringBase& operator<<(char c) noexcept;
    KCFixedStringBase& operator<<(short value) noexcept { return *this << static_cast<int>(value); }
    KCFixedStringBase& operator<<(int value) noexcept;
    KCFixedStringBase& operator<<(unsigned int value) noexcept { return AppendDecimal(value); }
    KCFixedStringBase& operator<<(long value) noexcept { return AppendSigned(value); }
    KCFixedStringBase& operator<<(unsigned long value) noexcept { return AppendDecimal(value); }
    KCFixedStringBase& operator<<(long long value) noexcept { return AppendSigned(value); }
    KCFixedStringBase& operator<<(unsigned long long value) noexcept { return AppendDecimal(value); }
    KCFixedStringBase& operator<<(float value) noexcept { return append_double_with_precision(value, 5); }
    KCFixedStringBase& operator<<(double value) noexcept { return append_double_with_precision(value, 10); }
    KCFixedStringBase& operator<<(bool value) noexcept { return append(value ? "true" : "false"); }
    /// Pointers that are no data (functions, members, volatile) would quietly become true.
    template <class Pointer>
    requires((std::is_pointer_v<Pointer> ||
              std::is_member_pointer_v<Pointer>)&&!std::is_convertible_v<Pointer, const void*>) KCFixedStringBase&
    operator<<(Pointer) = delete;

    // Extraction reads the whole string as the C library's strtol family does in base 10: leading white space and a
    // sign are accepted, what follows the number is ignored, text without a number gives 0, a number out of range
    // the nearest end of the range.

    const KCFixedStringBase& operator>>(int& value) const noexcept;
    const KCFixedStringBase& operator>>(unsigned int& value) const noexcept;
    const KCFixedStringBase& operator>>(long& value) const noexcept;
    const KCFixedStringBase& operator>>(unsigned long& value) const noexcept;
    const KCFixedStringBase& operator>>(long long& value) const noexcept;
    const KCFixedStringBase& operator>>(unsigned long long& value) const noexcept;
    const KCFixedStringBase& operator>>(float& value) const noexcept;
    const KCFixedStringBase& operator>>(double& value) const noexcept;
    /// "yes", "true" and "1", "no", "false" and "0" in any case; any other text leaves `value` as it was.
    const KCFixedStringBase& operator>>(bool& value) const noexcept;

    // Access.

    const char* c_str() const noexcept { return m_begin; }
    const char* data() const noexcept { return m_begin; }
    char* data() noexcept { return m_begin; }
    const char* begin() const noexcept { return m_begin; }
    char* begin() noexcept { return m_begin; }
    const char* end() const noexcept { return m_end; }
    char* end() noexcept { return m_end; }
    /// The buffer of capacity() + 1 bytes, for C interfaces that fill it; call reposition_end() afterwards.
    char* peek() noexcept { return m_begin; }
    size_t length() const noexcept { return size(); }
    size_t size() const noexcept { return static_cast<size_t>(m_end - m_begin); }
    size_t capacity() const noexcept { return m_capacity; }
    size_t max_size() const noexcept { return m_capacity; }
    bool empty() const noexcept { return m_end == m_begin; }
    /// True when not empty.
    explicit operator bool() const noexcept { return !empty(); }
    /// Any position: those from size() on show what lies there, those from capacity() on the terminator behind a
    /// full text, which has to stay NUL.
    char& operator[](size_t index) noexcept { return index < m_capacity ? m_begin[index] : TerminatorSlot(); }
    const char& operator[](size_t index) const noexcept {
        return index < m_capacity ? m_begin[index] : TerminatorSlot();
    }
    /// As much as fits into `bufferSize` bytes together with a NUL. Nothing when that is 0 or `buffer` is null.
    void copy_to_buffer(size_t bufferSize, char* buffer) const noexcept;

    // Editing.

    KCFixedStringBase& clear() noexcept;
    /// Puts the end at min(count, capacity()) and returns it. Growing shows the bytes that lie there.
    size_t resize(size_t count) noexcept;
    /// Puts the end at the first NUL among capacity() + 1 bytes; without one the end stays and is terminated again.
    KCFixedStringBase& reposition_end() noexcept;
    /// Takes out at most `count` characters from `pos` on, which counts from the end when negative. A position
    /// beyond either end does nothing.
    KCFixedStringBase& erase(ptrdiff_t pos, size_t count) noexcept;
    /// Takes out every character that occurs in `set`.
    KCFixedStringBase& erase_all_of(const char* set) noexcept;
    /// Keeps only the characters that occur in `set`.
    KCFixedStringBase& erase_all_not_of(const char* set) noexcept;
    /// These return how many characters were replaced. The text that replaces a character may have any length, also
    /// none; counted are the characters that the result had no room for as well. A text from the string itself is
    /// copied to the heap first; when there is no memory, nothing is replaced.
    size_t replace(char from, char to) noexcept;
    size_t replace(char from, const char* to) noexcept;
    size_t replace(const char* set, char to) noexcept;
    KCFixedStringBase& reverse() noexcept;
    /// Reverses the characters from `first` up to, not including, `last`.
    KCFixedStringBase& reverse(char* first, char* last) noexcept;

    // Searching: a position, or npos. Nothing is found at or behind size(), and an empty text is found nowhere.

    size_t find(char c) const noexcept;
    size_t find(const char* text, size_t pos = 0) const noexcept;
    size_t find_case_insensitive(const char* text, size_t pos = 0) const noexcept;
    size_t rfind(char c) const noexcept;
    size_t rfind(const char* text) const noexcept;
    size_t find_first_of(const char* set, size_t pos = 0) const noexcept;
    size_t find_first_not_of(const char* set, size_t pos = 0) const noexcept;
    /// The last position at or after `pos`: unlike the standard library's, `pos` is where the search begins.
    size_t find_last_of(const char* set, size_t pos = 0) const noexcept;
    size_t find_last_not_of(const char* set, size_t pos = 0) const noexcept;
    /// True for the empty text.
    bool begins_with(const char* text) const noexcept;
    bool ends_with(const char* text) const noexcept;

    // Comparison of unsigned bytes up to the first NUL: exactly −1, 0 or +1.

    int64_t compare(const KCFixedStringBase& other) const noexcept;
    int64_t compare(const char* text) const noexcept {
        return text == nullptr ? 1 : Sign(std::strcmp(Text(), text));
    }
    /// Letters A to Z count as small. The difference of the first characters that differ, or 0; +1 against null.
    int64_t case_insensitive_compare(const KCFixedStringBase& other) const noexcept {
        return case_insensitive_compare(other.m_begin);
    }
    int64_t case_insensitive_compare(const char* text) const noexcept;

  protected:
    /// Binds `buffer`, which has capacity + 1 bytes and outlives this object, and makes it the empty text. A null
    /// buffer makes a string without capacity.
    KCFixedStringBase(char* buffer, size_t capacity) noexcept : KCFixedStringBase(buffer, capacity, Unwritten{}) {
        if (buffer != nullptr)
            *buffer = '\0';
    }
    ~KCFixedStringBase() = default;

    /// For constructors that write the whole buffer themselves.
    struct Unwritten {};
    KCFixedStringBase(char* buffer, size_t capacity, Unwritten) noexcept
        : m_begin(buffer), m_capacity(buffer == nullptr ? 0 : capacity), m_end(buffer) {}

    /// Zeroes the buffer from `from` up to its last byte.
    void ZeroFrom(char* from) noexcept {
        std::memset(from, 0, static_cast<size_t>(m_begin + m_capacity + 1 - from));
    }
    /// The first text of a new string: `count` characters without a NUL, at most the capacity, then zeros.
    void Begin(const char* text, size_t count) noexcept {
        if (count != 0)
            std::memcpy(m_begin, text, count);
        m_end = m_begin + count;
        ZeroFrom(m_end);
    }
    void SetEnd(size_t length) noexcept { m_end = m_begin + length; }
    /// The characters of `text` before its NUL, at most `limit`; reads none beyond.
    static size_t LengthUpTo(const char* text, size_t limit) noexcept {
        return text == nullptr ? 0 : ::strnlen(text, limit);
    }
    static int64_t Sign(int difference) noexcept { return (difference > 0) - (difference < 0); }
    /// The characters before the first NUL: size() unless the string holds one.
    size_t TextLength() const noexcept { return LengthUpTo(m_begin, size()); }

  private:
    friend KORVO_API std::weak_ordering operator<=>(const KCFixedStringBase& a, std::string_view b) noexcept;

    size_t Room() const noexcept { return static_cast<size_t>(m_begin + m_capacity - m_end); }
    const char* Text() const noexcept { return m_begin == nullptr ? "" : m_begin; }
    static void CopyText(char* to, const char* from, size_t count) noexcept;
    KCFixedStringBase& AppendRun(const char* text, size_t count) noexcept;
    KCFixedStringBase& AppendText(const char* text) noexcept;
    KCFixedStringBase& AssignRun(const char* text, size_t count) noexcept;
    KCFixedStringBase& AppendSigned(int64_t value) noexcept;
    KCFixedStringBase& AppendLargeInt(int value) noexcept;
    KCFixedStringBase& AppendDecimal(uint64_t value) noexcept;
    char& TerminatorSlot() const noexcept;
    void ReplaceInPlace(char from, const char* to, size_t toLength) noexcept;
    void GrowInPlace(char from, const char* to, size_t toLength) noexcept;
    size_t FindBehindNul(const char* text, size_t pos) const noexcept;

    char* m_begin;       // never owned
    uint64_t m_capacity; // characters; the buffer has one byte more
    char* m_end;         // within [m_begin, m_begin + m_capacity], and NUL is there
};

/// A string of at most N characters; N is the number of characters, not of bytes. All N + 1 bytes of a new string
/// are zero or text, and a copy takes the characters only, cut at N.
template <size_t N>
class KCFixedString : public KCFixedStringBase {
  public:
    KCFixedString() noexcept : KCFixedStringBase(m_buffer, N, Unwritten{}) { ZeroFrom(m_buffer); }
    /// Moving is copying: the source keeps its text.
    KCFixedString(const KCFixedString& other) noexcept : KCFixedStringBase(m_buffer, N, Unwritten{}) {
        if constexpr (kHasBlocks)
            SetEnd(TextBlocks::CopyTextAndZero(m_buffer, other.m_buffer, sizeof m_buffer));
        else
            Begin(other.m_buffer, other.TextLength());
    }
    KCFixedString(const KCFixedStringBase& other) noexcept : KCFixedString(other.data(), other.size()) {}
    KCFixedString(const char* text) noexcept : KCFixedString(text, N) {}
    /// The concatenation a + b.
    KCFixedString(const KCFixedStringBase& a, const char* b) noexcept : KCFixedString(a) { append(b); }
    KCFixedString(const KCFixedString& a, const char* b) noexcept : KCFixedString(a) { append(b); }
    /// The concatenation a + b of two texts: not a range.
    KCFixedString(const char* a, const char* b) noexcept : KCFixedString(a) { append(b); }
    /// At most `count` characters of `text`.
    KCFixedString(const char* text, size_t count) noexcept : KCFixedStringBase(m_buffer, N, Unwritten{}) {
        Begin(text, LengthUpTo(text, count < N ? count : N));
    }
    template <std::integral Count>
    KCFixedString(const char* text, Count count) noexcept : KCFixedString(text, static_cast<size_t>(count)) {}
    /// `count` copies of `c`.
    KCFixedString(char c, size_t count) noexcept : KCFixedString() { append(c, count); }
    ~KCFixedString() = default;

    KCFixedString& operator=(const KCFixedString& other) noexcept {
        if (this == &other)
            return *this;
        if constexpr (kHasBlocks)
            SetEnd(TextBlocks::CopyText(m_buffer, other.m_buffer, sizeof m_buffer));
        else
            KCFixedStringBase::operator=(other);
        return *this;
    }
    KCFixedString& operator=(const KCFixedStringBase& other) noexcept {
        KCFixedStringBase::operator=(other);
        return *this;
    }
    KCFixedString& operator=(const char* text) noexcept {
        assign(text);
        return *this;
    }
    KCFixedString& operator=(char c) noexcept {
        KCFixedStringBase::operator=(c);
        return *this;
    }

    using KCFixedStringBase::compare;
    /// Strings of one capacity, the keys of maps, compare block by block.
    int64_t compare(const KCFixedString& other) const noexcept {
        if constexpr (!kHasBlocks)
            return KCFixedStringBase::compare(static_cast<const KCFixedStringBase&>(other));
        size_t at = 0;
        if (!TextBlocks::FindDifference(m_buffer, other.m_buffer, sizeof m_buffer, at))
            return 0;
        return Sign(static_cast<unsigned char>(m_buffer[at]) - static_cast<unsigned char>(other.m_buffer[at]));
    }

    /// At most `count` characters from `pos` on; a negative count leaves that many off at the end.
    KCFixedString substr(size_t pos, ptrdiff_t count) const noexcept {
        const size_t from = pos < size() ? pos : size();
        const size_t rest = size() - from;
        const size_t magnitude = count < 0 ? size_t{0} - static_cast<size_t>(count) : static_cast<size_t>(count);
        const size_t cut = magnitude < rest ? magnitude : rest;
        return KCFixedString(data() + from, count < 0 ? rest - cut : cut);
    }

  private:
    static constexpr bool kHasBlocks = TextBlocks::kAvailable && (N + 1) % TextBlocks::kSize == 0;

    char m_buffer[N + 1];
};

// Comparisons with a fixed string, a C string, a std::string or a std::string_view on either side agree with
// compare(): a NUL ends either side, and a null C string equals nothing and comes before everything. The compiler
// derives operator!= and the mirrored forms.

inline bool operator==(const KCFixedStringBase& a, const KCFixedStringBase& b) noexcept {
    return a.compare(b) == 0;
}
inline bool operator==(const KCFixedStringBase& a, const char* b) noexcept { return a.compare(b) == 0; }
inline std::weak_ordering operator<=>(const KCFixedStringBase& a, const KCFixedStringBase& b) noexcept {
    return a.compare(b) <=> 0;
}
inline std::weak_ordering operator<=>(const KCFixedStringBase& a, const char* b) noexcept {
    return a.compare(b) <=> 0;
}
KORVO_API std::weak_ordering operator<=>(const KCFixedStringBase& a, std::string_view b) noexcept;
inline bool operator==(const KCFixedStringBase& a, std::string_view b) noexcept { return std::is_eq(a <=> b); }
inline bool operator<(const KCFixedStringBase& a, const KCFixedStringBase& b) noexcept { return a.compare(b) < 0; }
template <size_t N>
bool operator==(const KCFixedString<N>& a, const KCFixedString<N>& b) noexcept {
    return a.compare(b) == 0;
}
template <size_t N>
bool operator<(const KCFixedString<N>& a, const KCFixedString<N>& b) noexcept {
    return a.compare(b) < 0;
}

// What else can be inserted.

class KCFourCC;

/// The characters of a std::string or std::string_view, up to a NUL.
KORVO_API KCFixedStringBase& operator<<(KCFixedStringBase& string, std::string_view text) noexcept;
/// All the stream holds, read or not.
KORVO_API KCFixedStringBase& operator<<(KCFixedStringBase& string, const std::stringstream& text) noexcept;
/// The address as "0x" and upper-case hexadecimal digits; "0x0" for null.
KORVO_API KCFixedStringBase& operator<<(KCFixedStringBase& string, const void* address) noexcept;
KORVO_API KCFixedStringBase& operator<<(KCFixedStringBase&& string, const void* address) noexcept;
/// Its four characters, first to last, without those that are NUL.
KORVO_API KCFixedStringBase& operator<<(KCFixedStringBase& string, const KCFourCC& code) noexcept;
/// Writes the characters as a std::string_view is written: width and fill count, nothing is added.
KORVO_API std::ostream& operator<<(std::ostream& stream, const KCFixedStringBase& string);

// Bodies of what callers compile in.

/// Up to 16 characters are all loaded before the first is stored, so that the two may overlap as in memmove.
inline void KCFixedStringBase::CopyText(char* to, const char* from, size_t count) noexcept {
    const auto copyEnds = [=]<class Word>(Word first, Word last) {
        std::memcpy(&first, from, sizeof first);
        std::memcpy(&last, from + count - sizeof last, sizeof last);
        std::memcpy(to, &first, sizeof first);
        std::memcpy(to + count - sizeof last, &last, sizeof last);
    };
    if (count > 16)
        std::memmove(to, from, count);
    else if (count >= 8)
        copyEnds(uint64_t{}, uint64_t{});
    else if (count >= 4)
        copyEnds(uint32_t{}, uint32_t{});
    else if (count >= 2)
        copyEnds(uint16_t{}, uint16_t{});
    else if (count == 1)
        *to = *from;
}

/// `count` characters without a NUL, no more than there is room for.
inline KCFixedStringBase& KCFixedStringBase::AppendRun(const char* text, size_t count) noexcept {
    if (count == 0)
        return *this;
    CopyText(m_end, text, count);
    m_end += count;
    *m_end = '\0';
    return *this;
}

inline KCFixedStringBase& KCFixedStringBase::append(const char* text) noexcept {
    if (text == nullptr)
        return *this;
#if defined(__GNUC__)
    // The length of a literal is known here: then the copy is two or three instructions.
    if (__builtin_constant_p(__builtin_strlen(text))) {
        const size_t length = __builtin_strlen(text);
        if (length <= Room())
            return AppendRun(text, length);
    }
#endif
    return AppendText(text);
}

inline int64_t KCFixedStringBase::compare(const KCFixedStringBase& other) const noexcept {
    size_t at = 0;
    if constexpr (TextBlocks::kAvailable) {
        const uint64_t capacity = m_capacity < other.m_capacity ? m_capacity : other.m_capacity;
        if (TextBlocks::FindDifference(m_begin, other.m_begin, capacity + 1, at))
            return Sign(static_cast<unsigned char>(m_begin[at]) - static_cast<unsigned char>(other.m_begin[at]));
    }
    return other.m_begin == nullptr ? 1 : Sign(std::strcmp(Text() + at, other.m_begin + at));
}

inline KCFixedStringBase& KCFixedStringBase::operator<<(char c) noexcept {
    if (Room() != 0 && c != '\0') {
        *m_end = c;
        *++m_end = '\0';
    }
    return *this;
}

inline KCFixedStringBase& KCFixedStringBase::clear() noexcept {
    m_end = m_begin;
    if (m_capacity != 0) // without capacity the terminator is there already, or there is no buffer
        *m_end = '\0';
    return *this;
}

/// Below a million, digits are copied three at a time; the NUL comes with the last of them.
inline KCFixedStringBase& KCFixedStringBase::operator<<(int value) noexcept {
    using StringInternal::TripleDigits;
    using StringInternal::TripleText;
    const auto bits = static_cast<uint32_t>(value);
    const uint32_t sign = bits >> 31; // no branch: the next sign is anyone's guess
    const uint32_t magnitude = (bits ^ (0 - sign)) + sign;
    const uint32_t high = magnitude / 1000;
    if (high >= 1000 || Room() < 7)
        return AppendLargeInt(value);
    *m_end = '-'; // or a digit, below
    char* to = m_end + sign;
    if (high == 0) {
        const size_t digits = TripleDigits(magnitude);
        const char* text = TripleText(magnitude, digits);
        std::memcpy(to, text, 2);
        to += digits;
        std::memcpy(to - 1, text + digits - 1, 2);
    } else {
        const size_t digits = TripleDigits(high);
        std::memcpy(to, TripleText(high, digits), 4); // what is not a digit of it, the low ones overwrite
        std::memcpy(to + digits, TripleText(magnitude % 1000, 3), 4);
        to += digits + 3;
    }
    m_end = to;
    return *this;
}

inline size_t KCFixedStringBase::find(char c) const noexcept {
    if (empty())
        return npos;
    const void* found = std::memchr(m_begin, c, size());
    return found == nullptr ? npos : static_cast<size_t>(static_cast<const char*>(found) - m_begin);
}

inline size_t KCFixedStringBase::find(const char* text, size_t pos) const noexcept {
    if (text == nullptr || *text == '\0' || pos >= size())
        return npos;
    const char* found = std::strstr(m_begin + pos, text);
    return found != nullptr ? static_cast<size_t>(found - m_begin) : FindBehindNul(text, pos);
}

} // namespace kvKorvoV12_9_0_320

/// Equal strings of any capacity have equal hashes, which are those of the std::string_view of the text.
template <>
struct std::hash<kvKorvo::KCFixedStringBase> {
    size_t operator()(const kvKorvo::KCFixedStringBase& string) const noexcept {
        const size_t length = string.empty() ? 0 : ::strnlen(string.data(), string.size());
        return std::hash<std::string_view>()(std::string_view(string.data(), length));
    }
};
template <size_t N>
struct std::hash<kvKorvo::KCFixedString<N>> : std::hash<kvKorvo::KCFixedStringBase> {};
