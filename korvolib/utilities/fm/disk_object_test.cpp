#include <korvolib/utilities/fm/disk_object.h>

#include <string>

#include <fcntl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/fm_test_internal.h>
#include <korvolib/utilities/fm/path.h>

namespace {

using namespace kvKorvo::FM;
using kvTest::Exists;
using kvTest::Failing;
using kvTest::FaultyPlatform;
using kvTest::Slurp;
using kvTest::Spit;

class DiskObjects : public kvTest::FmTest {
  protected:
    KCStPath Link(const std::string& name, const std::string& target) {
        std::filesystem::create_symlink(target, m_folder.Text(name));
        return m_folder.Path(name);
    }
    KCStPath Folder(const std::string& name) {
        std::filesystem::create_directories(m_folder.Text(name));
        return m_folder.Path(name);
    }
    mode_t ModeOf(const std::string& name) {
        struct stat info = {};
        ::stat(m_folder.Text(name).c_str(), &info);
        return info.st_mode & 07777u;
    }
};

TEST_F(DiskObjects, KindsAreTold) {
    const KCStPath file = m_folder.File("f", "abc");
    EXPECT_TRUE(file.IsExist());
    EXPECT_TRUE(file.IsFile());
    EXPECT_FALSE(file.IsFolder());
    EXPECT_FALSE(file.IsFileSystemLink());
    EXPECT_TRUE(m_folder.Path().IsFolder());
    EXPECT_FALSE(m_folder.Path().IsFile());
    EXPECT_FALSE(m_folder.Path("missing").IsExist());
    EXPECT_FALSE(KCStPath("/dev/null").IsFile());
    EXPECT_TRUE(KCStPath("/dev/null").IsExist());
}

TEST_F(DiskObjects, LinkCountsAsWhatItNamesUnlessAskedOtherwise) {
    m_folder.File("f", "abc");
    const KCStPath link = Link("l", "f");
    EXPECT_TRUE(link.IsFileSystemLink());
    EXPECT_TRUE(link.IsFile(true));
    EXPECT_FALSE(link.IsFile(false));
    const KCStPath toFolder = Link("d", ".");
    EXPECT_TRUE(toFolder.IsFolder());
    EXPECT_FALSE(toFolder.IsFolder(false));
    const KCStPath dangling = Link("x", "missing");
    EXPECT_TRUE(dangling.IsFileSystemLink());
    EXPECT_FALSE(dangling.IsExist());
}

TEST_F(DiskObjects, NullIsANullArgumentOrFalse) {
    uint64_t size = 7;
    int64_t time = 7;
    KEPermitions permissions = KEPermitions::Read;
    KTPathType* out = nullptr;
    const KCStPath path = m_folder.Path("f");
    constexpr int32_t kExpected = kvKorvo::kErr_NullArgument;
    EXPECT_FALSE(DoesFileExist(nullptr) || IsFile(nullptr) || IsFolder(nullptr) || IsFileSystemLink(nullptr) ||
                 IsWritable(nullptr) || IsWinShortcut(nullptr));
    EXPECT_EQ(GetFileSizeFromPathRef(nullptr, size), kExpected);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(GetFileLastWriteTimeFromPathRef(nullptr, time), kExpected);
    EXPECT_EQ(time, 0);
    EXPECT_EQ(GetPermissions(nullptr, permissions), kExpected);
    EXPECT_EQ(permissions, KEPermitions::None);
    EXPECT_EQ(ResolveFileSystemLink(nullptr, out), kExpected);
    EXPECT_EQ(ResolveWinShortcut(nullptr, out), kExpected);
    EXPECT_EQ(CreateFolder(nullptr), kExpected);
    EXPECT_EQ(CreateFileSystemLink(KCStPath(), path), kExpected);
    EXPECT_EQ(CreateFileSystemLink(path, KCStPath()), kExpected);
    EXPECT_EQ(DeleteFileSystemObject(nullptr), kExpected);
    EXPECT_EQ(DeleteFileSystemObjectRecursively(nullptr), kExpected);
    EXPECT_EQ(MoveFileSystemObject(path, KCStPath()), kExpected);
    EXPECT_EQ(MoveFileSystemObject(KCStPath(), path), kExpected);
    EXPECT_EQ(DuplicateFile(path, KCStPath(), KECreateFlags::CreateNew), kExpected);
    EXPECT_EQ(DuplicateFile(KCStPath(), path, KECreateFlags::CreateNew), kExpected);
}

TEST_F(DiskObjects, SizeAndTimeAreTheSystems) {
    const KCStPath file = m_folder.File("f", "abc");
    EXPECT_EQ(file.GetFileSize(), 3u);
    const timespec times[2] = {{0, 0}, {123456789, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, m_folder.Text("f").c_str(), times, 0), 0);
    EXPECT_EQ(file.GetFileLastWriteTime(), 123456789);
    uint64_t size = 7;
    EXPECT_EQ(GetFileSizeFromPathRef(m_folder.Path(), size), -1);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(GetFileSizeFromPathRef(m_folder.Path("missing"), size), -1002);
    EXPECT_EQ(m_folder.Path("missing").GetFileLastWriteTime(), 0);
}

TEST_F(DiskObjects, LargeSizesAreWhole) {
    m_folder.File("f", "");
    std::filesystem::resize_file(m_folder.Text("f"), uint64_t{5} << 30);
    EXPECT_EQ(m_folder.Path("f").GetFileSize(), uint64_t{5} << 30);
}

TEST_F(DiskObjects, PermissionsFollowWhatTheSystemAllows) {
    const KCStPath file = m_folder.File("f", "abc");
    EXPECT_EQ(file.GetPermissions(), KEPermitions::ReadWrite);
    EXPECT_TRUE(file.IsWritable());
    int asked = 0;
    FaultyPlatform platform([&](const char* call, size_t) { // reading is asked first
        return std::string_view(call) == "CheckAccess" && asked++ % 2 == 1 ? EACCES : 0;
    });
    EXPECT_EQ(file.GetPermissions(), KEPermitions::Read);
    asked = 1;
    EXPECT_EQ(file.GetPermissions(), KEPermitions::Write);
    asked = 1;
    EXPECT_FALSE(file.IsWritable());
}

TEST_F(DiskObjects, PermissionsOfNothingAreNone) {
    EXPECT_EQ(m_folder.Path("missing").GetPermissions(), KEPermitions::None);
    EXPECT_FALSE(m_folder.Path("missing").IsWritable());
    const KCStPath file = m_folder.File("f", "");
    FaultyPlatform platform(Failing("CheckAccess", EACCES));
    EXPECT_EQ(file.GetPermissions(), KEPermitions::None);
}

TEST_F(DiskObjects, SameFileByAnotherPath) {
    const KCStPath file = m_folder.File("f", "abc");
    std::filesystem::create_hard_link(m_folder.Text("f"), m_folder.Text("h"));
    EXPECT_TRUE(IsSameFile(file, Link("l", "f")));
    EXPECT_TRUE(IsSameFile(file, m_folder.Path("h")));
    EXPECT_FALSE(IsSameFile(file, m_folder.File("g", "abc")));
    EXPECT_FALSE(IsSameFile(file, m_folder.Path("missing")));
    EXPECT_FALSE(IsSameFile(m_folder.Path("missing"), m_folder.Path("missing")));
    EXPECT_FALSE(IsSameFile(KCStPath(), file));
}

TEST_F(DiskObjects, LinksResolveStepByStep) {
    Folder("d");
    m_folder.File("d/f", "abc");
    Link("d/one", "f");
    const KCStPath two = Link("two", "d/one");
    const KCStPath three = Link("three", m_folder.Text("two"));
    KCStPath out;
    EXPECT_EQ(three.ResolveFileSystemLink(out), 0);
    EXPECT_EQ(out, m_folder.Path("d/f"));
    EXPECT_EQ(m_folder.Path("d/f").ResolveFileSystemLink(out), 0); // names itself
    EXPECT_EQ(out, m_folder.Path("d/f"));
}

TEST_F(DiskObjects, DanglingLinkResolvesToWhatIsMissing) {
    KCStPath out;
    EXPECT_EQ(Link("l", "missing/f").ResolveFileSystemLink(out), 0);
    EXPECT_EQ(out, m_folder.Path("missing/f"));
    EXPECT_EQ(m_folder.Path("nothing").ResolveFileSystemLink(out), -1002);
    EXPECT_FALSE(out);
}

TEST_F(DiskObjects, LinksInACircleAreAnError) {
    Link("a", "b");
    KCStPath out("/old");
    EXPECT_EQ(Link("b", "a").ResolveFileSystemLink(out), -1);
    EXPECT_FALSE(out);
}

TEST_F(DiskObjects, LinksAreMade) {
    EXPECT_EQ(CreateFileSystemLink(KCStPath("f"), m_folder.Path("l")), 0);
    EXPECT_EQ(std::filesystem::read_symlink(m_folder.Text("l")), "f");
    EXPECT_EQ(CreateFileSystemLink(KCStPath("f"), m_folder.Path("l")), -1003);
    EXPECT_EQ(CreateFileSystemLink(KCStPath("f"), m_folder.Path("missing/l")), -1002);
}

TEST_F(DiskObjects, FoldersAreMadeWithAllThatLeadThere) {
    EXPECT_EQ(CreateFolder(m_folder.Path("a/b//c/")), 0);
    EXPECT_TRUE(m_folder.Path("a/b/c").IsFolder());
    EXPECT_EQ(CreateFolder(m_folder.Path("a/b/c")), 0);
    EXPECT_EQ(CreateFolder(KCStPath("/")), 0);
}

TEST_F(DiskObjects, FolderInPlaceOfSomethingElseIsRefused) {
    m_folder.File("f", "x");
    EXPECT_EQ(CreateFolder(m_folder.Path("f")), -1003);
    EXPECT_EQ(CreateFolder(m_folder.Path("f/a/b")), -1003);
    Link("l", "missing");
    EXPECT_EQ(CreateFolder(m_folder.Path("l/a")), -1003);
    Link("d", ".");
    EXPECT_EQ(CreateFolder(m_folder.Path("d/a")), 0);
    EXPECT_TRUE(m_folder.Path("a").IsFolder());
}

TEST_F(DiskObjects, FolderThatSomeoneMakesMeanwhileIsASuccess) {
    FaultyPlatform platform([&](const char* call, size_t) {
        if (std::string_view(call) == "MakeFolder")
            std::filesystem::create_directories(m_folder.Text("a"));
        return 0;
    });
    EXPECT_EQ(CreateFolder(m_folder.Path("a")), 0);
}

TEST_F(DiskObjects, DeleteTakesOneObject) {
    m_folder.File("f", "x");
    EXPECT_EQ(DeleteFileSystemObject(m_folder.Path("f")), 0);
    EXPECT_EQ(DeleteFileSystemObject(m_folder.Path("f")), -1002);
    Folder("d");
    EXPECT_EQ(DeleteFileSystemObject(m_folder.Path("d")), 0);
    EXPECT_EQ(m_folder.Count(), 0u);
}

TEST_F(DiskObjects, DeleteOfAFullFolderFailsAndKeepsIt) {
    Folder("d");
    m_folder.File("d/f", "x");
    EXPECT_EQ(DeleteFileSystemObject(m_folder.Path("d")), -1);
    EXPECT_TRUE(Exists(m_folder.Text("d/f")));
}

TEST_F(DiskObjects, DeleteOfALinkKeepsWhatItNames) {
    m_folder.File("f", "x");
    EXPECT_EQ(DeleteFileSystemObject(Link("l", "f")), 0);
    EXPECT_EQ(DeleteFileSystemObject(Link("x", "missing")), 0);
    EXPECT_TRUE(Exists(m_folder.Text("f")));
}

TEST_F(DiskObjects, RecursiveDeleteFollowsNoLink) {
    Folder("kept");
    m_folder.File("kept/f", "x");
    Folder("gone/a/b");
    m_folder.File("gone/a/f", "x");
    Link("gone/a/out", m_folder.Text("kept"));
    Link("gone/a/dangling", "missing");
    EXPECT_EQ(DeleteFileSystemObjectRecursively(m_folder.Path("gone")), 0);
    EXPECT_FALSE(Exists(m_folder.Text("gone")));
    EXPECT_TRUE(Exists(m_folder.Text("kept/f")));
    EXPECT_EQ(DeleteFileSystemObjectRecursively(Link("l", "kept")), 0);
    EXPECT_TRUE(Exists(m_folder.Text("kept/f")));
    EXPECT_EQ(DeleteFileSystemObjectRecursively(m_folder.Path("gone")), -1002);
}

TEST_F(DiskObjects, RecursiveDeleteGoesOnAndReportsTheFirstFailure) {
    Folder("d");
    for (const char* name : {"d/1", "d/2", "d/3"})
        m_folder.File(name, "x");
    int removed = 0;
    {
        FaultyPlatform platform([&](const char* call, size_t) {
            return std::string_view(call) == "RemoveFile" && ++removed == 1 ? EIO : 0;
        });
        EXPECT_EQ(DeleteFileSystemObjectRecursively(m_folder.Path("d")), -1);
    }
    EXPECT_EQ(removed, 3);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_folder.Text("d")), {}), 1);
}

