#include <string>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/disk_object.h>
#include <korvolib/utilities/fm/fm_test_internal.h>

namespace {

using namespace kvKorvo::FM;

std::string Number(uint64_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> 8 * i);
    return text;
}

std::string Utf16(const std::u16string& text) {
    std::string bytes;
    for (const char16_t unit : text)
        bytes += Number(unit, 2);
    return bytes;
}

constexpr uint32_t kIdList = 1, kInfo = 2, kName = 4, kRelative = 8, kUnicode = 128, kNoInfo = 256;

std::string Header(uint32_t flags) {
    std::string header = Number(0x4C, 4);
    header += std::string("\x01\x14\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 16) + Number(flags, 4);
    return header + std::string(76 - header.size(), '\0');
}

std::string IdList() { return Number(5, 2) + "items"; }

std::string Wide(const std::u16string& text) { return Number(text.size(), 2) + Utf16(text); }
std::string Narrow(const std::string& text) { return Number(text.size(), 2) + text; }

std::string LocalInfo(const std::string& base, const std::string& suffix) {
    const uint64_t start = 0x1C;
    const std::string texts = base + '\0' + suffix + '\0';
    return Number(start + texts.size(), 4) + Number(start, 4) + Number(1, 4) + Number(0, 4) + Number(start, 4) +
           Number(0, 4) + Number(start + base.size() + 1, 4) + texts;
}

std::string LocalUnicodeInfo(const std::u16string& base) {
    const std::string texts = std::string(1, '\0') + Utf16(base) + std::string(4, '\0');
    return Number(0x24 + texts.size(), 4) + Number(0x24, 4) + Number(1, 4) + Number(0, 4) + Number(0x24, 4) +
           Number(0, 4) + Number(0x24, 4) + Number(0x25, 4) + Number(0x25 + 2 * base.size() + 2, 4) + texts;
}

std::string NetworkInfo(const std::string& share, const std::string& suffix) {
    const std::string link =
        Number(0x14 + share.size() + 1, 4) + Number(0, 4) + Number(0x14, 4) + Number(0, 8) + share + '\0';
    const uint64_t start = 0x1C;
    return Number(start + link.size() + suffix.size() + 1, 4) + Number(start, 4) + Number(2, 4) + Number(0, 8) +
           Number(start, 4) + Number(start + link.size(), 4) + link + suffix + '\0';
}

std::string NetworkUnicodeInfo(const std::u16string& share) {
    const std::string texts = std::string("\\\\?\\?\0", 6) + Utf16(share) + std::string(2, '\0');
    const std::string link = Number(0x1C + texts.size(), 4) + Number(0, 4) + Number(0x1C, 4) + Number(0, 8) +
                             Number(0x1C + 6, 4) + Number(0, 4) + texts;
    const uint64_t start = 0x1C;
    return Number(start + link.size() + 1, 4) + Number(start, 4) + Number(2, 4) + Number(0, 8) + Number(start, 4) +
           Number(start + link.size(), 4) + link + '\0';
}

class Shortcuts : public kvTest::FmTest {
  protected:
    std::string Resolve(const std::string& content) {
        KCStPath out("/old");
        const int32_t result = ResolveWinShortcut(m_folder.File("s.lnk", content), out);
        EXPECT_EQ(result == 0, out.IsValid());
        return result == 0 ? std::string(out.GetPathString().c_str()) : std::to_string(result);
    }
};

TEST_F(Shortcuts, AreToldByTheirContent) {
    EXPECT_TRUE(IsWinShortcut(m_folder.File("any name", Header(0))));
    EXPECT_FALSE(IsWinShortcut(m_folder.File("cut.lnk", Header(0).substr(0, 75))));
    std::string other = Header(0);
    other[4] = 0;
    EXPECT_FALSE(IsWinShortcut(m_folder.File("other.lnk", other)));
    EXPECT_FALSE(IsWinShortcut(m_folder.File("empty.lnk", "")));
    EXPECT_FALSE(IsWinShortcut(m_folder.Path()));
    EXPECT_FALSE(IsWinShortcut(m_folder.Path("missing")));
}

TEST_F(Shortcuts, RelativePathComesFirstWhenSomethingIsThere) {
    std::filesystem::create_directory(m_folder.Text("d"));
    m_folder.File("d/kick.wav", "x");
    const std::string content = Header(kIdList | kInfo | kName | kRelative | kUnicode) + IdList() +
                                LocalInfo("C:\\Sounds\\", "kick.wav") + Wide(u"a name") + Wide(u".\\d\\kick.wav");
    EXPECT_EQ(Resolve(content), m_folder.Text("d/kick.wav"));
    std::filesystem::remove(m_folder.Text("d/kick.wav"));
    EXPECT_EQ(Resolve(content), "C:/Sounds/kick.wav");
}

TEST_F(Shortcuts, RelativePathAloneIsTakenEvenIfNothingIsThere) {
    EXPECT_EQ(Resolve(Header(kRelative | kUnicode) + Wide(u"..\\x")), m_folder.Text("../x"));
}

TEST_F(Shortcuts, TextIsUtf16OrWindows1252) {
    EXPECT_EQ(Resolve(Header(kRelative | kUnicode) + Wide(u"\u00FC\u20AC\U0001D11E\xD800")),
              m_folder.Text("\xC3\xBC\xE2\x82\xAC\xF0\x9D\x84\x9E\xEF\xBF\xBD"));
    EXPECT_EQ(Resolve(Header(kRelative) + Narrow("\xFC\x80")), m_folder.Text("\xC3\xBC\xE2\x82\xAC"));
}

TEST_F(Shortcuts, FullPathsOfAllKinds) {
    EXPECT_EQ(Resolve(Header(kInfo) + LocalInfo("C:\\a.wav", "")), "C:/a.wav");
    EXPECT_EQ(Resolve(Header(kInfo) + LocalUnicodeInfo(u"D:\\\u00FC.wav")), "D:/\xC3\xBC.wav");
    EXPECT_EQ(Resolve(Header(kInfo) + NetworkInfo("\\\\server\\share", "d\\a.wav")), "//server/share/d/a.wav");
    EXPECT_EQ(Resolve(Header(kInfo) + NetworkUnicodeInfo(u"\\\\s\\\u0416")), "//s/\xD0\x96");
}

TEST_F(Shortcuts, LinkInfoMayBeForbidden) {
    EXPECT_EQ(Resolve(Header(kInfo | kNoInfo) + LocalInfo("C:\\a.wav", "")), "-1");
    EXPECT_EQ(Resolve(Header(kInfo | kNoInfo | kRelative) + LocalInfo("C:\\a.wav", "") + Narrow("r")),
              m_folder.Text("r"));
}

TEST_F(Shortcuts, WhatNamesNothingOrIsNoneIsAnError) {
    EXPECT_EQ(Resolve(Header(0)), "-1");
    EXPECT_EQ(Resolve("text"), "-1");
    EXPECT_EQ(Resolve(Header(kInfo) + Number(3, 4)), "-1");
    EXPECT_EQ(Resolve(Header(kInfo) + Number(0xFFFFFFFF, 4)), "-1");
    KTPathType* out = nullptr;
    EXPECT_EQ(ResolveWinShortcut(m_folder.Path("missing").GetPathRef(), out), -1002);
    EXPECT_EQ(ResolveWinShortcut(m_folder.Path().GetPathRef(), out), -1);
    EXPECT_EQ(out, nullptr);
}

TEST_F(Shortcuts, OffsetsOutsideAreNoText) {
    std::string info = LocalInfo("C:\\a.wav", "");
    info.replace(16, 4, Number(0xFFFFFFF0, 4));
    EXPECT_EQ(Resolve(Header(kInfo) + info), "-1");
    std::string network = NetworkInfo("\\\\s\\t", "");
    network.replace(0x1C + 8, 4, Number(0x7FFFFFFF, 4));
    EXPECT_EQ(Resolve(Header(kInfo) + network), "-1");
}

TEST_F(Shortcuts, CutAtEveryByteIsAnErrorOrTheWhole) {
    const std::string whole =
        Header(kIdList | kInfo | kRelative) + IdList() + LocalInfo("C:\\a.wav", "") + Narrow("rel");
    for (size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(Resolve(whole.substr(0, size)), "-1") << size;
    EXPECT_EQ(Resolve(whole), "C:/a.wav");
}

} // namespace
