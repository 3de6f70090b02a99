#include <korvolib/alg/algorithm.h>
#include <korvolib/presets/presets_manager.h>
#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/mem_obj.h>

#include <gmock/gmock.h>

#include <tests/support/recording_algorithm.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int32_t kXPst = 'X' << 24 | 'P' << 16 | 's' << 8 | 't';
constexpr int32_t kCurS = 'c' << 24 | 'u' << 16 | 'r' << 8 | 'S';
constexpr int32_t kPref = 'p' << 24 | 'r' << 16 | 'e' << 8 | 'f';

class ChunksTest : public testing::Test {
  protected:
    ChunksTest() {
        algorithm.FinishCreate();
        algorithm.TakeLog();
    }
    std::string Chunk() {
        KCStMemObj out;
        EXPECT_EQ(algorithm.GetChunk(kXPst, out, 0), 0);
        return std::string(out.GetText());
    }
    int32_t Load(const std::string& text) { return algorithm.SetChunk(kXPst, text.data(), text.size()); }

    RecordingAlgorithm algorithm{{LinearParam("Gain"), LinearParam("Trim & \"Tilt\" <dB>")}};
};

TEST_F(ChunksTest, ThereIsExactlyOneIndexedChunk) {
    int32_t id = 77;
    for (const int32_t index : {-1, 1, INT32_MAX}) {
        EXPECT_EQ(algorithm.GetIndexedChunkID(index, id), -7971);
        EXPECT_EQ(id, 77);
    }
    EXPECT_EQ(algorithm.GetIndexedChunkID(0, id), 0);
    EXPECT_EQ(id, kXPst);
}

TEST_F(ChunksTest, PresetChunkComesFromTheOverridableOperation) {
    struct WithChunk : RecordingAlgorithm {
        int32_t PreparePresetChunk(KCStMemObj& out, int32_t flag, int32_t reserved) override {
            EXPECT_TRUE(out.IsEmpty());
            EXPECT_EQ(flag, 5);
            EXPECT_EQ(reserved, 0);
            EXPECT_EQ(out.Assign("abc", 3), 0);
            return 12;
        }
    } withChunk;
    KCStMemObj out;
    EXPECT_EQ(out.Assign("old", 3), 0);
    EXPECT_EQ(withChunk.GetChunk(kXPst, out, 5), 12);
    EXPECT_EQ(out.GetText(), "abc");
}

TEST_F(ChunksTest, EmptyPresetChunkIsAnError) {
    struct Empty : RecordingAlgorithm {
        int32_t PreparePresetChunk(KCStMemObj&, int32_t, int32_t) override { return 0; }
    } empty;
    KCStMemObj out;
    EXPECT_EQ(out.Assign("old", 3), 0);
    EXPECT_EQ(empty.GetChunk(kXPst, out, 0), -5023);
    EXPECT_TRUE(out.IsEmpty());
}

TEST_F(ChunksTest, CurrentSetupComesFromThePresetsManager) {
    KCStMemObj out;
    EXPECT_EQ(algorithm.GetChunk(kCurS, out, 0), 0);
    EXPECT_TRUE(out.IsEmpty());
    struct Manager : Preset::CPresetsManager {
        int32_t GetCurrentSetupPresetChunk(KCStMemObj& chunk) override { return chunk.Assign("now", 3) - 9; }
    };
    struct WithManager : RecordingAlgorithm {
        Manager manager;
        Preset::CPresetsManager* GetPresetsManager() override { return &manager; }
    } withManager;
    EXPECT_EQ(withManager.GetChunk(kCurS, out, 0), -9);
    EXPECT_EQ(out.GetText(), "now");
}

TEST_F(ChunksTest, PreferencesAreEmptyAndOthersUnknown) {
    KCStMemObj out;
    EXPECT_EQ(out.Assign("old", 3), 0);
    EXPECT_EQ(algorithm.GetChunk(kPref, out, 0), 0);
    EXPECT_EQ(algorithm.GetChunk(0, out, 0), -1);
    EXPECT_EQ(algorithm.GetChunk(0x61626364, out, 0), -1);
    EXPECT_EQ(out.GetText(), "old");
    EXPECT_EQ(algorithm.SetChunk(kPref, "x", 1), kErr_Generic);
}

