// A hand at the plug-in's window: what it moves, what the history keeps of it, what cannot be done.
#include "host_fixture.h"

#include <gmock/gmock.h>

#include <sstream>

namespace kvTest {
namespace {

using testing::HasSubstr;
using testing::Not;

class HostGesture : public HostTest {
  protected:
    HostGesture() { WriteSine("in.wav", 1.0, 2); }

    std::vector<std::string> Arguments(const std::string& plugin) const {
        return {"render", plugin, "--in", "in.wav", "--out", "out.wav", "--session", "s.yaml", "--table", "t.txt"};
    }
    std::string TableOf(const std::string& session, const std::string& plugin = kTestPlugins + "window.so") const {
        WriteText("s.yaml", session);
        const sPROGRAM_RUN run = Host(Arguments(plugin));
        EXPECT_EQ(run.status, 0) << run.error;
        return ReadBytes(Path("t.txt"));
    }
    /// The cells of the event in that line of the session, all of them in one.
    std::string RowOf(const std::string& table, int line) const {
        std::istringstream rows(table.substr(table.find("Events")));
        for (std::string row; std::getline(rows, row);) {
            std::istringstream cells(row);
            std::string at, played, number;
            if (cells >> at >> played >> number && number == std::to_string(line))
                return row;
        }
        return "no such row in:\n" + table;
    }
    /// What one event did, and what the history tells of it.
    std::string EffectOf(const std::string& event) const { return RowOf(TableOf("- {at: 0, " + event + "}\n"), 1); }
    void ExpectRefusalOf(const std::string& session, const std::string& complaint,
                         const std::string& plugin = kTestPlugins + "window.so") const {
        WriteText("s.yaml", session);
        ExpectRefusal(Arguments(plugin), complaint);
    }
};

TEST_F(HostGesture, ADragMovesAKnobAndIsOneStep) {
    const std::string table = TableOf("- {at: 0, mouse: {press: Gain}}\n"
                                      "- {at: 0.1, mouse: {drag: [0, -10]}}\n"
                                      "- {at: 0.2, mouse: {drag: [0, -10]}}\n"
                                      "- {at: 0.3, mouse: release}\n");
    EXPECT_THAT(RowOf(table, 1), HasSubstr("nothing changed"));
    EXPECT_THAT(RowOf(table, 2), HasSubstr("drag by 0, -10  Gain 0.0 → "));
    EXPECT_THAT(RowOf(table, 2), Not(HasSubstr("step")));
    EXPECT_THAT(RowOf(table, 1), HasSubstr("press Gain "));
    EXPECT_THAT(RowOf(table, 4), HasSubstr("step Gain"));
    EXPECT_THAT(table, HasSubstr("History, at most 100 steps: dirty\n\nnext  undo  redo\n----  ----  ----\n"
                                 "   1  Gain\n"));
}

TEST_F(HostGesture, IsHeard) {
    TableOf("- {at: 0.4, mouse: {press: Gain}}\n- {at: 0.5, mouse: {drag: [0, 20]}}\n");
    const sSOUND out = ReadSound(Path("out.wav"));
    EXPECT_NEAR(Level(out, 0.0, 0.45), -9.03, 0.01);
    EXPECT_LT(Level(out, 0.6, 1.0), -10.0);
}

TEST_F(HostGesture, UpIsMoreAndDownIsLess) {
    EXPECT_THAT(TableOf("- {at: 0, mouse: {press: Gain}}\n- {at: 0, mouse: {drag: [0, 10]}}\n"),
                HasSubstr("Gain 0.0 → -"));
}

TEST_F(HostGesture, AControlIsKnownByItsParameterToo) {
    EXPECT_THAT(TableOf("- {at: 0, mouse: {press: Pan}}\n- {at: 0, mouse: {drag: [0, -10]}}\n"),
                HasSubstr("Pan 0.0 → "));
    EXPECT_THAT(TableOf("- {at: 0, mouse: {press: Balance}}\n- {at: 0, mouse: {drag: [0, -10]}}\n"),
                HasSubstr("Pan 0.0 → "));
}

TEST_F(HostGesture, APointOfTheWindowIsWhatStandsThere) {
    EXPECT_THAT(TableOf("- {at: 0, mouse: {press: [40, 70]}}\n- {at: 0, mouse: {drag: [0, -10]}}\n"),
                HasSubstr("Gain 0.0 → "));
    EXPECT_THAT(EffectOf("mouse: {press: [239, 119]}"), HasSubstr("no control took it"));
}

TEST_F(HostGesture, ShiftMovesTenTimesFiner) {
    const std::string drag = "- {at: 0, mouse: {drag: [0, -20]}}\n";
    const std::string coarse = RowOf(TableOf("- {at: 0, mouse: {press: Gain}}\n" + drag), 2);
    const std::string fine = RowOf(TableOf("- {at: 0, mouse: {press: Gain, with: Shift}}\n" + drag), 2);
    const auto gain = [](const std::string& row) {
        const std::string arrow = "→ ";
        const size_t at = row.find(arrow);
        return at == std::string::npos ? 0.0 : std::stod(row.substr(at + arrow.size()));
    };
    EXPECT_GT(gain(fine), 0.0) << fine;
    EXPECT_LE(gain(fine), gain(coarse) / 10.0) << coarse << "\n" << fine;
}

TEST_F(HostGesture, ADoubleClickResets) {
    const std::string table =
        TableOf("- {at: 0, set: Gain, value: 12, gesture: true}\n- {at: 0, mouse: {double click: Gain}}\n");
    EXPECT_THAT(RowOf(table, 2), HasSubstr("Gain 12.0 → 0.0"));
    EXPECT_THAT(RowOf(table, 2), HasSubstr("step Gain"));
}

TEST_F(HostGesture, AWheelNotchIsAStep) {
    const std::string row = EffectOf("wheel: {over: Gain, by: 1}");
    EXPECT_THAT(row, HasSubstr("Gain 0.0 → 0.1"));
    EXPECT_THAT(row, HasSubstr("step Gain"));
}

TEST_F(HostGesture, KeysMoveWhatWasClicked) {
    const std::string table =
        TableOf("- {at: 0, mouse: {click: Gain}}\n- {at: 0, key: Up}\n- {at: 0, key: Down}\n");
    EXPECT_THAT(RowOf(table, 2), HasSubstr("Gain 0.0 → 0.1"));
    EXPECT_THAT(RowOf(table, 3), HasSubstr("Gain 0.1 → 0.0"));
    EXPECT_THAT(EffectOf("key: Up"), HasSubstr("no control took it"));
}

TEST_F(HostGesture, ArrowKeysMoveAFieldOfTwoParametersThatWasClicked) {
    const std::string table =
        TableOf("- {at: 0, mouse: {click: Bell 2}}\n- {at: 0, key: Up}\n- {at: 0, key: Left}\n", kStrip);
    EXPECT_THAT(RowOf(table, 2), HasSubstr("Bell 2 Gain 0.0 → 0.1"));
    EXPECT_THAT(RowOf(table, 3), HasSubstr("Bell 2 Frequency 3000 → "));
}

TEST_F(HostGesture, ATypedTextIsAValue) {
    const std::string session = "- {at: 0, mouse: {click: Gain as text}}\n- {at: 0, type: -3.5 dB}\n";
    const std::string table = TableOf(session + "- {at: 0, key: Enter}\n");
    EXPECT_THAT(RowOf(table, 2), HasSubstr("nothing changed"));
    EXPECT_THAT(RowOf(table, 3), HasSubstr("Gain 0.0 → -3.5"));
    EXPECT_THAT(RowOf(table, 3), HasSubstr("step Gain"));
    EXPECT_THAT(RowOf(TableOf(session + "- {at: 0, key: Escape}\n"), 3), HasSubstr("nothing changed"));
}

TEST_F(HostGesture, AWholeTextIsEnteredIntoAControl) {
    EXPECT_THAT(EffectOf("type: {text: -3.5 dB, into: Gain}"), HasSubstr("Gain 0.0 → -3.5"));
    EXPECT_THAT(EffectOf("type: {text: \"12\", into: Pan}"), HasSubstr("step Pan"));
    EXPECT_THAT(EffectOf("type: {text: loud, into: Gain}"), HasSubstr("no control took it"));
}

TEST_F(HostGesture, AMenuIsChosenFromByNumberAndByText) {
    EXPECT_THAT(EffectOf("menu: {of: Mode, choose: 2}"), HasSubstr("Mode 0 → 2"));
    EXPECT_THAT(EffectOf("menu: {of: Mode, text: 3}"), HasSubstr("Mode 0 → 3"));
    EXPECT_THAT(EffectOf("menu: {of: Mode, choose: 2}"), HasSubstr("step Mode"));
}

TEST_F(HostGesture, AFingerDrags) {
    const std::string table = TableOf("- {at: 0, touch: {down: Gain}}\n- {at: 0, touch: {drag: [0, -10]}}\n"
                                      "- {at: 0, touch: up}\n");
    EXPECT_THAT(RowOf(table, 2), HasSubstr("Gain 0.0 → "));
    EXPECT_THAT(RowOf(table, 3), HasSubstr("step Gain"));
}

TEST_F(HostGesture, TwoFingersPinch) {
    const std::string table = TableOf("- {at: 0, touch: {down: Gain, place: [0.3, 0.5]}}\n"
                                      "- {at: 0, touch: {down: Gain, place: [0.7, 0.5], finger: 2}}\n"
                                      "- {at: 0, touch: {pinch: 1.5, finger: 2}}\n"
                                      "- {at: 0, touch: {up: , finger: 2}}\n- {at: 0, touch: up}\n");
    EXPECT_THAT(RowOf(table, 3), HasSubstr("Gain 0.0 → "));
    EXPECT_THAT(table, HasSubstr("step Gain"));
}

TEST_F(HostGesture, APlaceOnAControlMakesADifference) {
    EXPECT_THAT(EffectOf("mouse: {click: Mode}"), HasSubstr("Mode 0 → 1"));
    EXPECT_THAT(EffectOf("mouse: {click: Mode, place: [0.02, 0.7]}"), HasSubstr("Mode 0 → 3")); // the left arrow
}

TEST_F(HostGesture, ModifiersHoldUntilSomethingElseIsSaid) {
    const std::string press = "- {at: 0, mouse: {press: Gain, with: Shift}}\n";
    const std::string held = RowOf(TableOf(press + "- {at: 0, mouse: {drag: [0, -20]}}\n"), 2);
    const std::string said = RowOf(TableOf(press + "- {at: 0, mouse: {drag: [0, -20], with: Shift}}\n"), 2);
    const std::string none = RowOf(TableOf(press + "- {at: 0, mouse: {drag: [0, -20], with: []}}\n"), 2);
    const auto effect = [](const std::string& row) { return row.substr(row.find("Gain 0.0 → ")); };
    EXPECT_EQ(effect(held), effect(said));
    EXPECT_NE(effect(held), effect(none));
}

TEST_F(HostGesture, APressWithPrimaryResets) {
    const std::string table =
        TableOf("- {at: 0, set: Gain, value: 5, gesture: true}\n- {at: 0, mouse: {click: Gain, with: Primary}}\n");
    EXPECT_THAT(RowOf(table, 2), HasSubstr("Gain 5.0 → 0.0"));
}

TEST_F(HostGesture, TabGoesToTheNextControl) {
    const std::string table = TableOf("- {at: 0, mouse: {click: Gain}}\n- {at: 0, key: Tab}\n- {at: 0, key: Up}\n");
    EXPECT_THAT(RowOf(table, 3), HasSubstr("Pan 0.0 → 0.1"));
}

TEST_F(HostGesture, OverAControlMovesNothing) {
    EXPECT_THAT(EffectOf("hover: Gain"), HasSubstr("nothing changed"));
    EXPECT_THAT(EffectOf("hover: [239, 119]"), HasSubstr("no control took it"));
}

TEST_F(HostGesture, ALostPointerEndsTheGesture) {
    const std::string table = TableOf("- {at: 0, mouse: {press: Gain}}\n- {at: 0, mouse: {drag: [0, -10]}}\n"
                                      "- {at: 0, mouse: lost}\n");
    EXPECT_THAT(RowOf(table, 3), HasSubstr("step Gain"));
}

TEST_F(HostGesture, IsTakenBack) {
    const std::string table = TableOf("- {at: 0, wheel: {over: Gain, by: 1}}\n- {at: 0, do: undo}\n");
    EXPECT_THAT(RowOf(table, 2), HasSubstr("Gain 0.1 → 0.0"));
    EXPECT_THAT(RowOf(table, 2), HasSubstr("took back Gain"));
    EXPECT_THAT(table, HasSubstr("History, at most 100 steps: clean\n"));
}

TEST_F(HostGesture, OfAnUnknownControlIsRefused) {
    ExpectRefusalOf("- at: 0\n  mouse: {press: Blance}\n", "s.yaml:1: no control is named \"Blance\"; nearest: "
                                                           "\"Balance\"");
    ExpectRefusalOf("- {at: 0, type: {text: \"1\", into: Q}}\n", "s.yaml:1: no control is named \"Q\"");
    ExpectRefusalOf("- {at: 0, hover: Q}\n", "s.yaml:1: no control is named \"Q\"");
    ExpectRefusalOf("- {at: 0, menu: {of: Mdoe, choose: 1}}\n",
                    "s.yaml:1: no control is named \"Mdoe\"; nearest: \"Mode\"");
}

TEST_F(HostGesture, OfAMenuThatIsNoneIsRefused) {
    ExpectRefusalOf("- {at: 0, menu: {of: Balance, choose: 1}}\n", "s.yaml:1: \"Balance\" has no menu");
    ExpectRefusalOf("- {at: 0, menu: {of: Mode, choose: 4}}\n", "s.yaml:1: \"Mode\" has the choices 0 to 3, not 4");
    ExpectRefusalOf("- {at: 0, menu: {of: Mode, text: loud}}\n",
                    "s.yaml:1: \"Mode\" does not understand the text \"loud\"");
}

TEST_F(HostGesture, AtAPluginWithoutAWindowIsRefused) {
    ExpectRefusalOf("- {at: 0, setup: A}\n- {at: 1, wheel: {over: Gain, by: 1}}\n",
                    "s.yaml:2: the plug-in describes no window", kTestPlugins + "readme_gain.so");
}

TEST_F(HostGesture, ThatNoHandCanDoIsRefused) {
    ExpectRefusalOf("- {at: 0, mouse: release}\n",
                    "s.yaml:1: the mouse button is not down: 'press' must stand before this");
}

} // namespace
} // namespace kvTest
