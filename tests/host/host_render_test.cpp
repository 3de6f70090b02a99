#include "host_fixture.h"

#include <gmock/gmock.h>

#include <sndfile.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace kvTest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class HostRender : public HostTest {
  protected:
    // Renders in.wav to `out`, through the strip unless another plug-in is named.
    sPROGRAM_RUN Render(const std::string& out, std::vector<std::string> more = {},
                        const std::string& plugin = kStrip) const {
        std::vector<std::string> arguments = {"render", plugin, "--in", Path("in.wav"), "--out", Path(out)};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const sPROGRAM_RUN run = Host(arguments);
        EXPECT_EQ(run.status, 0) << run.error;
        return run;
    }
};

constexpr double kSineLevel = -9.03; // dB: half of full scale

TEST_F(HostRender, LevelsChangeAsTheSessionSays) {
    WriteSine("in.wav", 4.0, 2);
    const std::string session = WriteText("s.yaml", "- {at: 1, set: Input Gain, value: -12}\n"
                                                    "- {at: 2, set: Input Gain, text: 6 dB}\n"
                                                    "- {at: 3, set: Input Gain, state: 500}\n");
    Render("out.wav", {"--session", session});
    const sSOUND out = ReadSound(Path("out.wav"));
    EXPECT_NEAR(Level(out, 0.2, 0.99), kSineLevel, 0.05);
    EXPECT_NEAR(Level(out, 1.2, 1.99), kSineLevel - 12.0, 0.05);
    EXPECT_NEAR(Level(out, 2.2, 2.99), kSineLevel + 6.0, 0.05);
    EXPECT_NEAR(Level(out, 3.2, 3.99), kSineLevel, 0.05);
}

// The recording of the demo is not at hand everywhere; a steady tone shows the same and more exactly.
TEST_F(HostRender, TheSessionOfTheDemoIsHeardAsItSays) {
    WriteSine("in.wav", 4.5);
    Render("out.wav", {"--session", KORVO_DEMO_SESSION});
    const sSOUND out = ReadSound(Path("out.wav"));
    EXPECT_NEAR(Level(out, 0.1, 0.29), kSineLevel, 0.05);
    EXPECT_NEAR(Level(out, 0.5, 0.79), kSineLevel - 8.8, 0.05); // linked trims; in mono the left one is heard
    EXPECT_NEAR(Level(out, 1.1, 1.59), kSineLevel - 17.8, 0.05);
    // A sine that peaks at -6.02 dB, 25.98 dB over the threshold at 4:1, then 18 dB of makeup; the detector, which
    // follows single peaks, lets go a little between them.
    EXPECT_NEAR(Level(out, 2.0, 2.39), kSineLevel - 25.98 * 0.75 + 18.0, 2.5);
    EXPECT_NEAR(Level(out, 3.8, 3.89), kSineLevel, 0.5);
}

TEST_F(HostRender, TwoRunsGiveTheSameBytes) {
    WriteSine("in.wav", 1.5, 2);
    const std::string session = WriteText("s.yaml", "- {at: 0.3, set: Input Gain, value: 6}\n"
                                                    "- {at: 0.7, step: Compressor Ratio, by: 3}\n");
    for (const char* const block : {"64", "512", "1000"}) {
        Render("1.wav", {"--session", session, "--block", block});
        Render("2.wav", {"--session", session, "--block", block});
        EXPECT_TRUE(ReadBytes(Path("1.wav")) == ReadBytes(Path("2.wav")));
    }
}

// The test plug-in changes its gain at once: the first frame of another level is that of the block.
TEST_F(HostRender, AnEventTakesEffectAtTheFirstBlockThatDoesNotBeginBeforeIt) {
    WriteSound("in.wav", {1000, 1, std::vector<float>(1000, 1.0f)});
    const std::string session = WriteText("s.yaml", "- {at: 0, set: Gain, value: 1}\n"
                                                    "- {at: 0.2, set: Gain, value: 2}\n"
                                                    "- {at: 0.301, set: Gain, value: 3}\n");
    Render("out.wav", {"--session", session, "--block", "100"}, kTestPlugins + "gain.so");
    const std::vector<float> samples = ReadSound(Path("out.wav")).samples;
    ASSERT_EQ(samples.size(), 1000u);
    EXPECT_EQ(samples[0], 1.0f);
    EXPECT_EQ(samples[199], 1.0f);
    EXPECT_EQ(samples[200], 2.0f);
    EXPECT_EQ(samples[399], 2.0f);
    EXPECT_EQ(samples[400], 3.0f);
}