TEST_F(DiskObjects, DeepTreesAreDeleted) {
    std::string path = "d";
    for (int i = 0; i < 400; ++i)
        path += "/d";
    Folder(path);
    EXPECT_EQ(DeleteFileSystemObjectRecursively(m_folder.Path("d")), 0);
    EXPECT_EQ(m_folder.Count(), 0u);
}

TEST_F(DiskObjects, MoveGivesAnotherName) {
    m_folder.File("f", "x");
    Folder("d");
    EXPECT_EQ(MoveFileSystemObject(m_folder.Path("f"), m_folder.Path("d/g")), 0);
    EXPECT_FALSE(Exists(m_folder.Text("f")));
    EXPECT_EQ(Slurp(m_folder.Text("d/g")), "x");
    EXPECT_EQ(MoveFileSystemObject(m_folder.Path("d"), m_folder.Path("e")), 0);
    EXPECT_EQ(Slurp(m_folder.Text("e/g")), "x");
}

TEST_F(DiskObjects, MoveNeverOverwrites) {
    m_folder.File("f", "new");
    m_folder.File("g", "old");
    Link("l", "missing");
    Folder("d");
    for (const char* target : {"g", "l", "d", "f"})
        EXPECT_EQ(MoveFileSystemObject(m_folder.Path("f"), m_folder.Path(target)), -1003) << target;
    EXPECT_EQ(Slurp(m_folder.Text("f")), "new");
    EXPECT_EQ(Slurp(m_folder.Text("g")), "old");
    EXPECT_EQ(MoveFileSystemObject(m_folder.Path("missing"), m_folder.Path("n")), -1002);
    EXPECT_EQ(MoveFileSystemObject(m_folder.Path("f"), m_folder.Path("missing/n")), -1002);
}

