// The window as a picture, and as a film.
#include "host_fixture.h"

#include <gmock/gmock.h>

namespace kvTest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

struct sSIZE {
    unsigned width = 0, height = 0;
    bool operator==(const sSIZE&) const = default;
};

// From the first chunk of a PNG file, where both stand with the highest byte first.
sSIZE SizeOfPng(const std::string& png) {
    const auto number = [&](size_t at) {
        unsigned value = 0;
        for (size_t i = at; i < at + 4 && i < png.size(); ++i)
            value = value << 8 | static_cast<unsigned char>(png[i]);
        return value;
    };
    return {number(16), number(20)};
}

class HostDraw : public HostTest {
  protected:
    std::string Plugin(const std::string& name) const { return kTestPlugins + name + ".so"; }

    void Draw(const std::vector<std::string>& more) const {
        std::vector<std::string> arguments = {"draw", Plugin("window")};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const sPROGRAM_RUN run = Host(arguments);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.error, "");
        EXPECT_EQ(run.out, "");
    }
};

TEST_F(HostDraw, WritesEachKindOfFile) {
    Draw({"--out", "w.png", "--out", "w.svg", "--out", "w.yaml", "--out", "w.gs"});
    EXPECT_EQ(FilesInFolder(), (std::vector<std::string>{"w.gs", "w.png", "w.svg", "w.yaml"}));
    EXPECT_EQ(SizeOfPng(ReadBytes(Path("w.png"))), (sSIZE{240, 120}));
    EXPECT_THAT(ReadBytes(Path("w.svg")), HasSubstr(" width=\"240\" height=\"120\" viewBox=\"0 0 240 120\""));
    EXPECT_THAT(ReadBytes(Path("w.svg")), HasSubstr(">WINDOW</text>"));
    EXPECT_THAT(ReadBytes(Path("w.yaml")), HasSubstr("WINDOW"));
    const sPROGRAM_RUN shown = RunProgram({KORVO_TEST_STREAM, "dump", Path("w.gs")});
    EXPECT_EQ(shown.status, 0) << shown.error;
    EXPECT_THAT(shown.out, HasSubstr("WINDOW"));
}

TEST_F(HostDraw, ScalesPixelsAndTheSizeOfADrawing) {
    Draw({"--out", "w.png", "--out", "w.svg", "--scale", "2.5"});
    EXPECT_EQ(SizeOfPng(ReadBytes(Path("w.png"))), (sSIZE{600, 300}));
    EXPECT_THAT(ReadBytes(Path("w.svg")), HasSubstr(" width=\"600\" height=\"300\" viewBox=\"0 0 240 120\""));
}

TEST_F(HostDraw, ShowsWhatTheSessionLeaves) {
    Draw({"--out", "before.png", "--out", "before.yaml"});
    Draw({"--out", "same.png"});
    Draw({"--out", "after.png", "--out", "after.yaml", "--session",
          WriteText("s.yaml", "- {at: 1, set: Gain, value: 7.5}\n- {at: 100, mouse: {press: Pan}}\n"
                              "- {at: 100, mouse: {drag: [0, -20]}}\n")});
    EXPECT_EQ(ReadBytes(Path("same.png")), ReadBytes(Path("before.png")));
    EXPECT_NE(ReadBytes(Path("after.png")), ReadBytes(Path("before.png")));
    EXPECT_THAT(ReadBytes(Path("before.yaml")), Not(HasSubstr("\"7.5 dB\"")));
    EXPECT_THAT(ReadBytes(Path("after.yaml")), HasSubstr("\"7.5 dB\""));
}

TEST_F(HostDraw, DrawsTheSameInAnyLocale) {
    Draw({"--out", "w.svg"});
    const sPROGRAM_RUN german = Host({"draw", Plugin("window"), "--out", "g.svg"},
                                     {.environment = {"LC_ALL=de_DE.UTF-8", "LOCPATH=" KORVO_TEST_LOCALES}});
    EXPECT_EQ(german.status, 0) << german.error;
    EXPECT_EQ(ReadBytes(Path("g.svg")), ReadBytes(Path("w.svg")));
}

