#include <korvolib/alg/control_param.h>

#include <limits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/allocation_count.h>

using namespace kvKorvoV12_9_0_320;

namespace {

struct Listener : KCParamController {
    std::vector<size_t>& Heard;
    explicit Listener(std::vector<size_t>& heard) : Heard(heard) {}
    void OnParamChanged(size_t paramIndex) noexcept override { Heard.push_back(paramIndex); }
};

struct Extension : KCParamExtension {
    int Value;
    explicit Extension(int value) : Value(value) {}
    std::unique_ptr<KCParamExtension> Clone() const override { return std::make_unique<Extension>(*this); }
};

int ValueOf(const sCONTROL_PARAM& param) { return static_cast<Extension*>(param.GetParamExtension())->Value; }

double Thrice(double delta, double acceleration) { return delta * 3.0 + acceleration; }

} // namespace

TEST(ControlParam, AFreshRecordIsBoundToNothing) {
    const sCONTROL_PARAM param;
    EXPECT_TRUE(param.GetControllers().empty() && param.GetObservers().empty());
    EXPECT_TRUE(param.GetLinkGroups().empty() && param.GetControlledLinkGroups().empty());
    EXPECT_EQ(param.GetParamExtension(), nullptr);
    EXPECT_EQ(param.GetGraph().GetCapacity(), 0u);
    EXPECT_EQ(param.GetMouseAccelerationValue(), sCONTROL_PARAM::kNoMouseAcceleration);
    EXPECT_EQ(sCONTROL_PARAM::kNoMouseAcceleration, -1.0);
    EXPECT_EQ(param.GetDisabledMode(), 0);
    EXPECT_EQ(param.GetCurrentImage(kPluginSetup_A), -1);
    EXPECT_FALSE(param.IsHidden());
    EXPECT_EQ(sCONTROL_PARAM(KCFixedString<127>("Gain")).GetName(), "Gain");
}

TEST(ControlParam, FlagsReadInWords) {
    sCONTROL_PARAM param;
    EXPECT_FALSE(param.IsUnused() || param.IsLab() || param.IsContinuousParamCyclic());
    EXPECT_TRUE(param.IsDiscreteParamCyclic());
    param.SetFlags(0x800);
    EXPECT_TRUE(param.IsUnused());
    param.SetFlags(0x1000);
    EXPECT_FALSE(param.IsDiscreteParamCyclic());
    param.SetFlags(0x2000);
    EXPECT_TRUE(param.IsContinuousParamCyclic());
    param.SetFlags(0x4000);
    EXPECT_TRUE(param.IsLab());
}

TEST(ControlParam, SettingLabTouchesNoOtherFlag) {
    sCONTROL_PARAM param;
    param.SetFlags(0x80000801u);
    param.SetLab(true);
    EXPECT_EQ(param.GetFlags(), 0x80004801u);
    param.SetLab(false);
    EXPECT_EQ(param.GetFlags(), 0x80000801u);
}

TEST(ControlParam, ControllersAreBoundOnceAndLeave) {
    std::vector<size_t> heard;
    Listener a(heard), b(heard);
    sCONTROL_PARAM param;
    EXPECT_TRUE(param.AddController(&a));
    EXPECT_FALSE(param.AddController(&a));
    EXPECT_FALSE(param.AddController(nullptr));
    EXPECT_TRUE(param.AddController(&b));
    EXPECT_EQ(param.GetControllers(), (std::vector<KCParamController*>{&a, &b}));
    EXPECT_TRUE(param.RemoveController(&a));
    EXPECT_FALSE(param.RemoveController(&a));
    EXPECT_FALSE(param.ControllerExists(&a));
    EXPECT_TRUE(param.ControllerExists(&b));
}

TEST(ControlParam, ObserversAreNoControllers) {
    std::vector<size_t> heard;
    Listener a(heard);
    sCONTROL_PARAM param;
    EXPECT_TRUE(param.AddObserver(&a));
    EXPECT_TRUE(param.ObserverExists(&a));
    EXPECT_FALSE(param.ControllerExists(&a));
    EXPECT_TRUE(param.GetControllers().empty());
    EXPECT_TRUE(param.RemoveObserver(&a));
    EXPECT_TRUE(param.GetObservers().empty());
}

