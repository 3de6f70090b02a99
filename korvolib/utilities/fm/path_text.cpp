// Path text: the way from one path to another, and long forms.

#include <korvolib/utilities/fm/path_internal.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

// MAX_PATH less the terminator: what fits into the 261 wide characters of the platforms that have long forms.
constexpr size_t kMaxLongFormUnits = 260;

// The bytes of the character that the text begins with: 1 to 4. A byte that begins none stands alone: on Linux
// names are bytes, and such names exist.
size_t CharacterLength(std::string_view text) noexcept {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    size_t length = 1;
    if (byte(0) >= 0xC0u && byte(0) < 0xF8u)
        length = byte(0) < 0xE0u ? 2 : byte(0) < 0xF0u ? 3 : 4;
    for (size_t i = 1; i < length; ++i) {
        if (i >= text.size() || (byte(i) & 0xC0u) != 0x80u)
            return 1;
    }
    return length;
}

size_t Utf16Units(std::string_view text) noexcept {
    size_t units = 0;
    while (!text.empty()) {
        const size_t length = CharacterLength(text);
        units += length == 4 ? 2 : 1; // beyond the basic plane: a surrogate pair
        text.remove_prefix(length);
    }
    return units;
}

std::string LongForm(std::string_view text) {
    std::string out;
    PathParts parts(text);
    for (std::string_view part; parts.Next(part);)
        out = out.empty() ? std::string(part) : JoinedText(out, part);
    return out;
}

// Steps over the components that both have, and leaves the first of each that differs (empty at the end).
void SkipCommon(PathParts& from, std::string_view& a, PathParts& to, std::string_view& b) noexcept {
    for (;;) {
        a = b = {};
        const bool isMoreA = from.Next(a);
        const bool isMoreB = to.Next(b);
        if (!isMoreA || !isMoreB || a != b)
            return;
    }
}

bool IsAbsolute(std::string_view text) noexcept { return !text.empty() && text.front() == kSeparator; }

std::string WayBetween(std::string_view from, std::string_view to) {
    PathParts fromParts(from);
    PathParts toParts(to);
    std::string_view a;
    std::string_view b;
    SkipCommon(fromParts, a, toParts, b);
    std::string way;
    for (bool isMore = !a.empty(); isMore; isMore = fromParts.Next(a)) {
        if (a == "..")
            return {};
        if (a != ".")
            way = JoinedText(way, "..");
    }
    for (bool isMore = !b.empty(); isMore; isMore = toParts.Next(b))
        way = JoinedText(way, b);
    return way.empty() ? "." : way;
}

} // namespace

int32_t GetRelativeDifference(KTPathType* from, KTPathType* to, KCFixedString<1023>& out) noexcept {
    out.clear();
    if (from == nullptr || to == nullptr)
        return kErr_NullArgument;
    if (IsAbsolute(TextOf(*from)) != IsAbsolute(TextOf(*to)))
        return kErr_Generic;
    return WithoutThrowing([&] {
        const std::string way = WayBetween(TextOf(*from), TextOf(*to));
        out.assign(way.c_str(), way.size());
        return way.empty() ? kErr_Generic : kErr_NoErr;
    });
}

int32_t NormalizedText(std::string_view utf8, std::string& out) {
    if (!IsAbsolute(utf8)) {
        out = utf8;
        return kErr_NoErr;
    }
    out = LongForm(utf8);
    sObjectInfo info;
    return Utf16Units(out) <= kMaxLongFormUnits && InfoOfPath(out.c_str(), false, info) == kErr_NoErr
               ? kErr_NoErr
               : kErr_PathNormalisationFailed;
}

int32_t NormalizePathString(const char* utf8, KCFixedStringBase& out) noexcept {
    if (utf8 == nullptr)
        return kErr_NullArgument;
    return WithoutThrowing([&] {
        std::string text;
        const int32_t result = NormalizedText(utf8, text);
        if (result == kErr_NoErr)
            out.assign(text.c_str(), text.size());
        return result;
    });
}

int32_t UnNormalizePathString(const char* utf8, KCFixedStringBase& out) noexcept {
    if (utf8 == nullptr)
        return kErr_NullArgument;
    out.assign(utf8);
    return kErr_NoErr;
}

} // namespace kvKorvoV12_9_0_320::FM
