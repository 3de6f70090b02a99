#include <plugins/channel_strip/channel_strip.h>

#include <korvolib/alg/meters.h>
#include <shells/plugin_loader.h>
#include <shells/plugin_runner.h>
#include <tests/support/allocation_count.h>
#include <tests/support/audio_buffers.h>
#include <tests/support/lock_count.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <numbers>
#include <optional>
#include <thread>
#include <vector>

namespace kvStrip {
namespace {

using kvKorvo::cALGORITHM;
using kvKorvo::KCAlgorithmLock;
using kvKorvo::KCFixedString;
using kvKorvo::KCPluginLoader;
using kvKorvo::KCPluginRunner;
using kvKorvo::kErr_NoErr;
using kvTest::KCAudioBuffers;

constexpr uint32_t kBlockFrames = 256;

// The plug-in as a host has it: from its file.
struct sHOST {
    sHOST() {
        KCFixedString<255> error;
        EXPECT_EQ(loader.Load(KORVO_PLUGIN_FILE, error), kErr_NoErr) << error.c_str();
        runner.emplace(*loader.GetPlugin());
        EXPECT_EQ(runner->Prepare({48000.0, kBlockFrames, 2}), kErr_NoErr);
    }
    cALGORITHM& Algorithm() { return runner->GetAlgorithm(); }
    void Set(size_t param, double realWorld) {
        const KCAlgorithmLock lock(Algorithm());
        auto* chain = Algorithm().UpdateParamRequestRealWorld(param, realWorld);
        Algorithm().ExecuteAndDisposeBuffer(chain);
    }
    // The level of a sine that went through for a second, against how it went in.
    double GainDbAt(double frequencyHz) {
        KCAudioBuffers audio(2, 48000);
        for (uint32_t frame = 0; frame < 48000; ++frame) {
            const double phase = 2.0 * std::numbers::pi * frequencyHz * frame / 48000.0;
            audio.In(0)[frame] = audio.In(1)[frame] = static_cast<float>(0.1 * std::sin(phase));
        }
        runner->Process(audio.Block());
        double in = 0.0;
        double out = 0.0;
        for (uint32_t frame = 24000; frame < 48000; ++frame) {
            in += std::pow(audio.In(0)[frame], 2.0);
            out += std::pow(audio.Out(0)[frame], 2.0);
        }
        return 10.0 * std::log10(out / in);
    }

