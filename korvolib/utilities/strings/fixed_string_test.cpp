// Construction, assignment, appending, insertion and access.
#include <korvolib/utilities/strings/fixed_string.h>

#include <cstdlib>
#include <iomanip>
#include <sstream>
#include <type_traits>

#include <gtest/gtest.h>

#include <korvolib/utilities/four_cc.h>
#include <korvolib/utilities/strings/fixed_string_test_internal.h>
#include <tests/support/allocation_count.h>

namespace kvKorvoV12_9_0_320 {
namespace {

using kvTest::BlockString;
using kvTest::Checked;
using kvTest::Unbound;
using String = KCFixedString<31>;

const char* const kNull = nullptr;

bool IsZeroBehindTheText(const KCFixedStringBase& string) {
    for (size_t i = string.size(); i <= string.capacity(); ++i)
        if (string[i] != '\0')
            return false;
    return true;
}

// ---- Layout

static_assert(sizeof(KCFixedStringBase) == 24);
static_assert(!std::is_polymorphic_v<KCFixedString<127>>);
static_assert(sizeof(KCFixedString<127>) == 24 + 128);
static_assert(!std::is_copy_constructible_v<KCFixedStringBase>);
static_assert(!std::is_destructible_v<KCFixedStringBase>);
static_assert(std::is_convertible_v<const char*, String>);
static_assert(!std::is_convertible_v<String, bool>);
static_assert(KCFixedStringBase::npos == 0xFFFFFFFFFFFFFFFFull);

TEST(FixedString, BaseHoldsBeginThenCapacityThenEnd) {
    String string("abc");
    struct {
        char* begin;
        uint64_t capacity;
        char* end;
    } fields;
    const void* base = static_cast<const KCFixedStringBase*>(&string);
    std::memcpy(static_cast<void*>(&fields), base, sizeof fields);
    EXPECT_EQ(fields.begin, string.begin());
    EXPECT_EQ(fields.capacity, 31u);
    EXPECT_EQ(fields.end, string.end());
}

// ---- Construction

TEST(FixedString, IsEmptyAndZeroWhenNew) {
    const String string;
    EXPECT_EQ(Checked(string), "");
    EXPECT_TRUE(IsZeroBehindTheText(string));
}

TEST(FixedString, ConstructionFromTextCutsAndZeroesTheRest) {
    EXPECT_EQ(Checked(KCFixedString<4>("abcdef")), "abcd");
    EXPECT_EQ(Checked(KCFixedString<4>("ab")), "ab");
    EXPECT_TRUE(IsZeroBehindTheText(KCFixedString<4>("ab")));
    EXPECT_EQ(Checked(String(kNull)), "");
}

TEST(FixedString, ConstructionFromTextAndCountStopsAtNul) {
    EXPECT_EQ(Checked(String("abcdef", size_t{3})), "abc");
    EXPECT_EQ(Checked(String("abcdef", 3)), "abc");
    EXPECT_EQ(Checked(String("ab\0cd", 5)), "ab");
    EXPECT_EQ(Checked(String("abc", 0)), "");
    EXPECT_EQ(Checked(String(kNull, size_t{3})), "");
    EXPECT_EQ(Checked(KCFixedString<4>("abcdef", KCFixedStringBase::npos)), "abcd");
}

TEST(FixedString, ConstructionFromTwoTextsConcatenates) {
    EXPECT_EQ(Checked(String("ab", "cd")), "abcd");
    EXPECT_EQ(Checked(KCFixedString<3>("ab", "cd")), "abc");
    EXPECT_EQ(Checked(String(kNull, "cd")), "cd");
    EXPECT_EQ(Checked(String("ab", kNull)), "ab");
    EXPECT_EQ(Checked(String(kNull, kNull)), "");
}

TEST(FixedString, TwoPointersIntoOneTextAreNotARange) {
    const char* text = "abcd";
    EXPECT_EQ(Checked(String(text, text + 2)), "abcdcd");
}

TEST(FixedString, ConstructionFromStringAndTextConcatenates) {
    EXPECT_EQ(Checked(String(KCFixedString<63>("ab"), "cd")), "abcd");
    EXPECT_EQ(Checked(String(String("ab"), "cd")), "abcd");
    EXPECT_EQ(Checked(String(String("ab"), kNull)), "ab");
}

TEST(FixedString, ConstructionFromCharacterRepeatsIt) {
    EXPECT_EQ(Checked(String('x', 3)), "xxx");
    EXPECT_EQ(Checked(KCFixedString<2>('x', 3)), "xx");
    EXPECT_EQ(Checked(String('x', 0)), "");
}

TEST(FixedString, CopyTakesTheCharactersAndNotThePointers) {
    String string("abc");
    const String copy(string);
    string = "changed";
    EXPECT_EQ(Checked(copy), "abc");
    EXPECT_NE(copy.data(), string.data());
    EXPECT_TRUE(IsZeroBehindTheText(copy));
}

TEST(FixedString, CopyDoesNotBringStaleBytesAlong) {
    String string("abcdef");
    string.resize(2);
    const String copy(string);
    EXPECT_EQ(Checked(copy), "ab");
    EXPECT_TRUE(IsZeroBehindTheText(copy));
}

TEST(FixedString, CopyOfEveryLengthIsTheTextAndZeros) {
    for (size_t length = 0; length <= 127; ++length) {
        const std::string text(length, 'x');
        KCFixedString<127> source(std::string(127, 'z').c_str());
        source = text.c_str();
        const KCFixedString<127> copy(source);
        ASSERT_EQ(Checked(copy), text);
        ASSERT_TRUE(IsZeroBehindTheText(copy));
    }
}

TEST(FixedString, AssignmentOfEveryLengthLeavesTheBytesBehindIt) {
    for (size_t length = 0; length <= 127; ++length) {
        KCFixedString<127> target(std::string(127, 'z').c_str());
        KCFixedString<127> source(std::string(127, 'y').c_str());
        source = std::string(length, 'x').c_str();
        target = source;
        ASSERT_EQ(Checked(target), std::string(length, 'x'));
        for (size_t i = length + 1; i < 127; ++i)
            ASSERT_EQ(target[i], 'z');
    }
}

TEST(FixedString, OverwrittenTerminatorIsRestoredInCopies) {
    String source(std::string(31, 'x').c_str());
    source[31] = 'x';
    const String copy(source);
    String assigned;
    assigned = source;
    source[31] = '\0';
    EXPECT_EQ(Checked(copy), std::string(31, 'x'));
    EXPECT_EQ(Checked(assigned), std::string(31, 'x'));
}

TEST(FixedString, MoveCopiesAndLeavesTheSource) {
    String string("abc");
    const String moved(std::move(string));
    EXPECT_EQ(Checked(moved), "abc");
    EXPECT_STREQ(string.c_str(), "abc"); // NOLINT(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
}

TEST(FixedString, CopyFromAnotherCapacityCuts) {
    const KCFixedString<63> longer("abcdef");
    EXPECT_EQ(Checked(KCFixedString<4>(longer)), "abcd");
    EXPECT_EQ(Checked(KCFixedString<63>(KCFixedString<4>("abcd"))), "abcd");
}

TEST(FixedString, EveryCapacityInUseHoldsExactlyThatMany) {
    const std::string text(100001, 'x');
    EXPECT_EQ(KCFixedString<3>(text.c_str()).size(), 3u);
    EXPECT_EQ(KCFixedString<127>(text.c_str()).size(), 127u);
    EXPECT_EQ(KCFixedString<2047>(text.c_str()).size(), 2047u);
    const auto large = std::make_unique<KCFixedString<100000>>(text.c_str());
    EXPECT_EQ(large->size(), 100000u);
    EXPECT_EQ(*large->end(), '\0');
}

TEST(FixedString, CapacityZeroIsLegal) {
    KCFixedString<0> string("abc");
    string << "abc" << 'c' << 12 << true << 0.5;
    string.append_uint(7, 2).append_hex_binary(reinterpret_cast<const unsigned char*>("a"), 1).append('c', 3);
    EXPECT_EQ(string.resize(3), 0u);
    EXPECT_EQ(Checked(string.clear().reposition_end().erase(0, 1).reverse()), "");
    EXPECT_EQ(string[0], '\0');
    EXPECT_EQ(string.find('a'), KCFixedStringBase::npos);
}

TEST(FixedString, BindingMakesTheEmptyTextAndTouchesOneByte) {
    char buffer[4] = {'a', 'b', 'c', 'd'};
    struct Bound : KCFixedStringBase {
        explicit Bound(char* bytes) : KCFixedStringBase(bytes, 3) {}
    } string(buffer);
    EXPECT_EQ(Checked(string), "");
    EXPECT_EQ(string.capacity(), 3u);
    EXPECT_EQ(std::string(buffer + 1, 3), "bcd");
}

TEST(FixedString, NullBufferIsAStringWithoutCapacity) {
    Unbound string;
    string << "abc" << 'c' << -1 << 0.5;
    string = "abc";
    string.clear().reposition_end().erase(-1, 3).erase_all_of("a").reverse();
    EXPECT_EQ(string.capacity(), 0u);
    EXPECT_TRUE(string.empty());
    EXPECT_EQ(string.resize(4), 0u);
    EXPECT_EQ(string[0], '\0');
    EXPECT_EQ(string.replace('a', "bc") + string.replace('a', 'b') + string.replace("a", 'b'), 0u);
    EXPECT_EQ(string.find("a"), KCFixedStringBase::npos);
    EXPECT_EQ(string.rfind('a'), KCFixedStringBase::npos);
    EXPECT_TRUE(string.begins_with("") && string.ends_with(""));
    EXPECT_EQ(string.compare(""), 0);
    EXPECT_EQ(String("a").compare(string), 1);
    EXPECT_EQ(String("a").case_insensitive_compare(string), 1);
    EXPECT_EQ(Checked(String(string)), "");
    EXPECT_EQ(std::hash<KCFixedStringBase>()(string), std::hash<String>()(String()));
    int number = 5;
    string >> number;
    EXPECT_EQ(number, 0);
}

TEST(FixedString, NullBufferReadsAndOrdersAsTheEmptyText) {
    Unbound string;
    char buffer[] = "*";
    string.copy_to_buffer(sizeof buffer, buffer);
    EXPECT_STREQ(buffer, "");
    std::ostringstream stream;
    stream << string;
    EXPECT_EQ(stream.str(), "");
    EXPECT_TRUE(string < String("a") && string < std::string_view("a") && string == std::string_view());
    EXPECT_EQ(string.compare(string), 1);
    EXPECT_EQ(string.case_insensitive_compare("a"), -'a');
    EXPECT_EQ(string.find_case_insensitive("a"), KCFixedStringBase::npos);
    EXPECT_EQ(string.find_last_not_of(""), KCFixedStringBase::npos);
    double number = 5;
    bool truth = true;
    string >> number >> truth;
    EXPECT_EQ(number, 0.0);
    EXPECT_TRUE(truth);
}

// ---- Assignment

TEST(FixedString, AssignmentReplacesTheText) {
    String string("before");
    string = "after";
    EXPECT_EQ(Checked(string), "after");
    string = 'c';
    EXPECT_EQ(Checked(string), "c");
    string = KCFixedString<63>("other capacity");
    EXPECT_EQ(Checked(string), "other capacity");
    string = String("same capacity");
    EXPECT_EQ(Checked(string), "same capacity");
}

TEST(FixedString, AssignmentCutsAtTheCapacity) {
    KCFixedString<4> string;
    string = "abcdef";
    EXPECT_EQ(Checked(string), "abcd");
    string = KCFixedString<63>("uvwxyz");
    EXPECT_EQ(Checked(string), "uvwx");
    EXPECT_EQ(Checked(string.assign("0123456", 6)), "0123");
}

TEST(FixedString, AssignmentOfNullEmpties) {
    String string("abc");
    string = kNull;
    EXPECT_EQ(Checked(string), "");
    EXPECT_EQ(Checked((string = "abc").assign(kNull)), "");
    EXPECT_EQ(Checked((string = "abc").assign(kNull, size_t{3})), "");
    EXPECT_EQ(Checked((string = "abc").assign(kNull, kNull)), "");
    EXPECT_EQ(Checked(string = '\0'), "");
}

TEST(FixedString, AssignTakesACountOrARange) {
    String string;
    const char* text = "abc\0def";
    EXPECT_EQ(Checked(string.assign(text, 2)), "ab");
    EXPECT_EQ(Checked(string.assign(text, 0)), "");
    EXPECT_EQ(Checked(string.assign(text, 7)), "abc");
    EXPECT_EQ(Checked(string.assign(text + 1, text + 3)), "bc");
    EXPECT_EQ(Checked(string.assign(text, text + 7)), "abc");
    EXPECT_EQ(Checked(string.assign(text + 3, text + 1)), "");
    EXPECT_EQ(Checked(string.assign(text + 1, text + 1)), "");
}

TEST(FixedString, AssignmentToItselfChangesNothing) {
    String string("abc");
    const String& self = string;
    string = self;
    EXPECT_EQ(Checked(string), "abc");
    string = string.c_str();
    EXPECT_EQ(Checked(string), "abc");
}

TEST(FixedString, AssignmentOfAPartOfItselfTakesTheTextAsItWas) {
    String string("abcdef");
    string = string.c_str() + 2;
    EXPECT_EQ(Checked(string), "cdef");
    string.assign(string.c_str() + 1, 2);
    EXPECT_EQ(Checked(string), "de");
    string.assign(string.begin() + 1, string.end());
    EXPECT_EQ(Checked(string), "e");
}

TEST(FixedString, CopyOfATextWithANulEndsThere) {
    String string("hello");
    string.resize(3);
    string.resize(5);
    EXPECT_EQ(Checked(String(string)), "hel");
    EXPECT_EQ(Checked(String() << string), "hel");
}

// ---- Appending

TEST(FixedString, AppendPastCapacityKeepsTheFirstCharacters) {
    KCFixedString<4> string;
    string.append("abcdef");
    EXPECT_EQ(Checked(string), "abcd");
    EXPECT_EQ(string.size(), 4u);
    EXPECT_EQ(string.c_str()[4], '\0');
    EXPECT_EQ(Checked(string.append("x")), "abcd");
}

TEST(FixedString, AppendTakesACountOrARange) {
    const char* text = "abc\0def";
    EXPECT_EQ(Checked(String("-").append(text, 2)), "-ab");
    EXPECT_EQ(Checked(String("-").append(text, 0)), "-");
    EXPECT_EQ(Checked(String("-").append(text, 7)), "-abc");
    EXPECT_EQ(Checked(String("-").append(text + 1, text + 3)), "-bc");
    EXPECT_EQ(Checked(String("-").append(text + 3, text + 1)), "-");
    EXPECT_EQ(Checked(KCFixedString<3>("-").append(text, text + 3)), "-ab");
}

TEST(FixedString, AppendOfNullAddsNothing) {
    String string("abc");
    string.append(kNull).append(kNull, size_t{5}).append(kNull, kNull).append(kNull, "x");
    EXPECT_EQ(Checked(string << kNull << nullptr), "abc");
}

TEST(FixedString, AppendOfACharacterRepeatsItUpToTheCapacity) {
    EXPECT_EQ(Checked(KCFixedString<4>("a").append('x', 2)), "axx");
    EXPECT_EQ(Checked(KCFixedString<4>("a").append('x', 9)), "axxx");
    EXPECT_EQ(Checked(KCFixedString<4>("a").append('x', 0)), "a");
    EXPECT_EQ(Checked(KCFixedString<4>("a").append('\0', 2)), "a");
}

TEST(FixedString, AppendReadsNoMoreThanThereIsRoomFor) {
    const std::unique_ptr<char[]> unterminated(new char[3]{'x', 'y', 'z'});
    BlockString string(3);
    string.append(unterminated.get());
    EXPECT_EQ(Checked(string), "xyz");
    EXPECT_EQ(Checked(string.assign(unterminated.get())), "xyz");
    EXPECT_EQ(Checked(KCFixedString<3>(unterminated.get())), "xyz");
}

TEST(FixedString, AppendToItselfDoubles) {
    String string("abc");
    string << string;
    EXPECT_EQ(Checked(string), "abcabc");
    string.append(string.c_str() + 4);
    EXPECT_EQ(Checked(string), "abcabcbc");
    string << std::string_view(string.c_str() + 2, 2);
    EXPECT_EQ(Checked(string), "abcabcbcca");
    KCFixedString<10> cut("abcdefg");
    EXPECT_EQ(Checked(cut << cut), "abcdefgabc");
    KCFixedString<100> large('x', 40);
    EXPECT_EQ((large << large).size(), 80u);
}

TEST(FixedString, AppendAtEveryCapacityStaysInsideItsBlock) {
    const std::string text = "0123456789abcdefghijklmnopqrstuvwxyz";
    for (size_t capacity = 0; capacity <= text.size() + 1; ++capacity) {
        for (size_t start = 0; start <= 3; ++start) {
            BlockString string(capacity, text.substr(0, start).c_str());
            string.append(kvTest::BlockText(text).Get());
            ASSERT_EQ(Checked(string), (text.substr(0, start) + text).substr(0, capacity));
        }
    }
}

TEST(FixedString, AppendTouchesOnlyTheTextAndItsTerminator) {
    BlockString string(8, "abcdefgh");
    string.clear();
    string.append("xy");
    EXPECT_EQ(std::string(string.data(), 9), std::string("xy\0defgh\0", 9));
    string.clear();
    EXPECT_EQ(std::string(string.data(), 9), std::string("\0y\0defgh\0", 9));
}

TEST(FixedString, AppendHexBinaryWalksFromTheLastByteToTheFirst) {
    const unsigned char bytes[] = {0x01, 0x02};
    EXPECT_EQ(Checked(String().append_hex_binary(bytes, 2)), "0201");
    const uint32_t number = 0xDEADBEEF;
    EXPECT_EQ(Checked(String().append_hex_binary(reinterpret_cast<const unsigned char*>(&number), 4)), "DEADBEEF");
    EXPECT_EQ(Checked(String("x").append_hex_binary(nullptr, 4)), "x");
    EXPECT_EQ(Checked(String("x").append_hex_binary(bytes, 0)), "x");
    String self("AB");
    self.append_hex_binary(reinterpret_cast<const unsigned char*>(self.data()), 3);
    EXPECT_EQ(Checked(self), "AB004241");
}

TEST(FixedString, AppendHexBinaryCutsEachDigit) {
    const unsigned char bytes[] = {0x12, 0xAB};
    EXPECT_EQ(Checked(KCFixedString<1>().append_hex_binary(bytes, 2)), "A");
    EXPECT_EQ(Checked(KCFixedString<3>().append_hex_binary(bytes, 2)), "AB1");
}

TEST(FixedString, AppendRandomCharsFollowsRand) {
    const char* chars = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    std::srand(7);
    std::string expected;
    for (int i = 0; i < 20; ++i)
        expected += chars[std::rand() % 62]; // NOLINT(cert-msc30-c, cert-msc50-cpp)
    std::srand(7);
    EXPECT_EQ(Checked(String().append_random_chars(20)), expected);
    EXPECT_EQ(KCFixedString<5>("abc").append_random_chars(20).size(), 5u);
    EXPECT_EQ(Checked(String("abc").append_random_chars(0)), "abc");
}

TEST(FixedString, AppendRandomCharsDrawsOnlyWhatItAppends) {
    std::srand(7);
    (void)std::rand();
    (void)std::rand();
    const int third = std::rand();
    std::srand(7);
    KCFixedString<2>().append_random_chars(9);
    EXPECT_EQ(std::rand(), third);
}

// ---- Insertion of what is no number

TEST(FixedString, InsertionOfTexts) {
    String string;
    string << "ab" << KCFixedString<7>("cd") << 'e' << std::string("fg") << std::string_view("hij", 2) << true
           << false;
    EXPECT_EQ(Checked(string), "abcdefghitruefalse");
    EXPECT_EQ(Checked(String() << '\0'), "");
}

TEST(FixedString, InsertionOfAStreamTakesAllItHolds) {
    std::stringstream stream;
    stream << "one two";
    std::string word;
    stream >> word;
    String string("[");
    string << stream << "]";
    EXPECT_EQ(Checked(string), "[one two]");
}

TEST(FixedString, InsertionOfAFourCharacterCode) {
    String string;
    string << KCFourCC("XPst") << KCFourCC('a', '\0', 'b', '\0');
    EXPECT_EQ(Checked(string), "XPstab");
}

TEST(FixedString, PointersInsertTheirAddressAndNeverATruth) {
    String string;
    int number = 0;
    string << static_cast<const void*>(nullptr) << ' ' << reinterpret_cast<const void*>(uintptr_t{0x7F00ABCD})
           << ' ' << &number;
    String expected("0x0 0x7F00ABCD 0x");
    expected.append_uint(reinterpret_cast<uintptr_t>(&number), 16);
    EXPECT_EQ(Checked(string), Checked(expected));
    EXPECT_EQ(Checked(String() << &number).substr(0, 2), "0x");
    char text[] = "writable";
    EXPECT_EQ(Checked(String() << text), "writable");
}

template <class Value>
concept CanBeInserted = requires(KCFixedStringBase& string, Value value) {
    string << value;
};
static_assert(CanBeInserted<int*> && CanBeInserted<bool> && CanBeInserted<const char*>);
enum class Kind { First };
static_assert(!CanBeInserted<Kind> && !CanBeInserted<long double>);
static_assert(!CanBeInserted<void (*)()> && !CanBeInserted<volatile int*> && !CanBeInserted<int String::*>);

TEST(FixedString, StandardStreamGetsTheCharacters) {
    std::ostringstream stream;
    stream << String("abc") << '|';
    stream.width(5);
    stream << KCFixedString<3>("de") << '|' << KCFixedString<0>();
    EXPECT_EQ(stream.str(), "abc|   de|");
    stream.str("");
    stream << std::left << std::setfill('.') << std::setw(4) << String("fg") << std::setw(1) << String("hi");
    EXPECT_EQ(stream.str(), "fg..hi");
}

// ---- Access

TEST(FixedString, AccessNamesTheSameBuffer) {
    String string("abc");
    const String& constant = string;
    EXPECT_EQ(string.c_str(), string.data());
    EXPECT_EQ(constant.begin(), string.begin());
    EXPECT_EQ(string.peek(), string.data());
    EXPECT_EQ(constant.end(), string.begin() + 3);
    EXPECT_EQ(string.length(), 3u);
    EXPECT_EQ(string.capacity(), 31u);
    EXPECT_EQ(string.max_size(), 31u);
}

TEST(FixedString, IsTrueWhenNotEmpty) {
    EXPECT_TRUE(String("a"));
    EXPECT_FALSE(String());
    EXPECT_TRUE(String().empty());
}

TEST(FixedString, IndexNeverLeavesTheBuffer) {
    BlockString string(4, "abcd");
    const KCFixedStringBase& constant = string;
    EXPECT_EQ(string[3], 'd');
    EXPECT_EQ(&string[4], string.begin() + 4);
    EXPECT_EQ(&string[5], string.begin() + 4);
    EXPECT_EQ(&constant[KCFixedStringBase::npos], string.begin() + 4);
    string[1] = 'x';
    EXPECT_EQ(Checked(string), "axcd");
}

TEST(FixedString, IndexBehindTheEndShowsStaleBytes) {
    String string("abcd");
    string.resize(1);
    EXPECT_EQ(string[1], '\0');
    EXPECT_EQ(string[2], 'c');
    EXPECT_EQ(string[9], '\0');
}

TEST(FixedString, CopyToBufferAlwaysTerminates) {
    char buffer[8] = "*******";
    String("hello").copy_to_buffer(3, buffer);
    EXPECT_EQ(std::string(buffer, 7), std::string("he\0****", 7));
    String("hello").copy_to_buffer(8, buffer);
    EXPECT_STREQ(buffer, "hello");
    String("hello").copy_to_buffer(1, buffer);
    EXPECT_STREQ(buffer, "");
}

TEST(FixedString, CopyToBufferOfNoSizeOrNowhereDoesNothing) {
    char buffer[] = "*";
    String("hello").copy_to_buffer(0, buffer);
    EXPECT_STREQ(buffer, "*");
    String("hello").copy_to_buffer(3, nullptr);
}

// ---- Memory

TEST(FixedString, TakesNothingFromTheHeap) {
    std::stringstream stream;
    stream << "stream";
    const std::string standard("standard");
    const kvTest::AllocationCount count;
    KCFixedString<127> string("abc");
    string << 'c' << -12 << 12345678901234ull << 0.5 << 1e300 << 0.25f << true << stream << standard << &string;
    string.append_double_with_precision(1.5, -1).append_double_with_precision(5e-324, 2000);
    string.append_uint(255, 16).append_hex_binary(reinterpret_cast<const unsigned char*>("ab"), 2);
    string.append_random_chars(10).erase(2, 3).erase_all_of("1").erase_all_not_of("abcdefghijklm0123456789");
    string.replace('a', 'b');
    string.replace('b', "xyz");
    string.replace("xy", 'z');
    const KCFixedString<127> copy(string.reverse());
    double number = 0;
    KCFixedString<31>("12.5") >> number;
    const bool isFound = copy.find_case_insensitive("q") != KCFixedStringBase::npos || copy == standard;
    EXPECT_EQ(count.Taken(), 0u);
    EXPECT_FALSE(isFound);
    EXPECT_EQ(number, 12.5);
}

} // namespace
} // namespace kvKorvoV12_9_0_320
