#include <korvolib/utilities/mem_obj.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <tests/support/allocation_count.h>

// AddressSanitizer's malloc stops the program where the real one returns null, unless it is told otherwise here.
extern "C" const char* __asan_default_options() { // NOLINT(bugprone-reserved-identifier): the name it looks for
    return "allocator_may_return_null=1";
}

namespace {

using kvKorvo::KCStMemObj;

// More than any machine has, and more than a pointer difference can say.
constexpr size_t kFarTooLarge = size_t{1} << 62;

KCStMemObj Block(std::string_view text) {
    KCStMemObj block;
    EXPECT_EQ(block.Assign(text.data(), text.size()), kvKorvo::kErr_NoErr);
    return block;
}

TEST(MemObj, StartsEmpty) {
    const KCStMemObj block;
    EXPECT_TRUE(block.IsEmpty());
    EXPECT_EQ(block.GetSize(), 0u);
    EXPECT_TRUE(block.GetBytes().empty());
    EXPECT_EQ(block.GetText(), "");
}

TEST(MemObj, MovesButNeverCopiesUnseen) {
    static_assert(!std::is_copy_constructible_v<KCStMemObj>);
    static_assert(!std::is_copy_assignable_v<KCStMemObj>);
    static_assert(std::is_nothrow_move_constructible_v<KCStMemObj>);
    static_assert(std::is_nothrow_move_assignable_v<KCStMemObj>);
}

TEST(MemObj, AllocateGivesZeroBytesAndForgetsTheOldOnes) {
    KCStMemObj block = Block("old");
    ASSERT_EQ(block.Allocate(5), kvKorvo::kErr_NoErr);
    ASSERT_EQ(block.GetSize(), 5u);
    EXPECT_TRUE(std::ranges::all_of(block.GetBytes(), [](uint8_t byte) { return byte == 0; }));
}

TEST(MemObj, AllocateOfNothingIsEmpty) {
    KCStMemObj block = Block("old");
    EXPECT_EQ(block.Allocate(0), kvKorvo::kErr_NoErr);
    EXPECT_TRUE(block.IsEmpty());
}

TEST(MemObj, AllocateOfTooMuchSaysSoAndLeavesItEmpty) {
    for (const size_t size : {kFarTooLarge, SIZE_MAX}) {
        KCStMemObj block = Block("old");
        EXPECT_EQ(block.Allocate(size), kvKorvo::kErr_AllocationFailed);
        EXPECT_TRUE(block.IsEmpty());
    }
}

TEST(MemObj, ResizeKeepsWhatFitsAndZeroesTheRest) {
    KCStMemObj block = Block("abcd");
    ASSERT_EQ(block.Resize(2), kvKorvo::kErr_NoErr);
    EXPECT_EQ(block.GetText(), "ab");
    ASSERT_EQ(block.Resize(5), kvKorvo::kErr_NoErr);
    EXPECT_EQ(block.GetText(), std::string_view("ab\0\0\0", 5));
}

TEST(MemObj, ResizeOfTooMuchLeavesItUnchanged) {
    for (const size_t size : {kFarTooLarge, SIZE_MAX}) {
        KCStMemObj block = Block("kept");
        EXPECT_EQ(block.Resize(size), kvKorvo::kErr_AllocationFailed);
        EXPECT_EQ(block.GetText(), "kept");
    }
}

TEST(MemObj, AssignTakesTheBytesWithTheirNulls) {
    EXPECT_EQ(Block(std::string_view("a\0b", 3)).GetText(), std::string_view("a\0b", 3));
}

TEST(MemObj, AssignOfNullWithASizeIsRefusedAndLeavesItEmpty) {
    KCStMemObj block = Block("old");
    EXPECT_EQ(block.Assign(nullptr, 1), kvKorvo::kErr_NullArgument);
    EXPECT_TRUE(block.IsEmpty());
}

TEST(MemObj, AssignOfNullWithoutASizeIsEmpty) {
    KCStMemObj block = Block("old");
    EXPECT_EQ(block.Assign(nullptr, 0), kvKorvo::kErr_NoErr);
    EXPECT_TRUE(block.IsEmpty());
}

TEST(MemObj, AssignOfAPartOfItselfKeepsThatPart) {
    KCStMemObj block = Block("abcdef");
    ASSERT_EQ(block.Assign(static_cast<const char*>(block.GetData()) + 2, 3), kvKorvo::kErr_NoErr);
    EXPECT_EQ(block.GetText(), "cde");
}

TEST(MemObj, AppendPutsBytesBehind) {
    KCStMemObj block;
    ASSERT_EQ(block.Append("ab"), kvKorvo::kErr_NoErr);
    ASSERT_EQ(block.Append("", 0), kvKorvo::kErr_NoErr);
    ASSERT_EQ(block.Append(nullptr, 0), kvKorvo::kErr_NoErr);
    ASSERT_EQ(block.Append("c", 1), kvKorvo::kErr_NoErr);
    EXPECT_EQ(block.GetText(), "abc");
}

TEST(MemObj, AppendOfItselfDoublesIt) {
    KCStMemObj block = Block("abc");
    for (int round = 0; round < 5; ++round)
        ASSERT_EQ(block.Append(block.GetText()), kvKorvo::kErr_NoErr);
    EXPECT_EQ(block.GetSize(), 96u);
    EXPECT_EQ(block.GetText().substr(90), "abcabc");
}

TEST(MemObj, AppendThatFailsLeavesItUnchanged) {
    KCStMemObj block = Block("kept");
    EXPECT_EQ(block.Append(nullptr, 3), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(block.Append("x", SIZE_MAX), kvKorvo::kErr_AllocationFailed);
    EXPECT_EQ(block.GetText(), "kept");
}

TEST(MemObj, ManyAppendsTakeFewBlocks) {
    KCStMemObj block;
    const kvTest::AllocationCount count;
    for (int i = 0; i < 10000; ++i)
        ASSERT_EQ(block.Append("x", 1), kvKorvo::kErr_NoErr);
    EXPECT_LT(count.Taken(), 30u);
}

TEST(MemObj, CopyFromHoldsTheSameBytesElsewhere) {
    const KCStMemObj original = Block("abc");
    KCStMemObj copy;
    ASSERT_EQ(copy.CopyFrom(original), kvKorvo::kErr_NoErr);
    EXPECT_EQ(copy, original);
    EXPECT_NE(copy.GetData(), original.GetData());
}

TEST(MemObj, CopyFromItselfChangesNothing) {
    KCStMemObj block = Block("abc");
    const KCStMemObj& same = block;
    ASSERT_EQ(block.CopyFrom(same), kvKorvo::kErr_NoErr);
    EXPECT_EQ(block.GetText(), "abc");
}

TEST(MemObj, MoveTakesTheBlockAndLeavesNothing) {
    KCStMemObj from = Block("abc");
    const void* data = from.GetData();
    KCStMemObj to = Block("replaced");
    to = std::move(from);
    EXPECT_EQ(to.GetData(), data);
    EXPECT_TRUE(from.IsEmpty()); // NOLINT(bugprone-use-after-move,clang-analyzer-cplusplus.Move): stated result
    KCStMemObj third(std::move(to));
    EXPECT_EQ(third.GetText(), "abc");
}

TEST(MemObj, MoveToItselfKeepsTheBytes) {
    KCStMemObj block = Block("abc");
    KCStMemObj& same = block;
    block = std::move(same);
    EXPECT_EQ(block.GetText(), "abc");
}

TEST(MemObj, ClearGivesEverythingBack) {
    KCStMemObj block = Block("abc");
    block.Clear();
    block.Clear();
    EXPECT_TRUE(block.IsEmpty());
}

TEST(MemObj, SwapExchangesBoth) {
    KCStMemObj left = Block("left");
    KCStMemObj right;
    left.Swap(right);
    EXPECT_TRUE(left.IsEmpty());
    EXPECT_EQ(right.GetText(), "left");
}

TEST(MemObj, EqualityIsOfBytesAndSize) {
    EXPECT_EQ(Block("abc"), Block("abc"));
    EXPECT_NE(Block("abc"), Block("abd"));
    EXPECT_NE(Block("abc"), Block("ab"));
    EXPECT_EQ(KCStMemObj(), Block(""));
}

TEST(MemObj, AgreesWithAStringOverRandomEdits) {
    std::mt19937 random(7);
    KCStMemObj block;
    std::string expected;
    for (int step = 0; step < 5000; ++step) {
        const std::string piece(random() % 20, static_cast<char>('a' + random() % 26));
        switch (random() % 4) {
        case 0:
            ASSERT_EQ(block.Append(piece), kvKorvo::kErr_NoErr);
            expected += piece;
            break;
        case 1:
            ASSERT_EQ(block.Resize(piece.size()), kvKorvo::kErr_NoErr);
            expected.resize(piece.size());
            break;
        case 2:
            ASSERT_EQ(block.Assign(piece.data(), piece.size()), kvKorvo::kErr_NoErr);
            expected = piece;
            break;
        default:
            ASSERT_EQ(block.Append(block.GetText().substr(0, 9)), kvKorvo::kErr_NoErr);
            expected += expected.substr(0, 9);
        }
        ASSERT_EQ(block.GetText(), expected);
    }
}

TEST(MemObj, AppendAndReserveGivesRoomBehindWhatIsHeld) {
    KCStMemObj block;
    for (size_t size = 0; size < 600; ++size) {
        uint8_t* const room = block.AppendAndReserve(size);
        ASSERT_EQ(block.GetSize(), size * (size + 1) / 2);
        if (size != 0) {
            ASSERT_EQ(room, block.GetBytes().data() + block.GetSize() - size);
            std::memset(room, static_cast<int>(size & 255), size); // a sanitizer sees a byte too many
        }
    }
    EXPECT_EQ(block.GetBytes()[1], 2);
    EXPECT_EQ(block.GetBytes().back(), 599 & 255);
}

TEST(MemObj, AppendAndReserveOfTooMuchLeavesItUnchanged) {
    KCStMemObj block;
    ASSERT_EQ(block.Append("abc"), kvKorvo::kErr_NoErr);
    for (const size_t size : {SIZE_MAX, SIZE_MAX - 2, static_cast<size_t>(PTRDIFF_MAX)})
        EXPECT_EQ(block.AppendAndReserve(size), nullptr);
    EXPECT_EQ(block.GetText(), "abc");
}

} // namespace