TEST_F(ChunksTest, SavedStateComesBackWhole) {
    algorithm.UpdateParamRequestState(0, 333.3);
    algorithm.UpdateParamRealWorld(1, 0.1 + 0.2);
    algorithm.GetParam(1)->SetSetupWord(kPluginSetup_B, -7);
    algorithm.SetSetupTitle(kPluginSetup_B, KCFixedString<127>("Warm"));
    algorithm.SetActiveSetup(kPluginSetup_B);
    sPARAM_VALUES saved[2], now[2];
    algorithm.CaptureParams(0, saved, 2);
    const std::string chunk = Chunk();

    algorithm.SetActiveSetup(kPluginSetup_A);
    algorithm.UpdateParamRequestState(0, 1.0);
    algorithm.UpdateParamRequestState(1, 1.0);
    algorithm.GetParam(1)->SetSetupWord(kPluginSetup_B, 0);
    algorithm.SetSetupTitle(kPluginSetup_B, KCFixedString<127>("Cold"));
    EXPECT_EQ(Load(chunk), 0);
    algorithm.CaptureParams(0, now, 2);
    EXPECT_TRUE(std::equal(now, now + 2, saved));
    EXPECT_EQ(algorithm.GetActiveSetup(), kPluginSetup_B);
    EXPECT_EQ(algorithm.GetParam(1)->GetSetupWord(kPluginSetup_B), -7);
    EXPECT_STREQ(algorithm.GetSetupTitle(kPluginSetup_B).c_str(), "Warm");
}

TEST_F(ChunksTest, LoadingIsAnnouncedOnce) {
    algorithm.UpdateParamRequestState(0, 500.0);
    const std::string chunk = Chunk();
    algorithm.UpdateParamRequestState(0, 100.0);
    algorithm.TakeLog();
    EXPECT_EQ(Load(chunk), 0);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "modified A", "notify 0", "loaded A"));
}

TEST_F(ChunksTest, LimitingHookSeesEveryLoadedValue) {
    struct Limiting : RecordingAlgorithm {
        using RecordingAlgorithm::RecordingAlgorithm;
        void LimitLoadedRealWorld(size_t index, EPluginSetup setup) override {
            log.push_back(std::string("limit ") + std::to_string(index) + SetupLetter(setup));
        }
    } limiting({LinearParam("Gain"), LinearParam("Trim & \"Tilt\" <dB>")});
    limiting.FinishCreate();
    limiting.TakeLog();
    const std::string chunk = Chunk();
    EXPECT_EQ(limiting.SetChunk(kXPst, chunk.data(), chunk.size()), 0);
    EXPECT_THAT(limiting.log, ElementsAre("limit 0A", "limit 1A", "limit 0B", "limit 1B", "loaded A"));
}

TEST_F(ChunksTest, UnknownParametersAreStruckOverAndMissingOnesStay) {
    algorithm.UpdateParamRequestState(0, 500.0);
    EXPECT_EQ(Load("<KorvoState Version='1' Active='SETUP_A'><Setup Name='SETUP_A'>"
                   "<Param Name='Gone' State='1' RealWorld='1'/>"
                   "<Param Name='Gain' State='many' RealWorld='1'/></Setup></KorvoState>"),
              0);
    EXPECT_EQ(algorithm.GetParamState(0), 500.0);
}

TEST_F(ChunksTest, WhatIsNoStateChangesNothing) {
    algorithm.UpdateParamRequestState(0, 500.0);
    algorithm.TakeLog();
    EXPECT_EQ(algorithm.SetChunk(kXPst, nullptr, 5), kErr_NullArgument);
    EXPECT_EQ(Load(""), kErr_EmptyChunk);
    EXPECT_EQ(Load("<Other/>"), kErr_BadDescription);
    EXPECT_EQ(Load("<KorvoState/>"), kErr_BadDescription);
    EXPECT_EQ(Load("<KorvoState Version='2'/>"), kErr_WrongRecordVersion);
    const std::string chunk = Chunk();
    for (size_t length = 1; length + 1 < chunk.size(); ++length)
        EXPECT_NE(Load(chunk.substr(0, length)), 0) << length;
    EXPECT_THAT(algorithm.log, IsEmpty());
    EXPECT_EQ(algorithm.GetParamState(0), 500.0);
}

