// Automation controls from the outside: the table of them, host values, gestures, and what the host is told.
#include "host_fixture.h"

#include <gmock/gmock.h>

#include <sstream>

namespace kvTest {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class HostControl : public HostTest {
  protected:
    HostControl() { WriteSine("in.wav", 1.0, 2); }

    std::vector<std::string> Arguments(const std::string& plugin) const {
        return {"render",    plugin,   "--in",    "in.wav", "--out",       "out.wav",
                "--session", "s.yaml", "--table", "t.txt",  "--callbacks", "c.txt"};
    }
    /// What the session's event in line 1 did, as the table says.
    std::string EffectOf(const std::string& event) const {
        WriteText("s.yaml", "- {at: 0, " + event + "}\n");
        const sPROGRAM_RUN run = Host(Arguments(kStrip));
        EXPECT_EQ(run.status, 0) << run.error;
        const std::string table = ReadBytes(Path("t.txt"));
        return table.substr(table.find("Events"));
    }
    std::string Callbacks() const { return ReadBytes(Path("c.txt")); }
    void ExpectRefusalOf(const std::string& event, const std::string& complaint,
                         const std::string& plugin = kStrip) const {
        WriteText("s.yaml", "- {at: 0, setup: A}\n- {at: 0, " + event + "}\n");
        ExpectRefusal(Arguments(plugin), "s.yaml:2: " + complaint);
    }
    /// The row of a control, its cells one blank apart.
    std::string Row(const std::string& table, const std::string& index) const {
        std::istringstream lines(table);
        for (std::string line; std::getline(lines, line);) {
            std::istringstream words(line);
            std::string row, word;
            while (words >> word)
                row += (row.empty() ? "" : " ") + word;
            if (row.starts_with(index + " "))
                return row;
        }
        return "no control " + index;
    }
};

TEST_F(HostControl, ListsEveryControl) {
    const sPROGRAM_RUN run = Host({"list", kStrip, "--controls"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.error, "");
    EXPECT_THAT(run.out, StartsWith("index  name  "));
    EXPECT_EQ(Row(run.out, "0"), "0 Bypass Bypass controller 64 any");
    EXPECT_EQ(Row(run.out, "1"), "1 Input Gain Input Gain -");
    EXPECT_EQ(Row(run.out, "2"), "2 Low Cut Low Cut note 60 any");
    EXPECT_EQ(Row(run.out, "13"), "13 Bell 2 Gain Bell 2 Gain pitch bend any");
    EXPECT_EQ(Row(run.out, "22"), "22 Rotation Rotation controller 10 any 375 … 625");
    EXPECT_EQ(Row(run.out, "26"), "26 Trims Left Trim Right Trim -");
    EXPECT_EQ(Row(run.out, "28"), "no control 28");
}

TEST_F(HostControl, ListsTheControlsOfTheDocument) {
    const sPROGRAM_RUN run = Host({"list", kTestPlugins + "documented_automation.so", "--controls"});
    EXPECT_EQ(Row(run.out, "0"), "0 Gain Gain controller 7 any");
    EXPECT_EQ(Row(run.out, "1"), "1 Trims Left Trim Right Trim -");
    EXPECT_EQ(Row(run.out, "2"), "no control 2");
}

TEST_F(HostControl, ListsAControlForEachParameterWhereNoneIsDescribed) {
    const sPROGRAM_RUN run = Host({"list", kTestPlugins + "readme_gain.so", "--controls"});
    EXPECT_EQ(Row(run.out, "0"), "0 Gain Gain -");
    EXPECT_EQ(Row(run.out, "1"), "no control 1");
}

TEST_F(HostControl, ListsThatThereAreNone) {
    const sPROGRAM_RUN run = Host({"list", kTestPlugins + "delay.so", "--controls"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "no automation controls\n");
}

TEST_F(HostControl, ListsWhatIsDoubtfulInTheDescription) {
    const sPROGRAM_RUN run = Host({"list", kTestPlugins + "doubtful_controls.so", "--controls"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.error,
              "korvo-host: GUIXML:4: several controls have this name, and the first is found by it: \"Gain\"\n");
    EXPECT_EQ(Row(run.out, "1"), "1 Gain Pan -");
    EXPECT_EQ(Host({"list", kStrip, "--controls"}).error, "");
}

TEST_F(HostControl, RefusesAPluginWhoseControlsCannotBeMade) {
    const std::string plugin = kTestPlugins + "controls_with_mistakes.so";
    ExpectRefusal({"list", plugin, "--controls"},
                  plugin + ": the plug-in could not be created: GUIXML:4: no parameter is named \"Pna\"");
}

TEST_F(HostControl, ListsNoControlsOfAFolder) {
    ExpectRefusal({"list", kTestPlugins, "--controls"},
                  kTestPlugins + ": a folder, and --controls takes one plug-in");
}

TEST_F(HostControl, AHostMovesAControl) {
    EXPECT_THAT(EffectOf("control: Input Gain, value: 6"),
                HasSubstr("control Input Gain to 6  Input Gain 0.0 → 6.0"));
    EXPECT_THAT(EffectOf("control: Input Gain, state: 0"), HasSubstr("Input Gain 0.0 → -24.0"));
    EXPECT_THAT(EffectOf("control: Input Gain, text: +3 dB"), HasSubstr("Input Gain 0.0 → 3.0"));
    EXPECT_THAT(EffectOf("control: Compressor Detector, text: RMS 50 ms"),
                HasSubstr("Compressor Detector Peak → RMS 50 ms"));
    EXPECT_EQ(Callbacks(), ""); // no host value comes back
}

TEST_F(HostControl, FollowersGoAlong) {
    EXPECT_THAT(EffectOf("control: Trims, value: -3"), HasSubstr("Left Trim 0.0 → -3.0, Right Trim 0.0 → -3.0"));
    EXPECT_EQ(Callbacks(), "");
}

TEST_F(HostControl, AHostsValueDoesNotLink) {
    EXPECT_THAT(EffectOf("control: Left Trim, value: -3"), HasSubstr("Left Trim 0.0 → -3.0    "));
}

TEST_F(HostControl, IsHeard) {
    WriteText("s.yaml", "- {at: 0.5, control: Trims, value: -6}\n");
    EXPECT_EQ(Host(Arguments(kStrip)).status, 0);
    const sSOUND out = ReadSound(Path("out.wav"));
    EXPECT_NEAR(Level(out, 0.65, 0.95), Level(out, 0.1, 0.45) - 6.0, 0.05);
}

TEST_F(HostControl, IsSeenInTheWindow) {
    WriteText("s.yaml", "- {at: 0, control: Trims, value: -6}\n- {at: 0, midi: {controller: 7, value: 0}}\n");
    EXPECT_EQ(Host({"draw", kStrip, "--out", "moved.svg", "--session", "s.yaml"}).status, 0);
    EXPECT_EQ(Host({"draw", kStrip, "--out", "plain.svg"}).status, 0);
    const std::string moved = ReadBytes(Path("moved.svg")), plain = ReadBytes(Path("plain.svg"));
    EXPECT_THAT(moved, HasSubstr("-6.0"));
    EXPECT_THAT(moved, HasSubstr("-Inf"));
    EXPECT_THAT(plain, testing::Not(HasSubstr("-Inf")));
}

TEST_F(HostControl, IsNoStepOfTheHistory) {
    EXPECT_THAT(EffectOf("control: Trims, value: -3"), EndsWith("clean, no steps\n"));
}

TEST_F(HostControl, TakesAndLetsGo) {
    EXPECT_THAT(EffectOf("touch control: Output Gain"), HasSubstr("touch control Output Gain  held"));
    EXPECT_EQ(Callbacks(), "    0.0000 s  touch    Output Gain\n");
    EXPECT_THAT(EffectOf("release control: Output Gain"), HasSubstr("not held"));
    EXPECT_EQ(Callbacks(), "");
}

TEST_F(HostControl, RefusesAnUnknownControl) {
    ExpectRefusalOf("control: Inptu Gain, value: 3",
                    "no automation control is named \"Inptu Gain\"; nearest: \"Input Gain\", \"Makeup Gain\", "
                    "\"Output Gain\"");
    ExpectRefusalOf("touch control: Trim", "no automation control is named \"Trim\"; nearest: \"Trims\"");
    ExpectRefusalOf("learn: xylophone",
                    "no automation control is named \"xylophone\"; 'korvo-host list --controls' shows the names");
    ExpectRefusalOf("detach: Gain", "no automation control is named \"Gain\"; the plug-in has none",
                    kTestPlugins + "delay.so");
}

TEST_F(HostControl, RefusesAValueThatASteppedControlDoesNotHave) {
    ExpectRefusalOf("control: Low Cut Slope, state: 4", "\"Low Cut Slope\" has the states 0 to 3, not 4");
    ExpectRefusalOf("control: Low Cut Slope, value: 13", "\"Low Cut Slope\" has no value 13; it goes 6 … 24");
    ExpectRefusalOf("control: Low Cut Slope, value: 1000", "\"Low Cut Slope\" has no value 1000; it goes 6 … 24");
    ExpectRefusalOf("control: Low Cut Slope, text: steep",
                    "\"Low Cut Slope\" does not understand the text \"steep\"");
}

TEST_F(HostControl, TellsItsHostWhatHandAndMidiDo) {
    WriteText("s.yaml", ReadBytes(KORVO_TEST_SESSIONS "automation.yaml"));
    // One track of format 0, 44100 ticks a second: volume 100 at 0.45 s.
    const std::string track("\x81\x9B\x05\xB0\x07\x64\x00\xFF\x2F\x00", 10);
    WriteText("m.mid", std::string("MThd\0\0\0\6\0\0\0\1\x56\x22MTrk\0\0\0\x0A", 22) + track);
    std::vector<std::string> arguments = Arguments(kStrip);
    arguments.insert(arguments.end(), {"--midi", "m.mid"});
    const sPROGRAM_RUN run = Host(arguments);
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_THAT(ReadBytes(Path("t.txt")), HasSubstr("0.4500       0.4412  controller 7 at 100"));
    EXPECT_EQ(Callbacks(), ReadBytes(KORVO_TEST_SESSIONS "automation.txt"));
}

TEST_F(HostControl, RefusesALogThatCannotBeWritten) {
    WriteText("s.yaml", "");
    std::vector<std::string> arguments = Arguments(kStrip);
    arguments.back() = "nowhere/c.txt";
    EXPECT_EQ(Host(arguments).status, 2);
    arguments.back() = "out.wav";
    const sPROGRAM_RUN run = Host(arguments);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(FilesInFolder(), (std::vector<std::string>{"in.wav", "s.yaml"}));
}

} // namespace
} // namespace kvTest
