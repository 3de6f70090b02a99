#include <korvolib/utilities/fm/replace_file.h>

#include <string>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/fm_test_internal.h>

namespace {

using namespace kvKorvo::FM;
using kvKorvo::KCStMemObj;
using kvTest::Exists;
using kvTest::FaultyPlatform;
using kvTest::Slurp;

const std::string kOld = "the old content, whole";
const std::string kNew = "new";

int32_t Replace(const KCStPath& path) { return ReplaceFile(path, kNew.data(), kNew.size()); }

class Replacing : public kvTest::FmTest {
  protected:
    mode_t ModeOf(const std::string& name) {
        struct stat info = {};
        ::stat(m_folder.Text(name).c_str(), &info);
        return info.st_mode & 07777u;
    }
};

TEST_F(Replacing, NewContentTakesTheOldOnesPlaceAndMode) {
    const KCStPath path = m_folder.File("f", kOld);
    ::chmod(m_folder.Text("f").c_str(), 0604);
    EXPECT_EQ(Replace(path), 0);
    EXPECT_EQ(Slurp(m_folder.Text("f")), kNew);
    EXPECT_EQ(ModeOf("f"), 0604u);
    EXPECT_EQ(m_folder.Count(), 1u);
}

TEST_F(Replacing, MissingFileIsMadeWithItsFolders) {
    const mode_t mask = ::umask(027);
    EXPECT_EQ(Replace(m_folder.Path("a/b/f")), 0);
    ::umask(mask);
    EXPECT_EQ(Slurp(m_folder.Text("a/b/f")), kNew);
    EXPECT_EQ(ModeOf("a/b/f"), 0640u);
}

TEST_F(Replacing, NothingHappensWithoutACommit) {
    const KCStPath path = m_folder.File("f", kOld);
    {
        KCStFileReplace file(path);
        ASSERT_TRUE(file);
        EXPECT_EQ(file.WriteFromString(kNew), 0);
        EXPECT_EQ(Slurp(m_folder.Text("f")), kOld);
    }
    EXPECT_EQ(Slurp(m_folder.Text("f")), kOld);
    EXPECT_EQ(m_folder.Count(), 1u);
}

TEST_F(Replacing, CommitEndsIt) {
    KCStMemObj block;
    ASSERT_EQ(block.Append("w"), 0);
    KCStFileReplace file(m_folder.Path("f"));
    size_t done = 0;
    EXPECT_EQ(file.Write("ne", 2, done), 0);
    EXPECT_EQ(file.WriteFromKCStMemObj(block), 0);
    EXPECT_EQ(file.Commit(), 0);
    EXPECT_EQ(Slurp(m_folder.Text("f")), kNew);
    EXPECT_FALSE(file);
    EXPECT_EQ(file.Commit(), -1026);
    EXPECT_EQ(file.WriteFromString("x"), -1026);
}

TEST_F(Replacing, ThroughALinkReplacesWhatItNames) {
    std::filesystem::create_directory(m_folder.Text("d"));
    m_folder.File("d/f", kOld);
    std::filesystem::create_symlink("d/f", m_folder.Text("l"));
    EXPECT_EQ(Replace(m_folder.Path("l")), 0);
    EXPECT_EQ(Slurp(m_folder.Text("d/f")), kNew);
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder.Text("l")));
    EXPECT_EQ(m_folder.Count(), 2u);
}

TEST_F(Replacing, ThroughADanglingLinkMakesWhatItNames) {
    std::filesystem::create_symlink("d/f", m_folder.Text("l"));
    EXPECT_EQ(Replace(m_folder.Path("l")), 0);
    EXPECT_EQ(Slurp(m_folder.Text("d/f")), kNew);
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder.Text("l")));
}

TEST_F(Replacing, WriterIsInTheWayAndReaderIsNot) {
    const KCStPath path = m_folder.File("f", kOld);
    {
        const KCStFileWrite writer(path);
        EXPECT_EQ(KCStFileReplace(path).GetOpenResult(), -2014);
        EXPECT_EQ(Replace(path), -2014);
    }
    KCStFileRead reader(path);
    EXPECT_EQ(Replace(path), 0);
    std::string text;
    EXPECT_EQ(reader.ReadToStdString(text), 0);
    EXPECT_EQ(text, kOld);
    EXPECT_EQ(Slurp(m_folder.Text("f")), kNew);
}

TEST_F(Replacing, OldFileIsHeldUntilTheEnd) {
    const KCStPath path = m_folder.File("f", kOld);
    KCStFileReplace file(path);
    EXPECT_EQ(KCStFileWrite(path).GetOpenResult(), -2014);
    EXPECT_EQ(KCStFileReplace(path).GetOpenResult(), -2014);
    EXPECT_EQ(KCStFileRead(path).GetOpenResult(), 0);
    EXPECT_EQ(file.Commit(), 0);
    EXPECT_EQ(KCStFileWrite(path).GetOpenResult(), 0);
}

