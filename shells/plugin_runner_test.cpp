#include <shells/plugin_runner.h>

#include <korvolib/utilities/error_codes.h>
#include <shells/flush_denormals.h>
#include <shells/test_plugins/gain_plugin.h>
#include <tests/support/allocation_count.h>
#include <tests/support/audio_buffers.h>
#include <tests/support/lock_count.h>

#include <gtest/gtest.h>

#include <atomic>
#include <bit>
#include <chrono>
#include <cmath>
#include <future>
#include <limits>
#include <mutex>
#include <thread>
#include <vector>

namespace kvKorvoV12_9_0_320 {
namespace {

using kvTest::KCAudioBuffers;
using kvTest::KCGainPlugin;

constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();
constexpr sPROCESS_SETUP kStereo{48000.0, 64, 2};
constexpr sPROCESS_SETUP kMono{48000.0, 64, 1};

// A prepared plug-in whose gain is the state of its one parameter.
struct sRIG {
    explicit sRIG(const sPROCESS_SETUP& setup = kStereo) { EXPECT_EQ(runner.Prepare(setup), kErr_NoErr); }

    void Move(double state) { MoveParam(plugin, state); }
    static void MoveParam(cALGORITHM& algorithm, double state) {
        const KCAlgorithmLock lock(algorithm);
        auto* chain = algorithm.UpdateParamRequestState(0, state);
        algorithm.ExecuteAndDisposeBuffer(chain);
    }
    // The first sample that comes out for ones.
    float Out() {
        KCAudioBuffers audio(runner.GetSetup().numChannels, 8, 1.0f);
        runner.Process(audio.Block());
        return audio.Out(0)[0];
    }
    size_t NumBlocksUnderWay() const {
        const KCProcessMemoryPool& pool = plugin.GetProcessMemoryPool();
        return pool.GetSize().numBlocks - pool.GetNumFree();
    }

