#include <korvolib/utilities/fm/file.h>

#include <string>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/disk_object.h>
#include <korvolib/utilities/fm/fm_test_internal.h>
#include <korvolib/utilities/fm/replace_file.h>

namespace {

using namespace kvKorvo::FM;
using kvKorvo::KCStMemObj;
using kvTest::Exists;
using kvTest::Slurp;

class Files : public kvTest::FmTest {};

TEST_F(Files, ReadGivesTheRestFromTheCursor) {
    KCStFileRead file(m_folder.File("f", "0123456789"));
    ASSERT_TRUE(file);
    EXPECT_EQ(file.GetOpenResult(), 0);
    char two[2];
    size_t done = 0;
    EXPECT_EQ(file.Read(two, 2, done), 0);
    std::string text;
    EXPECT_EQ(file.ReadToStdString(text), 0);
    EXPECT_EQ(text, "23456789");
    EXPECT_EQ(file.ReadToStdString(text), 0);
    EXPECT_EQ(text, "");
    EXPECT_EQ(file.SetCursor(-3, KEPositionMode::FromEnd), 0);
    KCStMemObj block;
    EXPECT_EQ(file.ReadToKCStMemObj(block), 0);
    EXPECT_EQ(block.GetText(), "789");
}

TEST_F(Files, ObjectWithoutItsFileSaysWhyAndFailsEveryCall) {
    KCStFileRead file(m_folder.Path("missing"));
    EXPECT_FALSE(file);
    EXPECT_EQ(file.GetOpenResult(), -1002);
    std::string text = "old";
    KCStMemObj block;
    ASSERT_EQ(block.Append("old"), 0);
    size_t done = 0;
    uint64_t size = 0;
    long position = 0;
    EXPECT_EQ(file.ReadToStdString(text), -1026);
    EXPECT_EQ(text, "");
    EXPECT_EQ(file.ReadToKCStMemObj(block), -1026);
    EXPECT_TRUE(block.IsEmpty());
    EXPECT_EQ(file.Read(nullptr, 0, done), -1026);
    EXPECT_EQ(file.GetFileSize(size), -1026);
    EXPECT_EQ(file.GetCursor(position), -1026);
    EXPECT_EQ(file.SetCursor(0, KEPositionMode::FromStart), -1026);
    EXPECT_EQ(file.FlushBuffers(), -1026);
    EXPECT_EQ(file.Close(), -1026);
    EXPECT_EQ(KCStFileRead(KCStPath()).GetOpenResult(), -4003);
}

TEST_F(Files, WriteGoesOnAtTheEnd) {
    KCStMemObj block;
    ASSERT_EQ(block.Append("!"), 0);
    {
        KCStFileWrite file(m_folder.File("f", "hello"));
        EXPECT_EQ(file.WriteFromString(" you"), 0);
        EXPECT_EQ(file.WriteFromKCStMemObj(block), 0);
        size_t done = 0;
        EXPECT_EQ(file.Write("?", 1, done), 0);
        uint64_t size = 0;
        EXPECT_EQ(file.GetFileSize(size), 0);
        EXPECT_EQ(size, 11u);
        EXPECT_EQ(file.SetFileSize(10), 0);
        EXPECT_EQ(file.FlushBuffers(), 0);
    }
    EXPECT_EQ(Slurp(m_folder.Text("f")), "hello you!");
    EXPECT_EQ(KCStFileWrite(m_folder.Path("missing")).GetOpenResult(), -1002);
}

TEST_F(Files, CreateOffersBothSides) {
    KCStFileCreate file(m_folder.Path("a/f"));
    ASSERT_TRUE(file);
    EXPECT_EQ(file.WriteFromString("hello"), 0);
    long position = 0;
    EXPECT_EQ(file.GetCursor(position), 0);
    EXPECT_EQ(position, 5);
    EXPECT_EQ(file.SetCursor(1, KEPositionMode::FromStart), 0);
    std::string text;
    EXPECT_EQ(file.ReadToStdString(text), 0);
    EXPECT_EQ(text, "ello");
    EXPECT_EQ(file.SetFileSize(0), 0);
    EXPECT_EQ(KCStFileCreate(m_folder.Path("a/f"), KECreateFlags::CreateNew).GetOpenResult(), -1003);
}

TEST_F(Files, NullTextIsANullArgument) {
    KCStFileCreate file(m_folder.Path("f"));
    const char* const null = nullptr;
    EXPECT_EQ(file.WriteFromString(null), -4003);
    EXPECT_EQ(KCStFileWrite(m_folder.Path("missing")).WriteFromString(null), -1026);
    EXPECT_EQ(KCStFileReplace(m_folder.Path("g")).WriteFromString(null), -4003);
    EXPECT_EQ(m_folder.Count(), 1u);
}

TEST_F(Files, ClosedFileIsNotValid) {
    KCStFileRead file(m_folder.File("f", "x"));
    EXPECT_EQ(file.Close(), 0);
    EXPECT_FALSE(file);
    EXPECT_EQ(file.Close(), -1026);
}

TEST_F(Files, TempFileIsGoneWithItsObject) {
    {
        KCStTempFile file(m_folder.Path());
        ASSERT_TRUE(file);
        KCStMemObj block;
        ASSERT_EQ(block.Append("abc"), 0);
        EXPECT_EQ(file.WriteFromKCStMemObj(block), 0);
        size_t done = 0;
        EXPECT_EQ(file.Write("d", 1, done), 0);
        EXPECT_EQ(Slurp(file.GetPath().GetPathString().c_str()), "abcd");
    }
    EXPECT_EQ(m_folder.Count(), 0u);
}

TEST_F(Files, TempFileThatWasTakenOverStays) {
    KCStPath path;
    {
        KCStTempFile file(m_folder.Path());
        EXPECT_EQ(file.TakeOver(path), 0);
        EXPECT_FALSE(file);
        KCStPath again;
        EXPECT_EQ(file.TakeOver(again), -1026);
        EXPECT_FALSE(again);
    }
    EXPECT_TRUE(path.IsFile());
}

TEST_F(Files, TempFileOfTheSystemCleansUpToo) {
    std::string path;
    {
        const KCStTempFile file;
        ASSERT_TRUE(file);
        path = file.GetPath().GetPathString().c_str();
        EXPECT_TRUE(Exists(path));
    }
    EXPECT_FALSE(Exists(path));
}

TEST_F(Files, TempFileWithoutAFolderIsNotValid) {
    const KCStTempFile file(m_folder.Path("missing"));
    EXPECT_FALSE(file);
    EXPECT_EQ(file.GetOpenResult(), -1002);
    EXPECT_FALSE(file.GetPath());
}

} // namespace