TEST_F(ChunksTest, ParametersOfOneNameEachFindTheirValue) {
    RecordingAlgorithm twins({LinearParam("Same"), LinearParam("Same"), LinearParam("")});
    twins.FinishCreate();
    for (size_t index = 0; index < 3; ++index)
        twins.UpdateParamRequestState(index, 100.0 * static_cast<double>(index + 1));
    KCStMemObj out;
    ASSERT_EQ(twins.GetChunk(kXPst, out, 0), 0);
    for (size_t index = 0; index < 3; ++index)
        twins.UpdateParamRequestState(index, 0.0);
    EXPECT_EQ(twins.SetChunk(kXPst, out.GetText().data(), out.GetText().size()), 0);
    EXPECT_EQ(twins.GetParamState(0), 100.0);
    EXPECT_EQ(twins.GetParamState(1), 200.0);
    EXPECT_EQ(twins.GetParamState(2), 300.0);
}

// A text that was cut in the middle of a character, and one with a control character.
TEST_F(ChunksTest, TextsThatXMLCannotCarryDoNotKeepAStateFromBeingSaved) {
    RecordingAlgorithm odd({LinearParam("Gain \xC3"), LinearParam("\x01\x02")});
    odd.FinishCreate();
    odd.UpdateParamRequestState(0, 100.0);
    odd.UpdateParamRequestState(1, 200.0);
    odd.SetSetupTitle(kPluginSetup_A, KCFixedString<127>("W\xC3\xA4rm \xE2\x82"));
    KCStMemObj out;
    ASSERT_EQ(odd.GetChunk(kXPst, out, 0), 0);
    odd.UpdateParamRequestState(0, 0.0);
    odd.UpdateParamRequestState(1, 0.0);
    EXPECT_EQ(odd.SetChunk(kXPst, out.GetText().data(), out.GetText().size()), 0);
    EXPECT_EQ(odd.GetParamState(0), 100.0);
    EXPECT_EQ(odd.GetParamState(1), 200.0);
    EXPECT_STREQ(odd.GetSetupTitle(kPluginSetup_A).c_str(), "W\xC3\xA4rm ");
}

TEST_F(ChunksTest, ValueThatTheLimitingHookTakesBackIsNeverApplied) {
    struct Limiting : RecordingAlgorithm {
        using RecordingAlgorithm::RecordingAlgorithm;
        void LimitLoadedRealWorld(size_t index, EPluginSetup setup) override {
            GetParam(index)->SetRealWorld(setup, std::min(GetParam(index)->GetRealWorld(setup), 6.0));
        }
    } limiting({LinearParam("Gain"), LinearParam("Trim")});
    limiting.FinishCreate();
    limiting.UpdateParamRequestState(1, 900.0);
    std::vector<double> applied;
    limiting.onApply = [&](size_t index) { applied.push_back(limiting.GetParamRealWorld(index)); };
    const std::string text = "<KorvoState Version='1'><Setup Name='SETUP_A'>"
                             "<Param Name='Gain' State='500' RealWorld='1e300'/></Setup></KorvoState>";
    EXPECT_EQ(limiting.SetChunk(kXPst, text.data(), text.size()), 0);
    EXPECT_THAT(applied, ElementsAre(6.0, 6.0)); // Trim stood above the limit before
}

TEST_F(ChunksTest, ThrowingListenerLosesNoBlock) {
    struct Throwing : RecordingAlgorithm {
        using RecordingAlgorithm::RecordingAlgorithm;
        void PresetLoaded(EPluginSetup) override { throw std::runtime_error("listener"); }
    } throwing({LinearParam("Gain"), LinearParam("Trim & \"Tilt\" <dB>")});
    throwing.FinishCreate();
    throwing.givesBlocks = true;
    algorithm.UpdateParamRequestState(0, 500.0);
    const std::string chunk = Chunk();
    EXPECT_THROW(throwing.SetChunk(kXPst, chunk.data(), chunk.size()), std::runtime_error);
    const KCProcessMemoryPool& pool = throwing.GetProcessMemoryPool();
    EXPECT_EQ(pool.GetNumFree(), pool.GetSize().numBlocks);
}

} // namespace
