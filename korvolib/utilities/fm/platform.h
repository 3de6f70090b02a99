// The seam between the file layer and the system: every system call that FM makes is one operation of KCPlatform.
// Nothing else in the library talks to the file system (libzip reads its archives itself).
//
// An operation makes its call once and reports the system's own error number, 0 for none; repeating interrupted
// and short calls is the layer's business, and so is the translation into result codes. A test puts its own
// platform in the way and lets calls fail; another system is one more file that defines RealPlatform and the
// functions at the end. Any thread; nothing throws.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include <korvolib/export.h>
#include <korvolib/version.h>

namespace kvKorvoV12_9_0_320::FM {

enum class KEObjectKind : uint8_t {
    Unknown, ///< Only from a folder's listing, when it does not tell.
    File,
    Folder,
    Link,
    Other, ///< A device, a pipe, a socket.
};

struct sObjectInfo {
    uint64_t size = 0;         // bytes
    int64_t lastWriteTime = 0; // seconds since 1970, UTC
    uint64_t device = 0;       // device and object together tell one object from every other
    uint64_t object = 0;
    uint32_t mode = 0; // the permission bits of POSIX, 07777
    KEObjectKind kind = KEObjectKind::Unknown;
};

/// One name of a folder; it lives until the next one is read.
struct sListedItem {
    const char* name = nullptr; // null at the end of the folder
    size_t length = 0;
    KEObjectKind kind = KEObjectKind::Unknown;
};

struct sOpenHow {
    bool read = false; // neither read nor write: the object can be asked about, nothing else
    bool write = false;
    bool create = false;    // if it is missing
    bool mustBeNew = false; // fails if it exists
    uint32_t mode = 0666;   // of a new file, less what the process masks
};

/// The two bytes, far beyond any data, that openers lock: see open_file.h.
enum class KELockByte : uint8_t { Writer, Reader };

enum class KESeekFrom : uint8_t { Start, Current, End };

class KORVO_API KCPlatform {
  public:
    // Open files. A handle is a small number, 0 or more.

    virtual int Open(const char* path, const sOpenHow& how, int& handle) noexcept = 0;
    /// The handle is gone whatever this returns.
    virtual int Close(int handle) noexcept = 0;
    /// 0 bytes done: the end of the file.
    virtual int Read(int handle, void* to, size_t size, size_t& done) noexcept = 0;
    virtual int Write(int handle, const void* from, size_t size, size_t& done) noexcept = 0;
    virtual int Seek(int handle, int64_t offset, KESeekFrom from, int64_t& position) noexcept = 0;
    virtual int SetSize(int handle, uint64_t size) noexcept = 0;
    virtual int SetMode(int handle, uint32_t mode) noexcept = 0;
    /// Returns when the bytes are on the medium.
    virtual int Flush(int handle) noexcept = 0;
    virtual int InfoOfHandle(int handle, sObjectInfo& info) noexcept = 0;
    /// From now on reads and writes of a pipe or device wait; opening one never does.
    virtual int WaitForData(int handle) noexcept = 0;
    /// Never waits. The lock belongs to the open file, not to the process. 0 also where the file system has no
    /// locks.
    virtual int Lock(int handle, KELockByte byte, bool exclusive) noexcept = 0;
    /// Whether someone else holds a lock on either byte.
    virtual int IsLockedElsewhere(int handle, bool& isLocked) noexcept = 0;

    // Objects by path.

    virtual int Info(const char* path, bool followLinks, sObjectInfo& info) noexcept = 0;
    /// 0 if this process may do so to the object.
    virtual int CheckAccess(const char* path, bool read, bool write) noexcept = 0;
    virtual int MakeFolder(const char* path) noexcept = 0;
    virtual int RemoveFile(const char* path) noexcept = 0;
    virtual int RemoveFolder(const char* path) noexcept = 0;
    /// Overwrites only if told so, decided in the same step.
    virtual int Rename(const char* from, const char* to, bool overwrite) noexcept = 0;
    virtual int MakeLink(const char* target, const char* path) noexcept = 0;
    /// What a link names, not terminated; a text of `capacity` characters may have been cut.
    virtual int ReadLink(const char* path, char* to, size_t capacity, size_t& length) noexcept = 0;
    /// Makes the names in a folder safe on the medium.
    virtual int FlushFolder(const char* path) noexcept = 0;

    // Folders.

    /// With followLink false a link to a folder is not opened.
    virtual int OpenFolder(const char* path, bool followLink, void*& folder) noexcept = 0;
    /// In the system's order, without "." and "..".
    virtual int NextItem(void* folder, sListedItem& item) noexcept = 0;
    virtual void CloseFolder(void* folder) noexcept = 0;

    // The process and its user.

    /// Null when it is not set.
    virtual const char* Environment(const char* name) noexcept = 0;
    /// The user's home as the system's user list has it.
    virtual int HomeFolder(char* to, size_t capacity) noexcept = 0;
    virtual uint64_t RandomNumber() noexcept = 0;

  protected:
    KCPlatform() noexcept = default;
    ~KCPlatform() = default; // platforms are never owned, and the real one serves until the process is gone
    KCPlatform(const KCPlatform&) noexcept = default;
    KCPlatform& operator=(const KCPlatform&) noexcept = default;
};

/// The system this runs on.
KORVO_API KCPlatform& RealPlatform() noexcept;
/// Behind CurrentPlatform and SetPlatform.
extern KORVO_API std::atomic<KCPlatform*> theCurrentPlatform;
/// What the layer calls: the real one unless a test set another.
inline KCPlatform& CurrentPlatform() noexcept { return *theCurrentPlatform.load(std::memory_order_acquire); }
/// Null sets the real one. Only while no other thread is in FM.
KORVO_API void SetPlatform(KCPlatform* platform) noexcept;

/// The result code of a system error number: the one table of the layer.
///
///   0 → 0; no such file or folder → kErr_FileNotFound; exists → kErr_FileAlreadyExists; not an executable →
///   kErr_BadExecutableFormat; not an open file → kErr_InvalidHandle; held by someone → kErr_SharingViolation; no
///   memory → kErr_NotEnoughMemory; everything else → kErr_Generic
KORVO_API int32_t TranslateSystemError(int error) noexcept;
/// True for the error of a call that a signal broke off, to be made again.
KORVO_API bool IsInterrupted(int error) noexcept;
/// True where the system or the file system lacks what was asked for, such as locks.
KORVO_API bool IsUnsupported(int error) noexcept;
/// True for the error of a rename that would have to copy.
KORVO_API bool IsOtherFileSystem(int error) noexcept;

} // namespace kvKorvoV12_9_0_320::FM
