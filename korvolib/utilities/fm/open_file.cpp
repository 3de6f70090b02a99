#include <korvolib/utilities/fm/open_file.h>

#include <string>
#include <utility>

#include <korvolib/utilities/fm/disk_object.h>
#include <korvolib/utilities/fm/open_file_internal.h>
#include <korvolib/utilities/fm/path.h>
#include <korvolib/utilities/fm/path_internal.h>
#include <korvolib/utilities/fm/well_known_folders.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

constexpr uint32_t kOnlyThisUser = 0600;

sOpenHow HowToOpen(KEPermitions permissions) {
    sOpenHow how;
    how.read = permissions == KEPermitions::Read || permissions == KEPermitions::ReadWrite;
    how.write = permissions == KEPermitions::Write || permissions == KEPermitions::ReadWrite;
    return how;
}

int LockFor(int handle, const sOpenHow& how, KESharing sharing) {
    const auto lock = [&](KELockByte byte, bool exclusive) {
        const int error = Uninterrupted([&] { return CurrentPlatform().Lock(handle, byte, exclusive); });
        return IsUnsupported(error) ? 0 : error; // a file system without locks still opens
    };
    if (how.write) {
        if (const int error = lock(KELockByte::Writer, true); error != 0)
            return error;
    }
    return lock(KELockByte::Reader, !(how.read && (sharing == KESharing::Readers || !how.write)));
}

// What stands between a fresh handle and its use. A device or pipe has no content of its own to protect.
int32_t PrepareHandle(int handle, const sOpenHow& how, KESharing sharing, sObjectInfo& info) {
    KCPlatform& platform = CurrentPlatform();
    int error = Uninterrupted([&] { return platform.InfoOfHandle(handle, info); });
    if (error != 0)
        return TranslateSystemError(error);
    if (info.kind == KEObjectKind::Folder)
        return kErr_Generic;
    if (!how.read && !how.write)
        return kErr_NoErr;
    if (info.kind == KEObjectKind::File)
        error = LockFor(handle, how, sharing);
    else
        error = Uninterrupted([&] { return platform.WaitForData(handle); });
    return TranslateSystemError(error);
}

int32_t MoveToEnd(int handle, KEPermitions permissions, const sObjectInfo& info) {
    if (permissions != KEPermitions::Write || info.kind != KEObjectKind::File)
        return kErr_NoErr;
    int64_t position = 0;
    return TranslateSystemError(
        Uninterrupted([&] { return CurrentPlatform().Seek(handle, 0, KESeekFrom::End, position); }));
}

// The last step of every open: a reference, or the handle is closed again.
int32_t HandOver(int handle, int32_t result, KTOpenFileType*& out) {
    if (result == kErr_NoErr)
        out = FileOfHandle(handle);
    else
        CloseHandle(handle);
    return result;
}

int32_t OpenPath(const char* path, const sOpenHow& how, KEPermitions permissions, KTOpenFileType*& out) {
    int handle = -1;
    sObjectInfo info;
    const int32_t result = OpenHandle(path, how, KESharing::Nobody, handle, info);
    return result != kErr_NoErr ? result : HandOver(handle, MoveToEnd(handle, permissions, info), out);
}

int32_t Truncate(int handle, const sObjectInfo& info) {
    if (info.kind != KEObjectKind::File || info.size == 0)
        return kErr_NoErr;
    return TranslateSystemError(Uninterrupted([&] { return CurrentPlatform().SetSize(handle, 0); }));
}

// Only someone who writes may empty a file, and only a creator who reads may make one it cannot write: in these
// cases a first open file, locked like every other, makes the file what it shall be, and the one that is handed out
// is opened beside it.
int32_t CreateThenOpen(const char* path, sOpenHow first, bool replaces, KEPermitions permissions,
                       KTOpenFileType*& out) {
    if (replaces)
        first.read = first.write = true;
    int handle = -1;
    sObjectInfo info;
    int32_t result = OpenHandle(path, first, KESharing::Readers, handle, info);
    if (result != kErr_NoErr)
        return result;
    if (replaces)
        result = Truncate(handle, info);
    if (result == kErr_NoErr)
        result = OpenPath(path, HowToOpen(permissions), permissions, out);
    CloseHandle(handle);
    return result;
}

