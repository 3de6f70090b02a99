#include "midi_player.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <random>
#include <sstream>

#include <shells/plugin_runner.h>
#include <tests/host/plugins/window_plugin.h>

#include "callback_log.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

constexpr int32_t kRateHz = 1000; // a frame a millisecond

constexpr const char* kControls = R"(<GUI><Control_List>
  <cCONTROLLER Name="Gain"><ParameterList><Parameter Name="Gain"/></ParameterList>
    <MIDI EventType="4" ControlID="7"/></cCONTROLLER>
  <cCONTROLLER Name="Pan"><ParameterList><Parameter Name="Pan"/></ParameterList></cCONTROLLER>
  <cCONTROLLER Name="Mode"><ParameterList><Parameter Name="Mode"/></ParameterList>
    <MIDI EventType="2" ControlID="60"/></cCONTROLLER>
</Control_List></GUI>)";

kvMIDI::KorvoMidiEvent Volume(uint8_t value) { return {0xB0, 7, value}; }

struct sRIG {
    explicit sRIG(std::vector<sTIMED_MIDI_EVENT> theEvents = {}) : events(std::move(theEvents)) {
        EXPECT_EQ(runner.Create(), kErr_NoErr);
        automation.emplace(plugin);
        player.emplace(plugin, *automation, events, kRateHz, true);
    }
    size_t NumPlayed() const { return player->GetNumPlayed(); }

    kvTest::KCWindowPlugin plugin{kControls};
    KCPluginRunner runner{plugin};
    std::vector<sTIMED_MIDI_EVENT> events;
    std::optional<KCHostAutomation> automation;
    std::optional<KCMidiPlayer> player;
};

TEST(MidiPlayer, PlaysWhatIsDueInABlockWhenItBegins) {
    sRIG rig({{0.1, Volume(0)}, {0.109, Volume(127)}, {0.11, Volume(0)}});
    rig.player->PlayBlock(90, 10);
    EXPECT_EQ(rig.NumPlayed(), 0u);
    rig.player->PlayBlock(100, 10);
    EXPECT_EQ(rig.NumPlayed(), 2u);
    EXPECT_EQ(rig.plugin.GetParamState(0), 1000.0);
    EXPECT_EQ(rig.player->GetPlayed()[1].atSeconds, 0.109);
    EXPECT_EQ(rig.player->GetPlayed()[1].playedSeconds, 0.1);
    EXPECT_EQ(rig.player->GetNumLeft(), 1u);
    rig.player->PlayBlock(110, 10);
    EXPECT_EQ(rig.plugin.GetParamState(0), 0.0);
}

TEST(MidiPlayer, RoundsTimesToWholeFrames) {
    sRIG rig({{0.1094, Volume(1)}, {0.1096, Volume(2)}});
    rig.player->PlayBlock(100, 10);
    EXPECT_EQ(rig.NumPlayed(), 1u);
}

TEST(MidiPlayer, TellsWhatEachEventDid) {
    sRIG rig(
        {{0.0, Volume(127)}, {0.0, Volume(127)}, {0.0, {0xB0, 8, 0}}, {0.0, {0x90, 60, 1}}, {0.0, {0x80, 60, 0}}});
    rig.player->PlayBlock(0, 1);
    EXPECT_EQ(rig.player->GetPlayed()[0].what, "controller 7 at 127");
    EXPECT_EQ(rig.player->GetPlayed()[0].effect, "Gain 0.0 → 50.0");
    EXPECT_EQ(rig.player->GetPlayed()[1].effect, "nothing changed");
    EXPECT_EQ(rig.player->GetPlayed()[2].effect, "no control hears it");
    EXPECT_EQ(rig.player->GetPlayed()[3].effect, "Mode 0 → 1");
    EXPECT_EQ(rig.player->GetPlayed()[4].effect, "no control hears it"); // a note off presses nothing
}

