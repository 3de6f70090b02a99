// KCGSText: text handed to the graphic stream, from whatever holds it. A view: it is read during the call, except
// that text written by pointer has to live as long as the stream is played.
#pragma once

#include <string>
#include <string_view>

#include <korvolib/export.h>
#include <korvolib/utilities/mem_obj.h>
#include <korvolib/utilities/strings/fixed_string.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::kvGS {

class KCGSText {
  public:
    KCGSText(const char* text) noexcept : m_text(text == nullptr ? std::string_view() : std::string_view(text)) {}
    KCGSText(const KCFixedStringBase& text) noexcept : m_text(text.data(), text.size()) {}
    KCGSText(std::string_view text) noexcept : m_text(text) {}
    KCGSText(const std::string& text) noexcept : m_text(text) {}

    const char* data() const noexcept { return m_text.data(); }
    size_t size() const noexcept { return m_text.size(); }
    std::string_view View() const noexcept { return m_text; }

  private:
    std::string_view m_text;
};

/// Puts the text behind what `out` holds, as UTF-8 that any reader takes: every byte that is not part of a
/// well-formed character (Unicode 15, table 3-7), and every control character but tab, line feed and carriage
/// return, becomes U+FFFD. kErr_AllocationFailed leaves `out` with a part of it.
[[nodiscard]] KORVO_API int32_t GSAppendValidText(std::string_view text, KCStMemObj& out) noexcept;

} // namespace kvKorvoV12_9_0_320::kvGS
