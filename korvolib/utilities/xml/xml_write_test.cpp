#include <korvolib/utilities/xml/xml_element.h>

#include <random>
#include <string>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <tests/support/german_locale.h>

namespace {

using kvKorvo::KCStMemObj;
using kvKorvo::KCXMLElement;

constexpr int32_t kNoErr = kvKorvo::kErr_NoErr;
constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

std::string Written(const KCXMLElement& element) {
    KCStMemObj out;
    EXPECT_EQ(out.Append("old"), kNoErr);
    EXPECT_EQ(element.Write(out), kNoErr);
    const std::string text(out.GetText());
    EXPECT_EQ(text.substr(0, kDeclaration.size()), kDeclaration);
    return text.substr(kDeclaration.size());
}

KCXMLElement Parsed(std::string_view text) {
    KCXMLElement element;
    EXPECT_EQ(element.Parse(text.data(), text.size()), kNoErr) << text;
    return element;
}

void ExpectNotWritten(const KCXMLElement& element, int32_t code) {
    KCStMemObj out;
    EXPECT_EQ(out.Append("old"), kNoErr);
    EXPECT_EQ(element.Write(out), code);
    EXPECT_TRUE(out.IsEmpty());
}

TEST(XMLWrite, IndentsByTwoSpacesALevel) {
    EXPECT_EQ(Written(Parsed("<r a='1'><c><d>text</d></c><e/></r>")), "<r a=\"1\">\n"
                                                                      "  <c>\n"
                                                                      "    <d>text</d>\n"
                                                                      "  </c>\n"
                                                                      "  <e/>\n"
                                                                      "</r>\n");
}

TEST(XMLWrite, PutsTheFirstChildRightBehindAText) {
    EXPECT_EQ(Written(Parsed("<r> text <a/><b/></r>")), "<r> text <a/>\n  <b/>\n</r>\n");
}

TEST(XMLWrite, EscapesWhatWouldReadAsSomethingElse) {
    KCXMLElement element;
    ASSERT_EQ(element.SetName("r"), kNoErr);
    ASSERT_EQ(element.SetAttribute("a", "<&>\"'\t\n\r"), kNoErr);
    ASSERT_EQ(element.SetText("<&>\"'\t\n\r]]>"), kNoErr);
    EXPECT_EQ(Written(element),
              "<r a=\"&lt;&amp;&gt;&quot;'&#9;&#10;&#13;\">&lt;&amp;&gt;\"'\t\n&#13;]]&gt;</r>\n");
    EXPECT_EQ(Parsed(Written(element)), element);
}

TEST(XMLWrite, WritesAPartAsAWhole) {
    const KCXMLElement root = Parsed("<r>t<c><d/></c><e/></r>");
    EXPECT_EQ(Written(*root.FindChild("c")), "<c>\n  <d/>\n</c>\n");
}

TEST(XMLWrite, RefusesAnElementWithoutAName) {
    ExpectNotWritten(KCXMLElement(), kvKorvo::kErr_BadDescription);
    KCXMLElement root = Parsed("<r><c/></r>");
    root.GetFirstChild()->Clear();
    ExpectNotWritten(root, kvKorvo::kErr_BadDescription);
}

TEST(XMLWrite, RefusesWhatWouldNotBeReadAgain) {
    KCXMLElement root = Parsed("<e/>");
    KCXMLElement* at = &root;
    for (size_t depth = 1; depth < kvKorvo::kXML_MaxDepth; ++depth)
        at = at->AddChild("e");
    EXPECT_EQ(Parsed(Written(root)), root);
    ASSERT_NE(at->AddChild("e"), nullptr);
    ExpectNotWritten(root, kvKorvo::kErr_LimitExceeded);
}

TEST(XMLWrite, RefusesTooManyElements) {
    KCXMLElement root = Parsed("<r/>");
    for (size_t count = 1; count < kvKorvo::kXML_MaxElements; ++count)
        ASSERT_NE(root.AddChild("e"), nullptr);
    EXPECT_EQ(Parsed(Written(root)), root);
    ASSERT_NE(root.AddChild("e"), nullptr);
    ExpectNotWritten(root, kvKorvo::kErr_LimitExceeded);
}

TEST(XMLWrite, RefusesATextThatIsTooLong) {
    // What stands around the text: the declaration, both tags and the last line break.
    const size_t around = kDeclaration.size() + 8;
    KCXMLElement root = Parsed("<r/>");
    ASSERT_EQ(root.SetText(std::string(kvKorvo::kXML_MaxBytes - around, 't')), kNoErr);
    EXPECT_EQ(Parsed(Written(root)), root);
    ASSERT_EQ(root.SetText(std::string(kvKorvo::kXML_MaxBytes - around + 1, 't')), kNoErr);
    ExpectNotWritten(root, kvKorvo::kErr_LimitExceeded);
}

TEST(XMLWrite, WritesNumbersTheSameInAGermanHost) {
    const kvTest::GermanLocale german;
    ASSERT_TRUE(german.IsActive());
    KCXMLElement element = Parsed("<r/>");
    ASSERT_EQ(element.SetText(1234.5), kNoErr);
    EXPECT_EQ(Written(element), "<r>1234.5</r>\n");
}

class RandomTree {
  public:
    explicit RandomTree(uint32_t seed) : m_random(seed) {}

    KCXMLElement Make() {
        KCXMLElement root;
        EXPECT_EQ(root.SetName("root"), kNoErr);
        Fill(root, 5);
        return root;
    }

  private:
    void Fill(KCXMLElement& element, size_t levels) {
        for (size_t i = m_random() % 4; i > 0; --i)
            EXPECT_EQ(element.SetAttribute(Pick({"a", "b", "c-d", "_e.f", "g:h"}), Text()), kNoErr);
        if (m_random() % 2 == 0) {
            EXPECT_EQ(element.SetText(Text()), kNoErr);
        }
        for (size_t i = levels == 0 ? 0 : m_random() % 4; i > 0; --i)
            Fill(*element.AddChild(Pick({"x", "y", "z"})), levels - 1);
        if (m_random() % 4 == 0) {
            EXPECT_EQ(element.SetText(Text()), kNoErr);
        }
    }

    const char* Pick(std::initializer_list<const char*> choices) {
        return choices.begin()[m_random() % choices.size()];
    }

    std::string Text() {
        std::string text;
        for (size_t i = m_random() % 6; i > 0; --i)
            text += Pick({" ",    "\n",   "\t",        "\r",   "\r\n",  "<",     ">",        "&",
                          "\"",   "'",    "]]>",       "text", "&amp;", "&#10;", "\xC3\xA4", "\xF0\x9F\x8E\x9B",
                          "\x7F", "<!--", "<![CDATA[", "1e-7"});
        return text;
    }

    std::mt19937 m_random;
};

TEST(XMLWrite, EveryTreeReadsBackAsItWas) {
    for (uint32_t seed = 0; seed < 3000; ++seed) {
        const KCXMLElement tree = RandomTree(seed).Make();
        ASSERT_EQ(Parsed(Written(tree)), tree) << Written(tree);
    }
}

} // namespace
