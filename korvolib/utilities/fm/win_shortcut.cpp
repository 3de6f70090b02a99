#include <korvolib/utilities/fm/win_shortcut_internal.h>

#include <algorithm>
#include <array>
#include <string_view>

#include <korvolib/utilities/fm/disk_object.h>
#include <korvolib/utilities/fm/open_file_internal.h>
#include <korvolib/utilities/fm/path.h>
#include <korvolib/utilities/fm/path_internal.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

// HeaderSize and LinkCLSID 00021401-0000-0000-C000-000000000046, section 2.1.
constexpr std::array<uint8_t, 20> kSignature = {0x4C, 0, 0,    0, 0x01, 0x14, 0x02, 0, 0, 0,
                                                0,    0, 0xC0, 0, 0,    0,    0,    0, 0, 0x46};

// LinkFlags, section 2.1.1.
constexpr uint32_t kHasLinkTargetIdList = 1u << 0;
constexpr uint32_t kHasLinkInfo = 1u << 1;
constexpr uint32_t kHasName = 1u << 2;
constexpr uint32_t kHasRelativePath = 1u << 3;
constexpr uint32_t kIsUnicode = 1u << 7;
constexpr uint32_t kForceNoLinkInfo = 1u << 8;

// LinkInfoFlags, section 2.3.
constexpr uint32_t kHasLocalBasePath = 1u << 0;
constexpr uint32_t kHasNetworkPath = 1u << 1;
constexpr uint32_t kHeaderSizeWithUnicode = 0x24;

// A reader over bytes whose every length is checked; once something was missing, everything is.
class Reader {
  public:
    explicit Reader(std::span<const uint8_t> bytes) : m_bytes(bytes) {}
    bool IsGood() const { return m_isGood; }

    std::span<const uint8_t> Take(size_t size) {
        if (!m_isGood || size > m_bytes.size() - m_position) {
            m_isGood = false;
            return {};
        }
        m_position += size;
        return m_bytes.subspan(m_position - size, size);
    }
    void MoveTo(size_t position) {
        m_isGood = m_isGood && position <= m_bytes.size();
        m_position = m_isGood ? position : m_bytes.size();
    }
    uint32_t Number(size_t size) {
        uint32_t value = 0;
        size_t shift = 0;
        for (const uint8_t byte : Take(size))
            value |= static_cast<uint32_t>(byte) << 8 * shift++;
        return value;
    }
    uint16_t Number16() { return static_cast<uint16_t>(Number(2)); }
    uint32_t Number32() { return Number(4); }
    std::span<const uint8_t> Rest() const { return m_bytes.subspan(m_position); }

  private:
    std::span<const uint8_t> m_bytes;
    size_t m_position = 0;
    bool m_isGood = true;
};

