#include <korvolib/utilities/fm/disk_object.h>

#include <string>
#include <utility>
#include <vector>

#include <korvolib/utilities/fm/open_file_internal.h>
#include <korvolib/utilities/fm/path.h>
#include <korvolib/utilities/fm/path_internal.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

int32_t InfoOf(KTPathType* path, bool followLinks, sObjectInfo& info) {
    return path == nullptr ? kErr_NullArgument : InfoOfPath(NativeOf(path), followLinks, info);
}

bool IsOfKind(KTPathType* path, bool followLink, KEObjectKind kind) {
    sObjectInfo info;
    return InfoOf(path, followLink, info) == kErr_NoErr && info.kind == kind;
}

bool MayAccess(KTPathType* path, bool read, bool write) {
    return Uninterrupted([&] { return CurrentPlatform().CheckAccess(NativeOf(path), read, write); }) == 0;
}

} // namespace

bool DoesFileExist(KTPathType* path) noexcept {
    sObjectInfo info;
    return InfoOf(path, true, info) == kErr_NoErr;
}

bool IsFile(KTPathType* path, bool followLink) noexcept { return IsOfKind(path, followLink, KEObjectKind::File); }
bool IsFolder(KTPathType* path, bool followLink) noexcept {
    return IsOfKind(path, followLink, KEObjectKind::Folder);
}
bool IsFileSystemLink(KTPathType* path) noexcept { return IsOfKind(path, false, KEObjectKind::Link); }

bool IsLocked(KTPathType* path) noexcept {
    // Only files are locked, and the open itself must not lock: so this asks the platform directly.
    if (!IsFile(path))
        return false;
    KCPlatform& platform = CurrentPlatform();
    sOpenHow how;
    how.read = true;
    int handle = -1;
    if (Uninterrupted([&] { return platform.Open(NativeOf(path), how, handle); }) != 0)
        return false;
    bool isLocked = false;
    const int error = Uninterrupted([&] { return platform.IsLockedElsewhere(handle, isLocked); });
    CloseHandle(handle);
    return error == 0 && isLocked;
}

bool IsWritable(KTPathType* path) noexcept { return path != nullptr && MayAccess(path, false, true); }

int32_t GetPermissions(KTPathType* path, KEPermitions& out) noexcept {
    out = KEPermitions::None;
    sObjectInfo info;
    const int32_t result = InfoOf(path, true, info);
    if (result != kErr_NoErr)
        return result;
    const bool mayRead = MayAccess(path, true, false);
    const bool mayWrite = MayAccess(path, false, true);
    if (mayRead)
        out = mayWrite ? KEPermitions::ReadWrite : KEPermitions::Read;
    else if (mayWrite)
        out = KEPermitions::Write;
    return kErr_NoErr;
}

int32_t GetFileSizeFromPathRef(KTPathType* path, uint64_t& size) noexcept {
    size = 0;
    sObjectInfo info;
    const int32_t result = InfoOf(path, true, info);
    if (result != kErr_NoErr)
        return result;
    if (info.kind == KEObjectKind::Folder)
        return kErr_Generic;
    size = info.size;
    return kErr_NoErr;
}

int32_t GetFileLastWriteTimeFromPathRef(KTPathType* path, int64_t& time) noexcept {
    time = 0;
    sObjectInfo info;
    const int32_t result = InfoOf(path, true, info);
    time = info.lastWriteTime;
    return result;
}

// The forms that take a path object.

bool DoesFileExist(const KCStPath& path) noexcept { return DoesFileExist(path.GetPathRef()); }
bool IsFile(const KCStPath& path, bool followLink) noexcept { return IsFile(path.GetPathRef(), followLink); }
bool IsFolder(const KCStPath& path, bool followLink) noexcept { return IsFolder(path.GetPathRef(), followLink); }
bool IsFileSystemLink(const KCStPath& path) noexcept { return IsFileSystemLink(path.GetPathRef()); }
bool IsLocked(const KCStPath& path) noexcept { return IsLocked(path.GetPathRef()); }
bool IsWritable(const KCStPath& path) noexcept { return IsWritable(path.GetPathRef()); }
int32_t GetPermissions(const KCStPath& path, KEPermitions& out) noexcept {
    return GetPermissions(path.GetPathRef(), out);
}
int32_t GetFileSizeFromPathRef(const KCStPath& path, uint64_t& size) noexcept {
    return GetFileSizeFromPathRef(path.GetPathRef(), size);
}
int32_t GetFileLastWriteTimeFromPathRef(const KCStPath& path, int64_t& time) noexcept {
    return GetFileLastWriteTimeFromPathRef(path.GetPathRef(), time);
}

} // namespace kvKorvoV12_9_0_320::FM