TEST_F(DiskObjects, MoveToAnotherFileSystemCopiesAFile) {
    m_folder.File("f", "x");
    Folder("d");
    m_folder.File("g", "old");
    FaultyPlatform platform(Failing("Rename", EXDEV));
    EXPECT_EQ(MoveFileSystemObject(m_folder.Path("f"), m_folder.Path("g")), -1003);
    EXPECT_EQ(MoveFileSystemObject(m_folder.Path("f"), m_folder.Path("h")), 0);
    EXPECT_EQ(Slurp(m_folder.Text("h")), "x");
    EXPECT_FALSE(Exists(m_folder.Text("f")));
    EXPECT_EQ(MoveFileSystemObject(m_folder.Path("d"), m_folder.Path("e")), -1);
    EXPECT_TRUE(Exists(m_folder.Text("d")));
}

TEST_F(DiskObjects, DuplicateToANewNameTakesContentAndMode) {
    m_folder.File("f", "abc");
    ::chmod(m_folder.Text("f").c_str(), 0640);
    for (const int flags : {0, 1, 2}) {
        const std::string to = "to" + std::to_string(flags);
        EXPECT_EQ(DuplicateFile(m_folder.Path("f"), m_folder.Path(to), KECreateFlags{flags}), 0);
        EXPECT_EQ(Slurp(m_folder.Text(to)), "abc");
        EXPECT_EQ(ModeOf(to), 0640u);
    }
}