void AppendUtf8(std::string& out, uint32_t code) {
    const auto tail = [&](int shift) { out += static_cast<char>(0x80u | (code >> shift & 0x3Fu)); };
    if (code < 0x80) {
        out += code == '\\' ? kSeparator : static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0u | code >> 6);
        tail(0);
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0u | code >> 12);
        tail(6);
        tail(0);
    } else {
        out += static_cast<char>(0xF0u | code >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

std::string TextFromUtf16(std::span<const uint8_t> bytes) {
    const auto unit = [&](size_t i) { return static_cast<uint32_t>(bytes[2 * i] | bytes[2 * i + 1] << 8); };
    const size_t count = bytes.size() / 2;
    std::string text;
    for (size_t i = 0; i < count && unit(i) != 0; ++i) {
        uint32_t code = unit(i);
        const bool isPair =
            code >= 0xD800 && code < 0xDC00 && i + 1 < count && unit(i + 1) >= 0xDC00 && unit(i + 1) < 0xE000;
        if (isPair)
            code = 0x10000 + ((code - 0xD800) << 10) + (unit(++i) - 0xDC00);
        else if (code >= 0xD800 && code < 0xE000)
            code = 0xFFFD; // half a pair is no character
        AppendUtf8(text, code);
    }
    return text;
}

// The format does not say which code page; windows-1252 is that of Western Europe and America.
std::string TextFromCodePage(std::span<const uint8_t> bytes) {
    constexpr uint16_t k0x80To0x9F[32] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                          0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                          0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                          0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
    std::string text;
    for (const uint8_t byte : bytes) {
        if (byte == 0)
            break;
        AppendUtf8(text, byte >= 0x80 && byte < 0xA0 ? k0x80To0x9F[byte - 0x80] : byte);
    }
    return text;
}

// StringData, section 2.4.
std::string ReadString(Reader& reader, bool isUnicode) {
    const size_t count = reader.Number16();
    const auto bytes = reader.Take(isUnicode ? 2 * count : count);
    return isUnicode ? TextFromUtf16(bytes) : TextFromCodePage(bytes);
}

// The text at an offset that LinkInfo states; the offset 0 is no text.
std::string TextAt(std::span<const uint8_t> info, uint32_t offset, bool isUnicode) {
    if (offset == 0 || offset >= info.size())
        return {};
    return isUnicode ? TextFromUtf16(info.subspan(offset)) : TextFromCodePage(info.subspan(offset));
}

// CommonNetworkRelativeLink, section 2.3.2: the share's name, such as \\server\share. A name that stands further
// down leaves room for where its Unicode form is.
std::string NetName(std::span<const uint8_t> info, uint32_t offset) {
    constexpr uint32_t kSizeWithoutUnicode = 0x14;
    if (offset == 0 || offset >= info.size())
        return {};
    Reader reader(info.subspan(offset));
    const uint32_t size = reader.Number32();
    reader.Take(4); // its flags
    const uint32_t name = reader.Number32();
    reader.Take(8); // the device's name, the network's kind
    if (!reader.IsGood() || size < kSizeWithoutUnicode)
        return {};
    const uint32_t unicodeName = name > kSizeWithoutUnicode ? reader.Number32() : 0;
    const auto link = info.subspan(offset, std::min<size_t>(size, info.size() - offset));
    return unicodeName != 0 ? TextAt(link, unicodeName, true) : TextAt(link, name, false);
}

// LinkInfo, section 2.3: a base path, here or on the network, and what follows it.
std::string FullPath(std::span<const uint8_t> info) {
    Reader reader(info);
    reader.Take(4); // its size, of which `info` is what there is
    const uint32_t headerSize = reader.Number32();
    const uint32_t flags = reader.Number32();
    reader.Take(4); // the volume's description
    const uint32_t base = reader.Number32();
    const uint32_t network = reader.Number32();
    const uint32_t suffix = reader.Number32();
    if (!reader.IsGood())
        return {};
    uint32_t unicodeBase = 0;
    uint32_t unicodeSuffix = 0;
    if (headerSize >= kHeaderSizeWithUnicode) {
        unicodeBase = reader.Number32();
        unicodeSuffix = reader.Number32();
    }
    std::string path;
    if ((flags & kHasLocalBasePath) != 0)
        path = unicodeBase != 0 ? TextAt(info, unicodeBase, true) : TextAt(info, base, false);
    else if ((flags & kHasNetworkPath) != 0)
        path = NetName(info, network);
    const std::string end = unicodeSuffix != 0 ? TextAt(info, unicodeSuffix, true) : TextAt(info, suffix, false);
    return end.empty() || path.empty() ? path : JoinedText(path, end);
}

int32_t ReadShortcut(KTPathType* path, size_t most, KCStMemObj& out) {
    KTOpenFileType* file = nullptr;
    if (!IsFile(path)) // never waits for a pipe
        return path == nullptr ? kErr_NullArgument : DoesFileExist(path) ? kErr_Generic : kErr_FileNotFound;
    int32_t result = OpenFile(path, KEPermitions::Read, file);
    if (result != kErr_NoErr)
        return result;
    uint64_t size = 0;
    result = GetFileSizeFromOpenFileRef(file, size);
    if (result == kErr_NoErr)
        result = out.Allocate(static_cast<size_t>(std::min<uint64_t>(size, most)));
    size_t done = 0;
    if (result == kErr_NoErr)
        result = ReadFromFile(file, out.GetData(), out.GetSize(), done);
    if (result == kErr_NoErr)
        result = out.Resize(done);
    CloseFile(file);
    return result;
}

int32_t Resolve(KTPathType* path, KTPathType*& out) {
    constexpr size_t kLargestShortcut = size_t{1} << 20; // they have a few hundred bytes
    KCStMemObj bytes;
    const int32_t result = ReadShortcut(path, kLargestShortcut, bytes);
    if (result != kErr_NoErr)
        return result;
    sWinShortcut shortcut;
    if (!ParseWinShortcut(bytes.GetBytes(), shortcut))
        return kErr_Generic;
    const std::string nearby = shortcut.relativePath.empty()
                                   ? std::string()
                                   : JoinedText(ParentText(TextOf(*path)), shortcut.relativePath);
    sObjectInfo info;
    const bool isNearby = !nearby.empty() && InfoOfPath(nearby.c_str(), true, info) == kErr_NoErr;
    const int32_t made = MakePathRef(isNearby || shortcut.fullPath.empty() ? nearby : shortcut.fullPath, out);
    return made == kErr_FileNotFound ? kErr_Generic : made;
}

} // namespace

bool HasWinShortcutHeader(std::span<const uint8_t> bytes) noexcept {
    return bytes.size() >= kWinShortcutHeaderSize &&
           std::equal(kSignature.begin(), kSignature.end(), bytes.begin());
}

bool ParseWinShortcut(std::span<const uint8_t> bytes, sWinShortcut& out) {
    if (!HasWinShortcutHeader(bytes))
        return false;
    Reader reader(bytes);
    reader.Take(kSignature.size());
    const uint32_t flags = reader.Number32();
    reader.MoveTo(kWinShortcutHeaderSize);
    if ((flags & kHasLinkTargetIdList) != 0)
        reader.Take(reader.Number16());
    if ((flags & kHasLinkInfo) != 0) {
        Reader ahead = reader;
        const auto info = reader.Take(ahead.Number32());
        if (info.size() < sizeof(uint32_t)) // its size counts itself
            return false;
        if ((flags & kForceNoLinkInfo) == 0)
            out.fullPath = FullPath(info);
    }
    const bool isUnicode = (flags & kIsUnicode) != 0;
    if ((flags & kHasName) != 0)
        ReadString(reader, isUnicode);
    if ((flags & kHasRelativePath) != 0)
        out.relativePath = ReadString(reader, isUnicode);
    if (out.relativePath.starts_with("./")) // as most of them do
        out.relativePath.erase(0, 2);
    return reader.IsGood();
}

bool IsWinShortcut(KTPathType* path) noexcept {
    KCStMemObj head;
    return ReadShortcut(path, kWinShortcutHeaderSize, head) == kErr_NoErr && HasWinShortcutHeader(head.GetBytes());
}

int32_t ResolveWinShortcut(KTPathType* path, KTPathType*& out) noexcept {
    out = nullptr;
    return WithoutThrowing([&] { return Resolve(path, out); });
}

bool IsWinShortcut(const KCStPath& path) noexcept { return IsWinShortcut(path.GetPathRef()); }

int32_t ResolveWinShortcut(const KCStPath& path, KCStPath& out) noexcept {
    KTPathType* resolved = nullptr;
    const int32_t result = ResolveWinShortcut(path.GetPathRef(), resolved);
    out.TakeOver(resolved);
    return result;
}

} // namespace kvKorvoV12_9_0_320::FM
