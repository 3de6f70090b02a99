#include "host_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

namespace kvTest {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class HostList : public HostTest {};

// The row of one parameter, its cells one blank apart.
std::string Row(const std::string& table, const std::string& name) {
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string row;
        for (std::string word; words >> word;)
            row += (row.empty() ? "" : " ") + word;
        if (row.find(" " + name + " ") != std::string::npos)
            return row;
    }
    return "no parameter " + name;
}

TEST_F(HostList, PrintsEveryParameterInColumns) {
    const sPROGRAM_RUN run = Host({"list", kStrip});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.error, "");
    EXPECT_THAT(run.out, StartsWith("index  name"));
    EXPECT_EQ(Row(run.out, "Input Gain"), "1 Input Gain linear -24.0 … 24.0 dB 0.0 -");
    EXPECT_EQ(Row(run.out, "Bypass"), "0 Bypass toggle Off … On Off 2");
    EXPECT_EQ(Row(run.out, "Low Cut Slope"), "4 Low Cut Slope toggleRanges 6 … 24 dB/oct 12 4");
    EXPECT_EQ(Row(run.out, "Compressor Detector"), "20 Compressor Detector toggleMap Peak … RMS 50 ms ms Peak 3");
}

TEST_F(HostList, FindsAPluginBesideTheProgramByItsName) {
    const sPROGRAM_RUN run = Host({"list", "channel_strip"});
    EXPECT_EQ(run.status, 0) << run.error;
    EXPECT_EQ(run.out, Host({"list", kStrip}).out);
}

TEST_F(HostList, PrintsPointsInAGermanLocale) {
    const sPROGRAM_RUN run =
        Host({"list", kStrip}, {.environment = {"LC_ALL=de_DE.UTF-8", "LOCPATH=" KORVO_TEST_LOCALES}});
    EXPECT_EQ(run.out, Host({"list", kStrip}).out);
}

TEST_F(HostList, RefusesAMissingPlugin) {
    ExpectRefusal({"list", "/nowhere/strip.so"}, "/nowhere/strip.so: no such file");
    ExpectRefusal({"list", "no_such_plugin"}, "no_such_plugin: no such file");
}

TEST_F(HostList, RefusesAPluginOfAnotherVersion) {
    const std::string path = kTestPlugins + "of_another_version.so";
    const sPROGRAM_RUN run = Host({"list", path});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.error, StartsWith("korvo-host: " + path + ": "));
    EXPECT_THAT(run.error, HasSubstr("version"));
}

TEST_F(HostList, RefusesAFileThatIsNoPlugin) {
    const std::string path = WriteText("text.so", "not a shared object");
    const sPROGRAM_RUN run = Host({"list", path});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.error, StartsWith("korvo-host: " + path + ": "));
    ExpectRefusal({"list", kTestPlugins + "no_entry_point.so"},
                  kTestPlugins + "no_entry_point.so: not a plug-in: it exports no KorvoPluginEntry");
}

TEST_F(HostList, SaysWhenStandardOutputCannotBeWritten) {
    const sPROGRAM_RUN run =
        RunProgram({"/bin/sh", "-c", "'" KORVO_TEST_HOST "' list '" + kStrip + "' >/dev/full"});
    EXPECT_EQ(run.error, "korvo-host: standard output cannot be written\n");
    EXPECT_EQ(run.status, 2);
}

TEST_F(HostList, ExplainsItself) {
    const sPROGRAM_RUN run = Host({"render", "--help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("--session"));
}

TEST_F(HostList, RefusesACommandLineThatIsIncomplete) {
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                      {"list"},
                                                      {"sing"},
                                                      {"render", kStrip, "--in", "a.wav"},
                                                      {"list", "a", "b"}}) {
        const sPROGRAM_RUN run = Host(arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.error, StartsWith("korvo-host: "));
        EXPECT_EQ(std::count(run.error.begin(), run.error.end(), '\n'), 1) << run.error;
    }
}

} // namespace
} // namespace kvTest