    KCPluginLoader loader;
    std::optional<KCPluginRunner> runner;
};

TEST(ChannelStrip, IsLoadedUnderItsName) {
    sHOST host;
    EXPECT_STREQ(host.loader.GetEntry()->name, "Channel Strip");
    EXPECT_EQ(host.Algorithm().GetNumParams(), size_t{kNumParams});
    EXPECT_EQ(host.runner->GetLatencyFrames(), 0u);
}

TEST(ChannelStrip, AtItsDefaultsLetsTheSignalThroughBitForBit) {
    sHOST host;
    KCAudioBuffers audio(2, 2000, 0.37f);
    host.runner->Process(audio.Block());
    EXPECT_EQ(audio.Out(0), audio.In(0));
    EXPECT_EQ(audio.Out(1), audio.In(1));
}

TEST(ChannelStrip, EveryKnobChangesWhatItSaysByHowMuchItSays) {
    sHOST host;
    host.Set(kParam_InputGain, 6.0);
    EXPECT_NEAR(host.GainDbAt(1000.0), 6.0, 0.01);
    host.Set(kParam_OutputGain, -3.0);
    EXPECT_NEAR(host.GainDbAt(1000.0), 3.0, 0.06);
    host.Set(kParam_InputGain, 0.0);
    host.Set(kParam_OutputGain, 0.0);
    host.Set(kParam_Bell1Frequency, 1000.0);
    host.Set(kParam_Bell1Gain, -12.0);
    EXPECT_NEAR(host.GainDbAt(1000.0), -12.0, 0.02);
    host.Set(kParam_Bell2Frequency, 1000.0);
    host.Set(kParam_Bell2Gain, 12.0);
    EXPECT_NEAR(host.GainDbAt(1000.0), 0.0, 0.02);
}

TEST(ChannelStrip, TheLowCutCutsOnceItIsOn) {
    sHOST host;
    host.Set(kParam_LowCutFrequency, 200.0);
    host.Set(kParam_LowCutSlope, 24.0);
    EXPECT_NEAR(host.GainDbAt(100.0), 0.0, 0.001);
    host.Set(kParam_LowCut, 1.0);
    EXPECT_NEAR(host.GainDbAt(100.0), -24.1, 0.1);
    EXPECT_NEAR(host.GainDbAt(200.0), -3.0, 0.1);
}

TEST(ChannelStrip, TheCompressorAnswersToItsThresholdAndRatio) {
    sHOST host;
    host.Set(kParam_CompressorDetector, 50.0);
    host.Set(kParam_CompressorRatio, 2.0);
    host.Set(kParam_CompressorThreshold, -43.0); // the sine is at -23.01 dB rms
    EXPECT_NEAR(host.GainDbAt(1000.0), -10.0, 0.1);
    EXPECT_NEAR(host.Algorithm().GetMeters().Get(kMeter_CompressorReduction), 10.0f, 0.1f);
}

TEST(ChannelStrip, TheGateClosesBelowItsThreshold) {
    sHOST host;
    host.Set(kParam_GateThreshold, -10.0);
    host.Set(kParam_GateRange, -30.0);
    host.Set(kParam_GateRelease, 10.0);
    EXPECT_NEAR(host.GainDbAt(1000.0), -30.0, 0.1);
    EXPECT_NEAR(host.Algorithm().GetMeters().Get(kMeter_GateReduction), 30.0f, 0.1f);
}

TEST(ChannelStrip, TheGateAtItsBottomIsAlwaysOpen) {
    sHOST host;
    host.Set(kParam_GateThreshold, -70.0);
    host.Set(kParam_GateThreshold, kGateOffDb);
    KCAudioBuffers audio(2, 48000, 1e-6f); // 40 dB below that bottom
    host.runner->Process(audio.Block());
    EXPECT_EQ(audio.Out(0), audio.In(0));
}

TEST(ChannelStrip, TheFaderAtItsBottomIsSilent) {
    sHOST host;
    host.Set(kParam_OutputGain, kFaderOffDb);
    KCAudioBuffers audio(2, 48000, 1.0f);
    host.runner->Process(audio.Block());
    EXPECT_EQ(audio.Out(0).back(), 0.0f);
}

TEST(ChannelStrip, ReportsItsMeters) {
    sHOST host;
    host.Set(kParam_InputGain, -6.0);
    host.runner->Reset();
    KCAudioBuffers audio(2, 100, 0.5f);
    host.runner->Process(audio.Block());
    const kvKorvo::KCMeters& meters = host.Algorithm().GetMeters();
    EXPECT_EQ(meters.GetNumMeters(), size_t{kNumMeters});
    EXPECT_EQ(meters.Get(kMeter_InputLeft), 0.5f);
    EXPECT_NEAR(meters.Get(kMeter_OutputRight), 0.25f, 0.002f);
}

TEST(ChannelStrip, AnotherSampleRateDesignsTheFiltersAnew) {
    sHOST host;
    host.Set(kParam_Bell1Frequency, 1000.0);
    host.Set(kParam_Bell1Gain, -12.0);
    ASSERT_EQ(host.runner->Prepare({96000.0, kBlockFrames, 2}), kErr_NoErr);
    EXPECT_NEAR(host.GainDbAt(500.0), -12.0, 0.02); // 500 periods in 48000 frames are 1 kHz now
}

// Every stage of a chain of blocks that an update of one parameter makes.
class KCSpy : public KCChannelStrip {
  public:
    std::vector<uint32_t> TargetsOf(size_t param) {
        std::vector<uint32_t> targets;
        BUFFER_HEADER* chain = ApplyParamSelf(param);
        for (const BUFFER_HEADER* block = chain; block != nullptr; block = block->next)
            targets.push_back(block->target);
        ExecuteAndDisposeBuffer(chain);
        return targets;
    }
};

TEST(ChannelStripHook, SendsOneBlockToTheStageOfTheParameter) {
    KCSpy spy;
    ASSERT_EQ(spy.FinishCreate(), kErr_NoErr);
    EXPECT_EQ(spy.TargetsOf(kParam_Bypass), std::vector<uint32_t>{kTarget_Output});
    EXPECT_EQ(spy.TargetsOf(kParam_InputGain), std::vector<uint32_t>{kTarget_InputGain});
    EXPECT_EQ(spy.TargetsOf(kParam_LowCutSlope), std::vector<uint32_t>{kTarget_LowCut});
    EXPECT_EQ(spy.TargetsOf(kParam_GateThreshold), std::vector<uint32_t>{kTarget_Gate});
    EXPECT_EQ(spy.TargetsOf(kParam_GateRelease), std::vector<uint32_t>{kTarget_Gate});
    EXPECT_EQ(spy.TargetsOf(kParam_Bell1Q), std::vector<uint32_t>{kTarget_Bell1});
    EXPECT_EQ(spy.TargetsOf(kParam_Bell2Frequency), std::vector<uint32_t>{kTarget_Bell2});
    EXPECT_EQ(spy.TargetsOf(kParam_CompressorThreshold), std::vector<uint32_t>{kTarget_Compressor});
    EXPECT_EQ(spy.TargetsOf(kParam_MakeupGain), std::vector<uint32_t>{kTarget_Compressor});
    EXPECT_EQ(spy.TargetsOf(kParam_Rotation), std::vector<uint32_t>{kTarget_Stereo});
    EXPECT_EQ(spy.TargetsOf(kParam_RightTrim), std::vector<uint32_t>{kTarget_Stereo});
    EXPECT_EQ(spy.TargetsOf(kParam_OutputGain), std::vector<uint32_t>{kTarget_Output});
    EXPECT_EQ(spy.TargetsOf(kNumParams), std::vector<uint32_t>{});
}

// Every parameter moves without pause while audio runs; the sanitizers look on.
TEST(ChannelStrip, RunsWhileEveryParameterMoves) {
    sHOST host;
    std::atomic<bool> isDone{false};
    std::atomic<unsigned> numMoved{0};
    std::thread mover([&] {
        for (unsigned i = 0; !isDone; ++i, ++numMoved) {
            const KCAlgorithmLock lock(host.Algorithm());
            auto* chain = host.Algorithm().UpdateParamState(i * 7 % kNumParams, i * 37 % 1001, false);
            host.Algorithm().ExecuteAndDisposeBuffer(chain);
        }
    });
    KCAudioBuffers audio(2, kBlockFrames, 0.3f);
    const kvKorvo::sAUDIO_BLOCK block = audio.Block();
    const kvTest::AllocationCount allocations;
    const kvTest::LockCount locks;
    for (int i = 0; i < 500 || numMoved < 1000; ++i)
        host.runner->Process(block);
    EXPECT_EQ(allocations.Taken(), 0u);
    EXPECT_EQ(locks.Taken(), 0u);
    isDone = true;
    mover.join();
    EXPECT_EQ(host.runner->GetNumRepairedPieces(), 0u);
}

// A ringing filter after the music has stopped: what it gives ends in exact silence, and soon.
TEST(ChannelStrip, RingsDownToExactSilence) {
    sHOST host;
    host.Set(kParam_Bell1Frequency, 1000.0);
    host.Set(kParam_Bell1Gain, 18.0);
    host.Set(kParam_Bell1Q, 20.0);
    host.GainDbAt(1000.0);
    KCAudioBuffers silence(2, 10 * 48000);
    host.runner->Process(silence.Block());
    EXPECT_NE(silence.Out(0).front(), 0.0f);
    EXPECT_EQ(silence.Out(0).back(), 0.0f);
}

} // namespace
} // namespace kvStrip
