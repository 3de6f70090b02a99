// For the tests: a string in a heap block of exactly its size, so that a sanitizer sees one byte too many.
#pragma once

#include <cstring>
#include <memory>
#include <string>

#include <korvolib/utilities/strings/fixed_string.h>

namespace kvTest {

namespace detail {
struct Block {
    explicit Block(size_t capacity) : bytes(new char[capacity + 1]) { std::memset(bytes.get(), 0, capacity + 1); }
    std::unique_ptr<char[]> bytes;
};
} // namespace detail

class BlockString : private detail::Block, public kvKorvo::KCFixedStringBase {
  public:
    explicit BlockString(size_t capacity, const char* text = "")
        : Block(capacity), KCFixedStringBase(bytes.get(), capacity) {
        append(text);
    }
    BlockString(const BlockString&) = delete;
    using KCFixedStringBase::operator=;
    BlockString& operator=(const BlockString&) = delete;
};

/// A string bound to no buffer at all.
class Unbound : public kvKorvo::KCFixedStringBase {
  public:
    Unbound() : KCFixedStringBase(nullptr, 12) {}
    using KCFixedStringBase::operator=;
};

/// A C text that lies at the end of a heap block.
class BlockText {
  public:
    explicit BlockText(const std::string& text) : m_bytes(new char[text.size() + 1]) {
        std::memcpy(m_bytes.get(), text.c_str(), text.size() + 1);
    }
    const char* Get() const { return m_bytes.get(); }

  private:
    std::unique_ptr<char[]> m_bytes;
};

/// What a string has to be at any time; the text with the NULs inside it.
inline std::string Checked(const kvKorvo::KCFixedStringBase& string) {
    const bool isSound =
        string.begin() <= string.end() && string.size() <= string.capacity() && *string.end() == '\0';
    return isSound ? std::string(string.data(), string.size()) : "the string is not sound";
}

} // namespace kvTest