TEST(MidiPlayer, KeepsNothingThatIsNotTold) {
    sRIG rig({{0.0, Volume(127)}});
    KCMidiPlayer player(rig.plugin, *rig.automation, rig.events, kRateHz, false);
    player.PlayBlock(0, 1);
    EXPECT_EQ(rig.plugin.GetParamState(0), 1000.0);
    EXPECT_EQ(player.GetNumPlayed(), 1u);
    EXPECT_TRUE(player.GetPlayed().empty());
}

TEST(MidiPlayer, WithoutEventsPlaysNothing) {
    sRIG rig;
    rig.player->PlayBlock(0, 65536);
    EXPECT_EQ(rig.NumPlayed(), 0u);
    EXPECT_EQ(rig.player->GetNumLeft(), 0u);
}

TEST(HostAutomation, LearnsTheNextController) {
    sRIG rig({{0.0, {0xB0, 20, 5}}, {0.0, {0xB0, 20, 127}}});
    EXPECT_EQ(rig.automation->Learn(1), "waits for a controller");
    rig.player->PlayBlock(0, 1);
    EXPECT_EQ(rig.player->GetPlayed()[0].effect, "\"Pan\" hears it from now on");
    EXPECT_EQ(rig.player->GetPlayed()[1].effect, "Pan 0.0 → 50.0");
}

TEST(HostAutomation, LearningForgetsTheControllerBefore) {
    sRIG rig({{0.0, {0xB0, 20, 5}}, {0.0, Volume(127)}});
    rig.automation->Learn(0);
    rig.player->PlayBlock(0, 1);
    EXPECT_EQ(rig.player->GetPlayed()[1].effect, "no control hears it");
    EXPECT_EQ(rig.plugin.GetParamState(0), 500.0);
}

TEST(HostAutomation, OnlyTheControlNamedLastLearns) {
    sRIG rig({{0.0, {0xB0, 20, 5}}});
    rig.automation->Learn(0);
    rig.automation->Learn(1);
    rig.player->PlayBlock(0, 1);
    EXPECT_EQ(rig.player->GetPlayed()[0].effect, "\"Pan\" hears it from now on");
    EXPECT_EQ(rig.plugin.GetAutomationManager()->WhichControlInMIDILearn(), kNoControl);
}

TEST(HostAutomation, AGlidingControlLearnsNoNote) {
    sRIG rig({{0.0, {0x90, 20, 5}}});
    rig.automation->Learn(1);
    rig.player->PlayBlock(0, 1);
    EXPECT_EQ(rig.player->GetPlayed()[0].effect, "not learnt");
    EXPECT_EQ(rig.plugin.GetAutomationManager()->WhichControlInMIDILearn(), 1u);
}

TEST(HostAutomation, DetachesOneControl) {
    sRIG rig({{0.0, Volume(0)}, {0.0, {0x90, 60, 1}}});
    EXPECT_EQ(rig.automation->Detach(0), "it heard controller 7");
    EXPECT_EQ(rig.automation->Detach(0), "it heard nothing");
    rig.player->PlayBlock(0, 1);
    EXPECT_EQ(rig.player->GetPlayed()[0].effect, "no control hears it");
    EXPECT_EQ(rig.player->GetPlayed()[1].effect, "Mode 0 → 1");
}

TEST(HostAutomation, DisconnectsTheControlsAtItsEnd) {
    sRIG rig;
    EXPECT_EQ(rig.plugin.GetAutomationManager()->GetAutomationRefCon2(2), 2);
    EXPECT_NE(rig.plugin.GetAutomationManager()->GetAutomationRefCon1(2), 0);
    rig.automation.reset();
    EXPECT_EQ(rig.plugin.GetAutomationManager()->GetAutomationRefCon1(2), 0);
}

