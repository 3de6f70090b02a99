// What changes objects on disk: folders, links, deleting, moving, copying.

#include <memory>
#include <new>
#include <string>
#include <vector>

#include <korvolib/utilities/fm/disk_object.h>
#include <korvolib/utilities/fm/open_file_internal.h>
#include <korvolib/utilities/fm/path.h>
#include <korvolib/utilities/fm/path_internal.h>
#include <korvolib/utilities/fm/replace_file.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

int32_t FolderOrTaken(const char* path) {
    sObjectInfo info;
    return InfoOfPath(path, true, info) == kErr_NoErr && info.kind == KEObjectKind::Folder ? kErr_NoErr
                                                                                           : kErr_FileAlreadyExists;
}

int32_t MakeOneFolder(const char* path) {
    const int32_t result = TranslateSystemError(Uninterrupted([&] { return CurrentPlatform().MakeFolder(path); }));
    return result == kErr_FileAlreadyExists ? FolderOrTaken(path) : result;
}

// From the whole path up to the first ancestor that exists, then down again making the missing ones.
int32_t MakeFolders(std::string_view text) {
    std::vector<std::string> missing;
    for (std::string_view rest = text; !rest.empty(); rest = ParentText(rest)) {
        missing.emplace_back(rest);
        sObjectInfo info;
        const int32_t found = InfoOfPath(missing.back().c_str(), true, info);
        if (found == kErr_NoErr && info.kind != KEObjectKind::Folder)
            return kErr_FileAlreadyExists;
        if (found == kErr_NoErr)
            missing.pop_back();
        if (found != kErr_FileNotFound && found != kErr_NoErr)
            return found;
        if (found == kErr_NoErr)
            break;
    }
    int32_t result = kErr_NoErr;
    for (; !missing.empty() && result == kErr_NoErr; missing.pop_back())
        result = MakeOneFolder(missing.back().c_str());
    return result;
}

int32_t RemoveOne(const char* path, KEObjectKind kind) {
    return TranslateSystemError(Uninterrupted([&] {
        return kind == KEObjectKind::Folder ? CurrentPlatform().RemoveFolder(path)
                                            : CurrentPlatform().RemoveFile(path);
    }));
}

struct sChild {
    std::string path;
    KEObjectKind kind;
};

// The folder is read and closed before anything in it is touched: so depth costs no open folders.
int32_t ListChildren(const std::string& path, std::vector<sChild>& children) {
    KCPlatform& platform = CurrentPlatform();
    void* folder = nullptr;
    const int error = Uninterrupted([&] { return platform.OpenFolder(path.c_str(), false, folder); });
    if (error != 0)
        return TranslateSystemError(error);
    const std::unique_ptr<void, void (*)(void*)> closing(folder,
                                                         [](void* open) { CurrentPlatform().CloseFolder(open); });
    for (sListedItem item;;) {
        if (const int failed = Uninterrupted([&] { return platform.NextItem(folder, item); }); failed != 0)
            return TranslateSystemError(failed);
        if (item.name == nullptr)
            return kErr_NoErr;
        children.push_back({JoinedText(path, {item.name, item.length}), item.kind});
    }
}

