// A folder of plug-ins, good and bad ones: each is told of, whatever the one before it did.
#include "host_fixture.h"

#include <gmock/gmock.h>

#include <sstream>

namespace kvTest {
namespace {

using testing::HasSubstr;

class HostScan : public HostTest {
  protected:
    void Take(const std::string& plugin) const {
        const std::filesystem::path path(plugin);
        std::filesystem::copy_file(path, Path(path.filename().string()));
    }
    void TakeTestPlugin(const std::string& name) const { Take(kTestPlugins + name); }
};

// The row of one file, its cells one blank apart.
std::string Row(const std::string& table, const std::string& file) {
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string row;
        for (std::string word; words >> word;)
            row += (row.empty() ? "" : " ") + word;
        if (row.starts_with(file + " "))
            return row;
    }
    return "no file " + file;
}

TEST_F(HostScan, TellsOfEachPluginAndGoesOnAfterACrash) {
    Take(kStrip);
    for (const char* const name : {"crashes_at_entry.so", "crashes_when_made.so", "ends_its_process.so", "gain.so",
                                   "no_entry_point.so", "of_another_version.so"})
        TakeTestPlugin(name);
    WriteText("a text.so", "no shared object");
    WriteText("notes.txt", "not looked at");
    const sPROGRAM_RUN run = Host({"list", "."});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.error, "");
    EXPECT_EQ(Row(run.out, "channel_strip.so"), "channel_strip.so Channel Strip Korvo 26");
    EXPECT_EQ(Row(run.out, "gain.so"), "gain.so Gain Korvo tests 1");
    EXPECT_EQ(Row(run.out, "crashes_at_entry.so"), "crashes_at_entry.so it crashes (SIGABRT)");
    EXPECT_EQ(Row(run.out, "crashes_when_made.so"), "crashes_when_made.so it crashes (SIGABRT)");
    EXPECT_EQ(Row(run.out, "ends_its_process.so"), "ends_its_process.so it ends its process (exit status 3)");
    EXPECT_EQ(Row(run.out, "no_entry_point.so"), "no_entry_point.so not a plug-in: it exports no KorvoPluginEntry");
    EXPECT_THAT(Row(run.out, "of_another_version.so"), HasSubstr("version"));
    EXPECT_THAT(Row(run.out, "a text.so"), HasSubstr("a text.so"));
    EXPECT_EQ(run.out.find("notes.txt"), std::string::npos);
}

TEST_F(HostScan, APluginThatNeverAnswersIsGivenUp) {
    TakeTestPlugin("never_answers.so");
    const sPROGRAM_RUN run = Host({"list", Path(""), "--timeout", "1"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(Row(run.out, "never_answers.so"), "never_answers.so it does not answer within 1 s");
}

TEST_F(HostScan, AFolderWithoutPluginsSaysSo) {
    std::filesystem::create_directory(Path("empty"));
    EXPECT_EQ(Host({"list", "empty"}).out, "empty: no plug-ins (.so)\n");
}

TEST_F(HostScan, APluginBesideTheProgramGoesBeforeAFolderOfItsName) {
    std::filesystem::create_directory(Path("channel_strip"));
    EXPECT_THAT(Host({"list", "channel_strip"}).out, HasSubstr("Input Gain"));
}

TEST_F(HostScan, RefusesATimeThatIsNone) {
    for (const char* const time : {"0", "-1", "soon"})
        EXPECT_EQ(Host({"list", ".", "--timeout", time}).status, 2);
}

} // namespace
} // namespace kvTest
