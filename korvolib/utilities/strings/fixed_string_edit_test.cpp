// Editing and searching.
#include <korvolib/utilities/strings/fixed_string.h>

#include <limits>

#include <gtest/gtest.h>

#include <korvolib/utilities/strings/fixed_string_test_internal.h>
#include <tests/support/allocation_count.h>

namespace kvKorvoV12_9_0_320 {
namespace {

using kvTest::BlockString;
using kvTest::Checked;
using String = KCFixedString<31>;

const char* const kNull = nullptr;
constexpr size_t npos = KCFixedStringBase::npos;

// ---- Length

TEST(FixedStringEdit, ClearEmpties) {
    String string("abc");
    EXPECT_EQ(&string.clear(), &string);
    EXPECT_EQ(Checked(string), "");
}

TEST(FixedStringEdit, ResizeDownThenUpShowsTheNulOfTheFirst) {
    String string("hello");
    EXPECT_EQ(string.resize(3), 3u);
    EXPECT_EQ(string.resize(5), 5u);
    EXPECT_EQ(Checked(string), std::string("hel\0o", 5));
    EXPECT_STREQ(string.c_str(), "hel");
}

TEST(FixedStringEdit, ResizeIsCutAtTheCapacity) {
    BlockString string(4, "ab");
    EXPECT_EQ(string.resize(4), 4u);
    EXPECT_EQ(Checked(string), std::string("ab\0\0", 4));
    EXPECT_EQ(string.resize(5), 4u);
    EXPECT_EQ(string.resize(npos), 4u);
    EXPECT_EQ(string.resize(0), 0u);
}

TEST(FixedStringEdit, RepositionEndFindsTheFirstNul) {
    String string("before");
    std::memcpy(string.peek(), "filled by C", 12);
    EXPECT_EQ(Checked(string.reposition_end()), "filled by C");
    string.peek()[3] = '\0';
    EXPECT_EQ(Checked(string.reposition_end()), "fil");
}

TEST(FixedStringEdit, RepositionEndAcceptsABufferFilledToTheCapacity) {
    BlockString string(4);
    std::memcpy(string.peek(), "abcd", 5);
    EXPECT_EQ(Checked(string.reposition_end()), "abcd");
}

TEST(FixedStringEdit, RepositionEndWithoutANulLeavesTheEndTerminated) {
    BlockString string(4, "ab");
    std::memcpy(string.peek(), "vwxyz", 5);
    EXPECT_EQ(Checked(string.reposition_end()), "vw");
}

// ---- Erasing

TEST(FixedStringEdit, EraseWithANegativePositionCountsFromTheEnd) {
    EXPECT_EQ(Checked(String("hello").erase(-2, 5)), "hel");
    EXPECT_EQ(Checked(String("hello").erase(-5, 1)), "ello");
}

TEST(FixedStringEdit, EraseBeyondEitherEndDoesNothing) {
    EXPECT_EQ(Checked(String("hello").erase(-6, 3)), "hello");
    EXPECT_EQ(Checked(String("hello").erase(std::numeric_limits<ptrdiff_t>::min(), 3)), "hello");
    EXPECT_EQ(Checked(String("hello").erase(5, 3)), "hello");
    EXPECT_EQ(Checked(String("hello").erase(std::numeric_limits<ptrdiff_t>::max(), 3)), "hello");
    EXPECT_EQ(Checked(String("hello").erase(1, 0)), "hello");
}

TEST(FixedStringEdit, EraseMovesTheTail) {
    EXPECT_EQ(Checked(String("hello").erase(1, 2)), "hlo");
    EXPECT_EQ(Checked(String("hello").erase(0, npos)), "");
    EXPECT_EQ(Checked(String("hello").erase(4, 1)), "hell");
}

TEST(FixedStringEdit, EraseAllOfTakesOutTheSet) {
    EXPECT_EQ(Checked(String("banana").erase_all_of("an")), "b");
    EXPECT_EQ(Checked(String("banana").erase_all_of("xyz")), "banana");
    EXPECT_EQ(Checked(String("banana").erase_all_of("")), "banana");
    EXPECT_EQ(Checked(String("banana").erase_all_of(kNull)), "banana");
    String self("banana");
    EXPECT_EQ(Checked(self.erase_all_of(self.c_str() + 4)), "b");
}

TEST(FixedStringEdit, EraseAllNotOfKeepsTheSet) {
    EXPECT_EQ(Checked(String("1,200 Hz").erase_all_not_of("0123456789")), "1200");
    EXPECT_EQ(Checked(String("banana").erase_all_not_of("ban")), "banana");
    EXPECT_EQ(Checked(String("banana").erase_all_not_of("")), "");
    EXPECT_EQ(Checked(String("banana").erase_all_not_of(kNull)), "");
    String self("banana");
    EXPECT_EQ(Checked(self.erase_all_not_of(self.c_str() + 4)), "anana");
}

TEST(FixedStringEdit, ErasingNothingWritesNothing) {
    char text[] = "abc";
    struct Bound : KCFixedStringBase {
        explicit Bound(char* buffer) : KCFixedStringBase(buffer, 3) {}
    } string(text);
    EXPECT_EQ(Checked(string.erase_all_of("x").erase_all_not_of("x")), "");
    EXPECT_STREQ(text + 1, "bc");
}

// ---- Replacing

TEST(FixedStringEdit, ReplaceOfACharacterCounts) {
    String string("banana");
    EXPECT_EQ(string.replace('a', 'o'), 3u);
    EXPECT_EQ(Checked(string), "bonono");
    EXPECT_EQ(string.replace('x', 'y'), 0u);
    EXPECT_EQ(Checked(string), "bonono");
}

TEST(FixedStringEdit, ReplaceOfASetCounts) {
    String string("a/b\\c");
    EXPECT_EQ(string.replace("/\\", '_'), 2u);
    EXPECT_EQ(Checked(string), "a_b_c");
    EXPECT_EQ(string.replace(kNull, 'x'), 0u);
    EXPECT_EQ(string.replace("", 'x'), 0u);
    EXPECT_EQ(Checked(string), "a_b_c");
    EXPECT_EQ(string.replace(string.c_str() + 3, 'x'), 3u);
    EXPECT_EQ(Checked(string), "axbxx");
}

TEST(FixedStringEdit, ReplaceByATextGrowsAndShrinks) {
    String string("a&b&c");
    EXPECT_EQ(string.replace('&', " and "), 2u);
    EXPECT_EQ(Checked(string), "a and b and c");
    EXPECT_EQ(string.replace(' ', "_"), 4u);
    EXPECT_EQ(Checked(string), "a_and_b_and_c");
    EXPECT_EQ(string.replace('_', kNull), 4u);
    EXPECT_EQ(Checked(string), "aandbandc");
    EXPECT_EQ(string.replace('a', ""), 3u);
    EXPECT_EQ(Checked(string), "ndbndc");
    EXPECT_EQ(string.replace('x', "yz"), 0u);
}

TEST(FixedStringEdit, ReplaceByATextIsCutAndCountsAllOccurrences) {
    KCFixedString<5> string("a&b&");
    EXPECT_EQ(string.replace('&', "123"), 2u);
    EXPECT_EQ(Checked(string), "a123b");
    KCFixedString<5> inside("&a&&");
    EXPECT_EQ(inside.replace('&', "12345678"), 3u);
    EXPECT_EQ(Checked(inside), "12345");
}

TEST(FixedStringEdit, ReplaceByItsOwnTextTakesItAsItWas) {
    String string("a-b-");
    EXPECT_EQ(string.replace('-', string.c_str()), 2u);
    EXPECT_EQ(Checked(string), "aa-b-ba-b-");
    String tail("-xy");
    EXPECT_EQ(tail.replace('x', tail.c_str() + 1), 1u);
    EXPECT_EQ(Checked(tail), "-xyy");
}

TEST(FixedStringEdit, ReplaceByStaleBytesBehindTheEndTakesThemAsTheyWere) {
    String string("a-bcdeXYZ");
    string.resize(5);
    EXPECT_EQ(string.replace('-', string.c_str() + 6), 1u);
    EXPECT_EQ(Checked(string), "aXYZbcd");
}

TEST(FixedStringEdit, ReplaceByATextThatRunsIntoTheStringTakesItAsItWas) {
    char bytes[16] = "ab";
    struct Bound : KCFixedStringBase {
        explicit Bound(char* buffer) : KCFixedStringBase(buffer, 13) {}
    } string(bytes + 2);
    string << "-c";
    EXPECT_EQ(string.replace('-', bytes), 1u);
    EXPECT_EQ(Checked(string), "ab-cc");
}

TEST(FixedStringEdit, ReplaceByAForeignTextTakesNothingFromTheHeap) {
    String string("a-b-");
    const kvTest::AllocationCount count;
    string.replace('-', "long");
    EXPECT_EQ(count.Taken(), 0u);
}

TEST(FixedStringEdit, ReplaceAtEveryCapacityAgreesWithTheObviousWay) {
    const std::string text = "-a--b-";
    for (size_t capacity = 0; capacity < 24; ++capacity) {
        for (const char* to : {"", "1", "12", "123", "12345678901234567890123456789"}) {
            BlockString string(capacity, text.c_str());
            std::string expected;
            for (const char c : text.substr(0, capacity))
                expected += c == '-' ? std::string(to) : std::string(1, c);
            string.replace('-', kvTest::BlockText(to).Get());
            ASSERT_EQ(Checked(string), expected.substr(0, capacity)) << capacity << to;
        }
    }
}

TEST(FixedStringEdit, ReverseTurnsTheTextOrARange) {
    String string("hello");
    EXPECT_EQ(Checked(string.reverse()), "olleh");
    EXPECT_EQ(Checked(string.reverse(string.begin() + 1, string.begin() + 4)), "oellh");
    EXPECT_EQ(Checked(string.reverse(string.begin() + 4, string.begin() + 1)), "oellh");
    EXPECT_EQ(Checked(string.reverse(nullptr, nullptr)), "oellh");
    EXPECT_EQ(Checked(String().reverse()), "");
}

// ---- Substrings

TEST(FixedStringEdit, SubstrWithANegativeCountLeavesTheEndOff) {
    EXPECT_EQ(Checked(String("hello").substr(1, -1)), "ell");
    EXPECT_EQ(Checked(String("hello").substr(1, -4)), "");
    EXPECT_EQ(Checked(String("hello").substr(1, -5)), "");
    EXPECT_EQ(Checked(String("hello").substr(1, std::numeric_limits<ptrdiff_t>::min())), "");
}

TEST(FixedStringEdit, SubstrIsCutToTheText) {
    EXPECT_EQ(Checked(String("hello").substr(10, 3)), "");
    EXPECT_EQ(Checked(String("hello").substr(npos, 3)), "");
    EXPECT_EQ(Checked(String("hello").substr(1, 3)), "ell");
    EXPECT_EQ(Checked(String("hello").substr(3, 9)), "lo");
    EXPECT_EQ(Checked(String("hello").substr(0, 0)), "");
    EXPECT_EQ(Checked(String("hello").substr(0, std::numeric_limits<ptrdiff_t>::max())), "hello");
}

// ---- Searching

TEST(FixedStringSearch, FindOfACharacter) {
    EXPECT_EQ(String("hello").find('l'), 2u);
    EXPECT_EQ(String("hello").find('x'), npos);
    EXPECT_EQ(String("hello").find('\0'), npos);
    EXPECT_EQ(String().find('x'), npos);
    EXPECT_EQ(String("hello").rfind('l'), 3u);
    EXPECT_EQ(String("hello").rfind('h'), 0u);
    EXPECT_EQ(String("hello").rfind('x'), npos);
    EXPECT_EQ(String().rfind('x'), npos);
}

TEST(FixedStringSearch, FindOfATextFromAPosition) {
    const String string("ababab");
    EXPECT_EQ(string.find("ab"), 0u);
    EXPECT_EQ(string.find("ab", 1), 2u);
    EXPECT_EQ(string.find("ab", 4), 4u);
    EXPECT_EQ(string.find("ab", 5), npos);
    EXPECT_EQ(string.find("b", 6), npos);
    EXPECT_EQ(string.find("b", npos), npos);
    EXPECT_EQ(string.find("abababa"), npos);
}

TEST(FixedStringSearch, TheEmptyTextIsFoundNowhere) {
    EXPECT_EQ(String("abc").find(""), npos);
    EXPECT_EQ(String("abc").find(kNull, 0), npos);
    EXPECT_EQ(String("abc").find_case_insensitive(""), npos);
    EXPECT_EQ(String("abc").find_case_insensitive(kNull), npos);
    EXPECT_EQ(String("abc").rfind(""), npos);
    EXPECT_EQ(String("abc").rfind(kNull), npos);
}

TEST(FixedStringSearch, FindGoesOnBehindANul) {
    String string("hello world");
    string[3] = string[7] = '\0';
    EXPECT_EQ(string.find("o "), 4u);
    EXPECT_EQ(string.find("ld", 2), 9u);
    EXPECT_EQ(string.find("hello"), npos);
    EXPECT_EQ(string.find('\0'), 3u);
    EXPECT_EQ(string.rfind("ld"), 9u);
}

TEST(FixedStringSearch, FindDoesNotSeeStaleBytes) {
    String string("abcdef");
    string.resize(3);
    EXPECT_EQ(string.find("ef"), npos);
    EXPECT_EQ(string.find('e'), npos);
    EXPECT_EQ(string.find("c"), 2u);
    EXPECT_EQ(string.rfind("ef"), npos);
}

TEST(FixedStringSearch, FindWithoutCase) {
    const String string("Hello WORLD");
    EXPECT_EQ(string.find_case_insensitive("world"), 6u);
    EXPECT_EQ(string.find_case_insensitive("L", 4), 9u);
    EXPECT_EQ(string.find_case_insensitive("WORLD", 7), npos);
    EXPECT_EQ(string.find_case_insensitive("hello world!"), npos);
    EXPECT_EQ(string.find_case_insensitive("h", 11), npos);
    EXPECT_EQ(String("\xC4").find_case_insensitive("\xE4"), npos);
}

TEST(FixedStringSearch, RfindOfATextFindsTheLast) {
    EXPECT_EQ(String("ababab").rfind("ab"), 4u);
    EXPECT_EQ(String("aaaa").rfind("aa"), 2u);
    EXPECT_EQ(String("ab").rfind("ab"), 0u);
    EXPECT_EQ(String("ab").rfind("abc"), npos);
    EXPECT_EQ(String("ab").rfind("x"), npos);
}

TEST(FixedStringSearch, FindFirstOfASet) {
    const String string("hello");
    EXPECT_EQ(string.find_first_of("ol"), 2u);
    EXPECT_EQ(string.find_first_of("ol", 4), 4u);
    EXPECT_EQ(string.find_first_of("h", 1), npos);
    EXPECT_EQ(string.find_first_of("h", 5), npos);
    EXPECT_EQ(string.find_first_of(kNull), npos);
    EXPECT_EQ(string.find_first_not_of("he"), 2u);
    EXPECT_EQ(string.find_first_not_of("helo"), npos);
    EXPECT_EQ(string.find_first_not_of(kNull, 1), 1u);
    EXPECT_EQ(string.find_first_not_of("", 5), npos);
}

TEST(FixedStringSearch, FindLastOfRunsForwardFromThePosition) {
    const String string("hello");
    EXPECT_EQ(string.find_last_of("l", 0), 3u);
    EXPECT_EQ(string.find_last_of("l"), 3u);
    EXPECT_EQ(string.find_last_of("h", 1), npos);
    EXPECT_EQ(string.find_last_of("l", 4), npos);
    EXPECT_EQ(string.find_last_of("o", 5), npos);
    EXPECT_EQ(string.find_last_of(kNull), npos);
    EXPECT_EQ(string.find_last_not_of("lo"), 1u);
    EXPECT_EQ(string.find_last_not_of("lo", 2), npos);
    EXPECT_EQ(string.find_last_not_of(kNull), 4u);
    EXPECT_EQ(string.find_last_not_of("", 5), npos);
}

TEST(FixedStringSearch, BeginsAndEndsWithTheEmptyText) {
    EXPECT_TRUE(String("hello").begins_with(""));
    EXPECT_TRUE(String("hello").ends_with(""));
    EXPECT_TRUE(String().begins_with(""));
    EXPECT_TRUE(String().ends_with(""));
    EXPECT_TRUE(String("hello").begins_with(kNull));
    EXPECT_TRUE(String("hello").ends_with(kNull));
}

TEST(FixedStringSearch, BeginsAndEndsWith) {
    EXPECT_TRUE(String("hello").begins_with("he"));
    EXPECT_TRUE(String("hello").begins_with("hello"));
    EXPECT_FALSE(String("hello").begins_with("el"));
    EXPECT_TRUE(String("hello").ends_with("llo"));
    EXPECT_TRUE(String("hello").ends_with("hello"));
    EXPECT_FALSE(String("hello").ends_with("ll"));
}

TEST(FixedStringSearch, NoTextEndsWithALongerOne) {
    EXPECT_FALSE(String("hello").ends_with("hello!"));
    EXPECT_FALSE(String("hello").ends_with("!hello"));
    EXPECT_FALSE(String().ends_with("x"));
    EXPECT_FALSE(String("hello").begins_with("hello!"));
}

} // namespace
} // namespace kvKorvoV12_9_0_320