void KeepFirst(int32_t& first, int32_t result) {
    if (first == kErr_NoErr)
        first = result;
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as a path is long, 4096 characters
int32_t RemoveTree(const std::string& path, KEObjectKind kind) {
    int32_t first = kErr_NoErr;
    if (kind == KEObjectKind::Unknown) {
        sObjectInfo info;
        KeepFirst(first, InfoOfPath(path.c_str(), false, info));
        kind = info.kind;
    }
    if (kind == KEObjectKind::Folder) {
        std::vector<sChild> children;
        KeepFirst(first, ListChildren(path, children));
        for (const sChild& child : children)
            KeepFirst(first, RemoveTree(child.path, child.kind));
    }
    const int32_t removed = RemoveOne(path.c_str(), kind);
    if (removed == kErr_NoErr) // what failed before cannot have left anything behind
        return kErr_NoErr;
    KeepFirst(first, removed);
    return first;
}

int32_t CopyContent(int from, int to) {
    constexpr size_t kBlock = size_t{1} << 18;
    const std::unique_ptr<char[]> block(new (std::nothrow) char[kBlock]);
    if (block == nullptr)
        return kErr_AllocationFailed;
    for (;;) {
        size_t count = 0;
        size_t done = 0;
        if (const int32_t result = ReadFully(from, block.get(), kBlock, count); result != kErr_NoErr)
            return result;
        if (const int32_t result = WriteFully(to, block.get(), count, done); result != kErr_NoErr)
            return result;
        if (count < kBlock)
            return kErr_NoErr;
    }
}

struct sSource {
    int handle = -1;
    sObjectInfo info;

    sSource() = default;
    sSource(const sSource&) = delete;
    sSource& operator=(const sSource&) = delete;
    ~sSource() {
        if (handle >= 0)
            CloseHandle(handle);
    }
    int32_t Open(KTPathType* path) {
        sOpenHow how;
        how.read = true;
        return OpenHandle(NativeOf(path), how, KESharing::Nobody, handle, info);
    }
};

int32_t CopyToNew(const sSource& source, const char* to) {
    sOpenHow how;
    how.write = how.create = how.mustBeNew = true;
    how.mode = source.info.mode & 0777u;
    int handle = -1;
    sObjectInfo info;
    int32_t result = OpenHandle(to, how, KESharing::Nobody, handle, info);
    if (result != kErr_NoErr)
        return result;
    result = CopyContent(source.handle, handle);
    KeepFirst(result, CloseHandle(handle));
    if (result != kErr_NoErr)
        RemoveNewFile(to);
    return result;
}

int32_t CopyOver(const sSource& source, const char* to) {
    sOpenHow how;
    how.write = true;
    int handle = -1;
    sObjectInfo info;
    int32_t result = OpenHandle(to, how, KESharing::Nobody, handle, info);
    if (result != kErr_NoErr)
        return result;
    KCPlatform& platform = CurrentPlatform();
    result = CopyContent(source.handle, handle);
    int64_t end = 0;
    int error = 0;
    if (result == kErr_NoErr && info.kind == KEObjectKind::File)
        error = Uninterrupted([&] { return platform.Seek(handle, 0, KESeekFrom::Current, end); });
    if (result == kErr_NoErr && info.kind == KEObjectKind::File && error == 0)
        error = Uninterrupted([&] { return platform.SetSize(handle, static_cast<uint64_t>(end)); });
    KeepFirst(result, TranslateSystemError(error));
    KeepFirst(result, CloseHandle(handle));
    return result;
}

class Replacement : public KCStFileReplace {
  public:
    using KCStFileReplace::KCStFileReplace;
    int32_t CopyFrom(const sSource& source) {
        if (!IsValid())
            return Commit();
        Remember(CopyContent(source.handle, HandleOfFile(m_file)));
        if (!IsValidOpenFileRef(m_old))
            m_mode = source.info.mode & 0777u;
        return Commit();
    }
};

} // namespace

int32_t RenameToNewName(const char* from, const char* to, int& error) noexcept {
    KCPlatform& platform = CurrentPlatform();
    error = Uninterrupted([&] { return platform.Rename(from, to, false); });
    if (!IsUnsupported(error))
        return TranslateSystemError(error);
    // Where the file system cannot decide and rename in one step, looking first is the best there is.
    sObjectInfo info;
    const int32_t found = InfoOfPath(to, false, info);
    if (found != kErr_FileNotFound)
        return found == kErr_NoErr ? kErr_FileAlreadyExists : found;
    error = Uninterrupted([&] { return platform.Rename(from, to, true); });
    return TranslateSystemError(error);
}

