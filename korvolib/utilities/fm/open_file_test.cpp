#include <korvolib/utilities/fm/open_file.h>

#include <algorithm>
#include <cstring>
#include <string>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/disk_object.h>
#include <korvolib/utilities/fm/file.h>
#include <korvolib/utilities/fm/fm_test_internal.h>

namespace {

using namespace kvKorvo::FM;
using kvKorvo::KCStMemObj;
using kvTest::FaultyPlatform;
using kvTest::Slurp;

class OpenFiles : public kvTest::FmTest {
  protected:
    KTOpenFileType* Open(const std::string& name, KEPermitions permissions) {
        KTOpenFileType* file = nullptr;
        EXPECT_EQ(OpenFile(m_folder.Path(name), permissions, file), 0);
        return file;
    }
    int32_t Create(const std::string& name, KECreateFlags flags, KEPermitions permissions) {
        KTOpenFileType* file = nullptr;
        const int32_t result = CreateAFile(m_folder.Path(name), flags, permissions, file);
        EXPECT_EQ(result == 0, IsValidOpenFileRef(file));
        CloseFile(file);
        return result;
    }
    std::string ReadAll(KTOpenFileType* file) {
        char buffer[256];
        size_t done = 0;
        EXPECT_EQ(ReadFromFile(file, buffer, sizeof buffer, done), 0);
        return std::string(buffer, done);
    }
};

TEST_F(OpenFiles, MissingFileIsNotFound) {
    KTOpenFileType* file = nullptr;
    EXPECT_EQ(OpenFile(m_folder.Path("missing"), KEPermitions::Read, file), kvKorvo::kErr_FileNotFound);
    EXPECT_EQ(file, GetInvalidOpenFileRef());
    EXPECT_EQ(m_folder.Count(), 0u);
}

TEST_F(OpenFiles, FileInPlaceOfAFolderIsNotFound) {
    m_folder.File("f", "x");
    KTOpenFileType* file = nullptr;
    EXPECT_EQ(OpenFile(m_folder.Path("f/g"), KEPermitions::Read, file), kvKorvo::kErr_FileNotFound);
}

TEST_F(OpenFiles, NullPathIsANullArgument) {
    KTOpenFileType* file = nullptr;
    EXPECT_EQ(OpenFile(nullptr, KEPermitions::Read, file), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(file, GetInvalidOpenFileRef());
    EXPECT_EQ(OpenFile(KCStPath(), KEPermitions::Read, file), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(CreateAFile(nullptr, KECreateFlags::CreateNew, KEPermitions::Read, file), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(file, GetInvalidOpenFileRef());
}

TEST_F(OpenFiles, EveryCallOnTheInvalidReferenceSaysSo) {
    KTOpenFileType* const invalid = GetInvalidOpenFileRef();
    EXPECT_EQ(reinterpret_cast<uintptr_t>(invalid), ~uintptr_t{0});
    EXPECT_FALSE(IsValidOpenFileRef(invalid));
    char byte = 0;
    size_t done = 7;
    long position = 7;
    uint64_t size = 7;
    constexpr int32_t kExpected = -1026;
    EXPECT_EQ(ReadFromFile(invalid, &byte, 1, done), kExpected);
    EXPECT_EQ(done, 0u);
    EXPECT_EQ(WriteToFile(invalid, &byte, 1, done), kExpected);
    EXPECT_EQ(GetFileCursor(invalid, position), kExpected);
    EXPECT_EQ(position, 0);
    EXPECT_EQ(SetFileCursor(invalid, 0, KEPositionMode::FromStart), kExpected);
    EXPECT_EQ(SetFileCursor(invalid, 0, KEPositionMode{3}), kExpected); // comes before the mode
    EXPECT_EQ(SetFileSize(invalid, 0), kExpected);
    EXPECT_EQ(FlushFileBuffers(invalid), kExpected);
    EXPECT_EQ(GetFileSizeFromOpenFileRef(invalid, size), kExpected);
    EXPECT_EQ(size, 0u);
    KTOpenFileType* closing = invalid;
    EXPECT_EQ(CloseFile(closing), kExpected);
    closing = nullptr;
    EXPECT_EQ(CloseFile(closing), kExpected);
    EXPECT_EQ(ReadFromFile(nullptr, &byte, 1, done), kExpected);
}

TEST_F(OpenFiles, ReferenceThatWasNeverOpenIsAnInvalidHandle) {
    char byte = 0;
    size_t done = 0;
    for (const uintptr_t value : {uintptr_t{999999}, ~uintptr_t{0} >> 1, ~uintptr_t{0} - 1})
        EXPECT_EQ(ReadFromFile(reinterpret_cast<KTOpenFileType*>(value), &byte, 1, done), -2013);
}

TEST_F(OpenFiles, FolderIsNoFile) {
    KTOpenFileType* file = nullptr;
    for (const KEPermitions permissions :
         {KEPermitions::Read, KEPermitions::Write, KEPermitions::ReadWrite, KEPermitions::None}) {
        EXPECT_EQ(OpenFile(m_folder.Path(), permissions, file), -1);
        EXPECT_EQ(file, GetInvalidOpenFileRef());
        EXPECT_EQ(CreateAFile(m_folder.Path(), KECreateFlags::CreateAlways, permissions, file), -1);
    }
}

TEST_F(OpenFiles, ReadingReadsAndMayNotWrite) {
    m_folder.File("f", "hello");
    KTOpenFileType* file = Open("f", KEPermitions::Read);
    EXPECT_EQ(ReadAll(file), "hello");
    EXPECT_EQ(ReadAll(file), ""); // a short read is no error, and neither is the end
    size_t done = 7;
    EXPECT_EQ(WriteToFile(file, "x", 1, done), kvKorvo::kErr_InvalidHandle);
    EXPECT_EQ(done, 0u);
    EXPECT_EQ(CloseFile(file), 0);
    EXPECT_EQ(file, GetInvalidOpenFileRef());
    EXPECT_EQ(Slurp(m_folder.Text("f")), "hello");
}

TEST_F(OpenFiles, WritingStartsAtTheEndOnceAndMayMove) {
    m_folder.File("f", "hello");
    KTOpenFileType* file = Open("f", KEPermitions::Write);
    size_t done = 0;
    EXPECT_EQ(WriteToFile(file, "!!", 2, done), 0);
    EXPECT_EQ(done, 2u);
    EXPECT_EQ(SetFileCursor(file, 0, KEPositionMode::FromStart), 0);
    EXPECT_EQ(WriteToFile(file, "J", 1, done), 0);
    char byte = 0;
    EXPECT_EQ(ReadFromFile(file, &byte, 1, done), kvKorvo::kErr_InvalidHandle);
    CloseFile(file);
    EXPECT_EQ(Slurp(m_folder.Text("f")), "Jello!!");
}

TEST_F(OpenFiles, ReadAndWriteStartAtTheStart) {
    m_folder.File("f", "hello");
    KTOpenFileType* file = Open("f", KEPermitions::ReadWrite);
    size_t done = 0;
    EXPECT_EQ(WriteToFile(file, "J", 1, done), 0);
    EXPECT_EQ(ReadAll(file), "ello");
    CloseFile(file);
}

TEST_F(OpenFiles, AnyOtherPermissionOpensWithoutAccess) {
    m_folder.File("f", "hello");
    for (const int value : {-1, 3, 99}) {
        KTOpenFileType* file = Open("f", KEPermitions{value});
        char byte = 0;
        size_t done = 0;
        uint64_t size = 0;
        EXPECT_EQ(ReadFromFile(file, &byte, 1, done), kvKorvo::kErr_InvalidHandle);
        EXPECT_EQ(WriteToFile(file, "x", 1, done), kvKorvo::kErr_InvalidHandle);
        EXPECT_EQ(GetFileSizeFromOpenFileRef(file, size), 0);
        EXPECT_EQ(size, 5u);
        CloseFile(file);
    }
}

TEST_F(OpenFiles, CreateFlagsDecideWhatHappensToAnExistingFile) {
    m_folder.File("f", "old");
    EXPECT_EQ(Create("f", KECreateFlags::CreateNew, KEPermitions::ReadWrite), -1003);
    EXPECT_EQ(Slurp(m_folder.Text("f")), "old");
    EXPECT_EQ(Create("f", KECreateFlags::OpenOrCreate, KEPermitions::ReadWrite), 0);
    EXPECT_EQ(Slurp(m_folder.Text("f")), "old");
    EXPECT_EQ(Create("f", KECreateFlags::CreateAlways, KEPermitions::ReadWrite), 0);
    EXPECT_EQ(Slurp(m_folder.Text("f")), "");
}

TEST_F(OpenFiles, EveryFlagCreatesAMissingFileWithEveryPermission) {
    for (const int flags : {0, 1, 2}) {
        for (const int permissions : {0, 1, 2, -1}) {
            const std::string name = std::to_string(flags) + "-" + std::to_string(permissions);
            EXPECT_EQ(Create(name, KECreateFlags{flags}, KEPermitions{permissions}), 0) << name;
            EXPECT_TRUE(m_folder.Path(name).IsFile()) << name;
        }
    }
}

TEST_F(OpenFiles, CreateAlwaysEmptiesWhateverThePermission) {
    for (const int permissions : {0, 1, 2, -1}) {
        m_folder.File("f", "old");
        EXPECT_EQ(Create("f", KECreateFlags::CreateAlways, KEPermitions{permissions}), 0);
        EXPECT_EQ(Slurp(m_folder.Text("f")), "");
    }
}

TEST_F(OpenFiles, CreatedForReadingMayNotWrite) {
    for (const int flags : {0, 1, 2}) {
        KTOpenFileType* file = nullptr;
        const std::string name = std::to_string(flags);
        ASSERT_EQ(CreateAFile(m_folder.Path(name), KECreateFlags{flags}, KEPermitions::Read, file), 0);
        size_t done = 0;
        EXPECT_EQ(WriteToFile(file, "x", 1, done), kvKorvo::kErr_InvalidHandle);
        EXPECT_EQ(ReadAll(file), "");
        CloseFile(file);
    }
}

TEST_F(OpenFiles, CreatedForWritingStartsAtTheEnd) {
    m_folder.File("f", "old");
    KTOpenFileType* file = nullptr;
    ASSERT_EQ(CreateAFile(m_folder.Path("f"), KECreateFlags::OpenOrCreate, KEPermitions::Write, file), 0);
    size_t done = 0;
    EXPECT_EQ(WriteToFile(file, "er", 2, done), 0);
    CloseFile(file);
    EXPECT_EQ(Slurp(m_folder.Text("f")), "older");
}

TEST_F(OpenFiles, UnknownCreateFlagFailsAfterTheParentsWereMade) {
    EXPECT_EQ(Create("a/b/f", KECreateFlags{3}, KEPermitions::ReadWrite), -1);
    EXPECT_TRUE(m_folder.Path("a/b").IsFolder());
    EXPECT_FALSE(m_folder.Path("a/b/f").IsExist());
}

TEST_F(OpenFiles, CreateMakesTheFoldersThatLeadThere) {
    EXPECT_EQ(Create("a/b/c/f", KECreateFlags::CreateNew, KEPermitions::ReadWrite), 0);
    EXPECT_TRUE(m_folder.Path("a/b/c/f").IsFile());
}

TEST_F(OpenFiles, CreateFollowsALinkUnlessTheFileMustBeNew) {
    std::filesystem::create_symlink("to", m_folder.Text("link"));
    std::filesystem::create_symlink("circle", m_folder.Text("circle"));
    EXPECT_EQ(KCStFileCreate(m_folder.Path("link"), KECreateFlags::CreateNew).GetOpenResult(), -1003);
    EXPECT_FALSE(m_folder.Path("to").IsExist());
    EXPECT_EQ(KCStFileCreate(m_folder.Path("link")).GetOpenResult(), 0);
    EXPECT_TRUE(m_folder.Path("to").IsFile());
    EXPECT_EQ(KCStFileCreate(m_folder.Path("circle")).GetOpenResult(), -1);
}

TEST_F(OpenFiles, CreateReportsAParentThatIsAFile) {
    m_folder.File("a", "x");
    EXPECT_EQ(Create("a/f", KECreateFlags::CreateNew, KEPermitions::ReadWrite), kvKorvo::kErr_FileAlreadyExists);
}

TEST_F(OpenFiles, CreateOfOneComponentHasNoParentToMake) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder.Text());
    KTOpenFileType* file = nullptr;
    EXPECT_EQ(CreateAFile(KCStPath("alone"), KECreateFlags::CreateNew, KEPermitions::Write, file), 0);
    CloseFile(file);
    std::filesystem::current_path(before);
    EXPECT_TRUE(m_folder.Path("alone").IsFile());
}

TEST_F(OpenFiles, CursorMovesFromAllThreePlaces) {
    m_folder.File("f", "0123456789");
    KTOpenFileType* file = Open("f", KEPermitions::Read);
    long position = 0;
    EXPECT_EQ(SetFileCursor(file, 4, KEPositionMode::FromStart), 0);
    EXPECT_EQ(SetFileCursor(file, -1, KEPositionMode::FromCurrent), 0);
    EXPECT_EQ(GetFileCursor(file, position), 0);
    EXPECT_EQ(position, 3);
    EXPECT_EQ(SetFileCursor(file, -2, KEPositionMode::FromEnd), 0);
    EXPECT_EQ(ReadAll(file), "89");
    CloseFile(file);
}

TEST_F(OpenFiles, RefusedCursorStays) {
    m_folder.File("f", "0123456789");
    KTOpenFileType* file = Open("f", KEPermitions::ReadWrite);
    ASSERT_EQ(SetFileCursor(file, 4, KEPositionMode::FromStart), 0);
    constexpr long kTooFar = 1L << 31;
    EXPECT_EQ(SetFileCursor(file, 0, KEPositionMode{3}), -1017);
    EXPECT_EQ(SetFileCursor(file, 0, KEPositionMode{-1}), -1017);
    EXPECT_EQ(SetFileCursor(file, kTooFar, KEPositionMode{3}), -1017);
    EXPECT_EQ(SetFileCursor(file, kTooFar, KEPositionMode::FromStart), -1);
    EXPECT_EQ(SetFileCursor(file, -kTooFar - 1, KEPositionMode::FromEnd), -1);
    EXPECT_EQ(SetFileCursor(file, -1, KEPositionMode::FromStart), -1);
    EXPECT_EQ(SetFileCursor(file, -5, KEPositionMode::FromCurrent), -1);
    EXPECT_EQ(SetFileCursor(file, -11, KEPositionMode::FromEnd), -1);
    EXPECT_EQ(SetFileCursor(file, kTooFar - 1, KEPositionMode::FromCurrent), -1);
    long position = 0;
    EXPECT_EQ(GetFileCursor(file, position), 0);
    EXPECT_EQ(position, 4);
    EXPECT_EQ(SetFileCursor(file, kTooFar - 1, KEPositionMode::FromStart), 0);
    EXPECT_EQ(GetFileCursor(file, position), 0);
    EXPECT_EQ(position, kTooFar - 1);
    CloseFile(file);
}

TEST_F(OpenFiles, CursorOfALargeFileIsReportedWholeAndNotReached) {
    m_folder.File("f", "");
    std::filesystem::resize_file(m_folder.Text("f"), uint64_t{3} << 30); // sparse
    KTOpenFileType* file = Open("f", KEPermitions::Write);
    long position = 0;
    EXPECT_EQ(GetFileCursor(file, position), 0);
    EXPECT_EQ(position, 3L << 30);
    EXPECT_EQ(SetFileCursor(file, 0, KEPositionMode::FromStart), 0);
    EXPECT_EQ(SetFileCursor(file, 0, KEPositionMode::FromEnd), -1);
    EXPECT_EQ(GetFileCursor(file, position), 0);
    EXPECT_EQ(position, 0);
    CloseFile(file);
}

TEST_F(OpenFiles, SizeIsSetAndTheCursorStays) {
    m_folder.File("f", "hello");
    KTOpenFileType* file = Open("f", KEPermitions::ReadWrite);
    ASSERT_EQ(SetFileCursor(file, 1, KEPositionMode::FromStart), 0);
    EXPECT_EQ(SetFileSize(file, 3), 0);
    EXPECT_EQ(ReadAll(file), "el");
    EXPECT_EQ(SetFileSize(file, 5), 0);
    EXPECT_EQ(ReadAll(file), std::string(2, '\0'));
    EXPECT_EQ(SetFileSize(file, ~uint64_t{0}), -1);
    uint64_t size = 0;
    EXPECT_EQ(GetFileSizeFromOpenFileRef(file, size), 0);
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(FlushFileBuffers(file), 0);
    CloseFile(file);
}

TEST_F(OpenFiles, NullBufferIsRefusedUnlessNothingIsAsked) {
    m_folder.File("f", "hello");
    KTOpenFileType* file = Open("f", KEPermitions::ReadWrite);
    size_t done = 7;
    EXPECT_EQ(ReadFromFile(file, nullptr, 1, done), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(done, 0u);
    EXPECT_EQ(ReadFromFile(file, nullptr, 0, done), 0);
    EXPECT_EQ(WriteToFile(file, nullptr, 1, done), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(WriteToFile(file, nullptr, 0, done), 0);
    CloseFile(file);
}

TEST_F(OpenFiles, ShortCallsAreRepeated) {
    m_folder.File("f", "");
    FaultyPlatform platform;
    platform.most = 3;
    KTOpenFileType* file = Open("f", KEPermitions::ReadWrite);
    size_t done = 0;
    EXPECT_EQ(WriteToFile(file, "0123456789", 10, done), 0);
    EXPECT_EQ(done, 10u);
    EXPECT_EQ(SetFileCursor(file, 0, KEPositionMode::FromStart), 0);
    EXPECT_EQ(ReadAll(file), "0123456789");
    CloseFile(file);
}

TEST_F(OpenFiles, FullDiskReportsWhatWasDone) {
    m_folder.File("f", "");
    int writes = 0;
    FaultyPlatform platform(
        [&](const char* call, size_t) { return std::string_view(call) == "Write" && ++writes > 2 ? ENOSPC : 0; });
    platform.most = 3;
    KTOpenFileType* file = Open("f", KEPermitions::Write);
    size_t done = 0;
    EXPECT_EQ(WriteToFile(file, "0123456789", 10, done), -1);
    EXPECT_EQ(done, 6u);
    CloseFile(file);
}

TEST_F(OpenFiles, WholeFilesInAllForms) {
    const std::string content("a\0b\xFF", 4);
    const KCStPath path = m_folder.File("f", content);
    std::string text;
    KCStMemObj block;
    std::unique_ptr<uint8_t[]> data;
    size_t size = 0;
    EXPECT_EQ(ReadTheWholeFile(path, text), 0);
    EXPECT_EQ(text, content);
    EXPECT_EQ(ReadFileToKCStMemObj(path, block), 0);
    EXPECT_EQ(block.GetText(), content);
    EXPECT_EQ(GetDataPtrFromBinFile(path, data, size), 0);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(data.get()), size), content);
}

TEST_F(OpenFiles, WholeEmptyFileIsEmpty) {
    const KCStPath path = m_folder.File("f", "");
    std::string text = "old";
    KCStMemObj block;
    std::unique_ptr<uint8_t[]> data;
    size_t size = 7;
    EXPECT_EQ(ReadTheWholeFile(path, text), 0);
    EXPECT_EQ(text, "");
    EXPECT_EQ(ReadFileToKCStMemObj(path, block), 0);
    EXPECT_TRUE(block.IsEmpty());
    EXPECT_EQ(GetDataPtrFromBinFile(path, data, size), 0);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(size, 0u);
}

TEST_F(OpenFiles, WholeMissingFileLeavesEmptyOutputs) {
    std::string text = "old";
    KCStMemObj block;
    ASSERT_EQ(block.Append("old"), 0);
    EXPECT_EQ(ReadTheWholeFile(m_folder.Path("missing"), text), kvKorvo::kErr_FileNotFound);
    EXPECT_EQ(text, "");
    EXPECT_EQ(ReadFileToKCStMemObj(m_folder.Path("missing"), block), kvKorvo::kErr_FileNotFound);
    EXPECT_TRUE(block.IsEmpty());
    EXPECT_EQ(ReadTheWholeFile(nullptr, text), kvKorvo::kErr_NullArgument);
}

TEST_F(OpenFiles, WholeFileOfTheSystemThatStatesNoSize) {
    std::string text;
    EXPECT_EQ(ReadTheWholeFile(KCStPath("/proc/self/status"), text), 0);
    EXPECT_NE(text.find("VmSize"), std::string::npos);
}

TEST_F(OpenFiles, WholeFileThatShrinksMeanwhileIsWhatIsLeft) {
    const KCStPath path = m_folder.File("f", "0123456789");
    FaultyPlatform platform([&](const char* call, size_t) {
        if (std::string_view(call) == "Read")
            std::filesystem::resize_file(m_folder.Text("f"), 4);
        return 0;
    });
    std::string text;
    EXPECT_EQ(ReadTheWholeFile(path, text), 0);
    EXPECT_EQ(text, "0123");
}

TEST_F(OpenFiles, PipeWithoutAWriterHoldsNobodyUp) {
    ASSERT_EQ(::mkfifo(m_folder.Text("pipe").c_str(), 0600), 0);
    std::string text = "old";
    EXPECT_EQ(ReadTheWholeFile(m_folder.Path("pipe"), text), 0);
    EXPECT_EQ(text, "");
}

TEST_F(OpenFiles, DevicesAreOpenToAll) {
    KTOpenFileType* one = nullptr;
    KTOpenFileType* two = nullptr;
    const KCStPath null("/dev/null");
    EXPECT_EQ(OpenFile(null, KEPermitions::Write, one), 0);
    EXPECT_EQ(CreateAFile(null, KECreateFlags::CreateAlways, KEPermitions::Write, two), 0);
    size_t done = 0;
    EXPECT_EQ(WriteToFile(two, "x", 1, done), 0);
    CloseFile(one);
    CloseFile(two);
}

TEST_F(OpenFiles, TempFileIsNewPrivateAndThere) {
    KTOpenFileType* file = nullptr;
    KTPathType* path = nullptr;
    ASSERT_EQ(CreateTempFile(m_folder.Path().GetPathRef(), file, path), 0);
    size_t done = 0;
    EXPECT_EQ(WriteToFile(file, "abc", 3, done), 0);
    CloseFile(file);
    struct stat info = {};
    kvKorvo::KCFixedString<1023> text;
    ASSERT_EQ(::stat(GetPathAsString(path, text), &info), 0);
    EXPECT_EQ(info.st_mode & 07777u, 0600u);
    EXPECT_EQ(info.st_size, 3);
    DisposePathRef(path);
}

TEST_F(OpenFiles, TempFileReportsAMissingFolder) {
    KTOpenFileType* file = nullptr;
    KTPathType* path = nullptr;
    EXPECT_EQ(CreateTempFile(m_folder.Path("missing").GetPathRef(), file, path), kvKorvo::kErr_FileNotFound);
    EXPECT_EQ(CreateTempFile(nullptr, file, path), kvKorvo::kErr_NullArgument);
    EXPECT_EQ(file, GetInvalidOpenFileRef());
    EXPECT_EQ(path, nullptr);
}

TEST_F(OpenFiles, TempFileOfTheSystemIsInItsFolder) {
    KTOpenFileType* file = nullptr;
    KTPathType* path = nullptr;
    ASSERT_EQ(CreateTempFile(file, path), 0);
    EXPECT_EQ(DeleteFileSystemObject(path), 0);
    CloseFile(file);
    DisposePathRef(path);
}

TEST_F(OpenFiles, SystemErrorsAreTranslatedByTheTable) {
    const std::pair<int, int32_t> table[] = {{0, 0},         {ENOENT, -1002}, {ENOTDIR, -1002}, {EEXIST, -1003},
                                             {EBADF, -2013}, {EAGAIN, -2014}, {ENOEXEC, -2012}, {ENOMEM, -4009},
                                             {EACCES, -1},   {EIO, -1},       {ENOSPC, -1},     {EISDIR, -1},
                                             {-5, -1},       {99999, -1}};
    for (const auto& [error, code] : table)
        EXPECT_EQ(TranslateSystemError(error), code) << error;
}

TEST_F(OpenFiles, CloseReportsDataThatCouldNotBeKept) {
    m_folder.File("f", "");
    KTOpenFileType* file = Open("f", KEPermitions::Write);
    FaultyPlatform platform(kvTest::Failing("Close", EIO));
    EXPECT_EQ(CloseFile(file), -1);
    EXPECT_EQ(file, GetInvalidOpenFileRef());
}

} // namespace
