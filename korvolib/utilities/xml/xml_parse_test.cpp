#include <korvolib/utilities/xml/xml_element.h>

#include <cstring>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <tests/support/german_locale.h>

namespace {

using kvKorvo::KCXMLElement;
using kvKorvo::sXML_ERROR;

constexpr int32_t kNoErr = kvKorvo::kErr_NoErr;

// From a block that ends where the text ends, into an element that was not empty.
struct Parsed {
    explicit Parsed(std::string_view text) {
        const std::unique_ptr<char[]> exact(new char[text.size()]);
        std::memcpy(exact.get(), text.data(), text.size());
        EXPECT_NE(root.AddChild("before"), nullptr);
        code = root.Parse(exact.get(), text.size(), &error);
    }
    KCXMLElement root;
    sXML_ERROR error;
    int32_t code = 0;
};

void ExpectRefused(std::string_view text, int32_t code) {
    const Parsed parsed(text);
    EXPECT_EQ(parsed.code, code) << text.substr(0, 80);
    EXPECT_TRUE(parsed.root.IsEmpty()) << text.substr(0, 80);
    EXPECT_FALSE(parsed.error.text.empty()) << text.substr(0, 80);
}

std::string Joined(std::initializer_list<std::string_view> parts) {
    std::string result;
    for (const std::string_view part : parts)
        result += part;
    return result;
}

std::string Repeated(std::string_view text, size_t count) {
    std::string result;
    for (size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

std::string Nested(size_t depth) { return Repeated("<e>", depth) + Repeated("</e>", depth); }

TEST(XMLParse, ReadsNamesTextsAttributesAndChildren) {
    const Parsed parsed("<?xml version='1.0'?><!-- c --><r a='1'>text<c b=\"2\">inner</c></r>\n");
    ASSERT_EQ(parsed.code, kNoErr);
    EXPECT_STREQ(parsed.root.GetName(), "r");
    EXPECT_STREQ(parsed.root.GetText(), "text");
    EXPECT_STREQ(parsed.root.GetAttribute("a"), "1");
    EXPECT_EQ(parsed.root.GetChildCount(), 1u);
    EXPECT_STREQ(parsed.root.FindChild("c")->GetText(), "inner");
    EXPECT_STREQ(parsed.root.FindChild("c")->GetAttribute("b"), "2");
}

TEST(XMLParse, ReplacesWhatWasThereAndClearsTheError) {
    Parsed parsed("<bad");
    ASSERT_NE(parsed.code, kNoErr);
    ASSERT_EQ(parsed.root.Parse("<a/>", 4, &parsed.error), kNoErr);
    EXPECT_STREQ(parsed.root.GetName(), "a");
    EXPECT_EQ(parsed.error.line, 0);
    EXPECT_TRUE(parsed.error.text.empty());
}

TEST(XMLParse, KnowsTheLineOfEachElement) {
    const Parsed parsed("<r>\n<a/>\r\n<b\n\n/><c/></r>");
    EXPECT_EQ(parsed.root.GetLine(), 1);
    EXPECT_EQ(parsed.root.FindChild("a")->GetLine(), 2);
    EXPECT_EQ(parsed.root.FindChild("b")->GetLine(), 3);
    EXPECT_EQ(parsed.root.FindChild("c")->GetLine(), 5);
}

TEST(XMLParse, KeepsTheBlanksOfATextButNotThoseBetweenChildren) {
    EXPECT_STREQ(Parsed("<r> \n</r>").root.GetText(), " \n");
    EXPECT_STREQ(Parsed("<r> a b </r>").root.GetText(), " a b ");
    EXPECT_STREQ(Parsed("<r>\n  <a/>\n  <b/>\n</r>").root.GetText(), "");
    EXPECT_STREQ(Parsed("<r> one <a/> \n <b/>two </r>").root.GetText(), " one two ");
}

TEST(XMLParse, JoinsTextAcrossCommentsInstructionsAndSections) {
    EXPECT_STREQ(Parsed("<r>a<!-- x -->b<?pi y?>c<![CDATA[<d>&]]>e</r>").root.GetText(), "abc<d>&e");
}

TEST(XMLParse, KnowsTheFiveEntitiesAndCharacterReferences) {
    const Parsed parsed("<r a='&lt;&gt;&amp;&apos;&quot;&#65;'>&lt;&gt;&amp;&apos;&quot;&#x20AC;&#13;</r>");
    EXPECT_STREQ(parsed.root.GetAttribute("a"), "<>&'\"A");
    EXPECT_STREQ(parsed.root.GetText(), "<>&'\"\xE2\x82\xAC\r");
}

TEST(XMLParse, TakesAByteOrderMark) {
    EXPECT_STREQ(Parsed("\xEF\xBB\xBF<r>\xC3\xA4</r>").root.GetText(), "\xC3\xA4");
    EXPECT_STREQ(Parsed(std::string_view("\xFF\xFE<\0r\0/\0>\0", 10)).root.GetName(), "r");
    EXPECT_STREQ(Parsed(std::string_view("\xFE\xFF\0<\0r\0/\0>", 10)).root.GetName(), "r");
}

TEST(XMLParse, TakesTheEncodingThatIsDeclared) {
    EXPECT_STREQ(Parsed("<?xml version='1.0' encoding='ISO-8859-1'?><r>\xE4</r>").root.GetText(), "\xC3\xA4");
    ExpectRefused("<?xml version='1.0' encoding='KOI8-R'?><r/>", kvKorvo::kErr_MalformedText);
    ExpectRefused("<?xml version='1.0' encoding='US-ASCII'?><r>\xC3\xA4</r>", kvKorvo::kErr_MalformedText);
}

TEST(XMLParse, KeepsNamesThatWeWouldNotMake) {
    const Parsed parsed("<\xC3\xA4 \xC3\xB6='1'/>");
    ASSERT_EQ(parsed.code, kNoErr);
    EXPECT_STREQ(parsed.root.GetName(), "\xC3\xA4");
    EXPECT_STREQ(parsed.root.GetAttribute("\xC3\xB6"), "1");
}

TEST(XMLParse, RefusesWhatIsNotWellFormed) {
    for (const char* text : {"",
                             " ",
                             "text",
                             "<",
                             "<r",
                             "<r>",
                             "</r>",
                             "<r></s>",
                             "<r/><s/>",
                             "<r/>x",
                             "<r a/>",
                             "<r a=1/>",
                             "<r a='1' a='2'/>",
                             "<r a='<'/>",
                             "<r>&</r>",
                             "<r>&#0;</r>",
                             "<r>&#xD800;</r>",
                             "<r>]]></r>",
                             "<r><!-- -- --></r>",
                             "<1/>",
                             "< r/>",
                             "<r>\x01</r>",
                             " <?xml version='1.0'?><r/>"})
        ExpectRefused(text, kvKorvo::kErr_MalformedText);
}

TEST(XMLParse, RefusesBrokenUTF8EverywhereInAText) {
    for (const char* bytes : {"\x80", "\xC3", "\xC0\x80", "\xE2\x82", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xFF",
                              "\xEF\xBF\xBF", "\xEF\xBF\xBE"}) {
        ExpectRefused(std::string("<r>").append(bytes).append("</r>"), kvKorvo::kErr_MalformedText);
        ExpectRefused(std::string("<r a='").append(bytes).append("'/>"), kvKorvo::kErr_MalformedText);
        ExpectRefused(std::string("<r").append(bytes).append("/>"), kvKorvo::kErr_MalformedText);
    }
}

TEST(XMLParse, RefusesCharactersOfValueZeroEverywhere) {
    const std::string text = "<r a='1'>text<c/></r>";
    for (size_t at = 0; at <= text.size(); ++at) {
        std::string broken = text;
        broken.insert(at, 1, '\0');
        ExpectRefused(broken, kvKorvo::kErr_MalformedText);
    }
}

TEST(XMLParse, RefusesATextThatEndsTooEarlyAtEveryByte) {
    const std::string text = "<?xml version=\"1.0\"?><!-- c --><r a=\"&lt;1\">te&amp;xt<c/><![CDATA[d]]></r>";
    ASSERT_EQ(Parsed(text).code, kNoErr);
    for (size_t size = 0; size < text.size(); ++size)
        ExpectRefused(text.substr(0, size), kvKorvo::kErr_MalformedText);
}

TEST(XMLParse, SurvivesEveryByteExchangedForEveryOther) {
    const std::string text = "<r a=\"1\">t&lt;<c/></r>";
    for (size_t at = 0; at < text.size(); ++at)
        for (int byte = 0; byte < 256; ++byte) {
            std::string changed = text;
            changed[at] = static_cast<char>(byte);
            const Parsed parsed(changed);
            ASSERT_EQ(parsed.code == kNoErr, !parsed.root.IsEmpty());
        }
}

TEST(XMLParse, RefusesDocumentTypes) {
    for (const char* text : {"<!DOCTYPE r><r/>", "<!DOCTYPE r SYSTEM 'file:///etc/passwd'><r/>",
                             "<!DOCTYPE r [<!ENTITY e 'x'>]><r>&e;</r>", "<!DOCTYPE r [<!ELEMENT r ANY>]><r/>"})
        ExpectRefused(text, kvKorvo::kErr_MalformedText);
    EXPECT_STREQ(Parsed("<!DOCTYPE r><r/>").error.text.c_str(), "a document type is not accepted");
}

TEST(XMLParse, RefusesEntitiesOfOthers) {
    ExpectRefused("<r>&nbsp;</r>", kvKorvo::kErr_MalformedText);
    ExpectRefused("<r a='&e;'/>", kvKorvo::kErr_MalformedText);
}

TEST(XMLParse, RefusesABillionLaughsBeforeTheFirst) {
    std::string text = "<!DOCTYPE r [<!ENTITY l0 'lol'>";
    for (int i = 1; i < 10; ++i) {
        const std::string last = Joined({"&l", std::to_string(i - 1), ";"});
        text += Joined({"<!ENTITY l", std::to_string(i), " '", Repeated(last, 10), "'>"});
    }
    text += "]><r>&l9;</r>";
    ExpectRefused(text, kvKorvo::kErr_MalformedText);
}

TEST(XMLParse, RefusesNullAndTakesNothingOfNothing) {
    KCXMLElement root;
    sXML_ERROR error;
    EXPECT_EQ(root.Parse(nullptr, 5, &error), kvKorvo::kErr_NullArgument);
    EXPECT_FALSE(error.text.empty());
    EXPECT_EQ(root.Parse(nullptr, 0, &error), kvKorvo::kErr_MalformedText);
    EXPECT_EQ(root.Parse("<r>", 3), kvKorvo::kErr_MalformedText);
}

TEST(XMLParse, SaysWhereAndWhy) {
    const Parsed parsed("<r>\n  <a>\n  </b>\n</r>");
    EXPECT_EQ(parsed.error.line, 3);
    EXPECT_EQ(parsed.error.column, 5);
    EXPECT_STREQ(parsed.error.text.c_str(), "mismatched tag");
}

TEST(XMLParse, SaysWhereALimitWasPassed) {
    const Parsed parsed(std::string("\n\n  ").append(Nested(kvKorvo::kXML_MaxDepth + 1)));
    EXPECT_EQ(parsed.error.line, 3);
    EXPECT_EQ(parsed.error.column, static_cast<int32_t>(3 + 3 * kvKorvo::kXML_MaxDepth));
    EXPECT_STREQ(parsed.error.text.c_str(), "elements are nested too deeply");
}

TEST(XMLParse, NestsUpToTheLimit) {
    EXPECT_EQ(Parsed(Nested(kvKorvo::kXML_MaxDepth)).code, kNoErr);
    ExpectRefused(Nested(kvKorvo::kXML_MaxDepth + 1), kvKorvo::kErr_LimitExceeded);
    ExpectRefused(Repeated("<e>", 1000000), kvKorvo::kErr_LimitExceeded);
}

TEST(XMLParse, CountsElementsUpToTheLimit) {
    const auto withChildren = [](size_t count) { return Joined({"<r>", Repeated("<e/>", count), "</r>"}); };
    EXPECT_EQ(Parsed(withChildren(kvKorvo::kXML_MaxElements - 1)).code, kNoErr);
    ExpectRefused(withChildren(kvKorvo::kXML_MaxElements), kvKorvo::kErr_LimitExceeded);
}

TEST(XMLParse, CountsAttributesUpToTheLimit) {
    const auto withAttributes = [](size_t count) {
        std::string text = "<r";
        for (size_t i = 0; i < count; ++i)
            text.append(" a").append(std::to_string(i)).append("=''");
        return text.append("/>");
    };
    EXPECT_EQ(Parsed(withAttributes(kvKorvo::kXML_MaxAttributes)).root.GetAttributeCount(),
              kvKorvo::kXML_MaxAttributes);
    ExpectRefused(withAttributes(kvKorvo::kXML_MaxAttributes + 1), kvKorvo::kErr_LimitExceeded);
}

TEST(XMLParse, MeasuresNamesAndValuesUpToTheLimit) {
    const auto named = [](size_t length) { return Joined({"<", std::string(length, 'n'), "/>"}); };
    EXPECT_EQ(Parsed(named(kvKorvo::kXML_MaxNameLength)).code, kNoErr);
    ExpectRefused(named(kvKorvo::kXML_MaxNameLength + 1), kvKorvo::kErr_LimitExceeded);
    const auto attributeNamed = [](size_t length) { return Joined({"<r ", std::string(length, 'n'), "=''/>"}); };
    EXPECT_EQ(Parsed(attributeNamed(kvKorvo::kXML_MaxNameLength)).code, kNoErr);
    ExpectRefused(attributeNamed(kvKorvo::kXML_MaxNameLength + 1), kvKorvo::kErr_LimitExceeded);
    const auto valued = [](size_t length) { return Joined({"<r a='", std::string(length, 'v'), "'/>"}); };
    EXPECT_EQ(Parsed(valued(kvKorvo::kXML_MaxAttributeLength)).code, kNoErr);
    ExpectRefused(valued(kvKorvo::kXML_MaxAttributeLength + 1), kvKorvo::kErr_LimitExceeded);
}

TEST(XMLParse, MeasuresTheWholeUpToTheLimit) {
    const auto ofSize = [](size_t size) { return Joined({"<r>", std::string(size - 7, 't'), "</r>"}); };
    EXPECT_EQ(Parsed(ofSize(kvKorvo::kXML_MaxBytes)).root.GetTextLength(), kvKorvo::kXML_MaxBytes - 7);
    ExpectRefused(ofSize(kvKorvo::kXML_MaxBytes + 1), kvKorvo::kErr_LimitExceeded);
}

TEST(XMLParse, ReadsTextOfTheVeryTreeThatItReplaces) {
    Parsed parsed("<r>&lt;inner/></r>");
    ASSERT_EQ(parsed.root.Parse(parsed.root.GetText(), parsed.root.GetTextLength()), kNoErr);
    EXPECT_STREQ(parsed.root.GetName(), "inner");
}

TEST(XMLParse, ReplacesAnElementInItsPlace) {
    Parsed parsed("<r><a><x/></a><b/></r>");
    ASSERT_EQ(parsed.root.FindChild("a")->Parse("<c><d/></c>", 11), kNoErr);
    EXPECT_EQ(parsed.root, Parsed("<r><c><d/></c><b/></r>").root);
}

TEST(XMLParse, ReadsTheSameInAGermanHost) {
    const kvTest::GermanLocale german;
    ASSERT_TRUE(german.IsActive());
    double value = 0;
    EXPECT_EQ(Parsed("<r>0.5</r>").root.ReadText(value), kvKorvo::KEXMLValue::Found);
    EXPECT_EQ(value, 0.5);
}

} // namespace
