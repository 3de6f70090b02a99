// No memory at any one place: nothing is half done, nothing hangs on what is gone.
#include <gtest/gtest.h>

#include <korvolib/gui/gui_control_test_internal.h>
#include <korvolib/gui/window_test_internal.h>
#include <tests/support/allocation_count.h>

namespace kvTest {
namespace {

using namespace kvKorvo;

constexpr size_t kPlenty = 4000; // allocations, more than anything here asks for

class GUIMemory : public ::testing::Test {
  protected:
    GUIMemory() : alg(ThreeParams()) { alg.FinishCreate(); }
    RecordingAlgorithm alg;
};

TEST_F(GUIMemory, RegisteringWithoutAnyChangesNothing) {
    for (size_t numGiven = 0; numGiven < kPlenty; ++numGiven) {
        PlainControl control;
        ASSERT_EQ(control.Register(&alg, 0, KCRegisterInfo(kRegister_Drag)), kErr_NoErr);
        int32_t result = kErr_NoErr;
        {
            const AllocationFailure failure(numGiven);
            result = control.Register(&alg, 1, KCRegisterInfo(kRegister_Wheel));
        }
        if (result == kErr_NoErr)
            return;
        EXPECT_EQ(result, kErr_AllocationFailed);
        ASSERT_EQ(control.GetParamDataVec().size(), 1u);
        EXPECT_EQ(control.GetLeadParamIndex(), 0u);
        EXPECT_TRUE(alg.GetParam(1)->GetObservers().empty());
    }
    FAIL() << "it never succeeds";
}

TEST_F(GUIMemory, MovingOnWithoutAnyMovesNone) {
    for (size_t numGiven = 0; numGiven < kPlenty; ++numGiven) {
        RecordingAlgorithm fresh(ThreeParams());
        fresh.FinishCreate();
        PlainControl control;
        control.Register(&fresh, 0, KCRegisterInfo(kRegister_Drag));
        control.Register(&fresh, 1, KCRegisterInfo(kRegister_Wheel));
        int32_t result = kErr_NoErr;
        {
            const AllocationFailure failure(numGiven);
            result = control.OffsetParamIter(1);
        }
        const size_t moved = result == kErr_NoErr ? 1 : 0;
        EXPECT_EQ(control.GetParamData(1)->GetParamIndex(), 1 + moved);
        EXPECT_EQ(fresh.GetParam(0)->GetObservers().size(), 1 - moved);
        EXPECT_EQ(fresh.GetParam(1)->GetObservers().size(), 1u);
        EXPECT_EQ(fresh.GetParam(2)->GetObservers().size(), moved);
        if (result == kErr_NoErr)
            return;
        EXPECT_EQ(result, kErr_AllocationFailed);
    }
    FAIL() << "it never succeeds";
}

TEST_F(GUIMemory, AControlsOwnRecordCanBeRegisteredAgain) {
    PlainControl control;
    ASSERT_EQ(control.Register(&alg, 1, KCRegisterInfo(kRegister_Drag)), kErr_NoErr);
    for (size_t count = 2; count <= 200; ++count)
        ASSERT_EQ(control.Register(*control.GetParamData(0)), kErr_NoErr);
    EXPECT_EQ(control.GetParamData(199)->GetParamIndex(), 1u);
    EXPECT_EQ(alg.GetParam(1)->GetObservers().size(), 1u);
    alg.UpdateParamState(1, 2.0, false);
    EXPECT_EQ(control.numHeard, 1u);
    EXPECT_EQ(control.UnRegisterParam(1), kErr_NoErr);
    EXPECT_TRUE(alg.GetParam(1)->GetObservers().empty());
}

TEST_F(GUIMemory, ACopyThatFailsIsNotHeardOfAgain) {
    for (size_t numGiven = 0; numGiven < kPlenty; ++numGiven) {
        RecordingAlgorithm fresh(ThreeParams()); // whose lists have no room of an earlier copy
        fresh.FinishCreate();
        TestControl original;
        for (const size_t param : {0u, 1u, 2u})
            original.Register(&fresh, param, KCRegisterInfo(kRegister_Drag));
        std::unique_ptr<KCBaseControl> copy;
        try {
            const AllocationFailure failure(numGiven);
            copy = original.Clone();
        } catch (const std::bad_alloc&) {
        }
        for (const size_t param : {0u, 1u, 2u})
            EXPECT_EQ(fresh.GetParam(param)->GetObservers().size(), copy == nullptr ? 1u : 2u);
        if (copy != nullptr)
            return;
    }
    FAIL() << "it never succeeds";
}

TEST(WindowMemory, AWindowIsThereOrNot) {
    using namespace kvWindowTest;
    RecordingAlgorithm algorithm(kvWindowTest::Params());
    algorithm.FinishCreate();
    const std::string xml = EveryClassXML();
    for (size_t numGiven = 0; numGiven < kPlenty; ++numGiven) {
        int32_t result = kErr_NoErr;
        CStandardGUI_X window;
        {
            const AllocationFailure failure(numGiven);
            result = window.Create(algorithm, xml.c_str());
        }
        if (result == kErr_NoErr)
            return;
        window.MouseDown(Down(40, 45));
        window.Close();
        for (size_t param = 0; param < algorithm.GetNumParams(); ++param)
            ASSERT_TRUE(algorithm.GetParam(param)->GetObservers().empty()) << numGiven;
    }
    FAIL() << "it never succeeds";
}

} // namespace
} // namespace kvTest
