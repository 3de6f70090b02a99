#include <korvolib/alg/algorithm.h>
#include <korvolib/alg/meters.h>
#include <korvolib/alg/runtime_reporter.h>
#include <korvolib/utilities/error_codes.h>

#include <gmock/gmock.h>

#include <tests/support/recording_algorithm.h>

namespace {

using namespace kvTest;
using testing::ElementsAre;
using testing::IsEmpty;

// Writes down the steps of its creation.
class StepsAlgorithm : public RecordingAlgorithm {
  public:
    using RecordingAlgorithm::RecordingAlgorithm;
    int32_t selfResult = 0;

  protected:
    void StartRedisReporting() override {
        log.push_back("reporter");
        RecordingAlgorithm::StartRedisReporting();
    }
    int32_t PrepareParameterVec() override {
        log.push_back(GetProcessMutex().IsInited() ? "params (process mutex)" : "params");
        return RecordingAlgorithm::PrepareParameterVec();
    }
    int32_t PrepareParameterVecSelf() override {
        log.push_back("own params");
        AddParam(LinearParam("Own"));
        return 0;
    }
    int32_t CreateLinkGroupsInstance() override {
        log.push_back("links");
        return RecordingAlgorithm::CreateLinkGroupsInstance();
    }
    void ScaleAllParams(int32_t setup) override {
        log.push_back("scale " + std::to_string(setup));
        RecordingAlgorithm::ScaleAllParams(setup);
    }
    int32_t InitializeMeterManager() override {
        log.push_back("meters");
        return RecordingAlgorithm::InitializeMeterManager();
    }
    int32_t FinishCreateSelf() override {
        log.push_back(Broadcaster()->size() == 1 ? "self (listening)" : "self");
        return selfResult;
    }
    int32_t InitExportItemMap() override {
        log.push_back("export items");
        return 0;
    }
    int32_t Init_Key_Values() override {
        log.push_back(GetKeyValues().GetBool("FinishCreateWasCalled") ? "key values (called)" : "key values");
        return 0;
    }
};

class Reporter : public KCRuntimeReporter {
  public:
    bool isActive = true;
    bool isStarted = false;
    std::vector<std::string> details;
    void Start() noexcept override { isStarted = true; }
    bool IsActive() const noexcept override { return isActive; }
    void ReportRuntimeDetail(const char* key, const char* value) noexcept override {
        details.push_back(std::string(key) + " = " + value);
    }
};

TEST(AlgorithmCreation, RunsItsStepsInOrder) {
    StepsAlgorithm algorithm;
    algorithm.FinishCreate();
    EXPECT_THAT(algorithm.log, ElementsAre("reporter", "params", "own params", "links", "scale -1", "meters",
                                           "self (listening)", "export items", "key values"));
    EXPECT_TRUE(algorithm.GetKeyValues().GetBool("FinishCreateWasCalled"));
}

TEST(AlgorithmCreation, MakesTheProcessMutexOnlyWhenAsked) {
    StepsAlgorithm algorithm;
    algorithm.GetKeyValues().SetBool("NeedProcessThreadSafe", true);
    algorithm.FinishCreate();
    EXPECT_EQ(algorithm.log[1], "params (process mutex)");
}

TEST(AlgorithmCreation, SecondTimeDoesNothingAndGivesTheSameResult) {
    StepsAlgorithm algorithm;
    algorithm.selfResult = -42;
    EXPECT_EQ(algorithm.FinishCreate(), -42);
    algorithm.log.clear();
    algorithm.selfResult = 0;
    EXPECT_EQ(algorithm.FinishCreate(), -42);
    EXPECT_THAT(algorithm.log, IsEmpty());
}

TEST(AlgorithmCreation, ReportsItsState) {
    StepsAlgorithm algorithm;
    Reporter reporter;
    algorithm.SetRuntimeReporter(&reporter);
    algorithm.SetActiveSetup(kPluginSetup_B);
    algorithm.FinishCreate();
    algorithm.InitAlg(false);
    EXPECT_TRUE(reporter.isStarted);
    EXPECT_THAT(reporter.details, ElementsAre("alg state = created", "active_setup = 1", "alg state = InitAlg"));
}

TEST(AlgorithmCreation, ReportsNothingToAnInactiveReporter) {
    StepsAlgorithm algorithm;
    Reporter reporter;
    reporter.isActive = false;
    algorithm.SetRuntimeReporter(&reporter);
    algorithm.FinishCreate();
    EXPECT_TRUE(reporter.isStarted);
    EXPECT_THAT(reporter.details, IsEmpty());
}

TEST(AlgorithmCreation, BothSetupsBeginAtTheInitialState) {
    sCONTROL_PARAM param = LinearParam("Gain");
    param.SetInitialState(500.0);
    RecordingAlgorithm algorithm({param});
    algorithm.FinishCreate();
    for (const EPluginSetup setup : {kPluginSetup_A, kPluginSetup_B}) {
        EXPECT_EQ(algorithm.GetParam(0)->GetState(setup), 500.0);
        EXPECT_EQ(algorithm.GetParam(0)->GetRealWorld(setup), 5.0);
    }
}

TEST(AlgorithmCreation, ParametersCanBeAddedUntilItIsFinished) {
    RecordingAlgorithm algorithm;
    EXPECT_EQ(algorithm.AddParam(LinearParam("One")), 0u);
    EXPECT_EQ(algorithm.AddParam(LinearParam("Two")), 1u);
    EXPECT_EQ(algorithm.GetParamIDFromName("Two"), 1u);
    algorithm.FinishCreate();
    EXPECT_EQ(algorithm.AddParam(LinearParam("Three")), kNoParam);
    EXPECT_EQ(algorithm.GetNumParams(), 2u);
    EXPECT_EQ(algorithm.GetParamIDFromName("Two"), 1u);
    EXPECT_EQ(algorithm.GetParamIDFromName("Three"), kNoParam);
    EXPECT_EQ(algorithm.GetParamIDFromName(nullptr), kNoParam);
}

TEST(AlgorithmCreation, FirstOfEqualNamesIsFound) {
    RecordingAlgorithm algorithm({LinearParam("Same"), LinearParam("Same")});
    EXPECT_EQ(algorithm.GetParamIDFromName("Same"), 0u);
    algorithm.FinishCreate();
    EXPECT_EQ(algorithm.GetParamIDFromName("Same"), 0u);
}

TEST(AlgorithmCreation, DescriptionsAreKeptByName) {
    RecordingAlgorithm algorithm;
    EXPECT_EQ(algorithm.GetDescription("GUIXML"), nullptr);
    EXPECT_EQ(algorithm.SetDescription("GUIXML", "<a/>"), 0);
    EXPECT_STREQ(algorithm.GetDescription("GUIXML"), "<a/>");
    EXPECT_EQ(algorithm.SetDescription("GUIXML", nullptr), 0);
    EXPECT_EQ(algorithm.GetDescription("GUIXML"), nullptr);
    EXPECT_EQ(algorithm.SetDescription(nullptr, "<a/>"), kErr_NullArgument);
    EXPECT_EQ(algorithm.SetDescription("", "<a/>"), kErr_NullArgument);
    EXPECT_EQ(algorithm.GetDescription(nullptr), nullptr);
}

TEST(AlgorithmCreation, SampleRateTakesOnlyPositiveNumbers) {
    RecordingAlgorithm algorithm;
    algorithm.SetSampleRate(96000.0);
    for (const double rate : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(), HUGE_VAL})
        algorithm.SetSampleRate(rate);
    EXPECT_EQ(algorithm.GetSampleRate(), 96000.0);
}