TEST(ControlParam, UpdateControllersTellsControllersThenObservers) {
    std::vector<size_t> controllers, observers;
    Listener control(controllers), registration(observers);
    sCONTROL_PARAM param;
    param.AddObserver(&registration);
    param.AddController(&control);
    const kvTest::AllocationCount count;
    sCONTROL_PARAM unbound;
    unbound.UpdateControllers(5);
    EXPECT_EQ(count.Taken(), 0u);
    param.UpdateControllers(7);
    EXPECT_EQ(controllers, std::vector<size_t>{7});
    EXPECT_EQ(observers, std::vector<size_t>{7});
}

TEST(ControlParam, ACopyTakesEverythingButTheBindings) {
    std::vector<size_t> heard;
    Listener a(heard);
    sCONTROL_PARAM param(KCFixedString<127>("Gain"));
    param.AddController(&a);
    param.AddObserver(&a);
    param.AddLinkGroup(3);
    param.ResizeGraph(2);
    param.GetGraph().AddPoint({1.0, 2.0});
    param.SetParamExtension(std::make_unique<Extension>(7));
    const sCONTROL_PARAM copy = param;
    EXPECT_EQ(copy.GetName(), "Gain");
    EXPECT_EQ(copy.GetLinkGroups(), std::vector<int>{3});
    EXPECT_EQ(copy.GetGraph().GetPoints().size(), 1u);
    EXPECT_EQ(ValueOf(copy), 7);
    EXPECT_NE(copy.GetParamExtension(), param.GetParamExtension());
    EXPECT_TRUE(copy.GetControllers().empty() && copy.GetObservers().empty());
    EXPECT_TRUE(param.ControllerExists(&a) && param.ObserverExists(&a));
}

TEST(ControlParam, AssigningLeavesTheBindingsOfTheTarget) {
    std::vector<size_t> heard;
    Listener a(heard), b(heard);
    sCONTROL_PARAM param, other(KCFixedString<127>("Gain"));
    param.AddController(&a);
    other.AddController(&b);
    param = other;
    EXPECT_EQ(param.GetName(), "Gain");
    EXPECT_EQ(param.GetControllers(), std::vector<KCParamController*>{&a});
    const sCONTROL_PARAM& itself = param;
    param = itself;
    EXPECT_EQ(param.GetControllers(), std::vector<KCParamController*>{&a});
}

TEST(ControlParam, MovingTakesTheBindingsAlong) {
    std::vector<size_t> heard;
    Listener a(heard);
    std::vector<sCONTROL_PARAM> params(1);
    params[0].AddController(&a);
    params[0].SetName(KCFixedString<127>("Gain"));
    params[0].SetParamExtension(std::make_unique<Extension>(7));
    const KCParamExtension* const extension = params[0].GetParamExtension();
    params.reserve(100);
    EXPECT_TRUE(params[0].ControllerExists(&a));
    EXPECT_EQ(params[0].GetName(), "Gain");
    EXPECT_EQ(params[0].GetParamExtension(), extension);
}

TEST(ControlParam, ResettingLeavesAFreshRecord) {
    std::vector<size_t> heard;
    Listener a(heard);
    sCONTROL_PARAM param(KCFixedString<127>("Gain"));
    param.AddController(&a);
    param.AddLinkGroup(3);
    param.SetScaleToggle(4);
    param.SetRefreshMark();
    param.ResetMembers();
    EXPECT_TRUE(param.GetName().empty() && param.GetLinkGroups().empty() && param.GetControllers().empty());
    EXPECT_EQ(param.GetScaleFunction(), nullptr);
    EXPECT_EQ(param.GetRefreshMark(), 0);
}

