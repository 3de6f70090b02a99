#include "output_file.h"

#include <gtest/gtest.h>

#include <cstdio>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/file.h>

#include "failure.h"

namespace kvKorvoV12_9_0_320::kvHost {
namespace {

class OutputFile : public testing::Test {
  protected:
    OutputFile() {
        FM::KCStTempFile file;
        FM::KCStPath path;
        EXPECT_EQ(file.TakeOver(path), kErr_NoErr);
        m_path = path.GetPathString().c_str();
    }
    ~OutputFile() override { std::remove(m_path.c_str()); }

    std::string Contents() const {
        std::string contents;
        EXPECT_EQ(FM::ReadTheWholeFile(FM::KCStPath(m_path.c_str()), contents), kErr_NoErr);
        return contents;
    }

    std::string m_path;
};

TEST_F(OutputFile, IsSeenOnlyWhenItIsKept) {
    KCOutputFile file(m_path);
    file.Write("new");
    EXPECT_EQ(Contents(), "");
    file.Keep();
    EXPECT_EQ(Contents(), "new");
}

TEST_F(OutputFile, ThatIsNotKeptChangesNothing) {
    { KCOutputFile(m_path).Write("never"); }
    EXPECT_EQ(Contents(), "");
}

// A sound's header is written anew at the end: the way back may be longer than the layer seeks.
TEST_F(OutputFile, GoesBackAndFarAwayWhileNothingIsWrittenThere) {
    KCOutputFile file(m_path);
    file.Write("head, data");
    file.Seek(0);
    EXPECT_TRUE(file.TryWrite("HEAD"));
    file.Seek(int64_t{1} << 40);
    EXPECT_EQ(file.GetPosition(), int64_t{1} << 40);
    EXPECT_EQ(file.GetSize(), 10);
    file.Keep();
    EXPECT_EQ(Contents(), "HEAD, data");
}

TEST_F(OutputFile, IsNotKeptAfterAWriteThatFailed) {
    KCOutputFile file(m_path);
    file.Seek(int64_t{1} << 40);
    EXPECT_FALSE(file.TryWrite("x"));
    file.Seek(0);
    EXPECT_FALSE(file.TryWrite("x"));
    EXPECT_THROW(file.Write("x"), KCHostFailure);
    EXPECT_THROW(file.Keep(), KCHostFailure);
    EXPECT_EQ(Contents(), "");
}

TEST_F(OutputFile, IsOneWritersAlone) {
    const KCOutputFile file(m_path);
    EXPECT_THROW(KCOutputFile{m_path}, KCHostFailure);
}

} // namespace
} // namespace kvKorvoV12_9_0_320::kvHost