TEST_F(Replacing, FileThatSomeoneMadeMeanwhileIsReplacedUnlessTheyWrite) {
    KCStFileReplace one(m_folder.Path("f"));
    m_folder.File("f", kOld);
    EXPECT_EQ(one.WriteFromString(kNew), 0);
    EXPECT_EQ(one.Commit(), 0);
    EXPECT_EQ(Slurp(m_folder.Text("f")), kNew);
    KCStFileReplace two(m_folder.Path("g"));
    KCStFileCreate writer(m_folder.Path("g"));
    EXPECT_EQ(two.Commit(), -2014);
    EXPECT_TRUE(Exists(m_folder.Text("g")));
}

TEST_F(Replacing, FirstWriteThatFailsIsRememberedByCommit) {
    const KCStPath path = m_folder.File("f", kOld);
    int writes = 0;
    FaultyPlatform platform(
        [&](const char* call, size_t) { return std::string_view(call) == "Write" && ++writes == 2 ? ENOMEM : 0; });
    KCStFileReplace file(path);
    EXPECT_EQ(file.WriteFromString("a"), 0);
    EXPECT_EQ(file.WriteFromString("b"), -4009);
    EXPECT_EQ(file.WriteFromString("c"), 0);
    EXPECT_EQ(file.Commit(), -4009);
    EXPECT_EQ(Slurp(m_folder.Text("f")), kOld);
}

TEST_F(Replacing, FolderAndNullAreRefused) {
    EXPECT_EQ(Replace(m_folder.Path()), -1);
    EXPECT_EQ(Replace(KCStPath()), -4003);
    EXPECT_EQ(ReplaceFile(m_folder.Path("f"), nullptr, 1), -4003);
    EXPECT_EQ(ReplaceFile(m_folder.Path("f"), nullptr, 0), 0);
    EXPECT_EQ(m_folder.Path("f").GetFileSize(), 0u);
    EXPECT_TRUE(m_folder.Path("f").IsFile());
}

TEST_F(Replacing, DeviceIsWrittenToDirectly) {
    EXPECT_EQ(Replace(KCStPath("/dev/null")), 0);
    EXPECT_FALSE(KCStPath("/dev/null").IsFile());
}

TEST_F(Replacing, WholeBlockIsSavedTheSameWay) {
    KCStMemObj block;
    ASSERT_EQ(block.Append(kNew), 0);
    const KCStPath path = m_folder.File("f", kOld);
    std::filesystem::create_hard_link(m_folder.Text("f"), m_folder.Text("same"));
    EXPECT_EQ(WriteFileFromKCStMemObj(path, block), 0);
    EXPECT_EQ(Slurp(m_folder.Text("f")), kNew);
    EXPECT_EQ(Slurp(m_folder.Text("same")), kOld);
    EXPECT_EQ(WriteFileFromKCStMemObj(nullptr, block), -4003);
}

// Runs a save in a child that is killed before its call number `step`; true if the save came to its end.
bool SaveKilledAt(const KCStPath& path, size_t step) {
    const pid_t child = ::fork();
    if (child == 0) {
        FaultyPlatform platform([&](const char*, size_t index) { return index == step ? ::raise(SIGKILL) : 0; });
        platform.most = 1;
        ::_exit(Replace(path) == 0 ? 0 : 1);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
    return WIFEXITED(status);
}

TEST_F(Replacing, KilledAtAnyStepLeavesTheOldFileOrTheNew) {
    size_t steps = 0;
    bool sawOld = false;
    bool sawNew = false;
    for (bool isDone = false; !isDone; ++steps) {
        const KCStPath path = m_folder.File("f", kOld);
        isDone = SaveKilledAt(path, steps);
        const std::string content = Slurp(m_folder.Text("f"));
        EXPECT_TRUE(content == kOld || content == kNew) << "step " << steps << ": " << content;
        sawOld = sawOld || (!isDone && content == kOld);
        sawNew = sawNew || (!isDone && content == kNew);
        EXPECT_EQ(KCStFileWrite(path).GetOpenResult(), 0) << "step " << steps; // nothing is held
    }
    EXPECT_GT(steps, 10u);
    EXPECT_TRUE(sawOld && sawNew);
}

TEST_F(Replacing, KilledAtAnyStepLeavesNoHalfOfAMissingFile) {
    for (size_t step = 0;; ++step) {
        std::filesystem::remove_all(m_folder.Text("d"));
        const bool isDone = SaveKilledAt(m_folder.Path("d/f"), step);
        EXPECT_TRUE(!Exists(m_folder.Text("d/f")) || Slurp(m_folder.Text("d/f")) == kNew) << "step " << step;
        if (isDone)
            break;
    }
    EXPECT_EQ(Slurp(m_folder.Text("d/f")), kNew);
}

} // namespace
