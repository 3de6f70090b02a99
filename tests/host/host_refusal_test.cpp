// What korvo-host says to bad input: one line, exit status 2, and no file more or less than before.
#include "host_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>

namespace kvTest {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class HostRefusal : public HostTest {
  protected:
    HostRefusal() { WriteSine("in.wav", 0.3); }

    std::vector<std::string> Arguments(const std::string& in, const std::string& out,
                                       const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments = {"render", kStrip, "--in", in, "--out", out};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }
    void ExpectSessionRefusal(const std::string& session, const std::string& complaint) const {
        WriteText("s.yaml", session);
        ExpectRefusal(Arguments("in.wav", "out.wav", {"--session", "s.yaml"}), complaint);
    }
};

TEST_F(HostRefusal, OfAMissingPlugin) {
    ExpectRefusal({"render", "./strip.so", "--in", "in.wav", "--out", "out.wav"}, "./strip.so: no such file");
}

TEST_F(HostRefusal, OfAMissingSound) {
    ExpectRefusal(Arguments("missing.wav", "out.wav"), "missing.wav: no such sound file");
}

TEST_F(HostRefusal, OfAFileThatIsNoSound) {
    WriteText("text.wav", "this is no sound");
    const sPROGRAM_RUN run = Host(Arguments("text.wav", "out.wav"));
    EXPECT_THAT(run.error, StartsWith("korvo-host: text.wav: not a sound file that can be read: "));
    EXPECT_EQ(run.status, 2);
    ExpectRefusal(Arguments("/", "out.wav"), "/: not a sound file: it is not a regular file");
}

TEST_F(HostRefusal, OfMoreThanTwoChannels) {
    WriteSound("three.wav", {44100, 3, std::vector<float>(300)});
    ExpectRefusal(Arguments("three.wav", "out.wav"), "three.wav: has 3 channels; 1 or 2 are expected");
}

TEST_F(HostRefusal, OfASoundThatBreaksOff) {
    EXPECT_EQ(Host(Arguments("in.wav", "long.flac")).status, 0);
    const std::string whole = ReadBytes(Path("long.flac"));
    WriteText("cut.flac", whole.substr(0, whole.size() / 2));
    const std::vector<std::string> files = FilesInFolder();
    const sPROGRAM_RUN run = Host(Arguments("cut.flac", "out.wav"));
    EXPECT_THAT(run.error, StartsWith("korvo-host: cut.flac: breaks off after "));
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(FilesInFolder(), files);
}

TEST_F(HostRefusal, OfAnUnknownParameterWithTheNearestNames) {
    ExpectSessionRefusal(
        "- {at: 0, setup: A}\n- {at: 0, set: Inptu Gain, value: 1}\n",
        "s.yaml:2: no parameter is named \"Inptu Gain\"; nearest: \"Input Gain\", \"Makeup Gain\", "
        "\"Output Gain\"");
    ExpectSessionRefusal("- {at: 0, step: Xyzzyxyzzy, by: 1}\n",
                         "s.yaml:1: no parameter is named \"Xyzzyxyzzy\"; 'korvo-host list' shows the names");
}

TEST_F(HostRefusal, OfAnEventOutOfOrder) {
    ExpectSessionRefusal("- {at: 1, setup: A}\n- {at: 0.5, setup: B}\n",
                         "s.yaml:2: events must stand in the order of their times, but 0.5 follows 1 of line 1");
}

TEST_F(HostRefusal, OfAMalformedEvent) {
    ExpectSessionRefusal("- {at: -1, setup: A}\n", "s.yaml:1: 'at' must be a number from 0 to 1000000, not \"-1\"");
    ExpectSessionRefusal("- at: 0\n  set: Input Gain\n  value: loud\n",
                         "s.yaml:3: 'value' must be a number, not \"loud\"");
    ExpectSessionRefusal("- {at: 0, set: Bypass, vlaue: 1}\n",
                         "s.yaml:1: unknown key \"vlaue\"; did you mean 'value'?");
    ExpectSessionRefusal("\n\n- {at: 0", "s.yaml:3: not YAML: end of map flow not found");
}

TEST_F(HostRefusal, OfAPlaceThatAParameterDoesNotHave) {
    ExpectSessionRefusal("- {at: 0, set: Compressor Detector, value: 7}\n",
                         "s.yaml:1: \"Compressor Detector\" has no value 7; it goes Peak … RMS 50 ms");
    ExpectSessionRefusal("- {at: 0, set: Bypass, state: 2}\n", "s.yaml:1: \"Bypass\" has the states 0 to 1, not 2");
    ExpectSessionRefusal("- {at: 0, set: Input Gain, text: loud}\n",
                         "s.yaml:1: \"Input Gain\" does not understand the text \"loud\"");
}

TEST_F(HostRefusal, OfAMissingSession) {
    ExpectRefusal(Arguments("in.wav", "out.wav", {"--session", "none.yaml"}),
                  "none.yaml: cannot be read: no such file or folder");
    ExpectRefusal(Arguments("in.wav", "out.wav", {"--session", "/"}), "/: cannot be read: it is a folder");
}

TEST_F(HostRefusal, OfAnOutputThatCannotBeWritten) {
    ExpectRefusal(Arguments("in.wav", "nowhere/out.wav"), "nowhere/out.wav: cannot be written: no such folder");
    ExpectRefusal(Arguments("in.wav", "/dev/null"), "/dev/null: cannot be written: it is not a regular file");
    ExpectRefusal(Arguments("in.wav", Path("")), Path("") + ": cannot be written: it is a folder");
    ExpectRefusal(Arguments("in.wav", "out.mp3"),
                  "out.mp3: the name of a sound file to write must end in .wav, .aiff or .flac");
    ExpectRefusal(Arguments("in.wav", "out.wav", {"--table", "nowhere/t.txt"}),
                  "nowhere/t.txt: cannot be written: no such folder");
}

TEST_F(HostRefusal, OfAFullDiskLeavesTheEarlierFile) {
    WriteText("out.wav", "earlier");
    const std::vector<std::string> files = FilesInFolder();
    const sPROGRAM_RUN run = Host(Arguments("in.wav", "out.wav"), {.fileSizeLimit = 8192});
    EXPECT_THAT(run.error, StartsWith("korvo-host: out.wav: cannot be written: "));
    EXPECT_EQ(std::count(run.error.begin(), run.error.end(), '\n'), 1);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(FilesInFolder(), files);
    EXPECT_EQ(ReadBytes(Path("out.wav")), "earlier");
}

// The signal comes with the first sight of the progress bar, when nearly all of the sound is still to come.
TEST_F(HostRefusal, AnInterruptedRunLeavesNothingBehind) {
    WriteSound("long.wav", {44100, 1, std::vector<float>(44100 * 60)});
    const std::vector<std::string> files = FilesInFolder();
    for (const int signal : {SIGINT, SIGTERM}) {
        const sPROGRAM_RUN run =
            Host(Arguments("long.wav", "out.wav"), {.hasTerminal = true, .signalAtFirstError = signal});
        EXPECT_THAT(run.error, HasSubstr("korvo-host: interrupted; nothing was written"));
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(FilesInFolder(), files);
    }
}

TEST_F(HostRefusal, OfAnOutputNamedTwice) {
    ExpectRefusal(Arguments("in.wav", "out.wav", {"--plot", "same", "--table", "same"}),
                  "same: named for two outputs");
}

TEST_F(HostRefusal, OfAPlotOfAnUnknownKind) {
    ExpectRefusal(Arguments("in.wav", "out.wav", {"--plot", "plot.svg", "--plot", "plot.pdf"}),
                  "plot.pdf: the name of a plot to write must end in .gs, .yaml, .svg or .png");
}

TEST_F(HostRefusal, OfABlockThatIsNone) {
    for (const char* const block : {"0", "-1", "65537", "many"}) {
        const sPROGRAM_RUN run = Host(Arguments("in.wav", "out.wav", {"--block", block}));
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.error, HasSubstr("--block"));
    }
}

} // namespace
} // namespace kvTest
