#include <korvolib/alg/algorithm_broadcaster.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <tests/support/virtual_slot.h>

namespace {

using namespace kvKorvo;
using testing::ElementsAre;
using testing::IsEmpty;

class Listener : public KCAlgorithmListener {
  public:
    explicit Listener(std::vector<std::string>& log, std::string name = "") : m_log(log), m_name(std::move(name)) {}
    std::function<void()> onModified;

    void PresetLoaded(EPluginSetup setup) override { Write("loaded", setup); }
    void PresetModified(EPluginSetup setup) override {
        Write("modified", setup);
        if (onModified)
            onModified();
    }
    void SetupTitleChanged(EPluginSetup setup) override { Write("title", setup); }
    void ActiveSetupChanged(EPluginSetup setup) override { Write("active", setup); }
    void ActiveSideChainChanged(bool isActive) override { Write("side chain", isActive); }

  private:
    void Write(const char* what, int argument) { m_log.push_back(m_name + what + " " + std::to_string(argument)); }

    std::vector<std::string>& m_log;
    std::string m_name;
};

TEST(AlgorithmListener, OperationsStandInTheirSlots) {
    EXPECT_EQ(kvTest::VirtualSlot(&KCAlgorithmListener::PresetLoaded), 0);
    EXPECT_EQ(kvTest::VirtualSlot(&KCAlgorithmListener::PresetModified), 1);
    EXPECT_EQ(kvTest::VirtualSlot(&KCAlgorithmListener::SetupTitleChanged), 2);
    EXPECT_EQ(kvTest::VirtualSlot(&KCAlgorithmListener::ActiveSetupChanged), 3);
    EXPECT_EQ(kvTest::VirtualSlot(&KCAlgorithmListener::ActiveSideChainChanged), 4);
}

TEST(AlgorithmBroadcaster, PassesEveryCallOn) {
    std::vector<std::string> log;
    Listener listener(log);
    KCAlgorithmBroadcaster broadcaster;
    broadcaster.insert(&listener);
    broadcaster.PresetLoaded(kPluginSetup_A);
    broadcaster.PresetModified(kPluginSetup_B);
    broadcaster.SetupTitleChanged(kPluginSetup_A);
    broadcaster.ActiveSetupChanged(kPluginSetup_B);
    broadcaster.ActiveSideChainChanged(true);
    EXPECT_THAT(log, ElementsAre("loaded 0", "modified 1", "title 0", "active 1", "side chain 1"));
}

TEST(AlgorithmBroadcaster, ListenersHearInTheOrderOfInsertion) {
    std::vector<std::string> log;
    Listener first(log, "first "), second(log, "second ");
    KCAlgorithmBroadcaster broadcaster;
    EXPECT_TRUE(broadcaster.insert(&second));
    EXPECT_TRUE(broadcaster.insert(&first));
    EXPECT_FALSE(broadcaster.insert(&first));
    EXPECT_FALSE(broadcaster.insert(nullptr));
    EXPECT_FALSE(broadcaster.insert(&broadcaster));
    broadcaster.PresetModified(kPluginSetup_A);
    EXPECT_THAT(log, ElementsAre("second modified 0", "first modified 0"));
    EXPECT_EQ(broadcaster.size(), 2u);
}

TEST(AlgorithmBroadcaster, ErasedListenerHearsNothingMore) {
    std::vector<std::string> log;
    Listener first(log, "first "), second(log, "second ");
    KCAlgorithmBroadcaster broadcaster;
    broadcaster.insert(&first);
    broadcaster.insert(&second);
    first.onModified = [&] {
        EXPECT_TRUE(broadcaster.erase(&second));
        EXPECT_FALSE(broadcaster.erase(&second));
        broadcaster.erase(&first);
        EXPECT_EQ(broadcaster.size(), 0u);
    };
    broadcaster.PresetModified(kPluginSetup_A);
    broadcaster.PresetModified(kPluginSetup_A);
    EXPECT_THAT(log, ElementsAre("first modified 0"));
    EXPECT_FALSE(broadcaster.erase(nullptr));
}

TEST(AlgorithmBroadcaster, ListenerInsertedMeanwhileHearsTheNextCall) {
    std::vector<std::string> log;
    Listener first(log, "first "), second(log, "second ");
    KCAlgorithmBroadcaster broadcaster;
    broadcaster.insert(&first);
    first.onModified = [&] { broadcaster.insert(&second); };
    broadcaster.PresetModified(kPluginSetup_A);
    EXPECT_THAT(log, ElementsAre("first modified 0"));
    broadcaster.PresetLoaded(kPluginSetup_A);
    EXPECT_THAT(log, ElementsAre("first modified 0", "first loaded 0", "second loaded 0"));
}

TEST(AlgorithmBroadcaster, ThrowingListenerLeavesItWorking) {
    std::vector<std::string> log;
    Listener listener(log);
    KCAlgorithmBroadcaster broadcaster;
    broadcaster.insert(&listener);
    listener.onModified = [&] {
        broadcaster.erase(&listener);
        throw std::runtime_error("listener");
    };
    EXPECT_THROW(broadcaster.PresetModified(kPluginSetup_A), std::runtime_error);
    EXPECT_TRUE(broadcaster.insert(&listener));
    EXPECT_EQ(broadcaster.size(), 1u);
}

TEST(AlgorithmBroadcaster, ClearedWhileTellingItFallsSilent) {
    std::vector<std::string> log;
    Listener first(log, "first "), second(log, "second ");
    KCAlgorithmBroadcaster broadcaster;
    broadcaster.insert(&first);
    broadcaster.insert(&second);
    first.onModified = [&] { broadcaster.clear(); };
    broadcaster.PresetModified(kPluginSetup_A);
    EXPECT_THAT(log, ElementsAre("first modified 0"));
    EXPECT_EQ(broadcaster.size(), 0u);
    broadcaster.insert(&second);
    broadcaster.clear();
    EXPECT_EQ(broadcaster.size(), 0u);
}

} // namespace
