// Who may have a file open together with whom: within the process, and between two real processes.

#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <korvolib/utilities/error_codes.h>
#include <korvolib/utilities/fm/disk_object.h>
#include <korvolib/utilities/fm/fm_test_internal.h>
#include <korvolib/utilities/fm/open_file.h>

namespace {

using namespace kvKorvo::FM;

struct sMode {
    bool isCreate;
    KEPermitions permissions;
};

constexpr sMode kModes[] = {
    {false, KEPermitions::Read}, {false, KEPermitions::Write}, {false, KEPermitions::ReadWrite},
    {true, KEPermitions::Read},  {true, KEPermitions::Write},  {true, KEPermitions::ReadWrite},
    {false, KEPermitions::None}, {true, KEPermitions::None},
};

std::string NameOf(const sMode& mode) {
    return std::string(mode.isCreate ? "CreateAFile " : "OpenFile ") +
           std::to_string(static_cast<int>(mode.permissions));
}

int32_t OpenAs(const sMode& mode, const KCStPath& path, KTOpenFileType*& file) {
    return mode.isCreate ? CreateAFile(path, KECreateFlags::OpenOrCreate, mode.permissions, file)
                         : OpenFile(path, mode.permissions, file);
}

// The rule as people say it, rather than as locks.
bool MayShare(const sMode& a, const sMode& b) {
    const auto hasNoAccess = [](const sMode& mode) { return mode.permissions == KEPermitions::None; };
    const auto onlyReads = [](const sMode& mode) { return mode.permissions == KEPermitions::Read; };
    const auto createsForBoth = [](const sMode& mode) {
        return mode.isCreate && mode.permissions == KEPermitions::ReadWrite;
    };
    if (hasNoAccess(a) || hasNoAccess(b))
        return true;
    if (onlyReads(a) && onlyReads(b))
        return true;
    return (onlyReads(a) && createsForBoth(b)) || (createsForBoth(a) && onlyReads(b));
}

/// A child process that opens and closes the file as it is told, one step at a time.
class OtherProcess {
  public:
    explicit OtherProcess(const KCStPath& path) {
        int toChild[2];
        int fromChild[2];
        if (::pipe(toChild) != 0 || ::pipe(fromChild) != 0)
            return;
        m_child = ::fork();
        if (m_child == 0) {
            ::close(toChild[1]);
            ::close(fromChild[0]);
            Serve(path, toChild[0], fromChild[1]);
        }
        ::close(toChild[0]);
        ::close(fromChild[1]);
        m_out = toChild[1];
        m_in = fromChild[0];
    }
    ~OtherProcess() {
        ::close(m_out);
        ::close(m_in);
        int status = 0;
        EXPECT_EQ(::waitpid(m_child, &status, 0), m_child);
        EXPECT_EQ(status, 0);
    }
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    int32_t Open(int mode) { return Ask(mode); }
    int32_t Close() { return Ask(-1); }

  private:
    int32_t Ask(int what) const {
        int32_t answer = -12345;
        EXPECT_EQ(::write(m_out, &what, sizeof what), static_cast<ssize_t>(sizeof what));
        EXPECT_EQ(::read(m_in, &answer, sizeof answer), static_cast<ssize_t>(sizeof answer));
        return answer;
    }
    [[noreturn]] static void Serve(const KCStPath& path, int in, int out) {
        KTOpenFileType* file = GetInvalidOpenFileRef();
        for (int what = 0; ::read(in, &what, sizeof what) == sizeof what;) {
            const int32_t answer = what < 0 ? CloseFile(file) : OpenAs(kModes[what], path, file);
            if (::write(out, &answer, sizeof answer) != sizeof answer)
                break;
        }
        ::_exit(0);
    }

