// Comparison, order, hashes.
#include <korvolib/utilities/strings/fixed_string.h>

#include <map>
#include <random>
#include <string>
#include <unordered_map>

#include <gtest/gtest.h>

#include <korvolib/utilities/strings/fixed_string_test_internal.h>

namespace kvKorvoV12_9_0_320 {
namespace {

using kvTest::BlockString;
using String = KCFixedString<31>;

const char* const kNull = nullptr;

TEST(FixedStringCompare, CompareIsExactlyMinusOneZeroOrOne) {
    EXPECT_EQ(String("abc").compare("abd"), -1);
    EXPECT_EQ(String("abc").compare("abc"), 0);
    EXPECT_EQ(String("z").compare("a"), 1);
    EXPECT_EQ(String("abc").compare(KCFixedString<63>("abcd")), -1);
    EXPECT_EQ(String("abc").compare(kNull), 1);
    EXPECT_EQ(String().compare(kNull), 1);
    EXPECT_EQ(String("\xE9").compare("z"), 1);
}

TEST(FixedStringCompare, CompareEndsAtTheFirstNul) {
    String a("aXb");
    String b("aXc");
    a[1] = b[1] = '\0';
    EXPECT_EQ(a.compare(b), 0);
    EXPECT_EQ(a.compare("a"), 0);
    EXPECT_TRUE(a == std::string_view("a"));
    EXPECT_EQ(std::hash<String>()(a), std::hash<String>()(b));
}

TEST(FixedStringCompare, CompareWithoutCaseReturnsTheDifference) {
    EXPECT_EQ(String("HELLO").case_insensitive_compare("hello"), 0);
    EXPECT_EQ(String("abd").case_insensitive_compare("ABA"), 3);
    EXPECT_EQ(String("ab").case_insensitive_compare("AB_"), -'_');
    EXPECT_EQ(String("_").case_insensitive_compare("A"), '_' - 'a');
    EXPECT_EQ(String("\xC4").case_insensitive_compare("\xE4"), 0xC4 - 0xE4);
    EXPECT_EQ(String("a").case_insensitive_compare(KCFixedString<63>("A")), 0);
    EXPECT_EQ(String("a").case_insensitive_compare(kNull), 1);
}

/// Every operator must say what compare() says, with `other` on either side.
template <class Other>
void ExpectOperatorsFollow(int64_t comparison, const KCFixedStringBase& string, const Other& other) {
    EXPECT_EQ(string == other, comparison == 0);
    EXPECT_EQ(other == string, comparison == 0);
    EXPECT_EQ(string != other, comparison != 0);
    EXPECT_EQ(other != string, comparison != 0);
    EXPECT_EQ(string < other, comparison < 0);
    EXPECT_EQ(other<string, comparison> 0);
    EXPECT_EQ(string > other, comparison > 0);
    EXPECT_EQ(other <= string, comparison >= 0);
}

TEST(FixedStringCompare, OperatorsAgreeWithCompare) {
    for (const char* a : {"", "a", "ab", "abc", "b", "B", "\xE9t\xE9", "zz"}) {
        for (const char* b : {"", "a", "ab", "abc", "b", "B", "\xE9t\xE9", "zz"}) {
            const String string(a);
            const int64_t comparison = string.compare(b);
            ExpectOperatorsFollow(comparison, string, b);
            ExpectOperatorsFollow(comparison, string, std::string(b));
            ExpectOperatorsFollow(comparison, string, std::string_view(b));
            ExpectOperatorsFollow(comparison, string, KCFixedString<63>(b));
            ExpectOperatorsFollow(comparison, string, static_cast<const KCFixedStringBase&>(KCFixedString<63>(b)));
        }
    }
}

TEST(FixedStringCompare, NullTextEqualsNothingAndComesFirst) {
    ExpectOperatorsFollow(1, String(), kNull);
    ExpectOperatorsFollow(1, String("a"), kNull);
    ExpectOperatorsFollow(0, String(), std::string_view());
}

TEST(FixedStringCompare, ViewIsComparedWithinItsLength) {
    const kvTest::BlockText block("abcd");
    ExpectOperatorsFollow(0, String("abc"), std::string_view(block.Get(), 3));
    ExpectOperatorsFollow(1, String("abcd"), std::string_view(block.Get(), 3));
    ExpectOperatorsFollow(-1, String("ab"), std::string_view(block.Get(), 3));
    ExpectOperatorsFollow(0, String("ab"), std::string("ab\0cd", 5));
}

TEST(FixedStringCompare, ServesAsAKeyOfMaps) {
    std::map<KCFixedString<127>, int> ordered{{"b", 2}, {"a", 1}, {"c", 3}};
    std::unordered_map<KCFixedString<127>, int> hashed{{"b", 2}, {"a", 1}, {"c", 3}};
    EXPECT_EQ(ordered.begin()->first, "a");
    EXPECT_EQ(ordered["c"], 3);
    EXPECT_EQ(hashed["b"], 2);
    EXPECT_EQ(hashed.count("d"), 0u);
}

TEST(FixedStringCompare, HashDependsOnTheTextAlone) {
    String stale("abcdef");
    stale.resize(3);
    EXPECT_EQ(std::hash<String>()(stale), std::hash<KCFixedString<63>>()(KCFixedString<63>("abc")));
    EXPECT_EQ(std::hash<String>()(stale), std::hash<std::string_view>()("abc"));
    EXPECT_NE(std::hash<String>()(stale), std::hash<String>()(String("abd")));
}

/// Texts that are equal up to a random position, of all lengths round the blocks that are compared at once.
TEST(FixedStringCompare, RandomTextsCompareAsStrcmpDoes) {
    std::mt19937 random(4);
    for (int i = 0; i < 20000; ++i) {
        std::string a(random() % 140, 'x');
        std::string b = a;
        if (!b.empty() && random() % 4 != 0)
            b[random() % b.size()] = static_cast<char>(random() % 256);
        b.resize(b.size() - random() % (b.size() / 8 + 1));
        const int expected = std::strcmp(a.c_str(), b.c_str());
        const int64_t sign = (expected > 0) - (expected < 0);
        BlockString own(a.size() + random() % 3, a.c_str());
        const BlockString other(b.size() + random() % 3, b.c_str());
        ASSERT_EQ(own.compare(other), sign);
        ASSERT_EQ(own.compare(b.c_str()), sign);
        ASSERT_EQ(KCFixedString<255>(a.c_str()).compare(KCFixedString<255>(b.c_str())), sign);
        ASSERT_EQ(KCFixedString<255>(a.c_str()) == KCFixedString<255>(b.c_str()), sign == 0);
        ASSERT_EQ(KCFixedString<140>(a.c_str()).compare(KCFixedString<140>(b.c_str())), sign);
    }
}

TEST(FixedStringCompare, StaleBytesDoNotCount) {
    KCFixedString<127> stale("abcdef");
    stale.resize(3);
    EXPECT_EQ(stale.compare(KCFixedString<127>("abc")), 0);
    EXPECT_EQ(KCFixedString<127>("abc").compare(stale), 0);
}

TEST(FixedStringCompare, FullStringsCompareToTheLastCharacter) {
    const std::string text(31, 'x');
    EXPECT_EQ(String(text.c_str()).compare(String(text.c_str())), 0);
    EXPECT_EQ(String(text.c_str()).compare(String((text.substr(1) + 'y').c_str())), -1);
}

} // namespace
} // namespace kvKorvoV12_9_0_320
