// Every operation of the file layer with every one of its system calls failing in turn. Whatever fails: the result
// says so or the work is done, outputs are empty unless the result is 0, old content is whole where that is
// promised, and no temporary file stays. A call that a signal broke off, and calls that do a part, change nothing.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/disk_object.h>
#include <korvolib/utilities/fm/file.h>
#include <korvolib/utilities/fm/fm_test_internal.h>
#include <korvolib/utilities/fm/folder.h>
#include <korvolib/utilities/fm/replace_file.h>
#include <korvolib/utilities/fm/zip.h>

namespace {

using namespace kvKorvo::FM;
using kvKorvo::KCFixedString;
using kvKorvo::KCStMemObj;
using kvTest::Exists;
using kvTest::FaultyPlatform;
using kvTest::Slurp;
using kvTest::TempFolder;

constexpr const char* kOld = "the old content";
constexpr const char* kNew = "new";

/// What an operation is tried on: f and g are files, d/e a folder with a file, l a link to f.
void Prepare(const TempFolder& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder.Text()))
        std::filesystem::remove_all(entry.path());
    folder.File("f", kOld);
    folder.File("g", kOld);
    std::filesystem::create_directories(folder.Text("d/e"));
    folder.File("d/e/f", kOld);
    std::filesystem::create_symlink("f", folder.Text("l"));
}

struct sOperation {
    const char* name;
    int32_t (*run)(const TempFolder& folder);
    // After a result of 0; and after any other.
    void (*whenDone)(const TempFolder& folder);
    void (*whenFailed)(const TempFolder& folder);
};

void Anything(const TempFolder&) {}
void OldIsWhole(const TempFolder& folder) { EXPECT_EQ(Slurp(folder.Text("f")), kOld); }
void NewIsThere(const TempFolder& folder) { EXPECT_EQ(Slurp(folder.Text("f")), kNew); }

int32_t OpenAndClose(const TempFolder& folder, KEPermitions permissions) {
    KTOpenFileType* file = nullptr;
    const int32_t result = OpenFile(folder.Path("f"), permissions, file);
    EXPECT_EQ(result == 0, IsValidOpenFileRef(file));
    CloseFile(file);
    return result;
}

int32_t CreateAndClose(const TempFolder& folder, const char* name, KECreateFlags flags, KEPermitions permissions) {
    KTOpenFileType* file = nullptr;
    const int32_t result = CreateAFile(folder.Path(name), flags, permissions, file);
    EXPECT_EQ(result == 0, IsValidOpenFileRef(file));
    CloseFile(file);
    return result;
}

int32_t ReadWhole(const TempFolder& folder) {
    std::string text = "before";
    const int32_t result = ReadTheWholeFile(folder.Path("f"), text);
    EXPECT_EQ(text, result == 0 ? kOld : "");
    return result;
}

int32_t ReadByObject(const TempFolder& folder) {
    KCStFileRead file(folder.Path("f"));
    KCStMemObj block;
    EXPECT_EQ(file.GetOpenResult() == 0, file.IsValid());
    const int32_t result = file.IsValid() ? file.ReadToKCStMemObj(block) : file.GetOpenResult();
    EXPECT_EQ(block.GetText(), result == 0 ? kOld : "");
    return result;
}

int32_t MoveCursors(const TempFolder& folder) {
    KCStFileCreate file(folder.Path("f"));
    int32_t result = file.GetOpenResult();
    long position = 0;
    uint64_t size = 0;
    if (result == 0)
        result = file.SetCursor(-1, KEPositionMode::FromEnd);
    if (result == 0)
        result = file.GetCursor(position);
    if (result == 0)
        result = file.SetFileSize(3);
    if (result == 0)
        result = file.GetFileSize(size);
    if (result == 0)
        result = file.FlushBuffers();
    EXPECT_TRUE(result != 0 || (position == 14 && size == 3));
    return result;
}

int32_t MakeTemp(const TempFolder& folder) {
    const KCStTempFile file(folder.Path());
    EXPECT_EQ(file.IsValid(), file.GetPath().IsValid());
    return file.GetOpenResult();
}

int32_t List(const TempFolder& folder) {
    std::vector<KCStPath> items;
    const int32_t result = KCStFolderIterator(folder.Path()).GetFilePathVectorFromFolderSortByName(items);
    EXPECT_EQ(items.size(), result == 0 ? 4u : 0u);
    return result;
}

int32_t ListInOrder(const TempFolder& folder) {
    std::vector<KCStPath> items;
    const int32_t result = KCStFolderIterator(folder.Path()).GetFilePathVectorFromFolderWithSettingsFile(items);
    EXPECT_EQ(items.size(), result == 0 ? 4u : 0u);
    return result;
}

int32_t MakeTree(const TempFolder& folder) {
    sFolderTreeItem tree;
    const int32_t result = KCStFolderIterator(folder.Path()).GetFolderTree(tree);
    EXPECT_EQ(tree.path.IsValid(), result == 0);
    return result;
}