// What the host is called with, as text; gives chains back on selector 4 like a host does.
class HostTest : public testing::Test {
  protected:
    HostTest() {
        algorithm.givesBlocks = true;
        algorithm.FinishCreate();
        algorithm.SetHostCallback(&Callback, this);
        algorithm.TakeLog();
    }
    static intptr_t Callback(int32_t selector, void* refcon, intptr_t a1, intptr_t, intptr_t, intptr_t) {
        auto* const self = static_cast<HostTest*>(refcon);
        auto* chain = reinterpret_cast<KPAPI_PROCESS_MEMORY::BUFFER_HEADER*>(a1);
        size_t length = 0;
        for (auto* block = chain; block != nullptr; block = block->next)
            ++length;
        self->calls.push_back(std::to_string(selector) + ": " + std::to_string(length));
        if (selector == kHostSelector_Dispose)
            KPAPI_PROCESS_MEMORY::GiveBackChain(chain);
        return 0;
    }
    size_t BlocksUnderWay() const {
        const KCProcessMemoryPool& pool = algorithm.GetProcessMemoryPool();
        return pool.GetSize().numBlocks - pool.GetNumFree();
    }

    RecordingAlgorithm algorithm{{LinearParam("Gain"), LinearParam("Trim")}};
    std::vector<std::string> calls;
};