int32_t CreatePath(const char* path, KECreateFlags flags, KEPermitions permissions, KTOpenFileType*& out) {
    const bool replaces = flags == KECreateFlags::CreateAlways;
    sOpenHow how = HowToOpen(permissions);
    how.create = true;
    how.mustBeNew = flags == KECreateFlags::CreateNew;
    if (!how.write && (replaces || !how.read))
        return CreateThenOpen(path, how, replaces, permissions, out);
    int handle = -1;
    sObjectInfo info;
    int32_t result = OpenHandle(path, how, KESharing::Readers, handle, info);
    if (result != kErr_NoErr)
        return result;
    if (replaces)
        result = Truncate(handle, info);
    if (result == kErr_NoErr)
        result = MoveToEnd(handle, permissions, info);
    return HandOver(handle, result, out);
}

int32_t CreateParentOf(std::string_view path) {
    KTPathType* parent = nullptr;
    const int32_t result = MakePathRef(ParentText(path), parent);
    if (result == kErr_FileNotFound) // no text: the folder the process is in
        return kErr_NoErr;
    if (result != kErr_NoErr)
        return result;
    const int32_t created = CreateFolder(parent);
    DisposePathRef(parent);
    return created;
}

} // namespace

int32_t OpenHandle(const char* path, const sOpenHow& how, KESharing sharing, int& handle,
                   sObjectInfo& info) noexcept {
    handle = -1;
    int opened = -1;
    const int error = Uninterrupted([&] { return CurrentPlatform().Open(path, how, opened); });
    if (error != 0)
        return TranslateSystemError(error);
    const int32_t result = PrepareHandle(opened, how, sharing, info);
    if (result == kErr_NoErr) {
        handle = opened;
        return result;
    }
    CloseHandle(opened);
    // A new file that cannot be handed over should not stay, unless someone has found it already.
    if (how.mustBeNew && result != kErr_SharingViolation)
        RemoveNewFile(path);
    return result;
}

void RemoveNewFile(const char* path) noexcept {
    Uninterrupted([&] { return CurrentPlatform().RemoveFile(path); });
}

int32_t CloseHandle(int handle) noexcept {
    const int error = CurrentPlatform().Close(handle);
    return IsInterrupted(error) ? kErr_NoErr : TranslateSystemError(error); // it is closed all the same
}

int32_t ReadFully(int handle, void* to, size_t size, size_t& done) noexcept {
    done = 0;
    while (done < size) {
        size_t count = 0;
        const int error = Uninterrupted(
            [&] { return CurrentPlatform().Read(handle, static_cast<char*>(to) + done, size - done, count); });
        if (error != 0)
            return TranslateSystemError(error);
        if (count == 0)
            break;
        done += count;
    }
    return kErr_NoErr;
}

int32_t WriteFully(int handle, const void* from, size_t size, size_t& done) noexcept {
    done = 0;
    while (done < size) {
        size_t count = 0;
        const int error = Uninterrupted([&] {
            return CurrentPlatform().Write(handle, static_cast<const char*>(from) + done, size - done, count);
        });
        if (error != 0)
            return TranslateSystemError(error);
        if (count == 0) // neither done nor failed: asking again would never end
            return kErr_Generic;
        done += count;
    }
    return kErr_NoErr;
}

KTOpenFileType* GetInvalidOpenFileRef() noexcept { return reinterpret_cast<KTOpenFileType*>(~uintptr_t{0}); }

bool IsValidOpenFileRef(const KTOpenFileType* file) noexcept {
    return file != nullptr && file != GetInvalidOpenFileRef();
}

int32_t OpenFile(KTPathType* path, KEPermitions permissions, KTOpenFileType*& out) noexcept {
    out = GetInvalidOpenFileRef();
    return path == nullptr ? kErr_NullArgument : OpenPath(NativeOf(path), HowToOpen(permissions), permissions, out);
}

int32_t OpenFile(const KCStPath& path, KEPermitions permissions, KTOpenFileType*& out) noexcept {
    return OpenFile(path.GetPathRef(), permissions, out);
}