TEST_F(DiskObjects, DuplicateToAnExistingFileFollowsTheFlag) {
    m_folder.File("f", "abc");
    m_folder.File("g", "longer than that");
    ::chmod(m_folder.Text("g").c_str(), 0600);
    std::filesystem::create_hard_link(m_folder.Text("g"), m_folder.Text("same"));
    EXPECT_EQ(DuplicateFile(m_folder.Path("f"), m_folder.Path("g"), KECreateFlags::CreateNew), -1003);
    EXPECT_EQ(Slurp(m_folder.Text("g")), "longer than that");
    EXPECT_EQ(DuplicateFile(m_folder.Path("f"), m_folder.Path("g"), KECreateFlags::OpenOrCreate), 0);
    EXPECT_EQ(Slurp(m_folder.Text("same")), "abc"); // rewritten in place
    m_folder.File("f", "new");
    EXPECT_EQ(DuplicateFile(m_folder.Path("f"), m_folder.Path("g"), KECreateFlags::CreateAlways), 0);
    EXPECT_EQ(Slurp(m_folder.Text("g")), "new");
    EXPECT_EQ(Slurp(m_folder.Text("same")), "abc"); // replaced
    EXPECT_EQ(ModeOf("g"), 0600u);
    EXPECT_EQ(DuplicateFile(m_folder.Path("f"), m_folder.Path("n"), KECreateFlags{3}), -1);
    EXPECT_FALSE(Exists(m_folder.Text("n")));
}