TEST(ControlParam, CopySetupTakesStateValueAndWord) {
    sCONTROL_PARAM param;
    param.SetState(kPluginSetup_B, 1.0);
    param.SetRealWorld(kPluginSetup_B, 2.0);
    param.SetSetupWord(kPluginSetup_B, 3);
    param.CopySetup(kPluginSetup_B, kPluginSetup_A);
    EXPECT_EQ(param.GetState(kPluginSetup_A), 1.0);
    EXPECT_EQ(param.GetRealWorld(kPluginSetup_A), 2.0);
    EXPECT_EQ(param.GetSetupWord(kPluginSetup_A), 3);
}

TEST(ControlParam, ALinkGroupIsListedOnce) {
    sCONTROL_PARAM param;
    for (const int group : {2, 1, 2}) {
        param.AddLinkGroup(group);
        param.AddControlledLinkGroup(group + 10);
    }
    EXPECT_EQ(param.GetLinkGroups(), (std::vector<int>{2, 1}));
    EXPECT_EQ(param.GetControlledLinkGroups(), (std::vector<int>{12, 11}));
    param.ClearLinkGroups();
    param.ClearControlledLinkGroups();
    EXPECT_TRUE(param.GetLinkGroups().empty() && param.GetControlledLinkGroups().empty());
}

TEST(ControlParam, MouseDeltasPassUnlessTheyAccelerate) {
    sCONTROL_PARAM param;
    EXPECT_EQ(param.ConvertMouseDelta(-2.5), -2.5);
    param.SetMouseAccelerationValue(0.5);
    EXPECT_EQ(param.ConvertMouseDelta(4.0), 12.0);
    EXPECT_EQ(param.ConvertMouseDelta(-4.0), -12.0);
    for (const double none : {-3.0, 0.0, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(sCONTROL_PARAM::DefaultMouseDelta(4.0, none), 4.0);
}

TEST(ControlParam, AMouseDeltaFunctionGetsTheAcceleration) {
    sCONTROL_PARAM param;
    param.SetMouseAccelerationValue(0.5);
    param.SetMouseDeltaFunc(Thrice);
    EXPECT_EQ(param.ConvertMouseDelta(2.0), 6.5);
    param.SetMouseDeltaFunc(nullptr);
    EXPECT_EQ(param.GetMouseDeltaFunc(), &sCONTROL_PARAM::DefaultMouseDelta);
}

TEST(ControlParam, DisplayStateAsksForARedrawOnlyWhenItChanges) {
    sCONTROL_PARAM param;
    param.UpdateDisabledMode(0);
    param.ShowControl();
    EXPECT_EQ(param.GetRefreshMark(), 0);
    param.UpdateDisabledMode(2);
    EXPECT_EQ(param.GetDisabledMode(), 2);
    EXPECT_EQ(param.GetRefreshMark(), kRefreshMark);
    param.SetRefreshMark(0);
    param.HideControl();
    EXPECT_TRUE(param.IsHidden());
    EXPECT_EQ(param.GetRefreshMark(), 3);
}

TEST(ControlParam, EachSetupHasItsPicture) {
    sCONTROL_PARAM param;
    param.SetCurrentImage(kPluginSetup_B, 4);
    param.SetCurrentImage(kPluginSetup_Active, 9);
    EXPECT_EQ(param.GetCurrentImage(kPluginSetup_A), -1);
    EXPECT_EQ(param.GetCurrentImage(kPluginSetup_B), 4);
    EXPECT_EQ(param.GetCurrentImage(kPluginSetup_Active), -1);
}

TEST(ControlParam, MarksAndComparisonAreStored) {
    sCONTROL_PARAM param;
    EXPECT_FALSE(param.IsComparisonPending() || param.IsUpdatePending() || param.IsLinkedInThisPass());
    param.SetComparisonPending(true);
    EXPECT_TRUE(param.IsComparisonPending() && !param.IsUpdatePending());
    param.SetUpdatePending(true);
    param.SetLinkedInThisPass(true);
    param.SetComparisonValue(-1.5);
    EXPECT_TRUE(param.IsUpdatePending() && param.IsLinkedInThisPass());
    EXPECT_EQ(param.GetComparisonValue(), -1.5);
}