TEST_F(HostTest, ChainIsExecutedThenDisposed) {
    auto* chain = cALGORITHM::ChainBufs(algorithm.UpdateParamRequestState(0, 1.0 * 100),
                                        algorithm.UpdateParamRequestState(1, 200.0));
    EXPECT_EQ(BlocksUnderWay(), 2u);
    algorithm.ExecuteAndDisposeBuffer(chain);
    EXPECT_EQ(chain, nullptr);
    EXPECT_THAT(calls, ElementsAre("0: 2", "4: 2"));
    EXPECT_EQ(BlocksUnderWay(), 0u);
}

TEST_F(HostTest, EmptyChainIsNotSent) {
    KPAPI_PROCESS_MEMORY::BUFFER_HEADER* chain = nullptr;
    algorithm.ExecuteAndDisposeBuffer(chain);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(HostTest, WithoutACallbackTheBlocksJustGoBack) {
    algorithm.SetHostCallback(nullptr, nullptr);
    auto* chain = algorithm.UpdateParamRequestState(0, 100.0);
    algorithm.ExecuteAndDisposeBuffer(chain);
    EXPECT_EQ(chain, nullptr);
    EXPECT_EQ(BlocksUnderWay(), 0u);
}

TEST_F(HostTest, InitialisationIsExecutedWhenAskedAndAlwaysDisposed) {
    EXPECT_EQ(algorithm.InitAlg(true), nullptr);
    EXPECT_THAT(calls, ElementsAre("1: 1", "4: 1"));
    calls.clear();
    EXPECT_EQ(algorithm.InitAlg(false), nullptr);
    EXPECT_THAT(calls, ElementsAre("4: 1"));
    EXPECT_EQ(BlocksUnderWay(), 0u);
}

TEST_F(HostTest, InitialisationWithoutAChainCallsNobody) {
    algorithm.givesBlocks = false;
    algorithm.InitAlg(true);
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(HostTest, WholeUpdateChainsThePartsBehind) {
    struct Part : KCAlgorithmPart {
        KPAPI_PROCESS_MEMORY::BUFFER_HEADER block;
        KPAPI_PROCESS_MEMORY::BUFFER_HEADER* UpdateAlg() override { return &block; }
    } part;
    const KCFixedString<1023> name("part");
    EXPECT_EQ(algorithm.RegisterPart(name, &part), 0);
    EXPECT_EQ(algorithm.RegisterPart(name, &part), kErr_Generic);
    EXPECT_EQ(algorithm.RegisterPart(name, nullptr), kErr_NullArgument);
    algorithm.SetUpdateAlgRequired();
    auto* chain = algorithm.UpdateAlg();
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(chain->next, &part.block);
    EXPECT_FALSE(algorithm.IsUpdateAlgRequired());
    EXPECT_EQ(algorithm.GetUpdateAlgCount(), 1u);
    algorithm.ExecuteAndDisposeBuffer(chain);
    EXPECT_EQ(algorithm.UnregisterPart(name), 0);
    EXPECT_EQ(algorithm.UnregisterPart(name), kErr_Generic);
}

TEST_F(HostTest, ExhaustedPoolIsMadeGoodByTheNextIdleCall) {
    std::vector<KPAPI_PROCESS_MEMORY::BUFFER_HEADER*> taken;
    while (auto* block = algorithm.TakeBuffer(0, 8))
        taken.push_back(block);
    EXPECT_EQ(taken.size(), algorithm.GetProcessMemoryPool().GetSize().numBlocks);
    EXPECT_TRUE(algorithm.IsUpdateAlgRequired());
    EXPECT_EQ(algorithm.UpdateParamRequestState(0, 100.0), nullptr);
    EXPECT_EQ(algorithm.GetProcessMemoryPool().GetNumRefused(), 2u);
    for (auto* block : taken)
        KPAPI_PROCESS_MEMORY::GiveBackChain(block);
    algorithm.TakeLog();
    algorithm.DoIdle();
    EXPECT_THAT(algorithm.TakeLog(), ElementsAre("apply all"));
    EXPECT_THAT(calls, ElementsAre("0: 1", "4: 1"));
    algorithm.DoIdle();
    EXPECT_THAT(algorithm.log, IsEmpty());
}

TEST_F(HostTest, WholeUpdateThatLacksABlockIsAskedForAgain) {
    std::vector<KPAPI_PROCESS_MEMORY::BUFFER_HEADER*> taken;
    while (auto* block = algorithm.TakeBuffer(0, 8))
        taken.push_back(block);
    algorithm.DoIdle();
    EXPECT_TRUE(algorithm.IsUpdateAlgRequired());
    for (auto* block : taken)
        KPAPI_PROCESS_MEMORY::GiveBackChain(block);
    algorithm.DoIdle();
    EXPECT_THAT(calls, ElementsAre("0: 1", "4: 1"));
    EXPECT_FALSE(algorithm.IsUpdateAlgRequired());
}

TEST_F(HostTest, PartsMayLeaveDuringAWholeUpdate) {
    struct Part : KCAlgorithmPart {
        std::function<void()> leave;
        int updates = 0;
        KPAPI_PROCESS_MEMORY::BUFFER_HEADER* UpdateAlg() override {
            ++updates;
            leave();
            return nullptr;
        }
    } parts[3];
    const KCFixedString<1023> names[3] = {"a", "b", "c"};
    for (int i = 0; i < 3; ++i) {
        algorithm.RegisterPart(names[i], &parts[i]);
        parts[i].leave = [] {};
    }
    parts[0].leave = [&] {
        algorithm.UnregisterPart(names[0]);
        algorithm.UnregisterPart(names[1]);
    };
    auto* chain = algorithm.UpdateAlg();
    algorithm.ExecuteAndDisposeBuffer(chain);
    EXPECT_EQ(parts[0].updates, 1);
    EXPECT_EQ(parts[1].updates, 0);
    EXPECT_EQ(parts[2].updates, 1);
}

TEST_F(HostTest, ThrowingPartLosesNoBlock) {
    struct Part : KCAlgorithmPart {
        KPAPI_PROCESS_MEMORY::BUFFER_HEADER* UpdateAlg() override { throw std::runtime_error("part"); }
    } part;
    algorithm.RegisterPart(KCFixedString<1023>("part"), &part);
    EXPECT_THROW(algorithm.UpdateAlg(), std::runtime_error);
    EXPECT_EQ(BlocksUnderWay(), 0u);
    EXPECT_TRUE(algorithm.IsUpdateAlgRequired());
}

TEST_F(HostTest, SideChainIsToldOnlyWhenItChanges) {
    algorithm.ChangeSideChainActive(true);
    algorithm.ChangeSideChainActive(true);
    EXPECT_TRUE(algorithm.IsSideChainActive());
    algorithm.ChangeSideChainActive(false);
    EXPECT_THAT(algorithm.log, ElementsAre("side on", "side off"));
}

TEST(AlgorithmHooks, ScaleFunctionsComeFromThePlugIn) {
    struct WithScale : RecordingAlgorithm {
        int32_t PrepareScaleFunctionsMapSelf(ScaleFunctionsMap& map) override {
            map[KCFixedString<127>("square")] = sUserScaleFunctions{};
            return 7;
        }
    } algorithm;
    cALGORITHM::ScaleFunctionsMap map;
    EXPECT_EQ(algorithm.PrepareScaleFunctionsMap(map), 7);
    EXPECT_EQ(map.size(), 1u);
    EXPECT_EQ(RecordingAlgorithm().PrepareScaleFunctionsMap(map), 0);
}

// ---- Afresh, and the end --------------------------------------------------------------------------------------

TEST(AlgorithmInitData, EverythingIsAsAfterCreation) {
    struct Fresh : RecordingAlgorithm {
        using RecordingAlgorithm::RecordingAlgorithm;
        void InitDataSelf() override { log.push_back("own data"); }
    };
    sCONTROL_PARAM gain = LinearParam("Gain");
    gain.SetInitialState(500.0);
    Fresh algorithm({gain, LinearParam("Trim")});
    algorithm.FinishCreate();
    algorithm.UpdateParamRequestState(0, 700.0);
    algorithm.SetActiveSetup(kPluginSetup_B);
    algorithm.UpdateParamRequestState(1, 300.0);
    algorithm.SetSetupTitle(kPluginSetup_A, KCFixedString<127>("Warm"));
    algorithm.GetParam(0)->SetSetupWord(kPluginSetup_A, 5);
    algorithm.TakeLog();
    algorithm.InitData();
    EXPECT_THAT(algorithm.log, ElementsAre("title A", "apply 1", "modified B", "notify 1", "own data"));
    EXPECT_EQ(algorithm.GetParam(0)->GetState(kPluginSetup_A), 500.0);
    EXPECT_EQ(algorithm.GetParam(1)->GetState(kPluginSetup_B), 0.0);
    EXPECT_EQ(algorithm.GetParam(0)->GetSetupWord(kPluginSetup_A), 0);
    EXPECT_EQ(algorithm.GetActiveSetup(), kPluginSetup_B);
}

TEST(AlgorithmDispose, EndsOnceWhileTheHooksCanBeReached) {
    struct Ending : RecordingAlgorithm {
        using RecordingAlgorithm::RecordingAlgorithm;
        void DisposeSelf() override {
            log.push_back(GetExecRefcon() != nullptr ? "dispose (host there)" : "dispose");
        }
    } algorithm({LinearParam("Gain")});
    algorithm.FinishCreate();
    algorithm.SetHostCallback([](int32_t, void*, intptr_t, intptr_t, intptr_t, intptr_t) -> intptr_t { return 0; },
                              &algorithm);
    algorithm.TakeLog();
    algorithm.Dispose();
    algorithm.Dispose();
    EXPECT_THAT(algorithm.TakeLog(), ElementsAre("dispose (host there)"));
    EXPECT_EQ(algorithm.GetHostCallback(), nullptr);
    EXPECT_EQ(algorithm.Broadcaster()->size(), 0u);
    algorithm.UpdateParamRequestState(0, 500.0);
    EXPECT_THAT(algorithm.log, ElementsAre("apply 0", "notify 0")); // nobody listens any more
}

// ---- Descriptions ---------------------------------------------------------------------------------------------

TEST(AlgorithmDescription, BuildsTheParametersAndTheirLinks) {
    RecordingAlgorithm algorithm;
    algorithm.SetDescription("ParamsXML", R"(<Params>
        <Param Name="Left"><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>10</Maximum>
          <Resolution>0.1</Resolution></Param>
        <Param Name="Right"><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>10</Maximum>
          <Resolution>0.1</Resolution></Param>
        <LinkGroups><LinkGroup Number="1" Law="Relative"><Member Name="Left"/><Member Name="Right"/></LinkGroup>
        </LinkGroups></Params>)");
    EXPECT_EQ(algorithm.FinishCreate(), 0);
    EXPECT_EQ(algorithm.GetParamIDFromName("Right"), 1u);
    algorithm.UpdateParamByGesture(0, 500.0);
    EXPECT_EQ(algorithm.GetParamRealWorld(1), 5.0);
}

TEST(AlgorithmDescription, TakesThePlaceOfThePlugInsOwnParameters) {
    StepsAlgorithm algorithm;
    algorithm.SetDescription("ParamsXML", "<Params><Param Name='Described'/></Params>");
    algorithm.FinishCreate();
    EXPECT_EQ(algorithm.GetNumParams(), 1u);
    EXPECT_EQ(algorithm.GetParamName(0), "Described");
}

TEST(AlgorithmDescription, WhatIsWrongIsListedAndTheRestWorks) {
    RecordingAlgorithm algorithm;
    algorithm.SetDescription(
        "ParamsXML", "<Params>\n<Param Name='Good'><ScaleType Type='none'/></Param>\n<Param/>\n<LinkGroups>\n"
                     "<LinkGroup Number='1' Law='Sideways'/></LinkGroups></Params>");
    EXPECT_EQ(algorithm.FinishCreate(), kErr_BadDescription);
    EXPECT_EQ(algorithm.GetNumParams(), 1u);
    ASSERT_EQ(algorithm.GetNumDescriptionProblems(), 3u); // no name; no such law; no members
    EXPECT_EQ(algorithm.GetDescriptionProblem(0)->Description, "ParamsXML");
    EXPECT_EQ(algorithm.GetDescriptionProblem(0)->Line, 3);
    EXPECT_EQ(algorithm.GetDescriptionProblem(1)->Line, 5);
    EXPECT_EQ(algorithm.GetDescriptionProblem(3), nullptr);
}

TEST(AlgorithmDescription, TextThatIsNoXmlLeavesNoParameters) {
    RecordingAlgorithm algorithm;
    algorithm.SetDescription("ParamsXML", "<Params><Param Name='Lost'/>");
    EXPECT_EQ(algorithm.FinishCreate(), kErr_MalformedText);
    EXPECT_EQ(algorithm.GetNumParams(), 0u);
    EXPECT_EQ(algorithm.GetNumDescriptionProblems(), 1u);
}

} // namespace