TEST(CallbackLog, KeepsTheOrderAndTheTime) {
    sRIG rig({{0.0, Volume(127)}});
    KCCallbackLog log(rig.runner);
    EXPECT_EQ(log.ToText(), "");
    rig.automation->Hold(1, true);
    log.SetTime(12.5);
    rig.player->PlayBlock(0, 1);
    rig.automation->Hold(1, false);
    EXPECT_EQ(log.ToText(), "    0.0000 s  touch    Pan\n"
                            "   12.5000 s  touch    Gain\n"
                            "   12.5000 s  value    Gain  1000.000 (50.0 dB)\n"
                            "   12.5000 s  release  Gain\n"
                            "   12.5000 s  release  Pan\n");
    EXPECT_EQ(log.GetNumCallbacks(), 5u);
}

TEST(CallbackLog, HearsNoHostValueAndNoSecondTouch) {
    sRIG rig;
    KCCallbackLog log(rig.runner);
    auto* chain = rig.automation->SetValue(0, 700.0);
    rig.plugin.ExecuteAndDisposeBuffer(chain);
    EXPECT_EQ(rig.plugin.GetParamState(0), 700.0);
    EXPECT_EQ(log.GetNumCallbacks(), 0u);
    EXPECT_EQ(rig.automation->Hold(0, false), "not held");
    EXPECT_EQ(rig.automation->Hold(0, true), "held");
    EXPECT_EQ(rig.automation->Hold(0, true), "held already");
    EXPECT_EQ(log.ToText(), "    0.0000 s  touch    Gain\n");
}

TEST(CallbackLog, LeavesTheRunnerAtItsEnd) {
    sRIG rig;
    { const KCCallbackLog log(rig.runner); }
    EXPECT_EQ(rig.automation->Hold(0, true), "held"); // and nobody who has gone is told
}

// Mostly what a control may hear, of few numbers so that they meet; the rest is anything.
kvMIDI::KorvoMidiEvent RandomMessage(std::mt19937& random) {
    constexpr uint8_t kStatuses[] = {0x90, 0xB0, 0xBF, 0xE0}, kNumbers[] = {0, 7, 20, 60, 64, 120};
    const auto any = [&random] { return static_cast<uint8_t>(random() % 256); };
    if (random() % 5 == 0)
        return {any(), any(), any()};
    return {kStatuses[random() % 4], kNumbers[random() % 6], any()};
}

// Whatever comes over the wire and from the host: touches and releases alternate for every control, and nobody who
// is let go of is touched at the end.
TEST(CallbackLog, ShowsBalancedGesturesForRandomEvents) {
    std::mt19937 random(8);
    const auto pick = [&random](unsigned count) { return random() % count; };
    sRIG rig;
    KCCallbackLog log(rig.runner);
    for (int i = 0; i < 5000; ++i) {
        const size_t control = pick(3);
        const std::vector<sTIMED_MIDI_EVENT> event = {{0.0, RandomMessage(random)}};
        if (pick(8) == 0)
            rig.automation->Learn(control);
        else if (pick(3) == 0)
            rig.automation->Hold(control, pick(2) == 0);
        else
            KCMidiPlayer(rig.plugin, *rig.automation, event, kRateHz, false).PlayBlock(0, 1);
    }
    for (const size_t control : {0u, 1u, 2u})
        rig.automation->Hold(control, false);
    EXPECT_GT(log.GetNumCallbacks(), 1000u);
    std::istringstream lines(log.ToText());
    std::map<std::string, bool> isHeld;
    for (std::string time, unit, word, name, rest; lines >> time >> unit >> word >> name;
         std::getline(lines, rest)) {
        if (word == "value")
            continue;
        EXPECT_EQ(isHeld[name], word == "release") << time << " " << word << " " << name;
        isHeld[name] = word == "touch";
    }
    for (const auto& [name, held] : isHeld)
        EXPECT_FALSE(held) << name;
}

} // namespace
} // namespace kvKorvoV12_9_0_320::kvHost
