// Parameters that move together: what a user's hand links, and what a host's automation does not.
#include "host_fixture.h"

#include <gmock/gmock.h>

namespace kvTest {
namespace {

using testing::HasSubstr;
using testing::Not;

class HostLinks : public HostTest {
  protected:
    // Renders a tone through the strip and gives the table of parameters and events.
    std::string TableOf(const std::string& session) const {
        WriteSine("in.wav", 1.0, 2);
        WriteText("s.yaml", session);
        const sPROGRAM_RUN run = Host(
            {"render", kStrip, "--in", "in.wav", "--out", "out.wav", "--session", "s.yaml", "--table", "t.txt"});
        EXPECT_EQ(run.status, 0) << run.error;
        return ReadBytes(Path("t.txt"));
    }
};

TEST_F(HostLinks, AreListedBelowTheParameters) {
    const std::string list = Host({"list", kStrip}).out;
    EXPECT_THAT(list, HasSubstr("\n\nlink group  law       state     members\n"));
    EXPECT_THAT(list, HasSubstr("\n         1  Relative  enabled   Left Trim, Right Trim\n"));
    EXPECT_THAT(list, HasSubstr("\n         2  Reverse   disabled  Bell 1 Gain, Bell 2 Gain\n"));
    EXPECT_THAT(list, HasSubstr("\n         3  Absolute  disabled  Gate Threshold, Compressor Threshold\n"));
}

TEST_F(HostLinks, APluginWithoutGroupsListsNone) {
    EXPECT_THAT(Host({"list", kTestPlugins + "gain.so"}).out, Not(HasSubstr("link group")));
}

TEST_F(HostLinks, AGestureMovesBothSidesAndIsHeard) {
    EXPECT_THAT(TableOf("- {at: 0.5, set: Left Trim, value: -6, gesture: true}\n"),
                HasSubstr("set Left Trim to -6, by hand  Left Trim 0.0 → -6.0, Right Trim 0.0 → -6.0"));
    const sSOUND out = ReadSound(Path("out.wav"));
    EXPECT_NEAR(Level(out, 0.7, 1.0), Level(out, 0.1, 0.4) - 6.0, 0.05);
}

TEST_F(HostLinks, AHostsValueMovesOneParameterAlone) {
    EXPECT_THAT(TableOf("- {at: 0.5, set: Left Trim, value: -6}\n"),
                HasSubstr("set Left Trim to -6  Left Trim 0.0 → -6.0"));
    EXPECT_THAT(TableOf("- {at: 0.5, set: Left Trim, value: -6}\n"), Not(HasSubstr("Right Trim 0.0 →")));
}

TEST_F(HostLinks, StepsByHandAreLinkedToo) {
    EXPECT_THAT(TableOf("- {at: 0, step: Right Trim, by: 3, gesture: true}\n"),
                HasSubstr("Left Trim 0.0 → 0.3, Right Trim 0.0 → 0.3"));
}

TEST_F(HostLinks, AMemberAtItsEndHoldsTheOtherBack) {
    EXPECT_THAT(TableOf("- {at: 0, set: Right Trim, value: 9}\n"
                        "- {at: 0, set: Left Trim, value: 10, gesture: true}\n"),
                HasSubstr("Left Trim 0.0 → 3.0, Right Trim 9.0 → 12.0"));
}

TEST_F(HostLinks, AreEnabledAndDisabledByTheSession) {
    const std::string table = TableOf("- {at: 0, set: Bell 1 Gain, value: 1, gesture: true}\n"
                                      "- {at: 0, link: 2, enabled: true}\n"
                                      "- {at: 0, set: Bell 1 Gain, value: 4, gesture: true}\n"
                                      "- {at: 0, link: 2, enabled: false}\n"
                                      "- {at: 0, set: Bell 1 Gain, value: 5, gesture: true}\n");
    EXPECT_THAT(table, HasSubstr("set Bell 1 Gain to 1, by hand  Bell 1 Gain 0.0 → 1.0"));
    EXPECT_THAT(table, HasSubstr("enable link group 2            Reverse, enabled: Bell 1 Gain, Bell 2 Gain"));
    EXPECT_THAT(table, HasSubstr("Bell 1 Gain 1.0 → 4.0, Bell 2 Gain 0.0 → -3.0"));
    EXPECT_THAT(table, HasSubstr("set Bell 1 Gain to 5, by hand  Bell 1 Gain 4.0 → 5.0"));
    EXPECT_THAT(table, Not(HasSubstr("Bell 2 Gain -3.0 →")));
}

TEST_F(HostLinks, ThresholdsShareTheirValue) {
    EXPECT_THAT(TableOf("- {at: 0, link: 3, enabled: true}\n"
                        "- {at: 0, set: Compressor Threshold, value: -30, gesture: true}\n"),
                HasSubstr("Gate Threshold Off → -30.0, Compressor Threshold 0.0 → -30.0"));
}

TEST_F(HostLinks, AnUnknownGroupIsRefusedWithTheKnownOnes) {
    WriteSine("in.wav", 0.1);
    WriteText("s.yaml", "- {at: 0, setup: A}\n- {at: 0, link: 7, enabled: true}\n");
    ExpectRefusal({"render", kStrip, "--in", "in.wav", "--out", "out.wav", "--session", "s.yaml"},
                  "s.yaml:2: no link group has the number 7; known are 1, 2 and 3");
    ExpectRefusal({"render", kTestPlugins + "gain.so", "--in", "in.wav", "--out", "out.wav", "--session", "s.yaml"},
                  "s.yaml:2: no link group has the number 7; the plug-in has none");
}

} // namespace
} // namespace kvTest