    pid_t m_child = -1;
    int m_out = -1;
    int m_in = -1;
};

class Sharing : public kvTest::FmTest {
  protected:
    const KCStPath m_path = m_folder.File("f", "content");
};

TEST_F(Sharing, HoldsBetweenTwoProcessesInAllPairsOfModes) {
    OtherProcess other(m_path);
    for (int theirs = 0; theirs < static_cast<int>(std::size(kModes)); ++theirs) {
        for (const sMode& ours : kModes) {
            ASSERT_EQ(other.Open(theirs), 0);
            KTOpenFileType* file = nullptr;
            const int32_t expected = MayShare(kModes[theirs], ours) ? 0 : -2014;
            EXPECT_EQ(OpenAs(ours, m_path, file), expected) << NameOf(kModes[theirs]) << ", then " << NameOf(ours);
            EXPECT_EQ(IsValidOpenFileRef(file), expected == 0);
            CloseFile(file);
            ASSERT_EQ(other.Close(), 0);
            EXPECT_EQ(OpenAs(ours, m_path, file), 0) << NameOf(ours) << " after the other closed";
            CloseFile(file);
        }
    }
}

TEST_F(Sharing, HoldsWithinOneProcessInAllPairsOfModes) {
    for (const sMode& first : kModes) {
        for (const sMode& second : kModes) {
            KTOpenFileType* one = nullptr;
            KTOpenFileType* two = nullptr;
            ASSERT_EQ(OpenAs(first, m_path, one), 0);
            EXPECT_EQ(OpenAs(second, m_path, two), MayShare(first, second) ? 0 : -2014)
                << NameOf(first) << ", then " << NameOf(second);
            CloseFile(one);
            CloseFile(two);
        }
    }
}

TEST_F(Sharing, ThirdOpenerIsMeasuredAgainstBothOthers) {
    OtherProcess creator(m_path);
    OtherProcess reader(m_path);
    ASSERT_EQ(creator.Open(5), 0);
    ASSERT_EQ(reader.Open(0), 0);
    KTOpenFileType* file = nullptr;
    EXPECT_EQ(OpenFile(m_path, KEPermitions::Read, file), 0);
    CloseFile(file);
    EXPECT_EQ(CreateAFile(m_path, KECreateFlags::OpenOrCreate, KEPermitions::ReadWrite, file), -2014);
    ASSERT_EQ(creator.Close(), 0);
    EXPECT_EQ(OpenFile(m_path, KEPermitions::Write, file), -2014);
    ASSERT_EQ(reader.Close(), 0);
    EXPECT_EQ(OpenFile(m_path, KEPermitions::Write, file), 0);
    CloseFile(file);
}

TEST_F(Sharing, RefusedCreateLosesNothing) {
    OtherProcess other(m_path);
    for (const int theirs : {1, 2, 4, 5}) {
        ASSERT_EQ(other.Open(theirs), 0);
        for (const int permissions : {0, 1, 2, -1}) {
            KTOpenFileType* file = nullptr;
            EXPECT_EQ(CreateAFile(m_path, KECreateFlags::CreateAlways, KEPermitions{permissions}, file), -2014);
            EXPECT_EQ(kvTest::Slurp(m_folder.Text("f")), "content");
        }
        ASSERT_EQ(other.Close(), 0);
    }
}

TEST_F(Sharing, CreatorForReadingThatEmptiedTheFileThenSharesItAsAReader) {
    KTOpenFileType* creator = nullptr;
    KTOpenFileType* other = nullptr;
    ASSERT_EQ(CreateAFile(m_path, KECreateFlags::CreateAlways, KEPermitions::Read, creator), 0);
    EXPECT_EQ(OpenFile(m_path, KEPermitions::Read, other), 0);
    CloseFile(other);
    EXPECT_EQ(CreateAFile(m_path, KECreateFlags::OpenOrCreate, KEPermitions::ReadWrite, other), 0);
    CloseFile(other);
    CloseFile(creator);
}

TEST_F(Sharing, IsLockedSaysWhetherAWriterIsKeptOut) {
    OtherProcess other(m_path);
    EXPECT_FALSE(IsLocked(m_path));
    for (const int mode : {0, 1, 2, 3, 4, 5}) {
        ASSERT_EQ(other.Open(mode), 0);
        EXPECT_TRUE(IsLocked(m_path)) << mode;
        ASSERT_EQ(other.Close(), 0);
        EXPECT_FALSE(IsLocked(m_path)) << mode;
    }
    EXPECT_FALSE(IsLocked(m_folder.Path()));
    EXPECT_FALSE(IsLocked(m_folder.Path("missing")));
    EXPECT_FALSE(IsLocked(nullptr));
}

TEST_F(Sharing, ProcessThatEndsLeavesNoLock) {
    {
        OtherProcess other(m_path);
        ASSERT_EQ(other.Open(2), 0);
    }
    KTOpenFileType* file = nullptr;
    EXPECT_EQ(OpenFile(m_path, KEPermitions::ReadWrite, file), 0);
    CloseFile(file);
}

TEST_F(Sharing, FileSystemWithoutLocksStillOpens) {
    for (const int error : {ENOLCK, EOPNOTSUPP, ENOSYS, EINVAL}) {
        kvTest::FaultyPlatform platform(kvTest::Failing("Lock", error));
        KTOpenFileType* one = nullptr;
        KTOpenFileType* two = nullptr;
        EXPECT_EQ(OpenFile(m_path, KEPermitions::ReadWrite, one), 0);
        EXPECT_EQ(OpenFile(m_path, KEPermitions::ReadWrite, two), 0);
        CloseFile(one);
        CloseFile(two);
    }
}

TEST_F(Sharing, ConflictFromTheSystemIsASharingViolation) {
    kvTest::FaultyPlatform platform(kvTest::Failing("Lock", EAGAIN));
    KTOpenFileType* file = nullptr;
    EXPECT_EQ(OpenFile(m_path, KEPermitions::Read, file), kvKorvo::kErr_SharingViolation);
    EXPECT_EQ(file, GetInvalidOpenFileRef());
}

} // namespace
