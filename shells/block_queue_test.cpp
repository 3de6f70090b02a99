#include <shells/block_queue.h>

#include <korvolib/alg/algorithm.h>
#include <korvolib/utilities/error_codes.h>
#include <tests/support/allocation_count.h>

#include <gtest/gtest.h>

#include <thread>
#include <utility>
#include <vector>

namespace kvKorvoV12_9_0_320 {
namespace {

using KPAPI_PROCESS_MEMORY::BUFFER_HEADER;

// Writes down what arrives.
class KCListener : public KCPlugin {
  public:
    cALGORITHM& GetAlgorithm() noexcept override { std::abort(); }
    int32_t Prepare(const sPROCESS_SETUP&) override { return 0; }
    void Process(const sAUDIO_BLOCK&) noexcept override {}
    void Reset() noexcept override {}
    void ReceiveBlock(uint32_t target, const void* payload, size_t bytes) noexcept override {
        uint64_t number = 0;
        EXPECT_TRUE(ReadBlock(payload, bytes, number));
        m_received.emplace_back(target, number);
    }
    std::vector<std::pair<uint32_t, uint64_t>> m_received;
};
using Received = std::vector<std::pair<uint32_t, uint64_t>>;

struct sBLOCK {
    sBLOCK(uint32_t target, uint64_t itsNumber, uint32_t size = sizeof(uint64_t)) : number(itsNumber) {
        header.target = target;
        header.size = size;
    }
    BUFFER_HEADER header;
    uint64_t number; // where the payload lies
};

struct sQUEUE {
    explicit sQUEUE(size_t numBlocks, uint32_t numTargets = 3) {
        EXPECT_EQ(queue.Init({numBlocks, sizeof(uint64_t), numTargets}), kErr_NoErr);
    }
    void Send(uint32_t target, uint64_t number) { queue.Send(sBLOCK(target, number).header); }
    Received Receive() {
        listener.m_received.clear();
        queue.Receive(listener);
        return listener.m_received;
    }
    KCBlockQueue queue;
    KCListener listener;
};

TEST(BlockQueue, CarriesBlocksInTheirOrder) {
    sQUEUE queue(4);
    queue.Send(2, 10);
    queue.Send(0, 11);
    queue.Send(2, 12);
    EXPECT_EQ(queue.Receive(), (Received{{2, 10}, {0, 11}, {2, 12}}));
    EXPECT_EQ(queue.Receive(), Received{});
}

TEST(BlockQueue, FullKeepsTheNewestBlockOfEachTarget) {
    sQUEUE queue(2);
    for (uint64_t number = 0; number < 9; ++number)
        queue.Send(static_cast<uint32_t>(number % 3), number);
    EXPECT_EQ(queue.queue.GetNumWaiting(), 3u);
    EXPECT_EQ(queue.queue.GetNumReplaced(), 4u);
    EXPECT_EQ(queue.Receive(), (Received{{0, 0}, {1, 1}}));
    queue.queue.SendWaiting();
    EXPECT_EQ(queue.Receive(), (Received{{0, 6}, {1, 7}}));
    queue.queue.SendWaiting();
    EXPECT_EQ(queue.Receive(), (Received{{2, 8}}));
    EXPECT_EQ(queue.queue.GetNumWaiting(), 0u);
}

TEST(BlockQueue, WaitingBlocksGoOutBeforeTheNextOne) {
    sQUEUE queue(1);
    queue.Send(1, 1);
    queue.Send(1, 2);
    EXPECT_EQ(queue.Receive(), (Received{{1, 1}}));
    queue.Send(1, 3); // 2 takes the only place, 3 waits
    EXPECT_EQ(queue.Receive(), (Received{{1, 2}}));
    queue.queue.SendWaiting();
    EXPECT_EQ(queue.Receive(), (Received{{1, 3}}));
}

TEST(BlockQueue, RefusesWhatDoesNotFit) {
    sQUEUE queue(4, 1);
    queue.queue.Send(sBLOCK(1, 0).header);
    queue.queue.Send(sBLOCK(0, 0, sizeof(uint64_t) + 1).header);
    EXPECT_EQ(queue.queue.GetNumRefused(), 2u);
    EXPECT_EQ(queue.Receive(), Received{});
}

TEST(BlockQueue, BeforeInitCarriesNothing) {
    KCBlockQueue queue;
    KCListener listener;
    queue.Send(sBLOCK(0, 0).header);
    queue.SendWaiting();
    queue.Receive(listener);
    queue.Clear();
    EXPECT_TRUE(listener.m_received.empty());
}

TEST(BlockQueue, OfNoBlocksStillCarriesOne) {
    sQUEUE queue(0);
    queue.Send(0, 5);
    EXPECT_EQ(queue.Receive(), (Received{{0, 5}}));
}

TEST(BlockQueue, OfImpossibleSizeLeavesTheQueueAsItWas) {
    sQUEUE queue(1);
    EXPECT_EQ(queue.queue.Init({SIZE_MAX / 2, SIZE_MAX / 4, 1}), kErr_AllocationFailed);
    queue.Send(0, 5);
    EXPECT_EQ(queue.Receive(), (Received{{0, 5}}));
}

TEST(BlockQueue, ClearDropsEverything) {
    sQUEUE queue(1);
    queue.Send(0, 1);
    queue.Send(0, 2);
    queue.queue.Clear();
    queue.queue.SendWaiting();
    EXPECT_EQ(queue.Receive(), Received{});
}

TEST(BlockQueue, AllocatesNothingAfterInit) {
    sQUEUE queue(2);
    queue.listener.m_received.reserve(100);
    const kvTest::AllocationCount count;
    for (uint64_t number = 0; number < 20; ++number)
        queue.Send(static_cast<uint32_t>(number % 3), number);
    queue.queue.Receive(queue.listener);
    queue.queue.SendWaiting();
    queue.queue.Receive(queue.listener);
    EXPECT_EQ(count.Taken(), 0u);
}

TEST(BlockQueue, BetweenTwoThreadsKeepsTheOrderOfATargetAndItsLastBlock) {
    constexpr uint64_t kLast = 20000;
    sQUEUE queue(3, 2);
    std::atomic<bool> isDone{false};
    std::thread sender([&] {
        for (uint64_t number = 1; number <= kLast; ++number)
            queue.Send(static_cast<uint32_t>(number % 2), number);
        while (queue.queue.GetNumWaiting() != 0)
            queue.queue.SendWaiting();
        isDone = true;
    });
    while (!isDone)
        queue.queue.Receive(queue.listener);
    queue.queue.Receive(queue.listener);
    sender.join();
    uint64_t newest[2] = {0, 0};
    for (const auto& [target, number] : queue.listener.m_received) {
        ASSERT_GT(number, newest[target]);
        newest[target] = number;
    }
    EXPECT_EQ(newest[0], kLast);
    EXPECT_EQ(newest[1], kLast - 1);
}

} // namespace
} // namespace kvKorvoV12_9_0_320
