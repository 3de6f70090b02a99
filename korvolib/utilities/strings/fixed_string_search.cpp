#include <korvolib/utilities/strings/fixed_string.h>

#include <korvolib/utilities/strings/fixed_string_internal.h>

namespace kvKorvoV12_9_0_320 {

using StringInternal::CharSet;
using StringInternal::Lower;

namespace {

/// The first position in [from, to) whose character answers `want`.
template <class Want>
size_t First(const char* begin, size_t from, size_t to, Want want) {
    for (size_t i = from; i < to; ++i)
        if (want(begin[i]))
            return i;
    return KCFixedStringBase::npos;
}

/// The last position in [from, to) whose character answers `want`.
template <class Want>
size_t Last(const char* begin, size_t from, size_t to, Want want) {
    for (size_t i = to; i > from; --i)
        if (want(begin[i - 1]))
            return i - 1;
    return KCFixedStringBase::npos;
}

bool EqualWithoutCase(const char* a, const char* b, size_t count) {
    for (size_t i = 0; i < count; ++i)
        if (Lower(a[i]) != Lower(b[i]))
            return false;
    return true;
}

} // namespace

/// strstr ends at a NUL; the text it has not seen may go on behind one.
size_t KCFixedStringBase::FindBehindNul(const char* text, size_t pos) const noexcept {
    for (;;) {
        pos += LengthUpTo(m_begin + pos, size() - pos) + 1;
        if (pos >= size())
            return npos;
        if (const char* found = std::strstr(m_begin + pos, text))
            return static_cast<size_t>(found - m_begin);
    }
}

size_t KCFixedStringBase::find_case_insensitive(const char* text, size_t pos) const noexcept {
    const size_t length = LengthUpTo(text, size() + 1);
    if (length == 0 || length > size() || pos > size() - length)
        return npos;
    const int first = Lower(*text);
    for (size_t i = pos; i <= size() - length; ++i)
        if (Lower(m_begin[i]) == first && EqualWithoutCase(m_begin + i, text, length))
            return i;
    return npos;
}

size_t KCFixedStringBase::rfind(char c) const noexcept {
    return Last(m_begin, 0, size(), [c](char other) { return other == c; });
}

size_t KCFixedStringBase::rfind(const char* text) const noexcept {
    const size_t length = LengthUpTo(text, size() + 1);
    if (length == 0 || length > size())
        return npos;
    for (size_t i = size() - length + 1; i-- > 0;)
        if (m_begin[i] == *text && std::memcmp(m_begin + i, text, length) == 0)
            return i;
    return npos;
}

size_t KCFixedStringBase::find_first_of(const char* set, size_t pos) const noexcept {
    return First(m_begin, pos, size(), [wanted = CharSet(set)](char c) { return wanted.Has(c); });
}

size_t KCFixedStringBase::find_first_not_of(const char* set, size_t pos) const noexcept {
    return First(m_begin, pos, size(), [refused = CharSet(set)](char c) { return !refused.Has(c); });
}

size_t KCFixedStringBase::find_last_of(const char* set, size_t pos) const noexcept {
    return Last(m_begin, pos, size(), [wanted = CharSet(set)](char c) { return wanted.Has(c); });
}

size_t KCFixedStringBase::find_last_not_of(const char* set, size_t pos) const noexcept {
    return Last(m_begin, pos, size(), [refused = CharSet(set)](char c) { return !refused.Has(c); });
}

bool KCFixedStringBase::begins_with(const char* text) const noexcept {
    const size_t length = LengthUpTo(text, size() + 1);
    return length == 0 || (length <= size() && std::memcmp(m_begin, text, length) == 0);
}

bool KCFixedStringBase::ends_with(const char* text) const noexcept {
    const size_t length = LengthUpTo(text, size() + 1);
    return length == 0 || (length <= size() && std::memcmp(m_end - length, text, length) == 0);
}

} // namespace kvKorvoV12_9_0_320