int32_t CreateAFile(KTPathType* path, KECreateFlags flags, KEPermitions permissions, KTOpenFileType*& out,
                    unsigned short) noexcept {
    out = GetInvalidOpenFileRef();
    if (path == nullptr)
        return kErr_NullArgument;
    const int32_t result = CreateParentOf(TextOf(*path));
    if (result != kErr_NoErr)
        return result;
    if (flags != KECreateFlags::OpenOrCreate && flags != KECreateFlags::CreateNew &&
        flags != KECreateFlags::CreateAlways)
        return kErr_Generic;
    return CreatePath(NativeOf(path), flags, permissions, out);
}

int32_t CreateAFile(const KCStPath& path, KECreateFlags flags, KEPermitions permissions, KTOpenFileType*& out,
                    unsigned short ignored) noexcept {
    return CreateAFile(path.GetPathRef(), flags, permissions, out, ignored);
}

int32_t CreateTempIn(KTPathType* folder, uint32_t mode, KTOpenFileType*& out, KTPathType*& path) noexcept {
    out = GetInvalidOpenFileRef();
    path = nullptr;
    sOpenHow how;
    how.read = how.write = how.create = how.mustBeNew = true;
    how.mode = mode;
    constexpr int kAttempts = 100; // names are 64 random bits: a second one is hardly ever needed
    int32_t result = kErr_Generic;
    for (int i = 0; i < kAttempts; ++i) {
        KCFixedString<63> name("korvo-");
        name.append_uint(CurrentPlatform().RandomNumber(), 36);
        name.append(".tmp");
        result = CreatePathRef(folder, name.c_str(), path);
        if (result != kErr_NoErr)
            return result;
        int handle = -1;
        sObjectInfo info;
        result = OpenHandle(NativeOf(path), how, KESharing::Readers, handle, info);
        if (result == kErr_NoErr)
            return HandOver(handle, result, out);
        if (result == kErr_SharingViolation) // whoever locks a file of this name took it from us
            RemoveNewFile(NativeOf(path));
        DisposePathRef(path);
        if (result != kErr_FileAlreadyExists)
            return result;
    }
    return result;
}

int32_t CreateTempFile(KTPathType* folder, KTOpenFileType*& out, KTPathType*& path) noexcept {
    out = GetInvalidOpenFileRef();
    path = nullptr;
    return folder == nullptr ? kErr_NullArgument : CreateTempIn(folder, kOnlyThisUser, out, path);
}

int32_t CreateTempFile(KTOpenFileType*& out, KTPathType*& path) noexcept {
    out = GetInvalidOpenFileRef();
    path = nullptr;
    KTPathType* folder = nullptr;
    int32_t result = CreateSystemFolderPathRef(KEFoldersDomain::User, KESystemFolders::Temporary, folder);
    if (result == kErr_NoErr)
        result = CreateTempIn(folder, kOnlyThisUser, out, path);
    DisposePathRef(folder);
    return result;
}

int32_t CloseFile(KTOpenFileType*& file) noexcept {
    KTOpenFileType* const closing = std::exchange(file, GetInvalidOpenFileRef());
    return IsValidOpenFileRef(closing) ? CloseHandle(HandleOfFile(closing)) : kErr_InvalidFileRef;
}

int32_t ReadFromFile(KTOpenFileType* file, void* buffer, size_t count, size_t& done) noexcept {
    done = 0;
    if (!IsValidOpenFileRef(file))
        return kErr_InvalidFileRef;
    if (buffer == nullptr && count != 0)
        return kErr_NullArgument;
    return ReadFully(HandleOfFile(file), buffer, count, done);
}

int32_t WriteToFile(KTOpenFileType* file, const void* buffer, size_t count, size_t& done) noexcept {
    done = 0;
    if (!IsValidOpenFileRef(file))
        return kErr_InvalidFileRef;
    if (buffer == nullptr && count != 0)
        return kErr_NullArgument;
    return WriteFully(HandleOfFile(file), buffer, count, done);
}

} // namespace kvKorvoV12_9_0_320::FM