TEST_F(HostDraw, DrawsTheExampleOfTheDocumentation) {
    const sPROGRAM_RUN run = Host({"draw", Plugin("documented_window"), "--out", "w.svg"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.error, "");
    EXPECT_THAT(ReadBytes(Path("w.svg")), HasSubstr(">My plug-in</text>"));
}

// What the README shows, after everything that the demo's session does by hand.
TEST_F(HostDraw, DrawsTheStripAsTheDemoLeavesIt) {
    const sPROGRAM_RUN run = Host({"draw", kStrip, "--session", KORVO_DEMO_SESSION, "--out", "w.svg"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.error, "");
    for (const char* const text : {"Channel Strip", "500 Hz", "24 dB/oct", "-32.0 dB", "12.0 dB", "60 ms"})
        EXPECT_THAT(ReadBytes(Path("w.svg")), HasSubstr(std::string(">") + text + "</text>"));
}

TEST_F(HostDraw, TellsWhatHadToBeLeftOut) {
    const sPROGRAM_RUN run = Host({"draw", Plugin("window_with_mistakes"), "--out", "w.png"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.error, "korvo-host: GUIXML:6: the window knows no class \"Knbo\"\n"
                         "korvo-host: GUIXML:10: no parameter is named \"Moed\"\n");
    EXPECT_EQ(FilesInFolder(), std::vector<std::string>{"w.png"});
}

TEST_F(HostDraw, RefusesAPluginWithoutAWindow) {
    ExpectRefusal({"draw", Plugin("readme_gain"), "--out", "w.png"},
                  Plugin("readme_gain") + ": the plug-in describes no window");
}

TEST_F(HostDraw, RefusesAWindowThatIsNoXML) {
    const std::string plugin = Plugin("window_that_breaks_off");
    ExpectRefusal({"draw", plugin, "--out", "w.png"},
                  plugin + ": the plug-in could not be created: GUIXML:3: no element found");
}

TEST_F(HostDraw, RefusesADescriptionOfSomethingElse) {
    const std::string plugin = Plugin("window_of_another_name");
    ExpectRefusal({"draw", plugin, "--out", "w.png"},
                  plugin +
                      ": the plug-in's window cannot be made: GUIXML:1: a window is described by \"GUI\", not by "
                      "\"Window\"");
}

TEST_F(HostDraw, RefusesWhatItCannotWrite) {
    ExpectRefusal({"draw", Plugin("window"), "--out", "w.pdf"},
                  "w.pdf: the name of a picture to write must end in .gs, .yaml, .svg or .png");
    ExpectRefusal({"draw", Plugin("window"), "--out", "no/w.png"}, "no/w.png: cannot be written: no such folder");
    ExpectRefusal({"draw", Plugin("window"), "--out", "w.png", "--out", "./w.png"},
                  "./w.png: named for two outputs");
    for (const char* const scale : {"0", "9", "-1", "big"}) {
        const sPROGRAM_RUN run = Host({"draw", Plugin("window"), "--out", "w.png", "--scale", scale});
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.error, HasSubstr("--scale"));
    }
    EXPECT_EQ(Host({"draw", Plugin("window")}).status, 2);
}

TEST_F(HostDraw, RefusesASessionBeforeItWrites) {
    WriteText("s.yaml", "- {at: 0, mouse: {press: Gian}}\n");
    ExpectRefusal({"draw", Plugin("window"), "--out", "w.png", "--session", "s.yaml"},
                  "s.yaml:1: no control is named \"Gian\"; nearest: \"Gain\", \"Pan\"");
    ExpectRefusal({"draw", Plugin("window"), "--out", "w.png", "--session", "t.yaml"},
                  "t.yaml: cannot be read: no such file or folder");
}

class HostFilm : public HostDraw {
  protected:
    HostFilm() { WriteSine("in.wav", 1.0, 2); }

    std::vector<std::string> Arguments(const std::string& session) const {
        return {"render",    Plugin("window"),
                "--in",      "in.wav",
                "--out",     "out.wav",
                "--session", WriteText("s.yaml", session),
                "--film",    "film"};
    }
    void Film(const std::string& session, const std::string& pictures) const {
        const sPROGRAM_RUN run = Host(Arguments(session));
        EXPECT_EQ(run.status, 0) << run.error;
        EXPECT_THAT(run.out, HasSubstr(", " + pictures + " pictures"));
    }
    std::vector<std::string> Pictures() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(Path("film")))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(HostFilm, ShowsTheWindowAsItOpens) {
    Film("", "1");
    Draw({"--out", "w.png"});
    EXPECT_THAT(Pictures(), ElementsAre("0001.png"));
    EXPECT_EQ(ReadBytes(Path("film/0001.png")), ReadBytes(Path("w.png")));
}

TEST_F(HostFilm, HasAPictureForEachMomentThatChangesSomething) {
    Film("- {at: 0.2, set: Gain, value: 3}\n"
         "- {at: 0.4, set: Gain, value: 3}\n" // nothing changes
         "- {at: 0.6, set: Gain, value: 6}\n- {at: 0.6, set: Pan, value: 6}\n",
         "3");
    EXPECT_THAT(Pictures(), ElementsAre("0001.png", "0002.png", "0003.png"));
    EXPECT_NE(ReadBytes(Path("film/0001.png")), ReadBytes(Path("film/0002.png")));
    EXPECT_NE(ReadBytes(Path("film/0002.png")), ReadBytes(Path("film/0003.png")));
}

TEST_F(HostFilm, ShowsWhatIsUnderThePointer) {
    Film("- {at: 0.2, hover: Gain}\n- {at: 0.4, hover: [239, 119]}\n", "3");
    EXPECT_NE(ReadBytes(Path("film/0001.png")), ReadBytes(Path("film/0002.png")));
    EXPECT_EQ(ReadBytes(Path("film/0001.png")), ReadBytes(Path("film/0003.png")));
}

TEST_F(HostFilm, EndsWithThePictureThatIsDrawnOfTheSameSession) {
    const std::string session = "- {at: 0.2, mouse: {press: Gain}}\n- {at: 0.3, mouse: {drag: [0, -15]}}\n"
                                "- {at: 0.4, mouse: release}\n- {at: 0.5, menu: {of: Mode, choose: 2}}\n";
    EXPECT_EQ(Host(Arguments(session)).status, 0);
    Draw({"--out", "w.png", "--session", "s.yaml"});
    EXPECT_EQ(ReadBytes(Path("film/" + Pictures().back())), ReadBytes(Path("w.png")));
}

TEST_F(HostFilm, ReplacesALongerOne) {
    Film("- {at: 0.2, set: Gain, value: 3}\n", "2");
    Film("", "1");
    EXPECT_THAT(Pictures(), ElementsAre("0001.png"));
}

TEST_F(HostFilm, NeedsAWindowAndAFolder) {
    ExpectRefusal({"render", Plugin("readme_gain"), "--in", "in.wav", "--out", "out.wav", "--film", "film"},
                  Plugin("readme_gain") + ": the plug-in describes no window");
    ExpectRefusal({"render", Plugin("window"), "--in", "in.wav", "--out", "out.wav", "--film", "in.wav"},
                  "in.wav: no film can be written there: it is not a folder");
    ExpectRefusal({"render", Plugin("window"), "--in", "in.wav", "--out", "out.wav", "--film", "no/film"},
                  "no/film: no film can be written there: No such file or directory");
    ExpectRefusal({"render", Plugin("window"), "--in", "in.wav", "--out", "a.wav", "--film", "a.wav"},
                  "a.wav: named for two outputs");
}

TEST_F(HostFilm, ThatFailsLeavesNothing) {
    WriteText("s.yaml", "- {at: 0, set: Gian, value: 1}\n");
    ExpectRefusal(
        {"render", Plugin("window"), "--in", "in.wav", "--out", "out.wav", "--session", "s.yaml", "--film", "film"},
        "s.yaml:1: no parameter is named \"Gian\"; nearest: \"Gain\", \"Pan\"");
}

} // namespace
} // namespace kvTest