TEST_F(HostRender, StepsSetupsAndCopiesReachThePlugin) {
    WriteSound("in.wav", {1000, 1, std::vector<float>(700, 1.0f)});
    const std::string session = WriteText("s.yaml", "- {at: 0, set: Gain, value: 5}\n"
                                                    "- {at: 0.1, step: Gain, by: 3}\n"
                                                    "- {at: 0.2, step: Gain, by: -1}\n"
                                                    "- {at: 0.3, copy setup: A to B}\n"
                                                    "- {at: 0.3, set: Gain, value: 900}\n"
                                                    "- {at: 0.4, setup: B}\n"
                                                    "- {at: 0.5, setup: A}\n"
                                                    "- {at: 0.6, step: Gain, by: 1000}\n");
    Render("out.wav", {"--session", session, "--block", "100"}, kTestPlugins + "gain.so");
    const std::vector<float> samples = ReadSound(Path("out.wav")).samples;
    const float expected[] = {5.0f, 8.0f, 7.0f, 900.0f, 7.0f, 900.0f, 1000.0f};
    for (size_t block = 0; block < std::size(expected); ++block)
        EXPECT_FLOAT_EQ(samples[block * 100], expected[block]) << block;
}

TEST_F(HostRender, WhatThePluginDelaysIsMovedBack) {
    WriteSine("in.wav", 0.5, 2);
    Render("out.wav", {"--block", "64"}, kTestPlugins + "delay.so");
    EXPECT_TRUE(ReadSound(Path("out.wav")).samples == ReadSound(Path("in.wav")).samples);
}

TEST_F(HostRender, KeepsRateChannelsAndLengthOfTheInput) {
    for (const int numChannels : {1, 2}) {
        WriteSound("in.wav", {22050, numChannels, std::vector<float>(1234u * static_cast<size_t>(numChannels))});
        Render("out.wav");
        const sSOUND out = ReadSound(Path("out.wav"));
        EXPECT_EQ(out.sampleRateHz, 22050);
        EXPECT_EQ(out.numChannels, numChannels);
        EXPECT_EQ(out.samples.size(), 1234u * static_cast<size_t>(numChannels));
    }
}

TEST_F(HostRender, WritesTheKindOfFileThatTheNameSays) {
    WriteSine("in.wav", 0.3);
    for (const char* const name : {"out.wav", "out.aiff", "out.AIF", "out.flac"}) {
        Render(name);
        EXPECT_NEAR(Level(ReadSound(Path(name)), 0.05, 0.25), kSineLevel, 0.1) << name;
    }
    EXPECT_EQ(ReadBytes(Path("out.flac")).substr(0, 4), "fLaC");
}

TEST_F(HostRender, AnEmptySoundStaysEmpty) {
    WriteSound("in.wav", {});
    Render("out.wav", {"--plot", Path("plot.svg"), "--table", Path("table.txt")});
    EXPECT_TRUE(ReadSound(Path("out.wav")).samples.empty());
}

TEST_F(HostRender, SamplesThatAreNoNumbersAreReplacedAndReported) {
    sSOUND sound{44100, 1, std::vector<float>(1000, 0.25f)};
    sound.samples[10] = std::numeric_limits<float>::quiet_NaN();
    WriteSound("in.wav", sound);
    const sPROGRAM_RUN run = Render("out.wav");
    EXPECT_THAT(run.out, HasSubstr("samples that are not finite replaced in 1 blocks"));
    for (const float sample : ReadSound(Path("out.wav")).samples)
        ASSERT_TRUE(std::isfinite(sample));
}

TEST_F(HostRender, TellsOfEventsAfterTheEnd) {
    WriteSine("in.wav", 0.5);
    const std::string session = WriteText("s.yaml", "- {at: 0.1, setup: B}\n- {at: 9, setup: A}\n");
    EXPECT_THAT(Render("out.wav", {"--session", session}).out, HasSubstr("1 events, 1 after the end of the sound"));
}

TEST_F(HostRender, ReplacesAnEarlierFileAndTheInputItself) {
    WriteSine("in.wav", 0.3);
    const std::string before = ReadBytes(Path("in.wav"));
    const std::string session = WriteText("s.yaml", "- {at: 0, set: Input Gain, value: -6}\n");
    Render("in.wav", {"--session", session});
    EXPECT_TRUE(ReadBytes(Path("in.wav")) != before);
    EXPECT_THAT(FilesInFolder(), ElementsAre("in.wav", "s.yaml"));
}

TEST_F(HostRender, FollowsALinkToTheFileThatItMeans) {
    WriteSine("in.wav", 0.3);
    WriteText("real.wav", "earlier");
    std::filesystem::create_symlink("real.wav", Path("out.wav"));
    Render("out.wav");
    EXPECT_TRUE(std::filesystem::is_symlink(Path("out.wav")));
    EXPECT_EQ(ReadSound(Path("real.wav")).samples.size(), 13230u);
}

