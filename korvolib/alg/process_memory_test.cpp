#include <korvolib/alg/process_memory.h>
#include <korvolib/utilities/error_codes.h>

#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/allocation_count.h>

namespace {

using namespace kvKorvo;
using KPAPI_PROCESS_MEMORY::BUFFER_HEADER;

TEST(ProcessMemory, ChainsJoinInOrder) {
    BUFFER_HEADER a, b, c;
    a.next = &b;
    EXPECT_EQ(KPAPI_PROCESS_MEMORY::ChainBufs(&a, &c), &a);
    EXPECT_EQ(b.next, &c);
    EXPECT_EQ(KPAPI_PROCESS_MEMORY::ChainBufs(nullptr, &c), &c);
    EXPECT_EQ(KPAPI_PROCESS_MEMORY::ChainBufs(&c, nullptr), &c);
    EXPECT_EQ(KPAPI_PROCESS_MEMORY::ChainBufs(nullptr, nullptr), nullptr);
}

TEST(ProcessMemory, GivingBackAChainGivesBackEachBlockOnce) {
    static int given;
    given = 0;
    const auto count = [](BUFFER_HEADER&) { ++given; };
    BUFFER_HEADER a, b, withoutFunction;
    a.giveBack = b.giveBack = count;
    a.next = &withoutFunction;
    withoutFunction.next = &b;
    BUFFER_HEADER* chain = &a;
    KPAPI_PROCESS_MEMORY::GiveBackChain(chain);
    EXPECT_EQ(chain, nullptr);
    EXPECT_EQ(given, 2);
    EXPECT_EQ(a.next, nullptr);
}

TEST(ProcessMemoryPool, HandsOutEveryBlockThenNull) {
    for (const size_t count : {size_t{0}, size_t{1}, size_t{5}}) {
        KCProcessMemoryPool pool;
        ASSERT_EQ(pool.Init({count, 24, 1}), 0);
        std::vector<BUFFER_HEADER*> blocks;
        while (BUFFER_HEADER* block = pool.Take(0, 24)) {
            std::memset(block->Payload(), 0xAB, 24);
            EXPECT_EQ(reinterpret_cast<uintptr_t>(block->Payload()) % 16, 0u);
            blocks.push_back(block);
        }
        EXPECT_EQ(blocks.size(), count);
        EXPECT_EQ(pool.GetNumFree(), 0u);
        EXPECT_EQ(pool.GetNumRefused(), 1u);
        for (BUFFER_HEADER* block : blocks)
            KPAPI_PROCESS_MEMORY::GiveBackChain(block);
        EXPECT_EQ(pool.GetNumFree(), count);
    }
}

TEST(ProcessMemoryPool, RefusesWhatDoesNotFit) {
    KCProcessMemoryPool pool;
    ASSERT_EQ(pool.Init({2, 24, 3}), 0);
    EXPECT_EQ(pool.Take(0, 25), nullptr);
    EXPECT_EQ(pool.Take(3, 24), nullptr);
    EXPECT_EQ(pool.GetNumRefused(), 2u);
    BUFFER_HEADER* block = pool.Take(2, 24);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block->size, 24u);
    EXPECT_EQ(block->target, 2u);
    KPAPI_PROCESS_MEMORY::GiveBackChain(block);
}

TEST(ProcessMemoryPool, BlockGivenBackTwiceCountsOnce) {
    KCProcessMemoryPool pool;
    ASSERT_EQ(pool.Init({2, 8, 1}), 0);
    BUFFER_HEADER* const block = pool.Take(0, 8);
    block->giveBack(*block);
    block->giveBack(*block);
    EXPECT_EQ(pool.GetNumFree(), 2u);
    EXPECT_NE(pool.Take(0, 8), nullptr);
    EXPECT_NE(pool.Take(0, 8), nullptr);
    EXPECT_EQ(pool.Take(0, 8), nullptr);
}

TEST(ProcessMemoryPool, IsNotMadeAnewWhileBlocksAreOut) {
    KCProcessMemoryPool pool;
    ASSERT_EQ(pool.Init({2, 8, 1}), 0);
    BUFFER_HEADER* block = pool.Take(0, 8);
    EXPECT_EQ(pool.Init({5, 8, 1}), kErr_Generic);
    EXPECT_EQ(pool.GetSize().numBlocks, 2u);
    KPAPI_PROCESS_MEMORY::GiveBackChain(block);
    EXPECT_EQ(pool.Init({5, 8, 1}), 0);
    EXPECT_EQ(pool.GetNumFree(), 5u);
}

TEST(ProcessMemoryPool, MoreThanThereIsMemoryForIsAnError) {
    KCProcessMemoryPool pool;
    EXPECT_EQ(pool.Init({SIZE_MAX, 8, 1}), kErr_AllocationFailed);
    EXPECT_EQ(pool.Init({1, SIZE_MAX, 1}), kErr_AllocationFailed);
    EXPECT_EQ(pool.Init({UINT32_MAX - 30, UINT32_MAX, 1}), kErr_AllocationFailed); // a product beyond 2^64
    EXPECT_EQ(pool.Take(0, 1), nullptr);
}

TEST(ProcessMemoryPool, TakingAndGivingBackAllocatesNothing) {
    KCProcessMemoryPool pool;
    ASSERT_EQ(pool.Init({4, 64, 1}), 0);
    const kvTest::AllocationCount count;
    for (int i = 0; i < 100; ++i) {
        BUFFER_HEADER* chain = KPAPI_PROCESS_MEMORY::ChainBufs(pool.Take(0, 64), pool.Take(0, 1));
        KPAPI_PROCESS_MEMORY::GiveBackChain(chain);
    }
    EXPECT_EQ(count.Taken(), 0u);
}

} // namespace
