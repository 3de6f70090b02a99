#include <shells/plugin_loader.h>
#include <shells/test_plugins/gain_plugin.h>

#include <korvolib/utilities/error_codes.h>
#include <shells/plugin_runner.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace kvKorvoV12_9_0_320 {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

std::string TestPlugin(const char* name) { return std::string(KORVO_TEST_PLUGINS) + name; }

struct sLOADED {
    explicit sLOADED(const std::string& path) { result = loader.Load(path.c_str(), error); }

    KCPluginLoader loader;
    KCFixedString<255> error;
    int32_t result = 0;
};

sPLUGIN_ENTRY CompleteEntry() {
    return {kPluginEntryVersion,
            sizeof(sPLUGIN_ENTRY),
            "Name",
            "Maker",
            []() noexcept -> KCPlugin* { return nullptr; },
            [](KCPlugin*) noexcept {}};
}

TEST(PluginLoader, LoadsAPluginAndMakesIt) {
    const sLOADED loaded(TestPlugin("gain.so"));
    ASSERT_EQ(loaded.result, kErr_NoErr) << loaded.error.c_str();
    EXPECT_TRUE(loaded.error.empty());
    EXPECT_STREQ(loaded.loader.GetEntry()->name, "Gain");
    EXPECT_STREQ(loaded.loader.GetEntry()->maker, "Korvo tests");
    KCPluginRunner runner(*loaded.loader.GetPlugin());
    EXPECT_EQ(runner.Create(), kErr_NoErr);
    EXPECT_EQ(runner.GetAlgorithm().GetNumParams(), 1u);
}

TEST(PluginLoader, UnloadsWhatWasThereBeforeItLoadsAnother) {
    sLOADED loaded(TestPlugin("gain.so"));
    EXPECT_EQ(loaded.loader.Load("nowhere.so", loaded.error), kErr_FileNotFound);
    EXPECT_EQ(loaded.loader.GetPlugin(), nullptr);
    EXPECT_EQ(loaded.loader.GetEntry(), nullptr);
}

TEST(PluginLoader, NamesTheFileThatIsMissing) {
    const sLOADED loaded("no/such/plugin.so");
    EXPECT_EQ(loaded.result, kErr_FileNotFound);
    EXPECT_STREQ(loaded.error.c_str(), "no/such/plugin.so: no such file");
}

TEST(PluginLoader, DoesNotSearchTheSystemForANameWithoutAFolder) {
    EXPECT_EQ(sLOADED("libc.so.6").result, kErr_FileNotFound);
}

TEST(PluginLoader, RefusesNullAndEmptyPaths) {
    KCPluginLoader loader;
    KCFixedString<255> error;
    EXPECT_EQ(loader.Load(nullptr, error), kErr_NullArgument);
    EXPECT_EQ(loader.Load("", error), kErr_NullArgument);
    EXPECT_FALSE(error.empty());
}

TEST(PluginLoader, RefusesAFileThatIsNoSharedObject) {
    const std::string path = testing::TempDir() + "korvo_not_a_plugin.so";
    std::FILE* const file = std::fopen(path.c_str(), "w");
    ASSERT_NE(file, nullptr);
    std::fputs("text", file);
    std::fclose(file);
    const sLOADED loaded(path);
    std::remove(path.c_str());
    EXPECT_EQ(loaded.result, kErr_Generic);
    EXPECT_THAT(loaded.error.c_str(), StartsWith(path + ": "));
}

TEST(PluginLoader, RefusesASharedObjectWithoutTheEntryPoint) {
    const sLOADED loaded(TestPlugin("no_entry_point.so"));
    EXPECT_EQ(loaded.result, kErr_Generic);
    EXPECT_THAT(loaded.error.c_str(), EndsWith("not a plug-in: it exports no KorvoPluginEntry"));
    EXPECT_EQ(loaded.loader.GetPlugin(), nullptr);
}

TEST(PluginLoader, RefusesAnotherVersionByName) {
    const sLOADED loaded(TestPlugin("of_another_version.so"));
    EXPECT_EQ(loaded.result, kErr_WrongRecordVersion);
    EXPECT_THAT(loaded.error.c_str(),
                EndsWith("of_another_version.so: the plug-in's entry record has version 3, this host expects 2"));
}

TEST(PluginLoader, RefusesAPluginThatCannotBeMade) {
    const sLOADED loaded(TestPlugin("makes_none.so"));
    EXPECT_EQ(loaded.result, kErr_Generic);
    EXPECT_THAT(loaded.error.c_str(), EndsWith("the plug-in could not be made"));
    EXPECT_EQ(loaded.loader.GetEntry(), nullptr);
}

TEST(PluginEntryCheck, AcceptsACompleteRecord) {
    const sPLUGIN_ENTRY entry = CompleteEntry();
    KCFixedString<255> error("before");
    EXPECT_EQ(CheckPluginEntry(&entry, "p", error), kErr_NoErr);
    EXPECT_TRUE(error.empty());
}

TEST(PluginEntryCheck, RefusesAnotherSizeByName) {
    sPLUGIN_ENTRY entry = CompleteEntry();
    entry.size += 8;
    KCFixedString<255> error;
    EXPECT_EQ(CheckPluginEntry(&entry, "p", error), kErr_WrongRecordVersion);
    EXPECT_STREQ(error.c_str(), "p: the plug-in's entry record has size 48, this host expects 40");
}

TEST(PluginEntryCheck, ReadsNothingBehindVersionAndSizeOfAStrangeRecord) {
    const uint32_t head[2] = {99, sizeof head}; // a sanitizer sees any look behind it
    KCFixedString<255> error;
    EXPECT_EQ(CheckPluginEntry(reinterpret_cast<const sPLUGIN_ENTRY*>(head), "p", error), kErr_WrongRecordVersion);
}

TEST(PluginEntryCheck, RefusesNullAndIncompleteRecords) {
    KCFixedString<255> error;
    EXPECT_EQ(CheckPluginEntry(nullptr, "p", error), kErr_Generic);
    sPLUGIN_ENTRY entry = CompleteEntry();
    entry.create = nullptr;
    EXPECT_EQ(CheckPluginEntry(&entry, "p", error), kErr_Generic);
    EXPECT_THAT(error.c_str(), HasSubstr("incomplete"));
}

TEST(PluginEntry, EndsThePlugInBeforeItIsDestroyed) {
    struct Ending : kvTest::KCGainPlugin {
        static int& NumEnded() {
            static int numEnded = 0;
            return numEnded;
        }
        void DisposeSelf() override {
            ++NumEnded();
            throw 1; // which must not reach the host
        }
    };
    const kvKorvo::sPLUGIN_ENTRY* const entry = kvKorvo::PluginEntry<Ending>("Ending", "Test");
    entry->destroy(entry->create());
    EXPECT_EQ(Ending::NumEnded(), 1);
    entry->destroy(nullptr);
}

} // namespace
} // namespace kvKorvoV12_9_0_320