TEST_F(HostRender, ReadsNumbersWithPointsInAGermanLocale) {
    WriteSine("in.wav", 1.0);
    const std::string session = WriteText("s.yaml", "- {at: 0.5, set: Input Gain, value: -6.5}\n");
    const std::vector<std::string> arguments = {"render",    kStrip,        "--in",    Path("in.wav"),
                                                "--session", session,       "--table", Path("t.txt"),
                                                "--plot",    Path("p.svg"), "--out"};
    auto with = [&](const std::string& out) {
        std::vector<std::string> all = arguments;
        all.push_back(Path(out));
        return all;
    };
    EXPECT_EQ(Host(with("1.wav")).status, 0);
    const std::string table = ReadBytes(Path("t.txt"));
    const std::string plot = ReadBytes(Path("p.svg"));
    EXPECT_EQ(Host(with("2.wav"), {.environment = {"LC_ALL=de_DE.UTF-8", "LOCPATH=" KORVO_TEST_LOCALES}}).status,
              0);
    EXPECT_TRUE(ReadBytes(Path("1.wav")) == ReadBytes(Path("2.wav")));
    EXPECT_EQ(ReadBytes(Path("t.txt")), table);
    EXPECT_EQ(ReadBytes(Path("p.svg")), plot);
    EXPECT_THAT(table, HasSubstr("-6.5"));
}

TEST_F(HostRender, TheTableSaysWhatEachEventDid) {
    WriteSine("in.wav", 1.0);
    const std::string session = WriteText("s.yaml", "- {at: 0.5, set: Input Gain, value: -6.5}\n"
                                                    "- {at: 0.6, set: Input Gain, value: -6.5}\n");
    Render("out.wav", {"--session", session, "--table", Path("t.txt"), "--block", "441"});
    const std::string table = ReadBytes(Path("t.txt"));
    EXPECT_THAT(
        table,
        HasSubstr(" 0.5       0.5000     1  set Input Gain to -6.5  Input Gain 0.0 → -6.5           clean\n"));
    EXPECT_THAT(
        table,
        HasSubstr(" 0.6       0.6000     2  set Input Gain to -6.5  nothing changed                 clean\n"));
}

TEST_F(HostRender, DrawsOnePlotInEveryForm) {
    WriteSine("in.wav", 1.0);
    Render("out.wav",
           {"--plot", Path("p.gs"), "--plot", Path("p.yaml"), "--plot", Path("p.svg"), "--plot", Path("p.png")});
    EXPECT_THAT(ReadBytes(Path("p.png")), StartsWith("\x89PNG\r\n"));
    for (const char* const form : {"p.yaml", "p.svg"}) {
        EXPECT_THAT(ReadBytes(Path(form)), HasSubstr("in.wav through Channel Strip"));
        EXPECT_THAT(ReadBytes(Path(form)), HasSubstr("time in seconds"));
    }
    // What korvo-stream makes of the stream is what was written beside it.
    const sPROGRAM_RUN dump = RunProgram({KORVO_TEST_STREAM, "dump", Path("p.gs")});
    EXPECT_EQ(dump.out, ReadBytes(Path("p.yaml")));
    EXPECT_EQ(RunProgram({KORVO_TEST_STREAM, "svg", Path("p.gs")}).out, ReadBytes(Path("p.svg")));
}

TEST_F(HostRender, ShowsProgressOnATerminalAlone) {
    WriteSine("in.wav", 1.0);
    const std::vector<std::string> arguments = {"render", kStrip, "--in", Path("in.wav"), "--out", Path("out.wav")};
    EXPECT_EQ(Host(arguments).error, "");
    const std::string shown = Host(arguments, {.hasTerminal = true}).error;
    EXPECT_THAT(shown, HasSubstr("rendering ["));
    EXPECT_THAT(shown, HasSubstr("100 %"));
}

TEST_F(HostRender, ThePluginOfTheReadmeWorks) {
    WriteSine("in.wav", 1.0, 2);
    const std::string plugin = kTestPlugins + "readme_gain.so";
    EXPECT_THAT(Host({"list", plugin}).out, HasSubstr("Gain"));
    const std::string session = WriteText("s.yaml", "- {at: 0.5, set: Gain, value: -6}\n");
    Render("out.wav", {"--session", session}, plugin);
    const sSOUND out = ReadSound(Path("out.wav"));
    EXPECT_NEAR(Level(out, 0.0, 0.49), kSineLevel, 0.05);
    EXPECT_NEAR(Level(out, 0.55, 1.0), kSineLevel - 6.0, 0.05);
}

} // namespace
} // namespace kvTest