int32_t Resolve(const TempFolder& folder) {
    KCStPath out("/before");
    const int32_t result = ResolveFileSystemLink(folder.Path("l"), out);
    EXPECT_EQ(out, result == 0 ? folder.Path("f") : KCStPath());
    return result;
}

int32_t Ask(const TempFolder& folder) {
    const KCStPath path = folder.Path("f");
    uint64_t size = 7;
    int64_t time = 7;
    KEPermitions permissions = KEPermitions::Read;
    static_cast<void>(path.IsLocked() || path.IsWritable() || IsWinShortcut(path) || IsSameFile(path, path));
    EXPECT_TRUE(GetFileSizeFromPathRef(path, size) == 0 ? size == 15 : size == 0);
    EXPECT_TRUE(GetFileLastWriteTimeFromPathRef(path, time) == 0 ? time > 7 : time == 0);
    const int32_t result = GetPermissions(path, permissions);
    EXPECT_TRUE(result == 0 || permissions == KEPermitions::None);
    return result;
}

int32_t ReadZip(const TempFolder& folder) {
    KCStFileReadFromZip zip(folder.Path("missing.zip"));
    KCFixedString<255> leaf;
    EXPECT_FALSE(zip.IsValid() || KCStZipFileIterator(folder.Path("f")).GetNextItemFromZip(leaf));
    return zip.GetOpenResult() == 0 ? 0 : -1;
}

const sOperation kOperations[] = {
    {"open to read", [](const TempFolder& f) { return OpenAndClose(f, KEPermitions::Read); }, OldIsWhole,
     OldIsWhole},
    {"open to write", [](const TempFolder& f) { return OpenAndClose(f, KEPermitions::Write); }, OldIsWhole,
     OldIsWhole},
    {"open without access", [](const TempFolder& f) { return OpenAndClose(f, KEPermitions::None); }, OldIsWhole,
     OldIsWhole},
    {"create in new folders",
     [](const TempFolder& f) {
         return CreateAndClose(f, "n/m/f", KECreateFlags::CreateNew, KEPermitions::ReadWrite);
     },
     [](const TempFolder& f) { EXPECT_TRUE(Exists(f.Text("n/m/f"))); }, Anything},
    {"create always",
     [](const TempFolder& f) {
         return CreateAndClose(f, "f", KECreateFlags::CreateAlways, KEPermitions::ReadWrite);
     },
     [](const TempFolder& f) { EXPECT_EQ(Slurp(f.Text("f")), ""); }, Anything},
    {"create always to read",
     [](const TempFolder& f) { return CreateAndClose(f, "f", KECreateFlags::CreateAlways, KEPermitions::Read); },
     [](const TempFolder& f) { EXPECT_EQ(Slurp(f.Text("f")), ""); }, Anything},
    {"create without access",
     [](const TempFolder& f) { return CreateAndClose(f, "n", KECreateFlags::OpenOrCreate, KEPermitions::None); },
     [](const TempFolder& f) { EXPECT_TRUE(Exists(f.Text("n"))); }, Anything},
    {"read the whole file", ReadWhole, OldIsWhole, OldIsWhole},
    {"read by object", ReadByObject, OldIsWhole, OldIsWhole},
    {"move cursors", MoveCursors, [](const TempFolder& f) { EXPECT_EQ(Slurp(f.Text("f")), "the"); }, Anything},
    {"replace", [](const TempFolder& f) { return ReplaceFile(f.Path("f"), kNew, 3); }, NewIsThere, OldIsWhole},
    {"replace through a link", [](const TempFolder& f) { return ReplaceFile(f.Path("l"), kNew, 3); },
     [](const TempFolder& f) {
         NewIsThere(f);
         EXPECT_TRUE(std::filesystem::is_symlink(f.Text("l")));
     },
     OldIsWhole},
    {"replace what is missing", [](const TempFolder& f) { return ReplaceFile(f.Path("n/f"), kNew, 3); },
     [](const TempFolder& f) { EXPECT_EQ(Slurp(f.Text("n/f")), kNew); },
     [](const TempFolder& f) { EXPECT_FALSE(Exists(f.Text("n/f"))); }},
    {"make a temporary file", MakeTemp, Anything, Anything},
    {"make folders", [](const TempFolder& f) { return CreateFolder(f.Path("x/y/z")); },
     [](const TempFolder& f) { EXPECT_TRUE(Exists(f.Text("x/y/z"))); }, Anything},
    {"make a link", [](const TempFolder& f) { return CreateFileSystemLink(KCStPath("f"), f.Path("k")); },
     [](const TempFolder& f) { EXPECT_TRUE(Exists(f.Text("k"))); }, Anything},
    {"delete", [](const TempFolder& f) { return DeleteFileSystemObject(f.Path("f")); },
     [](const TempFolder& f) { EXPECT_FALSE(Exists(f.Text("f"))); }, OldIsWhole},
    {"delete a tree", [](const TempFolder& f) { return DeleteFileSystemObjectRecursively(f.Path("d")); },
     [](const TempFolder& f) { EXPECT_FALSE(Exists(f.Text("d"))); },
     [](const TempFolder& f) { EXPECT_TRUE(Exists(f.Text("d"))); }},
    {"move", [](const TempFolder& f) { return MoveFileSystemObject(f.Path("f"), f.Path("n")); },
     [](const TempFolder& f) { EXPECT_EQ(Slurp(f.Text("n")), kOld); }, OldIsWhole},
    {"copy to a new file",
     [](const TempFolder& f) { return DuplicateFile(f.Path("f"), f.Path("n"), KECreateFlags::CreateNew); },
     [](const TempFolder& f) { EXPECT_EQ(Slurp(f.Text("n")), kOld); }, OldIsWhole},
    {"copy over a file",
     [](const TempFolder& f) { return DuplicateFile(f.Path("d/e/f"), f.Path("g"), KECreateFlags::OpenOrCreate); },
     [](const TempFolder& f) { EXPECT_EQ(Slurp(f.Text("g")), kOld); }, Anything},
    {"copy in place of a file",
     [](const TempFolder& f) { return DuplicateFile(f.Path("f"), f.Path("g"), KECreateFlags::CreateAlways); },
     [](const TempFolder& f) { EXPECT_EQ(Slurp(f.Text("g")), kOld); },
     [](const TempFolder& f) { EXPECT_EQ(Slurp(f.Text("g")), kOld); }},
    {"list", List, OldIsWhole, OldIsWhole},
    {"list in order", ListInOrder, OldIsWhole, OldIsWhole},
    {"make a tree", MakeTree, OldIsWhole, OldIsWhole},
    {"resolve a link", Resolve, OldIsWhole, OldIsWhole},
    {"ask", Ask, OldIsWhole, OldIsWhole},
    {"open no archive", ReadZip, OldIsWhole, OldIsWhole},
};

