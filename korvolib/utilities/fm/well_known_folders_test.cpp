#include <korvolib/utilities/fm/well_known_folders.h>

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/fm_test_internal.h>

namespace {

using namespace kvKorvo::FM;

/// Sets or removes variables, and puts back what was there.
class Environment {
  public:
    void Set(const char* name, const char* value) {
        const char* before = std::getenv(name);
        m_before.emplace(name, before == nullptr ? std::nullopt : std::optional<std::string>(before));
        value == nullptr ? ::unsetenv(name) : ::setenv(name, value, 1);
    }
    ~Environment() {
        for (const auto& [name, value] : m_before)
            value ? ::setenv(name.c_str(), value->c_str(), 1) : ::unsetenv(name.c_str());
    }

  private:
    std::map<std::string, std::optional<std::string>> m_before;
};

class WellKnownFolders : public kvTest::FmTest {
  protected:
    WellKnownFolders() {
        for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME",
                                 "XDG_CONFIG_DIRS", "XDG_DATA_DIRS", "TMPDIR"})
            m_environment.Set(name, nullptr);
        m_environment.Set("HOME", m_folder.Text().c_str());
    }
    static std::string Of(const char* indicator) {
        KCStPath path("/old");
        const int32_t result = GetPathFromIndicator(indicator, path);
        EXPECT_EQ(result == 0, path.IsValid());
        EXPECT_EQ(IsValidIndicator(indicator), result == 0);
        return result == 0 ? std::string(path.GetPathString().c_str()) : std::to_string(result);
    }
    void UserDirs(const std::string& text) {
        std::filesystem::create_directories(m_folder.Text(".config"));
        m_folder.File(".config/user-dirs.dirs", text);
    }
    Environment m_environment;
};

TEST_F(WellKnownFolders, NamesAreThoseOfTheValues) {
    EXPECT_STREQ(KEFoldersDomainName(KEFoldersDomain::User), "User");
    EXPECT_STREQ(KEFoldersDomainName(KEFoldersDomain::System), "System");
    EXPECT_STREQ(KEFoldersDomainName(KEFoldersDomain{3}), "");
    EXPECT_STREQ(KEFoldersDomainName(KEFoldersDomain{-1}), "");
    EXPECT_STREQ(KESystemFoldersName(KESystemFolders::Home), "Home");
    EXPECT_STREQ(KESystemFoldersName(KESystemFolders::Temporary), "Temporary");
    EXPECT_STREQ(KESystemFoldersName(KESystemFolders{12}), "");
    EXPECT_STREQ(KESystemFoldersName(KESystemFolders{-1}), "");
}

TEST_F(WellKnownFolders, UserFoldersStandInTheHome) {
    EXPECT_EQ(Of("Home"), m_folder.Text());
    EXPECT_EQ(Of("User/Music"), m_folder.Text("Music"));
    EXPECT_EQ(Of("Downloads"), m_folder.Text("Downloads"));
    EXPECT_EQ(Of("Preferences"), m_folder.Text(".config"));
    EXPECT_EQ(Of("ApplicationSupport"), m_folder.Text(".local/share"));
    EXPECT_EQ(Of("Caches"), m_folder.Text(".cache"));
    EXPECT_EQ(Of("State"), m_folder.Text(".local/state"));
    EXPECT_EQ(Of("Temporary"), "/tmp");
}

TEST_F(WellKnownFolders, VariablesMoveThemIfTheyAreAbsolute) {
    m_environment.Set("XDG_CACHE_HOME", "/elsewhere/");
    EXPECT_EQ(Of("Caches"), "/elsewhere");
    m_environment.Set("XDG_CACHE_HOME", "relative");
    EXPECT_EQ(Of("Caches"), m_folder.Text(".cache"));
    m_environment.Set("XDG_DATA_DIRS", "/one:/two");
    EXPECT_EQ(Of("Local/ApplicationSupport"), "/one");
    m_environment.Set("TMPDIR", "/scratch");
    EXPECT_EQ(Of("Temporary"), "/scratch");
}

TEST_F(WellKnownFolders, OnlyListsEndAtAColon) {
    m_environment.Set("XDG_CACHE_HOME", "/a:b");
    EXPECT_EQ(Of("Caches"), "/a:b");
    m_environment.Set("HOME", "/c:/d");
    EXPECT_EQ(Of("Home"), "/c:/d");
    EXPECT_EQ(Of("Music"), "/c:/d/Music");
}

