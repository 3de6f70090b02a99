#include <korvolib/utilities/xml/xml_element.h>

#include <string>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>

namespace {

using kvKorvo::KCXMLElement;

bool TextIsTaken(std::string_view text) { return KCXMLElement().SetText(text) == kvKorvo::kErr_NoErr; }

bool NameIsTaken(const char* name) { return KCXMLElement().SetName(name) == kvKorvo::kErr_NoErr; }

// UTF-8 of any number up to 21 bits, valid or not.
std::string Encoded(uint32_t code) {
    auto byte = [](uint32_t value) { return static_cast<char>(value); };
    auto continued = [&](int shift) { return byte(0x80 | ((code >> shift) & 0x3F)); };
    if (code < 0x80)
        return {byte(code)};
    if (code < 0x800)
        return {byte(0xC0 | code >> 6), continued(0)};
    if (code < 0x10000)
        return {byte(0xE0 | code >> 12), continued(6), continued(0)};
    return {byte(0xF0 | code >> 18), continued(12), continued(6), continued(0)};
}

TEST(XMLText, TakesExactlyTheCharactersThatXMLAllows) {
    for (uint32_t code = 0; code < 0x110400; code += code < 0x3000 || code > 0xD000 ? 1 : 7) {
        const bool isAllowed = code == 0x9 || code == 0xA || code == 0xD || (code >= 0x20 && code <= 0xD7FF) ||
                               (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
        ASSERT_EQ(TextIsTaken(Encoded(code)), isAllowed) << code;
        if (code == 0x10FFF)
            code = 0x10FF00;
    }
}

TEST(XMLText, RefusesBrokenUTF8) {
    for (const char* text : {"\x80", "\xBF", "\xC3", "\xC3(", "\xE2\x82", "\xE2(\x82", "\xF0\x9F\x98",
                             "\xF0\x9F\x98(", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xE0\x9F\xBF",
                             "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF", "\xF5\x80\x80\x80", "\xFF", "\xFE"}) {
        EXPECT_FALSE(TextIsTaken(text));
        EXPECT_FALSE(TextIsTaken(std::string("ok").append(text)));
    }
}

TEST(XMLText, RefusesACharacterOfValueZero) { EXPECT_FALSE(TextIsTaken(std::string_view("a\0b", 3))); }

TEST(XMLText, TakesNamesOfLettersDigitsAndFourSigns) {
    for (const char* name : {"a", "Z", "_", "a0", "ParamsXML", "a-b.c:d_e"})
        EXPECT_TRUE(NameIsTaken(name)) << name;
    for (const char* name : {"", "0", "-a", ".a", ":a", "a b", "a/", "a<", "a=", "a\"", "\xC3\xA4", "a\xC3\xA4"})
        EXPECT_FALSE(NameIsTaken(name)) << name;
}

} // namespace