size_t TemporaryFiles(const TempFolder& folder) {
    size_t count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Text()))
        count += entry.path().extension() == ".tmp" ? 1 : 0;
    return count;
}

size_t CallsOf(const sOperation& operation, const TempFolder& folder, int32_t& result) {
    Prepare(folder);
    FaultyPlatform platform;
    result = operation.run(folder);
    return platform.Calls();
}

class Failures : public testing::TestWithParam<sOperation> {
  protected:
    TempFolder m_folder{TempFolder::Fast()};
};

TEST_P(Failures, OfEveryCallAreReportedOrHarmless) {
    const sOperation& operation = GetParam();
    int32_t unharmed = 0;
    const size_t calls = CallsOf(operation, m_folder, unharmed);
    ASSERT_GT(calls, 0u);
    size_t reported = 0;
    for (const int error : {EIO, ENOSPC, ENOMEM, EACCES, EAGAIN, EBADF, ENOENT, EEXIST, ELOOP}) {
        for (size_t failing = 0; failing < calls; ++failing) {
            Prepare(m_folder);
            std::string failed;
            int32_t result = 0;
            {
                FaultyPlatform platform([&](const char* call, size_t index) {
                    if (index != failing)
                        return 0;
                    failed = call;
                    // That something which exists does not is no failure but a lie.
                    return failed == "Info" && error == ENOENT ? EIO : error;
                });
                result = operation.run(m_folder);
            }
            SCOPED_TRACE(failed + " " + std::to_string(failing) + " failed with " + std::to_string(error) +
                         ", result " + std::to_string(result));
            (result == 0 ? operation.whenDone : operation.whenFailed)(m_folder);
            EXPECT_TRUE(TemporaryFiles(m_folder) == 0 || failed == "RemoveFile");
            reported += result != 0 ? 1 : 0;
        }
    }
    EXPECT_GT(reported, 0u);
}

TEST_P(Failures, SignalsAndShortCallsChangeNothing) {
    const sOperation& operation = GetParam();
    int32_t unharmed = 0;
    const size_t calls = CallsOf(operation, m_folder, unharmed);
    for (size_t interrupted = 0; interrupted < calls; ++interrupted) {
        Prepare(m_folder);
        {
            FaultyPlatform platform([&](const char*, size_t index) { return index == interrupted ? EINTR : 0; });
            platform.most = 1 + interrupted % 5;
            EXPECT_EQ(operation.run(m_folder), unharmed) << "call " << interrupted;
        }
        if (unharmed == 0)
            operation.whenDone(m_folder);
        EXPECT_EQ(TemporaryFiles(m_folder), 0u);
    }
}

std::string NameOf(const testing::TestParamInfo<sOperation>& operation) {
    std::string name = operation.param.name;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(OfEachOperation, Failures, testing::ValuesIn(kOperations), NameOf);

void PrintTo(const sOperation& operation, std::ostream* out) { *out << operation.name; }

} // namespace
