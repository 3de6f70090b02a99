#include <korvolib/utilities/fm/replace_file.h>

#include <korvolib/utilities/fm/disk_object.h>
#include <korvolib/utilities/fm/open_file_internal.h>
#include <korvolib/utilities/fm/path_internal.h>

namespace kvKorvoV12_9_0_320::FM {

namespace {

constexpr uint32_t kWhatTheProcessAllows = 0666;
constexpr uint32_t kOnlyThisUser = 0600;

KCStPath FolderOf(const KCStPath& path) {
    KCStPath folder = path.GetParent();
    return folder ? folder : KCStPath(".");
}

// The path itself, or what it names if it is a link.
int32_t FindTarget(KTPathType* path, KCStPath& target) {
    sObjectInfo info;
    KTPathType* found = nullptr;
    int32_t result = InfoOfPath(NativeOf(path), false, info);
    if (result == kErr_NoErr && info.kind == KEObjectKind::Link)
        result = ResolveFileSystemLink(path, found);
    else if (result == kErr_NoErr || result == kErr_FileNotFound)
        result = MakePathRef(TextOf(*path), found);
    target.TakeOver(found);
    return result;
}

} // namespace

KCStFileReplace::KCStFileReplace(KTPathType* path) noexcept : m_old(GetInvalidOpenFileRef()) {
    m_openResult = path == nullptr ? kErr_NullArgument : Start(path);
    if (m_openResult != kErr_NoErr)
        GiveUp();
}

KCStFileReplace::~KCStFileReplace() { GiveUp(); }

int32_t KCStFileReplace::Write(const void* buffer, size_t count, size_t& done) noexcept {
    return Remember(base_Write(buffer, count, done));
}

int32_t KCStFileReplace::WriteFromString(std::string_view text) noexcept {
    return Remember(base_WriteFromString(text));
}

int32_t KCStFileReplace::WriteFromString(const char* text) noexcept { return Remember(base_WriteFromString(text)); }

int32_t KCStFileReplace::WriteFromKCStMemObj(const KCStMemObj& from) noexcept {
    return Remember(base_WriteFromKCStMemObj(from));
}

int32_t KCStFileReplace::Commit() noexcept {
    int32_t result = m_openResult;
    if (result == kErr_NoErr)
        result = IsValid() ? m_writeResult : kErr_InvalidFileRef;
    if (result == kErr_NoErr)
        result = m_temporary ? FinishTemporary() : Close();
    if (result == kErr_NoErr && m_temporary)
        result = PutInPlace();
    GiveUp();
    return result;
}

int32_t KCStFileReplace::Start(KTPathType* path) noexcept {
    int32_t result = FindTarget(path, m_target);
    if (result != kErr_NoErr)
        return result;
    sObjectInfo info;
    result = InfoOfPath(NativeOf(m_target.GetPathRef()), true, info);
    if (result == kErr_NoErr && info.kind == KEObjectKind::Other)
        return OpenFile(m_target, KEPermitions::Write, m_file);
    if (result == kErr_NoErr)
        result = TakeOldFile();
    else if (result == kErr_FileNotFound)
        result = CreateFolder(FolderOf(m_target));
    return result != kErr_NoErr ? result : StartTemporary();
}

// Holds the old file as a creator who reads and writes does, from now until the new one has its name: so nobody
// writes into what is about to vanish.
int32_t KCStFileReplace::TakeOldFile() noexcept {
    sOpenHow how;
    how.read = how.write = true;
    int handle = -1;
    sObjectInfo info;
    const int32_t result = OpenHandle(NativeOf(m_target.GetPathRef()), how, KESharing::Readers, handle, info);
    if (result != kErr_NoErr)
        return result;
    m_old = FileOfHandle(handle);
    m_mode = info.mode;
    return kErr_NoErr;
}

int32_t KCStFileReplace::StartTemporary() noexcept {
    KTPathType* path = nullptr;
    const uint32_t mode = IsValidOpenFileRef(m_old) ? kOnlyThisUser : kWhatTheProcessAllows;
    const KCStPath folder = FolderOf(m_target);
    const int32_t result = folder ? CreateTempIn(folder.GetPathRef(), mode, m_file, path) : kErr_AllocationFailed;
    m_temporary.TakeOver(path);
    return result;
}

int32_t KCStFileReplace::FinishTemporary() noexcept {
    KCPlatform& platform = CurrentPlatform();
    const int handle = HandleOfFile(m_file);
    int error = 0;
    if (m_mode != kModeOfNewFiles)
        error = Uninterrupted([&] { return platform.SetMode(handle, m_mode); });
    if (error == 0)
        error = Uninterrupted([&] { return platform.Flush(handle); });
    return error != 0 ? TranslateSystemError(error) : Close();
}

int32_t KCStFileReplace::PutInPlace() noexcept {
    const char* const from = NativeOf(m_temporary.GetPathRef());
    const char* const to = NativeOf(m_target.GetPathRef());
    int error = 0;
    int32_t result = kErr_FileAlreadyExists;
    if (!IsValidOpenFileRef(m_old)) {
        result = RenameToNewName(from, to, error);
        if (result == kErr_FileAlreadyExists) { // someone made it meanwhile, and may be writing to it
            const int32_t taken = TakeOldFile();
            if (taken != kErr_NoErr)
                return taken;
        }
    }
    if (result == kErr_FileAlreadyExists)
        result = TranslateSystemError(Uninterrupted([&] { return CurrentPlatform().Rename(from, to, true); }));
    if (result != kErr_NoErr)
        return result;
    m_temporary.Clear();
    // The new content is in place whatever comes of this; where it works, a power failure cannot take it back.
    if (const KCStPath folder = FolderOf(m_target))
        CurrentPlatform().FlushFolder(NativeOf(folder.GetPathRef()));
    return kErr_NoErr;
}

int32_t KCStFileReplace::Remember(int32_t writeResult) noexcept {
    if (m_writeResult == kErr_NoErr)
        m_writeResult = writeResult;
    return writeResult;
}

void KCStFileReplace::GiveUp() noexcept {
    Close();
    CloseFile(m_old);
    if (m_temporary)
        RemoveNewFile(NativeOf(m_temporary.GetPathRef()));
    m_temporary.Clear();
}

int32_t ReplaceFile(KTPathType* path, const void* bytes, size_t size) noexcept {
    if (path == nullptr || (bytes == nullptr && size != 0))
        return kErr_NullArgument;
    KCStFileReplace file(path);
    size_t done = 0;
    file.Write(bytes, size, done);
    return file.Commit();
}

int32_t ReplaceFile(const KCStPath& path, const void* bytes, size_t size) noexcept {
    return ReplaceFile(path.GetPathRef(), bytes, size);
}

} // namespace kvKorvoV12_9_0_320::FM
