// Gestures taken back and brought again: one gesture, one step.
#include "host_fixture.h"

#include <gmock/gmock.h>

namespace kvTest {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class HostUndo : public HostTest {
  protected:
    HostUndo() { WriteSine("in.wav", 1.0, 2); }

    sPROGRAM_RUN Render(const std::string& session, const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments = {"render",  kStrip,      "--in",  "in.wav",  "--out",
                                              "out.wav", "--session", session, "--table", "t.txt"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Host(arguments);
    }
    std::string TableOf(const std::string& session, const std::vector<std::string>& more = {}) const {
        const sPROGRAM_RUN run = Render(WriteText("s.yaml", session), more);
        EXPECT_EQ(run.status, 0) << run.error;
        return ReadBytes(Path("t.txt"));
    }
};

// The whole table: every parameter in both setups, each event with what it did, the steps that are left.
TEST_F(HostUndo, DragsUndoesRedoesAndBranches) {
    const sPROGRAM_RUN run = Render(KORVO_TEST_SESSIONS "undo.yaml");
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_EQ(ReadBytes(Path("t.txt")), ReadBytes(KORVO_TEST_SESSIONS "undo.txt"));
}

TEST_F(HostUndo, IsHeard) {
    TableOf("- {at: 0.3, set: Left Trim, value: -6, gesture: true}\n- {at: 0.6, do: undo}\n");
    const sSOUND out = ReadSound(Path("out.wav"));
    EXPECT_NEAR(Level(out, 0.4, 0.59), Level(out, 0.1, 0.29) - 6.0, 0.05);
    EXPECT_NEAR(Level(out, 0.75, 1.0), Level(out, 0.1, 0.29), 0.05);
}

TEST_F(HostUndo, BringsEveryParameterBackBitForBit) {
    const std::string before = TableOf("");
    const std::string after = TableOf("- {at: 0, set: Left Trim, value: -6.1, gesture: true}\n"
                                      "- {at: 0, step: Compressor Ratio, by: 7, gesture: true}\n"
                                      "- {at: 0, do: undo}\n- {at: 0, do: undo}\n");
    const size_t end = before.find("Events");
    EXPECT_EQ(after.substr(0, end), before.substr(0, end));
    EXPECT_THAT(after, HasSubstr("History, at most 100 steps: clean\n"));
}

TEST_F(HostUndo, AHostsValueIsNoStep) {
    const std::string table = TableOf("- {at: 0, set: Input Gain, value: 3}\n- {at: 0, do: undo}\n");
    EXPECT_THAT(table, HasSubstr("nothing to undo"));
    EXPECT_THAT(table, EndsWith("History, at most 100 steps: clean, no steps\n"));
}

TEST_F(HostUndo, AGestureThatMovesNothingKeepsWhatCanBeRedone) {
    EXPECT_THAT(TableOf("- {at: 0, set: Input Gain, value: 3, gesture: true}\n"
                        "- {at: 0, do: undo}\n"
                        "- {at: 0, set: Input Gain, value: 0, gesture: true}\n"
                        "- {at: 0, do: redo}\n"),
                HasSubstr("brought back Input Gain"));
}

TEST_F(HostUndo, KeepsAsManyStepsAsTheLevelSays) {
    const std::string session = "- {at: 0, set: Input Gain, value: 1, gesture: true}\n"
                                "- {at: 0, set: Makeup Gain, value: 2, gesture: true}\n";
    EXPECT_THAT(TableOf(session, {"--undo-level", "1"}),
                EndsWith("History, at most 1 steps: dirty\n\nnext  undo         redo\n----  -----------  ----\n"
                         "   1  Makeup Gain\n"));
    const std::string without = TableOf(session, {"--undo-level", "0"});
    EXPECT_THAT(without, HasSubstr("no step"));
    EXPECT_THAT(without, EndsWith("History, at most 0 steps: dirty, no steps\n"));
}

TEST_F(HostUndo, RefusesALevelThatIsNone) {
    for (const char* const level : {"-1", "65536", "many"}) {
        const sPROGRAM_RUN run = Render(WriteText("s.yaml", ""), {"--undo-level", level});
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.error, HasSubstr("--undo-level"));
    }
}

} // namespace
} // namespace kvTest
