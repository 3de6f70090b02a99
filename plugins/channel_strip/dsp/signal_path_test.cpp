#include <plugins/channel_strip/dsp/signal_path.h>

#include <tests/support/allocation_count.h>
#include <tests/support/audio_buffers.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <random>

namespace kvStrip {
namespace {

using kvTest::KCAudioBuffers;

constexpr double kSampleRateHz = 48000.0;

struct sPATH {
    explicit sPATH(uint32_t numChannels = 2, uint32_t maxFrames = 4096) {
        EXPECT_EQ(path.Prepare({kSampleRateHz, maxFrames, numChannels}), 0);
        path.Reset();
    }
    template <class Contents>
    void Send(KETarget target, const Contents& contents) {
        path.ReceiveBlock(target, &contents, sizeof contents);
    }
    KCSignalPath path;
};

void FillWithNoise(KCAudioBuffers& audio, uint32_t numChannels) {
    std::mt19937 random(3);
    std::uniform_real_distribution<float> level(-0.9f, 0.9f);
    for (uint32_t channel = 0; channel < numChannels; ++channel)
        for (float& sample : audio.In(channel))
            sample = level(random);
}

// All stages at work, and at the worst.
void SendExtremes(sPATH& rig, double side) {
    sCOMPRESSOR_SETTINGS compressor{-60.0, 20.0, 24.0, 0.1, 10.0, 50.0, 24.0};
    rig.Send(kTarget_InputGain, DecibelsToGain(24.0 * side));
    rig.Send(kTarget_LowCut, DesignLowCut(side > 0.0 ? 20000.0 : 20.0, 24, kSampleRateHz));
    rig.Send(kTarget_Gate, DesignGate({0.0, -80.0, 20.0, 10.0}, kSampleRateHz));
    rig.Send(kTarget_Bell1, DesignBell(20.0, 18.0 * side, 20.0, kSampleRateHz));
    rig.Send(kTarget_Bell2, DesignBell(20000.0, 18.0 * side, 0.1, kSampleRateHz));
    rig.Send(kTarget_Compressor, DesignCompressor(compressor, kSampleRateHz));
    rig.Send(kTarget_Stereo, sSTEREO{std::numbers::pi * side, 4.0, 4.0});
    rig.Send(kTarget_Output, sOUTPUT{2.0, 1.0});
}

bool SameBits(const std::vector<float>& a, const std::vector<float>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

TEST(SignalPath, UntouchedLetsTheSignalThroughBitForBit) {
    sPATH rig;
    KCAudioBuffers audio(2, 4096);
    FillWithNoise(audio, 2);
    rig.path.Process(audio.Block());
    EXPECT_TRUE(SameBits(audio.Out(0), audio.In(0)));
    EXPECT_TRUE(SameBits(audio.Out(1), audio.In(1)));
}

TEST(SignalPath, BypassedCopiesBitForBitAfterItsFade) {
    sPATH rig;
    SendExtremes(rig, 1.0);
    rig.path.Reset();
    rig.Send(kTarget_Output, sOUTPUT{2.0, 0.0});
    KCAudioBuffers fade(2, 4096);
    FillWithNoise(fade, 2);
    for (int i = 0; i < 3; ++i)
        rig.path.Process(fade.Block());
    KCAudioBuffers audio(2, 4096);
    FillWithNoise(audio, 2);
    audio.In(0)[7] = -0.0f;
    rig.path.Process(audio.Block());
    EXPECT_TRUE(SameBits(audio.Out(0), audio.In(0)));
    EXPECT_TRUE(SameBits(audio.Out(1), audio.In(1)));
}

TEST(SignalPath, BypassDoesNotClick) {
    sPATH rig;
    rig.Send(kTarget_InputGain, 0.25);
    rig.path.Reset();
    rig.Send(kTarget_Output, sOUTPUT{1.0, 0.0});
    KCAudioBuffers audio(2, 4096, 1.0f);
    rig.path.Process(audio.Block());
    float previous = 0.25f;
    for (const float sample : audio.Out(0)) {
        ASSERT_LE(std::fabs(sample - previous), 0.005f);
        previous = sample;
    }
    EXPECT_NEAR(previous, 1.0f, 1e-6f);
}

TEST(SignalPath, AGainChangeDoesNotClick) {
    sPATH rig;
    rig.Send(kTarget_InputGain, 0.0);
    KCAudioBuffers audio(2, 4096, 1.0f);
    rig.path.Process(audio.Block());
    float previous = 1.0f;
    for (const float sample : audio.Out(0)) {
        ASSERT_LE(std::fabs(sample - previous), 0.005f);
        previous = sample;
    }
}

TEST(SignalPath, CutIntoPiecesGivesTheSameBits) {
    const auto run = [](uint32_t pieceFrames) {
        sPATH rig;
        KCAudioBuffers audio(2, 3000);
        FillWithNoise(audio, 2);
        SendExtremes(rig, -1.0);
        for (uint32_t frame = 0; frame < 3000; frame += pieceFrames)
            rig.path.Process(audio.Block(frame, std::min(pieceFrames, 3000 - frame)));
        return audio.Out(0);
    };
    const std::vector<float> whole = run(3000);
    EXPECT_TRUE(SameBits(whole, run(1)));
    EXPECT_TRUE(SameBits(whole, run(64)));
    EXPECT_TRUE(SameBits(whole, run(997)));
}

TEST(SignalPath, StaysFiniteAtTheEndsOfEverySetting) {
    for (const double side : {-1.0, 1.0}) {
        sPATH rig;
        KCAudioBuffers audio(2, 4096);
        FillWithNoise(audio, 2);
        for (int i = 0; i < 20; ++i) {
            SendExtremes(rig, i % 2 == 0 ? side : -side);
            rig.path.Process(audio.Block());
            for (const float sample : audio.Out(0))
                ASSERT_TRUE(std::isfinite(sample));
        }
    }
}

TEST(SignalPath, ProcessesMono) {
    sPATH rig(1);
    rig.Send(kTarget_Stereo, sSTEREO{1.0, 0.5, 3.0});
    rig.path.Reset();
    KCAudioBuffers audio(1, 100, 1.0f);
    rig.path.Process(audio.Block());
    EXPECT_EQ(audio.Out(0), std::vector<float>(100, 0.5f));
}

TEST(SignalPath, ProcessesInPlace) {
    sPATH rig;
    SendExtremes(rig, 1.0);
    KCAudioBuffers apart(2, 1000);
    FillWithNoise(apart, 2);
    KCAudioBuffers same = apart;
    rig.path.Process(apart.Block());
    sPATH other;
    SendExtremes(other, 1.0);
    const float* in[2] = {same.In(0).data(), same.In(1).data()};
    float* out[2] = {same.In(0).data(), same.In(1).data()};
    other.path.Process({in, out, 2, 1000});
    EXPECT_TRUE(SameBits(same.In(0), apart.Out(0)));
    EXPECT_TRUE(SameBits(same.In(1), apart.Out(1)));
}

TEST(SignalPath, IgnoresBlocksThatAreNotForIt) {
    sPATH rig;
    const double gain = 0.5;
    rig.path.ReceiveBlock(kTarget_InputGain, &gain, sizeof gain - 1);
    rig.path.ReceiveBlock(kTarget_InputGain, nullptr, sizeof gain);
    rig.path.ReceiveBlock(kNumTargets, &gain, sizeof gain);
    rig.path.Reset();
    KCAudioBuffers audio(2, 10, 1.0f);
    rig.path.Process(audio.Block());
    EXPECT_EQ(audio.Out(0), std::vector<float>(10, 1.0f));
}

TEST(SignalPath, IgnoresMoreThanWasPrepared) {
    sPATH rig(2, 16);
    KCAudioBuffers longer(2, 17, 1.0f);
    rig.path.Process(longer.Block());
    EXPECT_EQ(longer.Out(0)[0], KCAudioBuffers::kUntouched);
    KCAudioBuffers wider(3, 16, 1.0f);
    rig.path.Process(wider.Block());
    EXPECT_EQ(wider.Out(0)[0], KCAudioBuffers::kUntouched);
}

TEST(SignalPath, ReportsPeaksAndReductions) {
    sPATH rig;
    rig.Send(kTarget_InputGain, 0.5);
    rig.Send(kTarget_Compressor, sCOMPRESSOR{-20.0, -0.5, 0.0, 1.0, 1.0, 1.0, 1.0});
    rig.path.Reset();
    KCAudioBuffers audio(2, 100, 0.8f);
    audio.In(1)[50] = -1.0f;
    rig.path.Process(audio.Block());
    EXPECT_EQ(rig.path.GetLevels().inputPeak[0], 0.8f);
    EXPECT_EQ(rig.path.GetLevels().inputPeak[1], 1.0f);
    EXPECT_NEAR(rig.path.GetLevels().compressorReductionDb, (20.0 + 20.0 * std::log10(0.5)) / 2.0, 1e-5);
    EXPECT_EQ(rig.path.GetLevels().gateReductionDb, 0.0f);
    EXPECT_NEAR(rig.path.GetLevels().outputPeak[0], 0.4 * DecibelsToGain(-(20.0 + 20.0 * std::log10(0.4)) / 2.0),
                1e-6);
}

TEST(SignalPath, AllocatesNothingAfterPrepare) {
    sPATH rig;
    KCAudioBuffers audio(2, 4096, 0.5f);
    const kvKorvo::sAUDIO_BLOCK block = audio.Block();
    const kvTest::AllocationCount count;
    SendExtremes(rig, 1.0);
    rig.path.Process(block);
    rig.path.Reset();
    EXPECT_EQ(count.Taken(), 0u);
}

} // namespace
} // namespace kvStrip
