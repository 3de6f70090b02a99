#include <korvolib/utilities/fm/platform.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <korvolib/utilities/error_codes.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

// Behind any file that can exist on the file systems we know, and still a positive offset.
constexpr off_t kLockStart = off_t{1} << 62;

KEObjectKind KindOfMode(mode_t mode) {
    if (S_ISREG(mode))
        return KEObjectKind::File;
    if (S_ISDIR(mode))
        return KEObjectKind::Folder;
    return S_ISLNK(mode) ? KEObjectKind::Link : KEObjectKind::Other;
}

KEObjectKind KindOfEntry(unsigned char type) {
    switch (type) {
    case DT_REG:
        return KEObjectKind::File;
    case DT_DIR:
        return KEObjectKind::Folder;
    case DT_LNK:
        return KEObjectKind::Link;
    case DT_UNKNOWN:
        return KEObjectKind::Unknown;
    default:
        return KEObjectKind::Other;
    }
}

sObjectInfo InfoOf(const struct stat& from) {
    sObjectInfo info;
    info.size = from.st_size < 0 ? 0 : static_cast<uint64_t>(from.st_size);
    info.lastWriteTime = from.st_mtime;
    info.device = from.st_dev;
    info.object = from.st_ino;
    info.mode = from.st_mode & 07777u;
    info.kind = KindOfMode(from.st_mode);
    return info;
}

int ErrorOf(int result) { return result == 0 ? 0 : errno; }

int AccessFlags(const sOpenHow& how) {
    if (how.read && how.write)
        return O_RDWR;
    if (how.write)
        return O_WRONLY;
    // Creating needs a real descriptor: O_PATH would ignore O_CREAT.
    return how.read || how.create ? O_RDONLY : O_PATH;
}

struct flock LockOn(KELockByte byte, bool exclusive) {
    struct flock lock = {};
    lock.l_type = exclusive ? F_WRLCK : F_RDLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = kLockStart + (byte == KELockByte::Reader ? 1 : 0);
    lock.l_len = 1;
    return lock;
}

class KCPosixPlatform final : public KCPlatform {
  public:
    int Open(const char* path, const sOpenHow& how, int& handle) noexcept override {
        int flags = AccessFlags(how) | O_CLOEXEC | O_NOCTTY;
        // A pipe without a writer must not hold the caller up; for files this means nothing.
        if ((flags & O_PATH) == 0)
            flags |= O_NONBLOCK;
        if (how.create)
            flags |= O_CREAT;
        if (how.mustBeNew)
            flags |= O_EXCL;
        handle = ::open(path, flags, static_cast<mode_t>(how.mode));
        return handle < 0 ? errno : 0;
    }

    int Close(int handle) noexcept override { return ErrorOf(::close(handle)); }

    int Read(int handle, void* to, size_t size, size_t& done) noexcept override {
        const ssize_t count = ::read(handle, to, size);
        done = count < 0 ? 0 : static_cast<size_t>(count);
        return count < 0 ? errno : 0;
    }

    int Write(int handle, const void* from, size_t size, size_t& done) noexcept override {
        const ssize_t count = ::write(handle, from, size);
        done = count < 0 ? 0 : static_cast<size_t>(count);
        return count < 0 ? errno : 0;
    }

    int Seek(int handle, int64_t offset, KESeekFrom from, int64_t& position) noexcept override {
        constexpr int kWhence[] = {SEEK_SET, SEEK_CUR, SEEK_END};
        const off_t reached = ::lseek(handle, offset, kWhence[static_cast<int>(from)]);
        position = reached < 0 ? 0 : reached;
        return reached < 0 ? errno : 0;
    }

    int SetSize(int handle, uint64_t size) noexcept override {
        return size > INT64_MAX ? EFBIG : ErrorOf(::ftruncate(handle, static_cast<off_t>(size)));
    }

    int SetMode(int handle, uint32_t mode) noexcept override {
        return ErrorOf(::fchmod(handle, static_cast<mode_t>(mode)));
    }

    int Flush(int handle) noexcept override { return ErrorOf(::fsync(handle)); }

    int InfoOfHandle(int handle, sObjectInfo& info) noexcept override {
        struct stat system = {};
        if (::fstat(handle, &system) != 0)
            return errno;
        info = InfoOf(system);
        return 0;
    }

    int WaitForData(int handle) noexcept override {
        const int flags = ::fcntl(handle, F_GETFL);
        return flags < 0 ? errno : ErrorOf(::fcntl(handle, F_SETFL, flags & ~O_NONBLOCK));
    }

    int Lock(int handle, KELockByte byte, bool exclusive) noexcept override {
        struct flock lock = LockOn(byte, exclusive);
        if (::fcntl(handle, F_OFD_SETLK, &lock) == 0)
            return 0;
        return errno == EACCES ? EAGAIN : errno; // POSIX allows either for a conflict
    }

    int IsLockedElsewhere(int handle, bool& isLocked) noexcept override {
        isLocked = false;
        for (const KELockByte byte : {KELockByte::Writer, KELockByte::Reader}) {
            struct flock lock = LockOn(byte, true);
            if (::fcntl(handle, F_OFD_GETLK, &lock) != 0)
                return errno;
            isLocked = isLocked || lock.l_type != F_UNLCK;
        }
        return 0;
    }

