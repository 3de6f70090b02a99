#include <korvolib/utilities/strings/fixed_string.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>

#include <korvolib/utilities/strings/fixed_string_internal.h>

namespace kvKorvoV12_9_0_320 {

using StringInternal::CharSet;
using StringInternal::Lower;

// ---- Assigning and appending

/// `count` characters without a NUL, no more than the capacity.
KCFixedStringBase& KCFixedStringBase::AssignRun(const char* text, size_t count) noexcept {
    if (count == 0)
        return clear();
    std::memmove(m_begin, text, count);
    m_end = m_begin + count;
    *m_end = '\0';
    return *this;
}

KCFixedStringBase& KCFixedStringBase::operator=(const KCFixedStringBase& other) noexcept {
    return this == &other ? *this : assign(other.m_begin, other.size());
}

KCFixedStringBase& KCFixedStringBase::operator=(char c) noexcept {
    clear();
    return *this << c;
}

KCFixedStringBase& KCFixedStringBase::assign(const char* text) noexcept {
    return AssignRun(text, LengthUpTo(text, m_capacity));
}

KCFixedStringBase& KCFixedStringBase::assign(const char* text, size_t count) noexcept {
    return AssignRun(text, LengthUpTo(text, std::min(count, m_capacity)));
}

KCFixedStringBase& KCFixedStringBase::assign(const char* first, const char* last) noexcept {
    return first == nullptr || last < first ? clear() : assign(first, static_cast<size_t>(last - first));
}

KCFixedStringBase& KCFixedStringBase::AppendText(const char* text) noexcept {
    return AppendRun(text, ::strnlen(text, Room()));
}

KCFixedStringBase& KCFixedStringBase::append(const char* text, size_t count) noexcept {
    return AppendRun(text, LengthUpTo(text, std::min(count, Room())));
}

KCFixedStringBase& KCFixedStringBase::append(const char* first, const char* last) noexcept {
    return first == nullptr || last < first ? *this : append(first, static_cast<size_t>(last - first));
}

KCFixedStringBase& KCFixedStringBase::append(char c, size_t count) noexcept {
    const size_t run = std::min(count, Room());
    if (run == 0 || c == '\0')
        return *this;
    std::memset(m_end, c, run);
    m_end += run;
    *m_end = '\0';
    return *this;
}

KCFixedStringBase& KCFixedStringBase::operator<<(const KCFixedStringBase& text) noexcept {
    return append(text.m_begin, text.size());
}

KCFixedStringBase& KCFixedStringBase::append_random_chars(size_t count) noexcept {
    static constexpr char kChars[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    for (size_t left = std::min(count, Room()); left != 0; --left)
        *this << kChars[std::rand() % 62];
    return *this;
}

// ---- Access

char& KCFixedStringBase::TerminatorSlot() const noexcept {
    if (m_begin != nullptr)
        return m_begin[m_capacity];
    thread_local char noBuffer;
    noBuffer = '\0';
    return noBuffer;
}

void KCFixedStringBase::copy_to_buffer(size_t bufferSize, char* buffer) const noexcept {
    if (bufferSize == 0 || buffer == nullptr)
        return;
    const size_t count = std::min(bufferSize - 1, size());
    if (count != 0)
        std::memmove(buffer, m_begin, count);
    buffer[count] = '\0';
}

// ---- Editing

size_t KCFixedStringBase::resize(size_t count) noexcept {
    if (m_capacity == 0)
        return 0;
    m_end = m_begin + std::min(count, m_capacity);
    *m_end = '\0';
    return size();
}

KCFixedStringBase& KCFixedStringBase::reposition_end() noexcept {
    if (m_begin == nullptr)
        return *this;
    if (void* found = std::memchr(m_begin, '\0', m_capacity + 1))
        m_end = static_cast<char*>(found);
    *m_end = '\0';
    return *this;
}

KCFixedStringBase& KCFixedStringBase::erase(ptrdiff_t pos, size_t count) noexcept {
    const size_t length = size();
    if (pos < 0)
        pos += static_cast<ptrdiff_t>(length);
    if (pos < 0 || static_cast<size_t>(pos) >= length || count == 0)
        return *this;
    const auto from = static_cast<size_t>(pos);
    const size_t gone = std::min(count, length - from);
    std::memmove(m_begin + from, m_begin + from + gone, length - from - gone);
    m_end -= gone;
    *m_end = '\0';
    return *this;
}

KCFixedStringBase& KCFixedStringBase::erase_all_of(const char* set) noexcept {
    const CharSet gone(set);
    char* last = std::remove_if(m_begin, m_end, [&](char c) { return gone.Has(c); });
    return last == m_end ? *this : (resize(static_cast<size_t>(last - m_begin)), *this);
}

KCFixedStringBase& KCFixedStringBase::erase_all_not_of(const char* set) noexcept {
    const CharSet kept(set);
    char* last = std::remove_if(m_begin, m_end, [&](char c) { return !kept.Has(c); });
    return last == m_end ? *this : (resize(static_cast<size_t>(last - m_begin)), *this);
}

KCFixedStringBase& KCFixedStringBase::reverse() noexcept { return reverse(m_begin, m_end); }

KCFixedStringBase& KCFixedStringBase::reverse(char* first, char* last) noexcept {
    if (first != nullptr && first < last)
        std::reverse(first, last);
    return *this;
}

// ---- Replacing

size_t KCFixedStringBase::replace(char from, char to) noexcept {
    const auto count = static_cast<size_t>(std::count(m_begin, m_end, from));
    if (count != 0)
        std::replace(m_begin, m_end, from, to);
    return count;
}

size_t KCFixedStringBase::replace(const char* set, char to) noexcept {
    const CharSet from(set);
    size_t count = 0;
    for (char* at = m_begin; at != m_end; ++at) {
        if (!from.Has(*at))
            continue;
        *at = to;
        ++count;
    }
    return count;
}

size_t KCFixedStringBase::replace(char from, const char* to) noexcept {
    const auto count = static_cast<size_t>(std::count(m_begin, m_end, from));
    if (count == 0)
        return 0;
    const size_t toLength = LengthUpTo(to, m_capacity);
    // Bytes behind the end and a text that runs into the buffer count as its own, too.
    const bool isOwnText =
        toLength != 0 && std::less<>()(m_begin, to + toLength) && std::less_equal<>()(to, m_begin + m_capacity);
    if (!isOwnText) {
        ReplaceInPlace(from, to, toLength);
        return count;
    }
    // The text that is put in would change under our hands.
    const std::unique_ptr<char[]> copy(new (std::nothrow) char[toLength]);
    if (copy == nullptr)
        return 0;
    std::memcpy(copy.get(), to, toLength);
    ReplaceInPlace(from, copy.get(), toLength);
    return count;
}

void KCFixedStringBase::ReplaceInPlace(char from, const char* to, size_t toLength) noexcept {
    if (toLength == 0)
        resize(static_cast<size_t>(std::remove(m_begin, m_end, from) - m_begin));
    else if (toLength == 1)
        std::replace(m_begin, m_end, from, *to);
    else
        GrowInPlace(from, to, toLength);
}

/// The new text is at least as long as the old one everywhere, so it can be written from its end to its begin.
void KCFixedStringBase::GrowInPlace(char from, const char* to, size_t toLength) noexcept {
    size_t length = 0;
    const char* read = m_begin;
    while (read != m_end && length < m_capacity)
        length += *read++ == from ? toLength : 1;
    char* write = m_begin + std::min(length, m_capacity);
    m_end = write;
    *m_end = '\0';
    while (read != m_begin) {
        if (*--read != from) {
            *--write = *read;
            --length;
            continue;
        }
        length -= toLength;
        const size_t part = std::min(toLength, static_cast<size_t>(write - m_begin) - length);
        write -= part;
        std::memcpy(write, to, part);
    }
}

// ---- Comparing

int64_t KCFixedStringBase::case_insensitive_compare(const char* text) const noexcept {
    if (text == nullptr)
        return 1;
    const char* own = Text();
    while (*own != '\0' && Lower(*own) == Lower(*text)) {
        ++own;
        ++text;
    }
    return Lower(*own) - Lower(*text);
}

std::weak_ordering operator<=>(const KCFixedStringBase& a, std::string_view b) noexcept {
    const char* own = a.Text();
    const size_t length = KCFixedStringBase::LengthUpTo(b.data(), b.size());
    const int difference = length == 0 ? 0 : std::strncmp(own, b.data(), length);
    if (difference != 0)
        return difference <=> 0;
    return own[length] == '\0' ? std::weak_ordering::equivalent : std::weak_ordering::greater;
}

} // namespace kvKorvoV12_9_0_320