    KCGainPlugin plugin;
    KCPluginRunner runner{plugin};
};

TEST(PluginRunner, GivesSilenceUntilItIsPrepared) {
    KCGainPlugin plugin;
    KCPluginRunner runner(plugin);
    ASSERT_EQ(runner.Create(), kErr_NoErr);
    KCAudioBuffers audio(2, 16, 1.0f);
    runner.Process(audio.Block());
    EXPECT_FALSE(runner.IsPrepared());
    EXPECT_EQ(audio.Out(1), std::vector<float>(16, 0.0f));
}

TEST(PluginRunner, PrepareSendsEverythingAsTheParametersStand) {
    KCGainPlugin plugin;
    KCPluginRunner runner(plugin);
    ASSERT_EQ(runner.Create(), kErr_NoErr);
    sRIG::MoveParam(plugin, 3.0);
    EXPECT_EQ(plugin.m_numReceived, 0u);
    ASSERT_EQ(runner.Prepare(kStereo), kErr_NoErr);
    EXPECT_EQ(plugin.m_gain, 3.0f);
    EXPECT_EQ(plugin.m_numResets, 1u);
    EXPECT_EQ(plugin.GetSampleRate(), 48000.0);
}

TEST(PluginRunner, AChangeIsHeardFromTheNextBlockOn) {
    sRIG rig;
    rig.Move(2.0);
    EXPECT_NE(rig.plugin.m_gain, 2.0f);
    EXPECT_EQ(rig.Out(), 2.0f);
    EXPECT_EQ(rig.NumBlocksUnderWay(), 0u);
}

TEST(PluginRunner, CutsLongBlocksIntoPiecesOfThePreparedLength) {
    sRIG rig;
    rig.Move(2.0);
    KCAudioBuffers audio(2, 200, 1.0f);
    rig.runner.Process(audio.Block());
    EXPECT_EQ(rig.plugin.m_longestBlock, 64u);
    EXPECT_EQ(audio.Out(0), std::vector<float>(200, 2.0f));
    EXPECT_EQ(audio.Out(1), std::vector<float>(200, 2.0f));
}

TEST(PluginRunner, ProcessesMono) {
    sRIG rig(kMono);
    rig.Move(2.0);
    EXPECT_EQ(rig.Out(), 2.0f);
}

TEST(PluginRunner, ProcessesInPlace) {
    sRIG rig;
    rig.Move(2.0);
    std::vector<float> left(100, 1.0f);
    std::vector<float> right(100, 3.0f);
    const float* in[2] = {left.data(), right.data()};
    float* out[2] = {left.data(), right.data()};
    rig.runner.Process({in, out, 2, 100});
    EXPECT_EQ(left, std::vector<float>(100, 2.0f));
    EXPECT_EQ(right, std::vector<float>(100, 6.0f));
}

TEST(PluginRunner, GivesSilenceForAnotherNumberOfChannels) {
    sRIG rig(kMono);
    KCAudioBuffers audio(2, 16, 1.0f);
    rig.runner.Process(audio.Block());
    EXPECT_EQ(audio.Out(0), std::vector<float>(16, 0.0f));
    EXPECT_EQ(audio.Out(1), std::vector<float>(16, 0.0f));
}

TEST(PluginRunner, GivesSilenceBesideNullBuffers) {
    sRIG rig;
    KCAudioBuffers audio(2, 16, 1.0f);
    const float* in[2] = {audio.In(0).data(), nullptr};
    float* out[2] = {audio.Out(0).data(), nullptr};
    rig.runner.Process({in, out, 2, 16});
    EXPECT_EQ(audio.Out(0), std::vector<float>(16, 0.0f));
    rig.runner.Process({nullptr, nullptr, 2, 16});
}

TEST(PluginRunner, AnEmptyBlockStillReceives) {
    sRIG rig;
    rig.Move(2.0);
    KCAudioBuffers audio(2, 0);
    rig.runner.Process(audio.Block());
    EXPECT_EQ(rig.plugin.m_gain, 2.0f);
}

TEST(PluginRunner, TakesSamplesThatAreNotFiniteAsSilence) {
    sRIG rig;
    rig.Move(2.0);
    KCAudioBuffers audio(2, 100, 1.0f);
    audio.In(0)[3] = kNotANumber;
    audio.In(1)[99] = -std::numeric_limits<float>::infinity();
    rig.runner.Process(audio.Block());
    std::vector<float> expected(100, 2.0f);
    expected[3] = 0.0f;
    EXPECT_EQ(audio.Out(0), expected);
    EXPECT_EQ(audio.Out(1)[99], 0.0f);
    EXPECT_TRUE(std::isnan(audio.In(0)[3])); // the host's buffer is as it was
    EXPECT_EQ(rig.runner.GetNumRepairedPieces(), 2u);
}

TEST(PluginRunner, SilencesAndResetsAPluginThatGoesWild) {
    sRIG rig;
    rig.plugin.m_gain = kNotANumber;
    KCAudioBuffers audio(2, 16, 1.0f);
    rig.runner.Process(audio.Block());
    EXPECT_EQ(audio.Out(0), std::vector<float>(16, 0.0f));
    EXPECT_EQ(rig.plugin.m_numResets, 2u);
    EXPECT_EQ(rig.runner.GetNumRepairedPieces(), 1u);
}

TEST(PluginRunner, ProcessesWithoutDenormals) {
    sRIG rig;
    rig.plugin.m_gain = std::numeric_limits<float>::min();
    KCAudioBuffers audio(2, 16, 0.5f);
    rig.runner.Process(audio.Block());
    EXPECT_EQ(audio.Out(0), std::vector<float>(16, 0.0f));
}

TEST(PluginRunner, RefusesSetupsOutOfRange) {
    sRIG rig;
    const double infinite = std::numeric_limits<double>::infinity();
    for (const sPROCESS_SETUP& setup :
         {sPROCESS_SETUP{0.0, 64, 2}, sPROCESS_SETUP{infinite, 64, 2}, sPROCESS_SETUP{48000.0, 0, 2},
          sPROCESS_SETUP{48000.0, 64, 0}, sPROCESS_SETUP{48000.0, 64, 3}}) {
        EXPECT_EQ(rig.runner.Prepare(setup), kErr_Generic);
        EXPECT_FALSE(rig.runner.IsPrepared());
    }
    EXPECT_EQ(rig.Out(), 0.0f);
}

TEST(PluginRunner, CanBePreparedAgainAndUnprepared) {
    sRIG rig;
    rig.Move(2.0);
    ASSERT_EQ(rig.runner.Prepare({96000.0, 32, 2}), kErr_NoErr);
    EXPECT_EQ(rig.plugin.GetSampleRate(), 96000.0);
    EXPECT_EQ(rig.Out(), 2.0f);
    rig.runner.Unprepare();
    EXPECT_EQ(rig.Out(), 0.0f);
}

TEST(PluginRunner, AFullQueueLosesNoLastValue) {
    sRIG rig;
    for (int state = 1; state <= 500; ++state)
        rig.Move(state);
    EXPECT_EQ(rig.runner.GetQueue().GetNumWaiting(), 1u);
    rig.Out();
    EXPECT_LT(rig.plugin.m_gain, 500.0f);
    rig.runner.DoIdle();
    EXPECT_EQ(rig.Out(), 500.0f);
    EXPECT_EQ(rig.NumBlocksUnderWay(), 0u);
}

TEST(PluginRunner, IdleDoesTheAlgorithmsIdleWork) {
    sRIG rig;
    rig.plugin.SetUpdateAlgRequired();
    rig.runner.DoIdle();
    const uint32_t numBefore = rig.plugin.m_numReceived;
    rig.Out();
    EXPECT_EQ(rig.plugin.m_numReceived, numBefore + 1);
}

TEST(PluginRunner, TellsALatencyOnce) {
    sRIG rig;
    uint32_t frames = 0;
    EXPECT_FALSE(rig.runner.TakeLatencyChange(frames));
    rig.plugin.m_latency = 128;
    EXPECT_TRUE(rig.runner.TakeLatencyChange(frames));
    EXPECT_EQ(frames, 128u);
    EXPECT_FALSE(rig.runner.TakeLatencyChange(frames));
}

TEST(PluginRunner, ResetReceivesBeforeItResets) {
    sRIG rig;
    rig.Move(2.0);
    rig.runner.Reset();
    EXPECT_EQ(rig.plugin.m_gain, 2.0f);
    EXPECT_EQ(rig.plugin.m_numResets, 2u);
}

TEST(PluginRunner, HandsOtherSelectorsOn) {
    sRIG rig;
    intptr_t heard = 0;
    rig.runner.SetNextHostCallback(
        [](int32_t selector, void* refcon, intptr_t a1, intptr_t, intptr_t, intptr_t) -> intptr_t {
            *static_cast<intptr_t*>(refcon) = selector * 100 + a1;
            return 5;
        },
        &heard);
    EXPECT_EQ(rig.plugin.GetHostCallback()(16, rig.plugin.GetExecRefcon(), 3, 0, 0, 0), 5);
    EXPECT_EQ(heard, 1603);
    rig.runner.SetNextHostCallback(nullptr, nullptr);
    EXPECT_EQ(rig.plugin.GetHostCallback()(16, rig.plugin.GetExecRefcon(), 3, 0, 0, 0), 0);
}

TEST(PluginRunner, LeavesTheAlgorithmWithoutACallback) {
    KCGainPlugin plugin;
    { EXPECT_EQ(KCPluginRunner(plugin).Create(), kErr_NoErr); }
    EXPECT_EQ(plugin.GetHostCallback(), nullptr);
    sRIG::MoveParam(plugin, 2.0); // its block goes back all the same
    EXPECT_EQ(plugin.GetProcessMemoryPool().GetNumFree(), plugin.GetProcessMemoryPool().GetSize().numBlocks);
}

// The whole of the promise: another thread moves the parameter without pause meanwhile.
TEST(PluginRunner, ProcessTakesNoLockAndAllocatesNothing) {
    sRIG rig;
    std::atomic<bool> isDone{false};
    std::thread mover([&] {
        for (int i = 0; !isDone; ++i)
            rig.Move(1.0 + i % 900);
    });
    KCAudioBuffers audio(2, 200, 1.0f);
    audio.In(0)[5] = kNotANumber;
    const sAUDIO_BLOCK block = audio.Block();
    const kvTest::AllocationCount allocations;
    const kvTest::LockCount locks;
    for (int i = 0; i < 3000 || rig.plugin.m_numReceived < 100; ++i)
        rig.runner.Process(block);
    EXPECT_EQ(allocations.Taken(), 0u);
    EXPECT_EQ(locks.Taken(), 0u);
    isDone = true;
    mover.join();
}

TEST(PluginRunner, ProcessDoesNotWaitForTheAlgorithmsLock) {
    sRIG rig;
    rig.Move(2.0);
    std::future<float> heard;
    const KCAlgorithmLock lock(rig.plugin);
    heard = std::async(std::launch::async, [&] { return rig.Out(); });
    ASSERT_EQ(heard.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    EXPECT_EQ(heard.get(), 2.0f);
}

TEST(LockCount, SeesLocks) {
    if (!kvTest::CanCountLocks())
        GTEST_SKIP() << "a sanitizer has the functions";
    std::mutex mutex;
    const kvTest::LockCount locks;
    mutex.lock();
    mutex.unlock();
    EXPECT_EQ(locks.Taken(), 1u);
}

TEST(FlushDenormals, LastsAsLongAsItLives) {
    volatile float tiny = std::numeric_limits<float>::denorm_min();
    const auto doubled = [&] { return tiny * 2.0f; };
    EXPECT_GT(doubled(), 0.0f);
    {
        const KCFlushDenormals flush;
        const float flushed = doubled();
        EXPECT_EQ(std::bit_cast<uint32_t>(flushed), 0u);
    }
    EXPECT_GT(doubled(), 0.0f);
}

} // namespace
} // namespace kvKorvoV12_9_0_320
