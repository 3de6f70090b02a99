#include <korvolib/alg/algorithm.h>
#include <korvolib/utilities/mem_obj.h>

#include <thread>

#include <gtest/gtest.h>

#include <tests/support/recording_algorithm.h>

namespace {

using namespace kvTest;

// Everything that takes the lock by itself, as two windows, a worker and a host would call it.
void Work(RecordingAlgorithm& algorithm, uint32_t seed) {
    sPARAM_VALUES values[2];
    for (uint32_t turn = 0; turn < 300; ++turn) {
        const double state = (turn * 37 + seed * 11) % 1000;
        auto* chain = algorithm.UpdateParamRequestState(turn % 2, state);
        algorithm.ExecuteAndDisposeBuffer(chain);
        chain = algorithm.UpdateParamRequestRealWorld(0, state * 0.01);
        algorithm.ExecuteAndDisposeBuffer(chain);
        chain = algorithm.UpdateParamByGesture(1, state);
        algorithm.ExecuteAndDisposeBuffer(chain);
        chain = algorithm.SetActiveSetup(turn % 3 == 0 ? kPluginSetup_A : kPluginSetup_B);
        algorithm.ExecuteAndDisposeBuffer(chain);
        chain = algorithm.CopySetup(kPluginSetup_A, kPluginSetup_B);
        algorithm.ExecuteAndDisposeBuffer(chain);
        algorithm.CaptureParams(0, values, 2);
        chain = algorithm.RestoreParams(nullptr, values, 2, kPluginSetup_A);
        algorithm.ExecuteAndDisposeBuffer(chain);
        chain = algorithm.UpdateAlg();
        algorithm.ExecuteAndDisposeBuffer(chain);
        algorithm.SetUpdateAlgRequired();
        algorithm.DoIdle();
        KCStMemObj out;
        if (turn % 50 == 0) {
            EXPECT_EQ(algorithm.GetChunk('X' << 24 | 'P' << 16 | 's' << 8 | 't', out, 0), 0);
        }
        if (algorithm.TryLockAlg())
            algorithm.UnLockAlg();
    }
}

TEST(AlgorithmThreads, TheLockOrdersWhateverTwoThreadsDo) {
    RecordingAlgorithm algorithm({LinearParam("Gain"), LinearParam("Trim")});
    algorithm.FinishCreate();
    algorithm.GetLinkGroups()->SetGroupInfo(1, 0, 0.0, KCLinkGroups::LawName("Relative"), true, false);
    algorithm.GetLinkGroups()->AddMember(1, 0);
    algorithm.GetLinkGroups()->AddMember(1, 1);
    algorithm.givesBlocks = true;
    std::thread other([&] { Work(algorithm, 1); });
    Work(algorithm, 2);
    other.join();
    const KCProcessMemoryPool& pool = algorithm.GetProcessMemoryPool();
    EXPECT_EQ(pool.GetNumFree(), pool.GetSize().numBlocks);
    EXPECT_GE(algorithm.GetUpdateAlgCount(), 600u);
}

} // namespace
