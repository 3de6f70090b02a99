// MIDI files played into a plug-in.
#include "host_fixture.h"

#include <gmock/gmock.h>

namespace kvTest {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class HostMidi : public HostTest {
  protected:
    HostMidi() { WriteSine("in.wav", 1.0, 2); }

    static std::string Bytes(std::initializer_list<int> numbers) {
        std::string bytes;
        for (const int number : numbers)
            bytes += static_cast<char>(number);
        return bytes;
    }
    /// A file of one track with 500 ticks a second.
    void WriteMidi(const std::string& name, std::string track) const {
        track += Bytes({0, 0xFF, 0x2F, 0});
        WriteText(name,
                  "MThd" + Bytes({0, 0, 0, 6, 0, 0, 0, 1, 0, 250}) + "MTrk" +
                      Bytes({0, 0, static_cast<int>(track.size() >> 8), static_cast<int>(track.size() & 0xFF)}) +
                      track);
    }
    sPROGRAM_RUN Render(const std::string& midi, const std::vector<std::string>& more = {},
                        const std::string& out = "out.wav") const {
        std::vector<std::string> arguments = {"render", kStrip,   "--in", "in.wav",  "--out",
                                              out,      "--midi", midi,   "--table", "t.txt"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Host(arguments);
    }
    std::string TableOf(const std::string& midi, const std::vector<std::string>& more = {}) const {
        const sPROGRAM_RUN run = Render(midi, more);
        EXPECT_EQ(run.status, 0) << run.error;
        const std::string table = ReadBytes(Path("t.txt"));
        return table.substr(table.find("\nMIDI\n"));
    }
};

TEST_F(HostMidi, MovesWhatIsMapped) {
    WriteMidi("m.mid", Bytes({0, 0xB0, 7, 0, 0x81, 0x7A, 7, 127})); // at 0 and, by running status, at 0.5 s
    const std::string table = TableOf("m.mid");
    EXPECT_THAT(table, HasSubstr("0.0000       0.0000  controller 7 at 0    Output Gain 0.0 → -Inf"));
    EXPECT_THAT(table, HasSubstr("0.5000       0.4992  controller 7 at 127  Output Gain -Inf → 6.0"));
    const sSOUND out = ReadSound(Path("out.wav"));
    EXPECT_LT(Level(out, 0.1, 0.4), -100.0);
    EXPECT_NEAR(Level(out, 0.65, 0.95), -9.03 + 6.0, 0.1);
}

TEST_F(HostMidi, GivesTheSameBytesEachTime) {
    const std::string midi = KORVO_DEMO_MIDI;
    EXPECT_EQ(Render(midi, {"--callbacks", "c.txt"}).status, 0);
    EXPECT_EQ(Render(midi, {"--callbacks", "c2.txt"}, "again.wav").status, 0);
    EXPECT_EQ(ReadBytes(Path("out.wav")), ReadBytes(Path("again.wav")));
    EXPECT_EQ(ReadBytes(Path("c.txt")), ReadBytes(Path("c2.txt")));
    EXPECT_THAT(ReadBytes(Path("c.txt")), HasSubstr(" s  touch    Bell 2 Frequency\n"));
}

// A steady tone in place of the demo's recording: what the file and the session say is in the levels.
TEST_F(HostMidi, TheSecondHalfOfTheDemoIsHeardAsItSays) {
    WriteSine("in.wav", 4.5, 2);
    const sPROGRAM_RUN run = Render(KORVO_DEMO_MIDI, {"--session", KORVO_DEMO_AUTOMATION, "--callbacks", "c.txt"});
    EXPECT_EQ(run.status, 0) << run.error;
    const sSOUND out = ReadSound(Path("out.wav"));
    EXPECT_GT(Level(out, 0.0, 0.2), Level(out, 1.9, 2.1) + 12.0); // volume: 127 at the ends, 64 in the middle
    EXPECT_GT(Level(out, 3.9, 4.0), Level(out, 1.9, 2.1) + 12.0);
    const std::string table = ReadBytes(Path("t.txt"));
    EXPECT_THAT(table, HasSubstr("Left Trim 0.0 → 2.0, Right Trim 0.0 → 2.0"));
    EXPECT_THAT(table, HasSubstr("\"Input Gain\" hears it from now on"));
    EXPECT_THAT(table, HasSubstr("note 60 on, velocity 100  Low Cut Off → On"));
    EXPECT_THAT(ReadBytes(Path("c.txt")), Not(HasSubstr("Trim"))); // the host's own lanes do not come back
}

TEST_F(HostMidi, WithoutAnEventChangesNoSample) {
    WriteMidi("empty.mid", "");
    EXPECT_EQ(Render("empty.mid").status, 0);
    EXPECT_EQ(Host({"render", kStrip, "--in", "in.wav", "--out", "plain.wav"}).status, 0);
    EXPECT_EQ(ReadBytes(Path("out.wav")), ReadBytes(Path("plain.wav")));
}

TEST_F(HostMidi, ComesBehindTheSessionsEventsOfTheBlock) {
    WriteMidi("m.mid", Bytes({0, 0xB0, 7, 127}));
    WriteText("s.yaml", "- {at: 0, control: Output Gain, value: -6}\n");
    EXPECT_THAT(TableOf("m.mid", {"--session", "s.yaml"}), HasSubstr("Output Gain -6.0 → 6.0"));
}

TEST_F(HostMidi, LearnsItsFirstController) {
    WriteMidi("m.mid", Bytes({0, 0xB0, 7, 0, 10, 7, 127}));
    const std::string table = TableOf("m.mid", {"--learn", "Makeup Gain"});
    EXPECT_THAT(table, HasSubstr("controller 7 at 0    \"Makeup Gain\" hears it from now on"));
    EXPECT_THAT(table, HasSubstr("controller 7 at 127  Makeup Gain 0.0 → 24.0, Output Gain 0.0 → 6.0"));
    EXPECT_THAT(table, HasSubstr("Makeup Gain           Makeup Gain                        controller 7 "));
}

TEST_F(HostMidi, GoesOnLearningWhereNoControllerComes) {
    WriteMidi("m.mid", Bytes({0, 0x90, 60, 1})); // no note moves what glides
    const std::string table = TableOf("m.mid", {"--learn", "Input Gain"});
    EXPECT_THAT(
        table,
        HasSubstr(
            "Input Gain            Input Gain                         -                                  yes\n"));
    EXPECT_THAT(table, HasSubstr("note 60 on, velocity 1  nothing changed\n")); // taken, and of no use
}

TEST_F(HostMidi, CountsWhatComesBehindTheSound) {
    WriteMidi("m.mid", Bytes({0, 0xB0, 7, 0, 0x87, 0x68, 7, 1})); // the second at 2 s
    EXPECT_THAT(Render("m.mid").out, HasSubstr("0 events, 1 MIDI events, 1 of MIDI after the end of the sound"));
}

TEST_F(HostMidi, SaysWhatNothingHears) {
    WriteMidi("m.mid", Bytes({0, 0xC0, 5, 0, 0xB0, 1, 5}));
    const std::string table = TableOf("m.mid");
    EXPECT_THAT(table, HasSubstr("program 5          no control hears it"));
    EXPECT_THAT(table, HasSubstr("controller 1 at 5  no control hears it"));
}

TEST_F(HostMidi, RefusesWhatIsNoMidiFile) {
    WriteText("text.mid", "not MIDI");
    for (const std::string midi : {"text.mid", "missing.mid", "in.wav", "."}) {
        const std::vector<std::string> before = FilesInFolder();
        const sPROGRAM_RUN run = Render(midi);
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.error, testing::StartsWith("korvo-host: " + midi + ": "));
        EXPECT_EQ(FilesInFolder(), before);
    }
}

TEST_F(HostMidi, RefusesToLearnWhatItCannot) {
    WriteMidi("m.mid", "");
    EXPECT_EQ(Render("m.mid", {"--learn", "Makeup Gian"}).error,
              "korvo-host: " + kStrip +
                  ": no automation control is named \"Makeup Gian\"; nearest: \"Makeup Gain\"\n");
    const sPROGRAM_RUN run = Host({"render", kStrip, "--in", "in.wav", "--out", "o.wav", "--learn", "Makeup Gain"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.error, HasSubstr("--midi"));
}

} // namespace
} // namespace kvTest