TEST_F(DiskObjects, DuplicateToADanglingLinkMakesWhatItNames) {
    m_folder.File("f", "abc");
    std::filesystem::create_symlink("to", m_folder.Text("link"));
    EXPECT_EQ(DuplicateFile(m_folder.Path("f"), m_folder.Path("link"), KECreateFlags::CreateNew), -1003);
    EXPECT_FALSE(Exists(m_folder.Text("to")));
    EXPECT_EQ(DuplicateFile(m_folder.Path("f"), m_folder.Path("link"), KECreateFlags::OpenOrCreate), 0);
    EXPECT_EQ(Slurp(m_folder.Text("to")), "abc");
    EXPECT_TRUE(m_folder.Path("link").IsFileSystemLink());
}

TEST_F(DiskObjects, DuplicateOfItselfIsASharingViolation) {
    m_folder.File("f", "abc");
    EXPECT_EQ(DuplicateFile(m_folder.Path("f"), m_folder.Path("f"), KECreateFlags::OpenOrCreate), -2014);
    EXPECT_EQ(Slurp(m_folder.Text("f")), "abc");
}

TEST_F(DiskObjects, DuplicateOfWhatIsNoFileIsRefused) {
    EXPECT_EQ(DuplicateFile(m_folder.Path("missing"), m_folder.Path("n"), KECreateFlags::CreateNew), -1002);
    EXPECT_EQ(DuplicateFile(m_folder.Path(), m_folder.Path("n"), KECreateFlags::CreateNew), -1);
    EXPECT_EQ(m_folder.Count(), 0u);
}

TEST_F(DiskObjects, DuplicateOfMuchContentIsExact) {
    std::string content;
    for (int i = 0; i < 100000; ++i)
        content += std::to_string(i);
    m_folder.File("f", content);
    EXPECT_EQ(DuplicateFile(m_folder.Path("f"), m_folder.Path("g"), KECreateFlags::CreateNew), 0);
    EXPECT_TRUE(Slurp(m_folder.Text("g")) == content);
}

TEST_F(DiskObjects, NamesOf1To300Bytes) {
    for (size_t length = 1; length <= 300; ++length) {
        const std::string name(length, 'n');
        KTOpenFileType* file = nullptr;
        const KCStPath path = m_folder.Path(name);
        EXPECT_EQ(CreateAFile(path, KECreateFlags::CreateNew, KEPermitions::Write, file), length <= 255 ? 0 : -1);
        CloseFile(file);
        EXPECT_EQ(path.IsExist(), length <= 255) << length;
        EXPECT_EQ(path.GetLeaf().size(), std::min<size_t>(length, 255));
        EXPECT_EQ(DeleteFileSystemObject(path), length <= 255 ? 0 : -1);
    }
}

TEST_F(DiskObjects, PathsBeyondWhatFixedStringsHold) {
    KCStPath path = m_folder.Path();
    for (int i = 0; i < 15; ++i)
        ASSERT_EQ(path.Append(std::string(250, static_cast<char>('a' + i)).c_str()), 0);
    ASSERT_EQ(CreateFolder(path), 0);
    ASSERT_EQ(path.Append("f"), 0);
    KTOpenFileType* file = nullptr;
    EXPECT_EQ(CreateAFile(path, KECreateFlags::CreateNew, KEPermitions::Write, file), 0);
    CloseFile(file);
    EXPECT_TRUE(path.IsFile());
    EXPECT_EQ(path.GetPathString().size(), 1023u);
    EXPECT_EQ(DeleteFileSystemObjectRecursively(m_folder.Path(std::string(250, 'a'))), 0);
    EXPECT_EQ(m_folder.Count(), 0u);
}

TEST_F(DiskObjects, MoveWithoutTheSystemsAtomicRenameStillKeepsTheTarget) {
    m_folder.File("f", "new");
    m_folder.File("g", "old");
    int renames = 0;
    FaultyPlatform platform([&](const char* call, size_t) {
        return std::string_view(call) == "Rename" && ++renames % 2 == 1 ? EINVAL : 0;
    });
    EXPECT_EQ(MoveFileSystemObject(m_folder.Path("f"), m_folder.Path("g")), -1003);
    EXPECT_EQ(Slurp(m_folder.Text("g")), "old");
    renames = 0;
    EXPECT_EQ(MoveFileSystemObject(m_folder.Path("f"), m_folder.Path("h")), 0);
    EXPECT_EQ(Slurp(m_folder.Text("h")), "new");
}

} // namespace
