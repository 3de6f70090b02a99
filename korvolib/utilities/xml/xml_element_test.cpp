#include <korvolib/utilities/xml/xml_element.h>

#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <tests/support/allocation_count.h>

namespace {

using kvKorvo::KCFixedString;
using kvKorvo::KCXMLElement;
using kvKorvo::KEXMLValue;

constexpr int32_t kNoErr = kvKorvo::kErr_NoErr;

KCXMLElement Parsed(std::string_view text) {
    KCXMLElement element;
    EXPECT_EQ(element.Parse(text.data(), text.size()), kNoErr) << text;
    return element;
}

std::vector<std::string> NamesOf(const kvKorvo::KCXMLChildren& children) {
    std::vector<std::string> names;
    for (const KCXMLElement& child : children)
        names.emplace_back(child.GetName());
    return names;
}

TEST(XMLElement, StartsEmpty) {
    const KCXMLElement element;
    EXPECT_TRUE(element.IsEmpty());
    EXPECT_STREQ(element.GetName(), "");
    EXPECT_STREQ(element.GetText(), "");
    EXPECT_EQ(element.GetAttributeCount(), 0u);
    EXPECT_EQ(element.GetChildCount(), 0u);
    EXPECT_EQ(element.GetFirstChild(), nullptr);
    EXPECT_EQ(element.GetNextSibling(), nullptr);
    EXPECT_EQ(element.GetLine(), 0);
}

TEST(XMLElement, ReadsTheExampleOfItsHeader) {
    const KCXMLElement root = Parsed("<Params><Param><Minimum>-3.5</Minimum></Param><Param/></Params>");
    double minimum = 0;
    std::vector<KEXMLValue> found;
    for (const KCXMLElement& param : root.Children("Param"))
        found.push_back(param.ReadChildText("Minimum", minimum));
    EXPECT_EQ(found, (std::vector{KEXMLValue::Found, KEXMLValue::Missing}));
    EXPECT_EQ(minimum, -3.5);
}

TEST(XMLElement, GivesAttributesInTheirOrder) {
    const KCXMLElement element = Parsed("<e z='1' a='two' m=''/>");
    ASSERT_EQ(element.GetAttributeCount(), 3u);
    EXPECT_STREQ(element.GetAttributeName(0), "z");
    EXPECT_STREQ(element.GetAttributeValue(1), "two");
    EXPECT_STREQ(element.GetAttributeName(2), "m");
    EXPECT_STREQ(element.GetAttributeName(3), "");
    EXPECT_STREQ(element.GetAttributeValue(3), "");
}

TEST(XMLElement, TellsAnEmptyAttributeFromAMissingOne) {
    const KCXMLElement element = Parsed("<e a=''/>");
    EXPECT_STREQ(element.GetAttribute("a"), "");
    EXPECT_TRUE(element.HasAttribute("a"));
    EXPECT_EQ(element.GetAttribute("b"), nullptr);
    EXPECT_STREQ(element.GetAttribute("b", "else"), "else");
    EXPECT_EQ(element.GetAttribute(nullptr), nullptr);
    EXPECT_FALSE(element.HasAttribute("A"));
}

TEST(XMLElement, ReadsAttributesOfEveryType) {
    const KCXMLElement element = Parsed("<e d='0.1' i='-7' u='8' b='yes' s='text' bad='x'/>");
    double number = 0;
    int32_t whole = 0;
    uint64_t natural = 0;
    bool flag = false;
    KCFixedString<31> text;
    EXPECT_EQ(element.ReadAttribute("d", number), KEXMLValue::Found);
    EXPECT_EQ(element.ReadAttribute("i", whole), KEXMLValue::Found);
    EXPECT_EQ(element.ReadAttribute("u", natural), KEXMLValue::Found);
    EXPECT_EQ(element.ReadAttribute("b", flag), KEXMLValue::Found);
    EXPECT_EQ(element.ReadAttribute("s", text), KEXMLValue::Found);
    EXPECT_EQ(number, 0.1);
    EXPECT_EQ(whole, -7);
    EXPECT_EQ(natural, 8u);
    EXPECT_TRUE(flag);
    EXPECT_STREQ(text.c_str(), "text");
    EXPECT_EQ(element.ReadAttribute("bad", number), KEXMLValue::Malformed);
    EXPECT_EQ(element.ReadAttribute("none", number), KEXMLValue::Missing);
    EXPECT_EQ(element.ReadAttribute(nullptr, number), KEXMLValue::Missing);
    EXPECT_EQ(number, 0.1);
}

TEST(XMLElement, WalksChildrenInOrderAndByName) {
    const KCXMLElement root = Parsed("<r><a/><b/><a/><c/><b/></r>");
    EXPECT_EQ(root.GetChildCount(), 5u);
    EXPECT_EQ(NamesOf(root.Children()), (std::vector<std::string>{"a", "b", "a", "c", "b"}));
    EXPECT_EQ(NamesOf(root.Children("b")), (std::vector<std::string>{"b", "b"}));
    EXPECT_TRUE(NamesOf(root.Children("d")).empty());
    EXPECT_TRUE(NamesOf(root.Children(nullptr)).empty());
}

TEST(XMLElement, FindsTheFirstChildAndThenTheNextOfAName) {
    const KCXMLElement root = Parsed("<r><a n='1'/><b/><a n='2'/></r>");
    const KCXMLElement* const first = root.FindChild("a");
    ASSERT_NE(first, nullptr);
    EXPECT_STREQ(first->GetAttribute("n"), "1");
    const KCXMLElement* const second = first->FindNextSibling("a");
    ASSERT_NE(second, nullptr);
    EXPECT_STREQ(second->GetAttribute("n"), "2");
    EXPECT_EQ(second->FindNextSibling("a"), nullptr);
    EXPECT_EQ(root.FindChild("r"), nullptr);
    EXPECT_EQ(root.FindChild(nullptr), nullptr);
    EXPECT_EQ(root.FindChild(""), nullptr);
}

TEST(XMLElement, BuildsWhatParsingGives) {
    KCXMLElement root;
    ASSERT_EQ(root.SetName("r"), kNoErr);
    ASSERT_EQ(root.SetAttribute("b", true), kNoErr);
    ASSERT_EQ(root.SetAttribute("n", 7), kNoErr);
    KCXMLElement* const child = root.AddChild("c", 0.1);
    ASSERT_NE(child, nullptr);
    ASSERT_EQ(child->SetAttribute("t", "<&>"), kNoErr);
    ASSERT_NE(root.AddChild("d"), nullptr);
    EXPECT_EQ(root, Parsed("<r b='true' n='7'><c t='&lt;&amp;>'>0.1</c><d/></r>"));
}

TEST(XMLElement, SetAttributeReplacesInPlace) {
    KCXMLElement element = Parsed("<e a='1' b='2'/>");
    ASSERT_EQ(element.SetAttribute("a", 3), kNoErr);
    EXPECT_EQ(element, Parsed("<e a='3' b='2'/>"));
}

TEST(XMLElement, SetAttributeTakesAPartOfItself) {
    KCXMLElement element = Parsed("<e a='abc'>text</e>");
    ASSERT_EQ(element.SetAttribute("a", element.GetAttribute("a") + 1), kNoErr);
    ASSERT_EQ(element.SetText(element.GetText() + 2), kNoErr);
    ASSERT_EQ(element.SetAttribute("b", element.GetAttributeName(0)), kNoErr);
    EXPECT_EQ(element, Parsed("<e a='bc' b='a'>xt</e>"));
}

TEST(XMLElement, RefusedBuildingChangesNothing) {
    KCXMLElement element = Parsed("<e a='1'>text<c/></e>");
    EXPECT_EQ(element.SetName(nullptr), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(element.SetName("1st"), kvKorvo::kErr_MalformedText);
    EXPECT_EQ(element.SetText("\x01"), kvKorvo::kErr_MalformedText);
    EXPECT_EQ(element.SetText(std::numeric_limits<double>::quiet_NaN()), kvKorvo::kErr_BadDescription);
    EXPECT_EQ(element.SetAttribute("a", "\xFF"), kvKorvo::kErr_MalformedText);
    EXPECT_EQ(element.SetAttribute("a b", "x"), kvKorvo::kErr_MalformedText);
    EXPECT_EQ(element.SetAttribute(nullptr, "x"), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(element.AddChild(nullptr), nullptr);
    EXPECT_EQ(element.AddChild("a b"), nullptr);
    EXPECT_EQ(element.AddChild("ok", "\x01"), nullptr);
    EXPECT_EQ(element.AddChild(KCXMLElement()), nullptr);
    EXPECT_EQ(element, Parsed("<e a='1'>text<c/></e>"));
}

TEST(XMLElement, NamesAndValuesEndAtTheirLimits) {
    KCXMLElement element;
    const std::string name(kvKorvo::kXML_MaxNameLength, 'n');
    EXPECT_EQ(element.SetName(name.c_str()), kNoErr);
    EXPECT_EQ(element.SetName(std::string(name).append(1, 'n').c_str()), kvKorvo::kErr_LimitExceeded);
    const std::string value(kvKorvo::kXML_MaxAttributeLength, 'v');
    EXPECT_EQ(element.SetAttribute(name.c_str(), value), kNoErr);
    EXPECT_EQ(element.SetAttribute("b", std::string(value).append(1, 'v')), kvKorvo::kErr_LimitExceeded);
    EXPECT_EQ(element.GetAttributeCount(), 1u);
}

TEST(XMLElement, AttributesEndAtTheirNumber) {
    KCXMLElement element;
    ASSERT_EQ(element.SetName("e"), kNoErr);
    for (size_t i = 0; i < kvKorvo::kXML_MaxAttributes; ++i)
        ASSERT_EQ(element.SetAttribute(std::to_string(i).insert(0, 1, 'a').c_str(), i), kNoErr);
    EXPECT_EQ(element.SetAttribute("more", 1), kvKorvo::kErr_LimitExceeded);
    EXPECT_EQ(element.SetAttribute("a0", "changed"), kNoErr);
    EXPECT_EQ(element.GetAttributeCount(), kvKorvo::kXML_MaxAttributes);
}

TEST(XMLElement, RemovesAttributesAndChildren) {
    KCXMLElement element = Parsed("<e a='1' b='2'><x/><y/><z/></e>");
    EXPECT_TRUE(element.RemoveAttribute("a"));
    EXPECT_FALSE(element.RemoveAttribute("a"));
    EXPECT_FALSE(element.RemoveAttribute(nullptr));
    EXPECT_TRUE(element.RemoveChild(element.FindChild("z")));
    EXPECT_TRUE(element.RemoveChild(element.FindChild("x")));
    EXPECT_NE(element.AddChild("w"), nullptr);
    EXPECT_EQ(NamesOf(element.Children()), (std::vector<std::string>{"y", "w"}));
    EXPECT_EQ(element, Parsed("<e b='2'><y/><w/></e>"));
}

TEST(XMLElement, RemovesNothingThatIsNotItsChild) {
    KCXMLElement element = Parsed("<e><x><y/></x></e>");
    const KCXMLElement* const grandchild = element.FindChild("x")->FindChild("y");
    EXPECT_FALSE(element.RemoveChild(grandchild));
    EXPECT_FALSE(element.RemoveChild(&element));
    EXPECT_FALSE(element.RemoveChild(nullptr));
    EXPECT_EQ(element, Parsed("<e><x><y/></x></e>"));
}

TEST(XMLElement, AChildStaysAtItsAddressWhileSiblingsComeAndGo) {
    KCXMLElement root = Parsed("<r><first/><kept/></r>");
    const KCXMLElement* const kept = root.FindChild("kept");
    for (int i = 0; i < 100; ++i)
        ASSERT_NE(root.AddChild("more"), nullptr);
    ASSERT_TRUE(root.RemoveChild(root.FindChild("first")));
    const KCXMLElement moved(std::move(root));
    EXPECT_EQ(moved.FindChild("kept"), kept);
}

TEST(XMLElement, BlanksBesideChildrenAreLayoutWhereverTheyComeFrom) {
    KCXMLElement element;
    ASSERT_EQ(element.SetName("e"), kNoErr);
    ASSERT_EQ(element.SetText(" \n"), kNoErr);
    EXPECT_STREQ(element.GetText(), " \n");
    ASSERT_NE(element.AddChild("c"), nullptr);
    EXPECT_STREQ(element.GetText(), "");
    ASSERT_EQ(element.SetText("\t"), kNoErr);
    EXPECT_STREQ(element.GetText(), "");
    ASSERT_EQ(element.SetText(" x "), kNoErr);
    EXPECT_STREQ(element.GetText(), " x ");
}

TEST(XMLElement, NeverCopiesUnseen) {
    static_assert(!std::is_copy_constructible_v<KCXMLElement>);
    static_assert(!std::is_copy_assignable_v<KCXMLElement>);
    static_assert(std::is_nothrow_move_constructible_v<KCXMLElement>);
    static_assert(std::is_nothrow_move_assignable_v<KCXMLElement>);
}

TEST(XMLElement, MovesWithAllBelowItAndLeavesAnEmptyOne) {
    KCXMLElement from = Parsed("<r a='1'>t<c/></r>");
    KCXMLElement to = Parsed("<old><gone/></old>");
    to = std::move(from);
    EXPECT_TRUE(from.IsEmpty()); // NOLINT(bugprone-use-after-move): the stated result
    EXPECT_EQ(to, Parsed("<r a='1'>t<c/></r>"));
}

TEST(XMLElement, MovesAChildIntoItsOwnAncestor) {
    KCXMLElement root = Parsed("<r><c><d/></c><e/></r>");
    root = std::move(*root.FindChild("c"));
    EXPECT_EQ(root, Parsed("<c><d/></c>"));
}

TEST(XMLElement, DoesNotMoveIntoAnElementBelowItself) {
    KCXMLElement root = Parsed("<r><c><d/></c></r>");
    KCXMLElement& below = *root.FindChild("c")->FindChild("d");
    below = std::move(root);
    EXPECT_EQ(below.AddChild(std::move(root)), nullptr);
    EXPECT_EQ(root.AddChild(std::move(root)), nullptr);
    KCXMLElement& same = root;
    root = std::move(same);
    EXPECT_EQ(root, Parsed("<r><c><d/></c></r>"));
}

TEST(XMLElement, TakesOverAChildWithAllBelowIt) {
    KCXMLElement root = Parsed("<r/>");
    KCXMLElement branch = Parsed("<b><c/></b>");
    KCXMLElement* const added = root.AddChild(std::move(branch));
    ASSERT_NE(added, nullptr);
    EXPECT_TRUE(branch.IsEmpty()); // NOLINT(bugprone-use-after-move): the stated result
    ASSERT_NE(added->AddChild("d"), nullptr);
    EXPECT_EQ(root, Parsed("<r><b><c/><d/></b></r>"));
}

TEST(XMLElement, CopyFromIsEqualAndApart) {
    KCXMLElement original = Parsed("<r a='1'>t<c><d>x</d><e/></c><f/></r>");
    KCXMLElement copy = Parsed("<old/>");
    ASSERT_EQ(copy.CopyFrom(original), kNoErr);
    EXPECT_EQ(copy, original);
    EXPECT_EQ(copy.FindChild("f")->GetLine(), 1);
    ASSERT_EQ(copy.FindChild("c")->FindChild("d")->SetText("changed"), kNoErr);
    EXPECT_STREQ(original.FindChild("c")->FindChild("d")->GetText(), "x");
}

TEST(XMLElement, CopyFromItselfOrAPartOfItself) {
    KCXMLElement root = Parsed("<r><c><d/></c></r>");
    ASSERT_EQ(root.CopyFrom(root), kNoErr);
    EXPECT_EQ(root, Parsed("<r><c><d/></c></r>"));
    ASSERT_EQ(root.FindChild("c")->CopyFrom(root), kNoErr);
    EXPECT_EQ(root, Parsed("<r><r><c><d/></c></r></r>"));
    ASSERT_EQ(root.CopyFrom(*root.FindChild("r")->FindChild("c")), kNoErr);
    EXPECT_EQ(root, Parsed("<c><d/></c>"));
}

TEST(XMLElement, EqualityLooksAtEverythingButLines) {
    const char* const kText = "<r a='1' b='2'>t<c/><d x='1'/></r>";
    const KCXMLElement element = Parsed(kText);
    EXPECT_EQ(element, Parsed("\n\n<r\na='1'\n b='2'>t<c/>\n<d x='1'/></r>"));
    for (const char* other : {"<q a='1' b='2'>t<c/><d x='1'/></q>", "<r b='2' a='1'>t<c/><d x='1'/></r>",
                              "<r a='1' b='2'>u<c/><d x='1'/></r>", "<r a='1' b='2'>t<d x='1'/><c/></r>",
                              "<r a='1' b='2'>t<c/><d x='2'/></r>", "<r a='1' b='2'>t<c/></r>",
                              "<r a='1' b='2'>t<c/><d x='1'/><e/></r>", "<r a='1' b='2'>t<c><d x='1'/></c></r>"})
        EXPECT_NE(element, Parsed(other)) << other;
}

TEST(XMLElement, EqualityOfPartsStopsAtThem) {
    const KCXMLElement left = Parsed("<r><c><d/></c><x/></r>");
    const KCXMLElement right = Parsed("<r><c><d/></c><y/></r>");
    EXPECT_EQ(*left.FindChild("c"), *right.FindChild("c"));
    EXPECT_NE(left, right);
}

TEST(XMLElement, ClearLeavesItInItsPlace) {
    KCXMLElement root = Parsed("<r><a>x<b/></a><c/></r>");
    KCXMLElement* const first = root.GetFirstChild();
    first->Clear();
    EXPECT_TRUE(first->IsEmpty());
    ASSERT_NE(first->GetNextSibling(), nullptr);
    EXPECT_STREQ(first->GetNextSibling()->GetName(), "c");
}

// Far deeper than any stack holds calls.
KCXMLElement DeepTree(size_t depth) {
    KCXMLElement root;
    EXPECT_EQ(root.SetName("e"), kNoErr);
    KCXMLElement* at = &root;
    for (size_t i = 1; i < depth && at != nullptr; ++i)
        at = at->AddChild("e");
    return root;
}

TEST(XMLElement, ATreeOfAnyDepthIsComparedCopiedAndDestroyed) {
    const KCXMLElement deep = DeepTree(300000);
    KCXMLElement copy;
    ASSERT_EQ(copy.CopyFrom(deep), kNoErr);
    EXPECT_EQ(copy, deep);
    KCXMLElement* at = &copy;
    while (at->GetFirstChild() != nullptr)
        at = at->GetFirstChild();
    ASSERT_EQ(at->SetText("x"), kNoErr);
    EXPECT_NE(copy, deep);
}

} // namespace