TEST_F(WellKnownFolders, RelativeEntriesOfAListAreSteppedOver) {
    m_environment.Set("XDG_DATA_DIRS", "relative::/one:/two");
    EXPECT_EQ(Of("Local/ApplicationSupport"), "/one");
    m_environment.Set("XDG_DATA_DIRS", "relative:");
    EXPECT_EQ(Of("Local/ApplicationSupport"), "/usr/local/share");
}

TEST_F(WellKnownFolders, OtherDomainsHaveFixedPlaces) {
    EXPECT_EQ(Of("System/Preferences"), "/etc");
    EXPECT_EQ(Of("Local/Preferences"), "/etc/xdg");
    EXPECT_EQ(Of("Local/ApplicationSupport"), "/usr/local/share");
    EXPECT_EQ(Of("System/Temporary"), "/var/tmp");
    EXPECT_EQ(Of("System/Music"), "-1002");
}

TEST_F(WellKnownFolders, UserDirectoriesAreRead) {
    UserDirs("# comment\nXDG_MUSIC_DIR=\"$HOME/Musik\"\nXDG_DOCUMENTS_DIR=\"/data/a \\\"b\\\"\"\n"
             "XDG_PICTURES_DIR=\"$HOME\"\nXDG_DESKTOP_DIR=\"one\"\nXDG_VIDEOS_DIR=nonsense\n");
    EXPECT_EQ(Of("Music"), m_folder.Text("Musik"));
    EXPECT_EQ(Of("Documents"), "/data/a \"b\"");
    EXPECT_EQ(Of("Pictures"), m_folder.Text());
    EXPECT_EQ(Of("Desktop"), m_folder.Text("Desktop"));
    EXPECT_EQ(Of("Videos"), m_folder.Text("Videos"));
}

TEST_F(WellKnownFolders, DamagedUserDirectoriesAreSteppedOver) {
    for (const char* text : {"XDG_MUSIC_DIR=", "XDG_MUSIC_DIR=\"", "XDG_MUSIC_DIR=\"\"", "XDG_MUSIC_DIR=\"$HOME",
                             "XDG_MUSIC_DIR=\"$HOMER/x\"", "XDG_MUSIC_DIR", "\0\0\0"}) {
        UserDirs(text);
        EXPECT_EQ(Of("Music"), m_folder.Text("Music")) << text;
    }
    UserDirs(std::string(100000, '#') + "\nXDG_MUSIC_DIR=\"/too far down\"\n");
    EXPECT_EQ(Of("Music"), m_folder.Text("Music"));
}

TEST_F(WellKnownFolders, WithoutHomeTheUserListKnows) {
    m_environment.Set("HOME", nullptr);
    EXPECT_EQ(Of("Home").front(), '/');
    m_environment.Set("HOME", "relative");
    EXPECT_EQ(Of("Home").front(), '/');
}

TEST_F(WellKnownFolders, WhatIsNoIndicatorIsNotFound) {
    for (const char* text : {"", "music", "Music/", "User", "User/", "/Music", "Nobody/Music", "User/Music/x"})
        EXPECT_EQ(Of(text), "-1002") << text;
    KCStPath path("/old");
    EXPECT_EQ(GetPathFromIndicator(nullptr, path), -4003);
    EXPECT_FALSE(path);
    EXPECT_FALSE(IsValidIndicator(nullptr));
    KTPathType* out = nullptr;
    EXPECT_EQ(CreateSystemFolderPathRef(KEFoldersDomain{7}, KESystemFolders::Home, out), -1002);
    EXPECT_EQ(CreateSystemFolderPathRef(KEFoldersDomain::User, KESystemFolders{-1}, out), -1002);
    EXPECT_EQ(out, nullptr);
}

TEST_F(WellKnownFolders, CacheFilesHaveOurOwnFolder) {
    KCStPath path;
    KTPathType* out = nullptr;
    ASSERT_EQ(CreatePathRefToCacheFile("plugins.list", out), 0);
    path.TakeOver(out);
    EXPECT_EQ(path, m_folder.Path(".cache/KorvoLib/plugins.list"));
    EXPECT_EQ(CreatePathRefToCacheFile(nullptr, out), -4003);
    EXPECT_EQ(out, nullptr);
}

} // namespace
