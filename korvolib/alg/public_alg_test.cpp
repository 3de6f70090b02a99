#include <korvolib/alg/public_alg.h>

#include <cstring>

#include <gmock/gmock.h>

#include <korvolib/utilities/error_codes.h>
#include <tests/support/allocation_count.h>
#include <tests/support/recording_algorithm.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::IsEmpty;

class PublicAlg : public testing::Test {
  protected:
    PublicAlg() {
        algorithm.FinishCreate();
        algorithm.TakeLog();
    }
    RecordingAlgorithm algorithm{{LinearParam("Gain"), LinearParam("Tilt")}};
    CPublicAlg face{&algorithm};
};

TEST_F(PublicAlg, KnowsTheParametersByName) {
    EXPECT_EQ(face.GetNumParams(), 2u);
    EXPECT_EQ(face.GetParamName(1), "Tilt");
    EXPECT_EQ(face.GetParamName(2), "");
    EXPECT_EQ(face.GetParamIDFromName(KCFixedString<127>("Tilt")), 1u);
    EXPECT_EQ(face.GetParamIDFromName(KCFixedString<127>("Gone")), kNoParam);
}

TEST_F(PublicAlg, OfNoAlgorithmIsEmpty) {
    const CPublicAlg none;
    sALGORITHM_STATE state;
    ASSERT_EQ(face.CaptureState(state), 0);
    EXPECT_EQ(none.CaptureState(state), kErr_NullArgument);
    EXPECT_EQ(state.values.size(), 0u);
    EXPECT_EQ(none.RestoreState(state), kErr_NullArgument);
    EXPECT_EQ(none.RestorePreset(state), kErr_NullArgument);
    EXPECT_FALSE(none.IsValid());
    EXPECT_EQ(none.GetNumParams(), 0u);
    EXPECT_EQ(none.GetParamName(0), "");
    EXPECT_EQ(none.GetParamIDFromName(KCFixedString<127>("Gain")), kNoParam);
    EXPECT_FALSE(none.IsParamSavedToUndo(0));
    EXPECT_FALSE(none == face);
}

TEST_F(PublicAlg, CapturedStateComesBackAndIsToldOnce) {
    sALGORITHM_STATE state;
    ASSERT_EQ(face.CaptureState(state), 0);
    algorithm.UpdateParamRequestState(1, 400.0);
    algorithm.SetSetupTitle(kPluginSetup_B, KCFixedString<127>("Warm"));
    algorithm.TakeLog();
    EXPECT_EQ(face.RestoreState(state), 0);
    EXPECT_THAT(algorithm.TakeLog(), ElementsAre("title B", "apply 1", "modified A", "notify 1"));
    EXPECT_EQ(face.RestoreState(state), 0);
    EXPECT_THAT(algorithm.TakeLog(), IsEmpty()); // nothing differs
    EXPECT_EQ(face.RestorePreset(state), 0);
    EXPECT_THAT(algorithm.TakeLog(), ElementsAre("loaded A"));
}

TEST_F(PublicAlg, CapturingAgainTakesNoMemory) {
    sALGORITHM_STATE state;
    ASSERT_EQ(face.CaptureState(state), 0);
    const AllocationCount count;
    ASSERT_EQ(face.CaptureState(state), 0);
    EXPECT_EQ(count.Taken(), 0u);
}

TEST_F(PublicAlg, ParametersAreSavedUnlessTheAlgorithmSaysNo) {
    struct Picky : RecordingAlgorithm {
        using RecordingAlgorithm::RecordingAlgorithm;
        mutable int asked = 0;
        bool IsParamSavableToUndo(size_t index) const override {
            ++asked;
            return index != 1;
        }
    } picky({LinearParam("Gain"), LinearParam("Meter"), LinearParam("Tilt")});
    picky.FinishCreate();
    EXPECT_EQ(picky.asked, 3);
    EXPECT_THAT(picky.GetParamsNotSavedToUndo(), ElementsAre(1u));
    const CPublicAlg pickyFace(&picky);
    EXPECT_TRUE(pickyFace.IsParamSavedToUndo(0));
    EXPECT_FALSE(pickyFace.IsParamSavedToUndo(1));
    EXPECT_FALSE(pickyFace.IsParamSavedToUndo(3));
}

TEST_F(PublicAlg, RestoringBeforeFinishCreateWritesTheValues) {
    RecordingAlgorithm early({LinearParam("Gain")});
    sALGORITHM_STATE state;
    ASSERT_EQ(CPublicAlg(&early).CaptureState(state), 0);
    state.values.data()[0] = {{500.0, 250.0}, {5.0, 2.5}};
    EXPECT_EQ(CPublicAlg(&early).RestoreState(state), 0);
    EXPECT_EQ(early.GetParamState(0), 500.0);
}

TEST(ParamValues, MoveAndCompareBitForBit) {
    KCParamValues a, b;
    EXPECT_TRUE(a == b);
    ASSERT_EQ(a.Allocate(2), 0);
    ASSERT_EQ(b.Allocate(2), 0);
    std::memset(static_cast<void*>(a.data()), 0xFF, 2 * sizeof(sPARAM_VALUES)); // not-a-numbers
    std::memset(static_cast<void*>(b.data()), 0xFF, 2 * sizeof(sPARAM_VALUES));
    EXPECT_TRUE(a == b);
    b.data()[1].state[0] = 0.0;
    EXPECT_FALSE(a == b);
    b = std::move(a);
    EXPECT_EQ(a.size(), 0u);
    EXPECT_EQ(b.size(), 2u);
    const KCParamValues c = std::move(b);
    EXPECT_EQ(c.size(), 2u);
}

TEST(ParamValues, ImpossibleSizesFail) {
    KCParamValues values;
    ASSERT_EQ(values.Allocate(2), 0);
    EXPECT_EQ(values.Allocate(SIZE_MAX), kErr_AllocationFailed);
    EXPECT_EQ(values.size(), 0u);
    EXPECT_EQ(values.Allocate(0), 0);
}

} // namespace