    int Info(const char* path, bool followLinks, sObjectInfo& info) noexcept override {
        struct stat system = {};
        if ((followLinks ? ::stat(path, &system) : ::lstat(path, &system)) != 0)
            return errno;
        info = InfoOf(system);
        return 0;
    }

    int CheckAccess(const char* path, bool read, bool write) noexcept override {
        return ErrorOf(::faccessat(AT_FDCWD, path, (read ? R_OK : 0) | (write ? W_OK : 0), AT_EACCESS));
    }

    int MakeFolder(const char* path) noexcept override { return ErrorOf(::mkdir(path, 0777)); }
    int RemoveFile(const char* path) noexcept override { return ErrorOf(::unlink(path)); }
    int RemoveFolder(const char* path) noexcept override { return ErrorOf(::rmdir(path)); }

    int Rename(const char* from, const char* to, bool overwrite) noexcept override {
        return ErrorOf(overwrite ? ::rename(from, to)
                                 : ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE));
    }

    int MakeLink(const char* target, const char* path) noexcept override {
        return ErrorOf(::symlink(target, path));
    }

    int ReadLink(const char* path, char* to, size_t capacity, size_t& length) noexcept override {
        const ssize_t count = ::readlink(path, to, capacity);
        length = count < 0 ? 0 : static_cast<size_t>(count);
        return count < 0 ? errno : 0;
    }

    int FlushFolder(const char* path) noexcept override {
        const int handle = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (handle < 0)
            return errno;
        const int error = ErrorOf(::fsync(handle));
        ::close(handle);
        return error;
    }

    int OpenFolder(const char* path, bool followLink, void*& folder) noexcept override {
        folder = nullptr;
        const int handle =
            ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | (followLink ? 0 : O_NOFOLLOW));
        if (handle < 0)
            return errno;
        folder = ::fdopendir(handle);
        if (folder != nullptr)
            return 0;
        const int error = errno;
        ::close(handle);
        return error;
    }

    int NextItem(void* folder, sListedItem& item) noexcept override {
        item = {};
        for (;;) {
            errno = 0;
            const dirent* entry = ::readdir(static_cast<DIR*>(folder));
            if (entry == nullptr)
                return errno;
            const char* name = entry->d_name;
            if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
                continue;
            item = {name, std::strlen(name), KindOfEntry(entry->d_type)};
            return 0;
        }
    }

    void CloseFolder(void* folder) noexcept override { ::closedir(static_cast<DIR*>(folder)); }

    const char* Environment(const char* name) noexcept override { return std::getenv(name); }

    int HomeFolder(char* to, size_t capacity) noexcept override {
        char buffer[4096];
        struct passwd user = {};
        struct passwd* found = nullptr;
        const int error = ::getpwuid_r(::getuid(), &user, buffer, sizeof buffer, &found);
        if (error != 0 || found == nullptr)
            return error != 0 ? error : ENOENT;
        const size_t length = std::strlen(found->pw_dir);
        if (length >= capacity)
            return ENAMETOOLONG;
        std::memcpy(to, found->pw_dir, length + 1);
        return 0;
    }

    uint64_t RandomNumber() noexcept override {
        uint64_t number = 0;
        if (::getrandom(&number, sizeof number, GRND_NONBLOCK) == sizeof number)
            return number;
        // Names are made with it, and a taken name is tried again: being different is enough.
        struct timespec now = {};
        ::clock_gettime(CLOCK_MONOTONIC, &now);
        return static_cast<uint64_t>(now.tv_nsec) * 0x9E3779B97F4A7C15u ^ static_cast<uint64_t>(::getpid());
    }
};

constinit KCPosixPlatform thePlatform;
} // namespace

constinit std::atomic<KCPlatform*> theCurrentPlatform{&thePlatform};

KCPlatform& RealPlatform() noexcept { return thePlatform; }

void SetPlatform(KCPlatform* platform) noexcept {
    theCurrentPlatform.store(platform == nullptr ? &thePlatform : platform, std::memory_order_release);
}

int32_t TranslateSystemError(int error) noexcept {
    switch (error) {
    case 0:
        return kErr_NoErr;
    case ENOENT:
    case ENOTDIR:
        return kErr_FileNotFound;
    case EEXIST:
        return kErr_FileAlreadyExists;
    case ENOEXEC:
        return kErr_BadExecutableFormat;
    case EBADF:
        return kErr_InvalidHandle;
    case EAGAIN:
        return kErr_SharingViolation;
    case ENOMEM:
        return kErr_NotEnoughMemory;
    default:
        return kErr_Generic;
    }
}

bool IsInterrupted(int error) noexcept { return error == EINTR; }
bool IsUnsupported(int error) noexcept {
    return error == ENOLCK || error == ENOSYS || error == EOPNOTSUPP || error == EINVAL;
}
bool IsOtherFileSystem(int error) noexcept { return error == EXDEV; }

} // namespace kvKorvoV12_9_0_320::FM