int32_t CreateFolder(KTPathType* path) noexcept {
    if (path == nullptr)
        return kErr_NullArgument;
    return WithoutThrowing([&] { return MakeFolders(TextOf(*path)); });
}

int32_t CreateFileSystemLink(KTPathType* target, KTPathType* link) noexcept {
    if (target == nullptr || link == nullptr)
        return kErr_NullArgument;
    return TranslateSystemError(
        Uninterrupted([&] { return CurrentPlatform().MakeLink(NativeOf(target), NativeOf(link)); }));
}

int32_t DeleteFileSystemObject(KTPathType* path) noexcept {
    if (path == nullptr)
        return kErr_NullArgument;
    sObjectInfo info;
    const int32_t result = InfoOfPath(NativeOf(path), false, info);
    if (result != kErr_NoErr)
        return result;
    const int32_t removed = RemoveOne(NativeOf(path), info.kind);
    return removed == kErr_FileAlreadyExists ? kErr_Generic : removed; // some systems say so of a full folder
}

int32_t DeleteFileSystemObjectRecursively(KTPathType* path) noexcept {
    if (path == nullptr)
        return kErr_NullArgument;
    sObjectInfo info;
    const int32_t result = InfoOfPath(NativeOf(path), false, info);
    if (result != kErr_NoErr)
        return result;
    return WithoutThrowing([&] { return RemoveTree(std::string(TextOf(*path)), info.kind); });
}

int32_t MoveFileSystemObject(KTPathType* from, KTPathType* to) noexcept {
    if (from == nullptr || to == nullptr)
        return kErr_NullArgument;
    int error = 0;
    const int32_t result = RenameToNewName(NativeOf(from), NativeOf(to), error);
    if (!IsOtherFileSystem(error) || !IsFile(from, false))
        return result;
    const int32_t copied = DuplicateFile(from, to, KECreateFlags::CreateNew);
    return copied != kErr_NoErr ? copied : RemoveOne(NativeOf(from), KEObjectKind::File);
}

int32_t DuplicateFile(KTPathType* from, KTPathType* to, KECreateFlags flags) noexcept {
    if (from == nullptr || to == nullptr)
        return kErr_NullArgument;
    sSource source;
    int32_t result = source.Open(from);
    if (result != kErr_NoErr)
        return result;
    if (flags == KECreateFlags::CreateAlways)
        return Replacement(to).CopyFrom(source);
    if (flags != KECreateFlags::OpenOrCreate && flags != KECreateFlags::CreateNew)
        return kErr_Generic;
    result = CopyToNew(source, NativeOf(to));
    if (result != kErr_FileAlreadyExists || flags != KECreateFlags::OpenOrCreate)
        return result;
    sObjectInfo info;
    if (InfoOfPath(NativeOf(to), true, info) == kErr_FileNotFound) // a link: the file is made where it leads
        return Replacement(to).CopyFrom(source);
    return CopyOver(source, NativeOf(to));
}

// The forms that take a path object.

int32_t CreateFolder(const KCStPath& path) noexcept { return CreateFolder(path.GetPathRef()); }
int32_t CreateFileSystemLink(const KCStPath& target, const KCStPath& link) noexcept {
    return CreateFileSystemLink(target.GetPathRef(), link.GetPathRef());
}
int32_t DeleteFileSystemObject(const KCStPath& path) noexcept { return DeleteFileSystemObject(path.GetPathRef()); }
int32_t DeleteFileSystemObjectRecursively(const KCStPath& path) noexcept {
    return DeleteFileSystemObjectRecursively(path.GetPathRef());
}
int32_t MoveFileSystemObject(const KCStPath& from, const KCStPath& to) noexcept {
    return MoveFileSystemObject(from.GetPathRef(), to.GetPathRef());
}
int32_t DuplicateFile(const KCStPath& from, const KCStPath& to, KECreateFlags flags) noexcept {
    return DuplicateFile(from.GetPathRef(), to.GetPathRef(), flags);
}

} // namespace kvKorvoV12_9_0_320::FM
